// A download that cannot be started, whichever program starts it: the log has the reason.
#pragma once

#include <exception>
#include <functional>

// Calls `start`, which chooses a printer and calls its download(). False when that throws what a
// printer record, a transport or the host may throw, which is logged.
bool startDownload(const std::function<void()>& start);

void logDownloadFailure(const std::exception& error);
