// A request that is its header alone. The UEL behind it returns the printer to PJL.
#pragma once

#include <array>

#include "Pjl.h"
#include "PjlAclRequestHeader.h"

class PjlSimpleAclRequest : public PjlAclRequestHeader {
 private:
  [[maybe_unused]] std::array<char, 9> mClosingUel = kUel;
};

static_assert(sizeof(PjlSimpleAclRequest) == 59);
