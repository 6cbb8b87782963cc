#include <ios>
#include <memory>
#include <sstream>

#include "UsbTest.h"
#include "printKeys.h"

namespace {

using platform::PropertyDictionary;
using platform::PropertyNumber;
using platform::PropertyValue;
using platform::Text;
using platform::UntranslatedProperty;

Text text(const std::string& utf8) { return Text::fromUtf8(utf8); }

class PrintKeysTest : public UsbTest {
 protected:
  std::string dumpOf(const PropertyDictionary& properties, const char* name = nullptr) {
    FakeUsbDevice device;
    device.properties = properties;
    printKeys(mOut, mUsb.attach(device), "device", name);
    return mOut.str();
  }

  // One property, without heading and indent.
  static std::string lineOf(const PropertyValue& key, const PropertyValue& value) {
    std::ostringstream out;
    const PrintKeyContext context{0, &out};
    printKey(key, value, &context);
    return out.str();
  }

  static std::string valueOf(const PropertyValue& value) { return lineOf(text("key"), value); }

  std::ostringstream mOut;
};

TEST_F(PrintKeysTest, DeviceIsHeadedByItsKind) {
  EXPECT_EQ(dumpOf({{{text("idProduct"), PropertyNumber{3112, 2}},
                     {text("USB Product Name"), text("KX350T")}}}),
            "  IORegistry property dictionary for device:\n"
            "    idProduct -> 3112\n"
            "    USB Product Name -> KX350T\n");
}

TEST_F(PrintKeysTest, InterfaceIsHeadedByItsKindAndName) {
  const auto device = mUsb.attach(fakePrinter());
  printKeys(mOut, device, "interface", "Printer Port");
  EXPECT_TRUE(mOut.str().starts_with(
      "  IORegistry property dictionary for interface Printer Port:\n    USB Vendor Name -> "));
}

TEST_F(PrintKeysTest, EmptyNameLeavesItsBlank) {
  EXPECT_EQ(dumpOf({}, ""), "  IORegistry property dictionary for device :\n");
}

TEST_F(PrintKeysTest, UnreadablePropertiesWriteNothing) {
  mUsb.script("properties", platform::kIOReturnNoMemory);
  EXPECT_EQ(dumpOf({{{text("idProduct"), PropertyNumber{3112}}}}), "");
}

TEST_F(PrintKeysTest, EachLevelIsIndentedByTwoMoreWithItsBracesAtTheParents) {
  auto innermost = std::make_shared<PropertyDictionary>();
  innermost->entries = {{text("deep"), true}};
  auto inner = std::make_shared<PropertyDictionary>();
  inner->entries = {{text("first"), PropertyNumber{1}},
                    {text("nested"), std::shared_ptr<const PropertyDictionary>(innermost)}};
  EXPECT_EQ(dumpOf({{{text("plug-ins"), std::shared_ptr<const PropertyDictionary>(inner)},
                     {text("last"), false}}}),
            "  IORegistry property dictionary for device:\n"
            "    plug-ins -> Dictionary:\n"
            "    {\n"
            "      first -> 1\n"
            "      nested -> Dictionary:\n"
            "      {\n"
            "        deep -> true\n"
            "      }\n"
            "    }\n"
            "    last -> false\n");
}

TEST_F(PrintKeysTest, EmptyDictionaryStillHasItsBraces) {
  EXPECT_EQ(
      valueOf(std::shared_ptr<const PropertyDictionary>(std::make_shared<PropertyDictionary>())),
      "key -> Dictionary:\n{\n}\n");
}

TEST_F(PrintKeysTest, DoesNothingWithoutAContext) { printKey(text("key"), text("value"), nullptr); }

TEST_F(PrintKeysTest, KeyThatIsNoTextIsUnknown) {
  EXPECT_EQ(lineOf(PropertyNumber{7}, true), "<unknown key> -> true\n");
  EXPECT_EQ(lineOf(std::monostate{}, true), "<unknown key> -> true\n");
}

TEST_F(PrintKeysTest, EmptyKeyIsUnknown) {
  EXPECT_EQ(lineOf(text(""), true), "<unknown key> -> true\n");
  EXPECT_EQ(lineOf(Text(), true), "<unknown key> -> true\n");
}

TEST_F(PrintKeysTest, KeyOf256BytesIsUnknown) {
  const std::string longest(255, 'k');
  EXPECT_EQ(lineOf(text(longest), true), longest + " -> true\n");
  EXPECT_EQ(lineOf(text(longest + "k"), true), "<unknown key> -> true\n");
}

TEST_F(PrintKeysTest, TextOf256BytesIsEmpty) {
  const std::string longest(255, 'v');
  EXPECT_EQ(valueOf(text(longest)), "key -> " + longest + "\n");
  EXPECT_EQ(valueOf(text(longest + "v")), "key -> \n");
}

TEST_F(PrintKeysTest, NullValue) {
  EXPECT_EQ(valueOf(std::monostate{}), "key -> <null value>\n");
  EXPECT_EQ(valueOf(Text()), "key -> <null value>\n");
}

TEST_F(PrintKeysTest, EmptyText) { EXPECT_EQ(valueOf(text("")), "key -> \n"); }

TEST_F(PrintKeysTest, NegativeNumberIsWrittenUnsigned) {
  EXPECT_EQ(valueOf(PropertyNumber{-1, 4}), "key -> 4294967295\n");
  EXPECT_EQ(valueOf(PropertyNumber{-2147483648LL, 4}), "key -> 2147483648\n");
}

// As a device release of 0x9123, a vendor of 0x8000 and a product of 0xFFFF come.
TEST_F(PrintKeysTest, NumberOf16BitsIsNotExtendedByItsSign) {
  EXPECT_EQ(valueOf(PropertyNumber{-28381, 2}), "key -> 37155\n");
  EXPECT_EQ(valueOf(PropertyNumber{-32768, 2}), "key -> 32768\n");
  EXPECT_EQ(valueOf(PropertyNumber{-1, 2}), "key -> 65535\n");
  EXPECT_EQ(valueOf(PropertyNumber{32767, 2}), "key -> 32767\n");
}

TEST_F(PrintKeysTest, WideNumberThatFitsIsKnown) {
  EXPECT_EQ(valueOf(PropertyNumber{2147483647, 8}), "key -> 2147483647\n");
}

TEST_F(PrintKeysTest, NumberThatDoesNotFitIn32BitsIsUnknown) {
  EXPECT_EQ(valueOf(PropertyNumber{2147483648LL, 8}), "key -> <unknown number>\n");
  EXPECT_EQ(valueOf(PropertyNumber{-2147483649LL, 8}), "key -> <unknown number>\n");
}

TEST_F(PrintKeysTest, NumbersComeInTheBaseOfTheStream) {
  mOut << std::hex;
  EXPECT_EQ(dumpOf({{{text("idVendor"), PropertyNumber{0x3A71, 2}}}}),
            "  IORegistry property dictionary for device:\n    idVendor -> 3a71\n");
}

TEST_F(PrintKeysTest, NestedNumbersAndIndentsAreThoseOfTheLevelAndTheStream) {
  auto innermost = std::make_shared<PropertyDictionary>();
  innermost->entries = {{text("deep"), PropertyNumber{0x9ABC}}};
  auto inner = std::make_shared<PropertyDictionary>();
  inner->entries = {{text("nested"), std::shared_ptr<const PropertyDictionary>(innermost)},
                    {text("after"), PropertyNumber{-1, 2}}};
  mOut << std::hex;
  EXPECT_EQ(dumpOf({{{text("plug-ins"), std::shared_ptr<const PropertyDictionary>(inner)},
                     {text("last"), PropertyNumber{255}}}}),
            "  IORegistry property dictionary for device:\n"
            "    plug-ins -> Dictionary:\n"
            "    {\n"
            "      nested -> Dictionary:\n"
            "      {\n"
            "        deep -> 9abc\n"
            "      }\n"
            "      after -> ffff\n"
            "    }\n"
            "    last -> ff\n");
}

TEST_F(PrintKeysTest, OtherTypeIsDescribed) {
  EXPECT_EQ(valueOf(UntranslatedProperty{text("CFArray")}),
            "key -> <Untranslated type: CFArray>\n");
  EXPECT_EQ(valueOf(UntranslatedProperty{}), "key -> <Untranslated type: >\n");
}

}  // namespace
