// The questions of a responder as objects of the daemon's: what is asked in which call, and what is
// read from which signal. Null when a question is refused at once.
#pragma once

#include <memory>
#include <string>

#include "platform/avahi/DaemonObjects.h"
#include "platform/avahi/Responder.h"

namespace platform {

std::unique_ptr<Responder::Query> browseByDaemon(DaemonObjects& objects, const std::string& type,
                                                 const std::string& domain,
                                                 BrowseListener& listener);

std::unique_ptr<Responder::Query> browseDomainsByDaemon(DaemonObjects& objects,
                                                        DomainListener& listener);

std::unique_ptr<Responder::Query> resolveByDaemon(DaemonObjects& objects,
                                                  const ServiceName& service,
                                                  const Question& question,
                                                  Responder::ResolveCallback callback);

}  // namespace platform
