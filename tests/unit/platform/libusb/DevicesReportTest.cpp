#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "TemporaryDirectory.h"
#include "platform/libusb/DevicesReport.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DevicesReport : public testing::Test {
 protected:
  void write(const std::string& file, const std::string& text) {
    std::filesystem::create_directories((mRoot.path() / file).parent_path());
    std::ofstream(mRoot.path() / file) << text << '\n';
  }

  void attach(const std::string& name, const std::string& vendor) {
    write("devices/" + name + "/idVendor", vendor);
    write("devices/" + name + "/idProduct", "0c28");
    write("devices/" + name + "/busnum", "1");
    write("devices/" + name + "/devnum", "12");
    write("devices/" + name + "/serial", "SECRET");
  }

  void addInterface(const std::string& name, const std::string& usbClass) {
    write("devices/" + name + "/bInterfaceClass", usbClass);
  }

  std::vector<std::string> lines() {
    return platform::describeUsbDevices(0x3A71, mRoot.path() / "devices", mRoot.path() / "nodes");
  }

  TemporaryDirectory mRoot;
};

TEST_F(DevicesReport, HasTheDevicesOfOneMaker) {
  attach("1-2", "3a71");
  attach("1-3", "3a70");
  addInterface("1-2:1.1", "ff");
  addInterface("1-2:1.0", "07");
  std::filesystem::create_directory_symlink("../../drivers/usblp",
                                            mRoot.path() / "devices/1-2:1.0/driver");
  addInterface("1-21:1.0", "08");
  write("nodes/001/012", "");
  chmod((mRoot.path() / "nodes/001/012").c_str(), 0664);
  EXPECT_THAT(lines(), ElementsAre("3a71:0c28, device node 0664, may be opened, interface of class "
                                   "07 with driver usblp, interface of class ff with no driver"));
}

TEST_F(DevicesReport, SaysThatThereIsNoNode) {
  attach("1-2", "3a71");
  EXPECT_THAT(lines(), ElementsAre("3a71:0c28, no device node"));
}

TEST_F(DevicesReport, IsEmptyWhereThereIsNoUsb) { EXPECT_THAT(lines(), IsEmpty()); }

TEST_F(DevicesReport, KnowsItsLibrary) {
  EXPECT_THAT(platform::libusbVersion(), testing::MatchesRegex("1\\.0\\.[0-9]+"));
}

}  // namespace
