#include "platform/FailureCause.h"

#include <algorithm>
#include <array>

#include "platform/Translatable.h"

namespace platform {
namespace {

// What a download puts before the text of an exception.
constexpr std::array<std::string_view, 4> kIntroductions{
    "I/O Kit error occurred during async task: ",
    "General runtime error occurred during async task: ",
    "Allocation error occurred during async task: ",
    "Failed to download firmware: ",
};

// The next steps that several causes share.

//: What to do after a failed download.
constexpr char kCheckAndTryAgain[] = TRANSLATABLE(
    "FailureCause",
    "Check that the printer is switched on, connected and not printing, then try again.");

//: What to do after a failed download to a network printer.
constexpr char kCheckNetwork[] = TRANSLATABLE(
    "FailureCause",
    "Check that the printer is switched on and on the same network as this computer, then try "
    "again.");

//: What to do after a failed download.
constexpr char kSwitchOffAndOn[] =
    TRANSLATABLE("FailureCause", "Switch the printer off and on, then try again.");

//: What to do after a failed download: wait, or else restart the printer.
constexpr char kWaitOrSwitchOff[] = TRANSLATABLE(
    "FailureCause",
    "Wait until the printer has finished its other work, or switch it off and on, then try again.");

//: What to do after a failed download: the firmware file came with a package, and has to be
//: installed once more.
constexpr char kInstallFirmwareAgain[] =
    TRANSLATABLE("FailureCause", "Install the printer’s firmware again, then try again.");

//: What to do after a failed download: files of this program are missing or damaged.
constexpr char kInstallProgramAgain[] =
    TRANSLATABLE("FailureCause", "Install this program again, then try again.");

//: What to do after a failed download to a USB printer.
constexpr char kConnectDirectly[] = TRANSLATABLE(
    "FailureCause",
    "Connect the printer’s cable directly to this computer, without a hub, then try again.");

//: What to do after a failed download: the computer lacks memory or other resources.
constexpr char kCloseOtherPrograms[] =
    TRANSLATABLE("FailureCause", "Close other programs, then try again.");

//: What to do after a failed download: "the details" are the part of this window with the log.
constexpr char kSendDetails[] = TRANSLATABLE(
    "FailureCause",
    "Try again. If it fails again, send a copy of the details to whoever supports this printer.");

//: Why a download failed: an established connection broke.
constexpr char kConnectionLost[] =
    TRANSLATABLE("FailureCause", "The connection to the printer was lost.");

//: Why a download failed.
constexpr char kUnreachable[] =
    TRANSLATABLE("FailureCause", "The printer cannot be reached over the network.");

//: Why a download failed: the printer remained silent.
constexpr char kNoAnswer[] = TRANSLATABLE("FailureCause", "The printer did not answer.");

//: Why a download failed: the printer is connected, and takes no more data.
constexpr char kTakesNoData[] = TRANSLATABLE("FailureCause", "The printer stopped taking data.");

//: Why a download failed: another computer or program has closed an established connection.
constexpr char kClosed[] = TRANSLATABLE("FailureCause", "The printer closed the connection.");

//: Why a download failed.
constexpr char kNotUnderstood[] = TRANSLATABLE(
    "FailureCause", "The printer answered something that this program does not understand.");

//: Why a download failed: too many files or connections are open on this computer.
constexpr char kNoResources[] =
    TRANSLATABLE("FailureCause", "This computer cannot open another connection.");

//: Why a download failed: a firewall on this computer, for example.
constexpr char kNotAllowed[] =
    TRANSLATABLE("FailureCause", "This computer does not allow the connection.");

//: What to do when this computer does not allow the connection to the printer.
constexpr char kAllow[] = TRANSLATABLE(
    "FailureCause", "Allow it in the settings of this computer’s firewall, then try again.");

//: Why a download failed.
constexpr char kNoMemory[] = TRANSLATABLE("FailureCause", "This computer ran out of memory.");

//: Why a download failed: a fault of this program, not of the printer.
constexpr char kOwnError[] = TRANSLATABLE("FailureCause", "This program met an error of its own.");

//: Why a download failed.
constexpr char kFileMissing[] =
    TRANSLATABLE("FailureCause", "The file with the firmware is missing.");

//: Why a download failed.
constexpr char kFileUnreadable[] =
    TRANSLATABLE("FailureCause", "The file with the firmware cannot be read.");

//: Why a download failed, or why nothing was sent.
constexpr char kFileDamaged[] =
    TRANSLATABLE("FailureCause", "The file with the firmware is damaged.");

//: Why a download failed.
constexpr char kProgramFilesMissing[] =
    TRANSLATABLE("FailureCause", "Files of this program are missing.");

//: Why a download failed: the user has no right to open the USB device.
constexpr char kNotPermitted[] =
    TRANSLATABLE("FailureCause", "You are not permitted to use the printer’s USB connection.");

//: What to do when the user has no right to open the USB device.
constexpr char kAskForPermission[] = TRANSLATABLE(
    "FailureCause",
    "Unplug the printer and plug it in again. If that does not help, ask the administrator of this "
    "computer for permission.");

//: Why a download failed.
constexpr char kInUse[] =
    TRANSLATABLE("FailureCause", "Another program is using the printer’s USB connection.");

//: What to do when another program is using the printer's USB connection.
constexpr char kCloseTheOther[] =
    TRANSLATABLE("FailureCause", "Close programs that print or scan, then try again.");

//: Why a download to a USB printer failed.
constexpr char kUnplugged[] =
    TRANSLATABLE("FailureCause", "The printer was disconnected or switched off.");

//: What to do when a USB printer was disconnected or switched off.
constexpr char kReconnect[] =
    TRANSLATABLE("FailureCause", "Check its cable and switch it on, then try again.");

//: Why a download to a USB printer failed: it has no USB interface of the kind for printers.
constexpr char kNoInterface[] =
    TRANSLATABLE("FailureCause", "The printer offers no USB connection that this program can use.");

//: Why a download to a USB printer failed.
constexpr char kUsbError[] =
    TRANSLATABLE("FailureCause", "The USB connection to the printer failed.");

//: Why a download to a USB printer failed: the kernel of this computer limits a transfer.
constexpr char kTooLarge[] =
    TRANSLATABLE("FailureCause", "The firmware is larger than this computer allows over USB.");

//: What to do when the firmware is larger than this computer allows over USB. The text in quotation
//: marks is a setting and not translated.
constexpr char kRaiseLimit[] = TRANSLATABLE(
    "FailureCause",
    "Ask the administrator of this computer to raise “usbcore.usbfs_memory_mb”, then try again.");

// An entry that says why, by its beginning, after the introduction.
struct Row {
  std::string_view beginning;
  const char* cause;
  const char* nextStep;
};

// The first that stands in the download's part of the log is the cause, so that what says most
// comes first.
const std::array kRows{
    // What the host says about connections stands in the history alone.
    Row{"Connecting failed: ECONNREFUSED",
        //: Why a download failed: the network printer is there, and takes no connection.
        TRANSLATABLE("FailureCause", "The printer refused the connection."), kWaitOrSwitchOff},
    Row{"Connecting failed: ETIMEDOUT", kNoAnswer, kCheckNetwork},
    Row{"Connecting failed: EAFNOSUPPORT",
        //: Why a download failed: the network printer has an IPv6 address only.
        TRANSLATABLE("FailureCause", "The printer has no address that this program can use."),
        //: What to do when a network printer has an IPv6 address only.
        TRANSLATABLE("FailureCause",
                     "Give the printer an IPv4 address in its network settings, then try "
                     "again.")},
    Row{"Connecting failed: EACCES", kNotAllowed, kAllow},
    Row{"Connecting failed: EPERM", kNotAllowed, kAllow},
    Row{"Connecting failed: EMFILE", kNoResources, kCloseOtherPrograms},
    Row{"Connecting failed: ENFILE", kNoResources, kCloseOtherPrograms},
    Row{"Connecting failed: ENOBUFS", kNoMemory, kCloseOtherPrograms},
    Row{"Connecting failed: ENOMEM", kNoMemory, kCloseOtherPrograms},
    Row{"Connecting failed: ", kUnreachable, kCheckNetwork},
    Row{"Unable to connect to socket", kUnreachable, kCheckNetwork},
    Row{"Sending failed: ETIMEDOUT", kTakesNoData, kSwitchOffAndOn},
    Row{"Sending failed: EPIPE", kClosed, kWaitOrSwitchOff},
    Row{"Sending failed: ECONNRESET", kClosed, kWaitOrSwitchOff},
    Row{"Sending failed: ", kConnectionLost, kCheckNetwork},
    Row{"Unable to write data", kConnectionLost, kCheckNetwork},

    // The firmware file.
    Row{"No printer model found; cannot match a firmware file without a model.",
        //: Why a download failed.
        TRANSLATABLE("FailureCause", "The printer did not say which model it is."),
        kSwitchOffAndOn},
    Row{"Could not find a firmware file to download.",
        //: Why a download failed.
        TRANSLATABLE("FailureCause", "There is no firmware for this model of printer."),
        //: What to do when there is no firmware for a printer.
        TRANSLATABLE("FailureCause",
                     "Ask whoever supports this printer where its firmware is to be had.")},
    Row{"Could not find application bundle.", kProgramFilesMissing, kInstallProgramAgain},
    Row{"Bundle resources URL is null.", kProgramFilesMissing, kInstallProgramAgain},
    Row{"Failed to get file system reference from URL or load the firmware file.",
        kProgramFilesMissing, kInstallProgramAgain},
    Row{"Failed to make file system reference for firmware file. <status=2 ", kFileMissing,
        kInstallFirmwareAgain},
    Row{"Failed to make file system reference for firmware file.", kFileUnreadable,
        kInstallFirmwareAgain},
    Row{"Failed to get file info. <status=2 ", kFileMissing, kInstallFirmwareAgain},
    Row{"Failed to get file info.", kFileUnreadable, kInstallFirmwareAgain},
    Row{"Firmware file is empty.", kFileDamaged, kInstallFirmwareAgain},
    Row{"Could not get data fork.", kFileUnreadable, kInstallFirmwareAgain},
    Row{"Could not open data fork.", kFileUnreadable, kInstallFirmwareAgain},
    Row{"File read failed.", kFileUnreadable, kInstallFirmwareAgain},
    Row{"Read ", kFileUnreadable, kInstallFirmwareAgain},
    Row{"Failed to load firmware file.", kFileUnreadable, kInstallFirmwareAgain},

    // A download that did not begin.
    Row{"Invalid list selection",
        //: Why a download did not begin.
        TRANSLATABLE("FailureCause", "The printer is no longer in the list."),
        //: What to do when a printer went before its download began.
        TRANSLATABLE("FailureCause", "Wait until it is back, then try again.")},

    // The rest.
    Row{"The firmware download failed on the printer.", kNotUnderstood, kSwitchOffAndOn},
    Row{"std::bad_alloc", kNoMemory, kCloseOtherPrograms},
    Row{"Cannot read or write no data.", kOwnError, kSendDetails},
    Row{"Null buffer is invalid.", kOwnError, kSendDetails},
    Row{"Not enough data to pop", kOwnError, kSendDetails},
    Row{"Failed to create or post FirmwareDownloader event.", kOwnError, kSendDetails},
};

// Entries about the USB connection: what says why is the result in them.
constexpr std::array<std::string_view, 11> kUsbBeginnings{
    "Unable to open interface.",
    "Unable to get number of endpoints.",
    "Unable to get properties of pipe.",
    "Unable to create asynchronous event source.",
    "Failed to clear pipe stall.",
    "Async write request failed.",
    "Async read request failed.",
    "Async write failed: ",
    "Async read failed: ",
    "The interface cannot be read.",
    "The device has no ACL channel.",
};

// Errors that the log may get while a download runs, and that are about something else.
constexpr std::array<std::string_view, 8> kAsides{
    "Bonjour discovery error: ",
    "No data in TXT record for service: ",
    "-> No addresses found for service: ",
    "-> No name or IP address found for service: ",
    "Failed to remove USB printer from list. ",
    "Unexpected event ",
    "Can't find OK button.",
    "The kernel driver ",
};

struct UsbRow {
  std::string_view result;
  std::string_view beginning;  // of the entry, when the result has several meanings
  const char* cause;
  const char* nextStep;
};

// usbfs says of a transfer that is larger than it takes that memory is exhausted.
constexpr std::array kUsbRows{
    UsbRow{"0xe00002bd", "Async write request failed.", kTooLarge, kRaiseLimit},
    UsbRow{"0xe00002bd", "", kNoMemory, kCloseOtherPrograms},
    UsbRow{"0xe00002be", "", kNoResources, kCloseOtherPrograms},
    UsbRow{"0xe00002c0", "", kUnplugged, kReconnect},
    UsbRow{"0xe00002c1", "", kNotPermitted, kAskForPermission},
    UsbRow{"0xe00002c5", "", kInUse, kCloseTheOther},
    UsbRow{"0xe00002d5", "", kInUse, kCloseTheOther},
    UsbRow{"0xe00002d6", "Async write", kTakesNoData, kSwitchOffAndOn},
    UsbRow{"0xe00002d6", "", kNoAnswer, kSwitchOffAndOn},
    UsbRow{"0xe00002e2", "", kNotPermitted, kAskForPermission},
    UsbRow{"0xe00002e8", "", kNotUnderstood, kSwitchOffAndOn},
    UsbRow{"0xe00002ed", "", kNoAnswer, kSwitchOffAndOn},
    UsbRow{"0xe00002f0", "", kNoInterface, kSwitchOffAndOn},
    UsbRow{"0xe000404f", "", kTakesNoData, kSwitchOffAndOn},
    UsbRow{"0xe0004051", "Async write", kTakesNoData, kSwitchOffAndOn},
    UsbRow{"0xe0004051", "", kNoAnswer, kSwitchOffAndOn},
    UsbRow{"0xe0004061", "", kNoInterface, kSwitchOffAndOn},
    UsbRow{"", "", kUsbError, kConnectDirectly},
};

// A program that may be at a printer, and what to do then.
struct KnownProgram {
  std::string_view name;
  const char* nextStep;
};

//: What to do when another program of this computer is updating the same printer.
constexpr char kWaitForItsEnd[] =
    TRANSLATABLE("FailureCause", "Wait until it has finished, then try again.");

// Whoever closed one of this product's would leave the printer without firmware. A service is to
// stay away.
constexpr std::array kKnownPrograms{
    KnownProgram{"fwupdate", kWaitForItsEnd},
    KnownProgram{"fwupdatectl", kWaitForItsEnd},
    KnownProgram{
        "ipp-usb",
        //: What to do when the service "ipp-usb" is using a USB printer. The text in quotation
        //: marks is a command and not translated.
        TRANSLATABLE("FailureCause",
                     "Stop it with the command “systemctl stop ipp-usb”, then try again.")},
    KnownProgram{"cupsd",
                 //: What to do when the service "cups" is using a USB printer. The text in
                 //: quotation marks is a command and not translated.
                 TRANSLATABLE("FailureCause",
                              "Stop it with the command “systemctl stop cups”, then try again.")},
};

std::string_view withoutIntroduction(std::string_view text) {
  for (const std::string_view introduction : kIntroductions) {
    if (text.starts_with(introduction)) return text.substr(introduction.size());
  }
  return text;
}

// The end of a result in an entry: a bracket may follow it.
bool hasResult(std::string_view text, std::string_view result) {
  if (text.ends_with(']')) text.remove_suffix(1);
  return text.ends_with(result);
}

// "… is in use by ipp-usb (process 812).": the name alone.
FailureCause heldBy(std::string_view holder) {
  const std::size_t process = holder.rfind(" (process ");
  const std::string_view program = holder.substr(0, process);
  FailureCause held{
      nullptr,
      //: Why a download failed. %1 is the name of a program.
      TRANSLATABLE("FailureCause", "The program %1 is using the printer’s USB connection."),
      //: What to do when a program is using the USB connection. %1 is its name.
      TRANSLATABLE("FailureCause", "Close %1, then try again."), std::string(program)};
  held.isInUse = true;
  for (const KnownProgram& known : kKnownPrograms) {
    if (program == known.name) held.nextStep = known.nextStep;
  }
  return held;
}

// Who has the interface; nothing when the entry is about something else.
std::optional<FailureCause> holderIn(std::string_view text) {
  constexpr std::string_view kHeld = "The printer's interface is in use by ";
  constexpr std::string_view kByDriver = "the kernel driver ";
  if (!text.starts_with(kHeld)) return std::nullopt;
  text.remove_prefix(kHeld.size());
  if (text.ends_with('.')) text.remove_suffix(1);
  if (text == "another program") return std::nullopt;  // which the result of the call says, too
  if (!text.starts_with(kByDriver)) return heldBy(text);
  return FailureCause{
      nullptr,
      //: Why a download failed. %1 is the name of a driver of this computer.
      TRANSLATABLE("FailureCause",
                   "The driver %1 of this computer is using the printer’s USB "
                   "connection."),
      //: What to do when a driver of this computer is using a USB printer.
      TRANSLATABLE("FailureCause", "Unplug the printer and plug it in again, then try again."),
      std::string(text.substr(kByDriver.size()))};
}

// Who sends to the network printer already; nothing when the entry is about something else.
std::optional<FailureCause> lockHolderIn(std::string_view text) {
  constexpr std::string_view kHeld = "The printer is in use by ";
  constexpr std::string_view kProcess = "process ";
  if (!text.starts_with(kHeld)) return std::nullopt;
  text.remove_prefix(kHeld.size());
  if (text.ends_with('.')) text.remove_suffix(1);
  FailureCause held{nullptr,
                    //: Why a download failed. %1 is the name of a program and the number of its
                    //: process, for example "fwupdate (812)".
                    TRANSLATABLE("FailureCause", "The program %1 is using this printer."),
                    kWaitForItsEnd, std::string(text)};
  held.isInUse = true;
  const std::size_t process = held.subject.rfind(kProcess);
  if (process == std::string::npos) {
    held.cause =
        //: Why a download failed: which program it is, is not known.
        TRANSLATABLE("FailureCause", "Another program is using this printer.");
  } else {
    held.subject.erase(process, kProcess.size());
  }
  return held;
}

// The printer's answer to the firmware, in a dump.
bool isRefusal(std::string_view text) {
  constexpr std::string_view kBurnAnswer = "ACL Response: prefix=00ac; cmd ID=000f; cmdStatus=";
  return text.starts_with(kBurnAnswer) && text.substr(kBurnAnswer.size()) != "1";
}

FailureCause refused() {
  return {nullptr,
          //: Why a download failed: the printer has received the firmware and does not want it.
          TRANSLATABLE("FailureCause", "The printer refused the firmware."),
          //: What to do when the printer refused the firmware.
          TRANSLATABLE("FailureCause",
                       "Switch the printer off and on, then try again. If it refuses again, "
                       "ask whoever supports this printer."),
          {}};
}

std::optional<FailureCause> usbCause(std::string_view text) {
  const bool isUsb = std::ranges::any_of(
      kUsbBeginnings, [&](std::string_view beginning) { return text.starts_with(beginning); });
  if (!isUsb) return std::nullopt;
  const auto row = std::ranges::find_if(kUsbRows, [&](const UsbRow& each) {
    return hasResult(text, each.result) && text.starts_with(each.beginning);
  });
  return FailureCause{nullptr, row->cause, row->nextStep, {}, row->cause == kNotPermitted};
}

// The first of the entries for which `find` finds something.
template <typename Find>
std::optional<FailureCause> firstOf(const std::vector<LogHistory::Entry>& entries, Find find) {
  for (const LogHistory::Entry& entry : entries) {
    if (auto cause = find(entry)) return cause;
  }
  return std::nullopt;
}

// Errors are looked for in no other entry: a printer chooses what stands in some of them.
template <typename Find>
std::optional<FailureCause> firstOfErrors(const std::vector<LogHistory::Entry>& entries,
                                          Find find) {
  return firstOf(entries, [&](const LogHistory::Entry& entry) -> std::optional<FailureCause> {
    if (entry.priority > LogHistory::kError) return std::nullopt;
    return find(withoutIntroduction(entry.text));
  });
}

std::optional<FailureCause> causeWith(const std::vector<LogHistory::Entry>& entries,
                                      const Row& row) {
  return firstOfErrors(entries, [&](std::string_view text) -> std::optional<FailureCause> {
    if (!text.starts_with(row.beginning)) return std::nullopt;
    return FailureCause{nullptr, row.cause, row.nextStep, {}};
  });
}

bool hasRefusal(const std::vector<LogHistory::Entry>& entries) {
  return std::ranges::any_of(entries,
                             [](const LogHistory::Entry& entry) { return isRefusal(entry.text); });
}

bool isAside(std::string_view text) {
  return std::ranges::any_of(kAsides,
                             [&](std::string_view aside) { return text.starts_with(aside); });
}

// What stands last is what the program gave up for.
FailureCause unknown(const std::vector<LogHistory::Entry>& entries) {
  FailureCause said{nullptr, "", kCheckAndTryAgain, {}};
  for (const LogHistory::Entry& entry : entries) {
    if (entry.priority > LogHistory::kError || isAside(entry.text)) continue;
    said.cause = "%1";
    said.subject = entry.text;
  }
  return said;
}

}  // namespace

std::optional<FailureCause> findCause(const std::vector<LogHistory::Entry>& entries) {
  if (hasRefusal(entries)) return refused();
  if (auto held = firstOf(entries, [](const auto& entry) { return holderIn(entry.text); })) {
    return held;
  }
  if (auto held = firstOfErrors(entries, lockHolderIn)) return held;
  if (auto usb = firstOfErrors(entries, usbCause)) return usb;
  for (const Row& row : kRows) {
    if (auto cause = causeWith(entries, row)) return cause;
  }
  return std::nullopt;
}

FailureCause causeOfFailure(const std::vector<LogHistory::Entry>& entries, bool firmwareWasSent) {
  FailureCause cause = findCause(entries).value_or(unknown(entries));
  if (!firmwareWasSent || hasRefusal(entries)) return cause;
  cause.headline =
      //: Headline of a failed download: the printer has got all of the firmware, and nobody knows
      //: whether it has it in its memory now.
      TRANSLATABLE("FailureCause", "The printer did not confirm the update.");
  cause.nextStep =
      //: What to do when the printer has got all of the firmware and did not confirm that.
      TRANSLATABLE("FailureCause",
                   "It may still be writing its memory: leave it switched on for a few "
                   "minutes. Then download the firmware again; a printer that has it is "
                   "reported as up to date.");
  return cause;
}

std::optional<FailureCause> causeOfNothingToDo(const std::vector<LogHistory::Entry>& entries) {
  return firstOfErrors(entries, [](std::string_view text) -> std::optional<FailureCause> {
    if (!text.starts_with("Invalid platform ID version: got ") &&
        !text.starts_with("Invalid number of platform ID fields: got ")) {
      return std::nullopt;
    }
    //: Headline of a download that ended because the file with the firmware is damaged.
    return FailureCause{TRANSLATABLE("FailureCause", "Nothing was sent to the printer."),
                        kFileDamaged,
                        kInstallFirmwareAgain,
                        {}};
  });
}

}  // namespace platform
