// Translations as a test defines them. Every key that is asked for is recorded, in order.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/Bundle.h"

class FakeLocalizedStrings : public platform::LocalizedStrings {
 public:
  void define(const std::string& key, const std::string& translation) {
    mTranslations[key] = translation;
  }

  platform::Text localizedString(const platform::Text& key) const override {
    mAskedFor.emplace_back(key.utf8());
    const auto found = mTranslations.find(mAskedFor.back());
    return found == mTranslations.end() ? key : platform::Text::fromUtf8(found->second);
  }

  const std::vector<std::string>& askedFor() const { return mAskedFor; }
  void forgetAskedFor() { mAskedFor.clear(); }

 private:
  std::map<std::string, std::string> mTranslations;
  mutable std::vector<std::string> mAskedFor;
};
