// What the program relies on in every file system, the double included.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>

#include "FakeFiles.h"
#include "TemporaryDirectory.h"
#include "platform/posix/PosixFiles.h"

namespace {

using platform::Files;
using platform::OpenFile;
using platform::OSStatus;
using std::filesystem::path;

// A file system with one directory in which tests put what they need.
class FilesWorld {
 public:
  virtual ~FilesWorld() = default;
  virtual Files& files() = 0;
  virtual path root() const = 0;
  virtual void addFile(const std::string& name, const std::string& bytes) = 0;
  virtual void addDirectory(const std::string& name) = 0;
};

class PosixFilesWorld : public FilesWorld {
 public:
  Files& files() override { return *mFiles; }
  path root() const override { return mDirectory.path(); }
  void addFile(const std::string& name, const std::string& bytes) override {
    std::ofstream(root() / name, std::ios::binary) << bytes;
  }
  void addDirectory(const std::string& name) override {
    std::filesystem::create_directory(root() / name);
  }

 private:
  TemporaryDirectory mDirectory;
  std::unique_ptr<Files> mFiles = platform::makePosixFiles();
};

class FakeFilesWorld : public FilesWorld {
 public:
  FakeFilesWorld() { mFiles.addDirectory(root()); }
  Files& files() override { return mFiles; }
  path root() const override { return "/root"; }
  void addFile(const std::string& name, const std::string& bytes) override {
    mFiles.addFile(root() / name, bytes);
  }
  void addDirectory(const std::string& name) override { mFiles.addDirectory(root() / name); }

 private:
  FakeFiles mFiles;
};

struct Implementation {
  const char* name;
  std::unique_ptr<FilesWorld> (*make)();
};

void PrintTo(const Implementation& implementation, std::ostream* out) {
  *out << implementation.name;
}

class FilesContract : public testing::TestWithParam<Implementation> {
 protected:
  Files& files() { return mWorld->files(); }
  path root() const { return mWorld->root(); }

  OSStatus makeReference(const std::u16string& name) {
    mFile = "unchanged";
    return files().makeReference(root(), name, mFile);
  }

  std::unique_ptr<FilesWorld> mWorld = GetParam().make();
  path mFile;
  std::unique_ptr<OpenFile> mOpened;
  std::uint64_t mSize = 4711;
  std::size_t mActual = 4711;
};

TEST_P(FilesContract, DirectoryIsOneThatExists) {
  mWorld->addFile("file", "x");
  EXPECT_EQ(files().checkDirectory(root()), 0);
  EXPECT_EQ(files().checkDirectory(root() / "absent"), ENOENT);
  EXPECT_EQ(files().checkDirectory(root() / "file"), ENOTDIR);
}

TEST_P(FilesContract, ReferenceIsToAnEntryOfTheDirectory) {
  mWorld->addFile("product.brand.bin", "x");
  EXPECT_EQ(makeReference(u"product.brand.bin"), 0);
  EXPECT_EQ(mFile, root() / "product.brand.bin");
}

TEST_P(FilesContract, ReferenceToAnAbsentEntryIsNotMade) {
  mWorld->addFile("Product.bin", "x");
  EXPECT_EQ(makeReference(u"product.bin"), ENOENT);
  EXPECT_EQ(mFile, "unchanged");
}

TEST_P(FilesContract, NamesReachBeyondAscii) {
  mWorld->addFile("\xC3\xA4\xE2\x82\xAC\xF0\x9F\x96\xA8", "x");
  EXPECT_EQ(makeReference(u"\u00E4\u20AC\U0001F5A8"), 0);
  EXPECT_EQ(mFile, root() / "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x96\xA8");
}

TEST_P(FilesContract, NameLeadsNowhereElse) {
  mWorld->addDirectory("below");
  mWorld->addFile("below/file", "x");
  for (const std::u16string& name :
       {std::u16string(), std::u16string(u"."), std::u16string(u".."),
        std::u16string(u"below/file"), std::u16string(u"/"), std::u16string(u"below\0x", 7)}) {
    EXPECT_EQ(makeReference(name), EINVAL);
    EXPECT_EQ(mFile, "unchanged");
  }
}

TEST_P(FilesContract, NameMustBeUnicode) {
  EXPECT_EQ(makeReference(std::u16string(1, char16_t{0xD800})), EILSEQ);
  EXPECT_EQ(mFile, "unchanged");
}

TEST_P(FilesContract, SizeIsThatOfTheData) {
  mWorld->addFile("empty", "");
  mWorld->addFile("three", "abc");
  EXPECT_EQ(files().dataSize(root() / "empty", mSize), 0);
  EXPECT_EQ(mSize, 0u);
  EXPECT_EQ(files().dataSize(root() / "three", mSize), 0);
  EXPECT_EQ(mSize, 3u);
  EXPECT_EQ(files().dataSize(root() / "absent", mSize), ENOENT);
}

TEST_P(FilesContract, OnlyFilesHaveDataToRead) {
  mWorld->addFile("file", "abc");
  mWorld->addDirectory("directory");
  EXPECT_EQ(files().checkDataFork(root() / "file"), 0);
  EXPECT_EQ(files().checkDataFork(root() / "directory"), EISDIR);
  EXPECT_EQ(files().checkDataFork(root() / "absent"), ENOENT);
}

TEST_P(FilesContract, FileIsReadFromItsStart) {
  mWorld->addFile("file", std::string("a\0c", 3));
  ASSERT_EQ(files().open(root() / "file", mOpened), 0);
  std::string bytes(3, '?');
  EXPECT_EQ(mOpened->read(bytes, mActual), 0);
  EXPECT_EQ(mActual, 3u);
  EXPECT_EQ(bytes, std::string("a\0c", 3));
  EXPECT_EQ(mOpened->read(std::span(bytes).first(1), mActual), 0);
  EXPECT_EQ(mActual, 1u);
  EXPECT_EQ(bytes[0], 'a');
}

TEST_P(FilesContract, ReadEndsAtTheEndOfTheFile) {
  mWorld->addFile("file", "abc");
  ASSERT_EQ(files().open(root() / "file", mOpened), 0);
  std::string bytes(5, '?');
  EXPECT_EQ(mOpened->read(bytes, mActual), 0);
  EXPECT_EQ(mActual, 3u);
  EXPECT_EQ(bytes, "abc??");
}

TEST_P(FilesContract, ReadOfNothingSucceeds) {
  mWorld->addFile("file", "abc");
  ASSERT_EQ(files().open(root() / "file", mOpened), 0);
  EXPECT_EQ(mOpened->read({}, mActual), 0);
  EXPECT_EQ(mActual, 0u);
}

TEST_P(FilesContract, AbsentFileIsNotOpened) {
  EXPECT_EQ(files().open(root() / "absent", mOpened), ENOENT);
  EXPECT_EQ(mOpened, nullptr);
}

TEST_P(FilesContract, MemoryThatExpectsAFileKeepsWhatItHolds) {
  std::string memory(3 << 20, 'x');
  files().expectWholeFile(memory.data(), memory.size());
  files().expectWholeFile(&memory[1], memory.size() - 2);
  files().expectWholeFile(&memory[4097], 4095);
  files().expectWholeFile(memory.data(), 0);
  files().expectWholeFile(nullptr, 0);
  EXPECT_EQ(memory, std::string(3 << 20, 'x'));
}

INSTANTIATE_TEST_SUITE_P(
    Files, FilesContract,
    testing::Values(
        Implementation{"posix", [] { return std::unique_ptr<FilesWorld>(new PosixFilesWorld); }},
        Implementation{"fake", [] { return std::unique_ptr<FilesWorld>(new FakeFilesWorld); }}));

class PosixFilesTest : public testing::Test {
 protected:
  path root() const { return mDirectory.path(); }

  TemporaryDirectory mDirectory;
  std::unique_ptr<Files> mFiles = platform::makePosixFiles();
  std::unique_ptr<OpenFile> mOpened;
};

TEST_F(PosixFilesTest, LinkThatLeadsNowhereIsAnEntryWithoutASize) {
  std::filesystem::create_symlink("absent", root() / "link");
  path file;
  std::uint64_t size = 0;
  EXPECT_EQ(mFiles->makeReference(root(), u"link", file), 0);
  EXPECT_EQ(mFiles->dataSize(file, size), ENOENT);
  EXPECT_EQ(mFiles->checkDataFork(file), ENOENT);
}

TEST_F(PosixFilesTest, NameThatIsTooLongIsReported) {
  path file;
  EXPECT_EQ(mFiles->makeReference(root(), std::u16string(256, u'x'), file), ENAMETOOLONG);
}

TEST_F(PosixFilesTest, SizeHasSixtyFourBits) {
  std::ofstream(root() / "sparse");
  std::filesystem::resize_file(root() / "sparse", std::uint64_t{5} << 32);
  std::uint64_t size = 0;
  EXPECT_EQ(mFiles->dataSize(root() / "sparse", size), 0);
  EXPECT_EQ(size, std::uint64_t{5} << 32);
}

TEST_F(PosixFilesTest, PipeHasNoDataForkAndDoesNotBlock) {
  ASSERT_EQ(::mkfifo((root() / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(mFiles->checkDataFork(root() / "pipe"), EINVAL);
  EXPECT_EQ(mFiles->open(root() / "pipe", mOpened), 0);
}

TEST_F(PosixFilesTest, DirectoryCannotBeRead) {
  ASSERT_EQ(mFiles->open(root(), mOpened), 0);
  std::string bytes(3, '?');
  std::size_t actual = 4711;
  EXPECT_EQ(mOpened->read(bytes, actual), EISDIR);
  EXPECT_EQ(actual, 0u);
}

TEST_F(PosixFilesTest, FileThatShrinksAfterOpeningIsReadShort) {
  std::ofstream(root() / "file") << "abcdef";
  ASSERT_EQ(mFiles->open(root() / "file", mOpened), 0);
  std::filesystem::resize_file(root() / "file", 2);
  std::string bytes(6, '?');
  std::size_t actual = 0;
  EXPECT_EQ(mOpened->read(bytes, actual), 0);
  EXPECT_EQ(actual, 2u);
}

TEST_F(PosixFilesTest, FileIsClosedWithItsHandle) {
  std::ofstream(root() / "file") << "abc";
  ASSERT_EQ(mFiles->open(root() / "file", mOpened), 0);
  const int next = ::open("/dev/null", O_RDONLY);
  ::close(next);
  mOpened.reset();
  const int lower = ::open("/dev/null", O_RDONLY);
  ::close(lower);
  EXPECT_LT(lower, next);
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

TEST_F(PosixFilesTest, MemoryThatExpectsALargeFileGetsLargePages) {
  if (!std::filesystem::exists("/sys/kernel/mm/transparent_hugepage")) {
    GTEST_SKIP() << "this kernel has no huge pages";
  }
  const auto memory = std::make_unique_for_overwrite<char[]>(16 << 20);
  const char* const middle = &memory[8 << 20];
  ASSERT_EQ(memoryFlags(middle).find(" hg "), std::string::npos);
  mFiles->expectWholeFile(memory.get(), 16 << 20);
  EXPECT_NE(memoryFlags(middle).find(" hg "), std::string::npos) << memoryFlags(middle);
}

// Root may read everything: as root, the test looks as somebody else.
TEST_F(PosixFilesTest, FileWithoutPermissionIsNotOpened) {
  std::ofstream(root() / "secret") << "abc";
  std::filesystem::permissions(root() / "secret", std::filesystem::perms::none);
  std::filesystem::permissions(root(), std::filesystem::perms::all);
  const uid_t user = ::geteuid();
  const uid_t somebody = user == 0 ? 65534 : user;
  ASSERT_EQ(::seteuid(somebody), 0);
  const OSStatus status = mFiles->open(root() / "secret", mOpened);
  ASSERT_EQ(::seteuid(user), 0);
  EXPECT_EQ(status, EACCES);
  EXPECT_EQ(mOpened, nullptr);
}

}  // namespace
