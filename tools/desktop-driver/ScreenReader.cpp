#include "ScreenReader.h"

#include <atspi/atspi.h>

#include <array>
#include <stdexcept>

#include "Node.h"

namespace desktop {
namespace {

constexpr std::array kEvents{"object:state-changed:showing",
                             "object:property-change:accessible-value",
                             "object:property-change:accessible-description"};

void hearWhatHasCome() {
  while (g_main_context_iteration(nullptr, FALSE)) {
  }
}

}  // namespace

struct ScreenReader::Heard {
  static void note(AtspiEvent* event, void* heard) {
    auto& self = *static_cast<Heard*>(heard);
    const std::string type = event->type;
    g_object_ref(event->source);
    const Node source({event->source, g_object_unref});
    if (type.starts_with("object:property-change")) {
      std::size_t& changes = type.ends_with("value") ? self.mValues : self.mDescriptions;
      changes += source.role() == "progress bar" ? 1 : 0;
    } else if (event->detail1 == 1 && source.role() == "alert") {
      self.mAlerts.push_back(source.name());
    }
    g_boxed_free(ATSPI_TYPE_EVENT, event);
  }

  AtspiEventListener* mListener = atspi_event_listener_new(&Heard::note, this, nullptr);
  std::vector<std::string> mAlerts;
  std::size_t mValues = 0;
  std::size_t mDescriptions = 0;
};

ScreenReader::ScreenReader() : mHeard(std::make_unique<Heard>()) {
  for (const char* event : kEvents) {
    if (!atspi_event_listener_register(mHeard->mListener, event, nullptr)) {
      throw std::runtime_error(std::string("cannot hear ") + event);
    }
  }
}

ScreenReader::~ScreenReader() {
  for (const char* event : kEvents) {
    atspi_event_listener_deregister(mHeard->mListener, event, nullptr);
  }
  g_object_unref(mHeard->mListener);
}

const std::vector<std::string>& ScreenReader::alerts() {
  hearWhatHasCome();
  return mHeard->mAlerts;
}

std::size_t ScreenReader::values() {
  hearWhatHasCome();
  return mHeard->mValues;
}

std::size_t ScreenReader::descriptions() {
  hearWhatHasCome();
  return mHeard->mDescriptions;
}

}  // namespace desktop
