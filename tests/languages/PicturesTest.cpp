// Pictures of every window in every language and look, for people. Each shows all states side by
// side: <test output>/languages/LANGUAGE-SIZE-THEME.png.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <algorithm>
#include <tuple>

#include "Places.h"
#include "Theme.h"
#include "Tour.h"

namespace {

constexpr std::size_t kPicturesInARow = 6;
constexpr int kGap = 16;
constexpr double kReadable = 4.5;
constexpr double kVisible = 3;

struct Picture {
  QString state;
  QImage image;
};

bool hasFrame(const QWidget& window) { return qobject_cast<const QMenu*>(&window) == nullptr; }

int titleHeight(const QWidget& window) { return 2 * window.fontMetrics().height(); }

// With the title bar that a window manager would draw.
QRect placeOf(const QWidget& window) {
  QRect place = window.geometry();
  if (hasFrame(window)) place.adjust(0, -titleHeight(window), 0, 0);
  return place;
}

void draw(QWidget& window, QPainter& painter) {
  const QRect place = placeOf(window);
  const QPalette colours = QApplication::palette();
  painter.fillRect(place, colours.color(QPalette::Mid));
  painter.setPen(colours.color(QPalette::WindowText));
  painter.setFont(window.font());
  if (hasFrame(window)) {
    const QRect bar(place.topLeft(), QSize(place.width(), titleHeight(window)));
    painter.drawText(bar, Qt::AlignCenter, window.windowTitle());
  }
  painter.drawPixmap(window.geometry().topLeft(), window.grab());
  painter.drawRect(place.adjusted(-1, -1, 0, 0));
}

QImage photograph() {
  const std::vector<QWidget*> windows = Tour::openWindows();
  QRect all;
  for (const QWidget* window : windows) all |= placeOf(*window);
  const double scale = windows.front()->devicePixelRatioF();
  QImage image(all.size() * scale, QImage::Format_RGB32);
  image.setDevicePixelRatio(scale);
  image.fill(Qt::darkCyan);
  QPainter painter(&image);
  painter.translate(-all.topLeft());
  for (QWidget* window : windows) draw(*window, painter);
  return image;
}

QSize sizeOf(const Picture& picture) { return picture.image.deviceIndependentSize().toSize(); }

QImage sideBySide(const std::vector<Picture>& pictures) {
  const int caption = QFontMetrics(QApplication::font()).height();
  const double scale = pictures.front().image.devicePixelRatio();
  std::vector<QPoint> corners;
  QSize all;
  int x = 0;
  int y = 0;
  for (const Picture& picture : pictures) {
    if (corners.size() % kPicturesInARow == 0) {
      x = 0;
      y = all.height();
    }
    corners.emplace_back(x, y);
    x += sizeOf(picture).width() + kGap;
    all = all.expandedTo({x, y + sizeOf(picture).height() + caption + kGap});
  }
  QImage sheet(all * scale, QImage::Format_RGB32);
  sheet.setDevicePixelRatio(scale);
  sheet.fill(Qt::darkGray);
  QPainter painter(&sheet);
  for (std::size_t place = 0; place < pictures.size(); ++place) {
    painter.drawText(corners[place] + QPoint(0, caption), pictures[place].state);
    painter.drawImage(corners[place] + QPoint(0, caption + kGap / 2), pictures[place].image);
  }
  return sheet;
}

void expectToRead(const QWidget& widget, const QString& text) {
  if (text.isEmpty() || !widget.isVisible() || !widget.isEnabled()) return;
  const QPalette& colours = widget.palette();
  EXPECT_GE(
      contrast(colours.color(widget.foregroundRole()), colours.color(widget.backgroundRole())),
      kReadable)
      << widget.objectName().toStdString() << ": " << text.toStdString();
}

// At the left end of the line through its middle.
void expectBorder(QWidget& widget) {
  const auto* const area = qobject_cast<QAbstractScrollArea*>(&widget);
  const bool hasBorder = qobject_cast<QPushButton*>(&widget) != nullptr ||
                         (area != nullptr && area->frameShape() != QFrame::NoFrame) ||
                         qobject_cast<QLineEdit*>(&widget) != nullptr ||
                         qobject_cast<QProgressBar*>(&widget) != nullptr;
  if (!hasBorder || !widget.isVisible() || !widget.isEnabled()) return;
  const QImage image = widget.grab().toImage();
  const QColor window = widget.palette().color(QPalette::Window);
  double most = 0;
  for (int x = 0; x < 3; ++x) {
    most = std::max(most, contrast(image.pixelColor(x, image.height() / 2), window));
  }
  EXPECT_GE(most, kVisible) << widget.window()->objectName().toStdString() << '/'
                            << widget.objectName().toStdString();
}

using Look = std::tuple<Language, Tour::Size, Theme>;

std::string nameOf(const Look& look) {
  const std::string sizes[] = {"100", "200"};
  const std::string themes[] = {"light", "dark", "high_contrast"};
  return std::string(std::get<Language>(look).name) + "_" +
         sizes[static_cast<int>(std::get<Tour::Size>(look))] + "_" +
         themes[static_cast<int>(std::get<Theme>(look))];
}

std::string inTestName(const testing::TestParamInfo<Look>& info) { return nameOf(info.param); }

class Pictures : public testing::TestWithParam<Look> {};

TEST_P(Pictures, ReadWell) {
  const auto& [language, size, theme] = GetParam();
  Tour tour(language, size);
  QApplication::setPalette(coloursOf(theme));
  std::vector<Picture> pictures;
  tour.visit([&](const std::string& state) {
    for (QWidget* window : Tour::openWindows()) {
      for (const QLabel* each : window->findChildren<QLabel*>()) expectToRead(*each, each->text());
      for (const QAbstractButton* each : window->findChildren<QAbstractButton*>()) {
        expectToRead(*each, each->text());
      }
      for (QWidget* each : window->findChildren<QWidget*>()) {
        if (each->window() == window) expectBorder(*each);
      }
    }
    pictures.push_back({QString::fromStdString(state), photograph()});
  });
  const std::string folder = builtFile("test-output/languages");
  std::filesystem::create_directories(folder);
  const std::string path = folder + "/" + nameOf(GetParam()) + ".png";
  EXPECT_TRUE(sideBySide(pictures).save(QString::fromStdString(path))) << path;
}

INSTANTIATE_TEST_SUITE_P(EveryLanguage, Pictures,
                         testing::Combine(testing::ValuesIn(kLanguages),
                                          testing::Values(Tour::Size::Normal),
                                          testing::Values(Theme::Light)),
                         inTestName);

const Language kScripts[] = {kLanguages[0], kLanguages[2], kLanguages[3], kLanguages[7]};

INSTANTIATE_TEST_SUITE_P(EveryLook, Pictures,
                         testing::Combine(testing::ValuesIn(kScripts),
                                          testing::Values(Tour::Size::Normal,
                                                          Tour::Size::DoubleScale),
                                          testing::Values(Theme::Dark, Theme::HighContrast)),
                         inTestName);

INSTANTIATE_TEST_SUITE_P(DoubleSize, Pictures,
                         testing::Combine(testing::ValuesIn(kScripts),
                                          testing::Values(Tour::Size::DoubleScale),
                                          testing::Values(Theme::Light)),
                         inTestName);

}  // namespace
