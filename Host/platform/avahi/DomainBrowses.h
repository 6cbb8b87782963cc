// A search for services of one type in the responder's default domain and in every other domain
// that it names, or in one given domain. Only the default domain, or the given one, can fail, and
// says when it has told of everything for now; the others come and go. Anybody on the network can
// name domains, so only some are browsed.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/avahi/Responder.h"

namespace platform {

class DomainBrowses : private DomainListener {
 public:
  // An empty domain means all of them. The responder and the listener must live longer.
  DomainBrowses(Responder& responder, std::string type, const std::string& domain,
                BrowseListener& listener);
  ~DomainBrowses() override;
  DomainBrowses(const DomainBrowses&) = delete;
  DomainBrowses& operator=(const DomainBrowses&) = delete;

  bool started() const { return mFirst != nullptr; }

 private:
  class Other;

  void domainAppeared(const std::string& domain) override;
  void domainDisappeared(const std::string& domain) override;

  Responder& mResponder;
  const std::string mType;
  BrowseListener& mListener;
  std::unique_ptr<Responder::Query> mFirst;
  std::map<std::string, std::unique_ptr<Other>> mOthers;
  std::unique_ptr<Responder::Query> mDomains;
};

}  // namespace platform
