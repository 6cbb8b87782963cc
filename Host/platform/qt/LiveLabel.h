// A label whose text changes while people watch (a LiveLabel in an interface file, promoted from
// QLabel): assistive technology reads each new text out as an alert, and leaves the focus where it
// is; the layout around it stays as it is, too. Plain text. Owned by its window.
#pragma once

#include <QLabel>
#include <QStringList>

namespace platform {

class LiveLabel : public QLabel {
 public:
  explicit LiveLabel(QWidget* parent);

  // What it shows, and has read out unless it says so already. An accessible name is read out in
  // its place.
  void say(const QString& text);

  // The texts that it may come to say: it is as high as the highest of them.
  void keepRoomFor(const QStringList& texts);

  int heightForWidth(int width) const override;
  QSize sizeHint() const override;

 protected:
  // Of the text in lines of that width.
  int heightOf(const QString& text, int width) const;

 private:
  QStringList mExpected;
};

}  // namespace platform
