#include "platform/posix/PosixFiles.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <utility>
#include <vector>

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/Pages.h"
#include "platform/posix/SealedFile.h"
#include "platform/posix/readFromStart.h"

namespace platform {
namespace {

using std::filesystem::path;

OSStatus statusOf(int result) { return result < 0 ? errno : noErr; }

bool isOneName(const std::u16string& name) {
  return !name.empty() && name != u"." && name != u".." &&
         name.find(u'/') == std::u16string::npos && name.find(u'\0') == std::u16string::npos;
}

OSStatus checkDataFork(const path& file) {
  struct stat info;
  if (const OSStatus status = statusOf(::stat(file.c_str(), &info))) return status;
  if (S_ISDIR(info.st_mode)) return EISDIR;
  return S_ISREG(info.st_mode) ? noErr : EINVAL;
}

class PosixFiles : public Files {
 public:
  explicit PosixFiles(std::vector<SealedFile> sealed) : mSealed(std::move(sealed)) {}

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

  WholeRead readWhole(const path& file, std::size_t size, FileBytes& bytes) override {
    const auto pages = std::make_shared<Pages>(size);
    bytes = FileBytes(pages, pages->bytes());
    if (const OSStatus status = checkDataFork(file)) return {WholeRead::Step::DataFork, status};
    // A pipe that took the file's place meanwhile must not block the program.
    const FileDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!descriptor) return {WholeRead::Step::Open, errno};
    if (const SealedFile* const there = findSealed(descriptor, size)) {
      pages->showForReading(there->descriptor());
      return {WholeRead::Step::Read, noErr, size};
    }
    return readFromStart(descriptor, pages->bytes());
  }

 private:
  // Null when none has these bytes of the file.
  const SealedFile* findSealed(const FileDescriptor& descriptor, std::size_t size) const {
    struct stat info;
    if (mSealed.empty() || ::fstat(descriptor.get(), &info) != 0) return nullptr;
    const auto found = std::ranges::find_if(mSealed, [&](const SealedFile& each) {
      return each.isOf(info) && size <= static_cast<std::size_t>(info.st_size);
    });
    return found == mSealed.end() ? nullptr : &*found;
  }

  std::vector<SealedFile> mSealed;
};

}  // namespace

std::unique_ptr<Files> makePosixFiles(std::vector<SealedFile> sealed) {
  return std::make_unique<PosixFiles>(std::move(sealed));
}

}  // namespace platform
