#include "platform/posix/PosixSystemLog.h"

#include <syslog.h>

namespace platform {
namespace {

static_assert(SystemLog::kMirrorToStandardError == LOG_PERROR);
static_assert(SystemLog::kUserFacility == LOG_USER);

class PosixSystemLog : public SystemLog {
 public:
  void open(const char* identity, int options, int facility) override {
    ::openlog(identity, options, facility);
  }

  void write(int priority, const char* text) override { ::syslog(priority, "%s", text); }

  void close() override { ::closelog(); }
};

}  // namespace

std::unique_ptr<SystemLog> makePosixSystemLog() { return std::make_unique<PosixSystemLog>(); }

}  // namespace platform
