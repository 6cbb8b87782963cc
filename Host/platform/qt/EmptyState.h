// What stands in the middle of a list without rows: a picture, a title, and the lines below it. The
// picture is left out where there is no room for it.
#pragma once

#include <QFont>
#include <QIcon>
#include <QPainter>
#include <QRect>
#include <QString>

namespace platform {

class EmptyState {
 public:
  // The first line of `text` is the title.
  EmptyState(const QString& text, QIcon picture, const QFont& font);

  // Whether the whole text, wrapped to its width, has room.
  bool fits(const QRect& room) const;

  // In the painter's colour; a text that does not fit shows its beginning.
  void draw(QPainter& painter, const QRect& room) const;

 private:
  struct Layout {
    QRect picture;
    QRect title;
    QRect lines;
  };
  Layout layoutIn(const QRect& room) const;

  QString mTitle;
  QString mLines;
  QIcon mPicture;
  QFont mTitleFont;
  QFont mFont;
};

}  // namespace platform
