#include "platform/posix/SealedFile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <new>
#include <utility>

#include "platform/posix/Pages.h"
#include "platform/posix/readFromStart.h"

namespace platform {
namespace {

constexpr int kAllSeals = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;

// No file system keeps times more coarsely.
constexpr std::chrono::seconds kCoarsestTime{2};

std::int64_t nanoseconds(const timespec& time) {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

bool writeBehind(int descriptor, std::uint64_t offset, const void* bytes, std::size_t size) {
  return ::pwrite(descriptor, bytes, size, static_cast<off_t>(offset)) ==
         static_cast<ssize_t>(size);
}

}  // namespace

SealedFile::Source::Source(const struct stat& file)
    : device(file.st_dev),
      inode(file.st_ino),
      size(static_cast<std::uint64_t>(file.st_size)),
      written(nanoseconds(file.st_mtim)),
      changed(nanoseconds(file.st_ctim)) {}

SealedFile::SealedFile(FileDescriptor memory, const Source& source)
    : mMemory(std::move(memory)), mSource(source) {}

std::optional<SealedFile> SealedFile::read(const std::filesystem::path& file, Time now) {
  const FileDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat info;
  if (!descriptor || ::fstat(descriptor.get(), &info) != 0 || !S_ISREG(info.st_mode)) {
    return std::nullopt;
  }
  const Source source(info);
  const auto youngest = std::chrono::nanoseconds((now - kCoarsestTime).time_since_epoch()).count();
  if (source.size > UINT32_MAX || source.written > youngest || source.changed > youngest)
    return std::nullopt;

  FileDescriptor memory(::memfd_create(file.filename().c_str(), MFD_CLOEXEC | MFD_ALLOW_SEALING));
  if (!memory || ::ftruncate(memory.get(), static_cast<off_t>(source.size)) != 0) {
    return std::nullopt;
  }
  try {
    Pages pages(source.size);
    pages.showForWriting(memory.get());
    const WholeRead whole = readFromStart(descriptor, pages.bytes());
    if (whole.status != noErr || whole.actual != source.size) return std::nullopt;
  } catch (const std::bad_alloc&) {
    return std::nullopt;
  }
  if (::fstat(descriptor.get(), &info) != 0 || Source(info) != source ||
      !writeBehind(memory.get(), source.size, &source, sizeof source) ||
      ::fcntl(memory.get(), F_ADD_SEALS, kAllSeals) != 0) {
    return std::nullopt;
  }
  return SealedFile(std::move(memory), source);
}

std::optional<SealedFile> SealedFile::fromDescriptor(FileDescriptor descriptor) {
  if (::fcntl(descriptor.get(), F_GET_SEALS) != kAllSeals) return std::nullopt;
  const off_t size = ::lseek(descriptor.get(), 0, SEEK_END);
  Source source;
  const off_t end = size - static_cast<off_t>(sizeof source);
  if (end < 0 || ::pread(descriptor.get(), &source, sizeof source, end) != sizeof source ||
      source.size != static_cast<std::uint64_t>(end)) {
    return std::nullopt;
  }
  return SealedFile(std::move(descriptor), source);
}

}  // namespace platform
