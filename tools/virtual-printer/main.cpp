// virtual-printer: the other end of the wire. See Options.cpp for what it can do.
#include <cstdio>
#include <exception>
#include <stdexcept>

#include "Options.h"
#include "VirtualPrinter.h"

namespace {

constexpr int kCannotRun = 1;
constexpr int kUsage = 2;

}  // namespace

int main(int argc, char** argv) {
  using namespace virtualprinter;
  Options options;
  try {
    options = parseOptions({argv + 1, argv + argc});
    const Medium medium = options.usb.wanted ? Medium::Usb : Medium::Network;
    if (const Fault* fault = options.faults.foreignTo(medium)) {
      throw std::invalid_argument("fault \"" + fault->text + "\" cannot be had on " +
                                  (options.usb.wanted ? "USB" : "the network"));
    }
  } catch (const std::invalid_argument& error) {
    std::fprintf(stderr, "virtual-printer: %s\nTry --help.\n", error.what());
    return kUsage;
  }
  if (options.help) {
    std::fputs(helpText().c_str(), stdout);
    return 0;
  }
  try {
    return VirtualPrinter(options).run();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "virtual-printer: %s\n", error.what());
    return kCannotRun;
  }
}
