// A browser of the program, and what it and its services were told, in words: "added Printer",
// "removed Printer", "error", "resolved Printer", "resolved Printer without TXT", "failed Printer
// 10 -72007".
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/ServiceDiscovery.h"

class BrowserRecorder {
 public:
  explicit BrowserRecorder(platform::ServiceDiscovery& discovery);

  // Searches for printers in the default domains.
  bool search();

  std::size_t count(const std::string& line) const;
  bool wasTold(const std::string& line) const { return count(line) != 0; }

  std::unique_ptr<platform::NetServiceBrowser> browser;
  std::vector<std::string> told;

  // What the callbacks do.
  bool resolves = false;  // each service that is added, for `timeoutSeconds`
  double timeoutSeconds = 30;
  std::string destroysBrowserWhen;  // it is told this

  // The last service that was told of. Its texts are those of the moment.
  platform::NetService* service = nullptr;
  std::string name;
  std::string type;
  std::string domain;
  std::string description;

  // Of the last service that was resolved.
  std::vector<std::uint8_t> txt;
  std::vector<std::vector<std::uint8_t>> addresses;

  // Of each service that was resolved, when it was last: its first address, and its TXT record.
  std::map<std::string, std::vector<std::uint8_t>> firstAddress;
  std::map<std::string, std::vector<std::uint8_t>> txtOf;

  // True inside a callback, which no other may interrupt.
  bool isInCallback = false;

 private:
  static void browsed(platform::NetServiceBrowser* browser, unsigned long flags,
                      platform::NetService* service, platform::StreamError* error, void* info);
  static void resolved(platform::NetService* service, platform::StreamError* error, void* info);
  void look(platform::NetService* of);
  void note(const std::string& line);
};
