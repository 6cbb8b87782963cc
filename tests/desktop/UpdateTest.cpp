// Updates from the first click to the flash.
#include <gmock/gmock.h>

#include "DesktopTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UpdateFromTheWindow : public DesktopTest {};

TEST_F(UpdateFromTheWindow, ClicksFromTheListToTheFlash) {
  const auto printer = startPrinter("Office", {"--burn-seconds", "5"});
  startProgram();
  cell("Office");
  keepPicture("1-list");
  click(cell("Office"));
  enabledButton("Download");
  keepPicture("2-selected");
  click(button("Download"));
  button("Download firmware");
  keepPicture("3-question");
  answer("Download firmware");
  progressBar();
  labelWith("Office (");
  labelWith("Do not switch the printer off");
  keepPicture("4-progress");
  printer->waitFor("burn");
  EXPECT_EQ(burnedSha256(*printer), DEMO_BRAND_SHA256);
  EXPECT_TRUE(waitUntilGone("progress bar", "Download in progress"));
  EXPECT_TRUE(waitForLog("Cleaning up network transport."));
  EXPECT_EQ(timesLogged("Firmware download is complete, the printer will restart."), 1u);
  keepPicture("5-done");
  EXPECT_TRUE(programRuns());
  EXPECT_EQ(printer->stop(), 0);
}

TEST_F(UpdateFromTheWindow, KeysAloneDoTheSame) {
  const auto printer = startPrinter("Office");
  startProgram();
  cell("Office");
  press("Home");
  enabledButton("Download");
  press("Return");
  answerByKey("alt+d", "Download firmware");
  progressBar();
  printer->waitFor("burn");
  EXPECT_EQ(burnedSha256(*printer), DEMO_BRAND_SHA256);
  EXPECT_EQ(printer->stop(), 0);
}

TEST_F(UpdateFromTheWindow, AScreenReaderDoesTheSame) {
  const auto printer = startPrinter("Office");
  startProgram();
  click(cell("Office"));
  EXPECT_TRUE(enabledButton("Download").activate());
  EXPECT_TRUE(button("Download firmware").activate());
  printer->waitFor("burn");
  EXPECT_EQ(burnedSha256(*printer), DEMO_BRAND_SHA256);
  EXPECT_EQ(printer->stop(), 0);
}

TEST_F(UpdateFromTheWindow, TheOtherVariantGetsItsOwnFile) {
  const auto printer = startPrinter("Office", {"--lic", "QT725090"});
  startProgram();
  startUpdate("Office");
  printer->waitFor("burn");
  EXPECT_EQ(burnedSha256(*printer), DEMO_TARN_SHA256);
  EXPECT_EQ(printer->stop(), 0);
}

TEST_F(UpdateFromTheWindow, NoLeavesThePrinterAlone) {
  const auto printer = startPrinter("Office");
  startProgram();
  askForUpdate("Office");
  answer("Do not download");
  EXPECT_TRUE(enabledButton("Download").isEnabled());
  EXPECT_EQ(printer->stop(), 0);
  EXPECT_THAT(printer->entries("connected"), IsEmpty());
}

TEST_F(UpdateFromTheWindow, EscapeMeansNo) {
  const auto printer = startPrinter("Office");
  startProgram();
  askForUpdate("Office");
  answerByKey("Escape", "Do not download");
  EXPECT_EQ(printer->stop(), 0);
  EXPECT_THAT(printer->entries("connected"), IsEmpty());
}

TEST_F(UpdateFromTheWindow, ADoubleClickAsksAgainAfterTheButtonDid) {
  const auto printer = startPrinter("Office");
  startProgram();
  askForUpdate("Office");
  answerByKey("Escape", "Download firmware");
  waitForActive("Printer Firmware Update");
  click(cell("Office"), 2);
  button("Download firmware");
}

TEST_F(UpdateFromTheWindow, AnUpdatedPrinterReturnsAndIsUpToDate) {
  const auto printer = startPrinter("Office");
  startProgram();
  startUpdate("Office");
  printer->waitFor("ready", 2);
  EXPECT_TRUE(waitForLog("Adding printer with ID=2"));
  startUpdate("Office");
  labelWith("The printer is up to date.");
  keepPicture("up-to-date");
  EXPECT_TRUE(waitForLog("Firmware on the printer is already up-to-date."));
  answer("Close");
  EXPECT_TRUE(waitUntilGone("progress bar", "Download in progress"));
  EXPECT_EQ(printer->stop(), 0);
  EXPECT_EQ(printer->entries("burn").size(), 1u);
}

TEST_F(UpdateFromTheWindow, AFailedBurnIsSaidAndCanBeTriedAgain) {
  const auto printer =
      startPrinter("Office", {"--fault", "fail-burn", "--faulty-conversations", "1"});
  startProgram();
  startUpdate("Office");
  labelWith("The firmware was not updated.");
  keepPicture("failed-sheet");
  EXPECT_EQ(timesLogged("The firmware download failed on the printer."), 1u);
  answerByKey("Return", "Close");
  startUpdate("Office");
  printer->waitFor("burn", 2);
  EXPECT_TRUE(waitForLog("Firmware download is complete, the printer will restart."));
}

TEST_F(UpdateFromTheWindow, AMissingFirmwareFileIsAFailure) {
  const auto printer = startPrinter("Office");
  const auto program = copyInstallation();
  std::filesystem::remove(program.parent_path().parent_path() / "share/fwupdate/product.brand.bin");
  startProgramAt(program);
  startUpdate("Office");
  labelWith("The firmware was not updated.");
  EXPECT_EQ(timesLogged("Failed to make file system reference for firmware file. <status=2 => "
                        "ENOENT; desc: No such file or directory>"),
            1u);
  EXPECT_EQ(timesLogged("Failed to load firmware file."), 1u);
  EXPECT_EQ(printer->stop(), 0);
  EXPECT_THAT(printer->entries("burn"), IsEmpty());
}

TEST_F(UpdateFromTheWindow, APrinterThatRefusesIsAFailure) {
  const auto printer = startPrinter("Office", {"--fault", "refuse"});
  startProgram();
  startUpdate("Office");
  labelWith("The firmware was not updated.");
  EXPECT_EQ(timesLogged("General runtime error occurred during async task: Unable to write data"),
            1u);
}

TEST_F(UpdateFromTheWindow, OnlyTheSelectedOneOfTwoIsUpdated) {
  const auto second = startPrinter("Office B");
  const auto first = startPrinter("Office A");
  startProgram();
  cell("Office A");
  cell("Office B");
  EXPECT_THAT(printersInList(), ElementsAre("Office A", "Office B"));
  keepPicture("two-printers");
  startUpdate("Office B");
  second->waitFor("burn");
  EXPECT_EQ(first->stop(), 0);
  EXPECT_THAT(first->entries("connected"), IsEmpty());
}

TEST_F(UpdateFromTheWindow, APrinterOfAnotherModelIsNotListed) {
  const auto other = startPrinter("Other", {"--model", "KX350"});
  const auto printer = startPrinter("Office");
  startProgram();
  cell("Office");
  EXPECT_TRUE(waitForLog("-> Not matched, discarding"));
  EXPECT_THAT(printersInList(), ElementsAre("Office"));
}

TEST_F(UpdateFromTheWindow, APrinterThatGoesAwayLeavesTheList) {
  auto printer = startPrinter("Office");
  startProgram();
  click(cell("Office"));
  enabledButton("Download");
  printer.reset();
  EXPECT_TRUE(waitForLog("Removing printer with ID=1"));
  EXPECT_TRUE(
      desktop::waitUntil([&] { return printersInList().empty(); }, std::chrono::seconds(20)));
  EXPECT_FALSE(button("Download").isEnabled());
  keepPicture("empty-list");
}

TEST_F(UpdateFromTheWindow, APrinterThatIsSwitchedOnLaterAppears) {
  startProgram();
  EXPECT_THAT(printersInList(), IsEmpty());
  EXPECT_FALSE(button("Download").isEnabled());
  const auto printer = startPrinter("Office");
  cell("Office");
  cell("Bonjour");
}

}  // namespace
