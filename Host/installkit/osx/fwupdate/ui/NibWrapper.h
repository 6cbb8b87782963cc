// The program's interface file "main", open for as long as this object lives. The UI owns it; the
// window and the sheets are made from it.
#pragma once

#include "platform/Handles.h"

class NibWrapper {
 public:
  // Throws std::runtime_error when the interface file cannot be opened.
  NibWrapper();
  ~NibWrapper();
  NibWrapper(const NibWrapper&) = delete;
  NibWrapper& operator=(const NibWrapper&) = delete;

  platform::NibRef get() const { return mNib; }

 private:
  platform::NibRef mNib = platform::NibRef::None;
};
