#include "platform/qt/Pictures.h"

#include <QApplication>
#include <QFileInfo>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <QStyle>
#include <QStyleOption>
#include <algorithm>
#include <map>
#include <utility>
#include <vector>

namespace platform {
namespace {

// Of most pictures one size is shown, and some are never shown: a file is read when it is first
// drawn. Where it is selected a picture looks as it always does; Qt's own engine would tint it.
class PictureFiles final : public QIconEngine {
 public:
  PictureFiles(const QString& name, const QString& directory) {
    for (const int size : {16, 24, 32, 48, 64, 96, 128, 192}) {
      const QString file = QStringLiteral("%1/%2-%3.png").arg(directory, name).arg(size);
      if (QFileInfo::exists(file)) mFiles.emplace(size, file);
    }
  }

  bool isNull() override { return mFiles.empty(); }
  QIconEngine* clone() const override { return new PictureFiles(*this); }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
    if (mFiles.empty()) return {};
    const int side = std::min(size.width(), size.height());
    QPixmap drawn = drawnAt(side);
    if (mode != QIcon::Disabled) return drawn;
    QStyleOption option;
    option.palette = QApplication::palette();
    return QApplication::style()->generatedIconPixmap(mode, drawn, &option);
  }

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    const qreal ratio = painter->device()->devicePixelRatio();
    QRect place = rect;
    place.setSize(QSize(1, 1).scaled(rect.size(), Qt::KeepAspectRatio));
    place.moveCenter(rect.center());
    painter->drawPixmap(place, pixmap((QSizeF(place.size()) * ratio).toSize(), mode, state));
  }

 private:
  // Scaled down from the next larger file. Without one, the largest as it is.
  QPixmap drawnAt(int side) {
    const auto known = mDrawn.find(side);
    if (known != mDrawn.end()) return known->second;
    auto file = mFiles.lower_bound(side);
    if (file == mFiles.end()) --file;
    QPixmap drawn(file->second);
    if (drawn.width() > side) {
      drawn = drawn.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    return mDrawn[side] = drawn;
  }

  std::map<int, QString> mFiles;  // by their size
  std::map<int, QPixmap> mDrawn;
};

}  // namespace

QIcon pictureNamed(const QString& name, const QString& directory) {
  return QIcon(new PictureFiles(name, directory));
}

}  // namespace platform
