#include "Pipe.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

Pipe::Pipe() {
  if (pipe2(mEnds.data(), O_CLOEXEC) != 0) {
    throw std::system_error(errno, std::generic_category(), "Unable to start a process");
  }
}

Pipe::~Pipe() {
  mWatch.reset();
  for (const int end : mEnds) {
    if (end >= 0) close(end);
  }
}

void Pipe::startReading(platform::RunLoop& runLoop, std::function<void()> ready) {
  close(std::exchange(mEnds[1], -1));
  fcntl(mEnds[0], F_SETFL, O_NONBLOCK);
  mWatch = runLoop.watch(mEnds[0], platform::RunLoop::Interest::Readable, std::move(ready));
}

std::vector<std::string> Pipe::takeLines() {
  std::array<char, 4096> buffer;
  const ssize_t count = read(mEnds[0], buffer.data(), buffer.size());
  if (count > 0) mRest.append(buffer.data(), static_cast<std::size_t>(count));
  if (count == 0) mWatch.reset();

  std::vector<std::string> lines;
  for (std::size_t end = mRest.find('\n'); end != std::string::npos; end = mRest.find('\n')) {
    lines.push_back(mRest.substr(0, end));
    mRest.erase(0, end + 1);
  }
  if (!mRest.empty() && (isAtEnd() || mRest.size() >= kLongestLine)) {
    lines.push_back(std::exchange(mRest, {}));
  }
  return lines;
}
