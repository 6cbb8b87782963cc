#include "platform/ProcessName.h"

#include <algorithm>
#include <fstream>
#include <string_view>
#include <system_error>

namespace fs = std::filesystem;

namespace platform {
namespace {

constexpr std::size_t kMaxNameLength = 255;  // of a file
constexpr std::size_t kCutNameLength = 15;   // of the kernel's names of processes

std::string printable(std::string name) {
  std::replace_if(
      name.begin(), name.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
  return name;
}

std::string readStart(const fs::path& file) {
  std::string text(kMaxNameLength, '\0');
  std::ifstream stream(file, std::ios::binary);
  stream.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(stream.gcount()));
  if (text.ends_with('\n')) text.pop_back();
  return text;
}

}  // namespace

// The kernel's name of a process is cut; where it is, the program's file has the whole of it.
std::string programName(const fs::path& process) {
  const std::string name = readStart(process / "comm");
  if (!name.empty() && name.size() < kCutNameLength) return printable(name);
  std::error_code none;
  std::string file = fs::read_symlink(process / "exe", none).filename().string();
  constexpr std::string_view kDeleted = " (deleted)";
  if (file.ends_with(kDeleted)) file.resize(file.size() - kDeleted.size());
  return printable(file.starts_with(name) ? file : name);
}

std::string describeProcess(int process) {
  const std::string number = std::to_string(process);
  const std::string name = programName(fs::path("/proc") / number);
  return name.empty() ? "another program" : name + " (process " + number + ")";
}

}  // namespace platform
