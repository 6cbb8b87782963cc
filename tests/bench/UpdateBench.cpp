// An update of a large image over loopback, beside netcat sending the same bytes to the same
// virtual printer. The time is the printer's: its journal tells when the connection came and when
// the last byte was in.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>

#include "EngineUpdate.h"
#include "Figures.h"
#include "FirmwareFile.h"
#include "TemporaryDirectory.h"
#include "VirtualPrinterProcess.h"

namespace {

using std::filesystem::path;

constexpr int kRuns = 15;

struct Sendings {
  bench::Samples whole;  // from the connection to the closing UEL
  bench::Samples image;  // from the burn header to the closing UEL
  bench::Samples cpu;    // user and system time of the sending process
};

// The printer's time of a message's last byte, or of another event, in milliseconds.
double timeOf(const VirtualPrinterProcess& printer, const std::string& event,
              const std::string& message = "") {
  for (const auto& entry : printer.journal()) {
    if (entry.at("event") == event && (message.empty() || entry.at("message") == message)) {
      return entry.at("time").get<double>() * 1000;
    }
  }
  throw std::runtime_error("the printer tells of no " + event + " " + message);
}

double milliseconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

// Runs `send` in a process of its own, so that its CPU time is its alone; that time.
double cpuTimeOf(const std::function<void()>& send) {
  const pid_t child = fork();
  if (child == 0) {
    try {
      send();
      _exit(EXIT_SUCCESS);
    } catch (const std::exception& error) {
      std::cerr << error.what() << '\n';
      _exit(EXIT_FAILURE);
    }
  }
  int status = 0;
  rusage usage{};
  if (child < 0 || wait4(child, &status, 0, &usage) != child || status != 0) {
    throw std::runtime_error("the sending process failed");
  }
  return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

// To a printer that has just been switched on, so that each time is the first.
void measure(const std::function<void(std::uint16_t port)>& send, Sendings& sendings) {
  VirtualPrinterProcess printer({"--burn-seconds", "0", "--quiet"});
  const double cpu = cpuTimeOf([&] { send(printer.port()); });
  printer.waitFor("burn");
  if (!printer.entries("burn").front().at("ok")) throw std::runtime_error("nothing was burned");
  const double end = timeOf(printer, "received", "uel");
  sendings.whole.push_back(end - timeOf(printer, "connected"));
  sendings.image.push_back(end - timeOf(printer, "received", "burn-header"));
  sendings.cpu.push_back(cpu);
}

std::string bytesOf(const std::string& hex) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
    bytes.push_back(static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

// Every byte that the updater sends, as a printer has received it.
path recordUpdate(const path& firmware) {
  VirtualPrinterProcess printer({"--burn-seconds", "0", "--quiet"});
  cpuTimeOf([&] { bench::EngineUpdate(firmware.parent_path()).run(printer.port()); });
  printer.waitFor("burn");
  const path stream = firmware.parent_path() / "stream";
  std::ofstream out(stream, std::ios::binary);
  for (const auto& entry : printer.entries("received")) {
    if (entry.at("message") == "image") {
      out << std::ifstream(firmware, std::ios::binary).rdbuf();
    } else {
      out << bytesOf(entry.at("hex"));
    }
  }
  if (!out.flush()) throw std::runtime_error("cannot write " + stream.string());
  return stream;
}

[[noreturn]] void becomeNetcat(const path& stream, std::uint16_t port) {
  dup2(open(stream.c_str(), O_RDONLY), STDIN_FILENO);
  dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
  const std::string number = std::to_string(port);
  execlp("nc", "nc", "-N", "127.0.0.1", number.c_str(), nullptr);
  throw std::runtime_error("there is no nc");
}

void print(const std::string& name, const Sendings& sendings, const std::string& aim) {
  bench::printFigure(name + ": connection to last byte", sendings.whole, "ms", aim);
  bench::printFigure(name + ": burn header to last byte", sendings.image, "ms", aim);
  bench::printFigure(name + ": CPU time of the process", sendings.cpu, "ms", aim);
}

}  // namespace

int main() try {
  const TemporaryDirectory directory;
  const path firmware = bench::makeFirmware(directory.path());
  const path stream = recordUpdate(firmware);
  Sendings netcat;
  Sendings updater;
  for (int i = 0; i < kRuns; ++i) {
    measure([&](std::uint16_t port) { becomeNetcat(stream, port); }, netcat);
    measure([&](std::uint16_t port) { bench::EngineUpdate(firmware.parent_path()).run(port); },
            updater);
  }
  bench::printHeading("Update over loopback, image of 32 MiB, " + std::to_string(kRuns) + " runs");
  print("updater", updater, "nc");
  print("nc", netcat, "");
  return EXIT_SUCCESS;
} catch (const std::exception& error) {
  std::cerr << "bench-update: " << error.what() << '\n';
  return EXIT_FAILURE;
}
