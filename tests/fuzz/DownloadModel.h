// What a download to a printer must do, said in the simplest way: what it waits for, what
// it has sent, and how it ended. Knows nothing of the product but its messages.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

class DownloadModel {
 public:
  enum class Awaits { Nothing, Connection, Room, Bytes, Turn };

  // On the cable: what was sent and not read before is the first to be read.
  void keepUnread() { mKeepsUnread = true; }

  void start(bool canConnect);
  void connectionEnds();
  void becomesWritable();
  void arrives(const std::string& bytes);

  // The write or read that is under way.
  void transferFails();

  // The event that says that a read is served has been delivered.
  void takeTurn();

  // Every send from now on.
  void setSendFails(bool fails) { mSendFails = fails; }

  // Whether the next turn ends the program: what has arrived is no answer of a printer.
  bool nextTurnIsFatal() const;

  // Whether the next turn depends on a device ID that is none of those that the model knows. It is
  // then told what became of it: "DlUd", "DlNo", or nothing when the burn header was sent.
  bool nextTurnIsUnknown() const;
  void takeUnknownTurn(const std::string& command);

  // What has arrived and nobody has read yet.
  std::size_t unread() const { return mArrived.size(); }
  void forgetUnread() { mArrived.clear(); }

  Awaits awaits() const { return mAwaits; }
  const std::vector<std::string>& sent() const { return mSent; }
  const std::vector<std::string>& commands() const { return mCommands; }

 private:
  enum class Read { Response, DeviceId, BurnResponse };

  void write(std::size_t message);
  void read(Read what, std::size_t length);
  void takeBytes();
  void chooseFirmware(const std::string& command);
  void end(const std::string& command);

  Awaits mAwaits = Awaits::Nothing;
  std::size_t mMessage = 0;
  Read mRead = Read::Response;
  std::size_t mLength = 0;
  std::string mArrived;
  bool mKeepsUnread = false;
  std::string mTaken;
  bool mSendFails = false;
  std::vector<std::string> mSent;
  std::vector<std::string> mCommands;
};
