// What a person sees who lists printers on a terminal, watches them come and go, checks the machine
// or gets an error: whole screens.
#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "Announcement.h"
#include "PrivateNetwork.h"
#include "TerminalProcess.h"
#include "Tool.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

using Rows = std::vector<std::string>;
using Terminal = std::unique_ptr<TerminalProcess>;

constexpr const char* kCtrlC = "\x03";

class FwupdatectlScreens : public testing::Test {
 protected:
  ~FwupdatectlScreens() override { privatenetwork::restore(); }

  // Several of them look for printers at the same time.
  static Terminal start(const std::string& arguments, int columns,
                        const std::string& environment = "") {
    return std::make_unique<TerminalProcess>(
        "exec env " + environment + " " + kToolInShell + " " + arguments, 24, columns);
  }

  static Rows rowsAtEnd(const Terminal& terminal, int status = 0) {
    EXPECT_EQ(terminal->waitForEnd(), status);
    EXPECT_THAT(terminal->bytes(), Not(HasSubstr("\x1B")));
    return terminal->screen().allRows();
  }

  void announce(const std::string& port, const std::string& name) {
    mAnnounced.push_back(std::make_unique<Announcement>(
        std::vector<std::string>{"--port", port, name, "usb_MFG=Veltra", "usb_MDL=KX350T"}));
    mAnnounced.back()->waitUntilEstablished();
  }

  static std::vector<std::string> listening(const std::string& name, const std::string& port) {
    return {"--address", "0.0.0.0", "--port", port, "--announce", "daemon", "--name", name};
  }

  std::vector<std::unique_ptr<Announcement>> mAnnounced;
};

// What would move the rest of the screen is seen as such, and moves nothing. Widths are those of
// UTF-8 in every locale: it is what is written in each.
TEST_F(FwupdatectlScreens, NamesInAnyScriptStandInColumns) {
  announce("9101", "Office");
  announce("9102", "\u4E8B\u52D9\u6240");
  announce("9103", "Bu\u0308ro");
  announce("9104", "\U0001F600 Lobby");
  announce("9105", "\\x1B[31mRed\\x1B[2J");
  announce("9106", "\u202Egnp\u2066");
  announce("9107", "a\\x09b\\x0Dc\\x0Ad");
  const Terminal plain = start("list --wait 4", 80);
  const Terminal inC = start("list --wait 4", 80, "LC_ALL=C");
  const Terminal inNone = start("list --wait 4", 80, "LC_ALL=no_WHERE NO_COLOR=1");
  const Outcome piped = runInShell("LC_ALL=C " + kToolInShell + " list --wait 4 </dev/null");

  const testing::Matcher<Rows> table = ElementsAre(
      "NAME          CONNECTION  ADDRESS OR SERIAL",
      "\uFFFD[31mRed\uFFFD[2J  network     10.91.0.2:9105",
      "Bu\u0308ro          network     10.91.0.2:9103", "Office        network     10.91.0.2:9101",
      "a\uFFFDb\uFFFDc\uFFFDd       network     10.91.0.2:9107",
      "\uFFFDgnp\uFFFD         network     10.91.0.2:9106",
      "\u4E8B\u52D9\u6240        network     10.91.0.2:9102",
      "\U0001F600 Lobby      network     10.91.0.2:9104");
  EXPECT_THAT(rowsAtEnd(plain), table);
  EXPECT_THAT(rowsAtEnd(inC), table);
  EXPECT_THAT(rowsAtEnd(inNone), table);
  EXPECT_EQ(piped.output,
            "\uFFFD[31mRed\uFFFD[2J\tnetwork\t10.91.0.2:9105\n"
            "Bu\u0308ro\tnetwork\t10.91.0.2:9103\n"
            "Office\tnetwork\t10.91.0.2:9101\n"
            "a\uFFFDb\uFFFDc\uFFFDd\tnetwork\t10.91.0.2:9107\n"
            "\uFFFDgnp\uFFFD\tnetwork\t10.91.0.2:9106\n"
            "\u4E8B\u52D9\u6240\tnetwork\t10.91.0.2:9102\n"
            "\U0001F600 Lobby\tnetwork\t10.91.0.2:9104\n");
}

// Which asks of the terminal as many columns as the table has.
TEST_F(FwupdatectlScreens, VersionsAndFirmwareAreColumns) {
  privatenetwork::startDaemon();
  const VirtualPrinterProcess attic(listening("Attic \u5C4B\u6839", "9101"));
  std::vector<std::string> current = listening("Cellar", "9102");
  current.insert(current.end(), {"--fwver", "00000200"});
  const VirtualPrinterProcess cellar(current);
  std::vector<std::string> malformed = listening("Office", "9103");
  malformed.insert(malformed.end(), {"--fault", "data-length=0"});
  const VirtualPrinterProcess office(malformed);
  const Terminal usual = start("list --wait 5 --versions", 80);
  const Terminal exact = start("list --wait 5 --versions", 75);
  const Terminal narrower = start("list --wait 5 --versions", 74);
  const Terminal listed = start("list --wait 5", 41);
  const Terminal listedNarrower = start("list --wait 5", 40);
  const testing::Matcher<Rows> table = ElementsAre(
      "NAME        CONNECTION  ADDRESS OR SERIAL  VERSION  FIRMWARE",
      "Attic \u5C4B\u6839  network     10.91.0.1:9101     100      200 (product.brand.bin)",
      "Cellar      network     10.91.0.1:9102     200      up to date",
      "Office      network     10.91.0.1:9103     ?        ?");
  EXPECT_THAT(rowsAtEnd(usual, 1), table);
  EXPECT_THAT(rowsAtEnd(exact, 1), table);
  EXPECT_THAT(rowsAtEnd(narrower, 1),
              ElementsAre("NAME", "  CONNECTION  ADDRESS OR SERIAL  VERSION  FIRMWARE",
                          "Attic \u5C4B\u6839",
                          "  network     10.91.0.1:9101     100      200 (product.brand.bin)",
                          "Cellar", "  network     10.91.0.1:9102     200      up to date",
                          "Office", "  network     10.91.0.1:9103     ?        ?"));
  EXPECT_THAT(rowsAtEnd(listed), ElementsAre("NAME        CONNECTION  ADDRESS OR SERIAL",
                                             "Attic \u5C4B\u6839  network     10.91.0.1:9101",
                                             "Cellar      network     10.91.0.1:9102",
                                             "Office      network     10.91.0.1:9103"));
  EXPECT_THAT(rowsAtEnd(listedNarrower),
              ElementsAre("NAME", "  CONNECTION  ADDRESS OR SERIAL", "Attic \u5C4B\u6839",
                          "  network     10.91.0.1:9101", "Cellar", "  network     10.91.0.1:9102",
                          "Office", "  network     10.91.0.1:9103"));
}

TEST_F(FwupdatectlScreens, PrintersComeAndGoUntilCtrlC) {
  const Terminal watching = start("list --watch", 80);
  announce("9101", "Office");
  EXPECT_TRUE(watching->waitFor("+       Office  network 10.91.0.2:9101"));
  mAnnounced[0]->withdraw();
  EXPECT_TRUE(watching->waitFor("-       Office  network 10.91.0.2:9101"));
  watching->type(kCtrlC);
  EXPECT_THAT(rowsAtEnd(watching, 130),
              ElementsAre("+       Office  network 10.91.0.2:9101",
                          "-       Office  network 10.91.0.2:9101", "^C"));
  EXPECT_EQ(watching->screen().cursor(), (TerminalScreen::Position{3, 0}));
}

// The finding about the rule is that of the machine.
TEST_F(FwupdatectlScreens, CheckHasARowForEachFinding) {
  const Rows rows = rowsAtEnd(start("check", 200, "NO_COLOR=1"));
  ASSERT_GE(rows.size(), 5u);
  EXPECT_EQ(rows[0],
            "ok       Search for network printers: Done by this program, since no Avahi daemon "
            "answers.");
  EXPECT_THAT(rows[1], testing::StartsWith("ok       Right to use USB printers: The rule "));
  EXPECT_EQ(rows[rows.size() - 2],
            "ok       Firmware product.brand.bin: Version 200, 1048576 bytes.");
  EXPECT_EQ(rows.back(), "ok       Firmware product.tarn.bin: Version 200, 786432 bytes.");
}

TEST_F(FwupdatectlScreens, FirmwareIsShownInRows) {
  const Terminal terminal =
      start("show product.brand.bin", 80, "--chdir='" + builtFile("share/fwupdate") + "'");
  EXPECT_THAT(rowsAtEnd(terminal),
              ElementsAre("File:     product.brand.bin", "Size:     1048576 bytes", "Version:  200",
                          "Text:     KX350T", "Text:     00000200", "Text:     demo",
                          "Printers: MDL KX350T, LIC QT725013"));
}

TEST_F(FwupdatectlScreens, ErrorsSayWhatIsWrong) {
  EXPECT_THAT(
      rowsAtEnd(start("show '/no\uFFFDwhere\x1B[2J'", 80), 1),
      ElementsAre(
          "fwupdatectl: /no\uFFFDwhere\uFFFD[2J: cannot be read as a firmware file. The log "
          "says why",
          "(-e shows it)."));
  EXPECT_THAT(rowsAtEnd(start("list --sooner", 80), 2),
              ElementsAre("The following argument was not expected: --sooner",
                          "Run with --help for more information."));
  EXPECT_THAT(rowsAtEnd(start("update --yes --wait 1 'Of\x1B[2Jfice'", 80), 3),
              ElementsAre("fwupdatectl: No printer named \"Of\uFFFD[2Jfice\" was found."));
}

}  // namespace
