// The windows in every language: nothing is cut off, no key is taken twice, and what is written
// from right to left is arranged that way.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QFontInfo>
#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QTreeView>
#include <algorithm>
#include <set>

#include "Tour.h"

namespace {

class WindowsIn : public testing::TestWithParam<Language> {};

std::string nameOf(const QWidget& widget, const QString& text) {
  return (widget.window()->objectName() + '/' + widget.objectName() + ": \"" + text + '"')
      .toStdString();
}

void expectRoom(const QWidget& widget, const QString& text, QSize needed) {
  EXPECT_LE(needed.width(), widget.width()) << nameOf(widget, text);
  EXPECT_LE(needed.height(), widget.height()) << nameOf(widget, text);
}

void expectToFit(const QLabel& label) {
  if (label.text().isEmpty()) return;
  if (!label.wordWrap()) return expectRoom(label, label.text(), label.sizeHint());
  // The longest word decides how narrow it may be.
  expectRoom(label, label.text(),
             {label.minimumSizeHint().width(), label.heightForWidth(label.width())});
}

void expectToFit(const QHeaderView& header) {
  for (int column = 0; column < header.count(); ++column) {
    const QString title = header.model()->headerData(column, Qt::Horizontal).toString();
    EXPECT_LE(header.sectionSizeHint(column), header.sectionSize(column)) << nameOf(header, title);
  }
  EXPECT_LE(header.length(), header.viewport()->width()) << nameOf(header, "all columns");
}

void expectToFit(QMenuBar& bar) {
  for (QAction* action : bar.actions()) {
    const QRect place = bar.actionGeometry(action);
    EXPECT_FALSE(place.isEmpty()) << nameOf(bar, action->text());
    EXPECT_TRUE(bar.rect().contains(place)) << nameOf(bar, action->text());
  }
}

// The text in the middle of an empty list.
void expectPlaceholderToFit(const QTreeView& list) {
  if (list.model()->rowCount() > 0) return;
  const int margin = list.fontMetrics().height();
  const QRect room = list.viewport()->rect().adjusted(margin, 0, -margin, 0);
  const QString text = list.accessibleDescription();
  const QRect needed =
      list.fontMetrics().boundingRect(room, Qt::AlignCenter | Qt::TextWordWrap, text);
  EXPECT_TRUE(list.viewport()->rect().contains(needed)) << nameOf(list, text);
}

void expectToFit(QWidget& widget) {
  if (auto* const label = qobject_cast<QLabel*>(&widget)) expectToFit(*label);
  if (auto* const button = qobject_cast<QAbstractButton*>(&widget)) {
    if (!button->text().isEmpty()) expectRoom(*button, button->text(), button->sizeHint());
  }
  if (auto* const list = qobject_cast<QTreeView*>(&widget)) expectPlaceholderToFit(*list);
  if (auto* const header = qobject_cast<QHeaderView*>(&widget)) expectToFit(*header);
  if (auto* const bar = qobject_cast<QMenuBar*>(&widget)) expectToFit(*bar);
  const QRect place(widget.mapTo(widget.window(), QPoint()), widget.size());
  EXPECT_TRUE(widget.window()->rect().contains(place)) << nameOf(widget, "");
}

// With a frame around it, whose title bar has the icon, the title and three buttons.
void expectWindowToFit(const QWidget& window) {
  const int line = window.fontMetrics().height();
  const QSize screen = window.screen()->availableSize();
  EXPECT_LE(window.width(), screen.width()) << nameOf(window, "");
  EXPECT_LE(window.height() + 2 * line, screen.height()) << nameOf(window, "");
  if (qobject_cast<const QMenu*>(&window) != nullptr) return;
  EXPECT_LE(window.fontMetrics().horizontalAdvance(window.windowTitle()) + 8 * line, window.width())
      << nameOf(window, window.windowTitle());
}

void expectAllToFit(const Language& language, Tour::Size size) {
  Tour tour(language, size);
  tour.visit([](const std::string&) {
    for (QWidget* window : Tour::openWindows()) {
      expectWindowToFit(*window);
      for (QWidget* widget : window->findChildren<QWidget*>()) {
        if (widget->isVisible() && widget->window() == window) expectToFit(*widget);
      }
    }
  });
}

TEST_P(WindowsIn, TextsFit) { expectAllToFit(GetParam(), Tour::Size::Normal); }

TEST_P(WindowsIn, TextsFitInDoubleSize) { expectAllToFit(GetParam(), Tour::Size::DoubleScale); }

// However wide the characters of its script are on average.
TEST_P(WindowsIn, NoWindowIsWiderThanInOtherLanguages) {
  Tour tour(GetParam());
  tour.visit([](const std::string&) {
    for (const QWidget* window : Tour::openWindows()) {
      EXPECT_LE(window->width(), 52 * window->fontInfo().pixelSize()) << nameOf(*window, "");
    }
  });
}

// The texts by which the keyboard reaches something in an open window or menu.
QStringList textsWithKeys(const QWidget& window) {
  QStringList texts;
  const auto* const menu = qobject_cast<const QMenu*>(&window);
  if (menu != nullptr) {
    for (const QAction* action : menu->actions()) texts.append(action->text());
    return texts;
  }
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    if (!widget->isVisible() || widget->window() != &window) continue;
    if (const auto* const button = qobject_cast<const QAbstractButton*>(widget)) {
      texts.append(button->text());
    } else if (const auto* const label = qobject_cast<const QLabel*>(widget)) {
      if (label->buddy() != nullptr) texts.append(label->text());
    } else if (const auto* const bar = qobject_cast<const QMenuBar*>(widget)) {
      for (const QAction* action : bar->actions()) texts.append(action->text());
    }
  }
  return texts;
}

TEST_P(WindowsIn, NoKeyIsTakenTwice) {
  Tour tour(GetParam());
  tour.visit([](const std::string&) {
    for (const QWidget* window : Tour::openWindows()) {
      std::set<QKeySequence> taken;
      for (const QString& text : textsWithKeys(*window)) {
        const QKeySequence key = QKeySequence::mnemonic(text);
        if (key.isEmpty()) continue;
        EXPECT_TRUE(taken.insert(key).second) << nameOf(*window, text);
      }
    }
  });
}

TEST_P(WindowsIn, WhatIsWrittenFromRightToLeftIsArrangedThatWay) {
  const bool mirrored = GetParam().name == std::string("ar");
  Tour tour(GetParam());
  tour.visit([&](const std::string&) {
    EXPECT_EQ(QGuiApplication::layoutDirection(), mirrored ? Qt::RightToLeft : Qt::LeftToRight);
    for (QWidget* window : Tour::openWindows()) {
      const auto* const button = window->findChild<QPushButton*>("download");
      const auto* const icon = window->findChild<QLabel*>("icon");
      const QWidget* const aside = button != nullptr ? static_cast<const QWidget*>(button) : icon;
      if (aside == nullptr) continue;
      const int centre = aside->mapTo(window, aside->rect().center()).x();
      const bool isOnTheLeft = centre < window->width() / 2;
      EXPECT_EQ(isOnTheLeft, (button != nullptr) == mirrored) << nameOf(*aside, "");
    }
  });
}

void collect(const QString& text, std::set<QString>& texts) {
  if (text.count(u' ') > 1) texts.insert(text);
}

// What can be read or heard in the open windows, from three words on.
void collectTexts(std::set<QString>& texts) {
  for (QWidget* window : Tour::openWindows()) {
    collect(window->windowTitle(), texts);
    for (const QAction* action : window->findChildren<QAction*>()) collect(action->text(), texts);
    for (QWidget* widget : window->findChildren<QWidget*>()) {
      collect(widget->accessibleName(), texts);
      collect(widget->accessibleDescription(), texts);
      if (const auto* const label = qobject_cast<QLabel*>(widget)) collect(label->text(), texts);
      if (const auto* const button = qobject_cast<QAbstractButton*>(widget)) {
        collect(button->text(), texts);
      }
      if (const auto* const header = qobject_cast<QHeaderView*>(widget)) {
        for (int column = 0; column < header->count(); ++column) {
          collect(header->model()->headerData(column, Qt::Horizontal).toString(), texts);
        }
      }
    }
  }
}

std::set<QString> textsIn(const Language& language) {
  std::set<QString> texts;
  Tour tour(language);
  tour.visit([&](const std::string&) { collectTexts(texts); });
  return texts;
}

bool isOfAPrinter(const QString& text) {
  return text.contains(QStringLiteral("192.168.10.23")) || text.contains(QStringLiteral("KX350T"));
}

// Not even what the translations know nothing of.
TEST_P(WindowsIn, NothingIsLeftInEnglish) {
  const Language& english =
      *std::find_if(std::begin(kLanguages), std::end(kLanguages),
                    [](const Language& language) { return language.name == std::string("en"); });
  const std::set<QString> inEnglish = textsIn(english);
  ASSERT_GT(inEnglish.size(), 20u);
  if (GetParam().name == std::string("en")) return;
  for (const QString& text : textsIn(GetParam())) {
    const bool isSame = inEnglish.count(text) > 0 && !isOfAPrinter(text);
    EXPECT_FALSE(isSame) << text.toStdString();
  }
}

// Like the addresses and versions beside them.
TEST_P(WindowsIn, NumbersHaveLatinDigits) {
  int numbers = 0;
  Tour tour(GetParam());
  tour.visit([&](const std::string&) {
    for (const QWidget* window : Tour::openWindows()) {
      for (const QLabel* label : window->findChildren<QLabel*>()) {
        for (const QChar character : label->text()) {
          if (!character.isDigit()) continue;
          ++numbers;
          EXPECT_LT(character.unicode(), 128) << nameOf(*label, label->text());
        }
      }
    }
  });
  EXPECT_GT(numbers, 0);
}

// Columns of a picture, from the left, that have something on them.
std::pair<int, int> inkOf(const QImage& image) {
  const QRgb ground = image.pixel(0, 0);
  int first = image.width();
  int last = -1;
  for (int x = 0; x < image.width(); ++x) {
    for (int y = 0; y < image.height(); ++y) {
      if (image.pixel(x, y) == ground) continue;
      first = std::min(first, x);
      last = x;
    }
  }
  return {first, last};
}

// Names and addresses of printers are in Latin letters, wherever they are read.
TEST_P(WindowsIn, NamesBeginWhereTheWindowBegins) {
  const bool mirrored = GetParam().name == std::string("ar");
  Tour tour(GetParam());
  tour.visit([&](const std::string& state) {
    if (state != "connecting") return;
    QLabel* const name = Tour::openWindows().back()->findChild<QLabel*>("printer");
    const QImage image = name->grab().toImage();
    const auto [first, last] = inkOf(image);
    ASSERT_LT(last - first, image.width() / 2 + image.width() / 3);
    EXPECT_LT(mirrored ? image.width() - last : first, 5) << first << " to " << last;
  });
}

INSTANTIATE_TEST_SUITE_P(, WindowsIn, testing::ValuesIn(kLanguages), inTestNames);

}  // namespace
