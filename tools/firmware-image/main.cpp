// Makes and shows firmware files of the KX350T for those who package the updater or test it.
#include <algorithm>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "Arguments.h"
#include "makeImage.h"
#include "showImage.h"

namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;
constexpr int kMalformed = 3;

constexpr char kHelp[] =
    R"(Makes and shows firmware files of the KX350T.

A firmware file is the printer's data and, at its end, the platform ID: three
texts that each end in a zero byte (the second begins with the firmware version,
eight characters), one byte for the format's version, which is 3, and one for
the length of the texts. The printer gets the whole file.

Usage:
  firmware-image make [OPTIONS] FILE    write the file FILE
  firmware-image show FILE              print what FILE holds and who gets it
  firmware-image --help                 print this (behind a command, too)

What "make" puts in:
  --data FILE          the data; without it, a demonstration is made: a notice
                       that this is not real firmware, then noise
  --size BYTES         size of the whole file with a demonstration (1048576)
  --seed NUMBER        other noise for each number (1)
  --version NUMBER     firmware version, written with eight digits (1)
  --version-text TEXT  firmware version, written as it is
  --first-field TEXT   the text before the version ("KX350T")
  --last-field TEXT    the text behind the version ("demo")
  --malformed KIND     a deliberate mistake, for tests of the updater:
      version-byte       the format's version is 2
      field-count        the last text is missing
      length-byte        the length is 0
      short-version      the version has no leading zeros
      no-trailer         the file is the data alone

What "show" prints: size, SHA-256, the checksum that the burn command carries,
the platform ID, the firmware version as the updater reads it, whether it sends
such a file, and the printers (fields MDL and LIC of their device ID) for which
it takes a file of this name. The file is loaded as the updater does it: what it
cannot load is not shown but refused with the updater's reason, and of a file of
4 GiB or more it takes only as many bytes as the low 32 bits of its size say.

Exit status: 0 done; 1 a file cannot be read or written, or the updater cannot
load it; 2 wrong usage; 3 the platform ID of the shown file is malformed.

Examples:
  firmware-image make --data kx350t.img --version 412 product.brand.bin
  firmware-image make --size 65536 --malformed field-count broken.bin
  firmware-image show product.brand.bin
)";

bool asksForHelp(const std::vector<std::string>& arguments) {
  if (arguments.front() == "help") return true;
  const auto end = std::find(arguments.begin(), arguments.end(), "--");
  return std::any_of(arguments.begin(), end, [](const std::string& argument) {
    return argument == "--help" || argument == "-h";
  });
}

int run(const std::vector<std::string>& arguments) {
  if (arguments.empty()) throw UsageError("the command is missing");
  if (asksForHelp(arguments)) {
    std::cout << kHelp;
    return kDone;
  }
  const std::string& command = arguments.front();
  const Arguments rest({arguments.begin() + 1, arguments.end()});
  if (command == "show") return showImage(rest) ? kDone : kMalformed;
  if (command != "make") throw UsageError("there is no command \"" + command + "\"");
  makeImage(rest);
  return kDone;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const int status = run({argv + 1, argv + argc});
    if (!std::cout.flush()) throw std::runtime_error("cannot write the output");
    return status;
  } catch (const UsageError& error) {
    std::cerr << "firmware-image: " << error.what() << "; see firmware-image --help\n";
    return kWrongUsage;
  } catch (const std::exception& error) {
    std::cerr << "firmware-image: " << error.what() << '\n';
    return kFailed;
  }
}
