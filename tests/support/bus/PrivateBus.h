// A message bus of its own, which the environment names as this process's system or session bus
// while it lives. Nobody is started by it.
#pragma once

#include <memory>
#include <string>

#include "PeerProcess.h"
#include "TemporaryDirectory.h"

class PrivateBus {
 public:
  enum class Kind { System, Session };

  explicit PrivateBus(Kind kind);
  ~PrivateBus();
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  // The address stays the same.
  void start();
  void stop();

  void signal(int number) const;

 private:
  const std::string mVariable;
  const std::string mBefore;
  TemporaryDirectory mDirectory;
  std::unique_ptr<PeerProcess> mDaemon;
};
