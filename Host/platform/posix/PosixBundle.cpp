#include "platform/posix/PosixBundle.h"

#include <sys/auxv.h>

#include <system_error>
#include <utility>

namespace platform {
namespace {

using std::filesystem::path;

class PosixBundle : public Bundle {
 public:
  explicit PosixBundle(path executable) : mExecutable(std::move(executable)) {}

  bool exists() const override { return mExecutable.has_filename(); }

  std::optional<path> resourcesDirectory() const override {
    const path directory = mExecutable.parent_path();
    const path share = directory.parent_path() / "share";
    std::error_code ignored;
    if (directory.filename() != "bin" || !std::filesystem::is_directory(share, ignored)) {
      return std::nullopt;
    }
    return share / "fwupdate";
  }

  Text executableName() const override {
    if (!exists()) return Text();
    return Text::fromUtf8(mExecutable.filename().native());
  }

 private:
  const path mExecutable;
};

}  // namespace

// The kernel tells a program by which file it was started also where /proc may not be read.
std::unique_ptr<Bundle> makePosixBundle() {
  std::error_code ignored;
  // NOLINTNEXTLINE(performance-no-int-to-ptr): as the call has it
  const auto* const file = reinterpret_cast<const char*>(getauxval(AT_EXECFN));
  return makePosixBundle(std::filesystem::canonical(file, ignored));
}

std::unique_ptr<Bundle> makePosixBundle(path executable) {
  return std::make_unique<PosixBundle>(std::move(executable));
}

}  // namespace platform
