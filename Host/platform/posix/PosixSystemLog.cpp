#include "platform/posix/PosixSystemLog.h"

#include <syslog.h>

#include <cerrno>

#include "platform/posix/LogDaemon.h"
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
    mIdentity = identity;
    mFacility = facility;
    mMirrors = (options & kMirrorToStandardError) != 0;
  }

  void write(int priority, const char* text) override {
    if (mMirrors) mirror(text);
    mDaemon.send(mFacility | priority, mIdentity, text);
  }

  void close() override {
    mIdentity = program_invocation_short_name;
    mFacility = kUserFacility;
    mMirrors = false;
    mDaemon.disconnect();
  }

 private:
  void mirror(const char* text) const {
    StandardErrorLine line;
    line.add(mIdentity);
    line.add(": ");
    line.add(text);
  }

  LogDaemon mDaemon;
  const char* mIdentity = program_invocation_short_name;
  int mFacility = kUserFacility;
  bool mMirrors = false;
};

}  // namespace

std::unique_ptr<SystemLog> makePosixSystemLog() { return std::make_unique<PosixSystemLog>(); }

}  // namespace platform
