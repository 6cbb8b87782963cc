#include "Announcement.h"

#include <avahi-common/alternative.h>
#include <avahi-common/malloc.h>
#include <avahi-common/strlst.h>

namespace virtualprinter {

StringList txtList(const Announcement& announcement) {
  AvahiStringList* list = nullptr;
  // The list grows at its front.
  for (auto it = announcement.txt.rbegin(); it != announcement.txt.rend(); ++it) {
    const auto& [key, value] = *it;
    if (value) {
      const auto* bytes = reinterpret_cast<const std::uint8_t*>(value->data());
      list = avahi_string_list_add_pair_arbitrary(list, key.c_str(), bytes, value->size());
    } else {
      list = avahi_string_list_add(list, key.c_str());
    }
  }
  return {list, avahi_string_list_free};
}

void tellAnnounced(Journal& journal, const Announcement& announcement, const char* through) {
  journal.write("announced", {{"name", announcement.name},
                              {"type", announcement.type},
                              {"port", announcement.port},
                              {"through", through}});
}

std::string alternativeName(const std::string& name) {
  char* alternative = avahi_alternative_service_name(name.c_str());
  if (alternative == nullptr) return name + " #2";
  std::string text = alternative;
  avahi_free(alternative);
  return text;
}

}  // namespace virtualprinter
