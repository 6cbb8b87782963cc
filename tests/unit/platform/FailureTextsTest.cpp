// Holds the table of causes against the program's sources: every text that can become an error of
// the log is one that the table knows, or one that no download can log. A new error text fails here
// until somebody has decided what it means for whoever sees it.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "Places.h"
#include "platform/FailureCause.h"

namespace {

using platform::LogHistory;

// Texts of the start, of the window and of discovery. A download logs none of them.
const std::set<std::string> kOfNoDownload{
    // The program ends with these.
    "Failed to set menu bar from NIB.",
    "Failed to create window from NIB.",
    "Window reference is null.",
    "Failed to create dialog sheet.",
    "Failed to install open handler.",
    "Failed to install event handler.",
    "Failed to create NIB reference.",
    "NIB reference is null.",
    "cannot open a display. Start it from a desktop session, or set DISPLAY or ",
    // Discovery cannot begin.
    "Failed to create Bonjour service browser.",
    "Failed to start Bonjour service search.",
    "Unable to obtain a matching dictionary.",
    "Failed to get current run loop.",
    "IOServiceAddMatchingNotification failed.",
    "IOServiceGetMatchingServices failed.",
    "IOServiceAddInterestNotification failed.",
    // A printer is plugged in, and cannot be listed.
    "Unable to create a plug-in.",
    "Couldn’t create a device interface for the device.",
    "Couldn’t create a device interface for the interface.",
    "Failed to get interface iterator for device.",
    // Nobody asks for it.
    "Failed to open device.",
    "Failed to re-enumerate device.",
    "The device has no EWS channel.",
    // A printer goes; the entry begins otherwise.
    "Cannot find the matching printer in the list.",
    // Before an exception's text, which is known or not by itself.
    "Failed to download firmware: ",
    // Comes when the outcome is known: there is no window then that could show it.
    "Failed to create FailedSheet window.",
    // Misuse by the program itself, which ends it.
    "Querying device object before initialising it.",
    "Device finder object has not been supplied as context.",
    "A notifier has not been added to the run loop.",
    "Invalid index into list",
    // Sentences of the tool, which it says as they stand; the last one begins with an address.
    "The printer announces no port that can be connected to.",
    "The printer has IPv6 addresses only: printers are reached by IPv4.",
    R"(\")",
};

// Not texts, but what holds one that stands elsewhere.
const std::set<std::string> kHoldersOfTexts{
    "UsbTransport.cpp: message",     // of UsbInterface
    "FirmwareDownloader.cpp: kind",  // an introduction, before an exception's text
    "AttachedDevice.cpp: const std::string& entry",
    "main.cpp: const std::string& entry",  // of the platform: who has an interface, see describe()
    "main.cpp: entry",
    "ToolHost.cpp: const std::string& entry",  // the same
    "ToolHost.cpp: entry",
    "runAndReport.cpp: prefix",     // the same, of the program's end
    "FirmwareLoader.cpp: message",  // what logError() is given
    "FirmwareLoader.cpp: const char* message",
    "PrinterListView.cpp: error.what()",  // of the list's set-up and columns
    "PrinterListView.cpp: name",          // a call of the toolkit that failed
    "PrinterLock.cpp: inUseBy",           // who has the printer
    "checkIoKitResult.cpp: message",
    "checkIoKitResult.cpp: const char* message",
    "IoKitException.cpp: compose",
    "IoKitException.cpp: const std::string& message",
    "UsbInterface.cpp: message",
    "UsbInterface.cpp: const char* operation",
    "QuillUsbDeviceImpl.cpp: ifMissing",
    // Sentences of the tool, which it says as they stand.
    "hostNames.cpp: name + \" has IPv6 addresses only: printers are reached by IPv4.\"",
    "hostNames.cpp: name + \" is not known.\"",
    "hostNames.cpp: name + \" cannot be looked up: \" + gai_strerror",
    "updatePrinters.cpp: sentence",
};

std::string contentsOf(const std::filesystem::path& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// What stands where a text belongs, by file.
struct Place {
  std::string file;
  std::string expression;  // a literal begins with its quotation mark
};

std::vector<Place> placesIn(const std::filesystem::path& file, const std::string& source) {
  static const std::regex place(
      R"((?:Log<3>\(\)\s*<<|->write\(\s*(?:3|k\w*Error)\s*,|channel\(\w+,|)"
      R"((?:logError|runtime_error|logic_error|out_of_range|[tT]hrowIoKitException|IoKitException|)"
      R"(checkIoKitResult|(failureMessage))\())"
      R"(\s*(?:std::dec\s*<<\s*)?(?:buildErrorMessage\(\s*)?)"
      R"x(("(?:[^"\\]|\\.)*"|[^\s,;()<](?:[^,;()<]*[^\s,;()<])?(?:\(\))?))x");
  std::vector<Place> places;
  for (std::sregex_iterator found(source.begin(), source.end(), place), none; found != none;
       ++found) {
    std::string expression = (*found)[2];
    if ((*found)[1].matched && expression.starts_with('"')) {
      expression.insert(expression.size() - 1, " failed: ");  // as that function does
    }
    places.push_back({file.filename(), expression});
  }
  return places;
}

// The literal itself, or the one that a constant of the same file holds; empty when it is neither.
std::string literalOf(const std::string& expression, const std::string& source) {
  if (expression.starts_with('"')) return expression.substr(1, expression.size() - 2);
  const std::regex constant("\\b" + expression + R"x((?:\[\])?\s*=\s*"([^"]*)")x");
  std::smatch found;
  const bool isName = std::regex_match(expression, std::regex("k[A-Z]\\w*"));
  return isName && std::regex_search(source, found, constant) ? found[1].str() : "";
}

bool isKnown(const std::string& text) {
  const std::vector<LogHistory::Entry> entry{{3, {}, text, 1}};
  const bool isAside = *platform::causeOfFailure(entry, false).cause == '\0';
  return isAside || platform::findCause(entry) || platform::causeOfNothingToDo(entry);
}

class FailureTexts : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    texts.clear();
    holders.clear();
    for (const auto& entry : std::filesystem::recursive_directory_iterator(projectFile("Host"))) {
      if (entry.path().extension() != ".cpp") continue;
      const std::string source = contentsOf(entry.path());
      for (const Place& place : placesIn(entry.path(), source)) {
        const std::string text = literalOf(place.expression, source);
        if (text.empty()) {
          holders.insert(place.file + ": " + place.expression);
        } else {
          texts[text].insert(place.file);
        }
      }
    }
  }

  static inline std::map<std::string, std::set<std::string>> texts;  // with their files
  static inline std::set<std::string> holders;
};

TEST_F(FailureTexts, AreKnownOrOfNoDownload) {
  for (const auto& [text, files] : texts) {
    if (kOfNoDownload.contains(text)) continue;
    EXPECT_TRUE(isKnown(text)) << *files.begin() << ": no cause for \"" << text << '"';
  }
}

TEST_F(FailureTexts, OfNoDownloadAreInTheSources) {
  for (const std::string& text : kOfNoDownload) {
    EXPECT_TRUE(texts.contains(text)) << text;
    EXPECT_FALSE(isKnown(text)) << text;
  }
}

TEST_F(FailureTexts, AreFoundByTheSearch) {
  EXPECT_EQ(holders, kHoldersOfTexts);
  for (const char* text :
       {"Unable to write data", "Unable to open interface.",
        "Async read failed: ", "Async write failed: ", "Failed to load firmware file.",
        "Could not get data fork.", "Invalid list selection", "Invalid platform ID version: got ",
        "Cannot read or write no data.", "The firmware download failed on the printer.",
        "The device has no ACL channel.",
        "Failed to get file system reference from URL or load the firmware file."}) {
    EXPECT_TRUE(texts.contains(text)) << text;
  }
}

// Results of USB that say no more than that something failed.
const std::set<std::string> kResultsWithoutMeaning{
    "0xe00002bc",  // an error without a name
    "0xe00002c2",  // a wrong argument of this program
    "0xe00002c7",  // not supported
    "0xe00002ca",  // an error on the bus
    "0xe00002cd",  // not open
    "0xe00002e7",  // too few bytes
    "0xe00002eb",  // cancelled
    "0xe000405f",  // no event source
};

TEST(FailureResults, OfUsbAreKnownOrWithoutMeaning) {
  const std::string source = contentsOf(projectFile("Host/platform/UsbRegistry.h"));
  const std::regex constant(R"(= ioReturn\((0x[0-9a-f]+)\))");
  std::size_t count = 0;
  for (std::sregex_iterator found(source.begin(), source.end(), constant), none; found != none;
       ++found, ++count) {
    const std::string result = (*found)[1];
    const std::vector<LogHistory::Entry> entry{
        {3, {}, "Async read failed: I/O Kit error=" + result, 1}};
    EXPECT_EQ(std::string(platform::causeOfFailure(entry, false).cause) ==
                  "The USB connection to the printer failed.",
              kResultsWithoutMeaning.contains(result))
        << result;
  }
  EXPECT_GE(count, 20u);
}

}  // namespace
