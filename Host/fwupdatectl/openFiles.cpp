#include "openFiles.h"

#include <sys/resource.h>

#include <optional>

namespace {

// Two pipes, and the processes of a download and of the question for the version after it, most of
// which the loop has a descriptor of its own for.
constexpr rlim_t kOfOneDownload = 12;
constexpr rlim_t kOfAll = 64;

std::optional<rlimit> sBefore;

}  // namespace

std::size_t allowManyOpenFiles() {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return 1;
  const rlimit before = limit;
  limit.rlim_cur = limit.rlim_max;
  if (setrlimit(RLIMIT_NOFILE, &limit) == 0) {
    sBefore = before;
  } else {
    limit = before;
  }
  if (limit.rlim_cur < kOfAll + kOfOneDownload) return 1;
  return static_cast<std::size_t>((limit.rlim_cur - kOfAll) / kOfOneDownload);
}

void giveBackOpenFiles(pid_t process) {
  if (sBefore) static_cast<void>(prlimit(process, RLIMIT_NOFILE, &*sBefore, nullptr));
}
