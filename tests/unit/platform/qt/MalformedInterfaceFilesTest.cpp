#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <filesystem>
#include <fstream>
#include <memory>

#include "FakeBundle.h"
#include "platform/Toolkit.h"
#include "platform/qt/QtApplication.h"

using platform::NibRef;
using platform::OSStatus;
using platform::Text;
using platform::WindowRef;

namespace {

class MalformedInterfaceFiles : public testing::Test {
 protected:
  MalformedInterfaceFiles() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    mBundle.setResourcesDirectory(mResources);
    std::filesystem::create_directory(mResources / "main.nib");
    mApplication = platform::makeQtApplication("test", mBundle);
    EXPECT_EQ(toolkit().createNibReference(Text::fromUtf8("main"), mNib), platform::noErr);
  }

  platform::Toolkit& toolkit() { return mApplication->toolkit(); }

  OSStatus create(const std::string& contents) {
    std::ofstream(mResources / "main.nib" / "Window.ui") << contents;
    WindowRef window{77};
    const OSStatus status = toolkit().createWindowFromNib(mNib, Text::fromUtf8("Window"), window);
    EXPECT_EQ(window == WindowRef::None, status != platform::noErr);
    return status;
  }

  static std::string form(const std::string& widget) {
    return "<ui version=\"4.0\"><class>Window</class>" + widget + "</ui>";
  }

  QTemporaryDir mDirectory;
  std::filesystem::path mResources = mDirectory.path().toStdString();
  FakeBundle mBundle;
  std::unique_ptr<platform::QtApplication> mApplication;
  NibRef mNib = NibRef::None;
};

TEST_F(MalformedInterfaceFiles, NoResourcesHaveNoNib) {
  NibRef nib{77};
  mBundle.setResourcesDirectory(std::nullopt);
  EXPECT_EQ(toolkit().createNibReference(Text::fromUtf8("main"), nib), -10960);
  EXPECT_EQ(nib, NibRef::None);
  mBundle.setResourcesDirectory("/nowhere");
  EXPECT_EQ(toolkit().createNibReference(Text::fromUtf8("main"), nib), -10960);
  EXPECT_EQ(toolkit().createNibReference(Text(), nib), -10960);
}

TEST_F(MalformedInterfaceFiles, FileIsNoNib) {
  std::ofstream(mResources / "file.nib") << "x";
  NibRef nib = NibRef::None;
  EXPECT_EQ(toolkit().createNibReference(Text::fromUtf8("file"), nib), -10960);
}

TEST_F(MalformedInterfaceFiles, MissingFileAndDirectoryAreNotFound) {
  WindowRef window{77};
  EXPECT_EQ(toolkit().createWindowFromNib(mNib, Text::fromUtf8("Window"), window), -10962);
  std::filesystem::create_directory(mResources / "main.nib" / "Window.ui");
  EXPECT_EQ(toolkit().createWindowFromNib(mNib, Text::fromUtf8("Window"), window), -10962);
  EXPECT_EQ(toolkit().createWindowFromNib(mNib, Text(), window), -10960);
}

TEST_F(MalformedInterfaceFiles, BrokenFilesAreNoWindows) {
  EXPECT_EQ(create(""), -10961);
  EXPECT_EQ(create("not XML"), -10961);
  EXPECT_EQ(create("<ui version=\"4.0\"><class>Window</class><widget class=\"QDial"), -10961);
  EXPECT_EQ(create("<html/>"), -10961);
  EXPECT_EQ(create(form("")), -10961);
  EXPECT_EQ(create(form("<widget class=\"NoSuchWidget\" name=\"w\"/>")), -10961);
  EXPECT_EQ(create(std::string(100000, '\0')), -10961);
}

TEST_F(MalformedInterfaceFiles, OtherWidgetsAreNoWindows) {
  EXPECT_EQ(create(form("<widget class=\"QLabel\" name=\"w\"/>")), -10961);
  EXPECT_EQ(create(form("<widget class=\"QWidget\" name=\"w\"/>")), -10961);
}

TEST_F(MalformedInterfaceFiles, EmptyWindowsAndSheetsAreFine) {
  EXPECT_EQ(create(form("<widget class=\"QDialog\" name=\"w\"/>")), platform::noErr);
  EXPECT_EQ(create(form("<widget class=\"QMainWindow\" name=\"w\"/>")), platform::noErr);
}

TEST_F(MalformedInterfaceFiles, ListWithoutColumnsIsShown) {
  EXPECT_EQ(create(form("<widget class=\"QDialog\" name=\"w\"><widget class=\"QTreeView\" "
                        "name=\"l\"/></widget>")),
            platform::noErr);
}

TEST_F(MalformedInterfaceFiles, MenuBarNeedsABarAndAWindow) {
  std::ofstream(mResources / "main.nib" / "MenuBar.ui")
      << form("<widget class=\"QMainWindow\" name=\"w\"/>");
  EXPECT_EQ(toolkit().setMenuBarFromNib(mNib, Text::fromUtf8("MenuBar")), -10961);
  std::ofstream(mResources / "main.nib" / "MenuBar.ui") << form(
      "<widget class=\"QMainWindow\" name=\"w\"><widget class=\"QMenuBar\" "
      "name=\"b\"/></widget>");
  EXPECT_EQ(toolkit().setMenuBarFromNib(mNib, Text::fromUtf8("MenuBar")), -5600);
}

}  // namespace
