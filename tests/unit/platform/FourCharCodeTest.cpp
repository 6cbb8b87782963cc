#include <gtest/gtest.h>

#include "platform/FourCharCode.h"

namespace {

using namespace platform::literals;

TEST(FourCharCode, FirstCharacterIsTheMostSignificant) {
  EXPECT_EQ("FwDl"_4cc, 0x4677446Cu);
  EXPECT_EQ("DlOk"_4cc, 0x446C4F6Bu);
  EXPECT_EQ("DlUd"_4cc, 0x446C5564u);
  EXPECT_EQ("DlNo"_4cc, 0x446C4E6Fu);
  EXPECT_EQ("----"_4cc, 0x2D2D2D2Du);
}

TEST(FourCharCode, BlanksCount) { EXPECT_EQ("No  "_4cc, 0x4E6F2020u); }

TEST(FourCharCode, BytesAreNotSignExtended) { EXPECT_EQ("\xFF\x80\x00\xFE"_4cc, 0xFF8000FEu); }

}  // namespace
