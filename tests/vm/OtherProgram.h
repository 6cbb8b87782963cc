// Another program that has an interface of a device for itself: a claim on it that does not come
// from libusb.
#pragma once

#include <string>

class OtherProgram {
 public:
  OtherProgram(const std::string& serial, unsigned interface);
  ~OtherProgram();
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;

 private:
  int mNode;
};
