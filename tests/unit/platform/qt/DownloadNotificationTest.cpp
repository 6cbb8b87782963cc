#include <gmock/gmock.h>

#include <QApplication>

#include "QtWindows.h"
#include "platform/qt/DownloadNotification.h"

namespace {

using platform::DownloadOutcome;
using platform::Text;
using testing::ElementsAre;
using testing::IsEmpty;

class DownloadNotificationTest : public QtWindows {
 protected:
  void download(const char* name, const char* info, DownloadOutcome outcome) {
    const auto text = [](const char* bytes) {
      return bytes == nullptr ? Text() : Text::fromUtf8(bytes);
    };
    notification->downloadBegan(text(name), text(info));
    notification->versionsKnown(100, 200);
    notification->downloadEnded(outcome);
  }

  std::vector<std::string> shown;
  std::unique_ptr<platform::DownloadObserver> notification =
      platform::makeDownloadNotification([this](const std::string& title, const std::string& text) {
        shown.push_back(title + "|" + text);
      });
};

TEST_F(DownloadNotificationTest, SaysHowADownloadHasEnded) {
  download("Office", "10.0.0.5", DownloadOutcome::Succeeded);
  download("Office", "10.0.0.5", DownloadOutcome::UpToDate);
  download("Office", "10.0.0.5", DownloadOutcome::Failed);
  EXPECT_THAT(
      shown,
      ElementsAre("Printer updated|\u2068Office\u2069 (\u206810.0.0.5\u2069) was updated to "
                  "version 200.",
                  "Printer already up to date|\u2068Office\u2069 (\u206810.0.0.5\u2069) already "
                  "runs this firmware or a newer one. Nothing was changed.",
                  "Printer not updated|The firmware of \u2068Office\u2069 (\u206810.0.0.5\u2069) "
                  "was not updated. The program's window says what to do."));
}

TEST_F(DownloadNotificationTest, SaysNothingToWhoIsLooking) {
  showMain();
  window("PrinterSelectWindow")->activateWindow();
  settle();
  ASSERT_NE(QApplication::activeWindow(), nullptr);
  download("Office", "10.0.0.5", DownloadOutcome::Succeeded);
  EXPECT_THAT(shown, IsEmpty());
}

TEST_F(DownloadNotificationTest, NamesCannotPassForTheRestOfTheText) {
  download("\u202E%2\n%1 <b>😀", "10.0.0.5", DownloadOutcome::Succeeded);
  EXPECT_THAT(shown, ElementsAre("Printer updated|\u2068\uFFFD%2\uFFFD%1 <b>😀\u2069 "
                                 "(\u206810.0.0.5\u2069) was updated to version 200."));
}

TEST_F(DownloadNotificationTest, SomePrintersHaveNoNameOrNoAddress) {
  download(nullptr, "SN42", DownloadOutcome::Succeeded);
  download("Office", nullptr, DownloadOutcome::Succeeded);
  EXPECT_THAT(shown, ElementsAre("Printer updated|\u2068A printer without a name\u2069 "
                                 "(\u2068SN42\u2069) was updated to version 200.",
                                 "Printer updated|\u2068Office\u2069 was updated to version 200."));
}

}  // namespace
