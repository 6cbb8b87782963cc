#include "networkReplies.h"

#include <algorithm>

#include "DownloadLog.h"
#include "assertions.h"
#include "whenInWords.h"

namespace {

using enum Afterwards;

const Lines kAwaitingReply = kAwaitingResponse + kAwaitingDeviceId + kAwaitingBurn;
const Lines kUpdated = kAwaitingReply + kBurned + kTransportGone;

// "ACL Response" as the log has it: "00ac 0006 1" and all sixteen bytes.
Lines response(const std::string& prefix, const std::string& command, const std::string& status,
               const std::string& raw) {
  return {"7 ACL Response: prefix=" + prefix + "; cmd ID=" + command + "; cmdStatus=" + status,
          "7 ACL Response raw: " + raw + " "};
}

Lines reading(std::size_t bytes) {
  return {"5 Reading IEEE 1284 device ID...",
          "5 Async read request for " + std::to_string(bytes) + " bytes."};
}

std::string inHex(std::size_t byte) {
  const std::string digits = "0123456789abcdef";
  return {digits.at(byte / 16), digits.at(byte % 16)};
}

// A good response that announces so many bytes of device ID.
Lines announced(std::size_t bytes) {
  return kAwaitingResponse +
         response("00ac", "0006", "1",
                  "00 ac 00 06 00 01 " + inHex(bytes / 256) + " " + inHex(bytes % 256) +
                      " 00 00 00 00 00 00 00 00") +
         reading(bytes);
}

// The device ID is in, and what it says is looked for.
Lines identified(const std::string& id) {
  return {"5 Validating IEEE 1284 device ID...", "5 IEEE 1284 device ID is " + id,
          "5 Choosing and loading a firmware file..."};
}

Lines version(const std::string& text) {
  return {"5 Firmware version in IEEE 1284 string: " + text};
}

const Lines kNoFirmware{"3 Failed to load firmware file.", "5 Cleaning up network transport."};
const Lines kNoModel =
    Lines{
        "3 No printer model found; cannot match a firmware file without a "
        "model.",
        "3 Failed to get file system reference from URL or load the firmware "
        "file."} +
    kNoFirmware;
const Lines kNoFile = Lines{"3 Could not find a firmware file to download.",
                            "3 Failed to get file system reference from URL or load the firmware "
                            "file."} +
                      kNoFirmware;
const Lines kUpToDate{"5 Firmware version in file: 00000200",
                      "5 Firmware on the printer is already up-to-date.",
                      "5 Cleaning up network transport."};

// From the version of the file to the end of a good update.
const Lines kSentAndBurned =
    Lines(kAwaitingBurn.begin() + static_cast<std::ptrdiff_t>(kDeviceIdHandled.size()),
          kAwaitingBurn.end()) +
    kBurned + kTransportGone;

NetworkCell cell(const std::string& table, const std::string& when, const std::string& what,
                 std::vector<std::string> faults, Verdict verdict, Afterwards afterwards,
                 const Lines& log) {
  NetworkCell cell;
  cell.table = table;
  cell.when = when;
  cell.what = what;
  cell.faults = std::move(faults);
  cell.verdict = verdict;
  cell.afterwards = afterwards;
  cell.log = log;
  cell.inAnyPieces = true;
  cell.position = verdict == Verdict::Updated ? "after uel" : "after id-request";
  return cell;
}

NetworkCell aborting(const std::string& table, const std::string& when, const std::string& what,
                     const std::string& fault, const Lines& log, const std::string& assertion) {
  NetworkCell aborts = cell(table, when, what, {"merge", fault}, Verdict::Aborts, Asked, log);
  aborts.assertion = assertion;
  return aborts;
}

// What comes in which pieces, and when, makes no difference.
std::vector<NetworkCell> pieces() {
  std::vector<NetworkCell> cells;
  const auto add = [&](const std::string& when, const std::string& what,
                       std::vector<std::string> faults) {
    cells.push_back(
        cell("pieces", when, what, std::move(faults), Verdict::Updated, Updated, kUpdated));
  };
  const std::string throughout = "throughout";
  add(throughout, "sends its answers byte by byte", {"dribble=1/1"});
  add(throughout, "sends its answers in pieces of seven bytes", {"dribble=7/1"});
  add("in the response", "sends it byte by byte", {"dribble@id-response=1/1"});
  add("in the device ID", "sends it in pieces of five bytes", {"dribble@device-id=5/1"});
  add("in its answer to the firmware", "sends it byte by byte", {"dribble@burn-reply=1/1"});
  add("in the response", "sends the device ID in one piece with it", {"merge"});
  add(throughout, "takes ten bytes a millisecond", {"slow=10/1"});
  add(throughout, "has room for 2048 bytes", {"receive-buffer=2048"});
  for (const std::string bytes : {"1", "2", "8", "15", "16", "17", "18", "51"}) {
    add("after " + bytes + " of the 52 bytes of response and device ID", "pauses",
        {"split@id-response=" + bytes});
  }
  for (const std::string bytes : {"1", "2", "8", "15"}) {
    add("after " + bytes + " of the 16 bytes of its answer to the firmware", "pauses",
        {"split@burn-reply=" + bytes});
  }
  for (const std::string step : {"id-request", "id-response", "image", "burned"}) {
    add(whenInWords(step), "takes its time", {"delay@" + step + "=40"});
  }
  add("in the length before the device ID", "says 0", {"id-header=0"});
  add("in the length before the device ID", "says 65535", {"id-header=65535"});
  return cells;
}

// Bytes that nobody asked for come first in whatever is read next.
std::vector<NetworkCell> surplus() {
  const std::string what = "sends two bytes too many";
  std::vector<NetworkCell> cells;
  for (const std::string step :
       {"connect", "mid-status-off", "status-off", "mid-id-request", "id-request"}) {
    cells.push_back(aborting(
        "surplus", whenInWords(step), what, "extra@" + step + "=4142",
        kAwaitingResponse +
            response("4142", "00ac", "6", "41 42 00 ac 00 06 00 01 00 24 00 00 00 00 00 00"),
        kEmptyId));
  }

  // The device ID is read two bytes late, and its last two become the first of the burn reply.
  const Lines lateReply =
      response("303b", "00ac", "f", "30 3b 00 ac 00 0f 00 01 00 00 00 00 00 00 00 00") +
      Lines{"3 The firmware download failed on the printer."} + kTransportGone;
  const Lines sent(kSentAndBurned.begin(), kSentAndBurned.end() - 4);
  cells.push_back(
      cell("surplus", whenInWords("mid-id-response"), what, {"extra@mid-id-response=4142"},
           Verdict::Failed, Unannounced,
           kAwaitingResponse +
               response("00ac", "0006", "1", "00 ac 00 06 00 01 00 24 41 42 00 00 00 00 00 00") +
               reading(36) + identified("") + sent + lateReply));
  cells.push_back(cell("surplus", whenInWords("id-response"), what, {"extra@id-response=4142"},
                       Verdict::Failed, Unannounced,
                       announced(36) + identified("") + sent + lateReply));
  for (NetworkCell& late : cells) {
    if (late.verdict == Verdict::Failed) late.position = "after uel";
  }

  cells.push_back(cell("surplus", whenInWords("mid-device-id"), what,
                       {"merge", "extra@mid-device-id=4142"}, Verdict::Failed, Asked,
                       announced(36) + identified("MDL:KX35AB0T;LIC:QT725013;FWVER:10") + kNoFile));
  for (const std::string step :
       {"device-id", "mid-burn-header", "burn-header", "first-image-byte", "mid-image",
        "last-image-byte", "image", "mid-uel", "uel", "burned"}) {
    cells.push_back(
        cell("surplus", whenInWords(step), what, {"merge", "extra@" + step + "=4142"},
             Verdict::Failed, Unannounced,
             kAwaitingReply +
                 response("4142", "00ac", "f", "41 42 00 ac 00 0f 00 01 00 00 00 00 00 00 00 00") +
                 Lines{"3 The firmware download failed on the printer."} + kTransportGone));
    cells.back().position = "after uel";
  }
  cells.push_back(cell(
      "surplus", whenInWords("mid-burn-reply"), what, {"merge", "extra@mid-burn-reply=4142"},
      Verdict::Updated, Updated,
      kAwaitingReply +
          response("00ac", "000f", "1", "00 ac 00 0f 00 01 00 00 41 42 00 00 00 00 00 00") +
          Lines{"5 Firmware download is complete, the printer will restart."} + kTransportGone));
  cells.push_back(cell("surplus", whenInWords("burn-reply"), what,
                       {"merge", "extra@burn-reply=4142"}, Verdict::Updated, Updated, kUpdated));
  return cells;
}

// A response that cannot be one ends the program before a byte of firmware is sent.
std::vector<NetworkCell> wrongResponses() {
  struct Wrong {
    const char* what;
    const char* fault;
    const char* prefix;
    const char* command;
    const char* status;
    const char* raw;
  };
  const std::vector<Wrong> all{
      {"has the prefix 0000", "wrong-prefix@id-response=0", "0000", "0006", "1",
       "00 00 00 06 00 01 00 24"},
      {"has the prefix 00ad", "wrong-prefix@id-response=0x00ad", "00ad", "0006", "1",
       "00 ad 00 06 00 01 00 24"},
      {"has the prefix with its bytes exchanged", "wrong-prefix@id-response=0xac00", "ac00", "0006",
       "1", "ac 00 00 06 00 01 00 24"},
      {"has the prefix ffff", "wrong-prefix@id-response=0xffff", "ffff", "0006", "1",
       "ff ff 00 06 00 01 00 24"},
      {"answers command 0", "wrong-command@id-response=0", "00ac", "0000", "1",
       "00 ac 00 00 00 01 00 24"},
      {"answers command 7", "wrong-command@id-response=7", "00ac", "0007", "1",
       "00 ac 00 07 00 01 00 24"},
      {"answers the command to burn", "wrong-command@id-response=15", "00ac", "000f", "1",
       "00 ac 00 0f 00 01 00 24"},
      {"has its command with the bytes exchanged", "wrong-command@id-response=0x0600", "00ac",
       "0600", "1", "00 ac 06 00 00 01 00 24"},
      {"has status 0", "wrong-status@id-response=0", "00ac", "0006", "0",
       "00 ac 00 06 00 00 00 24"},
      {"has status 2", "wrong-status@id-response=2", "00ac", "0006", "2",
       "00 ac 00 06 00 02 00 24"},
      {"has its status with the bytes exchanged", "wrong-status@id-response=0x0100", "00ac", "0006",
       "100", "00 ac 00 06 01 00 00 24"},
      {"has status ffff", "wrong-status@id-response=0xffff", "00ac", "0006", "ffff",
       "00 ac 00 06 ff ff 00 24"},
      {"announces no device ID", "data-length=0", "00ac", "0006", "1", "00 ac 00 06 00 01 00 00"},
  };
  std::vector<NetworkCell> cells;
  for (const Wrong& each : all) {
    cells.push_back(
        aborting("response", "in the response", each.what, each.fault,
                 kAwaitingResponse + response(each.prefix, each.command, each.status,
                                              std::string(each.raw) + " 00 00 00 00 00 00 00 00"),
                 kEmptyId));
  }
  for (const std::size_t length : {std::size_t{1}, std::size_t{2}}) {
    cells.push_back(aborting("response", "in the response",
                             "announces " + std::to_string(length) +
                                 (length == 1 ? " byte" : " bytes") + " of device ID",
                             "data-length=" + std::to_string(length),
                             announced(length) + Lines{"5 Validating IEEE 1284 device ID..."},
                             kShortId));
  }
  return cells;
}

std::vector<NetworkCell> wrongLengths() {
  const std::string when = "in the response";
  std::vector<NetworkCell> cells{
      cell("response", when, "announces 3 bytes of device ID, and sends no more", {"data-length=3"},
           Verdict::Failed, Asked, announced(3) + identified("M") + kNoModel),
      cell("response", when, "cuts the device ID off inside LIC", {"merge", "data-length=20"},
           Verdict::Updated, Updated,
           announced(20) + identified("MDL:KX350T;LIC:QT7") + kSentAndBurned),
      cell("response", when, "cuts off the end of the version", {"merge", "data-length=35"},
           Verdict::Updated, Updated,
           announced(35) + identified("MDL:KX350T;LIC:QT725013;FWVER:100") + kSentAndBurned),
      cell("response", when, "announces one byte more than it sends", {"merge", "data-length=37"},
           Verdict::Waits, Asked, announced(37) + kDropped),
      cell("response", when, "announces 65535 bytes and sends 36", {"merge", "data-length=65535"},
           Verdict::Waits, Asked, announced(65535) + kDropped),
  };
  return cells;
}

// A printer that has burned may say what it likes: what it does not say rightly is a failure.
std::vector<NetworkCell> wrongBurnReplies() {
  struct Wrong {
    const char* what;
    const char* fault;
    Lines response;
    Afterwards afterwards;
  };
  const std::string rest = " 00 00 00 00 00 00 00 00 00 00";
  const std::vector<Wrong> all{
      {"has the prefix 0000", "wrong-prefix@burn-reply=0",
       response("0000", "000f", "1", "00 00 00 0f 00 01" + rest), Unannounced},
      {"has the prefix with its bytes exchanged", "wrong-prefix@burn-reply=0xac00",
       response("ac00", "000f", "1", "ac 00 00 0f 00 01" + rest), Unannounced},
      {"answers command 0", "wrong-command@burn-reply=0",
       response("00ac", "0000", "1", "00 ac 00 00 00 01" + rest), Unannounced},
      {"answers the question for the device ID", "wrong-command@burn-reply=6",
       response("00ac", "0006", "1", "00 ac 00 06 00 01" + rest), Unannounced},
      {"has its command with the bytes exchanged", "wrong-command@burn-reply=0x0f00",
       response("00ac", "0f00", "1", "00 ac 0f 00 00 01" + rest), Unannounced},
      {"has status 0", "wrong-status@burn-reply=0",
       response("00ac", "000f", "0", "00 ac 00 0f 00 00" + rest), Unannounced},
      {"has its status with the bytes exchanged", "wrong-status@burn-reply=0x0100",
       response("00ac", "000f", "100", "00 ac 00 0f 01 00" + rest), Unannounced},
      {"has status ffff", "wrong-status@burn-reply=0xffff",
       response("00ac", "000f", "ffff", "00 ac 00 0f ff ff" + rest), Unannounced},
      {"says that its memory failed (status 2)", "fail-burn",
       response("00ac", "000f", "2", "00 ac 00 0f 00 02" + rest), Refusing},
      {"says that it failed (status 9)", "fail-burn=9",
       response("00ac", "000f", "9", "00 ac 00 0f 00 09" + rest), Refusing},
      {"says that it failed (status 65535)", "fail-burn=65535",
       response("00ac", "000f", "ffff", "00 ac 00 0f ff ff" + rest), Refusing},
  };
  std::vector<NetworkCell> cells;
  for (const Wrong& each : all) {
    cells.push_back(cell("burn reply", "in its answer to the firmware", each.what,
                         {"merge", each.fault}, Verdict::Failed, each.afterwards,
                         kAwaitingReply + each.response +
                             Lines{"3 The firmware download failed on the printer."} +
                             kTransportGone));
    cells.back().position = "after uel";
  }
  return cells;
}

// As the option of the virtual printer writes it, a zero byte takes four characters. An entry of
// the log ends there.
const std::string kZeroByte = R"(\x00)";

std::size_t lengthOf(const std::string& id) {
  return id.find(kZeroByte) == std::string::npos ? id.size() : id.size() - 3;
}

std::string loggedOf(const std::string& id) { return id.substr(0, id.find(kZeroByte)); }

// What stands in the device ID.
std::vector<NetworkCell> identities() {
  struct Identity {
    const char* what;
    std::string id;
    Verdict verdict;
    Lines log;
  };
  const auto known = [](const std::string& text) { return version(text) + kUpToDate; };
  const std::string mine = "MDL:KX350T;LIC:QT725013;";
  const std::vector<Identity> all{
      {"has no model", "MFG:Veltra;LIC:QT725013;", Verdict::Failed, kNoModel},
      {"has an empty model", "MDL:;LIC:QT725013;", Verdict::Failed, kNoModel},
      {"has a model without an end", "MDL:KX350T", Verdict::Failed, kNoModel},
      {"has another model", "MDL:KX350T2;LIC:QT725013;", Verdict::Failed, kNoFile},
      {"has half of the model", "MDL:KX3;LIC:QT725013;", Verdict::Failed, kNoFile},
      {"has an unknown variant", "MDL:KX350T;LIC:ZZ;", Verdict::Failed, kNoFile},
      {"has half of the variant", "MDL:KX350T;LIC:QT72501;", Verdict::Failed, kNoFile},
      {"has the firmware's version", mine + "FWVER:200;", Verdict::UpToDate, known("200")},
      {"has a newer version", mine + "FWVER:201;", Verdict::UpToDate, known("201")},
      {"has the highest version", mine + "FWVER:4294967295;", Verdict::UpToDate,
       known("4294967295")},
      {"has a version that is no 32-bit number", mine + "FWVER:99999999999;", Verdict::UpToDate,
       known("99999999999")},
      {"has a zero byte before its model", R"(DES:a\x00b;MDL:KX350T;LIC:QT725013;FWVER:200;)",
       Verdict::UpToDate, known("200")},
      {"is in small letters, and up to date", "MDL:kx350t;LIC:qt725013;FWVER:200;",
       Verdict::UpToDate, known("200")},
      {"has no version", mine, Verdict::Updated, kSentAndBurned},
      {"has an empty version", mine + "FWVER:;", Verdict::Updated, version("") + kSentAndBurned},
      {"has a version with a letter in it", mine + "FWVER:12a;", Verdict::Updated,
       version("12a") + kSentAndBurned},
      {"has no variant", "MDL:KX350T;FWVER:100;", Verdict::Updated,
       version("100") + kSentAndBurned},
  };
  std::vector<NetworkCell> cells;
  for (const Identity& each : all) {
    cells.push_back(
        cell("device ID", "in the device ID", each.what, {"merge"}, each.verdict,
             each.verdict == Verdict::Updated ? Updated : Asked,
             announced(lengthOf(each.id) + 2) + identified(loggedOf(each.id)) + each.log));
    cells.back().options = {"--device-id", each.id};
  }
  cells.push_back(cell("device ID", "in the device ID", "has bytes that are not UTF-8", {"merge"},
                       Verdict::Aborts, Asked,
                       announced(41) + Lines{"5 Validating IEEE 1284 device ID...",
                                             "5 IEEE 1284 device ID is MDL:KX350T;LIC:QT725013;"
                                             "DES:\xff\xfe;FWVER:1;"}));
  cells.back().options = {"--device-id", R"(MDL:KX350T;LIC:QT725013;DES:\xff\xfe;FWVER:1;)"};
  cells.back().assertion = kNoText;
  return cells;
}

// A firmware of more than two hosts can have in flight between them.
std::vector<NetworkCell> large() {
  constexpr std::size_t kSize = 24 << 20;
  const auto large = [](const std::string& what, const std::string& fault, Verdict verdict,
                        Afterwards afterwards, const Lines& log, std::size_t size) {
    NetworkCell sent = cell("large firmware", whenInWords("mid-image"), what, {"merge", fault},
                            verdict, afterwards, log);
    sent.firmwareSize = size;
    if (verdict == Verdict::Failed) sent.position = "in image at 12582912 of 25165824";
    return sent;
  };
  const Lines writing = kAwaitingResponse + kAwaitingDeviceId + kHeaderWritten + kReady +
                        kImageBegin + Lines{"5 Async write request for 25165824 bytes."};
  const Lines failed = writing + kWriteFailed + kTransportGone;
  Lines taken = kUpdated;
  std::ranges::replace(taken, "5 Async write request for 28 bytes.",
                       "5 Async write request for 300020 bytes.");
  std::ranges::replace(taken, "5 This will take some time; using a timeout of 3000ms.",
                       "5 This will take some time; using a timeout of 15000ms.");
  std::vector<NetworkCell> cells{
      large("closes the connection", "close@mid-image", Verdict::Failed, Unfinished, failed, kSize),
      large("breaks the connection", "reset@mid-image", Verdict::Failed, Unfinished, failed, kSize),
      large("takes nothing more for five seconds", "hang@mid-image", Verdict::Failed, Unfinished,
            failed, kSize),
      large("takes 4096 bytes a millisecond", "slow=4096/1", Verdict::Updated, Updated, taken,
            300020)};
  for (NetworkCell& each : cells) {
    if (each.verdict == Verdict::Failed)
      each.faults.insert(each.faults.begin(), "receive-buffer=65536");
  }
  cells.back().when = "throughout";
  return cells;
}

NetworkCell refused() {
  NetworkCell refused =
      cell("refuses", "before the connection stands", "refuses it", {"refuse"}, Verdict::Failed,
           Untouched, kStatusOffWritten + kWriteFailed + kTransportGone);
  refused.position = "";
  return refused;
}

}  // namespace

std::vector<NetworkCell> replyCells() {
  std::vector<NetworkCell> cells{refused()};
  for (const auto& column : {pieces(), surplus(), wrongResponses(), wrongLengths(),
                             wrongBurnReplies(), identities(), large()}) {
    cells.insert(cells.end(), column.begin(), column.end());
  }
  return cells;
}
