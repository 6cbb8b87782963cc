// Which version of its firmware the printer has, and which one the download brings: one sentence
// for the progress sheet and for the alert.
#pragma once

#include <QString>

namespace platform {

class DownloadState;

// Null while the versions are not known, and where there is none to offer.
QString versionsText(const DownloadState& download);

// As long as it usually gets.
QString longVersionsText();

}  // namespace platform
