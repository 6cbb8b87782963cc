// Runs a program as its users do, and keeps all that it says.
#pragma once

#include <filesystem>
#include <string>

struct Outcome {
  int status = -1;  // -1 when a signal ended it
  std::string output;
  std::string errors;
};

Outcome runInShell(const std::string& command);

std::string contentOf(const std::filesystem::path& file);
