#include <gtest/gtest.h>

#include <QApplication>
#include <QIcon>
#include <QLocale>
#include <QTemporaryDir>
#include <QTranslator>
#include <cstdio>

#include "FakeBundle.h"
#include "platform/Bundle.h"
#include "platform/qt/QtApplication.h"
#include "platform/qt/QtStrings.h"

using platform::Text;

namespace {

class QtApplicationTest : public testing::Test {
 protected:
  QtApplicationTest() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    mBundle.setResourcesDirectory(RESOURCES_DIR);
  }
  ~QtApplicationTest() override { QLocale::setDefault(QLocale::c()); }

  std::string inLanguage(QLocale::Language language, const char* key) {
    QLocale::setDefault(QLocale(language));
    const auto application = platform::makeQtApplication("test", mBundle);
    return std::string(application->strings().localizedString(Text::fromUtf8(key)).utf8());
  }

  FakeBundle mBundle;
};

TEST_F(QtApplicationTest, TextsAreInTheUsersLanguage) {
  EXPECT_TRUE(inLanguage(QLocale::English, "USB_PRINTER_CONFIRMATION")
                  .starts_with("Download new firmware to the selected USB printer?"));
  EXPECT_TRUE(inLanguage(QLocale::German, "USB_PRINTER_CONFIRMATION")
                  .starts_with("Firmware des ausgewählten USB-Druckers aktualisieren?"));
  EXPECT_TRUE(inLanguage(QLocale::German, "NETWORK_PRINTER_CONFIRMATION")
                  .starts_with("Firmware des ausgewählten Netzwerkdruckers aktualisieren?"));
}

TEST_F(QtApplicationTest, LanguageWithoutTranslationGetsEnglish) {
  EXPECT_TRUE(inLanguage(QLocale::Finnish, "NETWORK_PRINTER_CONFIRMATION")
                  .starts_with("Download new firmware to the selected network printer?"));
}

// What Qt's own translation into such a language asks for.
class FromRightToLeft final : public QTranslator {
 public:
  QString translate(const char*, const char* text, const char*, int) const override {
    return QLatin1String(text) == QLatin1String("QT_LAYOUT_DIRECTION") ? "RTL" : QString();
  }
  bool isEmpty() const override { return false; }
};

TEST_F(QtApplicationTest, EnglishWindowsAreNotMirroredInAHebrewSession) {
  QLocale::setDefault(QLocale(QLocale::Hebrew));
  const auto application = platform::makeQtApplication("test", mBundle);
  FromRightToLeft translator;
  QCoreApplication::installTranslator(&translator);
  QCoreApplication::processEvents();
  EXPECT_EQ(QGuiApplication::layoutDirection(), Qt::LeftToRight);
}

TEST_F(QtApplicationTest, ArabicWindowsAreMirrored) {
  QLocale::setDefault(QLocale(QLocale::Arabic));
  const auto application = platform::makeQtApplication("test", mBundle);
  EXPECT_TRUE(application->strings()
                  .localizedString(Text::fromUtf8("NETWORK_PRINTER_CONFIRMATION"))
                  .utf8()
                  .starts_with("هل تريد تحديث البرنامج الثابت"));
  EXPECT_EQ(QGuiApplication::layoutDirection(), Qt::RightToLeft);
}

TEST_F(QtApplicationTest, KeyWithoutTextIsItsOwnText) {
  EXPECT_EQ(inLanguage(QLocale::German, "NO_SUCH_KEY"), "NO_SUCH_KEY");
}

TEST_F(QtApplicationTest, NullKeyIsNull) {
  const auto application = platform::makeQtApplication("test", mBundle);
  EXPECT_TRUE(application->strings().localizedString(Text()).isNull());
}

TEST_F(QtApplicationTest, StartsWithoutResources) {
  mBundle.setResourcesDirectory(std::nullopt);
  EXPECT_EQ(inLanguage(QLocale::German, "USB_PRINTER_CONFIRMATION"), "USB_PRINTER_CONFIRMATION");
  mBundle.setResourcesDirectory("/nowhere");
  EXPECT_EQ(inLanguage(QLocale::German, "USB_PRINTER_CONFIRMATION"), "USB_PRINTER_CONFIRMATION");
}

TEST_F(QtApplicationTest, HasItsIcon) {
  const auto application = platform::makeQtApplication("test", mBundle);
  EXPECT_FALSE(QGuiApplication::windowIcon().isNull());
  EXPECT_FALSE(QGuiApplication::windowIcon().pixmap(32, 32).isNull());
}

TEST_F(QtApplicationTest, NoDisplayIsReportedAndEndsTheProgram) {
  EXPECT_EXIT(
      {
        qputenv("QT_QPA_PLATFORM", "xcb");
        qputenv("DISPLAY", ":7777");
        platform::makeQtApplication("test", mBundle,
                                    [] { std::fputs("there is no display\n", stderr); });
      },
      testing::ExitedWithCode(1), "^there is no display\n$");
}

}  // namespace
