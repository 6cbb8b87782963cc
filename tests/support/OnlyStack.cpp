#include "OnlyStack.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

OnlyStack::OnlyStack() : mSocket(socket(AF_INET6, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in6 everywhere{};
  everywhere.sin6_family = AF_INET6;
  everywhere.sin6_port = htons(5353);
  mHolds = bind(mSocket, reinterpret_cast<const sockaddr*>(&everywhere), sizeof everywhere) == 0;
}

OnlyStack::~OnlyStack() { close(mSocket); }
