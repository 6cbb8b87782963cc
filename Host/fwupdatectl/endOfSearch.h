// How long to look for all printers that there are. Whoever was not heard is asked again by
// multicast DNS, after 1 s, 3 s, 7 s, 15 s and so on: of a thousand that answer at once many are
// lost, and come with the next question. So a search goes on past the question that follows the
// last arrival.
#pragma once

#include <chrono>
#include <string>

#include "platform/DiscoveryStatus.h"

// From the begin of the search, as `lastArrival` is: `wait` when all came at once, a minute at most
// unless `wait` is longer, whoever keeps announcing new names.
std::chrono::milliseconds endOfSearch(std::chrono::milliseconds wait,
                                      std::chrono::milliseconds lastArrival);

// What to say at the end of a search where nobody has searched the network by then, so that finding
// nothing means nothing: a line for standard error. Empty where somebody has.
std::string noteOnSearch(platform::DiscoveryStatus::Searcher searcher);
