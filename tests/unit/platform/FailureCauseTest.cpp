#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/FailureCause.h"

namespace {

using platform::causeOfFailure;
using platform::causeOfNothingToDo;
using platform::FailureCause;
using platform::findCause;
using platform::LogHistory;

using Entries = std::vector<LogHistory::Entry>;

Entries errors(const std::vector<std::string>& texts) {
  Entries entries;
  for (const std::string& text : texts) entries.push_back({3, {}, text, 1});
  return entries;
}

std::string failed(const Entries& entries) { return causeOfFailure(entries, false).cause; }
std::string toDo(const Entries& entries) { return causeOfFailure(entries, false).nextStep; }

std::string usb(const std::string& text, const std::string& result) {
  return failed(errors(
      {"I/O Kit error occurred during async task: " + text + " [return value = " + result + "]"}));
}

TEST(FailureCause, NetworkSaysWhatTheHostSaid) {
  const std::string write =
      "General runtime error occurred during async task: Unable to write data";
  const auto connecting = [&](const std::string& name) {
    return failed(
        errors({"Connecting failed: " + name + " (…)", "Sending failed: ENOTCONN (…)", write}));
  };
  EXPECT_EQ(connecting("ECONNREFUSED"), "The printer refused the connection.");
  EXPECT_EQ(connecting("ETIMEDOUT"), "The printer did not answer.");
  EXPECT_EQ(connecting("EHOSTUNREACH"), "The printer cannot be reached over the network.");
  EXPECT_EQ(connecting("ENETUNREACH"), "The printer cannot be reached over the network.");
  EXPECT_EQ(connecting("EAFNOSUPPORT"), "The printer has no address that this program can use.");
  EXPECT_EQ(connecting("EPERM"), "This computer does not allow the connection.");
  EXPECT_EQ(connecting("EMFILE"), "This computer cannot open another connection.");
  EXPECT_EQ(failed(errors({"Sending failed: EPIPE (Broken pipe)", write})),
            "The printer closed the connection.");
  EXPECT_EQ(failed(errors({"Sending failed: ECONNRESET (…)", write})),
            "The printer closed the connection.");
  EXPECT_EQ(failed(errors({"Sending failed: ETIMEDOUT (…)", write})),
            "The printer stopped taking data.");
  EXPECT_EQ(failed(errors({"Sending failed: ENETDOWN (…)", write})),
            "The connection to the printer was lost.");
  EXPECT_EQ(failed(errors({write})), "The connection to the printer was lost.");
  EXPECT_EQ(failed(errors({"General runtime error occurred during async task: Unable to connect "
                           "to socket"})),
            "The printer cannot be reached over the network.");
}

TEST(FailureCause, FirmwareFileSaysTheSpecificEntryOfTwo) {
  const std::string last = "Failed to load firmware file.";
  const std::string url = "Failed to get file system reference from URL or load the firmware file.";
  EXPECT_EQ(failed(errors({"Could not find a firmware file to download.", url, last})),
            "There is no firmware for this model of printer.");
  EXPECT_EQ(failed(errors({"No printer model found; cannot match a firmware file without a model.",
                           url, last})),
            "The printer did not say which model it is.");
  EXPECT_EQ(failed(errors({url, last})), "Files of this program are missing.");
  EXPECT_EQ(failed(errors({"Failed to make file system reference for firmware file. <status=2 => "
                           "ENOENT; desc: No such file or directory>",
                           last})),
            "The file with the firmware is missing.");
  EXPECT_EQ(failed(errors({"Failed to make file system reference for firmware file. <status=20 => "
                           "ENOTDIR; desc: Not a directory>",
                           last})),
            "The file with the firmware cannot be read.");
  EXPECT_EQ(failed(errors({"Firmware file is empty.", last})),
            "The file with the firmware is damaged.");
  EXPECT_EQ(failed(errors({"Could not open data fork. <status=13 => EACCES; desc: Permission "
                           "denied>",
                           last})),
            "The file with the firmware cannot be read.");
  EXPECT_EQ(failed(errors({"File read failed. <status=0 => noErr; desc: No error>",
                           "Read 1000 of 4096 bytes", last})),
            "The file with the firmware cannot be read.");
  EXPECT_EQ(failed(errors({last})), "The file with the firmware cannot be read.");
}

TEST(FailureCause, UsbSaysWhatTheResultMeans) {
  EXPECT_EQ(usb("Unable to open interface.", "0xe00002e2"),
            "You are not permitted to use the printer’s USB connection.");
  EXPECT_EQ(usb("Unable to open interface.", "0xe00002c5"),
            "Another program is using the printer’s USB connection.");
  EXPECT_EQ(usb("Unable to open interface.", "0xe00002c0"),
            "The printer was disconnected or switched off.");
  EXPECT_EQ(usb("Unable to open interface.", "0xe00002be"),
            "This computer cannot open another connection.");
  EXPECT_EQ(usb("Async write request failed.", "0xe00002bd"),
            "The firmware is larger than this computer allows over USB.");
  EXPECT_EQ(usb("Async read request failed.", "0xe00002bd"), "This computer ran out of memory.");
  EXPECT_EQ(usb("Failed to clear pipe stall.", "0xe0004061"),
            "The printer offers no USB connection that this program can use.");
  EXPECT_EQ(usb("The interface cannot be read.", "0xe00002f0"),
            "The printer offers no USB connection that this program can use.");
  EXPECT_EQ(usb("The device has no ACL channel.", "0xe00002f0"),
            "The printer offers no USB connection that this program can use.");
  EXPECT_EQ(usb("Failed to clear pipe stall.", "0xe00002ca"),
            "The USB connection to the printer failed.");
  EXPECT_EQ(failed(errors({"Async write failed: I/O Kit error=0xe0004051"})),
            "The printer stopped taking data.");
  EXPECT_EQ(failed(errors({"Async read failed: I/O Kit error=0xe0004051"})),
            "The printer did not answer.");
  EXPECT_EQ(failed(errors({"Async write failed: I/O Kit error=0xe000404f"})),
            "The printer stopped taking data.");
  EXPECT_EQ(failed(errors({"Async read failed: I/O Kit error=0xe00002e8"})),
            "The printer answered something that this program does not understand.");
  EXPECT_EQ(failed(errors({"Async read failed: I/O Kit error=0xe00002c0"})),
            "The printer was disconnected or switched off.");
  EXPECT_EQ(failed(errors({"Failed to clear pipe stall. [return value = 0xe00002c0]"})),
            "The printer was disconnected or switched off.");
}

TEST(FailureCause, HolderIsNamed) {
  const std::string open =
      "I/O Kit error occurred during async task: Unable to open interface. [return value = "
      "0xe00002c5]";
  const auto heldBy = [&](const std::string& holder, int priority = 3) {
    Entries entries{{priority, {}, "The printer's interface is in use by " + holder + ".", 1}};
    entries.push_back({3, {}, open, 1});
    return causeOfFailure(entries, false);
  };
  const FailureCause ippUsb = heldBy("ipp-usb (process 812)");
  EXPECT_STREQ(ippUsb.cause, "The program %1 is using the printer’s USB connection.");
  EXPECT_STREQ(ippUsb.nextStep,
               "Stop it with the command “systemctl stop ipp-usb”, then try again.");
  EXPECT_EQ(ippUsb.subject, "ipp-usb");
  EXPECT_STREQ(heldBy("cupsd (process 1)").nextStep,
               "Stop it with the command “systemctl stop cups”, then try again.");
  EXPECT_EQ(heldBy("cupsd (process 1)", 5).subject, "cupsd");
  EXPECT_STREQ(heldBy("fwupdate (process 812)").nextStep,
               "Wait until it has finished, then try again.");
  EXPECT_STREQ(heldBy("fwupdatectl (process 812)").nextStep,
               "Wait until it has finished, then try again.");
  const FailureCause other = heldBy("a (process 3) tool (process 41)");
  EXPECT_STREQ(other.nextStep, "Close %1, then try again.");
  EXPECT_EQ(other.subject, "a (process 3) tool");
  EXPECT_STREQ(heldBy("another program").cause,
               "Another program is using the printer’s USB connection.");
  const FailureCause driver = heldBy("the kernel driver usblp");
  EXPECT_STREQ(driver.cause,
               "The driver %1 of this computer is using the printer’s USB connection.");
  EXPECT_EQ(driver.subject, "usblp");
}

TEST(FailureCause, HolderWithoutANameIsAnotherProgram) {
  for (const std::string beginning : {"I/O Kit error occurred during async task: Unable to open "
                                      "interface.",
                                      "Failed to clear pipe stall."}) {
    const FailureCause unknown =
        causeOfFailure(errors({"The printer's interface is in use by another program.",
                               beginning + " [return value = 0xe00002c5]"}),
                       false);
    EXPECT_STREQ(unknown.cause, "Another program is using the printer’s USB connection.");
    EXPECT_STREQ(unknown.nextStep, "Close programs that print or scan, then try again.");
    EXPECT_EQ(unknown.subject, "");
  }
}

TEST(FailureCause, WhoUpdatesAPrinterIsNamedWithItsProcess) {
  const auto heldBy = [&](const std::string& holder) {
    return causeOfFailure(
        errors({"General runtime error occurred during async task: The printer is in use by " +
                holder + "."}),
        false);
  };
  const FailureCause tool = heldBy("fwupdatectl (process 812)");
  EXPECT_STREQ(tool.cause, "The program %1 is using this printer.");
  EXPECT_STREQ(tool.nextStep, "Wait until it has finished, then try again.");
  EXPECT_EQ(tool.subject, "fwupdatectl (812)");
  EXPECT_EQ(heldBy("a (process 3) tool (process 41)").subject, "a (process 3) tool (41)");
  const FailureCause unknown = heldBy("another program");
  EXPECT_STREQ(unknown.cause, "Another program is using this printer.");
  EXPECT_STREQ(unknown.nextStep, "Wait until it has finished, then try again.");
}

TEST(FailureCause, PrintersRefusalIsToldFromAnAnswerThatIsNone) {
  const std::string error = "The firmware download failed on the printer.";
  const auto answered = [&](const std::string& dump) {
    return Entries{{7, {}, dump, 1}, {3, {}, error, 1}};
  };
  const auto refusal = answered("ACL Response: prefix=00ac; cmd ID=000f; cmdStatus=2");
  EXPECT_EQ(failed(refusal), "The printer refused the firmware.");
  const auto garbage = answered("ACL Response: prefix=4854; cmd ID=5450; cmdStatus=2f31");
  EXPECT_EQ(failed(garbage),
            "The printer answered something that this program does not understand.");

  EXPECT_EQ(causeOfFailure(refusal, true).headline, nullptr);
  EXPECT_STREQ(causeOfFailure(garbage, true).headline, "The printer did not confirm the update.");
}

TEST(FailureCause, NobodyKnowsWhatBecameOfFirmwareThatWasSent) {
  const Entries silent = errors({"Async read failed: I/O Kit error=0xe0004051"});
  EXPECT_EQ(causeOfFailure(silent, false).headline, nullptr);
  const FailureCause sent = causeOfFailure(silent, true);
  EXPECT_STREQ(sent.headline, "The printer did not confirm the update.");
  EXPECT_STREQ(sent.cause, "The printer did not answer.");
  EXPECT_STREQ(sent.nextStep,
               "It may still be writing its memory: leave it switched on for a few minutes. Then "
               "download the firmware again; a printer that has it is reported as up to date.");
}

TEST(FailureCause, UnknownErrorSpeaksForItself) {
  const Entries unknown = errors({"Something before", "The printer is on fire"});
  EXPECT_FALSE(findCause(unknown));
  EXPECT_EQ(failed(unknown), "%1");
  EXPECT_EQ(causeOfFailure(unknown, false).subject, "The printer is on fire");
  EXPECT_EQ(toDo(unknown),
            "Check that the printer is switched on, connected and not printing, then try again.");
}

TEST(FailureCause, WithoutAnErrorThereIsStillSomethingToDo) {
  EXPECT_EQ(failed({}), "");
  EXPECT_EQ(toDo({}),
            "Check that the printer is switched on, connected and not printing, then try again.");
}

TEST(FailureCause, ErrorsOfDiscoveryAreNone) {
  const Entries beside = errors({"Bonjour discovery error: domain=10; error code=-72007",
                                 "No data in TXT record for service: Office"});
  EXPECT_EQ(failed(beside), "");
}

// A printer says what it likes in its device ID.
TEST(FailureCause, NoticesAreNoErrors) {
  EXPECT_EQ(failed({{5, {}, "Unable to write data", 1}, {7, {}, "std::bad_alloc", 1}}), "");
  EXPECT_EQ(failed({{5, {}, "IEEE 1284 device ID is Firmware file is empty.", 1}}), "");
}

TEST(FailureCause, LackOfMemory) {
  EXPECT_EQ(failed(errors({"Allocation error occurred during async task: std::bad_alloc"})),
            "This computer ran out of memory.");
  EXPECT_EQ(failed(errors({"Failed to download firmware: std::bad_alloc"})),
            "This computer ran out of memory.");
}

TEST(FailureCause, PrinterThatWentBeforeItsDownload) {
  EXPECT_EQ(failed(errors({"Failed to download firmware: Invalid list selection"})),
            "The printer is no longer in the list.");
}

TEST(FailureCause, DamagedFileIsWhyThereIsNothingToDo) {
  EXPECT_FALSE(causeOfNothingToDo({}));
  EXPECT_FALSE(causeOfNothingToDo(errors({"Unable to write data"})));
  for (const char* error : {"Invalid platform ID version: got 2, expected 3",
                            "Invalid number of platform ID fields: got 0, expected 3"}) {
    const auto cause = causeOfNothingToDo(errors({error}));
    ASSERT_TRUE(cause);
    EXPECT_STREQ(cause->headline, "Nothing was sent to the printer.");
    EXPECT_STREQ(cause->cause, "The file with the firmware is damaged.");
    EXPECT_STREQ(cause->nextStep, "Install the printer’s firmware again, then try again.");
  }
}

}  // namespace
