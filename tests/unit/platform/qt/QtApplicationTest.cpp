#include <gtest/gtest.h>

#include <QApplication>
#include <QIcon>
#include <QLocale>
#include <QProxyStyle>
#include <QStyle>
#include <QTemporaryDir>
#include <QTranslator>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "FakeBundle.h"
#include "Places.h"
#include "platform/Bundle.h"
#include "platform/qt/QtApplication.h"
#include "platform/qt/QtStrings.h"

using platform::Text;

namespace {

class QtApplicationTest : public testing::Test {
 protected:
  QtApplicationTest() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    mBundle.setResourcesDirectory(builtFile("share/fwupdate"));
  }
  ~QtApplicationTest() override { QLocale::setDefault(QLocale::c()); }

  std::string inLanguage(const QLocale& locale, const char* key) {
    QLocale::setDefault(locale);
    const auto application = platform::makeQtApplication("test", mBundle);
    return std::string(application->strings().localizedString(Text::fromUtf8(key)).utf8());
  }

  FakeBundle mBundle;
};

TEST_F(QtApplicationTest, TextsAreInTheUsersLanguage) {
  EXPECT_TRUE(inLanguage(QLocale::English, "USB_PRINTER_CONFIRMATION")
                  .starts_with("Download new firmware to this USB printer?"));
  EXPECT_TRUE(inLanguage(QLocale::German, "USB_PRINTER_CONFIRMATION")
                  .starts_with("Firmware dieses USB-Druckers aktualisieren?"));
  EXPECT_TRUE(inLanguage(QLocale::German, "NETWORK_PRINTER_CONFIRMATION")
                  .starts_with("Firmware dieses Netzwerkdruckers aktualisieren?"));
}

TEST_F(QtApplicationTest, LanguageWithoutTranslationGetsEnglish) {
  EXPECT_TRUE(inLanguage(QLocale::Finnish, "NETWORK_PRINTER_CONFIRMATION")
                  .starts_with("Download new firmware to this network printer?"));
}

class TextsOfACountry : public QtApplicationTest,
                        public testing::WithParamInterface<std::pair<const char*, const char*>> {};

TEST_P(TextsOfACountry, AreInAScriptThatIsReadThere) {
  const auto [locale, beginning] = GetParam();
  const std::string text = inLanguage(QLocale(locale), "NETWORK_PRINTER_CONFIRMATION");
  EXPECT_TRUE(text.starts_with(beginning)) << text;
}

INSTANTIATE_TEST_SUITE_P(, TextsOfACountry,
                         testing::Values(std::pair("C", "Download new firmware"),
                                         std::pair("en_GB", "Download new firmware"),
                                         std::pair("de_AT", "Firmware dieses"),
                                         std::pair("pt_BR", "Atualizar o firmware"),
                                         std::pair("pt_PT", "Atualizar o firmware"),
                                         std::pair("zh_CN", "要更新此网络"),
                                         std::pair("zh_SG", "要更新此网络"),
                                         std::pair("zh_TW", "Download new firmware"),
                                         std::pair("zh_HK", "Download new firmware")),
                         [](const auto& country) { return country.param.first; });

// Ends the process with the text in the user's language, as the environment says it.
class TextsInASession : public QtApplicationTest {
 protected:
  TextsInASession() { testing::GTEST_FLAG(death_test_style) = "threadsafe"; }

  void printText(const char* language, const char* languages) {
    qputenv("LC_ALL", language);
    qputenv("LANGUAGE", languages);
    const auto application = platform::makeQtApplication("test", mBundle);
    const Text key = Text::fromUtf8("NETWORK_PRINTER_CONFIRMATION");
    std::fputs(std::string(application->strings().localizedString(key).utf8()).c_str(), stderr);
    std::_Exit(0);
  }
};

TEST_F(TextsInASession, AreInTheFirstLanguageOfItsListThatThereIs) {
  const testing::ExitedWithCode well(0);
  EXPECT_EXIT(printText("de_DE.UTF-8", ""), well, "Firmware dieses");
  EXPECT_EXIT(printText("en_US.UTF-8", "de"), well, "Firmware dieses");
  EXPECT_EXIT(printText("de_DE.UTF-8", "en_US:de"), well, "Download new firmware");
  EXPECT_EXIT(printText("en_US.UTF-8", "fi_FI:sv:de"), well, "Uppdatera");
  EXPECT_EXIT(printText("zh_TW.UTF-8", "zh_TW:zh_CN"), well, "要更新此网络");
  EXPECT_EXIT(printText("zh_TW.UTF-8", "zh_TW:zh"), well, "要更新此网络");
  EXPECT_EXIT(printText("zh_TW.UTF-8", ""), well, "Download new firmware");
  EXPECT_EXIT(printText("fi_FI.UTF-8", ""), well, "Download new firmware");
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

// Only Qt's own style gets other borders.
TEST_F(QtApplicationTest, StyleOfTheDesktopIsLeftAlone) {
  qputenv("QT_STYLE_OVERRIDE", "windows");
  const auto application = platform::makeQtApplication("test", mBundle);
  qunsetenv("QT_STYLE_OVERRIDE");
  EXPECT_EQ(QApplication::style()->name(), "windows");
  EXPECT_EQ(qobject_cast<QProxyStyle*>(QApplication::style()), nullptr);
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
