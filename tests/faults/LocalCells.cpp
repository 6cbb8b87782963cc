#include "LocalCells.h"

#include "DownloadLog.h"
#include "usbSteps.h"

namespace {

using enum Afterwards;
using namespace std::string_literals;

// Up to where the file is looked for.
Lines choosing() { return upTo(4) + answered(4) + kDeviceIdHandled; }

LocalCell fileCell(const std::string& what, LocalFault fault, Verdict verdict, const Lines& log) {
  LocalCell cell;
  cell.table = "firmware file";
  cell.when = "when the firmware is chosen";
  cell.what = what;
  cell.fault = fault;
  cell.verdict = verdict;
  cell.afterwards = Asked;
  cell.log = choosing() + log + kUsbTransportGone;
  cell.position = "after id-request";
  return cell;
}

LocalCell unloaded(const std::string& what, LocalFault fault, const Lines& reasons,
                   platform::OSStatus status = 0) {
  LocalCell cell =
      fileCell(what, fault, Verdict::Failed, reasons + Lines{"3 Failed to load firmware file."});
  cell.status = status;
  return cell;
}

std::vector<LocalCell> unreadable() {
  const std::string isADirectory = " <status=21 => EISDIR; desc: Is a directory>";
  const std::string noEntry = " <status=2 => ENOENT; desc: No such file or directory>";
  const std::string noReference = "3 Failed to make file system reference for firmware file.";
  const Lines noDirectory{
      "3 Failed to get file system reference from URL or load the firmware file."};
  LocalCell empty = unloaded("is empty", LocalFault::Bytes, {"3 Firmware file is empty."});
  return {
      unloaded("is missing", LocalFault::Missing, {noReference + noEntry}),
      unloaded("is a link that leads nowhere", LocalFault::DanglingLink,
               {"3 Failed to get file info." + noEntry}),
      unloaded("is a directory", LocalFault::Directory,
               {"3 Could not get data fork." + isADirectory}),
      unloaded("is a named pipe", LocalFault::Pipe, {"3 Firmware file is empty."}),
      empty,
      unloaded("has a size that nobody knows", LocalFault::SizeFails,
               {"3 Failed to get file info. <status=5 => EIO; desc: Input/output error>"}, 5),
      unloaded("may not be read", LocalFault::OpenFails,
               {"3 Could not open data fork. <status=13 => EACCES; desc: Permission denied>"}, 13),
      unloaded("cannot be read to its end", LocalFault::ReadFails,
               {"3 File read failed. <status=5 => EIO; desc: Input/output error>",
                "3 Read 14 of 28 bytes"},
               5),
      unloaded(
          "becomes shorter while it is read", LocalFault::Truncated,
          {"3 File read failed. <status=0 => noErr; desc: No error>", "3 Read 14 of 28 bytes"}),
      unloaded("has lost its directory", LocalFault::NoResources, noDirectory),
      unloaded("is in a directory that the program cannot name", LocalFault::UnknownResources,
               {"3 Bundle resources URL is null."}),
      unloaded("belongs to a program that cannot find itself", LocalFault::NoBundle,
               {"3 Could not find application bundle."}),
      unloaded("cannot be opened: the process has no descriptor left", LocalFault::NoDescriptors,
               {"3 Could not open data fork. <status=24 => EMFILE; desc: Too many open files>"}),
  };
}

// A damaged file has version 0, which no printer lacks.
std::vector<LocalCell> malformed() {
  struct Malformed {
    const char* what;
    std::string bytes;
    Lines reason;
  };
  const auto version = [](const std::string& got) {
    return Lines{"3 Invalid platform ID version: got " + got + ", expected 3"};
  };
  const auto fields = [](const std::string& got) {
    return Lines{"3 Invalid number of platform ID fields: got " + got + ", expected 3"};
  };
  const std::vector<Malformed> all{
      {"is one byte long", "\x03"s, version("0")},
      {"is two bytes long", "\x03\x00"s, fields("0")},
      {"has block version 0", "FIRMWAREABC\00000000200XYZ\0Q\0\x00\x12"s, version("0")},
      {"has block version 2", "FIRMWAREABC\00000000200XYZ\0Q\0\x02\x12"s, version("2")},
      {"has block version 255", "FIRMWAREABC\00000000200XYZ\0Q\0\xff\x12"s, version("255")},
      {"has a block of no bytes", "FIRMWAREABC\00000000200XYZ\0Q\0\x03\x00"s, fields("0")},
      {"has a block longer than itself", "FIRMWAREABC\00000000200XYZ\0Q\0\x03\xff"s, fields("0")},
      {"has a block that begins too late", "FIRMWAREABC\00000000200XYZ\0Q\0\x03\x0e"s, fields("2")},
      {"has one field too few", "FIRMWAREABC\00000000200XYZQ.\0\x03\x12"s, fields("2")},
      {"has one field too many", "FIRMWAREABC\00000000200X\0Z\0Q\0\x03\x12"s, fields("4")},
      {"is all zero", std::string(28, '\0'), version("0")},
      {"has a version of letters",
       "FIRMWAREABC\0VERSION!XYZ\0Q\0\x03\x12"s,
       {"5 Firmware version in file: VERSION!"}},
      {"has version 0",
       "FIRMWAREABC\00000000000XYZ\0Q\0\x03\x12"s,
       {"5 Firmware version in file: 00000000"}},
      {"has a version that is not UTF-8",
       "FIRMWAREABC\0\xff\xfe"
       "000200XYZ\0Q\0\x03\x12"s,
       {"5 Firmware version in file: <null>"}},
      {"has an older version",
       "FIRMWAREABC\00000000099XYZ\0Q\0\x03\x12"s,
       {"5 Firmware version in file: 00000099"}},
  };
  std::vector<LocalCell> cells;
  for (const Malformed& each : all) {
    cells.push_back(
        fileCell(each.what, LocalFault::Bytes, Verdict::UpToDate,
                 each.reason + Lines{"5 Firmware on the printer is already up-to-date."}));
    cells.back().bytes = each.bytes;
  }
  return cells;
}

std::vector<LocalCell> quits() {
  std::vector<LocalCell> cells;
  for (std::size_t i = 1; i <= usbSteps().size(); ++i) {
    const UsbStep& step = usbSteps()[i - 1];
    LocalCell cell;
    cell.table = "quit";
    cell.when = step.during;
    cell.what = "quit, and say so again when you are asked";
    cell.fault = LocalFault::Quit;
    cell.step = i;
    cell.verdict = Verdict::Quits;
    cell.afterwards = step.afterwards;
    cell.log = upTo(i) + Lines{"5 Cleaning up firmware downloader."} + kUsbTransportGone;
    cell.position = step.untouched;
    cells.push_back(cell);
  }
  return cells;
}

std::vector<LocalCell> secondDownloads() {
  std::vector<LocalCell> cells;
  for (std::size_t i = 1; i <= usbSteps().size(); ++i) {
    LocalCell cell;
    cell.table = "second download";
    cell.when = usbSteps()[i - 1].during;
    cell.what = "ask for another download, by button and by menu";
    cell.fault = LocalFault::AnotherDownload;
    cell.step = i;
    cell.verdict = Verdict::Updated;
    cell.afterwards = Updated;
    cell.log = upTo(8) + packet(16) + kBurned + kUsbTransportGone;
    cell.position = "after uel";
    cells.push_back(cell);
  }
  return cells;
}

}  // namespace

const std::vector<LocalCell>& localCells() {
  static const std::vector<LocalCell> all = [] {
    std::vector<LocalCell> cells;
    for (const auto& column : {unreadable(), malformed(), quits(), secondDownloads()}) {
      cells.insert(cells.end(), column.begin(), column.end());
    }
    return cells;
  }();
  return all;
}
