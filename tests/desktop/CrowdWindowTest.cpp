// The window in a building full of printers.
#include <gmock/gmock.h>

#include "Crowd.h"
#include "DesktopTest.h"

namespace {

using testing::Contains;
using testing::StartsWith;

class WindowInACrowd : public DesktopTest {
 protected:
  std::size_t said(const std::string& beginning) const {
    std::size_t count = 0;
    for (const std::string& entry : log()) count += entry.starts_with(beginning);
    return count;
  }

  bool waitUntilSaid(const std::string& beginning, std::size_t count) const {
    return desktop::waitUntil([&] { return said(beginning) >= count; }, std::chrono::seconds(60));
  }

  const std::string kAdded = "Adding printer with ID=";
  const std::string kRemoved = "Removing printer with ID=";
};

TEST_F(WindowInACrowd, ListsItsPrintersAmong300AndAnswers) {
  Crowd crowd({"--count", "300", "--ours", "100"});
  startProgram();
  ASSERT_TRUE(waitUntilSaid(kAdded, 100));
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
  EXPECT_TRUE(waitUntilSaid(kRemoved, 100));
  EXPECT_TRUE(
      desktop::waitUntil([&] { return printersInList().empty(); }, std::chrono::seconds(60)));
  EXPECT_EQ(said(kAdded), 100u);
  EXPECT_EQ(said(kRemoved), 100u);
  EXPECT_TRUE(programRuns());
}

}  // namespace
