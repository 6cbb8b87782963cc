#include "endOfSearch.h"

#include <algorithm>

namespace {

constexpr std::chrono::minutes kLongest{1};

}  // namespace

std::chrono::milliseconds endOfSearch(std::chrono::milliseconds wait,
                                      std::chrono::milliseconds lastArrival) {
  return std::min(wait + 2 * lastArrival, std::max<std::chrono::milliseconds>(wait, kLongest));
}

std::string noteOnSearch(platform::DiscoveryStatus::Searcher searcher) {
  if (searcher != platform::DiscoveryStatus::Searcher::Nobody) return {};
  return "fwupdatectl: Nobody has searched the network so far. Give a longer --wait, or see "
         "\"fwupdatectl "
         "check\".\n";
}
