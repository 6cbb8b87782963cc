// The program's log. A message is put together on the logger of its priority, piece by piece, and
// std::flush sends it to the system log as one entry:
//
//   Log<5>() << "Firmware version in file: " << version << std::flush;
//
// There is one logger for each priority, made on first use and kept until the process ends. All
// logging happens on the main thread.
#pragma once

#include <ostream>
#include <sstream>
#include <type_traits>
#include <vector>

#include "platform/Text.h"

namespace platform {
class Describable;
}

// The levels of the system log that this program uses.
enum Priority : int { kPriorityError = 3, kPriorityNotice = 5, kPriorityDebug = 7 };

class Logger {
 public:
  // Holds anything that has a description, so that it can be inserted like a text.
  class CfObj {
   public:
    // A null text or object is shown as "<null>".
    CfObj(const platform::Text& text);
    CfObj(const platform::Describable* object);

   private:
    friend class Logger;

    platform::Text mObject;
  };

  explicit Logger(int priority);
  Logger(const Logger&) = delete;
  Logger& operator=(const Logger&) = delete;

  // Anything that an output stream takes. Formatting that a manipulator sets stays set, also for
  // later entries. An insertion for which there is no memory cuts its entry off there.
  template <typename T>
  requires(!std::is_convertible_v<T, const char*>) Logger& operator<<(const T& value) {
    mText << value;
    return *this;
  }

  // A null pointer is shown as "<null>".
  Logger& operator<<(const char* text);

  // A null text is shown as "<null>". The conversion buffer is sized by the number of characters,
  // so a text that takes more bytes than that is cut at the last whole character that fits.
  Logger& operator<<(const platform::Text& text);

  Logger& operator<<(const CfObj& object);

  // Ends the entry, whatever the manipulator. What follows in the same expression goes to the plain
  // stream that is returned, and begins the next entry.
  std::ostream& operator<<(std::ostream& (*manipulator)(std::ostream&));

  // Sends what was inserted since the last flush, also when that is nothing. Whatever has become of
  // the insertions or of the entry, the next one begins empty and takes what is inserted.
  void flush();

 private:
  int mPriority;
  std::stringstream mText;
  std::vector<unsigned char> mConversionBuffer;  // grows when a text needs it, never shrinks
};

template <int P>
Logger& Log() {
  static_assert(P == kPriorityError || P == kPriorityNotice || P == kPriorityDebug);
  static Logger logger(P);
  return logger;
}
