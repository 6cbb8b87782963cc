#include "platform/qt/EmptyState.h"

#include <QFontMetrics>
#include <algorithm>
#include <utility>

namespace platform {
namespace {

constexpr int kLargePicture = 64;
constexpr qreal kPictureOpacity = 0.6;

constexpr int kTitleFlags = Qt::AlignHCenter | Qt::TextWordWrap;
constexpr int kLinesFlags = Qt::AlignLeading | Qt::TextWordWrap;

QFont bold(QFont font) {
  font.setBold(true);
  return font;
}

QRect withMargins(const QRect& room, int margin) { return room.adjusted(margin, 0, -margin, 0); }

}  // namespace

EmptyState::EmptyState(const QString& text, QIcon picture, const QFont& font)
    : mTitle(text.section(u'\n', 0, 0)),
      mLines(text.section(u'\n', 1)),
      mPicture(std::move(picture)),
      mTitleFont(bold(font)),
      mFont(font) {}

bool EmptyState::fits(const QRect& room) const {
  const Layout layout = layoutIn(room);
  return room.contains(layout.title) && (mLines.isEmpty() || room.contains(layout.lines));
}

void EmptyState::draw(QPainter& painter, const QRect& room) const {
  const Layout layout = layoutIn(room);
  if (!layout.picture.isEmpty()) {
    painter.setOpacity(kPictureOpacity);
    mPicture.paint(&painter, layout.picture);
    painter.setOpacity(1);
  }
  painter.setFont(mTitleFont);
  painter.drawText(layout.title, kTitleFlags, mTitle);
  painter.setFont(mFont);
  painter.drawText(layout.lines, kLinesFlags, mLines);
}

EmptyState::Layout EmptyState::layoutIn(const QRect& room) const {
  const QFontMetrics font(mFont);
  const int gap = font.height() / 2;
  const QRect wide = withMargins(room, font.height());
  Layout layout;
  layout.title = QFontMetrics(mTitleFont).boundingRect(wide, kTitleFlags, mTitle);
  int height = layout.title.height();
  if (!mLines.isEmpty()) {
    layout.lines = font.boundingRect(wide, kLinesFlags, mLines);
    layout.lines.moveLeft(wide.center().x() - layout.lines.width() / 2);
    height += gap + layout.lines.height();
  }
  const int withPicture = height + kLargePicture + gap;
  const bool hasPicture = !mPicture.isNull() && withPicture <= room.height();
  int top = std::max(room.top(), room.center().y() - (hasPicture ? withPicture : height) / 2);
  if (hasPicture) {
    layout.picture =
        QRect(room.left() + (room.width() - kLargePicture) / 2, top, kLargePicture, kLargePicture);
    top += kLargePicture + gap;
  }
  layout.title.moveTop(top);
  layout.lines.moveTop(layout.title.bottom() + 1 + gap);
  return layout;
}

}  // namespace platform
