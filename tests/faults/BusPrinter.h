// A printer on the USB bus of an Application: it takes what it is sent byte by byte, answers as the
// protocol wants, and burns. Each transfer is one of the update's eight steps, or a part of one.
#pragma once

#include <deque>
#include <optional>
#include <string>

#include "Application.h"
#include "PrinterProtocol.h"

class BusPrinter {
 public:
  explicit BusPrinter(Application& application) : mApplication(application) {}

  void plugIn(const FakeUsbDevice& device);
  void unplug();

  platform::io_service_t service() const { return mService; }

  // How its answers are cut into packets.
  enum class Packets { Whole, AfterEmptyOnes, OfOneByte, ResponseWithDeviceId };
  void setPackets(Packets packets) { mPackets = packets; }

  // Its next answers to the device-ID request or to the firmware, instead of the right one.
  void setResponse(std::string bytes) { mResponse = std::move(bytes); }
  void setBurnReply(std::string bytes) { mBurnReply = std::move(bytes); }
  // And two bytes behind the answer of this step.
  void addExcess(std::size_t step) { mExcess = step; }

  // What it has to say first: a response, a device ID, or one behind the other.
  void sayStale(const std::string& bytes);
  // Drops what it has to say.
  void fallSilent() { mToSay.clear(); }
  bool hasMoreToSay() const { return !mToSay.empty(); }

  // Serves transfers until that step is under way; false when the program stops before it.
  bool serveUntil(std::size_t step);
  // Serves one transfer; false when it has nothing to say.
  bool serveOne();
  // To the end of the update.
  void serveAll();

  // Takes so much of what is written, and says that all was taken, or that so much was.
  void take(std::size_t count);
  void complete(std::size_t bytes);

  const FakeUsbTransfer& transfer() const { return *mApplication.usb().transfers().front(); }
  bool isTransferring() const { return !mApplication.usb().transfers().empty(); }

  // "100", or "200" once it has burned.
  const std::string& version() const { return mVersion; }
  std::string position() const { return mProtocol.position(); }

 private:
  std::size_t stepsBegun() const;
  void answerIdRequest();
  void burn();
  void say(std::string bytes, std::size_t step);

  Application& mApplication;
  platform::io_service_t mService = 0;
  virtualprinter::PrinterProtocol mProtocol{{4096, true}};
  std::string mVersion = "100";
  Packets mPackets = Packets::Whole;
  std::optional<std::string> mResponse;
  std::optional<std::string> mBurnReply;
  std::size_t mExcess = 0;
  std::deque<std::string> mToSay;
};
