// Where the picture, the title and the lines of an empty list are drawn.
#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>

#include "QtWindows.h"
#include "platform/qt/EmptyState.h"

using platform::EmptyState;

namespace {

// The picture is red, and texts are black, on white.
class EmptyStateTest : public QtWindows {
 protected:
  static QIcon picture() {
    QPixmap red(64, 64);
    red.fill(Qt::red);
    return red;
  }

  static EmptyState state(const QString& text) { return {text, picture(), QApplication::font()}; }

  void draw(const EmptyState& state, const QRect& room) {
    mImage = QImage(400, 300, QImage::Format_RGB32);
    mImage.fill(Qt::white);
    QPainter painter(&mImage);
    painter.setPen(Qt::black);
    state.draw(painter, room);
  }

  // What is around all pixels that the picture, or that the texts have.
  QRect pictured() const {
    return around([](QColor pixel) { return pixel.red() > pixel.green() + 50; });
  }
  QRect written() const {
    return around([](QColor pixel) { return pixel.red() < 100 && pixel.green() < 100; });
  }

 private:
  template <typename Wanted>
  QRect around(Wanted wanted) const {
    QRect all;
    for (int y = 0; y < mImage.height(); ++y) {
      for (int x = 0; x < mImage.width(); ++x) {
        if (wanted(mImage.pixelColor(x, y))) all |= QRect(x, y, 1, 1);
      }
    }
    return all;
  }

  QImage mImage;
};

TEST_F(EmptyStateTest, PictureStandsAboveTheTextInTheMiddle) {
  draw(state("Title\nLine"), QRect(0, 0, 400, 300));
  EXPECT_EQ(pictured().size(), QSize(64, 64));
  EXPECT_LT(pictured().bottom(), written().top());
  EXPECT_NEAR(pictured().center().x(), 200, 1);
  EXPECT_NEAR((pictured().top() + written().bottom()) / 2.0, 150, 12);
}

TEST_F(EmptyStateTest, PictureMakesRoomForTheText) {
  const QRect low(0, 0, 400, 80);
  EXPECT_TRUE(state("Title\nLine").fits(low));
  draw(state("Title\nLine"), low);
  EXPECT_TRUE(pictured().isEmpty());
  EXPECT_TRUE(low.contains(written()));
}

TEST_F(EmptyStateTest, TextThatDoesNotFitShowsItsBeginning) {
  const QRect lowest(0, 100, 400, 30);
  EXPECT_FALSE(state("Title\nLine\nLine\nLine").fits(lowest));
  draw(state("Title\nLine\nLine\nLine"), lowest);
  EXPECT_GE(written().top(), 100);
  EXPECT_LT(written().top(), 110);
}

TEST_F(EmptyStateTest, TitleAloneMayNotFitEither) {
  EXPECT_TRUE(state("Title").fits(QRect(0, 0, 400, 40)));
  EXPECT_FALSE(state("Title").fits(QRect(0, 0, 400, 8)));
}

TEST_F(EmptyStateTest, LinesBeginBelowEachOther) {
  draw(state("T\n\u2022 a line that is long\n\u2022 b"), QRect(0, 0, 400, 300));
  EXPECT_GT(written().left(), 100);
  EXPECT_NEAR(written().center().x(), 200, 5);
}

}  // namespace
