#include <stdexcept>

#include "Branding.h"
#include "FirmwareDownloader.h"
#include "Printer.h"
#include "PrinterFixture.h"
#include "RecordingObserver.h"

namespace {

using Lines = std::vector<std::string>;
using Entries = std::vector<LogEntry>;

class PrinterTest : public PrinterFixture {
 protected:
  OwnedPrinter usbPrinter(const FakeUsbDevice& device = fakePrinter("VX0042")) {
    QuillUsbDevice handle = plugIn(device);
    return OwnedPrinter(Printer::create(handle));
  }

  OwnedPrinter networkPrinter(const platform::Data& address) {
    return OwnedPrinter(Printer::create(text("Front desk"), address));
  }

  std::string infoFor(std::vector<std::uint8_t> record) {
    return shown(networkPrinter(platform::makeData(std::move(record)))->getInfo());
  }
};

// A printer of neither kind.
class OtherPrinter : public Printer {
 public:
  explicit OtherPrinter(const std::string& name) : Printer(name) {}

  platform::Text getType() const override { return platform::Text(); }
  platform::Text getInfo() const override { return platform::Text(); }
  platform::Text getConfirmationMsgKey() const override { return platform::Text(); }
  void download(FirmwareDownloader&) const override {}
  bool equals(const QuillUsbDevice&) const override { return false; }
  bool equals(platform::NetService*) const override { return false; }
};

TEST_F(PrinterTest, UsbPrinterShowsManufacturerProductAndSerialNumber) {
  const OwnedPrinter printer = usbPrinter();
  EXPECT_EQ(shown(printer->getName()), "Veltra KX350T");
  EXPECT_EQ(shown(printer->getType()), "USB");
  EXPECT_EQ(shown(printer->getInfo()), "VX0042");
}

TEST_F(PrinterTest, UsbPrinterWithoutStringsIsNamedByOneBlank) {
  const OwnedPrinter printer = usbPrinter(FakeUsbDevice{});
  EXPECT_EQ(shown(printer->getName()), " ");
  EXPECT_EQ(shown(printer->getInfo()), "");
}

TEST_F(PrinterTest, UsbPrinterKeepsCharactersOutsideAscii) {
  FakeUsbDevice device;
  device.with("USB Vendor Name", "V\u00E9ltra").with("USB Serial Number", "\u5E8F1");
  const OwnedPrinter printer = usbPrinter(device);
  EXPECT_EQ(shown(printer->getName()), "V\u00E9ltra ");
  EXPECT_EQ(shown(printer->getInfo()), "\u5E8F1");
}

TEST_F(PrinterTest, NameThatIsNotUtf8IsNull) {
  EXPECT_EQ(shown(OtherPrinter("Veltra \xFF").getName()), "<null>");
  EXPECT_EQ(shown(OtherPrinter("Veltra").getName()), "Veltra");
}

TEST_F(PrinterTest, NetworkPrinterShowsServiceNameAndIPv4Address) {
  const OwnedPrinter printer = networkPrinter(ipv4Record());
  EXPECT_EQ(shown(printer->getName()), "Front desk");
  EXPECT_EQ(shown(printer->getType()), "Bonjour");
  EXPECT_EQ(shown(printer->getInfo()), "192.0.2.7");
}

TEST_F(PrinterTest, NetworkPrinterShowsIPv6Address) {
  EXPECT_EQ(shown(networkPrinter(ipv6Record())->getInfo()), "2001:db8::42");
}

TEST_F(PrinterTest, NetworkPrinterWithoutNameHasNullName) {
  const OwnedPrinter printer(Printer::create(platform::Text(), ipv4Record()));
  EXPECT_EQ(shown(printer->getName()), "<null>");
}

TEST_F(PrinterTest, NetworkPrinterWithoutAddressHasNullInfo) {
  EXPECT_EQ(shown(networkPrinter(nullptr)->getInfo()), "<null>");
}

TEST_F(PrinterTest, AddressOfAnotherFamilyGivesNullInfo) {
  EXPECT_EQ(infoFor({16, 1, 0, 0, 192, 0, 2, 7, 0, 0, 0, 0, 0, 0, 0, 0}), "<null>");
  EXPECT_EQ(infoFor({16, 0, 0, 0, 192, 0, 2, 7, 0, 0, 0, 0, 0, 0, 0, 0}), "<null>");
  EXPECT_EQ(infoFor({16, 10, 0, 0, 192, 0, 2, 7, 0, 0, 0, 0, 0, 0, 0, 0}), "<null>");
}

TEST_F(PrinterTest, FamilyIsReadFromTheSecondByteAlone) {
  EXPECT_EQ(infoFor({2, 99, 0, 0, 192, 0, 2, 7}), "<null>");
  EXPECT_EQ(infoFor({0, 2, 0, 0, 192, 0, 2, 7}), "192.0.2.7");
}

TEST_F(PrinterTest, RecordTooShortForItsAddressGivesNullInfo) {
  for (std::size_t size = 0; size < 8; ++size) {
    std::vector<std::uint8_t> record{16, 2, 0x23, 0x8C, 192, 0, 2, 7};
    record.resize(size);
    EXPECT_EQ(infoFor(record), "<null>") << size;
  }
  for (std::size_t size = 0; size < 24; ++size) {
    std::vector<std::uint8_t> record = *ipv6Record();
    record.resize(size);
    EXPECT_EQ(infoFor(record), "<null>") << size;
  }
}

TEST_F(PrinterTest, RecordThatEndsWithItsAddressIsEnough) {
  EXPECT_EQ(infoFor({8, 2, 0x23, 0x8C, 192, 0, 2, 255}), "192.0.2.255");
  std::vector<std::uint8_t> record = *ipv6Record();
  record.resize(24);
  EXPECT_EQ(infoFor(record), "2001:db8::42");
}

TEST_F(PrinterTest, AddressThatCannotBeConvertedGivesNullInfo) {
  network.showsAddresses = false;
  EXPECT_EQ(shown(networkPrinter(ipv4Record())->getInfo()), "<null>");
}

TEST_F(PrinterTest, UsbPrinterAsksNoQuestion) {
  EXPECT_FALSE(Branding::sPromptBeforeUsbDownload);
  EXPECT_TRUE(usbPrinter()->getConfirmationMsgKey().isNull());
}

TEST_F(PrinterTest, UsbPrinterAsksWhereTheProductWantsIt) {
  Branding::sPromptBeforeUsbDownload = true;
  const std::string key = shown(usbPrinter()->getConfirmationMsgKey());
  Branding::sPromptBeforeUsbDownload = false;
  EXPECT_EQ(key, "USB_PRINTER_CONFIRMATION");
}

TEST_F(PrinterTest, NetworkPrinterAlwaysAsks) {
  EXPECT_EQ(shown(networkPrinter(nullptr)->getConfirmationMsgKey()),
            "NETWORK_PRINTER_CONFIRMATION");
}

TEST_F(PrinterTest, UsbPrinterEqualsItsDeviceUntilRemoved) {
  QuillUsbDevice device = plugIn(fakePrinter());
  const OwnedPrinter printer(Printer::create(device));
  const QuillUsbDevice copy = device;
  EXPECT_TRUE(printer->equals(device));
  EXPECT_TRUE(printer->equals(copy));
  printer->setRemoved();
  EXPECT_FALSE(printer->equals(device));
}

TEST_F(PrinterTest, UsbPrinterDiffersFromAnotherDeviceWithItsSerialNumber) {
  const OwnedPrinter printer = usbPrinter(fakePrinter("VX0042"));
  EXPECT_FALSE(printer->equals(plugIn(fakePrinter("VX0042"))));
  EXPECT_FALSE(printer->equals(QuillUsbDevice()));
}

TEST_F(PrinterTest, NetworkPrinterEqualsAServiceOfItsNameUntilRemoved) {
  const OwnedPrinter printer = networkPrinter(ipv4Record());
  NamedService service("Front desk");
  EXPECT_TRUE(printer->equals(&service));
  printer->setRemoved();
  EXPECT_FALSE(printer->equals(&service));
}

TEST_F(PrinterTest, ServiceNamesAreComparedExactly) {
  const OwnedPrinter printer = networkPrinter(ipv4Record());
  for (const char* name : {"front desk", "Front desk ", "Front", "Front desk 2", ""}) {
    NamedService other(name);
    EXPECT_FALSE(printer->equals(&other)) << name;
  }
  NamedService nameless{platform::Text()};
  EXPECT_FALSE(printer->equals(&nameless));
}

TEST_F(PrinterTest, PrinterNeverEqualsTheKeyOfTheOtherKind) {
  NamedService service("Veltra KX350T");
  EXPECT_FALSE(usbPrinter()->equals(&service));
  EXPECT_FALSE(networkPrinter(ipv4Record())->equals(plugIn(fakePrinter())));
}

TEST_F(PrinterTest, DestroyIgnoresNull) { Printer::destroy(nullptr); }

TEST_F(PrinterTest, UsbRecordKeepsItsDeviceUntilDestroyed) {
  OwnedPrinter printer = usbPrinter();
  EXPECT_NE(doubles.usb.problems(), Lines{});
  printer.reset();
  EXPECT_EQ(doubles.usb.problems(), Lines{});
}

TEST_F(PrinterTest, DownloadIsLoggedWithTypeNameAndInfo) {
  usbPrinter()->logDownload();
  networkPrinter(ipv4Record())->logDownload();
  networkPrinter(nullptr)->logDownload();
  const Entries expected{
      {5, "Downloading firmware to USB printer: Veltra KX350T(VX0042)"},
      {5, "Downloading firmware to Bonjour printer: Front desk(192.0.2.7)"},
      {5, "Downloading firmware to Bonjour printer: Front desk(<null>)"},
  };
  EXPECT_EQ(doubles.log.entries(), expected);
}

TEST_F(PrinterTest, NetworkDownloadConnectsToTheRecordsAddress) {
  const platform::Data address = ipv4Record();
  const OwnedPrinter printer = networkPrinter(address);
  {
    FirmwareDownloader downloader;
    printer->download(downloader);
    EXPECT_TRUE(network.isConnecting());
    EXPECT_EQ(network.connectedTo(), address);
  }
  const Entries expected{
      {5, "Downloading firmware to Bonjour printer: Front desk(192.0.2.7)"},
      {5, "Connecting to I/O transport..."},
      {5, "Cleaning up firmware downloader."},
      {5, "Cleaning up network transport."},
  };
  EXPECT_EQ(doubles.log.entries(), expected);
}

TEST_F(PrinterTest, DownloadWithoutAddressHandsOnTheNullAddress) {
  const OwnedPrinter printer = networkPrinter(nullptr);
  FirmwareDownloader downloader;
  printer->download(downloader);
  EXPECT_TRUE(network.isConnecting());
  EXPECT_EQ(network.connectedTo(), nullptr);
}

TEST_F(PrinterTest, WhatTheTransportThrowsPassesThrough) {
  network.beforeSocket = [] { throw std::runtime_error("no socket left"); };
  const OwnedPrinter printer = networkPrinter(ipv4Record());
  FirmwareDownloader downloader;
  try {
    printer->download(downloader);
    FAIL();
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "no socket left");
  }
}

// What the observer of downloads hears, behind the entry of the log that was the last by then.
class ObservedPrinterTest : public PrinterTest {
 protected:
  static platform::Platform observedBy(platform::DownloadObserver& observer) {
    platform::Platform platform = platform::current();
    platform.downloadObserver = &observer;
    return platform;
  }

  Lines told;
  RecordingObserver observer{[this](const std::string& call) {
    told.push_back(doubles.log.entries().back().text + " -> " + call);
  }};
  platform::PlatformScope scope{observedBy(observer)};
};

TEST_F(ObservedPrinterTest, NetworkDownloadIsAnnouncedWithNameAndAddress) {
  {
    FirmwareDownloader downloader;
    networkPrinter(ipv4Record())->download(downloader);
  }
  EXPECT_EQ(told, (Lines{"Downloading firmware to Bonjour printer: Front desk(192.0.2.7) -> "
                         "began Front desk (192.0.2.7)",
                         "Connecting to I/O transport... -> Connecting",
                         "Cleaning up firmware downloader. -> ended Failed"}));
}

TEST_F(ObservedPrinterTest, UsbDownloadIsAnnouncedWithNameAndSerialNumber) {
  const OwnedPrinter printer = usbPrinter();
  {
    FirmwareDownloader downloader;
    printer->download(downloader);
  }
  EXPECT_EQ(told, (Lines{"Downloading firmware to USB printer: Veltra KX350T(VX0042) -> "
                         "began Veltra KX350T (VX0042)",
                         "Connecting to I/O transport... -> Connecting",
                         "Cleaning up firmware downloader. -> ended Failed"}));
}

TEST_F(ObservedPrinterTest, DownloadWithoutATransportEndsAsFailedAtOnce) {
  network.beforeSocket = [] { throw std::runtime_error("no socket left"); };
  FirmwareDownloader downloader;
  EXPECT_THROW(networkPrinter(nullptr)->download(downloader), std::runtime_error);
  EXPECT_EQ(told, (Lines{"Downloading firmware to Bonjour printer: Front desk(<null>) -> "
                         "began Front desk (<null>)",
                         "Downloading firmware to Bonjour printer: Front desk(<null>) -> "
                         "ended Failed"}));
}

TEST_F(PrinterTest, UsbDownloadPostsItsFirstResume) {
  const OwnedPrinter printer = usbPrinter();
  {
    FirmwareDownloader downloader;
    printer->download(downloader);
    EXPECT_EQ(doubles.events.waiting(), Lines{"FwDl 1"});
  }
  const Entries expected{
      {5, "Downloading firmware to USB printer: Veltra KX350T(VX0042)"},
      {5, "Connecting to I/O transport..."},
      {5, "Cleaning up firmware downloader."},
      {5, "Cleaning up USB transport."},
  };
  EXPECT_EQ(doubles.log.entries(), expected);
}

}  // namespace
