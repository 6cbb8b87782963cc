// A firmware file that one process has read for all: whose bytes it has, and whose no more.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "HostCalls.h"
#include "TemporaryDirectory.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/SealedFile.h"

namespace {

using platform::FileDescriptor;
using platform::Files;
using platform::SealedFile;
using platform::WholeRead;
using std::filesystem::path;
using testing::IsEmpty;
using testing::SizeIs;
using namespace std::chrono_literals;

SealedFile::Time anHourFromNow() { return std::chrono::system_clock::now() + 1h; }

class SealedFileTest : public testing::Test {
 protected:
  SealedFileTest() { write("abc"); }

  void write(const std::string& bytes) const { std::ofstream(mFile, std::ios::binary) << bytes; }

  // No two files of these tests were written in the same second.
  void writeLater(const std::string& bytes) const {
    const auto before = std::filesystem::last_write_time(mFile);
    write(bytes);
    std::filesystem::last_write_time(mFile, before + 1s);
  }

  std::optional<SealedFile> seal() const { return SealedFile::read(mFile, anHourFromNow()); }

  // With the sealed file, the first `size` bytes, and behind them a word if they were read anew.
  std::string readWith(std::optional<SealedFile> sealed, std::size_t size) {
    std::vector<SealedFile> all;
    if (sealed) all.push_back(*std::move(sealed));
    const std::unique_ptr<Files> files = platform::makePosixFiles(std::move(all));
    const HostCalls calls;
    mRead = files->readWhole(mFile, size, mBytes);
    return std::string(mBytes.begin(), mBytes.end()) + (calls.reads().empty() ? "" : " anew");
  }

  TemporaryDirectory mDirectory;
  path mFile = mDirectory.path() / "file";
  platform::FileBytes mBytes;
  WholeRead mRead{};
};

TEST_F(SealedFileTest, IsTakenInsteadOfReading) {
  EXPECT_EQ(readWith(seal(), 3), "abc");
  EXPECT_EQ(mRead.step, WholeRead::Step::Read);
  EXPECT_EQ(mRead.status, 0);
  EXPECT_EQ(mRead.actual, 3u);
}

TEST_F(SealedFileTest, LargeOneIsTheSameToTheLastByte) {
  std::string bytes(5'000'001, '.');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * i >> 7);
  write(bytes);
  EXPECT_TRUE(readWith(seal(), bytes.size()) == bytes);
}

TEST_F(SealedFileTest, GivesAsManyBytesAsAreAskedFor) {
  EXPECT_EQ(readWith(seal(), 2), "ab");
  EXPECT_EQ(mRead.actual, 2u);
  EXPECT_EQ(readWith(seal(), 5), std::string("abc\0\0 anew", 10));
  EXPECT_EQ(mRead.actual, 3u);
  EXPECT_EQ(readWith(seal(), 0), "");
}

TEST_F(SealedFileTest, ChangedFileIsReadAnew) {
  auto sealed = seal();
  writeLater("ABC");
  EXPECT_EQ(readWith(std::move(sealed), 3), "ABC anew");
}

TEST_F(SealedFileTest, ReplacedFileIsReadAnew) {
  auto sealed = seal();
  const auto time = std::filesystem::last_write_time(mFile);
  const path before = mDirectory.path() / "before";
  std::filesystem::rename(mFile, before);
  write("ABC");
  std::filesystem::last_write_time(mFile, time);
  EXPECT_EQ(readWith(std::move(sealed), 3), "ABC anew");
}

TEST_F(SealedFileTest, OtherFileIsReadAnew) {
  auto sealed = seal();
  mFile = mDirectory.path() / "other";
  write("ABC");
  EXPECT_EQ(readWith(std::move(sealed), 3), "ABC anew");
}

// Root may read everything: as root, the test looks as somebody else.
TEST_F(SealedFileTest, FileThatMayNotBeOpenedAnyMoreIsNotHad) {
  auto sealed = seal();
  std::filesystem::permissions(mDirectory.path(), std::filesystem::perms::all);
  std::filesystem::permissions(mFile, std::filesystem::perms::none);
  const uid_t user = ::geteuid();
  ASSERT_EQ(::seteuid(user == 0 ? 65534 : user), 0);
  readWith(std::move(sealed), 3);
  ASSERT_EQ(::seteuid(user), 0);
  EXPECT_EQ(mRead.step, WholeRead::Step::Open);
  EXPECT_EQ(mRead.status, EACCES);
}

TEST_F(SealedFileTest, FileThatIsGoneIsNotHad) {
  auto sealed = seal();
  std::filesystem::remove(mFile);
  readWith(std::move(sealed), 3);
  EXPECT_EQ(mRead.step, WholeRead::Step::DataFork);
  EXPECT_EQ(mRead.status, ENOENT);
}

TEST_F(SealedFileTest, CannotBeChangedOrCutOff) {
  const auto sealed = seal();
  ASSERT_TRUE(sealed);
  const int descriptor = sealed->descriptor();
  EXPECT_EQ(::pwrite(descriptor, "x", 1, 0), -1);
  EXPECT_EQ(errno, EPERM);
  EXPECT_EQ(::ftruncate(descriptor, 1), -1);
  EXPECT_EQ(::ftruncate(descriptor, 1000), -1);
  EXPECT_EQ(::mmap(nullptr, 3, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0), MAP_FAILED);
}

TEST_F(SealedFileTest, CanBePassedOn) {
  const auto sealed = seal();
  ASSERT_TRUE(sealed);
  EXPECT_EQ(readWith(SealedFile::fromDescriptor(FileDescriptor(::dup(sealed->descriptor()))), 3),
            "abc");
}

TEST_F(SealedFileTest, NothingElseIsTakenForOne) {
  const auto takes = [](int descriptor) {
    return SealedFile::fromDescriptor(FileDescriptor(descriptor)).has_value();
  };
  constexpr int kSeals = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;
  const auto memory = [](off_t size, int seals) {
    const int descriptor = ::memfd_create("test", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    EXPECT_EQ(::ftruncate(descriptor, size), 0);
    EXPECT_EQ(::fcntl(descriptor, F_ADD_SEALS, seals), 0);
    return descriptor;
  };
  constexpr off_t kEnd = 40;  // which says that the file before it is empty
  EXPECT_TRUE(takes(memory(kEnd, kSeals)));
  EXPECT_FALSE(takes(memory(kEnd, kSeals & ~F_SEAL_SHRINK)));
  EXPECT_FALSE(takes(memory(kEnd, kSeals & ~F_SEAL_WRITE)));
  EXPECT_FALSE(takes(memory(kEnd - 1, kSeals)));
  EXPECT_FALSE(takes(memory(kEnd + 1, kSeals)));
  EXPECT_FALSE(takes(::open(mFile.c_str(), O_RDONLY | O_CLOEXEC)));
  EXPECT_FALSE(takes(-1));
}

TEST_F(SealedFileTest, FileThatWasJustWrittenIsNotSealed) {
  EXPECT_FALSE(SealedFile::read(mFile, std::chrono::system_clock::now()));
  // Nor is one that was just put there with an old time.
  std::filesystem::last_write_time(mFile, std::filesystem::last_write_time(mFile) - 1h);
  EXPECT_FALSE(SealedFile::read(mFile, std::chrono::system_clock::now()));
}

// A writer who goes on within the time of one clock tick of the file system leaves the times alone.
TEST_F(SealedFileTest, FileIsSealedTwoSecondsAfterItWasWritten) {
  const auto youngest = [this] {
    struct stat info {};
    EXPECT_EQ(::stat(mFile.c_str(), &info), 0);
    const auto time = std::max(std::pair(info.st_mtim.tv_sec, info.st_mtim.tv_nsec),
                               std::pair(info.st_ctim.tv_sec, info.st_ctim.tv_nsec));
    return SealedFile::Time(std::chrono::seconds(time.first) +
                            std::chrono::nanoseconds(time.second));
  };
  for (const auto written : {-1h, 1h}) {  // before or after it was changed
    std::filesystem::last_write_time(mFile, std::filesystem::last_write_time(mFile) + written);
    EXPECT_FALSE(SealedFile::read(mFile, youngest() + 2s - 1ns));
    EXPECT_TRUE(SealedFile::read(mFile, youngest() + 2s));
  }
}

TEST_F(SealedFileTest, OnlyFilesAreSealed) {
  EXPECT_FALSE(SealedFile::read(mDirectory.path(), anHourFromNow()));
  EXPECT_FALSE(SealedFile::read(mDirectory.path() / "absent", anHourFromNow()));
  ASSERT_EQ(::mkfifo((mDirectory.path() / "pipe").c_str(), 0600), 0);
  EXPECT_FALSE(SealedFile::read(mDirectory.path() / "pipe", anHourFromNow()));
}

// As one that is cut off while it is read: the kernel says a page of each of its attributes.
TEST_F(SealedFileTest, FileWithFewerBytesThanItSaysIsNotSealed) {
  mFile = "/sys/devices/system/cpu/online";
  ASSERT_EQ(std::filesystem::file_size(mFile), 4096u);
  EXPECT_FALSE(seal());
}

// A printer takes the length of an image in 32 bits.
TEST_F(SealedFileTest, WhatIsTooLongForAnyPrinterIsNotSealed) {
  std::filesystem::resize_file(mFile, std::uint64_t{1} << 32);
  EXPECT_FALSE(seal());
}

}  // namespace
