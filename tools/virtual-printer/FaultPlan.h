// What the printer shall do wrong: the --fault options of one run, read by the conversation (steps,
// replies), the printer (device ID, burn) and the media (refuse, slow, unplug, ...). A plan is
// written once, before the printer starts.
//
// One fault reads KIND[@STEP][=VALUE]. The table in FaultPlan.cpp says which kinds exist, where
// they may strike, what value they take and on which medium; --help is printed from it.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Steps.h"

namespace virtualprinter {

enum class FaultKind {
  // At a step.
  Close,
  Reset,
  Shutdown,
  Silence,
  Hang,
  Delay,
  Extra,
  Unplug,
  Stall,
  // In a reply.
  WrongPrefix,
  WrongCommand,
  WrongStatus,
  DataLength,
  IdHeader,
  Dribble,
  Merge,
  Split,
  // In the device ID.
  NoMdl,
  NoLic,
  NoFwver,
  BadUtf8,
  // The rest.
  FailBurn,
  ForgetBurn,
  Refuse,
  Slow,
  ReceiveBuffer,
  ZeroPackets,
  InPipeFirst,
  NoPrinterInterface,
  NoVendorInterface,
};

enum class Medium { Any, Network, Usb };

// `size` bytes every `period`.
struct Pace {
  std::size_t size;
  std::chrono::microseconds period;
};

struct Fault {
  FaultKind kind;
  std::optional<Step> at;
  std::string text;  // as given
  std::uint64_t number = 0;
  std::vector<std::uint8_t> bytes;
  std::optional<Pace> pace;
};

class FaultPlan {
 public:
  // Throws std::invalid_argument, saying what is wrong with `text`.
  void add(std::string_view text);

  // The first fault of the kind; null when there is none.
  const Fault* find(FaultKind kind) const;

  // The first fault of the kind that strikes at `step`: one given for that step or for all.
  const Fault* find(FaultKind kind, Step step) const;

  // What happens at `step`, in the order given: the faults of the first group of kinds.
  std::vector<const Fault*> at(Step step) const;

  // The first fault that `medium` does not know; null when there is none.
  const Fault* foreignTo(Medium medium) const;

  const std::vector<Fault>& all() const { return mFaults; }

  // A text for --help, one paragraph for each kind.
  static std::string help();

 private:
  std::vector<Fault> mFaults;
};

}  // namespace virtualprinter
