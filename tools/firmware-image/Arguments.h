// A command's arguments: options with a value ("--size 4096" or "--size=4096") and operands, in any
// order; "--" ends the options. Asking for a value marks it as known; what nobody asked for is a
// mistake of the user.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

// The command line is wrong; the text says how.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Arguments {
 public:
  explicit Arguments(const std::vector<std::string>& arguments);

  std::optional<std::string> value(const std::string& option);
  std::optional<std::uint64_t> number(const std::string& option, std::uint64_t largest);

  // The one operand; `what` names it in the error when there is none, or there are more. Every
  // option must have been asked for before.
  std::string onlyOperand(const std::string& what) const;

 private:
  std::map<std::string, std::string> mOptions;
  std::vector<std::string> mOperands;
  std::set<std::string> mKnown;
};
