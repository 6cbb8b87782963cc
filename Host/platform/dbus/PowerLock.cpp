#include "platform/dbus/PowerLock.h"

#include <new>
#include <optional>
#include <utility>

#include "platform/dbus/IdleInhibition.h"

namespace platform {
namespace {

class PowerLock final : public DownloadObserver {
 public:
  PowerLock(RunLoop& runLoop, PowerLockTexts texts, std::function<void(const std::string&)> report)
      : mRunLoop(runLoop),
        mTexts(std::move(texts)),
        mReport(std::move(report)),
        mIdle(runLoop, mTexts) {}

  // Where there is no memory for it, the download goes on without.
  void downloadBegan(const Text&, const Text&) noexcept override {
    try {
      mSleep.emplace(mRunLoop, mTexts, [this](const std::string& entry) {
        if (const auto report = std::exchange(mReport, nullptr)) report(entry);
      });
      mIdle.begin();
    } catch (const std::bad_alloc&) {
      downloadEnded(DownloadOutcome::Failed);
    }
  }

  void downloadEnded(DownloadOutcome) noexcept override {
    mSleep.reset();
    mIdle.end();
  }

  void phaseBegan(DownloadPhase, std::chrono::milliseconds) noexcept override {}
  void versionsKnown(unsigned int, unsigned int) noexcept override {}
  void bytesHandedOver(std::size_t, std::size_t) noexcept override {}
  void errorLogged(const std::string&) noexcept override {}

 private:
  RunLoop& mRunLoop;
  const PowerLockTexts mTexts;
  std::function<void(const std::string&)> mReport;  // null when it has been called
  std::optional<SleepLock> mSleep;
  IdleInhibition mIdle;
};

}  // namespace

std::unique_ptr<DownloadObserver> makePowerLock(RunLoop& runLoop, PowerLockTexts texts,
                                                std::function<void(const std::string&)> report) {
  return std::make_unique<PowerLock>(runLoop, std::move(texts), std::move(report));
}

}  // namespace platform
