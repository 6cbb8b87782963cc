// Printers that are named by what the resolver knows, which here are a few hosts of these tests.
#include <gmock/gmock.h>

#include <fstream>

#include "TemporaryDirectory.h"
#include "Tool.h"

namespace {

class FwupdatectlHostNames : public testing::Test {
 protected:
  FwupdatectlHostNames() {
    std::ofstream(mDirectory.path() / "hosts") << "127.0.0.1 four.example\n"
                                                  "2001:db8::6 six.example\n";
    std::ofstream(mDirectory.path() / "services") << "hosts: files\n";
  }

  Outcome updateByName(const std::string& address) const {
    const std::string directory = mDirectory.path().string();
    return runInShell("unshare --mount sh -c 'mount --bind " + directory +
                      "/hosts /etc/hosts && mount --bind " + directory +
                      "/services /etc/nsswitch.conf && exec \"$@\"' - " + kToolInShell +
                      " update --yes --quiet --address " + address + " </dev/null");
  }

 private:
  TemporaryDirectory mDirectory;
};

TEST_F(FwupdatectlHostNames, LeadToTheirIPv4Address) {
  VirtualPrinterProcess printer({"--burn-seconds", "0.1"});
  const Outcome outcome = updateByName("four.example:" + std::to_string(printer.port()));
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(outcome.status, 0);
  printer.waitFor("burn");
}

TEST_F(FwupdatectlHostNames, WithIPv6AloneAreNotReached) {
  const Outcome outcome = updateByName("six.example");
  EXPECT_EQ(outcome.errors,
            "six.example:9100: failed: The host name \"six.example\" has IPv6 "
            "addresses only: printers are reached by IPv4.\n");
  EXPECT_EQ(outcome.status, 1);
}

TEST_F(FwupdatectlHostNames, ThatAreNotKnownFail) {
  VirtualPrinterProcess printer({"--burn-seconds", "0.1"});
  const Outcome outcome =
      updateByName("nowhere.example --address 127.0.0.1:" + std::to_string(printer.port()));
  EXPECT_EQ(outcome.errors,
            "nowhere.example:9100: failed: The host name "
            "\"nowhere.example\" is not known.\n");
  EXPECT_EQ(outcome.status, 1);
  printer.waitFor("burn");
}

}  // namespace
