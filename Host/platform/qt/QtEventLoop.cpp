#include "platform/qt/QtEventLoop.h"

#include <QCoreApplication>

namespace platform {

void QtEventLoop::run() {
  if (!mQuit) {
    mRunning = true;
    QCoreApplication::exec();
    mRunning = false;
  }
  mQuit = false;
  if (const auto exception = std::exchange(mException, nullptr)) std::rethrow_exception(exception);
}

void QtEventLoop::quit() {
  mQuit = true;
  if (mRunning) QCoreApplication::exit();
}

void QtEventLoop::endWith(std::exception_ptr exception) noexcept {
  if (mException == nullptr) mException = std::move(exception);
  quit();
}

}  // namespace platform
