// Runs firmware-image as its users do and compares all that it prints and writes.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "Places.h"
#include "ShellCommand.h"
#include "TemporaryDirectory.h"

namespace {

using namespace std::string_literals;
using std::filesystem::path;

const std::string kNotice =
    "DEMONSTRATION IMAGE, NOT REAL FIRMWARE. Made to show and to test the firmware updater; what\n"
    "follows is noise. A printer that burns it cannot work.\n";

const std::string kGoodFile =
    "firmware"
    "KX350T\0"
    "00000200\0"
    "demo\0"
    "\x03\x15"s;

// What follows its size.
const std::string kShownGoodFile =
    "SHA-256:           8c7f39b5eedc43ec74653f902aed354d663eaa71ca2f1d781cdc4f1dcb948f05\n"
    "Checksum:          0xf9d2 (bytes f9 d2 of the burn command)\n"
    "Platform ID:       version 3, length 21, fields 3\n"
    "  field            \"KX350T\"\n"
    "  field            \"00000200\"\n"
    "  field            \"demo\"\n"
    "Firmware version:  200, from \"00000200\"\n"
    "  sent             where the printer's version is lower\n"
    "For printers with: MDL \"KX350T\", LIC \"QT725013\"\n";

class FirmwareImageTest : public testing::Test {
 protected:
  Outcome runInDirectory(const std::string& command) const {
    return runInShell("cd '" + mDirectory.path().string() + "' && " + command);
  }

  // In the test's own directory; `arguments` are for the shell.
  Outcome run(const std::string& arguments) const {
    return runInDirectory("'" + builtProgram("firmware-image") + "' " + arguments);
  }

  void expectQuietSuccess(const std::string& arguments) {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "");
  }

  void expectError(const std::string& arguments, int status, const std::string& text) {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, status) << arguments;
    EXPECT_EQ(outcome.output, "") << arguments;
    EXPECT_EQ(outcome.errors, "firmware-image: " + text + "\n") << arguments;
  }

  void expectUsageError(const std::string& arguments, const std::string& text) {
    expectError(arguments, 2, text + "; see firmware-image --help");
  }

  void expectNotLoaded(const std::string& file, const std::string& reason) {
    expectError("show " + file, 1, "the updater cannot load \"" + file + "\": " + reason);
  }

  void write(const std::string& name, const std::string& bytes) {
    std::ofstream(mDirectory.path() / name, std::ios::binary) << bytes;
  }

  // What "make OPTIONS" writes.
  std::string made(const std::string& options) {
    expectQuietSuccess("make " + options + " made.bin");
    return contentOf(mDirectory.path() / "made.bin");
  }

  std::string madeFromData(const std::string& options) {
    write("data", "data");
    return made("--data data " + options);
  }

  // What "show" says of the version of the file that was made last.
  std::string shownVersion() const {
    const std::string label = "Firmware version:  ";
    const std::string output = run("show made.bin").output;
    const std::size_t begin = output.find(label) + label.size();
    return output.substr(begin, output.find("For printers with:") - begin);
  }

  TemporaryDirectory mDirectory;
};

TEST_F(FirmwareImageTest, DataGetsATrailer) {
  EXPECT_EQ(madeFromData("--version 412"),
            "data"
            "KX350T\0"
            "00000412\0"
            "demo\0"
            "\x03\x15"s);
}

TEST_F(FirmwareImageTest, VersionIsOneUnlessGiven) {
  EXPECT_EQ(madeFromData(""),
            "data"
            "KX350T\0"
            "00000001\0"
            "demo\0"
            "\x03\x15"s);
}

TEST_F(FirmwareImageTest, LargestVersionFillsTheField) {
  EXPECT_EQ(madeFromData("--version=99999999"),
            "data"
            "KX350T\0"
            "99999999\0"
            "demo\0"
            "\x03\x15"s);
}

TEST_F(FirmwareImageTest, FieldsAreWrittenAsTheyAreGiven) {
  EXPECT_EQ(madeFromData("--first-field ABC --version-text 00000123XYZ --last-field Q"),
            "data"
            "ABC\0"
            "00000123XYZ\0"
            "Q\0"
            "\x03\x12"s);
  EXPECT_EQ(madeFromData("--first-field= --version-text= --last-field="), "data\0\0\0\x03\x03"s);
}

TEST_F(FirmwareImageTest, LongestFieldsFillTheBlock) {
  const std::string first(240, 'f');
  EXPECT_EQ(madeFromData("--last-field=demo --first-field " + first), "data" + first +
                                                                          "\0"
                                                                          "00000001\0"
                                                                          "demo\0"
                                                                          "\x03\xFF"s);
}

TEST_F(FirmwareImageTest, MalformedTrailers) {
  const std::string version = "--version 12 --malformed ";
  EXPECT_EQ(madeFromData(version + "version-byte"),
            "data"
            "KX350T\0"
            "00000012\0"
            "demo\0"
            "\x02\x15"s);
  EXPECT_EQ(madeFromData(version + "field-count"),
            "data"
            "KX350T\0"
            "00000012\0"
            "\x03\x10"s);
  EXPECT_EQ(madeFromData(version + "length-byte"),
            "data"
            "KX350T\0"
            "00000012\0"
            "demo\0"
            "\x03\0"s);
  EXPECT_EQ(madeFromData(version + "short-version"),
            "data"
            "KX350T\0"
            "12\0"
            "demo\0"
            "\x03\x0F"s);
  EXPECT_EQ(madeFromData(version + "no-trailer"), "data");
  EXPECT_EQ(madeFromData("--version 0 --malformed short-version"),
            "data"
            "KX350T\0"
            "0\0"
            "demo\0"
            "\x03\x0E"s);
}

TEST_F(FirmwareImageTest, DemonstrationSaysThatItIsOne) {
  const std::string image = made("--size 4096 --version 7");
  EXPECT_EQ(image.size(), 4096u);
  EXPECT_EQ(image.substr(0, kNotice.size()), kNotice);
  EXPECT_EQ(image.substr(4096 - 23),
            "KX350T\0"
            "00000007\0"
            "demo\0"
            "\x03\x15"s);
}

TEST_F(FirmwareImageTest, DemonstrationIsOneMebibyteUnlessToldOtherwise) {
  EXPECT_EQ(made("").size(), 1048576u);
}

TEST_F(FirmwareImageTest, DemonstrationMayBeSmallerThanItsNotice) {
  EXPECT_EQ(made("--size 36"),
            "DEMONSTRATION"
            "KX350T\0"
            "00000001\0"
            "demo\0"
            "\x03\x15"s);
  EXPECT_EQ(made("--size 23"),
            "KX350T\0"
            "00000001\0"
            "demo\0"
            "\x03\x15"s);
  EXPECT_EQ(made("--size 0 --malformed no-trailer"), "");
}

TEST_F(FirmwareImageTest, NoiseFollowsTheSeed) {
  const std::string first = made("--size 4096");
  EXPECT_EQ(made("--size 4096 --seed 1"), first);
  EXPECT_NE(made("--size 4096 --seed 2"), first);
  EXPECT_EQ(made("--size 4096 --seed 18446744073709551615").size(), 4096u);
}

TEST_F(FirmwareImageTest, ReplacesAFileThatIsThere) {
  write("made.bin", "something longer than before");
  EXPECT_EQ(made("--size 0 --malformed no-trailer"), "");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(mDirectory.path()), {}), 1);
}

TEST_F(FirmwareImageTest, ShowsAWellFormedFile) {
  write("product.brand.bin", kGoodFile);
  const Outcome outcome = run("show product.brand.bin");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(outcome.output,
            "File:              product.brand.bin\n"
            "Size:              31 bytes\n" +
                kShownGoodFile);
}

TEST_F(FirmwareImageTest, ShowsTheChecksumOfAnOddFile) {
  write("odd.bin", "\x01\x02\x03");
  const Outcome outcome = run("show odd.bin");
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.output,
            "File:              odd.bin\n"
            "Size:              3 bytes\n"
            "SHA-256:           039058c6f2c0cb492c533b0a4d14ef77cc0f78abccced5287d84a1a2011cfb81\n"
            "Checksum:          0xfefa (bytes fe fa of the burn command)\n"
            "Platform ID:       version 2, length 3, fields 0\n"
            "  too long         for the file before it\n"
            "  malformed        Invalid platform ID version: got 2, expected 3\n"
            "Firmware version:  0, unknown\n"
            "  never sent       every printer counts as up to date\n"
            "For printers with: nothing: the updater looks for no file of this name\n");
}

TEST_F(FirmwareImageTest, FileOfFourGibibytesIsTakenForNothing) {
  write("product.tarn.bin", kGoodFile);
  std::filesystem::resize_file(mDirectory.path() / "product.tarn.bin", std::uintmax_t{1} << 32);
  const Outcome outcome = run("show ./product.tarn.bin");
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(outcome.output,
            "File:              ./product.tarn.bin\n"
            "Size:              4294967296 bytes, of which the updater takes the first 0\n"
            "SHA-256:           e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855\n"
            "Checksum:          0xffff (bytes ff ff of the burn command)\n"
            "Platform ID:       version 0, length 0, fields 0\n"
            "  malformed        Invalid platform ID version: got 0, expected 3\n"
            "Firmware version:  0, unknown\n"
            "  never sent       every printer counts as up to date\n"
            "For printers with: MDL \"KX350T\", LIC \"QT725090\"\n"
            "For printers with: MDL \"KX350T\", LIC empty or absent\n");
}

TEST_F(FirmwareImageTest, OfALargerFileOnlyTheBeginningIsTaken) {
  write("product.brand.bin", kGoodFile);
  std::filesystem::resize_file(mDirectory.path() / "product.brand.bin",
                               (std::uintmax_t{1} << 32) + 31);
  const Outcome outcome = run("show product.brand.bin");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.output,
            "File:              product.brand.bin\n"
            "Size:              4294967327 bytes, of which the updater takes the first 31\n" +
                kShownGoodFile);
}

TEST_F(FirmwareImageTest, VersionsAreReadAsTheUpdaterReadsThem) {
  made("--version-text '     200'");
  EXPECT_EQ(shownVersion(),
            "200, from \"     200\"\n"
            "  sent             where the printer's version is lower\n");
  made("--version-text=-0000005");
  EXPECT_EQ(shownVersion(),
            "4294967291, from \"-0000005\"\n"
            "  sent             where the printer's version is lower\n");
  made("--version 0");
  EXPECT_EQ(shownVersion(),
            "0, from \"00000000\"\n"
            "  never sent       every printer counts as up to date\n");
}

TEST_F(FirmwareImageTest, WhatTheUpdaterCannotLoadIsRefusedWithItsReason) {
  write("empty", "");
  std::filesystem::create_directory(mDirectory.path() / "directory");
  std::filesystem::create_symlink("absent", mDirectory.path() / "link");
  expectNotLoaded("empty", "Firmware file is empty.");
  expectNotLoaded("/dev/zero", "Firmware file is empty.");
  expectNotLoaded("absent",
                  "Failed to make file system reference for firmware file. "
                  "<status=2 => ENOENT; desc: No such file or directory>");
  expectNotLoaded("link",
                  "Failed to get file info. <status=2 => ENOENT; desc: No such file or directory>");
  expectNotLoaded("directory",
                  "Could not get data fork. <status=21 => EISDIR; desc: Is a directory>");
}

TEST_F(FirmwareImageTest, PipesAreNotWaitedFor) {
  ASSERT_EQ(::mkfifo((mDirectory.path() / "pipe").c_str(), 0600), 0);
  expectNotLoaded("pipe", "Firmware file is empty.");
  expectError("make --data pipe a", 1, "cannot read \"pipe\": not a regular file");
}

TEST_F(FirmwareImageTest, ShowsUnprintableFieldsInHexadecimal) {
  write("strange.bin",
        "a\"\\\n\0"
        "0000012\xE4\0"
        "Q\0"
        "left over"
        "\x03\x19"s);
  const Outcome outcome = run("show strange.bin");
  EXPECT_EQ(outcome.status, 0);
  const std::size_t begin = outcome.output.find("Platform ID:");
  EXPECT_EQ(outcome.output.substr(begin),
            "Platform ID:       version 3, length 25, fields 3\n"
            "  field            \"a\\x22\\x5c\\x0a\"\n"
            "  field            \"0000012\\xe4\"\n"
            "  field            \"Q\"\n"
            "  without an end   \"left over\"\n"
            "Firmware version:  0, from a text that is not UTF-8\n"
            "  never sent       every printer counts as up to date\n"
            "For printers with: nothing: the updater looks for no file of this name\n");
}

TEST_F(FirmwareImageTest, ShowsEveryMalformationThatItMakes) {
  for (const std::string kind : {"version-byte", "field-count", "length-byte", "no-trailer"}) {
    made("--malformed " + kind);
    EXPECT_EQ(run("show made.bin").status, 3) << kind;
  }
  made("--version 12 --malformed short-version");
  const Outcome outcome = run("show made.bin");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_NE(outcome.output.find("Firmware version:  12, from \"12\\x00demo\\x00\"\n"),
            std::string::npos)
      << outcome.output;
}

TEST_F(FirmwareImageTest, DemonstrationsOfTheBuildAreWellFormed) {
  for (const std::string name : {"product.brand.bin", "product.tarn.bin"}) {
    const Outcome outcome = run("show '" + builtFile("share/fwupdate/" + name) + "'");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.output.find("Firmware version:  200, from \"00000200\"\n"),
              std::string::npos);
    EXPECT_EQ(contentOf(builtFile("share/fwupdate/" + name)).substr(0, kNotice.size()), kNotice);
  }
}

TEST_F(FirmwareImageTest, HelpNamesEveryCommandOptionAndKind) {
  const Outcome outcome = run("--help");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.errors, "");
  for (const std::string word :
       {"make [OPTIONS] FILE", "show FILE", "--data FILE", "--size BYTES", "--seed NUMBER",
        "--version NUMBER", "--version-text TEXT", "--first-field TEXT", "--last-field TEXT",
        "--malformed KIND", "version-byte", "field-count", "length-byte", "short-version",
        "no-trailer", "Exit status: 0"}) {
    EXPECT_NE(outcome.output.find(word), std::string::npos) << word;
  }
  EXPECT_EQ(run("-h").output, outcome.output);
  EXPECT_EQ(run("help").output, outcome.output);
  EXPECT_EQ(run("show --help").output, outcome.output);
  EXPECT_EQ(run("show -h a").output, outcome.output);
  EXPECT_EQ(run("make --size 1 --help").output, outcome.output);
}

TEST_F(FirmwareImageTest, WrongUsageIsExplained) {
  expectUsageError("", "the command is missing");
  expectUsageError("burn", "there is no command \"burn\"");
  expectUsageError("make", "the name of the file to make is missing");
  expectUsageError("make a b", "one argument too many: \"b\"");
  expectUsageError("make --colour red a", "unknown option --colour");
  expectUsageError("make a --size", "option --size needs a value");
  expectUsageError("make --size 1 --size 2 a", "option --size is given twice");
  expectUsageError("make --malformed nicely a", "there is no malformation \"nicely\"");
  expectUsageError("make --version 1 --version-text x a",
                   "--version and --version-text exclude each other");
  expectUsageError("make --data x --seed 1 a", "--data excludes --size and --seed");
  expectUsageError("make --size 22 a", "a file of 22 bytes cannot hold a trailer of 23");
  expectUsageError("make --first-field " + std::string(241, 'f') + " a",
                   "the fields take 256 bytes with their ends; a platform ID block holds 255");
  expectUsageError("show", "the name of the file to show is missing");
  expectUsageError("show a b", "one argument too many: \"b\"");
  expectUsageError("show --size 1 a", "unknown option --size");
  EXPECT_TRUE(std::filesystem::is_empty(mDirectory.path()));
}

TEST_F(FirmwareImageTest, NumbersOutOfRangeAreRefused) {
  expectUsageError("make --version 100000000 a",
                   "option --version takes a number from 0 to 99999999, not \"100000000\"");
  expectUsageError("make --size 4294967296 a",
                   "option --size takes a number from 0 to 4294967295, not \"4294967296\"");
  expectUsageError("make --seed 18446744073709551616 a",
                   "option --seed takes a number from 0 to 18446744073709551615, not "
                   "\"18446744073709551616\"");
  for (const std::string number : {"", "-1", "+1", " 1", "1k", "x"}) {
    expectUsageError("make --version '" + number + "' a",
                     "option --version takes a number from 0 to 99999999, not \"" + number + "\"");
  }
}

TEST_F(FirmwareImageTest, FileNamesMayBeginWithDashes) {
  expectQuietSuccess("make --size 23 -- --odd");
  EXPECT_EQ(run("show -- --odd").status, 0);
  expectQuietSuccess("make --size 23 -- -h");
  EXPECT_EQ(run("show -- -h").output.substr(0, 22), "File:              -h\n");
}

TEST_F(FirmwareImageTest, FilesThatCannotBeReadOrWrittenAreNamed) {
  expectError("make --data absent a", 1, "cannot open \"absent\": No such file or directory");
  expectError("make --data . a", 1, "cannot read \".\": not a regular file");
  expectError("make absent/a", 1, "cannot create \"absent/a\": No such file or directory");
  std::filesystem::create_directory(mDirectory.path() / "directory");
  expectError("make directory", 1, "cannot write \"directory\": Is a directory");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(mDirectory.path()), {}), 1);
}

TEST_F(FirmwareImageTest, FileThatCannotBeFinishedIsRemoved) {
  const Outcome outcome = runInDirectory("trap '' XFSZ && ulimit -f 8 && '" +
                                         builtProgram("firmware-image") + "' make big.bin");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.errors, "firmware-image: cannot write \"big.bin\": File too large\n");
  EXPECT_TRUE(std::filesystem::is_empty(mDirectory.path()));
}

TEST_F(FirmwareImageTest, OutputThatCannotBeWrittenIsAFailure) {
  write("a", "abc");
  const Outcome outcome = run("show a >/dev/full");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.errors, "firmware-image: cannot write the output\n");
}

}  // namespace
