#include "FakeFiles.h"

#include <algorithm>
#include <cerrno>
#include <utility>

using platform::noErr;
using platform::OSStatus;
using std::filesystem::path;

class FakeFiles::OpenedFile : public platform::OpenFile {
 public:
  OpenedFile(FakeFiles& files, const std::string& bytes) : mFiles(files), mBytes(bytes) {}
  ~OpenedFile() override { mFiles.mCalls.push_back("close"); }

  OSStatus read(std::span<char> destination, std::size_t& actual) override {
    const OSStatus status =
        mFiles.record(Operation::Read, "read " + std::to_string(destination.size()));
    actual = std::min({destination.size(), mBytes.size(), mFiles.mReadLimit});
    if (status != noErr && mFiles.mReadLimit == SIZE_MAX) actual = 0;
    std::copy_n(mBytes.begin(), actual, destination.begin());
    return status;
  }

 private:
  FakeFiles& mFiles;
  const std::string mBytes;
};

void FakeFiles::addDirectory(const path& directory) { mDirectories.insert(directory); }

void FakeFiles::addFile(const path& file, std::string bytes) { mFiles[file] = std::move(bytes); }

void FakeFiles::pretendSize(const path& file, std::uint64_t size) { mPretendedSizes[file] = size; }

OSStatus FakeFiles::checkDirectory(const path& directory) {
  if (const OSStatus status =
          record(Operation::CheckDirectory, "checkDirectory " + directory.string()))
    return status;
  if (mFiles.contains(directory)) return ENOTDIR;
  return mDirectories.contains(directory) ? noErr : ENOENT;
}

OSStatus FakeFiles::makeReference(const path& directory, const std::u16string& name, path& file) {
  path entry;
  try {
    entry = directory / name;
  } catch (const std::filesystem::filesystem_error&) {
    return EILSEQ;
  }
  if (const OSStatus status = record(Operation::MakeReference, "makeReference " + entry.string()))
    return status;
  const bool isOneName = !name.empty() && name != u"." && name != u".." &&
                         name.find(u'/') == std::u16string::npos &&
                         name.find(u'\0') == std::u16string::npos;
  if (!isOneName) return EINVAL;
  if (const OSStatus status = findEntry(entry)) return status;
  file = entry;
  return noErr;
}

OSStatus FakeFiles::dataSize(const path& file, std::uint64_t& size) {
  if (const OSStatus status = record(Operation::DataSize, "dataSize " + file.string()))
    return status;
  if (const OSStatus status = findEntry(file)) return status;
  const auto pretended = mPretendedSizes.find(file);
  const bool isFile = mFiles.contains(file);
  size = pretended != mPretendedSizes.end() ? pretended->second
         : isFile                           ? mFiles.at(file).size()
                                            : 0;
  return noErr;
}

OSStatus FakeFiles::checkDataFork(const path& file) {
  if (const OSStatus status = record(Operation::CheckDataFork, "checkDataFork " + file.string()))
    return status;
  if (mDirectories.contains(file)) return EISDIR;
  return findEntry(file);
}

OSStatus FakeFiles::open(const path& file, std::unique_ptr<platform::OpenFile>& opened) {
  if (const OSStatus status = record(Operation::Open, "open " + file.string())) return status;
  if (mDirectories.contains(file)) return EISDIR;
  if (const OSStatus status = findEntry(file)) return status;
  opened = std::make_unique<OpenedFile>(*this, mFiles.at(file));
  return noErr;
}

void FakeFiles::expectWholeFile(void*, std::size_t size) {
  mCalls.push_back("expectWholeFile " + std::to_string(size));
}

OSStatus FakeFiles::record(Operation operation, const std::string& call) {
  mCalls.push_back(call);
  const auto failure = mFailures.find(operation);
  return failure == mFailures.end() ? noErr : failure->second;
}

OSStatus FakeFiles::findEntry(const path& entry) const {
  return mFiles.contains(entry) || mDirectories.contains(entry) ? noErr : ENOENT;
}
