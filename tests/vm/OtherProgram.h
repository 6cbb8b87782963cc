// Another program that has an interface of a device for itself: a claim on it that does not come
// from libusb.
#pragma once

#include <sys/types.h>

#include <string>

// Within this process.
class OtherProgram {
 public:
  OtherProgram(const std::string& serial, unsigned interface);
  ~OtherProgram();
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;

 private:
  int mNode;
};

// A process of its own, with that name. Without an interface it only has the device open.
class OtherProcess {
 public:
  OtherProcess(const std::string& name, const std::string& serial, int interface = -1);
  ~OtherProcess();
  OtherProcess(const OtherProcess&) = delete;
  OtherProcess& operator=(const OtherProcess&) = delete;

  pid_t number() const { return mNumber; }

 private:
  pid_t mNumber;
};
