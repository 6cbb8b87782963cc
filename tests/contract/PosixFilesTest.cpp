// What the host's file system can do to a firmware file, and what reading one costs.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "HostCalls.h"
#include "TemporaryDirectory.h"
#include "platform/posix/PosixFiles.h"

namespace {

using platform::Files;
using platform::WholeRead;
using std::filesystem::path;
using testing::ElementsAre;

constexpr std::size_t kLarge = 16 << 20;

class PosixFilesTest : public testing::Test {
 protected:
  path root() const { return mDirectory.path(); }

  path write(const std::string& name, const std::string& bytes) const {
    std::ofstream(root() / name, std::ios::binary) << bytes;
    return root() / name;
  }

  WholeRead read(const path& file, std::size_t size) {
    return mFiles->readWhole(file, size, mBytes);
  }

  void expectNoDataFork(const path& file) {
    const WholeRead result = read(file, 3);
    EXPECT_EQ(result.step, WholeRead::Step::DataFork) << file;
    EXPECT_EQ(result.status, EINVAL) << file;
  }

  TemporaryDirectory mDirectory;
  std::unique_ptr<Files> mFiles = platform::makePosixFiles();
  platform::FileBytes mBytes;
};

TEST_F(PosixFilesTest, LinkThatLeadsNowhereIsAnEntryWithoutASize) {
  std::filesystem::create_symlink("absent", root() / "link");
  path file;
  std::uint64_t size = 0;
  EXPECT_EQ(mFiles->makeReference(root(), u"link", file), 0);
  EXPECT_EQ(mFiles->dataSize(file, size), ENOENT);
  EXPECT_EQ(read(file, 3).status, ENOENT);
}

TEST_F(PosixFilesTest, NameThatIsTooLongIsReported) {
  path file;
  EXPECT_EQ(mFiles->makeReference(root(), std::u16string(256, u'x'), file), ENAMETOOLONG);
}

TEST_F(PosixFilesTest, SizeHasSixtyFourBits) {
  std::filesystem::resize_file(write("sparse", ""), std::uint64_t{5} << 32);
  std::uint64_t size = 0;
  EXPECT_EQ(mFiles->dataSize(root() / "sparse", size), 0);
  EXPECT_EQ(size, std::uint64_t{5} << 32);
}

TEST_F(PosixFilesTest, NothingButFilesIsOpened) {
  ASSERT_EQ(::mkfifo((root() / "pipe").c_str(), 0600), 0);
  expectNoDataFork(root() / "pipe");
  expectNoDataFork("/dev/zero");
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  (root() / "socket").native().copy(address.sun_path, sizeof address.sun_path - 1);
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  expectNoDataFork(root() / "socket");
  ::close(socket);
}

TEST_F(PosixFilesTest, PipeThatTookAFilesPlaceIsNotWaitedFor) {
  const path file = write("file", "abc");
  const HostCalls calls([&] {
    std::filesystem::remove(file);
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
  });
  const WholeRead result = read(file, 3);
  EXPECT_EQ(result.step, WholeRead::Step::Read);
  EXPECT_EQ(result.status, ESPIPE);
  EXPECT_EQ(result.actual, 0u);
}

TEST_F(PosixFilesTest, FileThatShrinksBeforeItIsOpenedIsReadShort) {
  const path file = write("file", "abcdef");
  const HostCalls calls([&] { std::filesystem::resize_file(file, 2); });
  const WholeRead result = read(file, 6);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.actual, 2u);
}

TEST_F(PosixFilesTest, FailedReadTellsItsStatus) {
  // No process has memory at address 0.
  const WholeRead result = read("/proc/self/mem", 3);
  EXPECT_EQ(result.step, WholeRead::Step::Read);
  EXPECT_EQ(result.status, EIO);
  EXPECT_EQ(result.actual, 0u);
}

TEST_F(PosixFilesTest, WholeFileComesInOneReadToWhereItStays) {
  const path file = write("file", std::string(kLarge, 'f'));
  const HostCalls calls;
  EXPECT_EQ(read(file, kLarge).actual, kLarge);
  EXPECT_THAT(calls.reads(), ElementsAre(RecordedRead{mBytes.data(), kLarge, 0}));
  EXPECT_EQ(std::string(mBytes.begin(), mBytes.end()), std::string(kLarge, 'f'));
}

TEST_F(PosixFilesTest, FileIsClosedAfterwards) {
  const auto openFiles = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  };
  const path file = write("file", "abc");
  const auto before = openFiles();
  read(file, 3);
  read(file, 5);
  read("/proc/self/mem", 3);
  EXPECT_EQ(openFiles(), before);
}

// The flags that the kernel keeps for the memory that has `address` in it; empty if it keeps none.
std::string memoryFlags(const void* address) {
  std::ifstream smaps("/proc/self/smaps");
  bool found = false;
  for (std::string line; std::getline(smaps, line);) {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    char dash = 0;
    if (std::istringstream(line) >> std::hex >> begin >> dash >> end && dash == '-') {
      const auto wanted = reinterpret_cast<std::uintptr_t>(address);
      found = begin <= wanted && wanted < end;
    }
    if (found && line.starts_with("VmFlags:")) return line + " ";
  }
  return std::string();
}

TEST_F(PosixFilesTest, LargeFileGetsLargePages) {
  if (!std::filesystem::exists("/sys/kernel/mm/transparent_hugepage")) {
    GTEST_SKIP() << "this kernel has no huge pages";
  }
  std::filesystem::resize_file(write("file", ""), kLarge);
  read(root() / "file", kLarge);
  const std::string flags = memoryFlags(mBytes.data());
  EXPECT_NE(flags.find(" hg "), std::string::npos) << flags;
}

// Root may read everything: as root, the test looks as somebody else.
TEST_F(PosixFilesTest, FileWithoutPermissionIsNotOpened) {
  const path file = write("secret", "abc");
  std::filesystem::permissions(file, std::filesystem::perms::none);
  std::filesystem::permissions(root(), std::filesystem::perms::all);
  const uid_t user = ::geteuid();
  const uid_t somebody = user == 0 ? 65534 : user;
  ASSERT_EQ(::seteuid(somebody), 0);
  const WholeRead result = read(file, 3);
  ASSERT_EQ(::seteuid(user), 0);
  EXPECT_EQ(result.step, WholeRead::Step::Open);
  EXPECT_EQ(result.status, EACCES);
}

}  // namespace
