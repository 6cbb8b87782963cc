// Which file of a picture is shown at which size, and when it is read.
#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QTemporaryDir>

#include "QtWindows.h"
#include "platform/qt/Pictures.h"

using platform::pictureNamed;

namespace {

class Pictures : public QtWindows {
 protected:
  void have(int size, QColor color) {
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(color);
    ASSERT_TRUE(image.save(fileOf(size)));
  }

  QString fileOf(int size) const { return mDirectory.filePath("lamp-%1.png").arg(size); }
  QIcon lamp() const { return pictureNamed("lamp", mDirectory.path()); }

  static QColor colorOf(const QPixmap& pixmap) { return pixmap.toImage().pixelColor(0, 0); }

  QTemporaryDir mDirectory;
};

TEST_F(Pictures, UnknownOneIsEmpty) { EXPECT_TRUE(lamp().isNull()); }

TEST_F(Pictures, FileIsReadWhenItIsFirstDrawn) {
  have(24, Qt::red);
  have(48, Qt::red);
  const QIcon icon = lamp();
  have(24, Qt::green);
  ASSERT_TRUE(QFile::remove(fileOf(48)));
  EXPECT_EQ(colorOf(icon.pixmap(QSize(24, 24), 1)), QColor(Qt::green));
  have(24, Qt::blue);
  EXPECT_EQ(colorOf(icon.pixmap(QSize(24, 24), 1)), QColor(Qt::green)) << "read a second time";
}

TEST_F(Pictures, EachSizeHasItsFile) {
  have(24, Qt::red);
  have(48, Qt::green);
  EXPECT_EQ(colorOf(lamp().pixmap(QSize(24, 24), 1)), QColor(Qt::red));
  const QPixmap doubled = lamp().pixmap(QSize(24, 24), 2);
  EXPECT_EQ(colorOf(doubled), QColor(Qt::green));
  EXPECT_EQ(doubled.size(), QSize(48, 48));
  EXPECT_EQ(doubled.devicePixelRatio(), 2);
}

TEST_F(Pictures, SizeBetweenTwoFilesComesFromTheLargerOne) {
  have(24, Qt::red);
  have(48, Qt::green);
  const QPixmap between = lamp().pixmap(QSize(36, 36), 1);
  EXPECT_EQ(colorOf(between), QColor(Qt::green));
  EXPECT_EQ(between.size(), QSize(36, 36));
}

TEST_F(Pictures, NoneIsBlownUp) {
  have(24, Qt::red);
  EXPECT_EQ(lamp().pixmap(QSize(100, 100), 1).size(), QSize(24, 24));
}

TEST_F(Pictures, SelectedOneLooksAsItAlwaysDoesAndADisabledOneDoesNot) {
  have(24, Qt::red);
  EXPECT_EQ(colorOf(lamp().pixmap(QSize(24, 24), 1, QIcon::Selected)), QColor(Qt::red));
  EXPECT_NE(colorOf(lamp().pixmap(QSize(24, 24), 1, QIcon::Disabled)), QColor(Qt::red));
}

TEST_F(Pictures, IsDrawnInTheMiddleOfItsPlaceAtTheScaleOfTheScreen) {
  have(24, Qt::red);
  have(48, Qt::green);
  QImage screen(160, 80, QImage::Format_RGB32);
  screen.setDevicePixelRatio(2);
  screen.fill(Qt::white);
  QPainter painter(&screen);
  lamp().paint(&painter, QRect(10, 10, 60, 24));
  painter.end();
  QRect drawn;
  for (int y = 0; y < screen.height(); ++y) {
    for (int x = 0; x < screen.width(); ++x) {
      if (screen.pixelColor(x, y) == QColor(Qt::green)) drawn |= QRect(x, y, 1, 1);
    }
  }
  EXPECT_EQ(drawn, QRect(56, 20, 48, 48));
}

}  // namespace
