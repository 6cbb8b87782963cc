#include "platform/Platform.h"

namespace platform {
namespace {

Platform& installedPlatform() noexcept {
  static Platform platform;
  return platform;
}

}  // namespace

const Platform& current() noexcept { return installedPlatform(); }

PlatformScope::PlatformScope(const Platform& installed) noexcept : mPrevious(installedPlatform()) {
  installedPlatform() = installed;
}

PlatformScope::~PlatformScope() { installedPlatform() = mPrevious; }

}  // namespace platform
