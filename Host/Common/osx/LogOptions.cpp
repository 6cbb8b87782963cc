#include "LogOptions.h"

#include <algorithm>
#include <span>

#include "platform/Assertion.h"
#include "platform/Bundle.h"
#include "platform/Platform.h"
#include "platform/SystemLog.h"

using platform::SystemLog;

LogOptions::LogOptions(bool mirror) {
  constexpr std::size_t maximum = 32;
  static char identity[maximum + 1];

  const platform::Bundle* const bundle = platform::current().bundle;
  if (bundle == nullptr || !bundle->exists()) return;
  const platform::Text name = bundle->executableName();
  if (name.isNull()) return;

  const std::size_t units = std::min(name.length(), maximum);
  const std::size_t used = name.copyUtf8(units, std::span(identity, maximum)).bytes;
  platform::assertAt(used <= sizeof identity, "static_cast<size_t>(usedBufLen) <= sizeof buffer",
                     "LogOptions", "Host/Common/osx/Log", 165);
  identity[used] = '\0';
  platform::current().systemLog->open(identity, mirror ? SystemLog::kMirrorToStandardError : 0,
                                      SystemLog::kUserFacility);
}

LogOptions::LogOptions(const std::string& identity, int options) {
  static const std::string sIdentity = identity;
  platform::current().systemLog->open(sIdentity.c_str(), options, SystemLog::kUserFacility);
}

LogOptions::~LogOptions() { platform::current().systemLog->close(); }
