#include "VirtualPrinterProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <stdexcept>

#include "Places.h"

namespace {

constexpr auto kPatience = std::chrono::seconds(20);

[[noreturn]] void become(const std::vector<std::string>& arguments, int output) {
  std::vector<char*> pointers;
  for (const std::string& argument : arguments) {
    pointers.push_back(const_cast<char*>(argument.c_str()));
  }
  pointers.push_back(nullptr);
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  dup2(output, STDOUT_FILENO);
  execv(pointers[0], pointers.data());
  _exit(127);
}

}  // namespace

VirtualPrinterProcess::VirtualPrinterProcess(std::vector<std::string> options) {
  std::vector<std::string> arguments{builtProgram("virtual-printer"),
                                     "--port",
                                     "0",
                                     "--address",
                                     "127.0.0.1",
                                     "--no-announce",
                                     "--journal",
                                     "-"};
  arguments.insert(arguments.end(), options.begin(), options.end());
  start(arguments);
  waitFor("ready");
  for (const char* event : {"listening", "refusing"}) {
    for (const Entry& entry : entries(event)) mPort = entry.at("port").get<std::uint16_t>();
  }
}

VirtualPrinterProcess::~VirtualPrinterProcess() {
  if (mProcess > 0) {
    kill(mProcess, SIGKILL);
    waitpid(mProcess, nullptr, 0);
  }
  if (mOutput >= 0) close(mOutput);
}

void VirtualPrinterProcess::start(const std::vector<std::string>& arguments) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  mProcess = fork();
  if (mProcess == 0) become(arguments, ends[1]);
  close(ends[1]);
  mOutput = ends[0];
  fcntl(mOutput, F_SETFL, O_NONBLOCK);
  if (mProcess < 0) throw std::runtime_error("no process");
}

void VirtualPrinterProcess::readJournal() {
  while (readOnce(0)) {
  }
}

void VirtualPrinterProcess::forgetJournal() {
  mJournal = {};
  mPartialLine.shrink_to_fit();
}

// False when nothing came in that time.
bool VirtualPrinterProcess::readOnce(int waitMilliseconds) {
  if (mEnded) return false;
  pollfd descriptor{mOutput, POLLIN, 0};
  if (poll(&descriptor, 1, waitMilliseconds) <= 0) return false;
  char buffer[65536];
  const ssize_t count = read(mOutput, buffer, sizeof buffer);
  if (count < 0) return errno == EINTR;
  mEnded = count == 0;
  mPartialLine.append(buffer, static_cast<std::size_t>(count));
  for (std::size_t end; (end = mPartialLine.find('\n')) != std::string::npos;) {
    mJournal.push_back(Entry::parse(mPartialLine.substr(0, end)));
    mPartialLine.erase(0, end + 1);
  }
  return !mEnded;
}

std::vector<VirtualPrinterProcess::Entry> VirtualPrinterProcess::entries(
    const std::string& event) const {
  std::vector<Entry> found;
  for (Entry entry : mJournal) {
    if (entry.at("event") != event) continue;
    entry.erase("time");
    found.push_back(std::move(entry));
  }
  return found;
}

std::vector<std::string> VirtualPrinterProcess::receivedMessages() const {
  std::vector<std::string> messages;
  for (const Entry& entry : entries("received")) {
    const std::string bytes =
        entry.contains("hex") ? entry["hex"].get<std::string>() : entry["bytes"].dump();
    messages.push_back(entry["message"].get<std::string>() + " " + bytes);
  }
  return messages;
}

void VirtualPrinterProcess::waitFor(const std::string& event, std::size_t count) {
  waitUntil(event, [&] { return entries(event).size() >= count; });
}

void VirtualPrinterProcess::waitUntil(const std::string& what, const std::function<bool()>& done) {
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  while (!done()) {
    if (mEnded) throw std::runtime_error("the virtual printer has ended before: " + what);
    if (std::chrono::steady_clock::now() > deadline) {
      throw std::runtime_error("the virtual printer does not come to: " + what);
    }
    readOnce(100);
  }
}

void VirtualPrinterProcess::signal(int number) const { kill(mProcess, number); }

int VirtualPrinterProcess::stop() {
  kill(mProcess, SIGTERM);
  waitUntil("its end", [this] { return mEnded; });
  int status = 0;
  waitpid(mProcess, &status, 0);
  mProcess = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
