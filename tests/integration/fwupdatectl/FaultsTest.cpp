// Every way in which a printer on the network can misbehave, all at a time: each has its own
// outcome, and none keeps another from having it.
#include <gmock/gmock.h>

#include <csignal>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>

#include "TemporaryDirectory.h"
#include "Tool.h"
#include "ToolProcess.h"

namespace {

struct Fault {
  std::vector<std::string> faults;
  std::string outcome;
  std::string cause = {};
  std::string nextStep = {};
};

const std::string kRefusedConnection = "The printer refused the connection.";
const std::string kNotUnderstood =
    "The printer answered something that this program does not understand.";
const std::string kNoModel = "The printer did not say which model it is.";
const std::string kRefused = "The printer refused the firmware.";
const std::string kEmptyId =
    "Assertion failed: (expectLen > 0), function operator(), file "
    "Host/installkit/osx/fwupdate/AsyncTaskQueue, line 443.";
const std::string kShortId =
    "Assertion failed: (len > IEEE_1284_HEADER_SIZE), function operator(), file "
    "Host/installkit/osx/fwupdate/AsyncTaskQueue, line 463.";
const std::string kNoText =
    "Assertion failed: (cfData), function constructFromCStr, file "
    "Host/installkit/osx/fwupdate/wcharStub, line 67.";

const std::string kWait =
    "Wait until the printer has finished its other work, or switch it off and on, then try again.";
const std::string kSwitchOffAndOn = "Switch the printer off and on, then try again.";
const std::string kAskSupport =
    "Switch the printer off and on, then try again. If it refuses again, ask whoever supports this "
    "printer.";
const std::string kMayHaveIt =
    "It may still be writing its memory: leave it switched on for a few minutes. Then download the "
    "firmware again; a printer that has it is reported as up to date.";

const std::vector<Fault> kEnding{
    {{"refuse"}, "failed", kRefusedConnection, kWait},
    {{"close@burn-reply"}, "updated"},
    {{"reset@burn-reply"}, "updated"},
    {{"shutdown@burn-reply"}, "updated"},
    {{"silence@burn-reply"}, "updated"},
    {{"hang@burn-reply"}, "updated"},
    {{"delay@image=40"}, "updated"},
    {{"extra@connect=41"}, "failed", kEmptyId},
    {{"extra@device-id=4142"}, "failed", kNotUnderstood, kMayHaveIt},
    {{"extra@burn-reply=4142"}, "updated"},
    {{"wrong-prefix=0"}, "failed", kEmptyId},
    {{"wrong-prefix@burn-reply=0"}, "failed", kNotUnderstood, kMayHaveIt},
    {{"wrong-command=7"}, "failed", kEmptyId},
    {{"wrong-command@burn-reply=6"}, "failed", kNotUnderstood, kMayHaveIt},
    {{"wrong-status=2"}, "failed", kEmptyId},
    {{"wrong-status@burn-reply=0"}, "failed", kRefused, kAskSupport},
    {{"wrong-status@burn-reply=3"}, "failed", kRefused, kAskSupport},
    {{"data-length=0"}, "failed", kEmptyId},
    {{"data-length=1"}, "failed", kShortId},
    {{"data-length=2"}, "failed", kShortId},
    {{"data-length=3"}, "failed", kNoModel, kSwitchOffAndOn},
    {{"id-header=0"}, "updated"},
    {{"id-header=65535"}, "updated"},
    {{"dribble=7/2"}, "updated"},
    {{"merge"}, "updated"},
    {{"split=1"}, "updated"},
    {{"split@burn-reply=15"}, "updated"},
    {{"no-mdl"}, "failed", kNoModel, kSwitchOffAndOn},
    {{"no-lic"}, "updated"},
    {{"no-fwver"}, "updated"},
    {{"bad-utf8"}, "failed", kNoText},
    {{"fail-burn"}, "failed", kRefused, kAskSupport},
    {{"fail-burn=9"}, "failed", kRefused, kAskSupport},
    {{"receive-buffer=2048"}, "updated"},
    {{"slow=65536/1"}, "updated"},
};

// Those after which a host waits for an answer as long as it takes.
const std::vector<std::string> kUnending{
    "close@status-off", "close@id-request",   "close@id-response",     "close@mid-device-id",
    "close@image",      "close@burned",       "close@mid-burn-reply",  "reset@id-request",
    "reset@burned",     "shutdown@connect",   "shutdown@id-request",   "shutdown@device-id",
    "silence@connect",  "silence@id-request", "silence@mid-device-id", "silence@image",
    "hang@id-request",  "hang@uel",           "data-length=65535",
};

// Time decides whether these end a download at a write or leave it waiting.
const std::vector<std::string> kEither{
    "close@connect",     "reset@connect",         "close@device-id", "reset@device-id",
    "close@burn-header", "reset@mid-burn-header", "hang@mid-image",
};

const std::vector<std::string> kInterrupted{
    "failed", "Interrupted. What the printer has received, it may still be writing to its memory.",
    ""};

class FwupdatectlFaults : public testing::Test {
 protected:
  void start(const std::vector<std::string>& faults) {
    std::vector<std::string> options{"--burn-seconds", "0.1"};
    for (const std::string& fault : faults) options.insert(options.end(), {"--fault", fault});
    mPrinters.push_back(std::make_unique<VirtualPrinterProcess>(options));
    const std::string address = addressOf(*mPrinters.back());
    mFaults[address] = testing::PrintToString(faults);
    mArguments += " --address " + address;
  }

  std::string mArguments = "update --yes --jobs 100";
  std::map<std::string, std::string> mFaults;  // by address

 private:
  std::vector<std::unique_ptr<VirtualPrinterProcess>> mPrinters;
};

TEST_F(FwupdatectlFaults, HaveTheirSentences) {
  std::vector<std::string> failures;
  std::vector<std::string> updates;
  for (const Fault& each : kEnding) {
    start(each.faults);
    const std::string address = mArguments.substr(mArguments.rfind(' ') + 1);
    const std::string label = address + ": ";
    if (each.outcome == "updated") {
      updates.push_back(label + "updated to version 200 (was " +
                        (each.faults[0] == "no-fwver" ? "0)" : "100)"));
    } else {
      failures.push_back(label + "failed: " + each.cause +
                         (each.nextStep.empty() ? "" : " " + each.nextStep));
    }
  }
  const Outcome outcome = tool(mArguments);
  EXPECT_THAT(linesOf(outcome.errors), testing::UnorderedElementsAreArray(failures));
  EXPECT_THAT(linesOf(outcome.output), testing::IsSupersetOf(updates));
  EXPECT_EQ(outcome.status, 1);
}

TEST_F(FwupdatectlFaults, HaveTheirOutcomesWhileOthersAreSilent) {
  std::map<std::string, std::vector<std::string>> ending;
  for (const Fault& each : kEnding) {
    start(each.faults);
    ending[testing::PrintToString(each.faults)] = {each.outcome, each.cause, each.nextStep};
  }
  for (const std::string& each : kUnending) start({each});
  for (const std::string& each : kEither) start({each});

  ToolProcess running(kTool, mArguments + " --json");
  std::map<std::string, std::vector<std::string>> ended;
  std::map<std::string, std::vector<std::string>> others;
  const auto readOutcome = [&] {
    nlohmann::json line;
    do {
      line = nlohmann::json::parse(running.readLine());
    } while (line.at("event") != "outcome");
    const std::string fault = mFaults.at(line.at("printer").at("address"));
    (ending.contains(fault) ? ended : others)[fault] = {line.at("outcome"), line.value("cause", ""),
                                                        line.value("next_step", "")};
  };
  while (ended.size() < kEnding.size()) readOutcome();
  EXPECT_EQ(ended, ending);

  running.signal(SIGTERM);
  running.signal(SIGINT);  // two of one kind may arrive as one
  while (others.size() < kUnending.size() + kEither.size()) readOutcome();
  for (const std::string& each : kUnending) {
    EXPECT_EQ(others[testing::PrintToString(std::vector{each})], kInterrupted) << each;
  }
  for (const std::string& each : kEither) {
    EXPECT_EQ(others[testing::PrintToString(std::vector{each})].at(0), "failed") << each;
  }
  running.readUntil("status 130");
}

// A copy of the tool, with what `image` writes as its firmware, updates the printer at `address`.
Outcome updateWithImage(const std::string& image, const std::string& address) {
  const TemporaryDirectory directory;
  const std::string tree = directory.path().string();
  return runInShell("cd '" + tree + "' && mkdir -p bin share/fwupdate && cp " + kToolInShell +
                    " bin && " + image +
                    " >share/fwupdate/product.brand.bin && bin/fwupdatectl update --yes " +
                    "--quiet --address " + address + " </dev/null");
}

// More than the connection itself holds.
TEST_F(FwupdatectlFaults, ImageThatIsNotTakenInTimeIsAFailure) {
  VirtualPrinterProcess printer({"--fault", "slow=4096/100"});
  const std::string address = addressOf(printer);
  const Outcome outcome =
      updateWithImage("{ head -c 16M /dev/zero; cat '" + kDemoFirmware + "'; }", address);
  EXPECT_EQ(outcome.errors,
            address +
                ": failed: The printer stopped taking data. Switch the printer off and on, "
                "then try again.\n");
  EXPECT_EQ(outcome.status, 1);
}

// It has no version that could be newer than the printer's.
TEST_F(FwupdatectlFaults, DamagedFirmwareDoesNotLeaveAPrinterUpToDate) {
  VirtualPrinterProcess printer({});
  const std::string address = addressOf(printer);
  const Outcome outcome = updateWithImage("head -c 4096 /dev/zero", address);
  EXPECT_EQ(outcome.errors,
            address +
                ": failed: The file with the firmware is damaged. Install the printer\u2019s "
                "firmware again, then try again.\n");
  EXPECT_EQ(outcome.status, 1);
}

}  // namespace
