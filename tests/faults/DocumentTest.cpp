// The published table is the tests' own.
#include <gmock/gmock.h>

#include <fstream>
#include <set>
#include <sstream>

#include "Document.h"
#include "HostCells.h"
#include "KernelUsbCells.h"
#include "LocalCells.h"
#include "NetworkCells.h"
#include "Places.h"
#include "UsbCells.h"
#include "WindowCells.h"

namespace {

std::string written() {
  std::ostringstream out;
  writeFaultMatrix(out);
  return out.str();
}

TEST(FaultMatrix, IsWhatIsPublished) {
  std::ifstream file(projectFile("docs/fault-matrix.md"), std::ios::binary);
  std::ostringstream published;
  published << file.rdbuf();
  EXPECT_EQ(published.str(), written())
      << "fault-matrix >docs/fault-matrix.md writes it anew, once the cells are right";
}

// No cell is left out of the document, or stands in it twice.
TEST(FaultMatrix, HasEachCellOnce) {
  std::set<std::string> names;
  const auto note = [&](const auto& cells) {
    for (const Cell& cell : cells) EXPECT_TRUE(names.insert(nameOf(cell)).second) << nameOf(cell);
  };
  note(networkCells());
  note(poorNetworkCells());
  note(usbCells());
  note(kernelUsbCells());
  note(windowCells());
  note(localCells());
  note(hostCells());
  note(interruptedCells(Verdict::Interrupted));
  note(interruptedCells(Verdict::Killed));
  EXPECT_THAT(written(), testing::EndsWith("\n" + std::to_string(names.size()) +
                                           " cells, and those of memory.\n"));
  EXPECT_GE(names.size(), 500u);
}

}  // namespace
