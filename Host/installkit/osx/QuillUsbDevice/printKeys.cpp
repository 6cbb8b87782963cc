#include "printKeys.h"

#include <cstdint>
#include <limits>
#include <ostream>
#include <string>

#include "platform/Platform.h"
#include "registryText.h"

namespace {

void indentLine(std::ostream& os, int indent) {
  os.width(indent);
  os << "";
}

// Writes a value behind its key, without the line end.
class ValuePrinter {
 public:
  explicit ValuePrinter(const PrintKeyContext& context)
      : mStream(*context.stream), mIndent(context.indent) {}

  void operator()(std::monostate) { mStream << "<null value>"; }

  void operator()(const platform::Text& text) {
    if (text.isNull()) {
      mStream << "<null value>";
    } else {
      mStream << registryText(text);
    }
  }

  // Fetched as a signed number of 32 bits, written as an unsigned one. The fields of a descriptor
  // have 16 bits and no sign that could be extended.
  void operator()(const platform::PropertyNumber& number) {
    if (number.width == sizeof(std::uint16_t)) {
      mStream << static_cast<std::uint16_t>(number.value);
    } else if (number.value < std::numeric_limits<std::int32_t>::min() ||
               number.value > std::numeric_limits<std::int32_t>::max()) {
      mStream << "<unknown number>";
    } else {
      mStream << static_cast<std::uint32_t>(number.value);
    }
  }

  void operator()(bool value) { mStream << (value ? "true" : "false"); }

  void operator()(const std::shared_ptr<const platform::PropertyDictionary>& dictionary) {
    mStream << "Dictionary:\n";
    indentLine(mStream, mIndent);
    mStream << "{\n";
    const PrintKeyContext inner{mIndent + 2, &mStream};
    for (const auto& [key, value] : dictionary->entries) printKey(key, value, &inner);
    indentLine(mStream, mIndent);
    mStream << "}";
  }

  void operator()(const platform::UntranslatedProperty& value) {
    mStream << "<Untranslated type: " << value.type.utf8() << ">";
  }

 private:
  std::ostream& mStream;
  int mIndent;
};

}  // namespace

void printKey(const platform::PropertyValue& key, const platform::PropertyValue& value,
              const PrintKeyContext* context) {
  if (context == nullptr) return;
  std::ostream& os = *context->stream;
  indentLine(os, context->indent);

  const platform::Text* keyText = std::get_if<platform::Text>(&key);
  const std::string name = keyText == nullptr ? std::string() : registryText(*keyText);
  os << (name.empty() ? "<unknown key>" : name) << " -> ";
  std::visit(ValuePrinter(*context), value);
  os << "\n";
}

void printKeys(std::ostream& os, platform::io_registry_entry_t entry, const char* kind,
               const char* name) {
  platform::PropertyDictionary dictionary;
  if (platform::current().usb->properties(entry, dictionary) != platform::kIOReturnSuccess) return;

  os << "  IORegistry property dictionary for " << kind;
  if (name != nullptr) os << " " << name;
  os << ":\n";
  const PrintKeyContext context{4, &os};
  for (const auto& [key, value] : dictionary.entries) printKey(key, value, &context);
}
