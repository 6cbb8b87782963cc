// The program's memory before an update of a large image through its window, and the most that it
// has had when the update is over.
#include <chrono>
#include <cstdlib>
#include <exception>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>
#include <thread>

#include "ChildProcess.h"
#include "Figures.h"
#include "FirmwareFile.h"
#include "Node.h"
#include "PrivateNetwork.h"
#include "ProcessState.h"
#include "TemporaryDirectory.h"
#include "VirtualDesktop.h"
#include "VirtualPrinterProcess.h"

namespace {

using namespace std::chrono_literals;
using desktop::Node;

constexpr double kImageMiB = bench::kFirmwareSize / 1048576.0;

struct Memory {
  bench::Samples idle;
  bench::Samples peak;
  bench::Samples growth;
};

class Update {
 public:
  void run(Memory& memory) {
    click([](const Node& node) { return node.role() == "table cell" && node.name() == "Office"; });
    std::this_thread::sleep_for(1s);
    const double idle = bench::ProcessState::of(mProgram.pid()).residentMiB;
    click([](const Node& node) {
      return node.role() == "push button" && node.name() == "Download" && node.isEnabled();
    });
    click([](const Node& node) {
      return node.role() == "push button" && node.name() == "Download firmware";
    });
    mPrinter.waitFor("burn");
    if (!mPrinter.entries("burn").front().at("ok")) throw std::runtime_error("nothing was burned");
    if (!mProgram.waitForOutput("Cleaning up network transport.", 20s)) {
      throw std::runtime_error("the update does not end");
    }
    const double peak = bench::ProcessState::of(mProgram.pid()).peakMiB;
    memory.idle.push_back(idle);
    memory.peak.push_back(peak);
    memory.growth.push_back((peak - idle) / kImageMiB * 100);
  }

 private:
  void click(const std::function<bool(const Node&)>& condition) {
    const auto node = desktop::findNode(mProgram.pid(), condition, 30s);
    if (!node) throw std::runtime_error("not on the screen\n" + mProgram.output());
    const Node::Rectangle at = node->extents();
    mDesktop.click(at.x + at.width / 2, at.y + at.height / 2);
  }

  TemporaryDirectory mDirectory;
  desktop::VirtualDesktop mDesktop{mDirectory.path()};
  VirtualPrinterProcess mPrinter{
      {"--address", "0.0.0.0", "--announce", "daemon", "--name", "Office", "--burn-seconds", "0"}};
  desktop::ChildProcess mProgram{
      {bench::installWithFirmware(mDirectory.path() / "prefix").string(), "-e"},
      mDirectory.path() / "program.log",
      mDesktop.environment()};
};

}  // namespace

int main(int argc, char** argv) try {
  privatenetwork::enter(argc, argv, {});
  Memory memory;
  Update().run(memory);
  bench::printHeading("Memory of the program in its window, image of 32 MiB");
  bench::printFigure("idle, a printer in the list", memory.idle, "MiB");
  bench::printFigure("the most until the update was over", memory.peak, "MiB");
  bench::printFigure("the difference, of the image's size", memory.growth, "%", "110");
  return EXIT_SUCCESS;
} catch (const std::exception& error) {
  std::cerr << "bench-memory: " << error.what() << '\n';
  return EXIT_FAILURE;
}
