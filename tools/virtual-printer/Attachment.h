// A way in which the printer is present in its surroundings: a listening TCP port, its announcement
// on the network, a plugged-in USB cable. The printer makes them all leave when it restarts after a
// burn, and arrive when it is back.
#pragma once

namespace virtualprinter {

class Attachment {
 public:
  virtual ~Attachment() = default;

  // Becomes visible and reachable, with the identity that the printer has at that moment. Throws
  // std::runtime_error when that is impossible.
  virtual void arrive() = 0;

  // Ends every conversation and disappears.
  virtual void leave() = 0;
};

}  // namespace virtualprinter
