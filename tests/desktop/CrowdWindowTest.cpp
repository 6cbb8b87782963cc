// The window in a building full of printers.
#include <gmock/gmock.h>

#include "Crowd.h"
#include "DesktopTest.h"

namespace {

using testing::Contains;
using testing::SizeIs;
using testing::StartsWith;

class WindowInACrowd : public DesktopTest {
 protected:
  std::size_t listed() const {
    std::size_t count = 0;
    for (const std::string& entry : log()) count += entry.starts_with("Adding printer with ID=");
    return count;
  }

  bool waitUntilListed(std::size_t count) {
    return desktop::waitUntil([&] { return listed() >= count; }, std::chrono::seconds(60));
  }
};

TEST_F(WindowInACrowd, ListsItsPrintersAmong300AndAnswers) {
  Crowd crowd({"--count", "300", "--ours", "100"});
  startProgram();
  ASSERT_TRUE(waitUntilListed(100));
  cell("Printer 0001");
  cell("10.100.0.1");
  EXPECT_THAT(printersInList(), Contains(StartsWith("Printer 00")));
  EXPECT_THAT(printersInList(), testing::Not(Contains(StartsWith("Other"))));
  keepPicture("1-listed");
  click(cell("Printer 0002"));
  enabledButton("Download");
  press("End");
  click(cell("Printer 0100"));
  click(enabledButton("Download"));
  button("Download firmware");
  keepPicture("2-last-one-asked-for");
  answer("Do not download");
  crowd.withdraw();
  EXPECT_TRUE(waitUntilGone("table cell", "Printer 0100"));
  EXPECT_THAT(printersInList(), SizeIs(0));
  EXPECT_EQ(listed(), 100u);
  EXPECT_TRUE(programRuns());
}

}  // namespace
