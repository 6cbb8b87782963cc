#include "platform/avahi/DomainBrowses.h"

#include <avahi-common/domain.h>

#include <cstddef>
#include <set>
#include <utility>

namespace platform {
namespace {

constexpr std::size_t kMostOthers = 16;

}  // namespace

// A domain that goes takes its services along.
class DomainBrowses::Other : private BrowseListener {
 public:
  Other(Responder& responder, const std::string& type, const std::string& domain,
        BrowseListener& listener)
      : mListener(listener), mQuery(responder.browse(type, domain, *this)) {}
  ~Other() override = default;
  Other(const Other&) = delete;
  Other& operator=(const Other&) = delete;

  void end() {
    mQuery.reset();
    for (const auto& [service, place] : mAnnounced) mListener.disappeared(service, place);
  }

  int named = 0;  // in so many places

 private:
  void appeared(const ServiceName& service, Place place) override {
    mAnnounced.emplace(service, place);
    mListener.appeared(service, place);
  }
  void disappeared(const ServiceName& service, Place place) override {
    mAnnounced.erase({service, place});
    mListener.disappeared(service, place);
  }
  void allForNow() override {}
  void browsingFailed() override {}

  BrowseListener& mListener;
  std::set<std::pair<ServiceName, Place>> mAnnounced;
  std::unique_ptr<Responder::Query> mQuery;
};

DomainBrowses::DomainBrowses(Responder& responder, std::string type, const std::string& domain,
                             BrowseListener& listener)
    : mResponder(responder), mType(std::move(type)), mListener(listener) {
  mFirst = mResponder.browse(mType, domain.empty() ? mResponder.defaultDomain() : domain, listener);
  if (domain.empty()) mDomains = mResponder.browseDomains(*this);
}

DomainBrowses::~DomainBrowses() = default;

void DomainBrowses::domainAppeared(const std::string& domain) {
  if (avahi_is_valid_domain_name(domain.c_str()) == 0) return;
  if (avahi_domain_equal(domain.c_str(), mResponder.defaultDomain().c_str()) != 0) return;
  auto other = mOthers.find(domain);
  if (other == mOthers.end()) {
    if (mOthers.size() == kMostOthers) return;
    auto browse = std::make_unique<Other>(mResponder, mType, domain, mListener);
    other = mOthers.emplace(domain, std::move(browse)).first;
  }
  ++other->second->named;
}

void DomainBrowses::domainDisappeared(const std::string& domain) {
  const auto other = mOthers.find(domain);
  if (other == mOthers.end() || --other->second->named > 0) return;
  other->second->end();
  mOthers.erase(other);
}

}  // namespace platform
