// A bundle that is what a test makes of it: at first an installed program whose resources stand in
// "/resources".
#pragma once

#include <utility>

#include "platform/Bundle.h"

class FakeBundle : public platform::Bundle {
 public:
  void remove() { mExists = false; }
  void bringBack() { mExists = true; }
  void setResourcesDirectory(std::optional<std::filesystem::path> directory) {
    mResources = std::move(directory);
  }
  void setExecutableName(platform::Text name) { mName = std::move(name); }

  bool exists() const override { return mExists; }
  std::optional<std::filesystem::path> resourcesDirectory() const override { return mResources; }
  platform::Text executableName() const override { return mName; }

 private:
  bool mExists = true;
  std::optional<std::filesystem::path> mResources = "/resources";
  platform::Text mName = platform::Text::fromUtf8("fwupdate");
};
