// Files in memory. Every call is recorded as a line of text, in order: "dataSize /res/a.bin",
// "readWhole /res/a.bin 4096". An operation, or a step of one, that a test makes fail answers its
// status and does nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/Files.h"

class FakeFiles : public platform::Files {
 public:
  enum class Operation { CheckDirectory, MakeReference, DataSize, DataFork, Open, Read };

  void addDirectory(const std::filesystem::path& directory);
  void addFile(const std::filesystem::path& file, std::string bytes);

  // What dataSize() says from now on, whatever the file holds.
  void pretendSize(const std::filesystem::path& file, std::uint64_t size);

  void fail(Operation operation, platform::OSStatus status) { mFailures[operation] = status; }

  // Reads give this many bytes at most; a read that is made to fail gives as many before it does.
  void limitReads(std::size_t bytes) { mReadLimit = bytes; }

  const std::vector<std::string>& calls() const { return mCalls; }

  // Where the last file's bytes were put.
  const char* destination() const { return mDestination; }

  platform::OSStatus checkDirectory(const std::filesystem::path& directory) override;
  platform::OSStatus makeReference(const std::filesystem::path& directory,
                                   const std::u16string& name,
                                   std::filesystem::path& file) override;
  platform::OSStatus dataSize(const std::filesystem::path& file, std::uint64_t& size) override;
  platform::WholeRead readWhole(const std::filesystem::path& file, std::size_t size,
                                platform::FileBytes& bytes) override;

 private:
  platform::OSStatus record(Operation operation, const std::string& call);
  platform::OSStatus failureOf(Operation operation) const;
  platform::OSStatus findEntry(const std::filesystem::path& entry) const;

  std::set<std::filesystem::path> mDirectories;
  std::map<std::filesystem::path, std::string> mFiles;
  std::map<std::filesystem::path, std::uint64_t> mPretendedSizes;
  std::map<Operation, platform::OSStatus> mFailures;
  std::size_t mReadLimit = SIZE_MAX;
  std::vector<std::string> mCalls;
  const char* mDestination = nullptr;
};
