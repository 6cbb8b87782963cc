#include <gmock/gmock.h>

#include <stdexcept>

#include "Options.h"

namespace {

using namespace virtualprinter;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;

std::string refusalOf(const std::vector<std::string>& arguments) {
  try {
    parseOptions(arguments);
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
  return "accepted";
}

TEST(OptionsTest, WithoutArgumentsItIsAnOrdinaryPrinter) {
  const Options options = parseOptions({});
  EXPECT_EQ(options.port, 9100);
  EXPECT_EQ(options.settings.model, "KX350T");
  EXPECT_EQ(options.settings.burnTime, std::chrono::seconds(2));
  EXPECT_EQ(options.announce, Announce::Auto);
  EXPECT_EQ(options.exitAfter, ExitAfter::Nothing);
}

TEST(OptionsTest, TakesValuesAfterASpaceOrAnEqualsSign) {
  const Options options =
      parseOptions({"--port", "0", "--lic=", "--fwver=7", "--exit-after", "return", "--quiet"});
  EXPECT_EQ(options.port, 0);
  EXPECT_EQ(options.settings.lic, "");
  EXPECT_EQ(options.settings.fwver, "7");
  EXPECT_EQ(options.exitAfter, ExitAfter::Return);
  EXPECT_TRUE(options.quiet);
}

TEST(OptionsTest, TimesAreSecondsWithFractions) {
  const Options options =
      parseOptions({"--burn-seconds", "0.25", "--return-seconds=3", "--time-limit=0"});
  EXPECT_EQ(options.settings.burnTime, std::chrono::milliseconds(250));
  EXPECT_EQ(options.settings.returnTime, std::chrono::seconds(3));
  EXPECT_EQ(options.timeLimit, std::chrono::seconds(0));
}

TEST(OptionsTest, DeviceIdAndTxtValuesMayHoldAnyByte) {
  const Options options = parseOptions({"--device-id", R"(A:\xff\\;)", "--txt", R"(usb_MDL=K\x00)",
                                        "--no-txt", "note", "--txt", "a=b=c"});
  EXPECT_EQ(options.settings.deviceId, "A:\xff\\;");
  EXPECT_THAT(options.txt, ElementsAre(Pair("usb_MDL", std::string("K\0", 2)),
                                       Pair("note", std::nullopt), Pair("a", "b=c")));
}

TEST(OptionsTest, CollectsFaults) {
  const Options options = parseOptions({"--fault", "fail-burn", "--fault=close@uel"});
  EXPECT_NE(options.faults.find(FaultKind::FailBurn), nullptr);
  EXPECT_EQ(options.faults.at(Step::Uel).size(), 1u);
}

TEST(OptionsTest, NoAnnounceIsShortForAnnounceNo) {
  EXPECT_EQ(parseOptions({"--no-announce"}).announce, Announce::No);
  EXPECT_EQ(parseOptions({"--announce", "no"}).announce, Announce::No);
  EXPECT_EQ(parseOptions({"--announce", "in-process"}).announce, Announce::InProcess);
}

TEST(OptionsTest, RefusesWhatItDoesNotUnderstand) {
  EXPECT_EQ(refusalOf({"--prot", "1"}), "there is no option --prot");
  EXPECT_EQ(refusalOf({"9100"}), "there is no option 9100");
  EXPECT_EQ(refusalOf({"--port"}), "--port needs a value");
  EXPECT_EQ(refusalOf({"--quiet=yes"}), "--quiet=yes: takes no value");
  EXPECT_EQ(refusalOf({"--port", "65536"}), "\"65536\" is not a number from 0 to 65535");
  EXPECT_EQ(refusalOf({"--port", ""}), "\"\" is not a number from 0 to 65535");
  EXPECT_EQ(refusalOf({"--burn-seconds", "-1"}), "\"-1\" is not a time in seconds");
  EXPECT_EQ(refusalOf({"--burn-seconds", "nan"}), "\"nan\" is not a time in seconds");
  EXPECT_EQ(refusalOf({"--txt", "=x"}), "\"=x\" is not KEY=VALUE");
  EXPECT_EQ(refusalOf({"--device-id", R"(\x4)"}),
            "\"\\x4\": after \\ comes x and two hexadecimal digits");
  EXPECT_EQ(refusalOf({"--exit-after", "noon"}), "\"noon\" is none of conversation, burn, return");
  EXPECT_EQ(refusalOf({"--count", "0", "--no-announce"}), "--count 0 is no printer");
  EXPECT_EQ(refusalOf({"--count", "2"}), "--count needs --no-announce, and cannot be had on USB");
  EXPECT_EQ(refusalOf({"--count", "2", "--no-announce", "--usb"}),
            "--count needs --no-announce, and cannot be had on USB");
  EXPECT_EQ(refusalOf({"--fault", "clos@uel"}), "fault \"clos@uel\": there is no such fault");
}

TEST(OptionsTest, HelpNamesEveryFaultAndEveryStep) {
  const std::string help = helpText();
  EXPECT_THAT(help, HasSubstr(FaultPlan::help()));
  for (const Step step : allSteps()) {
    EXPECT_THAT(help, HasSubstr("\n  " + std::string(stepName(step)) + " "));
  }
  EXPECT_THAT(help, HasSubstr("--exit-after EVENT"));
}

}  // namespace
