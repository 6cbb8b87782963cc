#include "platform/qt/QtStrings.h"

#include <QCoreApplication>
#include <string>

#include "platform/qt/QtText.h"

namespace platform {
namespace {

class QtStrings final : public LocalizedStrings {
 public:
  Text localizedString(const Text& key) const override {
    if (key.isNull()) return key;
    const std::string source(key.utf8());
    return toText(QCoreApplication::translate("Localizable", source.c_str()));
  }
};

}  // namespace

std::unique_ptr<LocalizedStrings> makeQtStrings() { return std::make_unique<QtStrings>(); }

}  // namespace platform
