#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "NetworkWorld.h"

using platform::Data;
using platform::StreamSocket;

SocketRecorder::SocketRecorder(NetworkWorld& world, unsigned long callbackTypes)
    : socket(world.network().createStreamSocket(callbackTypes, &SocketRecorder::callout, this)) {}

void SocketRecorder::callout(StreamSocket* socket, unsigned long type, const Data& address,
                             const void* data, void* info) {
  auto& recorder = *static_cast<SocketRecorder*>(info);
  recorder.toldAddress = address;
  recorder.note(socket, type, data);
}

void SocketRecorder::note(StreamSocket* caller, unsigned long type, const void* data) {
  EXPECT_EQ(caller, socket.get());
  if (type == StreamSocket::kConnectCallback && data == nullptr) {
    told.push_back("connected");
  } else if (type == StreamSocket::kConnectCallback) {
    told.push_back(std::string("failed ") + strerrorname_np(*static_cast<const int*>(data)));
  } else if (type == StreamSocket::kWriteCallback) {
    EXPECT_EQ(data, nullptr);
    told.push_back("writable");
  } else if (type == StreamSocket::kDataCallback) {
    const Data& bytes = *static_cast<const Data*>(data);
    told.push_back("data " + std::to_string(bytes->size()));
    arrived.insert(arrived.end(), bytes->begin(), bytes->end());
  } else {
    ADD_FAILURE() << "unknown callback type " << type;
  }
  if (told.back() == destroyWhenTold) socket.reset();
}
