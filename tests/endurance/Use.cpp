#include "Use.h"

#include <dirent.h>
#include <fcntl.h>
#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>
#include <string>

namespace {

std::size_t heapInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

// The second number is that of the resident pages.
std::size_t residentBytes() {
  char text[128] = {};
  const int file = open("/proc/self/statm", O_RDONLY | O_CLOEXEC);
  const ssize_t size = read(file, text, sizeof text - 1);
  close(file);
  char* second = nullptr;
  std::strtoul(text, &second, 10);
  const unsigned long pages = std::strtoul(second, nullptr, 10);
  if (size <= 0 || pages == 0) throw std::runtime_error("cannot read /proc/self/statm");
  return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

std::size_t entriesOf(const char* path) {
  DIR* const directory = opendir(path);
  if (directory == nullptr) throw std::runtime_error(std::string("cannot read ") + path);
  std::size_t count = 0;
  while (const dirent* entry = readdir(directory)) count += entry->d_name[0] == '.' ? 0 : 1;
  closedir(directory);
  return count;
}

double seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

}  // namespace

Use Use::now() {
  Use use;
  use.heap = heapInUse();
  use.resident = residentBytes();
  use.descriptors = entriesOf("/proc/self/fd");
  use.threads = entriesOf("/proc/self/task");
  rusage spent{};
  getrusage(RUSAGE_SELF, &spent);
  use.cpuSeconds = seconds(spent.ru_utime) + seconds(spent.ru_stime);
  return use;
}
