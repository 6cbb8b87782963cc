// The virtual printer as scripts use it: what it prints, its exit statuses, its port. The host is a
// plain socket.
#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "Places.h"
#include "VirtualPrinterProcess.h"

namespace {

using testing::HasSubstr;
using testing::SizeIs;
using testing::StartsWith;

class Host {
 public:
  explicit Host(std::uint16_t port, std::uint32_t at = INADDR_LOOPBACK)
      : mSocket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(at);
    mConnected = connect(mSocket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  }
  ~Host() { close(mSocket); }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  bool connected() const { return mConnected; }

  void send(const std::string& bytes) {
    ASSERT_EQ(::send(mSocket, bytes.data(), bytes.size(), MSG_NOSIGNAL),
              static_cast<ssize_t>(bytes.size()));
  }

  void finish() { shutdown(mSocket, SHUT_WR); }

  // Until the printer closes the connection, or so many bytes.
  std::string receive(std::size_t atMost = SIZE_MAX) {
    std::string text;
    std::array<char, 4096> buffer;
    while (text.size() < atMost) {
      const ssize_t count =
          recv(mSocket, buffer.data(), std::min(buffer.size(), atMost - text.size()), 0);
      if (count <= 0) break;
      text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return text;
  }

 private:
  int mSocket;
  bool mConnected = false;
};

template <std::size_t N>
std::string bytes(const char (&literal)[N]) {
  return std::string(literal, N - 1);
}

const std::string kQuery = bytes(
    "\x1B%-12345X@PJL USTATUSOFF\n\x1B%-12345X"
    "\x1B%-12345X@PJL ENTER LANGUAGE=ACL\r\n"
    "\x00\xAC\x00\x06"
    "\0\0\0\0\0\0\0\0\0\0\0\0"
    "\x1B%-12345X");

// An image of 28 bytes, version 200, checksum 0x7271, with its burn header and the closing UEL.
const std::string kBurn = bytes(
    "\x1B%-12345X@PJL ENTER LANGUAGE=ACL\r\n"
    "\x00\xAC\x00\x0F"
    "\x04\x00\x72\x71\x00\x00\x00\x00\x00\x00\x00\x1C"
    "FIRMWARE"
    "ABC\0"
    "00000200XYZ\0"
    "Q\0"
    "\x03\x12"
    "\x1B%-12345X");

const std::string kBurnReply = bytes("\x00\xAC\x00\x0F\x00\x01\0\0\0\0\0\0\0\0\0\0");

// Runs the tool to its end; output and errors together.
std::pair<int, std::string> run(const std::string& arguments) {
  FILE* pipe = popen((builtProgram("virtual-printer") + " " + arguments + " 2>&1").c_str(), "r");
  if (pipe == nullptr) throw std::runtime_error("no process");
  std::string output;
  std::array<char, 4096> buffer;
  while (const std::size_t count = fread(buffer.data(), 1, buffer.size(), pipe)) {
    output.append(buffer.data(), count);
  }
  const int status = pclose(pipe);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output};
}

class ToolTest : public testing::Test {
 protected:
  VirtualPrinterProcess& start(std::vector<std::string> options) {
    options.insert(options.begin(), {"--burn-seconds", "0", "--return-seconds", "0.1"});
    mPrinter = std::make_unique<VirtualPrinterProcess>(options);
    return *mPrinter;
  }

  std::unique_ptr<VirtualPrinterProcess> mPrinter;
};

TEST_F(ToolTest, TakesAnUpdateFromAHostThatDoesNotWait) {
  start({});
  Host host(mPrinter->port());
  host.send(kQuery + kBurn);
  host.finish();
  EXPECT_THAT(host.receive(), testing::EndsWith("FWVER:00000100;" + kBurnReply));
  mPrinter->waitFor("ready", 2);
  EXPECT_EQ(mPrinter->stop(), 0);
  EXPECT_THAT(mPrinter->entries("ready").at(1)["device_id"].get<std::string>(),
              testing::EndsWith("FWVER:00000200;"));
}

TEST_F(ToolTest, KeepsItsPortThroughARestart) {
  start({});
  const std::uint16_t port = mPrinter->port();
  for (std::size_t i = 1; i <= 3; ++i) {
    Host host(port);
    host.send(kQuery + kBurn);
    host.finish();
    host.receive();
    mPrinter->waitFor("ready", i + 1);
  }
  EXPECT_EQ(mPrinter->entries("listening").back()["port"], port);
}

TEST_F(ToolTest, RefusesConnectionsWhileItIsAway) {
  start({"--return-seconds", "30"});
  Host host(mPrinter->port());
  host.send(kQuery + kBurn);
  host.receive();
  mPrinter->waitFor("restart");
  EXPECT_FALSE(Host(mPrinter->port()).connected());
}

TEST_F(ToolTest, HangsUpOnAHostThatStays) {
  start({"--hang-up-seconds", "0.05"});
  Host host(mPrinter->port());
  host.send(kQuery + kBurn);
  EXPECT_THAT(host.receive(), testing::EndsWith(kBurnReply));
  mPrinter->waitFor("closed");
  EXPECT_EQ(mPrinter->entries("closed").at(0)["by"], "printer");
}

TEST_F(ToolTest, NextHostIsServedWhenTheFirstHasGone) {
  start({});
  auto first = std::make_unique<Host>(mPrinter->port());
  mPrinter->waitFor("connected");
  Host second(mPrinter->port());
  second.send(kQuery);
  first->send(kQuery);
  first->receive(122);
  EXPECT_THAT(mPrinter->entries("connected"), SizeIs(1));
  first.reset();
  EXPECT_THAT(second.receive(122), StartsWith(bytes("\x00\xAC\x00\x06\x00\x01\x00\x6A")));
}

TEST_F(ToolTest, EndsAfterAConversation) {
  start({"--exit-after", "conversation"});
  Host(mPrinter->port()).send(kQuery);
  mPrinter->waitFor("stopped");
  EXPECT_EQ(mPrinter->stop(), 0);
}

TEST_F(ToolTest, EndsAfterABurn) {
  start({"--exit-after", "burn"});
  Host(mPrinter->port()).send(kQuery);
  Host host(mPrinter->port());
  host.send(kQuery + kBurn);
  host.finish();
  EXPECT_THAT(host.receive(), testing::EndsWith(kBurnReply));
  mPrinter->waitFor("stopped");
  EXPECT_EQ(mPrinter->entries("stopped").at(0).dump(),
            R"({"event":"stopped","conversations":2,"violations":0,"burned":1,"burns_failed":0,)"
            R"("exit_status":0})");
  EXPECT_EQ(mPrinter->stop(), 0);
}

TEST_F(ToolTest, EndsAfterItsReturn) {
  start({"--exit-after", "return"});
  Host host(mPrinter->port());
  host.send(kQuery + kBurn);
  host.finish();
  host.receive();
  mPrinter->waitFor("stopped");
  EXPECT_THAT(mPrinter->entries("ready"), SizeIs(2));
  EXPECT_EQ(mPrinter->stop(), 0);
}

TEST_F(ToolTest, FailedBurnGivesStatusFour) {
  start({"--exit-after", "return", "--fault", "fail-burn"});
  Host host(mPrinter->port());
  host.send(kQuery + kBurn);
  host.finish();
  host.receive();
  mPrinter->waitFor("stopped");
  EXPECT_EQ(mPrinter->stop(), 4);
}

TEST_F(ToolTest, BrokenProtocolGivesStatusThree) {
  start({"--exit-after", "burn"});
  Host host(mPrinter->port());
  host.send("GET / HTTP/1.0\r\n\r\n");
  EXPECT_EQ(host.receive(), "");
  mPrinter->waitFor("stopped");
  EXPECT_EQ(mPrinter->entries("violation").at(0)["text"],
            "status-off, offset 0 (byte 0 of the stream): expected 0x1b, got 0x47");
  EXPECT_EQ(mPrinter->stop(), 3);
}

TEST_F(ToolTest, SignalAfterABrokenProtocolGivesStatusThreeToo) {
  start({});
  Host host(mPrinter->port());
  host.send(kQuery + "x");
  host.receive();
  EXPECT_EQ(mPrinter->stop(), 3);
}

TEST_F(ToolTest, TimeLimitGivesStatusFive) {
  start({"--exit-after", "burn", "--time-limit", "0.05"});
  mPrinter->waitFor("stopped");
  EXPECT_EQ(mPrinter->stop(), 5);
}

TEST_F(ToolTest, SeveralAreAtAddressesInARow) {
  start({"--count", "3", "--address", "127.0.0.254"});
  mPrinter->waitFor("all-ready");
  const auto listening = mPrinter->entries("listening");
  ASSERT_THAT(listening, SizeIs(3));
  EXPECT_EQ(listening[0]["printer"], "127.0.0.254");
  EXPECT_EQ(listening[1]["printer"], "127.0.0.255");
  EXPECT_EQ(listening[2]["printer"], "127.0.1.0");
  Host host(listening[2]["port"].get<std::uint16_t>(), 0x7F000100);
  host.send(kQuery + kBurn);
  host.finish();
  EXPECT_THAT(host.receive(), testing::EndsWith("FWVER:00000100;" + kBurnReply));
  mPrinter->waitFor("burn");
  EXPECT_EQ(mPrinter->entries("burn").at(0)["printer"], "127.0.1.0");
}

TEST_F(ToolTest, SeveralEndWhenEachHasDoneWhatIsAwaited) {
  start({"--count", "2", "--exit-after", "conversation"});
  mPrinter->waitFor("all-ready");
  const auto listening = mPrinter->entries("listening");
  ASSERT_THAT(listening, SizeIs(2));
  Host(listening[0]["port"].get<std::uint16_t>(), 0x7F000001).send(kQuery);
  mPrinter->waitFor("closed");
  EXPECT_THAT(mPrinter->entries("stopped"), SizeIs(0));
  Host(listening[1]["port"].get<std::uint16_t>(), 0x7F000002).send(kQuery);
  mPrinter->waitFor("stopped");
  EXPECT_EQ(mPrinter->entries("stopped").at(0).dump(),
            R"({"event":"stopped","conversations":2,"violations":0,"burned":0,"burns_failed":0,)"
            R"("exit_status":0})");
}

TEST_F(ToolTest, TakenPortGivesStatusOne) {
  start({});
  const auto [status, output] =
      run("--no-announce --address 127.0.0.1 --port " + std::to_string(mPrinter->port()));
  EXPECT_EQ(status, 1);
  EXPECT_THAT(output, HasSubstr("Address already in use"));
}

TEST_F(ToolTest, UnwritableJournalGivesStatusOne) {
  EXPECT_EQ(run("--no-announce --port 0 --journal /nowhere/journal").second,
            "virtual-printer: cannot write the journal /nowhere/journal\n");
}

TEST_F(ToolTest, WrongAddressGivesStatusOne) {
  EXPECT_EQ(run("--no-announce --port 0 --address here").second,
            "virtual-printer: \"here\" is not an IPv4 address\n");
}

TEST_F(ToolTest, WrongCommandLineGivesStatusTwo) {
  const auto [status, output] = run("--prot 0");
  EXPECT_EQ(status, 2);
  EXPECT_EQ(output, "virtual-printer: there is no option --prot\nTry --help.\n");
}

TEST_F(ToolTest, FaultOfAnotherMediumGivesStatusTwo) {
  const auto [status, output] = run("--fault unplug@uel");
  EXPECT_EQ(status, 2);
  EXPECT_EQ(output,
            "virtual-printer: fault \"unplug@uel\" cannot be had on the network\nTry --help.\n");
}

TEST_F(ToolTest, HelpExplainsTheToolOnLinesThatFit) {
  const auto [status, output] = run("--help");
  EXPECT_EQ(status, 0);
  EXPECT_THAT(output, StartsWith("virtual-printer: a KX350T printer in software\n"));
  for (std::size_t begin = 0; begin < output.size();) {
    const std::size_t end = output.find('\n', begin);
    EXPECT_LE(end - begin, 100u) << output.substr(begin, end - begin);
    begin = end + 1;
  }
}

TEST_F(ToolTest, QuietToolSaysOnlyThatItIsReady) {
  const auto [status, output] =
      run("--no-announce --address 127.0.0.1 --port 0 --quiet --time-limit 0.05");
  EXPECT_EQ(status, 0);
  EXPECT_THAT(output, testing::MatchesRegex("listening on port [0-9]+\n"));
}

}  // namespace
