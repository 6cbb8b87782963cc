// Services of a system or a desktop on a private bus: see desktop-services.cpp for their names, for
// how they can behave, and for what they tell of what they are asked.
#pragma once

#include <string>
#include <vector>

#include "PeerProcess.h"
#include "PrivateBus.h"

class BusServices {
 public:
  // Returns when they can be called.
  BusServices(PrivateBus::Kind bus, std::vector<std::string> services);

  bool hasNews() const;

  // The next line; blocks until there is one.
  std::string news() { return mProcess.readLine(); }

  // To the calls that wait.
  void answer() { mProcess.writeLine("answer"); }

 private:
  PeerProcess mProcess;
};
