// Tells a user who is not looking how a download has ended: by a notification of the desktop, when
// none of the program's windows is the active one. Its texts are translated; a printer's name in
// them is made legible.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/DownloadObserver.h"

namespace platform {

// `show` gets a title and a text, both plain. Needs the Qt application.
std::unique_ptr<DownloadObserver> makeDownloadNotification(
    std::function<void(const std::string& title, const std::string& text)> show);

}  // namespace platform
