#include "platform/posix/PosixFiles.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <span>

#include "platform/posix/FileDescriptor.h"

namespace platform {
namespace {

using std::filesystem::path;

OSStatus statusOf(int result) { return result < 0 ? errno : noErr; }

bool isOneName(const std::u16string& name) {
  return !name.empty() && name != u"." && name != u".." &&
         name.find(u'/') == std::u16string::npos && name.find(u'\0') == std::u16string::npos;
}

// With pages of 4 KiB, most of the time that a large image takes to load goes into page faults.
void askForLargePages(void* begin, std::size_t size) {
  const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  if (std::align(page, page, begin, size) == nullptr) return;
  // A kernel without huge pages refuses, and small ones do as well.
  static_cast<void>(::madvise(begin, size / page * page, MADV_HUGEPAGE));
}

// The pages come with the first write to them: here, with the zeros.
void resizeInLargePages(std::vector<char>& bytes, std::size_t size) {
  bytes.reserve(size);
  askForLargePages(bytes.data(), size);
  bytes.resize(size);
}

OSStatus checkDataFork(const path& file) {
  struct stat info;
  if (const OSStatus status = statusOf(::stat(file.c_str(), &info))) return status;
  if (S_ISDIR(info.st_mode)) return EISDIR;
  return S_ISREG(info.st_mode) ? noErr : EINVAL;
}

// The host may take a read in parts: it moves 2 GiB at most at a time.
WholeRead readFromStart(const FileDescriptor& descriptor, std::span<char> destination) {
  WholeRead result{WholeRead::Step::Read, noErr};
  while (result.actual < destination.size()) {
    const std::span<char> rest = destination.subspan(result.actual);
    const ssize_t count =
        ::pread(descriptor.get(), rest.data(), rest.size(), static_cast<off_t>(result.actual));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) result.status = errno;
    if (count <= 0) break;
    result.actual += static_cast<std::size_t>(count);
  }
  return result;
}

class PosixFiles : public Files {
 public:
  OSStatus checkDirectory(const path& directory) override {
    struct stat info;
    if (const OSStatus status = statusOf(::stat(directory.c_str(), &info))) return status;
    return S_ISDIR(info.st_mode) ? noErr : ENOTDIR;
  }

  OSStatus makeReference(const path& directory, const std::u16string& name, path& file) override {
    if (!isOneName(name)) return EINVAL;
    path candidate;
    try {
      candidate = directory / name;
    } catch (const std::filesystem::filesystem_error&) {
      return EILSEQ;  // a surrogate that stands alone
    }
    // A link that leads nowhere is an entry, too.
    struct stat info;
    if (const OSStatus status = statusOf(::lstat(candidate.c_str(), &info))) return status;
    file = candidate;
    return noErr;
  }

  OSStatus dataSize(const path& file, std::uint64_t& size) override {
    struct stat info;
    if (const OSStatus status = statusOf(::stat(file.c_str(), &info))) return status;
    size = static_cast<std::uint64_t>(info.st_size);
    return noErr;
  }

  WholeRead readWhole(const path& file, std::size_t size, std::vector<char>& bytes) override {
    resizeInLargePages(bytes, size);
    if (const OSStatus status = checkDataFork(file)) return {WholeRead::Step::DataFork, status};
    // A pipe that took the file's place meanwhile must not block the program.
    const FileDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!descriptor) return {WholeRead::Step::Open, errno};
    return readFromStart(descriptor, bytes);
  }
};

}  // namespace

std::unique_ptr<Files> makePosixFiles() { return std::make_unique<PosixFiles>(); }

}  // namespace platform
