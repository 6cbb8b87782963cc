// What the tool says of the machine that it runs on, in each form. It runs from a place of its own,
// with the firmware that a test gives it.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "JsonSchema.h"
#include "TemporaryDirectory.h"
#include "Tool.h"

namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::HasSubstr;

class FwupdatectlCheck : public testing::Test {
 protected:
  FwupdatectlCheck() {
    fs::create_directories(mRoot.path() / "bin");
    fs::create_directories(resources());
    fs::copy_file(kTool, mTool);
    for (const char* name : {"product.brand.bin", "product.tarn.bin"}) {
      fs::copy_file(builtFile(std::string("share/fwupdate/") + name), resources() / name);
    }
  }

  fs::path resources() const { return mRoot.path() / "share/fwupdate"; }

  Outcome check(const std::string& arguments = "") const {
    return runInShell("'" + mTool.string() + "' check " + arguments + " </dev/null");
  }

  // On a terminal, in an environment with these variables.
  std::string onTerminal(const std::string& environment) const {
    return runInShell("env " + environment + " script -qec '" + mTool.string() +
                      " check' /dev/null </dev/null")
        .output;
  }

  TemporaryDirectory mRoot;
  const fs::path mTool = mRoot.path() / "bin/fwupdatectl";
};

TEST_F(FwupdatectlCheck, SaysAVerdictAboutEach) {
  const auto lines = linesOf(check().output);
  ASSERT_GE(lines.size(), 5u);
  EXPECT_THAT(lines[0], testing::StartsWith("ok\tSearch for network printers\tDone by "));
  EXPECT_THAT(lines[1], HasSubstr("\tRight to use USB printers\tThe rule "));
  EXPECT_THAT(lines, Contains("ok\tFirmware product.brand.bin\tVersion 200, 1048576 bytes.\t"));
  EXPECT_THAT(lines, Contains("ok\tFirmware product.tarn.bin\tVersion 200, 786432 bytes.\t"));
}

TEST_F(FwupdatectlCheck, FirmwareThatIsMissingOrDamagedIsAProblem) {
  fs::remove(resources() / "product.brand.bin");
  fs::resize_file(resources() / "product.tarn.bin", 1000);
  const Outcome outcome = check();
  EXPECT_THAT(
      linesOf(outcome.output),
      Contains("problem\tFirmware product.brand.bin\tIt is missing from " + resources().string() +
               ".\tInstall the package with the printers' firmware."));
  EXPECT_THAT(linesOf(outcome.output),
              Contains("problem\tFirmware product.tarn.bin\tIt is damaged: it does not say its "
                       "version, and no printer gets it.\tInstall the printers' firmware again."));
  EXPECT_EQ(outcome.status, 1);
}

TEST_F(FwupdatectlCheck, FirmwareThatIsEmptyCannotBeRead) {
  fs::resize_file(resources() / "product.tarn.bin", 0);
  EXPECT_THAT(linesOf(check().output),
              Contains("problem\tFirmware product.tarn.bin\tIt cannot be read.\tInstall the "
                       "printers' firmware again."));
}

TEST_F(FwupdatectlCheck, JsonSaysTheSame) {
  fs::resize_file(resources() / "product.tarn.bin", 0);
  const Outcome outcome = check("--json");
  EXPECT_EQ(faultsOf(outcome.output), "");
  auto last = nlohmann::ordered_json::parse(linesOf(outcome.output).back());
  EXPECT_EQ(last.at("schema"), 1);
  for (const char* each : {"schema", "time"}) last.erase(each);
  EXPECT_EQ(last.dump(),
            R"({"event":"check","verdict":"problem","subject":"Firmware product.tarn.bin",)"
            R"("text":"It cannot be read.","next_step":"Install the printers' firmware again."})");
}

TEST_F(FwupdatectlCheck, VerdictsHaveColorsOnATerminalThatShowsThem) {
  fs::resize_file(resources() / "product.tarn.bin", 0);
  const std::string colored = onTerminal("-u NO_COLOR TERM=xterm");
  EXPECT_THAT(colored, HasSubstr("\x1B[32mok     \x1B[0m  Firmware product.brand.bin: Version 200, "
                                 "1048576 bytes.\r\n"));
  EXPECT_THAT(colored, HasSubstr("\x1B[31mproblem\x1B[0m  Firmware product.tarn.bin: It cannot be "
                                 "read. Install the printers' firmware again.\r\n"));
  EXPECT_THAT(onTerminal("NO_COLOR= TERM=xterm"), HasSubstr("\x1B["));
}

TEST_F(FwupdatectlCheck, NobodyGetsColorsWhoCannotShowThemOrWantsNone) {
  for (const char* environment : {"NO_COLOR=1 TERM=xterm", "-u NO_COLOR TERM=dumb"}) {
    const std::string plain = onTerminal(environment);
    EXPECT_THAT(plain, HasSubstr("ok       Firmware product.brand.bin: ")) << environment;
    EXPECT_THAT(plain, testing::Not(HasSubstr("\x1B"))) << environment;
  }
  EXPECT_THAT(check().output, testing::Not(HasSubstr("\x1B")));
}

}  // namespace
