#include "WindowPing.h"

#include <X11/Xlib.h>

#include <algorithm>
#include <stdexcept>

namespace bench {
namespace {

using namespace std::chrono_literals;

constexpr long kProtocolVersion = 5L << 24;
constexpr auto kPause = 10ms;

}  // namespace

WindowPing::WindowPing(unsigned long window) : mDisplay(XOpenDisplay(nullptr)), mWindow(window) {
  if (!mDisplay) throw std::runtime_error("the X server does not answer");
  mSource = XCreateSimpleWindow(mDisplay, DefaultRootWindow(mDisplay), 0, 0, 1, 1, 0, 0, 0);
  send("XdndEnter", kProtocolVersion, static_cast<long>(XInternAtom(mDisplay, "STRING", False)));
}

WindowPing::~WindowPing() {
  send("XdndLeave", 0, 0);
  XCloseDisplay(mDisplay);
}

void WindowPing::turn() {
  while (XPending(mDisplay) > 0) {
    XEvent event;
    XNextEvent(mDisplay, &event);
    if (event.type != ClientMessage || !mWaiting) continue;
    mSlowest = std::max(mSlowest, Clock::now() - mAsked);
    mWaiting = false;
  }
  if (mWaiting || Clock::now() - mAsked < kPause) return;
  mAsked = Clock::now();
  mWaiting = true;
  send("XdndPosition", 0, 0);
}

Clock::duration WindowPing::slowest() const {
  return mWaiting ? std::max(mSlowest, Clock::now() - mAsked) : mSlowest;
}

void WindowPing::send(const char* type, long second, long third) {
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = mWindow;
  event.xclient.message_type = XInternAtom(mDisplay, type, False);
  event.xclient.format = 32;
  event.xclient.data.l[0] = static_cast<long>(mSource);
  event.xclient.data.l[1] = second;
  event.xclient.data.l[2] = third;
  XSendEvent(mDisplay, mWindow, False, NoEventMask, &event);
  XFlush(mDisplay);
}

}  // namespace bench
