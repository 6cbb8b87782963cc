// Keeps the computer awake during each download, from its beginning to its outcome or to the end of
// the program: neither the system nor the desktop interrupts it. Where they cannot be reached, the
// download goes on without. Made of what logind and the desktop offer; connected to neither of them
// while no download runs.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/DownloadObserver.h"
#include "platform/RunLoop.h"
#include "platform/dbus/SleepLock.h"

namespace platform {

// `report` gets an entry for the log when less is locked than there is to lock: from the run loop,
// and once in the program's life, since it will be the same for each download. The run loop must
// outlive the lock.
std::unique_ptr<DownloadObserver> makePowerLock(RunLoop& runLoop, PowerLockTexts texts,
                                                std::function<void(const std::string&)> report);

}  // namespace platform
