#include <stdexcept>

#include "PrinterFixture.h"
#include "PrinterList.h"

namespace {

class PrinterListTest : public PrinterFixture {
 protected:
  std::string names() const {
    std::string all;
    for (std::size_t i = 0; i < list.size(); ++i) all += shown(list.getName(i)) + ";";
    return all;
  }

  template <typename Key>
  void expectNotFound(const Key& key) const {
    try {
      list.find(key);
      FAIL();
    } catch (const std::runtime_error& error) {
      EXPECT_STREQ(error.what(), "Cannot find the matching printer in the list.");
    }
  }

  PrinterList list;
};

TEST_F(PrinterListTest, StartsEmpty) { EXPECT_EQ(list.size(), 0u); }

TEST_F(PrinterListTest, KeepsPrintersInTheOrderOfTheirArrival) {
  QuillUsbDevice device = plugIn(fakePrinter("VX0042"));
  list.addBonjourPrinter(text("Zebra room"), ipv4Record());
  list.addUsbPrinter(device);
  list.addBonjourPrinter(text("Archive"), nullptr);

  EXPECT_EQ(names(), "Zebra room;Veltra KX350T;Archive;");
  EXPECT_EQ(shown(list.getPrinterType(0)), "Bonjour");
  EXPECT_EQ(shown(list.getPrinterType(1)), "USB");
  EXPECT_EQ(shown(list.getInfo(0)), "192.0.2.7");
  EXPECT_EQ(shown(list.getInfo(1)), "VX0042");
  EXPECT_EQ(shown(list.getInfo(2)), "<null>");
  EXPECT_EQ(shown(list.get(1)->getName()), "Veltra KX350T");
}

TEST_F(PrinterListTest, GetThrowsForAnIndexOutsideTheList) {
  list.addBonjourPrinter(text("A"), nullptr);
  for (const std::size_t index : {std::size_t{1}, std::size_t{2}, static_cast<std::size_t>(-1)}) {
    try {
      list.get(index);
      FAIL() << index;
    } catch (const std::out_of_range& error) {
      EXPECT_STREQ(error.what(), "Invalid index into list");
    }
  }
}

TEST_F(PrinterListTest, TextsAreNullForAnIndexOutsideTheList) {
  list.addBonjourPrinter(text("A"), ipv4Record());
  for (const std::size_t index : {std::size_t{1}, static_cast<std::size_t>(-1)}) {
    EXPECT_EQ(shown(list.getName(index)), "<null>");
    EXPECT_EQ(shown(list.getPrinterType(index)), "<null>");
    EXPECT_EQ(shown(list.getInfo(index)), "<null>");
  }
}

TEST_F(PrinterListTest, RemovalOutsideTheListDoesNothing) {
  list.addBonjourPrinter(text("A"), nullptr);
  list.setRemoved(1);
  list.setRemoved(static_cast<std::size_t>(-1));
  NamedService service("A");
  EXPECT_EQ(list.find(&service), 0u);
}

TEST_F(PrinterListTest, RemovedPrinterStaysButIsNotFound) {
  list.addBonjourPrinter(text("A"), ipv4Record());
  list.setRemoved(0);
  EXPECT_EQ(list.size(), 1u);
  EXPECT_EQ(shown(list.getName(0)), "A");
  EXPECT_EQ(shown(list.get(0)->getInfo()), "192.0.2.7");
  NamedService service("A");
  expectNotFound(&service);
}

TEST_F(PrinterListTest, NothingIsFoundInAnEmptyList) {
  NamedService service("A");
  expectNotFound(&service);
  expectNotFound(plugIn(fakePrinter()));
}

TEST_F(PrinterListTest, FindGivesTheFirstThatMatches) {
  list.addBonjourPrinter(text("B"), nullptr);
  list.addBonjourPrinter(text("A"), nullptr);
  list.addBonjourPrinter(text("A"), nullptr);
  NamedService service("A");
  EXPECT_EQ(list.find(&service), 1u);
  list.setRemoved(1);
  EXPECT_EQ(list.find(&service), 2u);
}

TEST_F(PrinterListTest, FindTellsTheKindsApart) {
  QuillUsbDevice device = plugIn(fakePrinter());
  list.addBonjourPrinter(text("Veltra KX350T"), nullptr);
  list.addUsbPrinter(device);
  NamedService service("Veltra KX350T");
  EXPECT_EQ(list.find(&service), 0u);
  EXPECT_EQ(list.find(device), 1u);
}

TEST_F(PrinterListTest, DeviceThatComesBackGetsANewRecord) {
  QuillUsbDevice device = plugIn(fakePrinter());
  list.addUsbPrinter(device);
  list.setRemoved(list.find(device));
  list.addUsbPrinter(device);
  EXPECT_EQ(list.size(), 2u);
  EXPECT_EQ(list.find(device), 1u);
  EXPECT_FALSE(list.get(0)->equals(device));
}

TEST_F(PrinterListTest, RecordsAreDestroyedFromFirstToLast) {
  FakeUsbDevice first = fakePrinter("1");
  first.label = "first";
  FakeUsbDevice second = fakePrinter("2");
  second.label = "second";
  {
    PrinterList shortLived;
    for (const FakeUsbDevice& each : {first, second}) {
      QuillUsbDevice device = plugIn(each);
      shortLived.addUsbPrinter(device);
    }
    doubles.usb.takeCalls();
  }
  std::string order;
  for (const std::string& call : doubles.usb.takeCalls()) {
    for (const std::string label : {"first", "second"}) {
      const bool isOther = !order.ends_with(label + ";");
      if (call.find(" " + label) != std::string::npos && isOther) order += label + ";";
    }
  }
  EXPECT_EQ(order, "first;second;");
}

}  // namespace
