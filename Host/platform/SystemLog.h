// The host's system log. Used by the log alone.
#pragma once

namespace platform {

class SystemLog {
 public:
  static constexpr int kMirrorToStandardError = 0x20;
  static constexpr int kUserFacility = 8;

  virtual ~SystemLog() = default;

  // `identity` must stay valid until close(): the host keeps the pointer. With
  // kMirrorToStandardError each entry is also written there, as one line "IDENTITY: TEXT" in which
  // control characters and bytes that are not UTF-8 stand as '#' and three octal digits.
  virtual void open(const char* identity, int options, int facility) = 0;

  // One entry; `text` is never used as a format. `priority` is a syslog level.
  virtual void write(int priority, const char* text) = 0;

  virtual void close() = 0;
};

}  // namespace platform
