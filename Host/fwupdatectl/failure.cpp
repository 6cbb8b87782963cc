#include "failure.h"

#include <unistd.h>

#include <iostream>

#include "JsonLines.h"
#include "Reports.h"

int fail(Options::Output output, int status, const std::string& sentence,
         const std::vector<Target>& candidates) {
  std::cerr << "fwupdatectl: " << sentence << '\n';
  for (const Target& each : candidates) std::cerr << "  " << labelOf(each) << '\n';
  return failForPrograms(output, status, sentence, candidates);
}

int failForPrograms(Options::Output output, int status, const std::string& sentence,
                    const std::vector<Target>& candidates) {
  if (output != Options::Output::Json) return status;
  nlohmann::ordered_json members{{"message", sentence}, {"exit_status", status}};
  for (const Target& each : candidates) members["candidates"].push_back(toJson(each));
  writeLine(std::cout, jsonEvent("failure", members));
  return status;
}

int failByInterruption(Options::Output output) {
  if (isatty(STDERR_FILENO) == 1) std::cerr << '\n';
  return failForPrograms(output, kInterrupted, kInterruption);
}
