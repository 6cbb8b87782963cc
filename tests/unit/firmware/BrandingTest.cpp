#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Branding.h"

namespace {

using Row = std::vector<std::wstring>;

std::vector<Row> rows(const Branding::FirmwareSpecList& specs) {
  std::vector<Row> rows;
  for (const auto& spec : specs)
    rows.push_back({spec.modelPattern, spec.licPattern, spec.fileName});
  return rows;
}

const std::vector<Row> kProductTable = {{L"KX350T", L"QT725013", L"product.brand.bin"},
                                        {L"KX350T", L"QT725090", L"product.tarn.bin"},
                                        {L"KX350T", L"", L"product.tarn.bin"}};

class BrandingTest : public testing::Test {
 protected:
  BrandingTest() { Branding::sFirmwareSpecList.clear(); }
  ~BrandingTest() override { Branding::sFirmwareSpecList.clear(); }

  static std::wstring fileFor(const std::wstring& model, const std::wstring& lic) {
    return Branding::getMatchingFirmwareFile(model, lic);
  }
};

TEST_F(BrandingTest, ConstantsAreTheProducts) {
  EXPECT_EQ(Branding::sUsbVendorId, 0x3A71);
  EXPECT_EQ(Branding::sUsbProductId, 0x0C28);
  EXPECT_EQ(Branding::sManufacturerStr.utf8(), "Veltra");
  EXPECT_EQ(Branding::sModelStr.utf8(), "KX350T");
  EXPECT_FALSE(Branding::sPromptBeforeUsbDownload);
}

TEST_F(BrandingTest, TableHasThreeRecordsInOrderOfPriority) {
  Branding::buildFirmwareSpecList();
  EXPECT_EQ(rows(Branding::sFirmwareSpecList), kProductTable);
}

TEST_F(BrandingTest, BuildingAgainAppends) {
  Branding::buildFirmwareSpecList();
  Branding::buildFirmwareSpecList();
  EXPECT_EQ(Branding::sFirmwareSpecList.size(), 6u);
}

TEST_F(BrandingTest, FirstSearchParsesTheTableAndTheNextDoesNot) {
  EXPECT_EQ(fileFor(L"KX350T", L"QT725013"), L"product.brand.bin");
  EXPECT_EQ(rows(Branding::sFirmwareSpecList), kProductTable);
  EXPECT_EQ(fileFor(L"KX350T", L"QT725013"), L"product.brand.bin");
  EXPECT_EQ(rows(Branding::sFirmwareSpecList), kProductTable);
}

TEST_F(BrandingTest, EachKnownLicSelectsItsFile) {
  EXPECT_EQ(fileFor(L"KX350T", L"QT725013"), L"product.brand.bin");
  EXPECT_EQ(fileFor(L"KX350T", L"QT725090"), L"product.tarn.bin");
  EXPECT_EQ(fileFor(L"KX350T", L""), L"product.tarn.bin");
}

TEST_F(BrandingTest, CaseDoesNotMatter) {
  EXPECT_EQ(fileFor(L"kx350t", L"qt725013"), L"product.brand.bin");
  EXPECT_EQ(fileFor(L"Kx350T", L"qT725090"), L"product.tarn.bin");
}

TEST_F(BrandingTest, UnknownLicSelectsNothing) {
  EXPECT_EQ(fileFor(L"KX350T", L"ZZ"), L"");
  EXPECT_EQ(fileFor(L"KX350T", L"QT72501"), L"");
  EXPECT_EQ(fileFor(L"KX350T", L"QT7250130"), L"");
  EXPECT_EQ(fileFor(L"KX350T", L" QT725013"), L"");
}

TEST_F(BrandingTest, OtherModelSelectsNothing) {
  EXPECT_EQ(fileFor(L"KX350T2", L"QT725013"), L"");
  EXPECT_EQ(fileFor(L"KX350", L""), L"");
  EXPECT_EQ(fileFor(L"", L""), L"");
}

TEST_F(BrandingTest, FoundNameStaysValid) {
  const std::wstring& found = Branding::getMatchingFirmwareFile(L"KX350T", L"");
  const std::wstring& none = Branding::getMatchingFirmwareFile(L"other", L"");
  Branding::getMatchingFirmwareFile(L"KX350T", L"QT725013");
  EXPECT_EQ(found, L"product.tarn.bin");
  EXPECT_EQ(none, L"");
  EXPECT_EQ(&none, &Branding::getMatchingFirmwareFile(L"another", L""));
}

TEST_F(BrandingTest, FoundNameStaysWhereItIsWhenTheListGrows) {
  const std::wstring& found = Branding::getMatchingFirmwareFile(L"KX350T", L"QT725013");
  for (int i = 0; i < 1000; ++i) Branding::buildFirmwareSpecList();
  EXPECT_EQ(&Branding::getMatchingFirmwareFile(L"KX350T", L"QT725013"), &found);
  EXPECT_EQ(found, L"product.brand.bin");
}

TEST_F(BrandingTest, FirstMatchingRecordWins) {
  Branding::sFirmwareSpecList = {{L"KX*", L"*", L"general.bin"},
                                 {L"KX350T", L"QT725013", L"special.bin"}};
  EXPECT_EQ(fileFor(L"KX350T", L"QT725013"), L"general.bin");
}

TEST_F(BrandingTest, StarSelectorMatchesEveryPrinter) {
  Branding::sFirmwareSpecList = Branding::parseFirmwareSpecs(L" * , any.bin");
  EXPECT_EQ(rows(Branding::sFirmwareSpecList), (std::vector<Row>{{L"*", L"*", L"any.bin"}}));
  EXPECT_EQ(fileFor(L"anything", L"at all"), L"any.bin");
  EXPECT_EQ(fileFor(L"", L""), L"any.bin");
}

TEST_F(BrandingTest, SelectorWithoutAFileNameIsIgnored) {
  EXPECT_EQ(rows(Branding::parseFirmwareSpecs(L"MDL:A;LIC:B;,a.bin,MDL:C;LIC:D;")),
            (std::vector<Row>{{L"A", L"B", L"a.bin"}}));
  EXPECT_TRUE(Branding::parseFirmwareSpecs(L"MDL:A;LIC:B;").empty());
}

TEST_F(BrandingTest, EmptyTableHasNoRecords) {
  EXPECT_TRUE(Branding::parseFirmwareSpecs(L"").empty());
}

TEST_F(BrandingTest, EmptyFieldsBetweenCommasAreSkipped) {
  EXPECT_EQ(rows(Branding::parseFirmwareSpecs(L",MDL:A;LIC:B;,,a.bin,")),
            (std::vector<Row>{{L"A", L"B", L"a.bin"}}));
}

TEST_F(BrandingTest, MissingKeyOfASelectorIsAnEmptyPattern) {
  EXPECT_EQ(rows(Branding::parseFirmwareSpecs(L"MDL:A;,a.bin,LIC:B;,b.bin,**,c.bin")),
            (std::vector<Row>{{L"A", L"", L"a.bin"}, {L"", L"B", L"b.bin"}, {L"", L"", L"c.bin"}}));
}

TEST_F(BrandingTest, PatternsOfASelectorAreNotTrimmed) {
  EXPECT_EQ(rows(Branding::parseFirmwareSpecs(L"\tMDL: A ;LIC:B;\t,\ta.bin\n")),
            (std::vector<Row>{{L" A ", L"B", L"a.bin"}}));
}

}  // namespace
