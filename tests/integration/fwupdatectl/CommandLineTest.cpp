// What the tool answers to its command line.
#include <gmock/gmock.h>

#include "Tool.h"

namespace {

void expectUsageError(const std::string& arguments, const std::string& error) {
  const Outcome outcome = tool(arguments);
  EXPECT_EQ(outcome.status, 2) << arguments;
  EXPECT_EQ(outcome.output, "") << arguments;
  EXPECT_THAT(outcome.errors, testing::StartsWith(error)) << arguments;
}

TEST(FwupdatectlCommandLine, VersionAndHelpGoToStandardOutput) {
  const Outcome version = tool("--version");
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.output, "fwupdatectl 1.0.0\n");
  EXPECT_EQ(version.errors, "");
  for (const char* arguments : {"--help", "list --help", "update --help"}) {
    const Outcome help = tool(arguments);
    EXPECT_EQ(help.status, 0) << arguments;
    EXPECT_THAT(help.output, testing::HasSubstr("Usage: ")) << arguments;
    EXPECT_EQ(help.errors, "") << arguments;
  }
}

TEST(FwupdatectlCommandLine, WhatIsMissingOrUnknownIsAUsageError) {
  expectUsageError("", "A command is required\n");
  expectUsageError("update", "A printer, --all, --address or --serial is required\n");
  expectUsageError("restart", "The following argument was not expected: restart\n");
  expectUsageError("list --wait soon", "--wait: ");
  expectUsageError("update --all --jobs 0", "--jobs: ");
  expectUsageError("list --wait nan", "SECONDS: nan is no time\n");
  expectUsageError("list --watch --versions", "--watch excludes --versions\n");
  expectUsageError("list --timeout 3", "--timeout requires --versions\n");
}

TEST(FwupdatectlCommandLine, EmptyTextNamesNoPrinter) {
  expectUsageError("update --yes \"\"", "PRINTER: an empty text names no printer\n");
  expectUsageError("update --yes Office \"\"", "PRINTER: an empty text names no printer\n");
  expectUsageError("update --yes --serial \"\"", "--serial: an empty text names no printer\n");
}

TEST(FwupdatectlCommandLine, AddressesAreIPv4OrHostNamesWithAPort) {
  const auto rejected = [](const std::string& address, const std::string& sentence) {
    expectUsageError("update --yes --address " + address, "fwupdatectl: " + sentence + "\n");
  };
  rejected("fe80::1", "\"fe80::1\" is an IPv6 address: printers are reached by IPv4");
  rejected("10.0.5", "\"10.0.5\" is no IPv4 address, like 10.0.0.5, and no host name");
  rejected("of,fice", "\"of,fice\" is no IPv4 address, like 10.0.0.5, and no host name");
  rejected("office:0", "\"0\" is no port: give a number from 1 to 65535");
  rejected("10.0.0.5:0", "\"0\" is no port: give a number from 1 to 65535");
  rejected("10.0.0.5:65536", "\"65536\" is no port: give a number from 1 to 65535");
  rejected("10.0.0.5:", "\"\" is no port: give a number from 1 to 65535");
}

TEST(FwupdatectlCommandLine, FirmwareFileIsShown) {
  const Outcome shown = tool("show '" + kDemoFirmware + "'");
  EXPECT_EQ(shown.status, 0);
  EXPECT_EQ(shown.output, "File:     " + kDemoFirmware +
                              "\n"
                              "Size:     1048576 bytes\n"
                              "Version:  200\n"
                              "Text:     KX350T\n"
                              "Text:     00000200\n"
                              "Text:     demo\n"
                              "Printers: MDL KX350T, LIC QT725013\n");
  const Outcome json = tool("show --json '" + kDemoFirmware + "'");
  EXPECT_THAT(json.output, testing::HasSubstr(R"("bytes":1048576,"version":200,)"
                                              R"("texts":["KX350T","00000200","demo"],)"
                                              R"("printers":["MDL KX350T, LIC QT725013"])"));
}

TEST(FwupdatectlCommandLine, WhatIsNoFirmwareFileIsNotShown) {
  for (const char* file : {"/nowhere", "/dev/null", "/"}) {
    const Outcome outcome = tool(std::string("show ") + file);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, std::string("fwupdatectl: ") + file +
                                  ": cannot be read as a firmware file. The log says why (-e shows "
                                  "it).\n");
  }
}

TEST(FwupdatectlCommandLine, NetworkPrinterIsNotTouchedUnasked) {
  const Outcome outcome = tool("update --address 127.0.0.1:9");
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.errors,
            "fwupdatectl: There is nobody to ask whether network printers may be updated: give "
            "--yes.\n");
}

TEST(FwupdatectlCommandLine, StandsOnNoWindowSystem) {
  const Outcome libraries = runInShell("ldd " + kToolInShell);
  EXPECT_EQ(libraries.status, 0);
  for (const char* library : {"Qt", "X11", "xcb", "wayland", "GL"}) {
    EXPECT_THAT(libraries.output, testing::Not(testing::HasSubstr(library)));
  }
}

}  // namespace
