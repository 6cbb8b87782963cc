#include "DownloadModel.h"

#include <algorithm>
#include <array>
#include <map>

#include "PrinterMessages.h"
#include "platform/Text.h"

namespace {

// What a download writes, in its order.
const std::array<std::string, 5> kMessages = {kUstatusOffText, kDeviceIdRequest, kBurnHeader200,
                                              kFirmware200, kUelText};
constexpr std::size_t kRequest = 1;
constexpr std::size_t kBurnHeader = 2;
constexpr std::size_t kLastMessage = 4;

constexpr std::size_t kResponseSize = 16;

// Device IDs and what comes of them; an empty command stands for a download that goes on.
const std::map<std::string, std::string> kKnownIds = {
    {"MDL:KX350T;LIC:QT725013;FWVER:100;", ""},     {"MDL:KX350T;LIC:QT725013;FWVER:199;", ""},
    {"MDL:KX350T;LIC:QT725013;FWVER:200;", "DlUd"}, {"MDL:KX350T;LIC:QT725013;FWVER:900;", "DlUd"},
    {"MDL:KX999T;LIC:QT725013;FWVER:100;", "DlNo"},
};

bool answers(const std::string& response, char command) {
  return response.starts_with(std::string("\x00\xAC\x00", 3) + command +
                              std::string("\x00\x01", 2));
}

std::size_t deviceIdSize(const std::string& response) {
  return static_cast<unsigned char>(response[6]) * 256u + static_cast<unsigned char>(response[7]);
}

}  // namespace

void DownloadModel::start(bool canConnect) {
  if (!mKeepsUnread) mArrived.clear();
  mAwaits = Awaits::Connection;
  if (!canConnect) end("DlNo");
}

void DownloadModel::connectionEnds() {
  if (mAwaits == Awaits::Connection) write(0);
}

void DownloadModel::becomesWritable() {
  if (mAwaits != Awaits::Room) return;
  if (mMessage == kRequest) return read(Read::Response, kResponseSize);
  if (mMessage == kLastMessage) return read(Read::BurnResponse, kResponseSize);
  write(mMessage + 1);
}

void DownloadModel::arrives(const std::string& bytes) {
  mArrived += bytes;
  takeBytes();
}

// A message that is not taken leaves what is unread as it is; a read begins where nothing is.
void DownloadModel::transferFails() {
  if (mAwaits == Awaits::Bytes) mArrived.clear();
  end("DlNo");
}

void DownloadModel::takeTurn() {
  switch (mRead) {
    case Read::Response:
      return read(Read::DeviceId, deviceIdSize(mTaken));
    case Read::DeviceId:
      return chooseFirmware(kKnownIds.at(mTaken.substr(2)));
    case Read::BurnResponse:
      return end(answers(mTaken, '\x0F') ? "DlOk" : "DlNo");
  }
}

bool DownloadModel::nextTurnIsFatal() const {
  if (mAwaits != Awaits::Turn) return false;
  if (mRead == Read::Response) return !answers(mTaken, '\x06') || deviceIdSize(mTaken) == 0;
  return mRead == Read::DeviceId &&
         (mTaken.size() <= 2 || platform::Text::fromUtf8(mTaken.substr(2)).isNull());
}

bool DownloadModel::nextTurnIsUnknown() const {
  return mAwaits == Awaits::Turn && mRead == Read::DeviceId &&
         !kKnownIds.contains(mTaken.substr(2));
}

void DownloadModel::takeUnknownTurn(const std::string& command) { chooseFirmware(command); }

void DownloadModel::write(std::size_t message) {
  if (mSendFails) return end("DlNo");
  mMessage = message;
  mSent.push_back(kMessages[message]);
  mAwaits = Awaits::Room;
}

void DownloadModel::read(Read what, std::size_t length) {
  mRead = what;
  mLength = length;
  mAwaits = Awaits::Bytes;
  takeBytes();
}

void DownloadModel::takeBytes() {
  if (mAwaits != Awaits::Bytes || mArrived.size() < mLength) return;
  mTaken = mArrived.substr(0, mLength);
  mArrived.erase(0, mLength);
  mAwaits = Awaits::Turn;
}

void DownloadModel::chooseFirmware(const std::string& command) {
  if (command.empty()) return write(kBurnHeader);
  end(command);
}

void DownloadModel::end(const std::string& command) {
  mCommands.push_back(command);
  mAwaits = Awaits::Nothing;
}
