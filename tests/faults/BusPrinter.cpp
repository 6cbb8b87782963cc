#include "BusPrinter.h"

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

using namespace std::string_literals;

void BusPrinter::plugIn(const FakeUsbDevice& device) {
  mService = mApplication.usb().attach(device);
  mProtocol = virtualprinter::PrinterProtocol({4096, true});
  mToSay.clear();
  mApplication.settle();
}

void BusPrinter::unplug() { mApplication.usb().detach(mService); }

bool BusPrinter::serveUntil(std::size_t step) {
  mApplication.settle();
  while (stepsBegun() < step) {
    if (!isTransferring() || !serveOne()) return false;
    mApplication.settle();
  }
  return stepsBegun() == step && isTransferring();
}

// Each step is one request to the transport.
std::size_t BusPrinter::stepsBegun() const {
  const std::vector<std::string> log = mApplication.log();
  return static_cast<std::size_t>(std::ranges::count_if(
      log, [](const std::string& line) { return line.starts_with("5 Async "); }));
}

void BusPrinter::serveAll() {
  mApplication.settle();
  while (isTransferring() && serveOne()) mApplication.settle();
  mApplication.settle();
}

bool BusPrinter::serveOne() {
  if (!transfer().isRead) {
    const std::size_t size = transfer().written.size();
    take(size);
    complete(size);
    return true;
  }
  if (mToSay.empty()) return false;
  const std::string packet = mToSay.front();
  mToSay.pop_front();
  mApplication.usb().completeRead(packet);
  return true;
}

void BusPrinter::complete(std::size_t bytes) { mApplication.usb().completeWrite(bytes); }

void BusPrinter::take(std::size_t count) {
  const std::string bytes = transfer().written.substr(0, count);
  std::span<const std::uint8_t> left(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                                     bytes.size());
  while (!left.empty()) {
    const auto event = mProtocol.feed(left);
    const auto* received = event ? std::get_if<virtualprinter::Received>(&*event) : nullptr;
    if (received == nullptr) continue;
    if (received->message == virtualprinter::Message::IdRequest) answerIdRequest();
    if (received->message == virtualprinter::Message::Uel) burn();
  }
}

void BusPrinter::answerIdRequest() {
  const std::string id = "MDL:KX350T;LIC:QT725013;FWVER:" + mVersion + ";";
  const auto length = static_cast<char>(id.size() + 2);
  const std::string right = "\0\xac\0\x06\0\x01\0"s + length + std::string(8, '\0');
  const std::string response = std::exchange(mResponse, std::nullopt).value_or(right);
  const std::string deviceId = "\0"s + length + id;
  if (mPackets == Packets::ResponseWithDeviceId) {
    mToSay.push_back(response + deviceId);
  } else {
    say(response, 3);
    say(deviceId, 4);
  }
}

void BusPrinter::burn() {
  mVersion = "200";
  const std::string right = "\0\xac\0\x0f\0\x01\0\0"s + std::string(8, '\0');
  say(std::exchange(mBurnReply, std::nullopt).value_or(right), 8);
}

void BusPrinter::sayStale(const std::string& bytes) {
  constexpr std::size_t kResponseSize = 16;
  const bool isBoth = bytes.starts_with("\0\xac"s) && bytes.size() > kResponseSize;
  mToSay.push_back(isBoth ? bytes.substr(0, kResponseSize) : bytes);
  if (isBoth) mToSay.push_back(bytes.substr(kResponseSize));
}

void BusPrinter::say(std::string bytes, std::size_t step) {
  if (std::exchange(mExcess, mExcess == step ? 0 : mExcess) == step) bytes += "AB";
  if (mPackets == Packets::AfterEmptyOnes) mToSay.emplace_back();
  if (mPackets != Packets::OfOneByte) {
    mToSay.push_back(bytes);
    return;
  }
  for (const char byte : bytes) mToSay.emplace_back(1, byte);
}
