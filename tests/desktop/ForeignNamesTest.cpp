// Printers whose names are as long as a name can be and made of what no window expects: what is
// shown of them in the list, in the question, during the download, in the alert and below the list.
#include <gtest/gtest.h>

#include <string>

#include "DesktopTest.h"

namespace {

using desktop::Node;

std::string times(int count, const std::string& text) {
  std::string all;
  while (count-- > 0) all += text;
  return all;
}

struct Name {
  std::string kind;
  std::string announced;
  std::string shown;
};

const Name kNames[] = {
    {"emoji", times(15, "\U0001F5A8") + "abc", times(15, "\U0001F5A8") + "abc"},
    {"overrides", times(20, "\u202E") + "abc", times(20, "\uFFFD") + "abc"},
    {"controls", times(30, "\n\x1B") + "abc", times(60, "\uFFFD") + "abc"},
};

class ForeignNames : public DesktopTest, public testing::WithParamInterface<Name> {
 protected:
  // A text of the window with that title that has the name is inside of the window.
  void expectInside(const std::string& title, const Node& text) {
    const auto size = desktop().windowSize(title);
    ASSERT_TRUE(size) << title;
    const Node::Rectangle place = text.extents();
    EXPECT_LE(place.width, size->first) << title;
    EXPECT_LE(place.height, size->second / 2) << title;
  }
};

TEST_P(ForeignNames, StayInTheirPlaces) {
  const auto& [kind, announced, shown] = GetParam();
  auto printer = startPrinter(announced, {"--fault", "fail-burn", "--burn-seconds", "3"});
  startProgram();
  cell(shown);
  keepPicture("1-list");
  askForUpdate(shown);
  keepPicture("2-question");
  expectInside("Confirm the Download", labelWith(shown + " ("));
  answer("Download firmware");
  progressBar();
  keepPicture("3-progress");
  expectInside("Updating Firmware", labelWith(shown + " ("));
  waitForActive("Download Failed");
  keepPicture("4-alert");
  expectInside("Download Failed", labelWith(shown + " ("));
  answer("Close");
  printer.reset();
  ASSERT_TRUE(waitUntilGone("table cell", shown));
  printer = startPrinter(announced);
  startUpdate(shown);
  const Node outcome = labelWith(" was updated to version 200 at ");
  EXPECT_TRUE(waitUntilGone("progress bar", "Download in progress"));
  keepPicture("5-outcome");
  EXPECT_NE(outcome.name().find(shown + " ("), std::string::npos) << outcome.name();
  expectInside("Printer Firmware Update", outcome);
}

INSTANTIATE_TEST_SUITE_P(Of, ForeignNames, testing::ValuesIn(kNames),
                         [](const auto& name) { return name.param.kind; });

}  // namespace
