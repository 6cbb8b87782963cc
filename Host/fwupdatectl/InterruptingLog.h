// The host's log, for a program that has something on the terminal to which the log is mirrored:
// tells it before and after each entry.
#pragma once

#include <functional>
#include <utility>

#include "platform/SystemLog.h"

class InterruptingLog final : public platform::SystemLog {
 public:
  using Told = std::function<void()>;

  // `host` must outlive it.
  explicit InterruptingLog(SystemLog& host) : mHost(host) {}

  // Nobody is told while these are empty.
  void tell(Told before, Told after) {
    mBefore = std::move(before);
    mAfter = std::move(after);
  }

  void open(const char* identity, int options, int facility) override {
    mIsMirrored = (options & kMirrorToStandardError) != 0;
    mHost.open(identity, options, facility);
  }

  void write(int priority, const char* text) override {
    const bool tells = mIsMirrored && mBefore && mAfter;
    if (tells) mBefore();
    mHost.write(priority, text);
    if (tells) mAfter();
  }

  void close() override { mHost.close(); }

 private:
  SystemLog& mHost;
  Told mBefore;
  Told mAfter;
  bool mIsMirrored = false;
};
