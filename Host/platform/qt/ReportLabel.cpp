#include "platform/qt/ReportLabel.h"

#include <QCoreApplication>
#include <optional>

#include "platform/FailureCause.h"
#include "platform/Platform.h"
#include "platform/qt/DownloadState.h"
#include "platform/qt/QtText.h"
#include "platform/qt/ShownLine.h"
#include "platform/qt/VersionsText.h"

namespace platform {
namespace {

constexpr qsizetype kLongestSubject = 160;  // the log has the rest of an entry

bool firmwareWasSent(const DownloadState& download) {
  return download.phase() == DownloadPhase::BurningFirmware ||
         (download.bytesInAll() != 0 && download.bytesHandedOver() == download.bytesInAll());
}

std::optional<FailureCause> causeIn(const DownloadState& download) {
  const LogHistory* const history = current().logHistory;
  if (history == nullptr) return std::nullopt;
  const auto entries = history->entriesOfDownload();
  if (download.outcome() == DownloadOutcome::UpToDate) return causeOfNothingToDo(entries);
  return causeOfFailure(entries, firmwareWasSent(download));
}

QString printerOf(const DownloadState& download) {
  const QString name = toQString(download.printer());
  const QString info = toQString(download.info());
  return info.isEmpty() ? name : name + " (" + info + u')';
}

// Null where the cause has no such sentence.
QString sentence(const char* text, const std::string& subject) {
  if (text == nullptr || *text == '\0') return {};
  QString translated = QCoreApplication::translate("FailureCause", text);
  if (!translated.contains("%1")) return translated;
  const QString whole = QString::fromStdString(subject);
  const QString shown = legible(whole.left(kLongestSubject));
  return translated.arg(whole.size() > kLongestSubject ? shown + u'…' : shown);
}

QString reported(const QString& what, const DownloadState& download) {
  if (what == u"printer") return printerOf(download);
  if (what == u"versions") return versionsText(download);
  const std::optional<FailureCause> cause = causeIn(download);
  if (!cause) return {};
  if (what == u"headline") return sentence(cause->headline, cause->subject);
  if (what == u"cause") return sentence(cause->cause, cause->subject);
  return sentence(cause->nextStep, cause->subject);
}

}  // namespace

void ReportLabel::watch(const DownloadState& download) {
  const QString line = reported(property("reports").toString(), download);
  if (!line.isEmpty()) showLine(*this, line);
  setVisible(!text().isEmpty());
}

}  // namespace platform
