// The crowd's ends on its links: one socket for each link and protocol, which are its places, on
// the multicast DNS port. Needs the right to bind to an interface. What it sends does not come back
// to its own machine. Throws std::system_error for what the system refuses.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "Responder.h"

namespace crowd {

class MulticastSockets {
 public:
  explicit MulticastSockets(const std::vector<std::string>& links);
  ~MulticastSockets();
  MulticastSockets(const MulticastSockets&) = delete;
  MulticastSockets& operator=(const MulticastSockets&) = delete;

  // Of each place the number of its link.
  std::vector<std::size_t> places() const;
  std::vector<int> descriptors() const;

  // All that has come at a place.
  using Heard = std::function<void(const Asker& asker, std::span<const std::uint8_t> bytes)>;
  void receive(std::size_t place, const Heard& heard) const;

  // What cannot be sent is lost, as on any network.
  void send(const Datagram& datagram) const;

 private:
  struct Place {
    std::size_t link;
    int socket;
    std::string everybody;
  };

  std::vector<Place> mPlaces;
};

}  // namespace crowd
