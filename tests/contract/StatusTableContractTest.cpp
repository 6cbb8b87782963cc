// The texts of result codes; and the double.
#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <clocale>
#include <fstream>
#include <memory>
#include <ostream>
#include <set>
#include <sstream>
#include <string>

#include "FakeStatusTable.h"
#include "Places.h"
#include "platform/posix/PosixStatusTable.h"

namespace {

using platform::OSStatus;
using platform::StatusTable;

struct StatusTableImplementation {
  const char* name;
  std::unique_ptr<StatusTable> (*make)();
};

void PrintTo(const StatusTableImplementation& implementation, std::ostream* out) {
  *out << implementation.name;
}

std::unique_ptr<StatusTable> makeFakeStatusTable() {
  auto table = std::make_unique<FakeStatusTable>();
  table->define(ENOENT, "ENOENT", "No such file or directory");
  return table;
}

class StatusTableContract : public testing::TestWithParam<StatusTableImplementation> {
 protected:
  std::unique_ptr<StatusTable> mTable = GetParam().make();
};

TEST_P(StatusTableContract, KnownCodeHasANameAndADescription) {
  EXPECT_EQ(mTable->name(2), "ENOENT");
  EXPECT_EQ(mTable->description(2), "No such file or directory");
}

TEST_P(StatusTableContract, UnknownCodeHasNeither) {
  for (const OSStatus status : {-1, 41, 100000, INT_MAX, INT_MIN}) {
    EXPECT_EQ(mTable->name(status), "") << status;
    EXPECT_EQ(mTable->description(status), "") << status;
  }
}

INSTANTIATE_TEST_SUITE_P(StatusTable, StatusTableContract,
                         testing::Values(StatusTableImplementation{"posix",
                                                                   &platform::makePosixStatusTable},
                                         StatusTableImplementation{"fake", &makeFakeStatusTable}));

class PosixStatusTableTest : public testing::Test {
 protected:
  std::string texts(OSStatus status) const {
    return mTable->name(status) + ": " + mTable->description(status);
  }

  std::unique_ptr<StatusTable> mTable = platform::makePosixStatusTable();
};

TEST_F(PosixStatusTableTest, SuccessHasAName) { EXPECT_EQ(texts(0), "noErr: No error"); }

TEST_F(PosixStatusTableTest, ErrorsOfTheHostAreNamed) {
  EXPECT_EQ(texts(EACCES), "EACCES: Permission denied");
  EXPECT_EQ(texts(EIO), "EIO: Input/output error");
  EXPECT_EQ(texts(EISDIR), "EISDIR: Is a directory");
  EXPECT_EQ(texts(ETIMEDOUT), "ETIMEDOUT: Connection timed out");
  EXPECT_EQ(texts(ECONNREFUSED), "ECONNREFUSED: Connection refused");
}

TEST_F(PosixStatusTableTest, EveryErrorOfTheHostHasBothTexts) {
  const std::set<OSStatus> unused{41, 58};
  for (OSStatus status = 1; status <= EHWPOISON; ++status) {
    EXPECT_EQ(mTable->name(status).empty(), unused.contains(status)) << status;
    EXPECT_EQ(mTable->description(status).empty(), unused.contains(status)) << status;
  }
}

TEST_F(PosixStatusTableTest, TextsDoNotFollowTheLocale) {
  if (std::setlocale(LC_ALL, "C.UTF-8") == nullptr) GTEST_SKIP() << "no locale C.UTF-8 here";
  ::setenv("LANGUAGE", "de", 1);
  EXPECT_EQ(texts(ENOENT), "ENOENT: No such file or directory");
}

TEST_F(PosixStatusTableTest, OwnCodesAreNamed) {
  EXPECT_EQ(texts(-1708), "errAEEventNotHandled: No handler took the session's event");
  EXPECT_EQ(texts(-4971), "errDataBrowserItemNotFound: The list has no such row");
  EXPECT_EQ(texts(-4972), "errDataBrowserPropertyNotFound: The list has no column of this code");
  EXPECT_EQ(texts(-4975), "errDataBrowserItemNotAdded: The row could not be added to the list");
  EXPECT_EQ(texts(-5600), "errInvalidWindowRef: There is no such window");
  EXPECT_EQ(texts(-5604), "controlPropertyNotFoundErr: The control carries no such value");
  EXPECT_EQ(texts(-4979),
            "errDataBrowserPropertyNotSupported: The list has no text for this column");
  EXPECT_EQ(texts(-9870),
            "eventParameterNotFoundErr: The event has no such parameter, or it is of another type");
  EXPECT_EQ(texts(-9874), "eventNotHandledErr: No handler took the event");
  EXPECT_EQ(texts(-10960),
            "kIBCarbonRuntimeCantFindNibFile: The interface file could not be found");
  EXPECT_EQ(texts(-10961),
            "kIBCarbonRuntimeObjectNotOfRequestedType: The object in the interface file is of "
            "another type");
  EXPECT_EQ(texts(-10962),
            "kIBCarbonRuntimeCantFindObject: The interface file holds no such object");
  EXPECT_EQ(texts(-30584), "errControlNotFound: The window has no such control");
}

// A code that is added to the header needs its texts here, too.
TEST_F(PosixStatusTableTest, EveryOwnCodeHasBothTexts) {
  std::ifstream header(projectFile("Host/platform/Status.h"));
  int definitions = 0;
  for (std::string line; std::getline(header, line);) {
    std::istringstream words(line);
    std::string inlineWord, constexprWord, type, code, equals;
    OSStatus status = 0;
    words >> inlineWord >> constexprWord >> type >> code >> equals >> status;
    if (!words || type != "OSStatus" || equals != "=") continue;
    ++definitions;
    EXPECT_EQ(mTable->name(status), code);
    EXPECT_NE(mTable->description(status), "") << line;
  }
  EXPECT_GE(definitions, 14);
}

}  // namespace
