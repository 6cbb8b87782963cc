#include "platform/qt/DownloadNotification.h"

#include <QApplication>
#include <QString>
#include <utility>

#include "platform/qt/QtText.h"

namespace platform {
namespace {

struct Message {
  QString title;
  QString text;
};

class DownloadNotification final : public DownloadObserver {
 public:
  explicit DownloadNotification(
      std::function<void(const std::string& title, const std::string& text)> show)
      : mShow(std::move(show)) {}

  void downloadBegan(const Text& printer, const Text& info) noexcept override {
    mPrinter = printer;
    mInfo = info;
  }

  void versionsKnown(unsigned int, unsigned int firmware) noexcept override {
    mFirmware = firmware;
  }

  void downloadEnded(DownloadOutcome outcome) noexcept override {
    if (QApplication::activeWindow() != nullptr) return;
    const Message message = messageOf(outcome);
    mShow(message.title.toStdString(), message.text.toStdString());
  }

  void phaseBegan(DownloadPhase, std::chrono::milliseconds) noexcept override {}
  void bytesHandedOver(std::size_t, std::size_t) noexcept override {}
  void errorLogged(const std::string&) noexcept override {}

 private:
  Message messageOf(DownloadOutcome outcome) const {
    const QString printer =
        printerInSentence(legible(toQString(mPrinter)), legible(toQString(mInfo)));
    switch (outcome) {
      case DownloadOutcome::Succeeded:
        //: Title of a desktop notification after a download.
        return {QCoreApplication::translate("DownloadNotification", "Printer updated"),
                //: Text of a desktop notification; %1 is the printer, like "Office (10.0.0.5)", %2
                //: the number of the firmware's version.
                QCoreApplication::translate("DownloadNotification", "%1 was updated to version %2.")
                    .arg(printer, QString::number(mFirmware))};
      case DownloadOutcome::UpToDate:
        //: Title of a desktop notification after a download that was not needed.
        return {QCoreApplication::translate("DownloadNotification", "Printer already up to date"),
                //: Text of a desktop notification; %1 is the printer, like "Office (10.0.0.5)".
                QCoreApplication::translate(
                    "DownloadNotification",
                    "%1 already runs this firmware or a newer one. Nothing was changed.")
                    .arg(printer)};
      case DownloadOutcome::Failed:
        break;
    }
    //: Title of a desktop notification after a download that failed.
    return {
        QCoreApplication::translate("DownloadNotification", "Printer not updated"),
        //: Text of a desktop notification; %1 is the printer, like "Office (10.0.0.5)".
        QCoreApplication::translate("DownloadNotification",
                                    "The firmware of %1 was not updated. The program's window says "
                                    "what to do.")
            .arg(printer)};
  }

  const std::function<void(const std::string& title, const std::string& text)> mShow;
  Text mPrinter;
  Text mInfo;
  unsigned int mFirmware = 0;
};

}  // namespace

std::unique_ptr<DownloadObserver> makeDownloadNotification(
    std::function<void(const std::string& title, const std::string& text)> show) {
  return std::make_unique<DownloadNotification>(std::move(show));
}

}  // namespace platform
