// Qt's application object without windows, for tests of what stands on Qt's event loop.
#pragma once

#include <QCoreApplication>
#include <array>

class CoreApplication {
 public:
  CoreApplication() = default;
  CoreApplication(const CoreApplication&) = delete;
  CoreApplication& operator=(const CoreApplication&) = delete;

 private:
  // Qt refers to them.
  int mArgumentCount = 1;
  std::array<char, 5> mName{"test"};
  std::array<char*, 2> mArguments{mName.data(), nullptr};

  QCoreApplication mApplication{mArgumentCount, mArguments.data()};
};
