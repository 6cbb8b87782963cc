#include "DeafAddress.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

// One connection that nobody accepts fills the queue of a listener; the host drops all others.
DeafAddress::DeafAddress()
    : mListener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)),
      mWaiting(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  socklen_t size = sizeof address;
  if (bind(mListener, generic, size) != 0 || listen(mListener, 0) != 0 ||
      getsockname(mListener, generic, &size) != 0 || connect(mWaiting, generic, size) != 0) {
    throw std::runtime_error("no address at which nobody answers");
  }
  mPort = ntohs(address.sin_port);
}

DeafAddress::~DeafAddress() {
  close(mWaiting);
  close(mListener);
}
