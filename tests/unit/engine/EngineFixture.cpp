#include "EngineFixture.h"

EngineFixture::EngineFixture() : mLog(surfaces()) { mFiles.addDirectory("/resources"); }

platform::Platform EngineFixture::surfaces() {
  platform::Platform platform;
  platform.events = &mEvents;
  platform.files = &mFiles;
  platform.bundle = &mBundle;
  platform.network = &mNetwork;
  return platform;
}

void EngineFixture::installFirmware(const std::string& image) {
  mFiles.addFile("/resources/product.brand.bin", image);
}
