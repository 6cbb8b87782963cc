#include "platform/posix/PosixSystemLog.h"

#include <syslog.h>

#include "platform/posix/StandardErrorLine.h"

namespace platform {
namespace {

static_assert(SystemLog::kMirrorToStandardError == LOG_PERROR);
static_assert(SystemLog::kUserFacility == LOG_USER);

// Mirrors entries by itself: the host would write their bytes as they are. The log's own entries
// need no such care, since each is a datagram of its own.
class PosixSystemLog : public SystemLog {
 public:
  void open(const char* identity, int options, int facility) override {
    mMirrorsAs = (options & kMirrorToStandardError) != 0 ? identity : nullptr;
    ::openlog(identity, options & ~kMirrorToStandardError, facility);
  }

  void write(int priority, const char* text) override {
    if (mMirrorsAs != nullptr) mirror(text);
    ::syslog(priority, "%s", text);
  }

  void close() override {
    mMirrorsAs = nullptr;
    ::closelog();
  }

 private:
  void mirror(const char* text) const {
    StandardErrorLine line;
    line.add(mMirrorsAs);
    line.add(": ");
    line.add(text);
  }

  const char* mMirrorsAs = nullptr;  // the identity; null when entries are not mirrored
};

}  // namespace

std::unique_ptr<SystemLog> makePosixSystemLog() { return std::make_unique<PosixSystemLog>(); }

}  // namespace platform
