#include "FakeStatusTable.h"

#include <utility>

void FakeStatusTable::define(platform::OSStatus status, std::string name, std::string description) {
  mTexts[status] = {std::move(name), std::move(description)};
}

std::string FakeStatusTable::name(platform::OSStatus status) const {
  const auto found = mTexts.find(status);
  return found == mTexts.end() ? std::string() : found->second.name;
}

std::string FakeStatusTable::description(platform::OSStatus status) const {
  const auto found = mTexts.find(status);
  return found == mTexts.end() ? std::string() : found->second.description;
}
