// Any bytes may stand for a printer's socket address: the list shows the address in them, or
// nothing, and a connection is begun to a whole IPv4 record only.
#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "BonjourPrinter.h"
#include "FakeRunLoop.h"
#include "platform/Network.h"
#include "platform/Platform.h"
#include "platform/Text.h"
#include "platform/posix/PosixNetwork.h"
#include "require.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

void checkShownAddress(const platform::Text& shown, const Bytes& record) {
  const int family = record.size() < 2 ? 0 : record[1];
  if (family == 2 && record.size() >= 8) {
    std::string dotted;
    for (std::size_t i = 4; i < 8; ++i) dotted += (i > 4 ? "." : "") + std::to_string(record[i]);
    require(shown.utf8() == dotted);
  } else if (family == 30 && record.size() >= 24) {
    std::array<std::uint8_t, 16> address{};
    require(::inet_pton(AF_INET6, std::string(shown.utf8()).c_str(), address.data()) == 1);
    require(std::equal(address.begin(), address.end(), record.begin() + 8));
  } else {
    require(shown.isNull());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FakeRunLoop runLoop;
  const std::unique_ptr<platform::Network> network = platform::makePosixNetwork(runLoop);
  platform::Platform surfaces;
  surfaces.network = network.get();
  const platform::PlatformScope scope(surfaces);

  const Bytes record(data, data + size);
  const platform::Data address = platform::makeData(record);
  const BonjourPrinter printer(platform::Text::fromUtf8("Printer"), address);
  checkShownAddress(printer.getInfo(), record);

  const bool isWholeIPv4 = size >= 16 && record[1] == 2;
  if (isWholeIPv4) return 0;
  const auto socket = network->createStreamSocket(15, nullptr, nullptr);
  const int error = socket->connectInBackground(address);
  require(error == EINVAL || error == EAFNOSUPPORT);
  require(runLoop.enabledWatches() == 0);
  return 0;
}
