#include "EngineUpdate.h"

#include <stdexcept>
#include <string>

namespace bench {

EngineUpdate::EngineUpdate(const std::filesystem::path& resources) {
  mBundle.setResourcesDirectory(resources);
}

void EngineUpdate::run(std::uint16_t port) {
  startDownload(port);
  const bool ended = runUntil([this] { return hasOutcome(); });
  if (!ended || mEvents.calls().back() != "command DlOk") {
    const std::string last = mLog.entries().empty() ? "" : mLog.entries().back().text;
    throw std::runtime_error("the update failed: " + last);
  }
}

}  // namespace bench
