// The process that asks one printer for its version.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "Tool.h"

using testing::ElementsAre;

namespace {

Outcome ask(const std::string& address) {
  return runInShell(kToolInShell +
                    R"( --worker '{"connection":"network","name":"Office","address":")" + address +
                    R"(","work":"version"}' </dev/null)");
}

std::vector<std::string> eventsOf(const std::string& output) {
  std::vector<std::string> events;
  for (const std::string& line : linesOf(output)) {
    auto event = nlohmann::ordered_json::parse(line);
    for (const char* each : {"schema", "time"}) event.erase(each);
    events.push_back(event.dump());
  }
  return events;
}

TEST(FwupdatectlVersionWorker, SaysTheVersionAndTheFirmware) {
  VirtualPrinterProcess printer({});
  const Outcome outcome = ask(addressOf(printer));
  EXPECT_THAT(eventsOf(outcome.output),
              ElementsAre(R"({"event":"version","version":100,"firmware":)"
                          R"({"file":"product.brand.bin","version":200}})"));
  EXPECT_EQ(outcome.status, 0);
  printer.stop();
  EXPECT_THAT(printer.receivedMessages(),
              ElementsAre("status-off "
                          "1b252d31323334355840504a4c20555354415455534f46460a1b252d313233343558",
                          "id-request "
                          "1b252d31323334355840504a4c20454e544552204c414e47554147453d41434c0d0a"
                          "00ac00060000000000000000000000001b252d313233343558"));
}

TEST(FwupdatectlVersionWorker, PrinterWithoutFirmwareHasAVersion) {
  VirtualPrinterProcess printer({"--lic", "QT000000"});
  const Outcome outcome = ask(addressOf(printer));
  EXPECT_THAT(
      eventsOf(outcome.output),
      ElementsAre(R"({"event":"cause","cause":"There is no firmware for this model of printer.",)"
                  R"("next_step":"Ask whoever supports this printer where its firmware is to be )"
                  R"(had."})",
                  R"({"event":"version","version":100})"));
  EXPECT_EQ(outcome.status, 0);
}

TEST(FwupdatectlVersionWorker, PrinterWithIPv6AloneIsNotReached) {
  const Outcome outcome = ask("");
  EXPECT_THAT(eventsOf(outcome.output),
              ElementsAre(R"({"event":"failure","message":"The printer has IPv6 addresses only: )"
                          R"(printers are reached by IPv4.","exit_status":1})"));
  EXPECT_EQ(outcome.status, 1);
}

TEST(FwupdatectlVersionWorker, UnreachablePrinterHasACause) {
  std::string address;
  {
    const VirtualPrinterProcess gone({});
    address = addressOf(gone);
  }
  const Outcome outcome = ask(address);
  EXPECT_THAT(eventsOf(outcome.output),
              ElementsAre(R"({"event":"cause","cause":"The printer refused the connection.",)"
                          R"("next_step":"Wait until the printer has finished its other work, or )"
                          R"(switch it off and on, then try again."})"));
  EXPECT_EQ(outcome.status, 1);
}

TEST(FwupdatectlVersionWorker, MalformedAnswerEndsItByAssertion) {
  VirtualPrinterProcess printer({"--fault", "data-length=0"});
  const Outcome outcome = ask(addressOf(printer));
  EXPECT_EQ(outcome.output, "");
  EXPECT_THAT(outcome.errors,
              testing::HasSubstr("Assertion failed: (expectLen > 0), function operator(), file "
                                 "Host/installkit/osx/fwupdate/AsyncTaskQueue, line 443."));
}

TEST(FwupdatectlVersionWorker, UsbPrinterThatLeftIsSaidToBeGone) {
  const Outcome outcome = runInShell(
      kToolInShell +
      R"( --worker '{"connection":"usb","name":"X","serial":"NOWHERE","work":"version"}')");
  EXPECT_THAT(eventsOf(outcome.output),
              ElementsAre(R"({"event":"cause","cause":"The printer is no longer attached.",)"
                          R"("next_step":"Plug it in and switch it on, then try again."})"));
  EXPECT_EQ(outcome.status, 1);
}

}  // namespace
