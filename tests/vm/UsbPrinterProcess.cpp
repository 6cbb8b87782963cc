#include "UsbPrinterProcess.h"

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <stdexcept>
#include <utility>

#include "Places.h"

UsbPrinterProcess::UsbPrinterProcess(const std::vector<std::string>& options)
    : mJournal((mDirectory.path() / "journal").string()) {
  std::vector<std::string> words{builtProgram("virtual-printer"), "--usb", "--quiet", "--journal",
                                 mJournal};
  words.insert(words.end(), options.begin(), options.end());
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  if (posix_spawn(&mProcess, words[0].c_str(), nullptr, nullptr, arguments.data(), environ) != 0) {
    throw std::runtime_error("cannot start " + words[0]);
  }
}

UsbPrinterProcess::~UsbPrinterProcess() { stop(); }

int UsbPrinterProcess::stop() {
  if (mProcess < 0) return -1;
  kill(mProcess, SIGTERM);
  int status = 0;
  waitpid(std::exchange(mProcess, -1), &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void UsbPrinterProcess::signal(int number) { kill(mProcess, number); }

std::vector<nlohmann::json> UsbPrinterProcess::journal() const {
  std::vector<nlohmann::json> entries;
  std::ifstream file(mJournal);
  std::string line;
  // The last line may not be whole yet.
  while (std::getline(file, line) && !file.eof()) entries.push_back(nlohmann::json::parse(line));
  return entries;
}

std::size_t UsbPrinterProcess::count(const std::string& event) const {
  std::size_t count = 0;
  for (const nlohmann::json& entry : journal()) count += entry.at("event") == event ? 1 : 0;
  return count;
}

nlohmann::json UsbPrinterProcess::last(const std::string& event) const {
  nlohmann::json found;
  for (const nlohmann::json& entry : journal()) {
    if (entry.at("event") == event) found = entry;
  }
  return found;
}

std::vector<std::string> UsbPrinterProcess::receivedMessages() const {
  std::vector<std::string> messages;
  for (const nlohmann::json& entry : journal()) {
    if (entry.at("event") == "received") messages.push_back(entry.at("message"));
  }
  return messages;
}
