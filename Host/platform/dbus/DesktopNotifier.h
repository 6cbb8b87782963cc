// Shows notifications through the desktop's daemon, if there is one. The desktop is connected to
// for the first of them, and not left again: some desktops take away what belongs to a program that
// has gone. A daemon that does not answer, or is not there, shows nothing, and nobody waits for it.
#pragma once

#include <memory>
#include <string>

#include "platform/DeferredCalls.h"
#include "platform/RunLoop.h"
#include "platform/dbus/BusConnection.h"

namespace platform {

class DesktopNotifier : private BusConnection::Listener {
 public:
  // `application` is the name of the program's desktop entry and of its icon.
  DesktopNotifier(RunLoop& runLoop, std::string application);

  // Both are plain text: what a daemon takes for markup is shown as it is. UTF-8.
  void show(const std::string& title, const std::string& text);

 private:
  bool connect();
  bool ask(const std::string& title, const std::string& text);
  void notify(const std::string& title, const std::string& text);

  void signalled(DBusMessage*) override {}
  void closed() override {}  // the next notification finds out

  RunLoop& mRunLoop;
  const std::string mApplication;
  std::unique_ptr<BusConnection> mBus;
  DeferredCalls mDeferred;
};

}  // namespace platform
