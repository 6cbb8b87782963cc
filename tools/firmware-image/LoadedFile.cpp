#include "LoadedFile.h"

#include <filesystem>
#include <memory>
#include <stdexcept>

#include "FirmwareLoader.h"
#include "Log.h"
#include "platform/Platform.h"
#include "platform/SystemLog.h"
#include "platform/Text.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/PosixStatusTable.h"

namespace {

// Keeps the errors and forgets the rest.
class ErrorLog : public platform::SystemLog {
 public:
  void open(const char*, int, int) override {}
  void write(int priority, const char* text) override {
    if (priority == kPriorityError) mErrors.push_back(text);
  }
  void close() override {}

  const std::vector<std::string>& errors() const { return mErrors; }

 private:
  std::vector<std::string> mErrors;
};

}  // namespace

LoadedFile loadAsTheUpdater(const std::string& path) {
  const std::unique_ptr<platform::Files> files = platform::makePosixFiles();
  const std::unique_ptr<platform::StatusTable> statuses = platform::makePosixStatusTable();
  ErrorLog log;
  const platform::PlatformScope scope(
      {.statuses = statuses.get(), .systemLog = &log, .files = files.get()});

  const std::filesystem::path file = path;
  const platform::Text name = platform::Text::fromUtf8(file.filename().native());
  LoadedFile loaded;
  if (!loadFirmwareFile(file.parent_path(), name.wide(), loaded.image, loaded.version)) {
    std::string reason;
    for (const std::string& error : log.errors()) reason += " " + error;
    throw std::runtime_error("the updater cannot load \"" + path + "\":" + reason);
  }
  files->dataSize(file, loaded.size);
  loaded.problems = log.errors();
  return loaded;
}
