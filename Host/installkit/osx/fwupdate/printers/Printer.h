// One row of the printer list: a printer that was found on USB or on the network. The PrinterList
// owns the records. A record keeps its name and its texts for its whole life and knows how to start
// a firmware download to itself.
#pragma once

#include <string>

#include "platform/Data.h"
#include "platform/Text.h"

namespace platform {
class NetService;
}

class FirmwareDownloader;
class QuillUsbDevice;

class Printer {
 public:
  // A network printer: the name of its service and the socket address record to connect to.
  static Printer* create(const platform::Text& name, const platform::Data& address);
  // A USB printer; the record shares `device`.
  static Printer* create(QuillUsbDevice& device);
  // Accepts null.
  static void destroy(Printer* printer);

  virtual ~Printer();
  Printer(const Printer&) = delete;
  Printer& operator=(const Printer&) = delete;

  virtual platform::Text getType() const = 0;

  // What tells printers of the same name apart; null when there is nothing to show.
  virtual platform::Text getInfo() const = 0;

  // Key of the question to ask before a download; null when none is asked.
  virtual platform::Text getConfirmationMsgKey() const = 0;

  // Returns when the download has begun. What the transport throws passes through.
  virtual void download(FirmwareDownloader& downloader) const = 0;

  // A removed record equals nothing, so that a printer that comes back gets a record of its own.
  virtual bool equals(const QuillUsbDevice& device) const = 0;
  virtual bool equals(platform::NetService* service) const = 0;

  const platform::Text& getName() const { return mName; }
  void setRemoved() { mRemoved = true; }
  void logDownload() const;

 protected:
  explicit Printer(const platform::Text& name);
  // `name` is UTF-8; anything else gives a null name.
  explicit Printer(const std::string& name);

  bool isRemoved() const { return mRemoved; }

 private:
  platform::Text mName;
  bool mRemoved = false;
};
