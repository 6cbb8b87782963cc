// The life of the printers' window: the input says which printers come and go, and what a user does
// meanwhile. After each step rows, cells, their order, the selection, the button and the windows on
// the screen are what a few lines of a model say, and in the end nothing is left on the bus.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "CarbonEventHandler.h"
#include "ConfirmationSheet.h"
#include "DesktopDoubles.h"
#include "FirmwareDownloader.h"
#include "NamedService.h"
#include "NibWrapper.h"
#include "Printer.h"
#include "PrinterListView.h"
#include "PrinterMessages.h"
#include "ProgressSheet.h"
#include "QuillUsbDevice.h"
#include "WindowWrapper.h"
#include "require.h"

namespace {

using namespace platform::literals;
using platform::ItemId;
using platform::Text;

constexpr const char* kMainWindow = "PrinterSelectWindow";
constexpr platform::ControlId kList{"lPrn"_4cc, 0};
constexpr platform::ControlId kOkButton{0, 2};
constexpr platform::ControlId kYesOrClose{"btn "_4cc, 1};
constexpr platform::ControlId kNo{"btn "_4cc, 2};
constexpr std::array<platform::FourCharCode, 3> kColumns{"lcNm"_4cc, "lcTy"_4cc, "lcId"_4cc};

constexpr std::size_t kMostRows = 12;

enum class Sheet { None, Question, Progress, Failed, UpToDate };

struct Row {
  std::array<std::optional<std::string>, 3> cells;  // in the order of the columns
  std::optional<std::size_t> device;                // of a USB printer
  bool isRemoved = false;
};

struct Model {
  std::vector<Row> rows;
  ItemId selected = 0;
  std::size_t column = 0;  // by which the rows are sorted
  Sheet sheet = Sheet::None;
  std::string named;  // in the progress sheet

  std::vector<ItemId> shown() const {
    std::vector<ItemId> items;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      if (!rows[i].isRemoved) items.push_back(static_cast<ItemId>(i + 1));
    }
    return items;
  }

  const Row& row(ItemId item) const { return rows[item - 1]; }

  // The item of the first row that is still there and fits; 0 for none.
  template <typename Fits>
  ItemId first(Fits fits) const {
    for (const ItemId item : shown()) {
      if (fits(row(item))) return item;
    }
    return 0;
  }

  void remove(ItemId item) {
    rows[item - 1].isRemoved = true;
    if (selected == item) selected = 0;
  }

  void begin() {
    const Row& printer = row(selected);
    named = printer.cells[0].value_or("(null)") + " (" + printer.cells[2].value_or("(null)") + ")";
    sheet = Sheet::Progress;
  }
};

class Life {
 public:
  Life() {
    mDoubles.files.addDirectory("/resources");
    mDoubles.files.addFile("/resources/product.brand.bin", kFirmware200);
    mProgram.emplace();
    mDoubles.toolkit.setMenuBarFromNib(mProgram->nib.get(), Text::fromUtf8("MenuBar"));
    mDoubles.toolkit.showWindow(mProgram->window.get());
  }

  void step(std::uint8_t code, std::uint8_t operand) {
    mDoubles.log.takeEntries();
    mDoubles.takeToolkitCalls();
    switch (code % 12) {
      case 0:
        if (mModel.rows.size() < kMostRows) addNetworkPrinter(operand);
        break;
      case 1:
        if (mModel.rows.size() < kMostRows) addUsbPrinter(operand);
        break;
      case 2:
        removeNetworkPrinter(operand);
        break;
      case 3:
        if (!mDevices.empty()) removeUsbPrinter(operand % mDevices.size());
        break;
      case 4:
        select(static_cast<ItemId>(operand % (mModel.rows.size() + 2)));
        break;
      case 5:
        sortBy(operand % kColumns.size());
        break;
      case 6:
        pressDownload(operand % 2 == 0);
        break;
      case 7:
        pressYes();
        break;
      case 8:
        pressNo();
        break;
      case 9:
        pressClose();
        break;
      case 10:
        if (mModel.sheet == Sheet::Progress) endDownload(operand);
        break;
      default:
        mDoubles.events.processCommand({0, "none"_4cc, 0, 0});
        require(lastEntry() == (LogEntry{5, "Unknown UI command: 1852796517"}));
    }
    check();
  }

  void end() {
    mProgram.reset();
    mDevices.clear();
    mDoubles.runLoop.runAllLater();
    require(mDoubles.usb.problems().empty());
    require(mDoubles.runLoop.timers() == 0 && !mDoubles.network.isOpen());
    require(mDoubles.events.installedHandlers() == 0);
  }

 private:
  struct Program {
    FirmwareDownloader downloader;
    NibWrapper nib;
    WindowWrapper window{Text::fromUtf8(kMainWindow), nib};
    ConfirmationSheet question{nib.get(), window.get()};
    PrinterListView view{window.get()};
    ProgressSheet progress{nib.get(), window.get()};
    CarbonEventHandler handler{window.get(), view, progress, question, downloader};

    Program() { handler.initialise(); }
  };

  static std::string nameOf(std::uint8_t choice) {
    constexpr std::array<const char*, 7> kNames{"Office", "office", "Lab 2",        "Lab 10",
                                                "",       "Zoë",    "Veltra KX350T"};
    return kNames[choice % kNames.size()];
  }

  FakeScreen& screen() { return mDoubles.screen(); }
  FakeListControl& list() { return *screen().list(kMainWindow, kList); }
  LogEntry lastEntry() { return mDoubles.log.entries().back(); }

  void requireLogged(std::size_t fromTheEnd, const std::string& text) {
    const std::vector<LogEntry>& entries = mDoubles.log.entries();
    require(entries.size() >= fromTheEnd && entries[entries.size() - fromTheEnd].text == text);
  }

  void addNetworkPrinter(std::uint8_t choice) {
    const auto last = static_cast<std::uint8_t>(choice >> 4);
    const bool hasAddress = last != 15;
    const std::string name = nameOf(choice);
    mProgram->view.addBonjourPrinter(
        Text::fromUtf8(name), hasAddress ? platform::makeData({16, 2, 0x23, 0x8C, 192, 0, 2, last,
                                                               0, 0, 0, 0, 0, 0, 0, 0})
                                         : nullptr);
    Row row{{name, "Bonjour", std::nullopt}, std::nullopt};
    if (hasAddress) row.cells[2] = "192.0.2." + std::to_string(last);
    added(row);
  }

  void addUsbPrinter(std::uint8_t choice) {
    const std::string serial = "VX" + std::to_string(choice % 16);
    mDevices.emplace_back();
    mDevices.back().init(mDoubles.usb.attach(fakePrinter(serial)), 0);
    mProgram->view.addUsbPrinter(mDevices.back());
    added({{"Veltra KX350T", "USB", serial}, mDevices.size() - 1});
  }

  void added(const Row& row) {
    mModel.rows.push_back(row);
    requireLogged(1, "Adding printer with ID=" + std::to_string(mModel.rows.size()));
  }

  void removeNetworkPrinter(std::uint8_t choice) {
    const std::string name = nameOf(choice);
    NamedService service(name);
    mProgram->view.removeBonjourPrinter(&service);
    removed(mModel.first([&](const Row& row) { return !row.device && row.cells[0] == name; }));
  }

  void removeUsbPrinter(std::size_t device) {
    mProgram->view.removeUsbPrinter(mDevices[device]);
    const ItemId item = mModel.first([&](const Row& row) { return row.device == device; });
    removed(item);
    if (item == 0) {
      requireLogged(1,
                    "Failed to remove USB printer from list. Cannot find the matching printer in "
                    "the list.");
    }
  }

  void removed(ItemId item) {
    if (item == 0) return;
    mModel.remove(item);
    requireLogged(1, "Removing printer with ID=" + std::to_string(item));
  }

  void select(ItemId item) {
    const bool isThere = item == 0 || (item <= mModel.rows.size() && !mModel.row(item).isRemoved);
    const bool canSelect = isThere && mModel.sheet == Sheet::None;
    require(screen().select(kMainWindow, kList, item) == canSelect);
    if (canSelect) mModel.selected = item;
  }

  void sortBy(std::size_t column) {
    mDoubles.toolkit.setDataBrowserSortProperty(screen().control(kMainWindow, kList),
                                                kColumns[column]);
    mModel.column = column;
  }

  // The button, or the command of the menu, which can be chosen without a selection.
  void pressDownload(bool isButton) {
    const bool isBlocked = mModel.sheet != Sheet::None;
    if (isButton) {
      require(screen().press(kMainWindow, kOkButton) == (!isBlocked && mModel.selected != 0));
    } else {
      require(screen().chooseMenuItem("Down"_4cc) == !isBlocked);
    }
    if (isBlocked) return;
    if (mModel.selected == 0) {
      if (!isButton) requireLogged(1, "Failed to download firmware: Invalid list selection");
    } else if (mModel.row(mModel.selected).device) {
      mModel.begin();
    } else {
      mModel.sheet = Sheet::Question;
    }
  }

  void pressYes() {
    const bool isAsked = mModel.sheet == Sheet::Question;
    require(screen().press("ConfirmDownloadSheet", kYesOrClose) == isAsked);
    if (!isAsked) return;
    mModel.sheet = Sheet::None;
    if (mModel.selected != 0) {
      mModel.begin();
    } else {
      requireLogged(1, "Failed to download firmware: Invalid list selection");
    }
  }

  void pressNo() {
    const bool isAsked = mModel.sheet == Sheet::Question;
    require(screen().press("ConfirmDownloadSheet", kNo) == isAsked);
    if (isAsked) mModel.sheet = Sheet::None;
  }

  void pressClose() {
    const bool hasFailed = mModel.sheet == Sheet::Failed;
    const bool isUpToDate = mModel.sheet == Sheet::UpToDate;
    require(screen().press("FailedSheet", kYesOrClose) == hasFailed);
    require(screen().press("UpToDateSheet", kYesOrClose) == isUpToDate);
    if (hasFailed || isUpToDate) mModel.sheet = Sheet::None;
  }

  void endDownload(std::uint8_t how) {
    if (!mDoubles.network.isOpen()) return failOnUsb();
    mDoubles.network.setSendResult(how % 3 == 0 ? 32 : 0);
    require(mDoubles.network.connectionEnds());
    if (how % 3 == 0) {
      mModel.sheet = Sheet::Failed;
      return;
    }
    for (int message = 0; message < 2; ++message) mDoubles.network.becomesWritable();
    arrives(kDeviceIdResponse);
    arrives(how % 3 == 1 ? bytes("\0\x24MDL:KX350T;LIC:QT725013;FWVER:200;") : kDeviceId100);
    if (how % 3 == 1) {
      mModel.sheet = Sheet::UpToDate;
      return;
    }
    for (int message = 0; message < 3; ++message) mDoubles.network.becomesWritable();
    arrives(kBurnResponse);
    mModel.sheet = Sheet::None;
  }

  void arrives(const std::string& bytes) {
    require(mDoubles.network.arrives({bytes.begin(), bytes.end()}));
    mDoubles.events.deliverAll();
  }

  void failOnUsb() {
    constexpr auto kAborted = static_cast<platform::IOReturn>(0xE00002EBu);
    mDoubles.events.deliverAll();
    require(mDoubles.usb.transfers().size() == 1);
    mDoubles.usb.failTransfer(kAborted);
    mDoubles.runLoop.runAllLater();
    mDoubles.events.deliverAll();
    mModel.sheet = Sheet::Failed;
  }

  void check() {
    checkRows();
    require(mProgram->view.getListSelection() == mModel.selected);
    require(screen().isEnabled(kMainWindow, kOkButton) == (mModel.selected != 0));
    try {
      const Printer* selected = mProgram->view.getSelected();
      require(selected == &mProgram->view.printer(mModel.selected));
    } catch (const std::out_of_range&) {
      require(mModel.selected == 0);
    }
    checkWindows();
  }

  void checkRows() {
    std::vector<ItemId> rows = list().rows();
    for (std::size_t i = 1; i < rows.size(); ++i) checkOrder(rows[i - 1], rows[i]);
    std::ranges::sort(rows);
    require(rows == mModel.shown());
    for (const ItemId item : rows) {
      for (std::size_t column = 0; column < kColumns.size(); ++column) {
        const FakeListControl::Cell cell = list().cell(item, kColumns[column]);
        const std::optional<std::string>& expected = mModel.row(item).cells[column];
        require(cell.status == 0 && cell.given && cell.text.isNull() == !expected.has_value());
        require(!expected || cell.text.utf8() == *expected);
      }
    }
  }

  // What has no text is neither before nor behind anything.
  void checkOrder(ItemId before, ItemId behind) {
    const auto& first = mModel.row(before).cells;
    const auto& second = mModel.row(behind).cells;
    const auto compare = [&](std::size_t column, platform::Comparison how) {
      return platform::compare(Text::fromUtf8(*first[column]), Text::fromUtf8(*second[column]),
                               how);
    };
    if (mModel.column == 1) {
      require(*first[1] <= *second[1]);
      require(*first[1] != *second[1] || before < behind);
    } else if (mModel.column == 0) {
      const int order = platform::compare(Text::fromUtf8(*first[0]), Text::fromUtf8(*second[0]));
      require(order <= 0);
      if (order == 0 && everyRowHasInfo()) require(compare(2, platform::Comparison::Numeric) <= 0);
    } else if (everyRowHasInfo()) {
      require(compare(2, platform::Comparison::Numeric) <= 0);
    }
  }

  bool everyRowHasInfo() const {
    return mModel.first([](const Row& row) { return !row.cells[2]; }) == 0;
  }

  void checkWindows() {
    const bool isAlert = mModel.sheet == Sheet::Failed || mModel.sheet == Sheet::UpToDate;
    const bool isProgress = mModel.sheet == Sheet::Progress || isAlert;
    require(screen().isVisible(kMainWindow));
    require(screen().isBlocked(kMainWindow) == (mModel.sheet != Sheet::None));
    require(screen().isVisible("ConfirmDownloadSheet") == (mModel.sheet == Sheet::Question));
    require(screen().isVisible("ProgressSheet") == isProgress);
    require(screen().isBlocked("ProgressSheet") == isAlert);
    require(screen().exists("FailedSheet") == (mModel.sheet == Sheet::Failed));
    require(screen().exists("UpToDateSheet") == (mModel.sheet == Sheet::UpToDate));
    if (isProgress) require(screen().text("ProgressSheet", {"tPNm"_4cc, 0}) == mModel.named);
  }

  DesktopDoubles mDoubles;
  std::vector<QuillUsbDevice> mDevices;
  std::optional<Program> mProgram;
  Model mModel;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Life life;
  for (std::size_t i = 0; i + 1 < size; i += 2) life.step(data[i], data[i + 1]);
  life.end();
  return 0;
}
