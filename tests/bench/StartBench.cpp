// How long the program takes from its start to a window that can be used, and the memory that it
// has then, beside a program that has an empty window and nothing else.

#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

#include "ChildProcess.h"
#include "Figures.h"
#include "Places.h"
#include "PrivateNetwork.h"
#include "ProcessState.h"
#include "Screen.h"
#include "TemporaryDirectory.h"
#include "VirtualDesktop.h"

namespace {

constexpr int kRuns = 11;

struct Starts {
  bench::Samples active;
  bench::Samples painted;
  bench::Samples resident;
};

class StartBench {
 public:
  // Without assistive technology, as on most desktops.
  StartBench() { unsetenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"); }

  void start(const std::string& program, Starts& starts) {
    bench::Screen screen;
    const auto began = bench::Clock::now();
    const desktop::ChildProcess process({program}, mDirectory.path() / "program.log");
    screen.waitForActiveWindow(process.pid());
    starts.active.push_back(bench::milliseconds(bench::Clock::now() - began));
    starts.painted.push_back(bench::milliseconds(screen.lastPainted() - began));
    starts.resident.push_back(bench::ProcessState::of(process.pid()).residentMiB);
  }

 private:
  TemporaryDirectory mDirectory;
  desktop::VirtualDesktop mDesktop{mDirectory.path()};
};

void print(const std::string& name, const Starts& starts, bool isProduct) {
  bench::printFigure(name + ": window is active", starts.active, "ms", isProduct ? "100" : "");
  bench::printFigure(name + ": window is completely painted", starts.painted, "ms");
  bench::printFigure(name + ": resident memory then", starts.resident, "MiB",
                     isProduct ? "80 MB" : "");
}

}  // namespace

int main(int argc, char** argv) try {
  privatenetwork::enter(argc, argv, {});
  StartBench bench;
  Starts discarded;
  bench.start(builtProgram("bench-bare-window"), discarded);
  bench.start(builtProgram("fwupdate"), discarded);
  Starts bare;
  Starts product;
  for (int i = 0; i < kRuns; ++i) {
    bench.start(builtProgram("bench-bare-window"), bare);
    bench.start(builtProgram("fwupdate"), product);
  }
  bench::printHeading("Start to a window that can be used, " + std::to_string(kRuns) + " runs");
  print("fwupdate", product, true);
  print("an empty Qt window", bare, false);
  return EXIT_SUCCESS;
} catch (const std::exception& error) {
  std::cerr << "bench-start: " << error.what() << '\n';
  return EXIT_FAILURE;
}
