#include "FakeEvents.h"
#include "FakeToolkit.h"
#include "ToolkitWorld.h"
#include "platform/Platform.h"

using namespace platform::literals;
using platform::ControlId;
using platform::FourCharCode;

namespace {

constexpr ControlId kList{"lPrn"_4cc, 0};

class FakeToolkitWorld final : public ToolkitWorld {
 public:
  platform::Toolkit& toolkit() override { return mToolkit; }
  platform::Events& events() override { return mEvents; }

  void press(const std::string& window, FourCharCode command) override {
    mToolkit.screen().press(window, buttonFor(window, command));
  }
  void chooseMenuItem(FourCharCode command) override { mToolkit.screen().chooseMenuItem(command); }
  void select(platform::ItemId item) override {
    mToolkit.screen().select(kMainWindow, kList, item);
  }
  void closeWindow(const std::string& window) override { mToolkit.screen().closeWindow(window); }
  void widenList(int by) override {
    const platform::FloatRect before{0, 0, 400, 200};
    platform::FloatRect after = before;
    after.width += static_cast<float>(by);
    mToolkit.screen().resize(mToolkit.screen().control(kMainWindow, kList), before, after);
  }

  bool isVisible(const std::string& window) override { return mToolkit.screen().isVisible(window); }
  bool isEnabled(const std::string& window, FourCharCode command) override {
    return mToolkit.screen().isEnabled(window, buttonFor(window, command)) &&
           !mToolkit.screen().isBlocked(window);
  }
  std::optional<std::string> text(const std::string& window, ControlId id) override {
    return mToolkit.screen().text(window, id);
  }
  std::vector<platform::ItemId> rows() override {
    return mToolkit.screen().list(kMainWindow, kList)->rows();
  }

 private:
  static ControlId buttonFor(const std::string& window, FourCharCode command) {
    for (const FakeWindowPlan& plan : productNib().windows) {
      if (plan.name != window) continue;
      for (const FakeControlPlan& control : plan.controls) {
        if (control.command == command) return control.id;
      }
    }
    return {};
  }

  FakeEvents mEvents;
  FakeToolkit mToolkit{[this](const platform::EventTarget& target, const platform::Event& event) {
    return mEvents.send(target, event);
  }};
  platform::PlatformScope mScope{{.events = &mEvents, .toolkit = &mToolkit}};
};

}  // namespace

std::unique_ptr<ToolkitWorld> makeFakeToolkitWorld() {
  return std::make_unique<FakeToolkitWorld>();
}
