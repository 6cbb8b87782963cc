// What the program relies on in every file system, the double included.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <new>
#include <ostream>
#include <string>

#include "FakeFiles.h"
#include "TemporaryDirectory.h"
#include "platform/posix/PosixFiles.h"

namespace {

using platform::Files;
using platform::OSStatus;
using platform::WholeRead;
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

  // How far it came, in words.
  std::string readWhole(const std::string& name, std::size_t size) {
    const WholeRead read = files().readWhole(root() / name, size, mBytes);
    const std::string step = read.step == WholeRead::Step::DataFork ? "data fork"
                             : read.step == WholeRead::Step::Open   ? "open"
                                                                    : "read";
    return step + ", status " + std::to_string(read.status) + ", " + std::to_string(read.actual) +
           " bytes";
  }

  std::string bytes() const { return {mBytes.begin(), mBytes.end()}; }

  std::unique_ptr<FilesWorld> mWorld = GetParam().make();
  path mFile;
  std::uint64_t mSize = 4711;
  platform::FileBytes mBytes;
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

TEST_P(FilesContract, WholeFileIsRead) {
  mWorld->addFile("file", std::string("a\0c", 3));
  EXPECT_EQ(readWhole("file", 3), "read, status 0, 3 bytes");
  EXPECT_EQ(bytes(), std::string("a\0c", 3));
}

TEST_P(FilesContract, FileTakesThePlaceOfWhatWasThere) {
  mWorld->addFile("file", "abc");
  mBytes = platform::FileBytes({'l', 'o', 'n', 'g', 'e', 'r'});
  EXPECT_EQ(readWhole("file", 3), "read, status 0, 3 bytes");
  EXPECT_EQ(bytes(), "abc");
  mBytes = platform::FileBytes({'x'});
  EXPECT_EQ(readWhole("file", 3), "read, status 0, 3 bytes");
  EXPECT_EQ(bytes(), "abc");
}

TEST_P(FilesContract, NoMoreIsReadThanAskedFor) {
  mWorld->addFile("file", "abc");
  EXPECT_EQ(readWhole("file", 2), "read, status 0, 2 bytes");
  EXPECT_EQ(bytes(), "ab");
}

TEST_P(FilesContract, ReadEndsAtTheEndOfTheFile) {
  mWorld->addFile("file", "abc");
  EXPECT_EQ(readWhole("file", 5), "read, status 0, 3 bytes");
  EXPECT_EQ(bytes(), std::string("abc\0\0", 5));
}

TEST_P(FilesContract, ReadOfNothingSucceeds) {
  mWorld->addFile("file", "abc");
  EXPECT_EQ(readWhole("file", 0), "read, status 0, 0 bytes");
  EXPECT_EQ(bytes(), "");
}

TEST_P(FilesContract, MemoryIsThereBeforeTheFileIsLookedAt) {
  EXPECT_EQ(readWhole("absent", 3), "data fork, status " + std::to_string(ENOENT) + ", 0 bytes");
  EXPECT_EQ(bytes(), std::string(3, '\0'));
  EXPECT_THROW(readWhole("absent", SIZE_MAX), std::bad_alloc);
  EXPECT_THROW(readWhole("absent", SIZE_MAX / 2 + 1), std::bad_alloc);
}

TEST_P(FilesContract, DirectoryHasNoDataFork) {
  mWorld->addDirectory("directory");
  EXPECT_EQ(readWhole("directory", 3), "data fork, status " + std::to_string(EISDIR) + ", 0 bytes");
}

INSTANTIATE_TEST_SUITE_P(
    Files, FilesContract,
    testing::Values(
        Implementation{"posix", [] { return std::unique_ptr<FilesWorld>(new PosixFilesWorld); }},
        Implementation{"fake", [] { return std::unique_ptr<FilesWorld>(new FakeFilesWorld); }}));

}  // namespace
