// The exit status of what was done to several printers.
#pragma once

#include "Options.h"

class Failures {
 public:
  void add(bool isNotPermitted) {
    mHasAny = true;
    if (!isNotPermitted) mHasOther = true;
  }

  // That it is not permitted where that is the only thing in the way.
  int status() const {
    if (!mHasAny) return kDone;
    return mHasOther ? kFailed : kNotPermitted;
  }

 private:
  bool mHasAny = false;
  bool mHasOther = false;
};
