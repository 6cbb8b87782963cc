#include "platform/qt/DownloadProgress.h"

#include <QCoreApplication>
#include <QLocale>
#include <chrono>
#include <optional>

#include "platform/qt/DownloadState.h"
#include "platform/qt/LiveLabel.h"
#include "platform/qt/ProgressBar.h"
#include "platform/qt/QtText.h"
#include "platform/qt/VersionsText.h"

using namespace std::chrono_literals;
using std::chrono::milliseconds;

namespace platform {
namespace {

constexpr auto kRefreshEvery = 250ms;

// Nobody on a network is silent for so long who is well.
constexpr auto kSilence = 30s;

QString sending(std::size_t bytes) {
  const QString amount = withLatinDigits(
      QLocale().formattedDataSize(static_cast<qint64>(bytes), 1, QLocale::DataSizeSIFormat));
  //: what happens now; %1 is an amount of data with its unit, like 8.0 MB
  return QCoreApplication::translate("DownloadProgress", "Sending %1").arg(isolate(amount));
}

QString burning(milliseconds bound) {
  const auto seconds = static_cast<int>(std::chrono::ceil<std::chrono::seconds>(bound).count());
  if (seconds < 60) {
    //: what happens now; the time is below a minute
    return QCoreApplication::translate(
        "DownloadProgress", "The printer is writing its memory: this may take up to %n second(s)",
        nullptr, seconds);
  }
  const auto minutes = static_cast<int>(std::chrono::ceil<std::chrono::minutes>(bound).count());
  //: what happens now
  return QCoreApplication::translate(
      "DownloadProgress", "The printer is writing its memory: this may take up to %n minute(s)",
      nullptr, minutes);
}

QString burningForTooLong() {
  //: what happens now: the time for it is over, and the printer has not answered
  return QCoreApplication::translate("DownloadProgress",
                                     "The printer takes longer than expected to write its memory");
}

QString connecting() {
  //: what happens now
  return QCoreApplication::translate("DownloadProgress", "Connecting to the printer");
}

QString askingForVersion() {
  //: what happens now: the version is that of the printer's firmware
  return QCoreApplication::translate("DownloadProgress", "Asking the printer for its version");
}

QString choosingFirmware() {
  //: what happens now
  return QCoreApplication::translate("DownloadProgress", "Choosing the firmware");
}

QString adviceOnNoAnswer() {
  //: advice while a printer is asked for its version
  return QCoreApplication::translate(
      "DownloadProgress",
      "The printer has not answered for more than 30 seconds. Check that it is switched on, "
      "connected and not busy. No firmware has been sent yet: you can quit and try again.");
}

QString adviceOnNothingTaken() {
  //: advice while firmware is being sent
  return QCoreApplication::translate(
      "DownloadProgress",
      "The printer has not taken any data for more than 30 seconds. Leave it switched on, and "
      "check that it is connected. If nothing changes in a few minutes, quit and try again.");
}

QString adviceOnNoEnd() {
  //: advice when the printer has all of the firmware, and its time for writing is over
  return QCoreApplication::translate(
      "DownloadProgress",
      "The printer has not answered since it got the firmware. Leave it switched on: it may still "
      "be writing. Once it is ready, quit and update it again to see whether it is up to date.");
}

bool isOverdue(const DownloadState& download) {
  return download.phase() == DownloadPhase::BurningFirmware &&
         download.silence() >= download.bound();
}

QString phaseOf(const DownloadState& download) {
  switch (download.phase().value_or(DownloadPhase::Connecting)) {
    case DownloadPhase::Connecting:
      return connecting();
    case DownloadPhase::AskingForVersion:
      return askingForVersion();
    case DownloadPhase::ChoosingFirmware:
      return choosingFirmware();
    case DownloadPhase::SendingFirmware:
      return sending(download.bytesInAll());
    case DownloadPhase::BurningFirmware:
      return isOverdue(download) ? burningForTooLong() : burning(download.bound());
  }
  return {};
}

// None where no end is known: also while the printer takes the last of what the host has taken.
std::optional<double> partOf(const DownloadState& download) {
  if (download.phase() == DownloadPhase::BurningFirmware && !isOverdue(download)) {
    return static_cast<double>(download.silence().count()) /
           static_cast<double>(download.bound().count());
  }
  if (download.phase() == DownloadPhase::SendingFirmware &&
      download.bytesHandedOver() < download.bytesInAll()) {
    return static_cast<double>(download.bytesHandedOver()) /
           static_cast<double>(download.bytesInAll());
  }
  return std::nullopt;
}

// None while the printer is as silent as it may be.
std::optional<QString> adviceOn(const DownloadState& download) {
  const DownloadPhase phase = download.phase().value_or(DownloadPhase::Connecting);
  const milliseconds usual = phase == DownloadPhase::BurningFirmware ? download.bound() : 0ms;
  if (download.silence() < usual + kSilence) return std::nullopt;
  switch (phase) {
    case DownloadPhase::Connecting:
    case DownloadPhase::AskingForVersion:
      return adviceOnNoAnswer();
    case DownloadPhase::ChoosingFirmware:
    case DownloadPhase::SendingFirmware:
      return adviceOnNothingTaken();
    case DownloadPhase::BurningFirmware:
      return adviceOnNoEnd();
  }
  return std::nullopt;
}

}  // namespace

DownloadProgress::DownloadProgress(QWidget* parent) : QWidget(parent) {
  mTimer.setInterval(kRefreshEvery);
  connect(&mTimer, &QTimer::timeout, this, &DownloadProgress::refresh);
}

// The amounts and times are longer than what comes. For the long advice there is no room kept: the
// sheet grows when it comes.
void DownloadProgress::watch(const DownloadState& download) {
  mVersions = dynamic_cast<LiveLabel*>(findChild<QLabel*>(QStringLiteral("versions")));
  mPhase = dynamic_cast<LiveLabel*>(findChild<QLabel*>(QStringLiteral("phase")));
  mBar = dynamic_cast<ProgressBar*>(findChild<QProgressBar*>(QStringLiteral("progress")));
  mAdvice = dynamic_cast<LiveLabel*>(findChild<QLabel*>(QStringLiteral("advice")));
  if (mVersions == nullptr || mPhase == nullptr || mBar == nullptr || mAdvice == nullptr) return;
  mDownload = &download;
  mUsualAdvice = mAdvice->text();
  mVersions->keepRoomFor({longVersionsText()});
  mPhase->keepRoomFor({connecting(), askingForVersion(), choosingFirmware(), sending(888'800'000),
                       burning(58s), burning(88min), burningForTooLong()});
  connect(&download, &DownloadState::began, this, &DownloadProgress::begin);
  connect(&download, &DownloadState::versionsChanged, this, &DownloadProgress::refresh);
  connect(&download, &DownloadState::phaseChanged, this, &DownloadProgress::refresh);
  connect(&download, &DownloadState::bytesChanged, this, &DownloadProgress::refresh);
  connect(&download, &DownloadState::ended, this, &DownloadProgress::end);
}

void DownloadProgress::begin() {
  mTimer.start();
  refresh();
}

// How much is to be sent follows the phase at once.
void DownloadProgress::refresh() {
  mVersions->say(versionsText(*mDownload));
  const bool isSending = mDownload->phase() == DownloadPhase::SendingFirmware;
  if (isSending && mDownload->bytesInAll() == 0) return;
  mPhase->say(phaseOf(*mDownload));
  const QString description = withoutMarks(mPhase->text());
  if (mBar->accessibleDescription() != description) mBar->setAccessibleDescription(description);
  mAdvice->say(adviceOn(*mDownload).value_or(mUsualAdvice));
  if (const auto part = partOf(*mDownload)) {
    mBar->showPart(*part);
  } else {
    mBar->showBusy();
  }
}

// The bar stops where it is. Behind an alert, it would move on.
void DownloadProgress::end() {
  mTimer.stop();
  mBar->showPart(mBar->part());
}

}  // namespace platform
