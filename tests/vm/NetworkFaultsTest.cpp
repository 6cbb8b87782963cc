// Every cell of an update over a network that loses packets, or has them late, out of order or
// twice: the machine's own kernel does that to whatever passes between the two processes.
#include <gmock/gmock.h>
#include <sched.h>

#include <fstream>

#include "Application.h"
#include "DownloadFixture.h"
#include "NetworkCells.h"
#include "ShellCommand.h"
#include "TemporaryDirectory.h"
#include "VirtualPrinterProcess.h"

namespace {

// The SHA-256 of the firmware below.
constexpr char kFirmwareSha256[] =
    "f941d133231392d4642a0c5a1dfa9fe4fb2b0f29fb0450de1cfb2bc9be3bd6ce";

class PoorNetwork : public testing::TestWithParam<std::size_t> {
 protected:
  PoorNetwork() {
    for (const char* name : {"product.brand.bin", "product.tarn.bin"}) {
      std::ofstream(mResources.path() / name, std::ios::binary)
          << std::string(mCell.firmwareSize - firmware200().size(), 'x') << firmware200();
    }
    // This process and the printer, which it starts, are alone on it. A packet is as long as on an
    // Ethernet.
    EXPECT_EQ(unshare(CLONE_NEWNET), 0);
    std::string netem;
    for (const std::string& word : mCell.conditions) netem += " " + word;
    const Outcome outcome = runInShell(
        "ip link set lo up mtu 1500 gso_max_segs 1 && tc qdisc add dev lo root netem limit 10000" +
        netem);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
  }

  std::string update(Application& application) {
    EXPECT_TRUE(application.select(1) && application.download());
    EXPECT_TRUE(application.liveUntil([&] { return !application.outcome().empty(); },
                                      std::chrono::seconds(60)))
        << testing::PrintToString(application.log());
    return application.outcome();
  }

  const PoorNetworkCell& mCell = poorNetworkCells().at(GetParam());
  TemporaryDirectory mResources;
};

TEST_P(PoorNetwork, IsNoMatterToAnUpdate) {
  SCOPED_TRACE(nameOf(mCell));
  VirtualPrinterProcess printer(printerOptions({}));
  Application application(mResources.path().string());
  EXPECT_EQ(application.run([&] {
    application.announce("Office", printer.port());
    EXPECT_EQ(update(application), "DlOk");
    EXPECT_EQ(testing::PrintToString(withoutArrivals(application.log())),
              testing::PrintToString(mCell.log));
    printer.waitFor("ready", 2);
    EXPECT_EQ(update(application), "DlUd");
  }),
            0);
  EXPECT_EQ(application.held(), "0 watches, 0 timers, 0 updates");
  EXPECT_EQ(printer.stop(), 0);
  ASSERT_EQ(printer.entries("burn").size(), 1u);
  EXPECT_EQ(printer.entries("burn").at(0).at("sha256"), kFirmwareSha256);
  EXPECT_EQ(printer.entries("closed").at(0).at("position"), mCell.position);
}

INSTANTIATE_TEST_SUITE_P(Cell, PoorNetwork, testing::Range<std::size_t>(0, 5));

}  // namespace
