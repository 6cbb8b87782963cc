// What is loaded along with a window.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLibraryInfo>
#include <QTemporaryDir>

#include "Places.h"
#include "QtWindows.h"
#include "platform/qt/NibLoader.h"

namespace {

class NibLoaderTest : public QtWindows {
 protected:
  NibLoaderTest() { QCoreApplication::addLibraryPath(mPlaces.path()); }
  ~NibLoaderTest() override { QCoreApplication::removeLibraryPath(mPlaces.path()); }

  QTemporaryDir mPlaces;
};

QString resource(const std::string& name) {
  return QString::fromStdString(builtFile("share/fwupdate/" + name));
}

bool hasLoaded(const QString& file) {
  QFile maps("/proc/self/maps");
  return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(file.toUtf8());
}

TEST_F(NibLoaderTest, WindowsComeWithoutThePluginsOfDesigner) {
  const QString plugin = mPlaces.filePath("designer/libplugin.so");
  ASSERT_TRUE(QDir(mPlaces.path()).mkdir("designer"));
  ASSERT_TRUE(QFile::copy(
      QLibraryInfo::path(QLibraryInfo::PluginsPath) + "/platforms/libqoffscreen.so", plugin));
  ASSERT_TRUE(hasLoaded("libqoffscreen.so"));
  EXPECT_NE(
      platform::loadInterfaceFile(resource("main.nib/PrinterSelectWindow.ui"), resource("icons")),
      nullptr);
  EXPECT_FALSE(hasLoaded(plugin));
}

TEST_F(NibLoaderTest, OtherPluginsAreFoundAfterwards) {
  const QStringList before = QCoreApplication::libraryPaths();
  ASSERT_TRUE(before.contains(mPlaces.path()));
  platform::loadInterfaceFile(resource("main.nib/MenuBar.ui"), resource("icons"));
  EXPECT_EQ(QCoreApplication::libraryPaths(), before);
}

}  // namespace
