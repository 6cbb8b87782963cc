#include "Branding.h"

#include <algorithm>
#include <cwchar>
#include <vector>

#include "StrUtils.h"
#include "wcharStub.h"

namespace {

constexpr wchar_t kFirmwareTable[] =
    L"MDL:KX350T;LIC:QT725013;, product.brand.bin,"
    L"MDL:KX350T;LIC:QT725090;, product.tarn.bin,"
    L"MDL:KX350T;LIC:;, product.tarn.bin";

constexpr wchar_t kSeparator[] = L",";

Branding::FirmwareSpec makeSpec(const std::wstring& selector, const std::wstring& fileName) {
  if (selector == L"*") return {L"*", L"*", fileName};
  std::wstring modelPattern;
  std::wstring licPattern;
  StrUtils::GetIEEE1284KeyValue(selector, L"MDL", modelPattern);
  StrUtils::GetIEEE1284KeyValue(selector, L"LIC", licPattern);
  return {modelPattern, licPattern, fileName};
}

}  // namespace

const std::uint16_t Branding::sUsbVendorId = 0x3A71;
const std::uint16_t Branding::sUsbProductId = 0x0C28;
const platform::Text Branding::sManufacturerStr = platform::Text::fromUtf8("Veltra");
const platform::Text Branding::sModelStr = platform::Text::fromUtf8("KX350T");
bool Branding::sPromptBeforeUsbDownload = false;
Branding::FirmwareSpecList Branding::sFirmwareSpecList;

void Branding::buildFirmwareSpecList() {
  for (const FirmwareSpec& spec : parseFirmwareSpecs(kFirmwareTable)) {
    sFirmwareSpecList.push_back(spec);
  }
}

Branding::FirmwareSpecList Branding::parseFirmwareSpecs(const std::wstring& table) {
  FirmwareSpecList specs;
  std::vector<wchar_t> buffer(table.c_str(), table.c_str() + table.size() + 1);
  wchar_t* state = nullptr;
  wchar_t* token = std::wcstok(buffer.data(), kSeparator, &state);
  while (token != nullptr) {
    const std::wstring selector = wtrim(token);
    token = std::wcstok(nullptr, kSeparator, &state);
    if (token == nullptr) break;
    specs.push_back(makeSpec(selector, wtrim(token)));
    token = std::wcstok(nullptr, kSeparator, &state);
  }
  return specs;
}

const std::wstring& Branding::getMatchingFirmwareFile(const std::wstring& model,
                                                      const std::wstring& lic) {
  static const std::wstring emptyName;
  if (sFirmwareSpecList.empty()) buildFirmwareSpecList();
  const auto matches = [&](const FirmwareSpec& spec) {
    return StrUtils::StrCmpWildcardNoCase(spec.modelPattern, model) &&
           StrUtils::StrCmpWildcardNoCase(spec.licPattern, lic);
  };
  const auto found = std::find_if(sFirmwareSpecList.begin(), sFirmwareSpecList.end(), matches);
  return found == sFirmwareSpecList.end() ? emptyName : found->fileName;
}
