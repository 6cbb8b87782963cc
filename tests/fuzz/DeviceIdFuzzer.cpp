// A printer may answer any bytes for its device ID: fields are found where they stand, values are
// matched, and the loader chooses a file or says why not.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "FakeBundle.h"
#include "FakeFiles.h"
#include "FirmwareLoader.h"
#include "LogRecorder.h"
#include "StrUtils.h"
#include "platform/Text.h"
#include "require.h"
#include "wcharStub.h"

namespace {

// As the device-ID task makes it; bytes that are not UTF-8 end the program there and count as code
// points here.
std::wstring deviceIdOf(const std::string& bytes) {
  if (platform::Text::fromUtf8(bytes)) return constructFromCStr(bytes.data(), bytes.size());
  std::wstring id;
  for (const char byte : bytes) id += static_cast<wchar_t>(static_cast<unsigned char>(byte));
  return id + L'\0';
}

void checkField(const std::wstring& id, const std::wstring& key) {
  std::wstring value = L"unchanged";
  if (StrUtils::GetIEEE1284KeyValue(id, key, value)) {
    require(value.find(L';') == std::wstring::npos);
    require(id.find(key + L":" + value + L";") == id.find(key + L":"));
    require(StrUtils::MatchIEEE1284Key(id, key, L"*"));
  } else {
    require(value == L"unchanged");
    require(!StrUtils::MatchIEEE1284Key(id, key, L"*"));
  }
}

void checkMatching(const std::wstring& id) {
  const std::size_t middle = id.size() / 2;
  StrUtils::StrCmpWildcardNoCase(id.substr(0, middle), id.substr(middle));
  require(StrUtils::StrCmpWildcardNoCase(id, id) || id.find(L'*') != std::wstring::npos);
  require(StrUtils::StrCmpWildcardNoCase(L"*", id));
  require(StrUtils::CompareNumericFields(id.c_str(), id.c_str()) == 0);
  const int order = StrUtils::CompareNumericFields(id.c_str(), id.c_str() + middle);
  require(order == -StrUtils::CompareNumericFields(id.c_str() + middle, id.c_str()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::wstring id = deviceIdOf(std::string(data, data + size));
  for (const wchar_t* key : {L"MDL", L"LIC", L"FWVER", L""}) checkField(id, key);
  checkMatching(id);

  FakeBundle bundle;
  FakeFiles files;
  files.addDirectory("/resources");
  const LogRecorder recorder({.bundle = &bundle, .files = &files});
  platform::FileBytes image;
  unsigned int version = 4711;
  extractVersionFromIeee1284Id(id);
  require(!getFirmware(id, image, version));
  require(image.empty() && version == 4711);
  require(recorder.entries().back().priority == 3);
  return 0;
}
