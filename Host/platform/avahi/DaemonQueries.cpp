#include "platform/avahi/DaemonQueries.h"

#include <avahi-common/address.h>
#include <avahi-common/defs.h>
#include <avahi-common/strlst.h>

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/avahi/Conversions.h"

namespace platform {
namespace {

class DaemonQuery : public Responder::Query, public DaemonObjects::Client {
 public:
  bool started() const { return mObject != nullptr; }

 protected:
  // The values follow as the bus library wants them: pairs of type and address.
  template <typename... Arguments>
  void ask(DaemonObjects& objects, const char* kind, Arguments... arguments) {
    const BusMessage call = objects.newCall((std::string(kind) + "New").c_str());
    if (call == nullptr || !dbus_message_append_args(call.get(), arguments..., DBUS_TYPE_INVALID)) {
      return;
    }
    mObject = objects.create(call, std::string("org.freedesktop.Avahi.") + kind, *this);
  }

 private:
  std::unique_ptr<DaemonObjects::Object> mObject;
};

std::string_view memberOf(DBusMessage* signal) { return dbus_message_get_member(signal); }

constexpr std::int32_t kEveryInterface = AVAHI_IF_UNSPEC;
constexpr std::int32_t kEveryProtocol = AVAHI_PROTO_UNSPEC;
constexpr std::uint32_t kNoFlags = 0;
constexpr std::uint32_t kNoTxt = AVAHI_LOOKUP_NO_TXT;

class BrowseQuery final : public DaemonQuery {
 public:
  BrowseQuery(DaemonObjects& objects, const std::string& type, const std::string& domain,
              BrowseListener& listener)
      : mListener(listener) {
    const char* const typeText = type.c_str();
    const char* const domainText = domain.c_str();
    ask(objects, "ServiceBrowser", DBUS_TYPE_INT32, &kEveryInterface, DBUS_TYPE_INT32,
        &kEveryProtocol, DBUS_TYPE_STRING, &typeText, DBUS_TYPE_STRING, &domainText,
        DBUS_TYPE_UINT32, &kNoFlags);
  }

  void accepted() override {}
  void refused() override { mListener.browsingFailed(); }

  void signalled(DBusMessage* signal) override {
    const std::string_view member = memberOf(signal);
    if (member == "AllForNow") return mListener.allForNow();
    if (member == "Failure") return mListener.browsingFailed();
    if (member != "ItemNew" && member != "ItemRemove") return;
    std::int32_t interface = 0;
    std::int32_t protocol = 0;
    const char* name = nullptr;
    const char* type = nullptr;
    const char* domain = nullptr;
    if (!dbus_message_get_args(signal, nullptr, DBUS_TYPE_INT32, &interface, DBUS_TYPE_INT32,
                               &protocol, DBUS_TYPE_STRING, &name, DBUS_TYPE_STRING, &type,
                               DBUS_TYPE_STRING, &domain, DBUS_TYPE_INVALID)) {
      return;
    }
    const ServiceName service{name, type, domain};
    const Place place{interface, protocol};
    if (member == "ItemNew") {
      mListener.appeared(service, place);
    } else {
      mListener.disappeared(service, place);
    }
  }

 private:
  BrowseListener& mListener;
};

class DomainQuery final : public DaemonQuery {
 public:
  DomainQuery(DaemonObjects& objects, DomainListener& listener) : mListener(listener) {
    const char* const ofTheHost = "";
    constexpr std::int32_t kKind = AVAHI_DOMAIN_BROWSER_BROWSE;
    ask(objects, "DomainBrowser", DBUS_TYPE_INT32, &kEveryInterface, DBUS_TYPE_INT32,
        &kEveryProtocol, DBUS_TYPE_STRING, &ofTheHost, DBUS_TYPE_INT32, &kKind, DBUS_TYPE_UINT32,
        &kNoFlags);
  }

  void accepted() override {}
  void refused() override {}

  void signalled(DBusMessage* signal) override {
    std::int32_t interface = 0;
    std::int32_t protocol = 0;
    const char* domain = nullptr;
    if (!dbus_message_get_args(signal, nullptr, DBUS_TYPE_INT32, &interface, DBUS_TYPE_INT32,
                               &protocol, DBUS_TYPE_STRING, &domain, DBUS_TYPE_INVALID)) {
      return;
    }
    if (memberOf(signal) == "ItemNew") mListener.domainAppeared(domain);
    if (memberOf(signal) == "ItemRemove") mListener.domainDisappeared(domain);
  }

 private:
  DomainListener& mListener;
};

// Interface, protocol, name, type, domain, host, address family, address, port, TXT record, flags.
constexpr char kFoundSignature[] = "iissssisqaayu";

// The daemon sends the strings in the order of its own list, which is the reverse.
Data txtOf(DBusMessage* found) {
  DBusMessageIter argument;
  dbus_message_iter_init(found, &argument);
  while (dbus_message_iter_get_arg_type(&argument) != DBUS_TYPE_ARRAY) {
    dbus_message_iter_next(&argument);
  }
  std::vector<std::string_view> reversed;
  DBusMessageIter strings;
  for (dbus_message_iter_recurse(&argument, &strings);
       dbus_message_iter_get_arg_type(&strings) == DBUS_TYPE_ARRAY;
       dbus_message_iter_next(&strings)) {
    DBusMessageIter bytes;
    dbus_message_iter_recurse(&strings, &bytes);
    const char* text = nullptr;
    int size = 0;
    dbus_message_iter_get_fixed_array(&bytes, &text, &size);
    reversed.emplace_back(text, static_cast<std::size_t>(size));
  }
  // A list grows at its beginning.
  AvahiStringList* list = nullptr;
  for (auto text = reversed.rbegin(); text != reversed.rend(); ++text) {
    list = avahi_string_list_add_arbitrary(
        list, reinterpret_cast<const std::uint8_t*>(text->data()), text->size());
  }
  Data txt = txtRecord(list);
  avahi_string_list_free(list);
  return txt;
}

class ResolveQuery final : public DaemonQuery {
 public:
  ResolveQuery(DaemonObjects& objects, const ServiceName& service, const Question& question,
               Responder::ResolveCallback callback)
      : mWantsTxt(question.wantsTxt), mCallback(std::move(callback)) {
    const std::int32_t interface = question.place.interface;
    const std::int32_t protocol = question.place.protocol;
    const std::int32_t family = question.addressFamily;
    const std::uint32_t flags = mWantsTxt ? kNoFlags : kNoTxt;
    const char* const name = service.name.c_str();
    const char* const type = service.type.c_str();
    const char* const domain = service.domain.c_str();
    ask(objects, "ServiceResolver", DBUS_TYPE_INT32, &interface, DBUS_TYPE_INT32, &protocol,
        DBUS_TYPE_STRING, &name, DBUS_TYPE_STRING, &type, DBUS_TYPE_STRING, &domain,
        DBUS_TYPE_INT32, &family, DBUS_TYPE_UINT32, &flags);
  }

  void accepted() override { mCallback(Responder::News::Accepted, {}); }
  void refused() override { tell(Responder::News::Refused, {}); }

  void signalled(DBusMessage* signal) override {
    const std::string_view member = memberOf(signal);
    if (member == "Found" && dbus_message_has_signature(signal, kFoundSignature))
      return read(signal);
    if (member == "Failure") tell(Responder::News::Refused, {});
  }

 private:
  void read(DBusMessage* found) {
    std::int32_t interface = 0;
    std::int32_t number = 0;
    const char* word = nullptr;
    const char* text = nullptr;
    std::uint16_t port = 0;
    AvahiAddress address{};
    dbus_message_get_args(found, nullptr, DBUS_TYPE_INT32, &interface, DBUS_TYPE_INT32, &number,
                          DBUS_TYPE_STRING, &word, DBUS_TYPE_STRING, &word, DBUS_TYPE_STRING, &word,
                          DBUS_TYPE_STRING, &word, DBUS_TYPE_INT32, &number, DBUS_TYPE_STRING,
                          &text, DBUS_TYPE_UINT16, &port, DBUS_TYPE_INVALID);
    // The library takes another family for a mistake, and ends the program.
    if (!AVAHI_PROTO_VALID(number) || avahi_address_parse(text, number, &address) == nullptr) {
      return tell(Responder::News::Refused, {});
    }
    tell(Responder::News::Answered,
         {addressRecord(address, port, interface), mWantsTxt ? txtOf(found) : nullptr});
  }

  // Only the first answer counts.
  void tell(Responder::News news, const Resolved& resolved) {
    if (!std::exchange(mTold, true)) mCallback(news, resolved);
  }

  const bool mWantsTxt;
  const Responder::ResolveCallback mCallback;
  bool mTold = false;
};

template <typename Query, typename... Arguments>
std::unique_ptr<Responder::Query> started(Arguments&&... arguments) {
  auto query = std::make_unique<Query>(std::forward<Arguments>(arguments)...);
  return query->started() ? std::move(query) : nullptr;
}

}  // namespace

std::unique_ptr<Responder::Query> browseByDaemon(DaemonObjects& objects, const std::string& type,
                                                 const std::string& domain,
                                                 BrowseListener& listener) {
  return started<BrowseQuery>(objects, type, domain, listener);
}

std::unique_ptr<Responder::Query> browseDomainsByDaemon(DaemonObjects& objects,
                                                        DomainListener& listener) {
  return started<DomainQuery>(objects, listener);
}

std::unique_ptr<Responder::Query> resolveByDaemon(DaemonObjects& objects,
                                                  const ServiceName& service,
                                                  const Question& question,
                                                  Responder::ResolveCallback callback) {
  return started<ResolveQuery>(objects, service, question, std::move(callback));
}

}  // namespace platform
