#include "ShellCommand.h"

#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>

#include "TemporaryDirectory.h"

Outcome runInShell(const std::string& command) {
  const TemporaryDirectory directory;
  const std::filesystem::path output = directory.path() / "output";
  const std::filesystem::path errors = directory.path() / "errors";
  const std::string redirected =
      "{ " + command + "\n} >'" + output.string() + "' 2>'" + errors.string() + "'";
  const int status = std::system(redirected.c_str());
  const Outcome outcome{WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentOf(output),
                        contentOf(errors)};
  // For whoever reads why a test failed.
  std::cout << "$ " << command << '\n'
            << outcome.output << outcome.errors << "status " << outcome.status << std::endl;
  return outcome;
}

std::string contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}
