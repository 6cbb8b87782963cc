// What the printer announces about itself by DNS-SD, and the two ways to announce it: through the
// host's Avahi daemon, or by a responder of our own where there is none. Both are attachments: they
// announce on arrival and say goodbye on leaving. The journal says when an announcement stands.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Attachment.h"
#include "EventLoop.h"
#include "Journal.h"

struct AvahiStringList;

namespace virtualprinter {

struct Announcement {
  std::string name;
  std::string type = "_pdl-datastream._tcp";
  std::uint16_t port = 0;
  // Key and value, in the order of the TXT record. A value is bytes, or there is none.
  std::vector<std::pair<std::string, std::optional<std::string>>> txt;
  std::string hostName;  // of the responder of our own; the daemon has its host's
};

// How a responder of our own goes about it: as a printer does, unless told otherwise.
struct ResponderManners {
  std::string domain = "local";  // another one is announced, too, as one to browse
  bool probes = true;            // asks first whether its names are free, which takes a second
  bool speaksIPv4 = true;
  bool speaksIPv6 = true;
  // Which addresses of this machine it tells. Without any it cannot be resolved.
  bool tellsIPv4 = true;
  bool tellsIPv6 = false;  // the printer does not listen there
};

// Null when there is no daemon to talk to. A daemon that goes away later is waited for.
std::unique_ptr<Attachment> makeDaemonAnnouncer(const Announcement& announcement, EventLoop& loop,
                                                Journal& journal);

// Arriving throws std::runtime_error when the responder cannot be started.
std::unique_ptr<Attachment> makeInProcessAnnouncer(const Announcement& announcement,
                                                   EventLoop& loop, Journal& journal,
                                                   const ResponderManners& manners = {});

// For the two of them. --------------------------------------------------------------------------

using StringList = std::unique_ptr<AvahiStringList, void (*)(AvahiStringList*)>;

StringList txtList(const Announcement& announcement);

// That the announcement stands, and through which responder.
void tellAnnounced(Journal& journal, const Announcement& announcement, const char* through);

// The name to try when somebody else on the network has this one.
std::string alternativeName(const std::string& name);

}  // namespace virtualprinter
