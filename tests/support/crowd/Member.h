// One service of the crowd: a printer with a host name and addresses of its own, and how it
// behaves. Numbers start at 1. The printers of our make come first and are called "Printer 0001"
// and so on, those of other makes "Other 0042".
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "DnsMessage.h"

namespace crowd {

// The loop's clock, whatever it starts from.
using Time = std::chrono::milliseconds;

// A set of a member's five records, in the order in which they are sent.
enum Records : unsigned {
  kPointer = 1,
  kLocation = 2,
  kText = 4,
  kIPv4Address = 8,
  kIPv6Address = 16,
  kAddresses = kIPv4Address | kIPv6Address,
  kDetails = kLocation | kText | kAddresses,
  kAllRecords = kPointer | kDetails,
};
constexpr std::size_t kRecordCount = 5;

dns::Name serviceType();

class Member {
 public:
  Member(unsigned number, bool ours);

  unsigned number() const { return mNumber; }
  const std::string& name() const { return mName; }
  dns::Name instance() const;

  // A member that is two machines has another host on each link.
  dns::Name host(std::size_t link) const;

  // `which` is one of the records. There is none for a text that the member lacks. `anotherHost` is
  // what a member tells that names a wrong one.
  std::optional<dns::Record> record(Records which, std::size_t link,
                                    const dns::Name& anotherHost) const;

  bool present = true;
  bool silent = false;                       // tells its name, and nothing else
  std::optional<std::chrono::seconds> late;  // after the first question, it tells the rest
  bool namesAnotherHost = false;
  bool movesWhenAsked = false;  // has another address in each answer
  bool hasText = true;
  bool hasLongText = false;  // of 8 KiB
  bool isTwo = false;
  std::chrono::milliseconds flapsEvery{0};  // comes or goes

  std::optional<Time> tellsFrom;  // once a late one has been asked
  unsigned moves = 0;

 private:
  dns::Bytes text() const;
  dns::Bytes address(Records family, std::size_t link) const;

  unsigned mNumber;
  bool mOurs;
  std::string mName;
};

}  // namespace crowd
