// Names and descriptions as a test defines them; both empty for any other status.
#pragma once

#include <map>
#include <string>

#include "platform/Status.h"

class FakeStatusTable : public platform::StatusTable {
 public:
  void define(platform::OSStatus status, std::string name, std::string description);

  std::string name(platform::OSStatus status) const override;
  std::string description(platform::OSStatus status) const override;

 private:
  struct Texts {
    std::string name;
    std::string description;
  };

  std::map<platform::OSStatus, Texts> mTexts;
};
