// The virtual printer as a process of its own, for tests that need the other end of the wire: on a
// free port of 127.0.0.1, unannounced, with its journal in memory. It ends with this object, and
// with the test program.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

class VirtualPrinterProcess {
 public:
  using Entry = nlohmann::ordered_json;

  // `options` come after the ones above, and win over them. Returns when the printer is ready;
  // throws std::runtime_error when it does not become so.
  explicit VirtualPrinterProcess(std::vector<std::string> options);
  ~VirtualPrinterProcess();
  VirtualPrinterProcess(const VirtualPrinterProcess&) = delete;
  VirtualPrinterProcess& operator=(const VirtualPrinterProcess&) = delete;

  std::uint16_t port() const { return mPort; }

  // Readable when the journal has grown, or the printer has ended.
  int output() const { return mOutput; }

  // Takes in what the journal has grown by, without waiting.
  void readJournal();

  const std::vector<Entry>& journal() const { return mJournal; }

  // Begins the journal in memory anew, and gives back what it took; what is counted from then on
  // begins anew, too.
  void forgetJournal();

  // The entries of one kind, without their times, so far.
  std::vector<Entry> entries(const std::string& event) const;

  // What the host sent in control messages: "status-off 1b25…". The image: "image 28".
  std::vector<std::string> receivedMessages() const;

  // Blocks until the journal has so many entries of the kind; throws std::runtime_error when that
  // takes longer than 20 seconds or the printer ends before.
  void waitFor(const std::string& event, std::size_t count = 1);

  // SIGSTOP and SIGCONT: it stands still in between.
  void signal(int number) const;

  // Ends the printer and returns its exit status; the journal is complete then.
  int stop();

 private:
  void start(const std::vector<std::string>& arguments);
  void waitUntil(const std::string& what, const std::function<bool()>& done);
  bool readOnce(int waitMilliseconds);

  pid_t mProcess = -1;
  int mOutput = -1;
  bool mEnded = false;
  std::string mPartialLine;
  std::vector<Entry> mJournal;
  std::uint16_t mPort = 0;
};
