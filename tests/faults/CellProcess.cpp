#include "CellProcess.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <sstream>
#include <system_error>

#include "platform/Platform.h"
#include "platform/SystemLog.h"

namespace {

const std::string kBeginning = "the update begins\n";

// Prints entries, so that what a process that aborts has logged is seen outside.
class PrintingSystemLog : public platform::SystemLog {
 public:
  void open(const char*, int, int) override {}
  void write(int priority, const char* text) override {
    std::fprintf(stderr, "%d %s\n", priority, text);
  }
  void close() override {}
};

// What stands between the line ends, from the beginning of the update on.
Lines linesSince(const std::string& text) {
  const std::size_t begin = text.find(kBeginning);
  if (begin == std::string::npos) return {"no update: " + text};
  std::istringstream stream(text.substr(begin + kBeginning.size()));
  Lines lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

}  // namespace

std::string joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

void expectAbort(
    const Cell& cell, const std::string& resources,
    const std::function<void(Application&, const std::function<void()>& begin)>& update,
    const std::function<Lines(const Lines&)>& seen) {
  EXPECT_EXIT(
      {
        Application application(resources);
        PrintingSystemLog log;
        platform::Platform surfaces = platform::current();
        surfaces.systemLog = &log;
        const platform::PlatformScope scope(surfaces);
        application.run(
            [&] { update(application, [] { std::fputs(kBeginning.c_str(), stderr); }); });
      },
      testing::KilledBySignal(SIGABRT),
      testing::ResultOf([&](const std::string& text) { return joined(seen(linesSince(text))); },
                        testing::Eq(joined(cell.log) + cell.assertion)));
}

std::size_t openDescriptors() {
  const std::filesystem::directory_iterator all("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

std::size_t openPipes() {
  std::error_code error;
  const std::filesystem::directory_iterator all("/proc/self/fd");
  return static_cast<std::size_t>(std::count_if(begin(all), end(all), [&](const auto& each) {
    return std::filesystem::read_symlink(each.path(), error).string().starts_with("pipe:");
  }));
}
