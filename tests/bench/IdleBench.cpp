// What the program does while its list is empty and nobody touches it.
#include <chrono>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <thread>

#include "ChildProcess.h"
#include "Figures.h"
#include "Places.h"
#include "PrivateNetwork.h"
#include "ProcessState.h"
#include "Screen.h"
#include "TemporaryDirectory.h"
#include "VirtualDesktop.h"

namespace {

using namespace std::chrono_literals;

// After ten seconds the empty list says what to check.
constexpr auto kUntilNothingIsAwaited = 15s;

void measure() {
  const TemporaryDirectory directory;
  const desktop::VirtualDesktop desktop(directory.path());
  unsetenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON");
  bench::Screen screen;
  const desktop::ChildProcess program({builtProgram("fwupdate")}, directory.path() / "program.log");
  screen.waitForActiveWindow(program.pid());
  std::this_thread::sleep_for(kUntilNothingIsAwaited);

  const auto before = bench::ProcessState::of(program.pid());
  std::this_thread::sleep_for(10s);
  const auto after = bench::ProcessState::of(program.pid());

  bench::printHeading("Idle for 10 s, list empty, Avahi daemon present");
  bench::printFigure("CPU time", {after.cpuMilliseconds - before.cpuMilliseconds}, "ms", "0");
  bench::printFigure("wake-ups", {static_cast<double>(after.wakeups - before.wakeups)}, "", "0");
}

}  // namespace

int main(int argc, char** argv) try {
  privatenetwork::enter(argc, argv, {});
  measure();
  return EXIT_SUCCESS;
} catch (const std::exception& error) {
  std::cerr << "bench-idle: " << error.what() << '\n';
  return EXIT_FAILURE;
}
