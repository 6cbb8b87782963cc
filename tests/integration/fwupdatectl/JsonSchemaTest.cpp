// Whatever the tool writes with --json is what its schema documents.
#include <gmock/gmock.h>

#include <csignal>
#include <nlohmann/json.hpp>

#include "JsonSchema.h"
#include "Tool.h"
#include "ToolProcess.h"

namespace {

constexpr const char* kTime = R"("time":"2026-11-22T09:30:00.000Z")";

std::string lastLineOf(const std::string& text) {
  const std::size_t end = text.rfind('\n', text.size() - 2);
  return text.substr(end + 1);
}

// The last line, without what differs from run to run.
std::string failureIn(const std::string& output) {
  auto line = nlohmann::ordered_json::parse(lastLineOf(output));
  line.erase("time");
  return line.dump();
}

TEST(FwupdatectlJson, SchemaAllowsNothingElse) {
  const std::string printer =
      R"("printer":{"connection":"network","name":"Office","address":"10.0.0.5:9100"})";
  const auto line = [&](const std::string& members) {
    return "{\"schema\":1," + std::string(kTime) + "," + members + "}\n";
  };
  EXPECT_EQ(faultsOf(line(R"("event":"begun",)" + printer)), "");
  const std::string wrong =
      line(R"("event":"begun","more":1,)" + printer) + line(R"("event":"started",)" + printer) +
      line(R"("event":"begun")") +
      line(R"("event":"begun","printer":{"connection":"usb","name":"Office"})") +
      line(R"("event":"progress","bytes":"10","total":20,)" + printer) +
      line(R"("event":"outcome","outcome":"failed",)" + printer) +  // and no cause
      R"({"schema":2,)" + kTime + R"(,"event":"begun",)" + printer + "}\n" +
      R"({"schema":1,"time":"2026-13-22T09:30:00.000Z","event":"begun",)" + printer + "}\n" +
      R"({"schema":1,"time":"2026-11-22 09:30:00","event":"begun",)" + printer + "}\n" +
      "{}\nno JSON\n";
  std::vector<std::string> faulty;
  for (const std::string& each : linesOf(faultsOf(wrong))) {
    faulty.push_back(each.substr(0, each.find(':')));
  }
  EXPECT_THAT(faulty,
              testing::ElementsAre("invalid", "line 1", "line 2", "line 3", "line 4", "line 5",
                                   "line 6", "line 7", "line 8", "line 9", "line 10", "line 11"));
  EXPECT_EQ(faultsOf(""), "invalid\nThe last line has no end, or there is none.\n");
}

struct Update {
  const char* name;
  std::vector<std::string> printer;
  int status;
  const char* outcome;
  const char* events;
};

class FwupdatectlJsonUpdate : public testing::TestWithParam<Update> {};

TEST_P(FwupdatectlJsonUpdate, IsAsDocumented) {
  VirtualPrinterProcess printer(GetParam().printer);
  const Outcome outcome = tool("update --yes --json --address " + addressOf(printer));
  EXPECT_EQ(outcome.status, GetParam().status);
  EXPECT_EQ(faultsOf(outcome.output), "");
  EXPECT_EQ(eventsIn(outcome.output), GetParam().events);
  EXPECT_THAT(outcome.output,
              testing::HasSubstr(R"("outcome":")" + std::string(GetParam().outcome) + "\""));
  EXPECT_EQ(outcome.errors, "");
}

INSTANTIATE_TEST_SUITE_P(
    Every, FwupdatectlJsonUpdate,
    testing::Values(
        Update{"Updated",
               {"--burn-seconds", "0.1"},
               0,
               "updated",
               "begun phase versions phase progress phase outcome"},
        Update{
            "UpToDate", {"--fwver", "00000200"}, 0, "up-to-date", "begun phase versions outcome"},
        Update{"Failed",
               {"--fault", "fail-burn", "--burn-seconds", "0.1"},
               1,
               "failed",
               "begun phase versions phase progress phase error outcome"},
        Update{
            "EndedByAssertion", {"--fault", "data-length=0"}, 1, "failed", "begun phase outcome"},
        Update{"WithoutVersion",
               {"--fault", "no-fwver", "--burn-seconds", "0.1"},
               0,
               "updated",
               "begun phase versions phase progress phase outcome"},
        Update{"WithBytesThatAreNoText",
               {"--device-id", R"(DES:\xFF;MDL:K\xFE;LIC:\xC3;)"},
               1,
               "failed",
               "begun phase outcome"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(FwupdatectlJson, FirmwareFileIsAsDocumented) {
  const Outcome shown = tool("show --json '" + kDemoFirmware + "'");
  EXPECT_EQ(shown.status, 0);
  EXPECT_EQ(faultsOf(shown.output), "");
  EXPECT_EQ(eventsIn(shown.output), "firmware");
}

TEST(FwupdatectlJson, FileNameNeedNotBeText) {
  const Outcome shown = runInShell("cd \"$(mktemp -d)\" && name=$(printf 'a\\377') && cp '" +
                                   kDemoFirmware + "' \"$name\" && " + kToolInShell +
                                   " show --json \"$name\"; rm \"$name\"; rmdir \"$PWD\"");
  EXPECT_EQ(faultsOf(shown.output), "");
  EXPECT_THAT(shown.output, testing::HasSubstr("\"message\":\"a\xEF\xBF\xBD: "));
}

struct Failure {
  const char* name;
  const char* arguments;
  const char* line;
  const char* errors;
};

class FwupdatectlJsonFailure : public testing::TestWithParam<Failure> {};

TEST_P(FwupdatectlJsonFailure, IsSaidToProgramsAndPeople) {
  const Outcome outcome = tool(GetParam().arguments);
  EXPECT_EQ(faultsOf(outcome.output), "");
  EXPECT_EQ(failureIn(outcome.output), GetParam().line);
  EXPECT_EQ(outcome.errors, GetParam().errors);
  EXPECT_EQ(outcome.status, nlohmann::json::parse(GetParam().line).at("exit_status"));
}

INSTANTIATE_TEST_SUITE_P(
    Every, FwupdatectlJsonFailure,
    testing::Values(
        Failure{"NoCommand", "--json",
                R"({"schema":1,"event":"failure","message":)"
                R"("The following argument was not expected: --json","exit_status":2})",
                "The following argument was not expected: --json\n"
                "Run with --help for more information.\n"},
        Failure{"NothingToUpdate", "update --json",
                R"({"schema":1,"event":"failure","message":)"
                R"("A printer, --all, --address or --serial is required","exit_status":2})",
                "A printer, --all, --address or --serial is required\n"
                "Run with --help for more information.\n"},
        Failure{"UnknownOption", "list --json --fast",
                R"({"schema":1,"event":"failure","message":)"
                R"("The following argument was not expected: --fast","exit_status":2})",
                "The following argument was not expected: --fast\n"
                "Run with --help for more information.\n"},
        Failure{"NobodyToAsk", "update --json --address 127.0.0.1:9",
                R"({"schema":1,"event":"failure","message":)"
                R"("There is nobody to ask whether network printers may be updated: give --yes.")"
                R"(,"exit_status":2})",
                "fwupdatectl: There is nobody to ask whether network printers may be updated: give "
                "--yes.\n"},
        Failure{"PortOutOfRange", "update --yes --json --address 10.0.0.5:65536",
                R"({"schema":1,"event":"failure","message":)"
                R"("\"65536\" is no port: give a number from 1 to 65535","exit_status":2})",
                "fwupdatectl: \"65536\" is no port: give a number from 1 to 65535\n"},
        Failure{"NoFirmwareFile", "show --json /dev/null",
                R"({"schema":1,"event":"failure","message":)"
                R"("/dev/null: cannot be read as a firmware file. The log says why (-e shows it).")"
                R"(,"exit_status":1})",
                "fwupdatectl: /dev/null: cannot be read as a firmware file. The log says why (-e "
                "shows it).\n"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(FwupdatectlJson, InterruptionIsAsDocumented) {
  VirtualPrinterProcess printer({"--fault", "silence@id-request"});
  ToolProcess running(kTool, "update --yes --json --jobs 1 --address " + addressOf(printer) +
                                 " --address 127.0.0.1:9");
  printer.waitFor("connected");
  running.signal(SIGTERM);
  std::string lines;
  for (std::string line; line.find("not-started") == std::string::npos;) {
    line = running.readLine();
    ASSERT_NE(line, "");
    lines += line + "\n";
  }
  running.signal(SIGTERM);
  for (std::string line = running.readLine(); !line.starts_with("status ");) {
    lines += line + "\n";
    line = running.readLine();
  }
  EXPECT_EQ(faultsOf(lines), "");
  EXPECT_EQ(failureIn(lines),
            R"({"schema":1,"event":"failure","message":"Interrupted.","exit_status":130})");
  EXPECT_THAT(eventsIn(lines), testing::EndsWith(" outcome summary failure"));
}

}  // namespace
