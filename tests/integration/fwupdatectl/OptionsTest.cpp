// What --help names is what the manual page and the completions of the shells know, and nothing
// else.
#include <gmock/gmock.h>

#include <regex>
#include <set>

#include "Tool.h"

namespace {

using Options = std::set<std::string>;

Options optionsIn(const std::string& text) {
  static const std::regex option("--[a-z]+(-[a-z]+)*");
  Options options;
  for (std::sregex_iterator each(text.begin(), text.end(), option), end; each != end; ++each) {
    options.insert(each->str());
  }
  return options;
}

std::string helpOf(const std::string& command) {
  return runInShell(kToolInShell + " " + command + " --help").output;
}

std::vector<std::string> commands() {
  const std::string help = helpOf("");
  static const std::regex row("\n  ([a-z]+) {2,}[A-Z]");
  const std::string list = help.substr(help.find("Subcommands:"));
  std::vector<std::string> commands;
  for (std::sregex_iterator each(list.begin(), list.end(), row), end; each != end; ++each) {
    commands.push_back(each->str(1));
  }
  return commands;
}

Options allOptions() {
  Options options = optionsIn(helpOf(""));
  for (const std::string& each : commands()) options.merge(optionsIn(helpOf(each)));
  return options;
}

std::string packaged(const std::string& file) {
  return contentOf(projectFile("packaging/" + file));
}

TEST(FwupdatectlOptions, AreFoundInTheHelp) {
  EXPECT_THAT(commands(), testing::IsSupersetOf({"list", "update", "show", "check"}));
  EXPECT_THAT(allOptions(), testing::IsSupersetOf({"--help", "--version", "--verbose", "--wait",
                                                   "--versions", "--jobs", "--json", "--yes"}));
}

TEST(FwupdatectlOptions, AreThoseOfTheManualPage) {
  const std::string page = std::regex_replace(packaged("fwupdatectl.1"), std::regex(R"(\\-)"), "-");
  EXPECT_EQ(optionsIn(page), allOptions());
  for (const std::string& each : commands()) {
    EXPECT_THAT(page, testing::HasSubstr("\n.B fwupdatectl " + each + "\n"));
    EXPECT_THAT(page, testing::HasSubstr("\n.TP\n.B " + each + "\n"));
  }
}

TEST(FwupdatectlOptions, AreThoseOfTheCompletions) {
  EXPECT_EQ(optionsIn(packaged("completions/fwupdatectl")), allOptions());
  EXPECT_EQ(optionsIn(packaged("completions/_fwupdatectl")), allOptions());
  Options fish;
  static const std::regex option("-l ([a-z-]+)");
  const std::string text = packaged("completions/fwupdatectl.fish");
  for (std::sregex_iterator each(text.begin(), text.end(), option), end; each != end; ++each) {
    fish.insert("--" + each->str(1));
  }
  EXPECT_EQ(fish, allOptions());
}

}  // namespace
