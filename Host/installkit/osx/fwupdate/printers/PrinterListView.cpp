#include "PrinterListView.h"

#include <cmath>
#include <cstdint>
#include <exception>
#include <ostream>
#include <stdexcept>

#include "ErrorMessage.h"
#include "Log.h"
#include "platform/Platform.h"

using namespace platform::literals;
using platform::Comparison;
using platform::ControlRef;
using platform::FloatRect;
using platform::FourCharCode;
using platform::ItemId;
using platform::OSStatus;
using platform::Text;

namespace {

constexpr platform::ControlId kListControlId{"lPrn"_4cc, 0};
constexpr platform::ControlId kOkButtonId{0, 2};

constexpr FourCharCode kNameColumn = "lcNm"_4cc;
constexpr FourCharCode kTypeColumn = "lcTy"_4cc;
constexpr FourCharCode kInfoColumn = "lcId"_4cc;

constexpr FourCharCode kPropertyCreator = "MjFd"_4cc;
constexpr FourCharCode kListPropertyTag = "ldPl"_4cc;

platform::Toolkit& toolkit() { return *platform::current().toolkit; }

void CheckStatus(const char* name, OSStatus status) {
  if (status != platform::noErr) throw std::runtime_error(buildErrorMessage(name, status));
}

ControlRef findListControl(platform::WindowRef window) {
  ControlRef control = ControlRef::None;
  CheckStatus("Failed to get list control.",
              toolkit().getControlById(window, kListControlId, control));
  return control;
}

// The list that rides on the control; null when none does.
OSStatus getPrinterList(ControlRef control, const PrinterList*& printers) {
  void* value = nullptr;
  const OSStatus status =
      toolkit().getControlProperty(control, kPropertyCreator, kListPropertyTag, value);
  printers = static_cast<const PrinterList*>(value);
  return status;
}

bool isLess(const Text& a, const Text& b, Comparison comparison) {
  return a && b && platform::compare(a, b, comparison) < 0;
}

bool isNameLess(const PrinterList& printers, std::size_t a, std::size_t b) {
  const Text nameA = printers.getName(a);
  const Text nameB = printers.getName(b);
  if (!nameA || !nameB) return false;
  const int order = platform::compare(nameA, nameB);
  if (order != 0) return order < 0;
  return isLess(printers.getInfo(a), printers.getInfo(b), Comparison::Numeric);
}

// A column's width is a 16-bit number that wraps around.
std::uint16_t changedWidth(std::uint16_t width, float delta) {
  if (!std::isfinite(delta)) return width;
  constexpr double kWidths = 65536.0;
  const int steps = static_cast<int>(std::fmod(std::trunc(static_cast<double>(delta)), kWidths));
  return static_cast<std::uint16_t>(width + steps);
}

// The name column absorbs the whole change of the control's width.
void resizeNameColumn(const platform::Event& event) {
  ControlRef control = ControlRef::None;
  CheckStatus("GetEventParameter(kEventParamDirectObject)",
              event.getParameter(platform::kEventParamDirectObject, control));
  FloatRect original;
  CheckStatus("GetEventParameter(kEventParamOriginalBounds)",
              event.getParameter(platform::kEventParamOriginalBounds, original));
  FloatRect current;
  CheckStatus("GetEventParameter(kEventParamCurrentBounds)",
              event.getParameter(platform::kEventParamCurrentBounds, current));
  std::uint16_t width = 0;
  CheckStatus("GetDataBrowserTableViewNamedColumnWidth",
              toolkit().getNamedColumnWidth(control, kNameColumn, width));
  CheckStatus("SetDataBrowserTableViewNamedColumnWidth",
              toolkit().setNamedColumnWidth(control, kNameColumn,
                                            changedWidth(width, current.width - original.width)));
}

}  // namespace

// The control is set up in the body, where the object already counts as built: when a step fails,
// the destructor undoes the steps before it.
PrinterListView::PrinterListView(platform::WindowRef window)
    : PrinterListView(findListControl(window)) {
  attachToControl();
}

PrinterListView::PrinterListView(ControlRef control) : mControl(control) {}

PrinterListView::~PrinterListView() {
  platform::Events& events = *platform::current().events;
  if (mResizeHandler != 0) events.removeHandler(mResizeHandler);
  if (mDisposeHandler != 0) events.removeHandler(mDisposeHandler);
  terminate();
}

void PrinterListView::attachToControl() {
  platform::Events& events = *platform::current().events;
  CheckStatus("SetControlProperty", toolkit().setControlProperty(mControl, kPropertyCreator,
                                                                 kListPropertyTag, &mPrinters));

  constexpr platform::EventSpec boundsChanged[] = {platform::kControlBoundsChangedEvent};
  CheckStatus(
      "InstallEventHandler (resize)",
      events.installHandler(mControl, boundsChanged, resizeEventHandler, nullptr, mResizeHandler));
  constexpr platform::EventSpec disposed[] = {platform::kControlDisposedEvent};
  CheckStatus(
      "InstallEventHandler (dispose)",
      events.installHandler(mControl, disposed, disposeEventHandler, this, mDisposeHandler));

  CheckStatus("DataBrowserChangeAttributes",
              toolkit().dataBrowserChangeAttributes(
                  mControl, platform::kDataBrowserListViewAlternatingRowColors, 0));

  platform::DataBrowserCallbacks callbacks;
  CheckStatus("InitDataBrowserCallbacks", toolkit().initDataBrowserCallbacks(callbacks));
  callbacks.itemData = itemDataCallback;
  callbacks.itemCompare = itemCompareCallback;
  callbacks.itemNotification = itemNotificationCallback;
  CheckStatus("SetDataBrowserCallbacks", toolkit().setDataBrowserCallbacks(mControl, callbacks));
  CheckStatus("SetDataBrowserSortProperty",
              toolkit().setDataBrowserSortProperty(mControl, kNameColumn));
}

void PrinterListView::addUsbPrinter(QuillUsbDevice& device) {
  mPrinters.addUsbPrinter(device);
  handleAddPrinter();
}

void PrinterListView::addBonjourPrinter(const Text& name, const platform::Data& address) {
  mPrinters.addBonjourPrinter(name, address);
  handleAddPrinter();
}

void PrinterListView::removeUsbPrinter(QuillUsbDevice& device) {
  try {
    handleRemovePrinter(mPrinters.find(device));
  } catch (const std::runtime_error& error) {
    Log<3>() << "Failed to remove USB printer from list. " << error.what() << std::flush;
  }
}

void PrinterListView::removeBonjourPrinter(platform::NetService* service) {
  try {
    handleRemovePrinter(mPrinters.find(service));
  } catch (const std::runtime_error&) {
    return;
  }
}

void PrinterListView::handleAddPrinter() {
  const auto item = static_cast<ItemId>(mPrinters.size());
  Log<5>() << "Adding printer with ID=" << std::dec << item << std::flush;
  toolkit().addDataBrowserItem(mControl, item);
}

void PrinterListView::handleRemovePrinter(std::size_t index) {
  const auto item = static_cast<ItemId>(index + 1);
  toolkit().removeDataBrowserItem(mControl, item);
  Log<5>() << "Removing printer with ID=" << std::dec << item << std::flush;
  mPrinters.setRemoved(index);
}

const Printer& PrinterListView::printer(ItemId item) const {
  return *mPrinters.get(static_cast<std::size_t>(item) - 1);
}

Printer* PrinterListView::getSelected() const {
  const ItemId item = getListSelection();
  if (item == 0) throw std::out_of_range("Invalid list selection");
  return mPrinters.get(item - 1);
}

ItemId PrinterListView::getListSelection() const {
  ItemId first = 0;
  ItemId last = 0;
  toolkit().getSelectionAnchor(mControl, first, last);
  return first;
}

void PrinterListView::terminate() {
  platform::DataBrowserCallbacks none;
  toolkit().initDataBrowserCallbacks(none);
  toolkit().setDataBrowserCallbacks(mControl, none);
}

OSStatus PrinterListView::resizeEventHandler(platform::EventHandlerCallRef,
                                             const platform::Event& event, void*) {
  if (event.kind() != platform::kControlBoundsChangedEvent.kind) {
    Log<3>() << "Unexpected event " << std::dec << event.kind() << std::flush;
    return platform::eventNotHandledErr;
  }
  try {
    resizeNameColumn(event);
  } catch (const std::exception& error) {
    Log<3>() << error.what() << std::flush;
    return platform::eventNotHandledErr;
  }
  return platform::noErr;
}

OSStatus PrinterListView::disposeEventHandler(platform::EventHandlerCallRef, const platform::Event&,
                                              void* userData) {
  if (userData == nullptr) return platform::eventNotHandledErr;
  static_cast<PrinterListView*>(userData)->terminate();
  return platform::noErr;
}

OSStatus PrinterListView::itemDataCallback(ControlRef control, ItemId item, FourCharCode property,
                                           platform::ItemData& data, bool setValue) {
  if (setValue || item == 0) return platform::errDataBrowserPropertyNotSupported;
  const PrinterList* printers = nullptr;
  const OSStatus status = getPrinterList(control, printers);
  if (status != platform::noErr || printers == nullptr) return status;

  const std::size_t index = item - 1;
  switch (property) {
    case kNameColumn:
      return data.setText(printers->getName(index));
    case kTypeColumn:
      return data.setText(printers->getPrinterType(index));
    case kInfoColumn:
      return data.setText(printers->getInfo(index));
    default:
      return platform::errDataBrowserPropertyNotSupported;
  }
}

bool PrinterListView::itemCompareCallback(ControlRef control, ItemId a, ItemId b,
                                          FourCharCode property) {
  const PrinterList* printers = nullptr;
  if (getPrinterList(control, printers) != platform::noErr || printers == nullptr) return false;

  const std::size_t first = static_cast<std::size_t>(a) - 1;
  const std::size_t second = static_cast<std::size_t>(b) - 1;
  switch (property) {
    case kNameColumn:
      return isNameLess(*printers, first, second);
    case kTypeColumn:
      return isLess(printers->getPrinterType(first), printers->getPrinterType(second),
                    Comparison::Exact);
    case kInfoColumn:
      return isLess(printers->getInfo(first), printers->getInfo(second), Comparison::Numeric);
    default:
      return false;
  }
}

void PrinterListView::itemNotificationCallback(ControlRef control, ItemId, std::uint32_t message) {
  if (message != platform::kDataBrowserSelectionSetChanged) return;
  ItemId first = 0;
  ItemId last = 0;
  const OSStatus anchorStatus = toolkit().getSelectionAnchor(control, first, last);
  Log<5>() << "List selection changed: status=" << std::dec << anchorStatus << " first=" << first
           << " last=" << last << std::flush;

  ControlRef button = ControlRef::None;
  const OSStatus status =
      toolkit().getControlById(toolkit().controlOwner(control), kOkButtonId, button);
  if (status != platform::noErr) {
    Log<3>() << buildErrorMessage("Can't find OK button.", status) << std::flush;
    return;
  }
  toolkit().setControlEnabled(button, first != 0);
}
