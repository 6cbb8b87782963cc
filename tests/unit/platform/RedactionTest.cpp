#include <gtest/gtest.h>

#include "platform/Redaction.h"

namespace {

using platform::redacted;

const platform::PersonalNames kNames{"/home/anna", "anna", "desk-7.example.org"};

TEST(Redaction, HidesHomeUserAndComputer) {
  EXPECT_EQ(redacted("open /home/anna/x by anna on desk-7.example.org, desk-7.", kNames),
            "open ~/x by <user> on <computer>, <computer>.");
}

TEST(Redaction, LeavesOtherWordsAlone) {
  EXPECT_EQ(redacted("hanna annas anna2 _anna annaä /home/annabel", kNames),
            "hanna annas anna2 _anna annaä /home/annabel");
}

TEST(Redaction, ControlCharactersAreNoPartOfAWord) {
  EXPECT_EQ(redacted("\x7F"
                     "anna\x7F \x1F"
                     "anna\t",
                     kNames),
            "\x7F<user>\x7F \x1F<user>\t");
}

TEST(Redaction, EmptyNamesHideNothing) {
  EXPECT_EQ(redacted("Connected. Done", {"", "", ""}), "Connected. Done");
}

TEST(Redaction, HidesSerialNumbersWhereverTheyStand) {
  EXPECT_EQ(redacted("Found Veltra KX350T device with serial number VT-0042\n"
                     "Downloading firmware to USB printer: Veltra KX350T(VT-0042)\n"
                     "open VT-0042, VT-00421",
                     kNames),
            "Found Veltra KX350T device with serial number <serial number>\n"
            "Downloading firmware to USB printer: Veltra KX350T(<serial number>)\n"
            "open <serial number>, VT-00421");
}

TEST(Redaction, KnowsASerialNumberByADownloadAlone) {
  EXPECT_EQ(redacted("Downloading firmware to USB printer: KX(77)\nopening 77", kNames),
            "Downloading firmware to USB printer: KX(<serial number>)\nopening <serial number>");
  EXPECT_EQ(redacted("Downloading firmware to Bonjour printer: Office(10.0.0.5)", kNames),
            "Downloading firmware to Bonjour printer: Office(10.0.0.5)");
}

TEST(Redaction, HidesTheSerialNumberOfAPropertyDictionary) {
  EXPECT_EQ(redacted("  USB Serial Number = \"S9\"\n  kUSBSerialNumberString = S9", kNames),
            "  USB Serial Number = \"<serial number>\"\n"
            "  kUSBSerialNumberString = <serial number>");
}

TEST(Redaction, HidesHardwareAddresses) {
  EXPECT_EQ(redacted("at 00:1b:A9:44:55:66, not 00:1b:a9:44:55 or 00:1b:a9:44:55:667", kNames),
            "at <hardware address>, not 00:1b:a9:44:55 or 00:1b:a9:44:55:667");
}

TEST(Redaction, EmptyTextStaysEmpty) { EXPECT_EQ(redacted("", kNames), ""); }

TEST(Redaction, HidesANameThatIsAllThereIs) { EXPECT_EQ(redacted("anna", kNames), "<user>"); }

// A log may end in the middle of an entry.
TEST(Redaction, EntryWithoutASerialNumberStaysAsItIs) {
  for (const char* const text : {"Downloading firmware to USB printer: KX350T",
                                 "Downloading firmware to USB printer: KX350T()",
                                 "Downloading firmware to USB printer: KX350T (old) 1.",
                                 "Found Veltra KX350T device with serial number "}) {
    EXPECT_EQ(redacted(text, kNames), text);
  }
}

}  // namespace
