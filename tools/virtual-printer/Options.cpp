#include "Options.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <stdexcept>

#include "Wrap.h"
#include "unescape.h"

namespace virtualprinter {
namespace {

constexpr std::uint64_t kMostPrinters = 10000;

using Take = void (*)(Options& options, const std::string& value);

struct Option {
  std::string_view name;
  std::string_view value;  // its name in the help; empty when the option takes none
  Take take;
  std::string_view meaning;
};

std::uint64_t toNumber(const std::string& text, std::uint64_t limit) {
  std::uint64_t number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end || number > limit) {
    throw std::invalid_argument("\"" + text + "\" is not a number from 0 to " +
                                std::to_string(limit));
  }
  return number;
}

std::chrono::microseconds toTime(const std::string& text) {
  double seconds = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, seconds, std::chars_format::fixed);
  if (error != std::errc() || stop != end || !(seconds >= 0) || seconds > 1e6) {
    throw std::invalid_argument("\"" + text + "\" is not a time in seconds");
  }
  return std::chrono::microseconds(static_cast<std::int64_t>(seconds * 1e6));
}

template <typename T>
T choose(const std::string& value, const std::vector<std::pair<std::string, T>>& choices) {
  std::string names;
  for (const auto& [name, choice] : choices) {
    if (name == value) return choice;
    names += (names.empty() ? "" : ", ") + name;
  }
  throw std::invalid_argument("\"" + value + "\" is none of " + names);
}

void takeTxt(Options& options, const std::string& value) {
  const std::size_t equals = value.find('=');
  if (equals == std::string::npos || equals == 0) {
    throw std::invalid_argument("\"" + value + "\" is not KEY=VALUE");
  }
  options.txt.emplace_back(value.substr(0, equals), unescape(value.substr(equals + 1)));
}

void takeAnnounce(Options& options, const std::string& value) {
  options.announce = choose<Announce>(value, {{"auto", Announce::Auto},
                                              {"daemon", Announce::Daemon},
                                              {"in-process", Announce::InProcess},
                                              {"no", Announce::No}});
}

void takeExitAfter(Options& options, const std::string& value) {
  options.exitAfter = choose<ExitAfter>(value, {{"conversation", ExitAfter::Conversation},
                                                {"burn", ExitAfter::Burn},
                                                {"return", ExitAfter::Return}});
}

void takeUsbId(Options& options, const std::string& value) {
  const char* const end = value.data() + value.size();
  const auto vendor = std::from_chars(value.data(), end, options.usb.vendorId, 16);
  if (vendor.ec == std::errc() && vendor.ptr != end && *vendor.ptr == ':') {
    const auto product = std::from_chars(vendor.ptr + 1, end, options.usb.productId, 16);
    if (product.ec == std::errc() && product.ptr == end) return;
  }
  throw std::invalid_argument("\"" + value + "\" is not VVVV:PPPP");
}

const std::vector<Option>& identityOptions() {
  static const std::vector<Option> options{
      {"name", "TEXT", [](Options& o, const std::string& v) { o.settings.name = v; },
       "name of the announced service (\"Veltra KX350T\")"},
      {"manufacturer", "TEXT",
       [](Options& o, const std::string& v) { o.settings.manufacturer = v; },
       "MFG of the device ID, usb_MFG of the announcement (Veltra)"},
      {"model", "TEXT", [](Options& o, const std::string& v) { o.settings.model = v; },
       "MDL of the device ID, usb_MDL of the announcement (KX350T)"},
      {"lic", "TEXT", [](Options& o, const std::string& v) { o.settings.lic = v; },
       "LIC of the device ID (QT725013); may be empty"},
      {"fwver", "TEXT", [](Options& o, const std::string& v) { o.settings.fwver = v; },
       "FWVER of the device ID (00000100)"},
      {"serial", "TEXT", [](Options& o, const std::string& v) { o.settings.serial = v; },
       "SN of the device ID (VP000001)"},
      {"device-id", "TEXT",
       [](Options& o, const std::string& v) { o.settings.deviceId = unescape(v); },
       "the whole text of the device ID; \\xHH is a byte. After a burn its FWVER is changed"},
      {"txt", "KEY=VALUE", takeTxt, "changes or adds an entry of the TXT record; \\xHH is a byte"},
      {"no-txt", "KEY",
       [](Options& o, const std::string& v) { o.txt.emplace_back(v, std::nullopt); },
       "leaves an entry out of the TXT record"},
  };
  return options;
}

const std::vector<Option>& networkOptions() {
  static const std::vector<Option> options{
      {"port", "N",
       [](Options& o, const std::string& v) {
         o.port = static_cast<std::uint16_t>(toNumber(v, 65535));
       },
       "TCP port (9100); 0 takes a free one and says which"},
      {"address", "IPV4", [](Options& o, const std::string& v) { o.address = v; },
       "address to listen on (0.0.0.0)"},
      {"count", "N",
       [](Options& o, const std::string& v) {
         o.count = static_cast<unsigned>(toNumber(v, kMostPrinters));
       },
       "is so many printers, at --address and the addresses that follow it, all alike. They "
       "are "
       "not announced: needs --no-announce"},
      {"announce", "HOW", takeAnnounce,
       "auto (the Avahi daemon, or in-process where there is none), daemon, in-process or no"},
      {"no-announce", "", [](Options& o, const std::string&) { o.announce = Announce::No; },
       "the same as --announce no"},
  };
  return options;
}

const std::vector<Option>& usbOptions() {
  static const std::vector<Option> options{
      {"usb", "", [](Options& o, const std::string&) { o.usb.wanted = true; },
       "is plugged into USB, as a gadget of this machine, instead of being on the network. Needs "
       "root and a USB device controller; dummy_hcd is one in software"},
      {"udc", "NAME", [](Options& o, const std::string& v) { o.usb.controller = v; },
       "the device controller (any free one of /sys/class/udc)"},
      {"usb-id", "VVVV:PPPP", takeUsbId, "vendor and product ID in hexadecimal (3a71:0c28)"},
      {"usb-manufacturer", "TEXT", [](Options& o, const std::string& v) { o.usb.manufacturer = v; },
       "manufacturer string (what --manufacturer says); may be empty"},
      {"usb-product", "TEXT", [](Options& o, const std::string& v) { o.usb.product = v; },
       "product string (what --model says); may be empty"},
      {"usb-serial", "TEXT", [](Options& o, const std::string& v) { o.usb.serial = v; },
       "serial-number string (what --serial says); may be empty"},
  };
  return options;
}

const std::vector<Option>& behaviourOptions() {
  static const std::vector<Option> options{
      {"burn-seconds", "S",
       [](Options& o, const std::string& v) { o.settings.burnTime = toTime(v); },
       "how long it burns (2)"},
      {"return-seconds", "S",
       [](Options& o, const std::string& v) { o.settings.returnTime = toTime(v); },
       "how long it is away when it restarts after a burn (3)"},
      {"hang-up-seconds", "S",
       [](Options& o, const std::string& v) { o.settings.hangUpTime = toTime(v); },
       "how long it waits after a burn for the host to hang up (1)"},
      {"flash-size", "BYTES",
       [](Options& o, const std::string& v) {
         o.settings.flashSize = static_cast<std::size_t>(toNumber(v, 0xffffffff));
       },
       "the longest image that it takes (67108864)"},
      {"fault", "FAULT", [](Options& o, const std::string& v) { o.faults.add(v); },
       "something that it does wrong, see below; may be given several times"},
      {"faulty-conversations", "N",
       [](Options& o, const std::string& v) {
         o.settings.faultyConversations = static_cast<unsigned>(toNumber(v, 1000000));
       },
       "the faults of a conversation strike in the first N of them only"},
  };
  return options;
}

const std::vector<Option>& runOptions() {
  static const std::vector<Option> options{
      {"journal", "FILE", [](Options& o, const std::string& v) { o.journal = v; },
       "writes what happens to FILE, one JSON object to a line; - is standard output"},
      {"quiet", "", [](Options& o, const std::string&) { o.quiet = true; },
       "prints only that it is ready"},
      {"exit-after", "EVENT", takeExitAfter,
       "ends by itself: after a conversation, after a burn, or after the return from the restart"},
      {"time-limit", "S", [](Options& o, const std::string& v) { o.timeLimit = toTime(v); },
       "ends after so many seconds at the latest"},
      {"help", "", [](Options& o, const std::string&) { o.help = true; }, "prints this"},
  };
  return options;
}

std::string describe(const std::vector<Option>& options) {
  std::string text;
  for (const Option& option : options) {
    std::string left = "  --" + std::string(option.name);
    if (!option.value.empty()) left += " " + std::string(option.value);
    left.resize(std::max<std::size_t>(left.size() + 2, 29), ' ');
    text += left + wrapped(option.meaning, left.size());
  }
  return text;
}

const Option* optionNamed(std::string_view name) {
  for (const auto* group :
       {&identityOptions(), &networkOptions(), &usbOptions(), &behaviourOptions(), &runOptions()}) {
    for (const Option& option : *group) {
      if (option.name == name) return &option;
    }
  }
  return nullptr;
}

// Each of several printers would announce the addresses of the whole machine.
void check(const Options& options) {
  if (options.count == 0U) throw std::invalid_argument("--count 0 is no printer");
  if (options.count && (options.usb.wanted || options.announce != Announce::No)) {
    throw std::invalid_argument("--count needs --no-announce, and cannot be had on USB");
  }
}

}  // namespace

Options parseOptions(const std::vector<std::string>& arguments) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    const std::size_t equals = argument.find('=');
    const Option* option = nullptr;
    if (argument.starts_with("--")) {
      option = optionNamed(std::string_view(argument).substr(0, equals).substr(2));
    }
    if (option == nullptr) throw std::invalid_argument("there is no option " + argument);
    std::string value;
    if (option->value.empty()) {
      if (equals != std::string::npos) throw std::invalid_argument(argument + ": takes no value");
    } else if (equals != std::string::npos) {
      value = argument.substr(equals + 1);
    } else if (++i < arguments.size()) {
      value = arguments[i];
    } else {
      throw std::invalid_argument(argument + " needs a value");
    }
    option->take(options, value);
  }
  check(options);
  return options;
}

std::string helpText() {
  std::string steps;
  for (const Step step : allSteps()) {
    std::string left = "  " + std::string(stepName(step));
    left.resize(20, ' ');
    steps += left + std::string(stepMeaning(step)) + "\n";
  }
  return R"(virtual-printer: a KX350T printer in software

It listens on a TCP port as the printer does, announces itself on the local network by DNS-SD, and
takes a firmware update: it answers the request for its device ID, receives the image, checks it,
"burns" it, answers, restarts, and is back with the new version in its device ID. It checks every
byte that a host sends against the protocol and says precisely what was wrong. What it prints, and
what it writes to the journal, is enough to tell what the host did. Ctrl-C or SIGTERM ends it.

Usage: virtual-printer [OPTION]...

Identity
)" + describe(identityOptions()) +
         "\nNetwork\n" + describe(networkOptions()) + "\nUSB\n" + describe(usbOptions()) +
         "\nBehaviour\n" + describe(behaviourOptions()) + "\nThe run\n" + describe(runOptions()) +
         R"(
Examples
  virtual-printer
      a printer that an updater on this network finds and updates
  virtual-printer --port 0 --no-announce --journal journal.jsonl --exit-after burn
      for a script: any free port, a journal, and an end when something was burned
  virtual-printer --usb --serial VX0042
      a printer on a USB cable of this machine
  virtual-printer --fault fail-burn
      a printer whose flash fails
  virtual-printer --fault close@mid-image --fault dribble=1/5
      a printer that speaks byte by byte and lets the host go in the middle of the image

Faults: --fault KIND[@STEP][=VALUE]. N is decimal, or hexadecimal with 0x.
)" + FaultPlan::help() +
         R"(
Steps of a conversation, in their order
)" + steps +
         R"(
Exit status
  0  it ended as asked: by a signal, or after the event of --exit-after
  1  it could not run: no port, no announcement, no journal
  2  the command line is wrong
  3  a host broke the protocol
  4  the awaited burn failed
  5  the time limit passed before the event of --exit-after
)";
}

}  // namespace virtualprinter
