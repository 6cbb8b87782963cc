// Why a download failed, and what to do about it, in words. Found in what the log has of the
// download, by a table that knows each error which a download can log. Used by whoever shows a
// failure: a window in the user's language, a terminal in English.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/LogHistory.h"

namespace platform {

// English sentences, which Qt translates in the context "FailureCause". "%1" in the cause or in the
// next step stands for the subject: the name of a program, or an entry of the log, so that foreign
// bytes are in it.
struct FailureCause {
  const char* headline = nullptr;  // null when it is that the firmware was not updated
  const char* cause = nullptr;     // empty when the log says nothing
  const char* nextStep = nullptr;
  std::string subject;
  bool isNotPermitted = false;  // this user may not use the printer's device
  bool isInUse = false;         // another program of this computer is at the printer
};

// None when the table knows none of the entries: then nothing in them is an error of a download.
std::optional<FailureCause> findCause(const std::vector<LogHistory::Entry>& entries);

// The same for a download that failed, for which there is always something to say: at the least,
// what the log says. When the printer has got all of the firmware and did not answer that it
// refuses it, then nobody knows here what it has made of that, and the sentences say so.
FailureCause causeOfFailure(const std::vector<LogHistory::Entry>& entries, bool firmwareWasSent);

// For a download that ended because the printer is up to date, or seems to be: a firmware file that
// is damaged has no version, and is never sent. None when the file is sound.
std::optional<FailureCause> causeOfNothingToDo(const std::vector<LogHistory::Entry>& entries);

}  // namespace platform
