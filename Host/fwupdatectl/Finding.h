// What the check of this machine has found out about one thing.
#pragma once

#include <string>
#include <vector>

struct Finding {
  bool isWell = true;
  std::string subject;   // what was looked at: "USB printer Veltra KX350T (12345)"
  std::string text;      // a sentence
  std::string nextStep;  // what to do about a problem: a sentence, or empty
};

using Findings = std::vector<Finding>;
