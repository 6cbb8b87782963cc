#include <gmock/gmock.h>

#include <fstream>

#include "TemporaryDirectory.h"
#include "describeFirmwareFiles.h"

namespace {

using testing::ElementsAre;

class FirmwareFilesReport : public testing::Test {
 protected:
  void write(const std::string& name, const std::string& bytes) {
    std::ofstream(mDirectory.path() / name, std::ios::binary) << bytes;
  }

  std::vector<std::string> lines() { return describeFirmwareFiles(mDirectory.path()); }

  TemporaryDirectory mDirectory;
};

// Three texts, the format's version and the block's length.
std::string block() {
  return std::string(
      "KX\0"
      "00000200\0"
      "x\0"
      "\x03\x0e",
      16);
}

TEST_F(FirmwareFilesReport, TellsLengthAndVersion) {
  write("product.brand.bin", std::string(1000, 'A') + block());
  write("product.tarn.bin", block());
  EXPECT_THAT(lines(), ElementsAre("product.brand.bin: 1016 bytes, version 200",
                                   "product.tarn.bin: 16 bytes, version 200"));
}

TEST_F(FirmwareFilesReport, TellsWhatIsWrong) {
  write("product.brand.bin", "no firmware at all");
  EXPECT_THAT(lines(),
              ElementsAre("product.brand.bin: 18 bytes, malformed", "product.tarn.bin: missing"));
}

TEST_F(FirmwareFilesReport, ABlockIsMalformedForOneReasonAlone) {
  write("product.brand.bin", std::string("KX\0"
                                         "00000200\0"
                                         "\x03\x0c",
                                         14));
  write("product.tarn.bin", std::string("KX\0"
                                        "\xFF\0"
                                        "x\0"
                                        "\x03\x07",
                                        9));
  EXPECT_THAT(lines(), ElementsAre("product.brand.bin: 14 bytes, malformed",
                                   "product.tarn.bin: 9 bytes, malformed"));
}

TEST_F(FirmwareFilesReport, AnEmptyFileIsMalformed) {
  write("product.brand.bin", "");
  std::filesystem::create_directory(mDirectory.path() / "product.tarn.bin");
  EXPECT_THAT(lines(),
              ElementsAre("product.brand.bin: 0 bytes, malformed", "product.tarn.bin: missing"));
}

}  // namespace
