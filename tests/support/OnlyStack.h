// A multicast DNS stack that tolerates no other one on its machine, for the lifetime of this
// object.
#pragma once

class OnlyStack {
 public:
  OnlyStack();
  ~OnlyStack();
  OnlyStack(const OnlyStack&) = delete;
  OnlyStack& operator=(const OnlyStack&) = delete;

  // False where another one was there before.
  bool holds() const { return mHolds; }

 private:
  int mSocket;
  bool mHolds = false;
};
