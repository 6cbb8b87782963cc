#include "platform/qt/OutcomeLine.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTextBoundaryFinder>
#include <QTime>
#include <algorithm>
#include <new>

#include "platform/FailureCause.h"
#include "platform/qt/DownloadState.h"
#include "platform/qt/QtText.h"
#include "platform/qt/ShownLine.h"

namespace platform {
namespace {

void dropLastCharacter(QString& text) {
  QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
  characters.toEnd();
  text.truncate(std::max<qsizetype>(characters.toPreviousBoundary(), 0));
}

QString cutTo(const QString& shown, const QString& whole) {
  return shown.size() == whole.size() ? whole : shown + u'…';
}

// For a download that had no first step comes no alert. The one thing that can keep it from
// starting is that there is no memory.
QString sentenceOnNoStart() {
  const FailureCause cause = causeOfFailure({{LogHistory::kError, {}, "std::bad_alloc"}}, false);
  return QStringLiteral("%1: ") + QCoreApplication::translate("FailureCause", cause.cause) + u' ' +
         QCoreApplication::translate("FailureCause", cause.nextStep);
}

}  // namespace

void OutcomeLine::watch(const DownloadState& download) {
  connect(&download, &DownloadState::ended, this, [this, &download] {
    try {
      tellOutcome(download);
    } catch (const std::bad_alloc&) {
      return;  // the log has it
    }
  });
}

void OutcomeLine::tellOutcome(const DownloadState& download) {
  mSentence.clear();
  mPrinter = legible(toQString(download.printer()));
  mInfo = legible(toQString(download.info()));
  const bool succeeded = download.outcome() == DownloadOutcome::Succeeded && download.versions();
  if (download.outcome() == DownloadOutcome::Failed && !download.phase()) {
    mSentence = sentenceOnNoStart();
  } else if (succeeded) {
    const QString time =
        withLatinDigits(QLocale().toString(QTime::currentTime(), QLocale::ShortFormat));
    //: the line below the list; %1 is a printer like "Office (10.0.0.5)", %3 a time of day
    mSentence = QCoreApplication::translate("OutcomeLine", "%1 was updated to version %2 at %3.")
                    .arg(u"%1", QString::number(download.versions()->firmware), isolate(time));
  }
  const QString whole =
      mSentence.isEmpty() ? QString() : mSentence.arg(printerInSentence(mPrinter, mInfo));
  setToolTip(whole);
  setAccessibleName(withoutMarks(whole));
  setText({});
  say(fitting());
  if (auto* const mark = parentWidget()->findChild<QLabel*>(property("mark").toString())) {
    mark->setVisible(succeeded);
  }
}

int OutcomeLine::heightForWidth(int width) const { return heightOf(QStringLiteral("\n"), width); }

void OutcomeLine::resizeEvent(QResizeEvent* event) {
  LiveLabel::resizeEvent(event);
  setText(fitting());
}

QString OutcomeLine::fitting() const {
  if (mSentence.isEmpty()) return {};
  const auto isTooLong = [this](const QString& word) { return isLongWord(word, *this); };
  QString name = mPrinter;
  QString info = mInfo;
  for (;;) {
    const QString printer = printerInSentence(cutTo(name, mPrinter), cutTo(info, mInfo));
    QString line = breakable(mSentence.arg(printer), isTooLong);
    if (heightOf(line, width()) <= heightForWidth(width()) || name.size() + info.size() == 0)
      return line;
    dropLastCharacter(name.size() >= info.size() ? name : info);
  }
}

}  // namespace platform
