// fwupdatectl is ended in each phase of an update: it updates as many printers at a time as there
// are cells, each of which has fallen silent at another point.
#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <thread>

#include "DownloadFixture.h"
#include "NetworkCells.h"
#include "Places.h"
#include "ShellCommand.h"
#include "TemporaryDirectory.h"
#include "ToolProcess.h"

namespace {

class InterruptedTool {
 public:
  explicit InterruptedTool(Verdict verdict) : mVerdict(verdict), mCells(interruptedCells(verdict)) {
    std::filesystem::create_directories(mTree.path() / "bin");
    std::filesystem::create_directories(mTree.path() / "share/fwupdate");
    std::filesystem::copy_file(builtProgram("fwupdatectl"), program());
    std::ofstream(mTree.path() / "share/fwupdate/product.brand.bin", std::ios::binary)
        << firmware200();
    for (const NetworkCell& cell : mCells) {
      std::vector<std::string> options = printerOptions(cell.faults);
      options.insert(options.end(), {"--faulty-conversations", "1"});
      mPrinters.push_back(std::make_unique<VirtualPrinterProcess>(options));
      mArguments += " --address " + addressOf(*mPrinters.back());
    }
  }

  void run() {
    ToolProcess tool(program(), mArguments);
    awaitSilence();
    if (mVerdict == Verdict::Killed) {
      tool.signal(SIGKILL);
      tool.readUntil("status 137");
    } else {
      tool.signal(SIGTERM);
      tool.signal(SIGINT);
      tool.readUntil("status 130");
      EXPECT_EQ(outcomesOf(tool.lines()), everywhere("failed"));
    }
    expectPrinters();
    awaitLastProcess();
    expectGoodUpdates();
  }

 private:
  using Outcomes = std::map<std::string, std::string>;  // by address

  // A copy of the tool, whose processes are known by its name, and whose firmware is burned in 3 s
  // at the longest.
  std::string program() const { return (mTree.path() / "bin/fwupdatectl").string(); }

  // Where the tool is killed, a printer that has the firmware is given the time to burn it.
  void awaitLastProcess() const {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (isRunning()) {
      ASSERT_LT(std::chrono::steady_clock::now(), deadline) << "a process of the tool is left";
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
  }

  bool isRunning() const {
    for (const auto& process : std::filesystem::directory_iterator("/proc")) {
      std::error_code error;
      if (std::filesystem::read_symlink(process.path() / "exe", error) == program()) return true;
    }
    return false;
  }

  static std::string addressOf(const VirtualPrinterProcess& printer) {
    return "127.0.0.1:" + std::to_string(printer.port());
  }

  static std::size_t messagesOf(const NetworkCell& cell) {
    return cell.position == "after uel" ? 5 : 2;
  }

  static bool hasNewFirmware(const NetworkCell& cell) {
    return cell.afterwards == Afterwards::Unannounced;
  }

  // Each printer has got what it will get, and is silent.
  void awaitSilence() {
    for (std::size_t i = 0; i < mCells.size(); ++i) {
      mPrinters[i]->waitFor("fault");
      mPrinters[i]->waitFor("received", messagesOf(mCells[i]));
    }
  }

  // What each had received, and that those that burn come back.
  void expectPrinters() {
    for (std::size_t i = 0; i < mCells.size(); ++i) {
      SCOPED_TRACE(nameOf(mCells[i]));
      VirtualPrinterProcess& printer = *mPrinters[i];
      printer.waitFor("closed");
      EXPECT_EQ(printer.entries("closed").at(0).at("position"), mCells[i].position);
      EXPECT_EQ(printer.entries("received").size(), messagesOf(mCells[i]));
      if (hasNewFirmware(mCells[i])) printer.waitFor("ready", 2);
    }
  }

  void expectGoodUpdates() {
    const Outcome outcome = runInShell("'" + program() + "' " + mArguments + " </dev/null");
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    Outcomes expected;
    for (std::size_t i = 0; i < mCells.size(); ++i) {
      expected[addressOf(*mPrinters[i])] = hasNewFirmware(mCells[i]) ? "up-to-date" : "updated";
    }
    std::istringstream output(outcome.output);
    std::vector<std::string> lines;
    for (std::string line; std::getline(output, line);) lines.push_back(line);
    EXPECT_EQ(outcomesOf(lines), expected);
  }

  Outcomes everywhere(const std::string& outcome) const {
    Outcomes outcomes;
    for (const auto& printer : mPrinters) outcomes[addressOf(*printer)] = outcome;
    return outcomes;
  }

  static Outcomes outcomesOf(const std::vector<std::string>& lines) {
    Outcomes outcomes;
    for (const std::string& line : lines) {
      if (!line.starts_with("{")) continue;
      const auto json = nlohmann::json::parse(line);
      if (json.at("event") != "outcome") continue;
      outcomes[json.at("printer").at("address")] = json.at("outcome");
    }
    return outcomes;
  }

  Verdict mVerdict;
  std::vector<NetworkCell> mCells;
  TemporaryDirectory mTree;
  std::vector<std::unique_ptr<VirtualPrinterProcess>> mPrinters;
  std::string mArguments = "update --yes --jobs 100 --json";
};

TEST(FaultsOfTheTool, Interrupted) { InterruptedTool(Verdict::Interrupted).run(); }
TEST(FaultsOfTheTool, Killed) { InterruptedTool(Verdict::Killed).run(); }

}  // namespace
