#include "FakeFiles.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <new>
#include <utility>

using platform::noErr;
using platform::OSStatus;
using platform::WholeRead;
using Step = platform::WholeRead::Step;
using std::filesystem::path;

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

WholeRead FakeFiles::readWhole(const path& file, std::size_t size, platform::FileBytes& bytes) {
  mCalls.push_back("readWhole " + file.string() + " " + std::to_string(size));
  if (size > PTRDIFF_MAX) throw std::bad_alloc();
  const auto memory = std::make_shared<std::vector<char>>(size);
  bytes = platform::FileBytes(memory, *memory);
  if (const OSStatus status = failureOf(Operation::DataFork)) return {Step::DataFork, status};
  if (mDirectories.contains(file)) return {Step::DataFork, EISDIR};
  if (const OSStatus status = findEntry(file)) return {Step::DataFork, status};
  if (const OSStatus status = failureOf(Operation::Open)) return {Step::Open, status};
  const std::string& content = mFiles.at(file);
  const OSStatus status = failureOf(Operation::Read);
  if (status != noErr && mReadLimit == SIZE_MAX) return {Step::Read, status};
  mDestination = bytes.data();
  const std::size_t actual = std::min({size, content.size(), mReadLimit});
  std::copy_n(content.begin(), actual, memory->begin());
  return {Step::Read, status, actual};
}

OSStatus FakeFiles::record(Operation operation, const std::string& call) {
  mCalls.push_back(call);
  return failureOf(operation);
}

OSStatus FakeFiles::failureOf(Operation operation) const {
  const auto failure = mFailures.find(operation);
  return failure == mFailures.end() ? noErr : failure->second;
}

OSStatus FakeFiles::findEntry(const path& entry) const {
  return mFiles.contains(entry) || mDirectories.contains(entry) ? noErr : ENOENT;
}
