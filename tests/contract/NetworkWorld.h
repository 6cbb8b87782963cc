// A network with a printer at the other end, for tests that hold for every implementation of the
// network: the real one over loopback, and the double. Tests say what the printer does; the
// program's side is the socket that they create, which records what it is told.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "platform/Network.h"

class NetworkWorld {
 public:
  virtual ~NetworkWorld() = default;

  virtual platform::Network& network() = 0;

  // The printer's address; one that refuses connections if it is not `listening`.
  virtual platform::Data printerAddress(bool listening) = 0;

  // Lets what is under way come to rest. False when it does not: something is told over and over.
  virtual bool settle() = 0;

  virtual void printerSends(const std::vector<std::uint8_t>& bytes) = 0;
  virtual void printerCloses() = 0;

  // What the printer has received so far, `size` bytes at least.
  virtual std::vector<std::uint8_t> printerReceives(std::size_t size) = 0;

  // Makes the next sends fail.
  virtual void breakConnection() = 0;
};

// The tests are built into two programs: one for the host's network and the double, turned by hand,
// and one for the host's on the loops of the programs.
struct NetworkImplementation {
  std::string name;
  std::function<std::unique_ptr<NetworkWorld>()> make;
};

inline void PrintTo(const NetworkImplementation& implementation, std::ostream* out) {
  *out << implementation.name;
}

std::vector<NetworkImplementation> networkImplementations();

// Loopback delivers at once, but for a busy machine.
inline constexpr std::chrono::milliseconds kQuietTime(50);

// What a socket can be told of: all, or that it is connected.
inline constexpr unsigned long kAll = 15;
inline constexpr unsigned long kConnectOnly = 4;

// A socket of the program, and what it was told, in words: "connected", "failed ECONNREFUSED",
// "data 5", "writable".
class SocketRecorder {
 public:
  SocketRecorder(NetworkWorld& world, unsigned long callbackTypes);

  int connect(const platform::Data& address) { return socket->connectInBackground(address); }
  int send(const std::vector<std::uint8_t>& bytes, double timeoutSeconds = 5.0) {
    return socket->send(bytes, timeoutSeconds,
                        [this](std::size_t count) { taken.push_back(count); });
  }
  std::vector<std::string> takeTold() { return std::exchange(told, {}); }

  std::unique_ptr<platform::StreamSocket> socket;
  std::vector<std::string> told;
  std::vector<std::uint8_t> arrived;
  std::vector<std::size_t> taken;  // what the sends told of their bytes, in order
  platform::Data toldAddress;
  std::string destroyWhenTold;  // the socket goes when it is told this

 private:
  static void callout(platform::StreamSocket* socket, unsigned long type,
                      const platform::Data& address, const void* data, void* info);
  void note(platform::StreamSocket* caller, unsigned long type, const void* data);
};
