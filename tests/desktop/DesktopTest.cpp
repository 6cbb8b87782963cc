#include "DesktopTest.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "Places.h"

using namespace std::chrono_literals;
using desktop::ChildProcess;
using desktop::Node;
using std::chrono::steady_clock;
using std::filesystem::path;

namespace {

// Generous: the sanitizers and a busy machine make everything slow.
constexpr auto kPatience = 40s;
constexpr auto kReadingTime = 1s;
constexpr char kWindowTitle[] = "Printer Firmware Update";
constexpr char kBegins[] = "Connecting to I/O transport...";

path makeOutput() {
  const auto* const info = testing::UnitTest::GetInstance()->current_test_info();
  const char* const results = std::getenv("FW_RESULTS");  // where a virtual machine may write
  const path output = path(results != nullptr ? results : builtFile("test-output")) /
                      (std::string(info->test_suite_name()) + "." + info->name());
  std::filesystem::remove_all(output);
  std::filesystem::create_directories(output);
  return output;
}

path installedProgram() { return builtFile("installed/bin/fwupdate"); }

bool isCell(const Node& node) { return node.role() == "table cell"; }

}  // namespace

DesktopTest::DesktopTest(int width, int height, const std::string& windowManager)
    : mOutput(makeOutput()), mDesktop(mOutput, width, height, windowManager) {}

void DesktopTest::useWayland(desktop::Compositor::Kind kind) {
  mCompositor = std::make_unique<desktop::Compositor>(kind, mDesktop, mOutput);
}

std::unique_ptr<VirtualPrinterProcess> DesktopTest::startPrinter(const std::string& name,
                                                                 std::vector<std::string> options) {
  options.insert(options.begin(),
                 {"--address", "0.0.0.0", "--announce", "daemon", "--name", name, "--burn-seconds",
                  "0.5", "--return-seconds", "0.5", "--hang-up-seconds", "0.2"});
  return std::make_unique<VirtualPrinterProcess>(options);
}

void DesktopTest::startProgram(const ChildProcess::Environment& environment) {
  startProgramAt(installedProgram(), environment);
}

path DesktopTest::copyInstallation() {
  const path prefix = installedProgram().parent_path().parent_path();
  for (const char* part : {"bin", "share/fwupdate"}) {
    std::filesystem::create_directories(mCopy.path() / part);
    std::filesystem::copy(prefix / part, mCopy.path() / part,
                          std::filesystem::copy_options::recursive);
  }
  return mCopy.path() / "bin" / "fwupdate";
}

void DesktopTest::startProgramAt(const path& executable,
                                 const ChildProcess::Environment& environment) {
  launch(executable, environment);
  waitForActive(kWindowTitle);
}

void DesktopTest::startProgramUnseen() {
  launch(installedProgram(), {});
  waitForKeyboard(kWindowTitle);
}

void DesktopTest::waitForKeyboard(const std::string& title) {
  EXPECT_TRUE(desktop::waitUntil([&] { return mDesktop.hasKeyboard(title); }, kPatience)) << title;
}

void DesktopTest::launch(const path& executable, const ChildProcess::Environment& environment) {
  ChildProcess::Environment all = mDesktop.environment();
  if (mCompositor) {
    const ChildProcess::Environment& added = mCompositor->environment();
    all.insert(all.end(), added.begin(), added.end());
  }
  all.emplace_back("LSAN_OPTIONS",
                   "print_suppressions=0:suppressions=" + projectFile("tests/desktop/leaks.supp"));
  all.emplace_back("LC_ALL", "C.UTF-8");
  all.insert(all.end(), environment.begin(), environment.end());
  mProgram = std::make_unique<ChildProcess>(std::vector<std::string>{executable.string(), "-e"},
                                            mOutput / "program.log", all);
}

Node DesktopTest::find(const std::string& what, const std::function<bool(const Node&)>& condition) {
  if (auto node = desktop::findNode(mProgram->pid(), condition, kPatience)) return *node;
  keepPicture("failed");
  const auto application = desktop::findApplication(mProgram->pid());
  throw std::runtime_error("not on the screen: " + what + "\n" +
                           (application ? application->dump() : "the program is not there\n") +
                           mProgram->output());
}

Node DesktopTest::button(const std::string& name) {
  return find("button " + name, [&](const Node& node) {
    return node.role() == "push button" && node.name() == name;
  });
}

Node DesktopTest::enabledButton(const std::string& name) {
  return find("enabled button " + name, [&](const Node& node) {
    return node.role() == "push button" && node.name() == name && node.isEnabled();
  });
}

Node DesktopTest::cell(const std::string& text) {
  return find("cell " + text,
              [&](const Node& node) { return isCell(node) && node.name() == text; });
}

Node DesktopTest::labelWith(const std::string& text) {
  return find("label with " + text, [&](const Node& node) {
    const bool isLabel = node.role() == "label" || node.role() == "alert";
    return isLabel && node.text().find(text) != std::string::npos;
  });
}

Node DesktopTest::progressBar() {
  return find("the progress", [](const Node& node) { return node.role() == "progress bar"; });
}

void DesktopTest::waitForActive(const std::string& title) {
  find("active window " + title,
       [&](const Node& node) { return node.name() == title && node.isActive(); });
}

bool DesktopTest::waitUntilGone(const std::string& role, const std::string& name) {
  return desktop::waitUntil([&] { return !isOnScreen(role, name); }, kPatience);
}

bool DesktopTest::isOnScreen(const std::string& role, const std::string& name) {
  return desktop::findNode(mProgram->pid(), role, name, 0ms).has_value();
}

std::vector<std::string> DesktopTest::printersInList() {
  const auto application = desktop::findApplication(mProgram->pid());
  if (!application) return {};
  std::vector<Node> cells;
  for (const Node& node : application->allShowing()) {
    if (isCell(node)) cells.push_back(node);
  }
  const auto left = [](const Node& node) { return node.extents().x; };
  const auto first = std::min_element(
      cells.begin(), cells.end(), [&](const Node& a, const Node& b) { return left(a) < left(b); });
  std::vector<std::string> names;
  for (const Node& node : cells) {
    if (left(node) == left(*first)) names.push_back(node.name());
  }
  return names;
}

Node::Rectangle DesktopTest::placeOf(const Node& node) const {
  if (!mCompositor) return node.extents();
  Node::Rectangle place = node.extentsInWindow();
  const auto [x, y] = mCompositor->place();
  place.x += x;
  place.y += y;
  return place;
}

void DesktopTest::click(const Node::Rectangle& place, int times) {
  mDesktop.click(mScale * (place.x + place.width / 2), mScale * (place.y + place.height / 2),
                 times);
}

void DesktopTest::askForUpdate(const std::string& printer) {
  click(cell(printer));
  click(enabledButton("Download"));
  button("Download firmware");
}

// The progress may be gone before it is looked for.
void DesktopTest::startUpdate(const std::string& printer) {
  const std::size_t before = timesLogged(kBegins);
  askForUpdate(printer);
  answer("Download firmware");
  EXPECT_TRUE(desktop::waitUntil([&] { return timesLogged(kBegins) > before; }, kPatience));
}

void DesktopTest::answer(const std::string& name) {
  answer(name, [&] { click(button(name)); });
}

void DesktopTest::answerByKey(const std::string& keys, const std::string& name) {
  answer(name, [&] { press(keys); });
}

// Where everything is slow, the sheet may have come later than it seemed.
void DesktopTest::answer(const std::string& name, const std::function<void()>& act) {
  button(name);
  const bool taken = desktop::waitUntil(
      [&] {
        std::this_thread::sleep_for(kReadingTime);
        if (!isOnScreen("push button", name)) return true;
        act();
        return desktop::waitUntil([&] { return !isOnScreen("push button", name); }, 2s);
      },
      kPatience);
  EXPECT_TRUE(taken) << name;
}

void DesktopTest::keepPicture(const std::string& name) {
  mDesktop.screenshot(mOutput / (name + ".png"));
}

std::vector<std::string> DesktopTest::log() const {
  constexpr std::string_view identity = "fwupdate: ";
  std::vector<std::string> entries;
  std::istringstream lines(mProgram->output());
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(identity)) entries.push_back(line.substr(identity.size()));
  }
  return entries;
}

std::size_t DesktopTest::timesLogged(const std::string& entry) const {
  const std::vector<std::string> entries = log();
  return static_cast<std::size_t>(std::count(entries.begin(), entries.end(), entry));
}

bool DesktopTest::waitForLog(const std::string& entry) {
  return desktop::waitUntil([&] { return timesLogged(entry) > 0; }, kPatience);
}

int DesktopTest::answersUntil(const std::function<bool()>& condition) {
  const Node window =
      find("the window", [](const Node& node) { return node.name() == kWindowTitle; });
  int answers = 0;
  steady_clock::duration slowest{};
  const auto isOver = [&] {
    const auto asked = steady_clock::now();
    EXPECT_EQ(window.name(), kWindowTitle);
    slowest = std::max(slowest, steady_clock::now() - asked);
    ++answers;
    return condition();
  };
  EXPECT_TRUE(desktop::waitUntil(isOver, kPatience));
  std::cout << answers << " answers, the slowest after "
            << std::chrono::duration<double, std::milli>(slowest).count() << " ms\n";
  return answers;
}

void replaceFirmware(const path& executable, const path& firmware) {
  const path resources = executable.parent_path().parent_path() / "share/fwupdate";
  std::filesystem::copy_file(firmware, resources / firmware.filename(),
                             std::filesystem::copy_options::overwrite_existing);
}

std::string burnedSha256(const VirtualPrinterProcess& printer) {
  const auto burns = printer.entries("burn");
  return burns.empty() ? "" : burns.front().value("sha256", "");
}
