// The tool as it is run by a user: nobody answers its questions.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "Places.h"
#include "ShellCommand.h"
#include "VirtualPrinterProcess.h"

inline const std::string kTool = builtProgram("fwupdatectl");
inline const std::string kToolInShell = "'" + kTool + "'";
inline const std::string kDemoFirmware = builtFile("share/fwupdate/product.brand.bin");

inline Outcome tool(const std::string& arguments) {
  return runInShell(kToolInShell + " " + arguments + " </dev/null");
}

inline Outcome update(const std::string& arguments) { return tool("update " + arguments); }

inline std::string addressOf(const VirtualPrinterProcess& printer) {
  return "127.0.0.1:" + std::to_string(printer.port());
}

inline std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}
