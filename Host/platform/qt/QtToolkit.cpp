#include "platform/qt/QtToolkit.h"

#include <QAbstractButton>
#include <QAction>
#include <QFileInfo>
#include <QLabel>
#include <QLayout>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Bundle.h"
#include "platform/DiscoveryStatus.h"
#include "platform/Platform.h"
#include "platform/qt/ControlTable.h"
#include "platform/qt/DownloadWatcher.h"
#include "platform/qt/Help.h"
#include "platform/qt/ListControl.h"
#include "platform/qt/LiveTime.h"
#include "platform/qt/MainWindow.h"
#include "platform/qt/NibLoader.h"
#include "platform/qt/Notice.h"
#include "platform/qt/QtEventLoop.h"
#include "platform/qt/QtEvents.h"
#include "platform/qt/QtText.h"
#include "platform/qt/QuitQuestions.h"
#include "platform/qt/SheetDialog.h"
#include "platform/qt/SheetGuard.h"
#include "platform/qt/ShownLine.h"
#include "platform/qt/WindowStack.h"

namespace platform {
namespace {

FloatRect toFloatRect(const QRect& bounds) {
  return {static_cast<float>(bounds.x()), static_cast<float>(bounds.y()),
          static_cast<float>(bounds.width()), static_cast<float>(bounds.height())};
}

// The size that the window would like, or that of the screen with some room for a frame. Left to
// itself, Qt leaves a third free of a screen on which there is little room anyway.
void fitToScreen(QWidget& window) {
  const int frame = 2 * window.fontMetrics().height();
  const QSize screen = window.screen()->availableSize() - QSize(frame, frame);
  window.resize(window.sizeHint().boundedTo(screen));
}

// Gives the widgets of a hidden window their places, which Qt puts off until it is shown.
void layOut(QWidget& window) {
  window.ensurePolished();
  fitToScreen(window);
  QList<QWidget*> widgets = window.findChildren<QWidget*>();
  widgets.prepend(&window);
  for (QWidget* widget : widgets) {
    if (widget->layout() == nullptr) continue;
    widget->layout()->invalidate();
    widget->layout()->activate();
  }
}

std::vector<Notice*> noticesIn(const QWidget& window) {
  std::vector<Notice*> notices;
  for (QLabel* label : window.findChildren<QLabel*>()) {
    auto* const notice = dynamic_cast<Notice*>(label);
    if (notice != nullptr && notice->window() == &window) notices.push_back(notice);
  }
  return notices;
}

class QtToolkit final : public Toolkit {
 public:
  QtToolkit(QtEventLoop& loop, QtEvents& events, const Bundle& bundle,
            const DownloadState& download)
      : mLoop(loop), mEvents(events), mBundle(bundle), mDownload(download) {
    mEvents.whenAskedToQuit([this] { return !mQuitQuestions.ask(); });
  }
  ~QtToolkit() override;

  OSStatus createNibReference(const Text& name, NibRef& nib) override;
  void disposeNibReference(NibRef nib) override { mNibs.erase(nib); }
  OSStatus setMenuBarFromNib(NibRef nib, const Text& name) override;

  OSStatus createWindowFromNib(NibRef nib, const Text& name, WindowRef& window) override;
  void disposeWindow(WindowRef window) override;
  void showWindow(WindowRef window) override { mWindows.show(window); }
  OSStatus showSheetWindow(WindowRef sheet, WindowRef parent) override;
  OSStatus hideSheetWindow(WindowRef sheet) override;

  OSStatus getControlById(WindowRef window, ControlId id, ControlRef& control) override;
  WindowRef controlOwner(ControlRef control) override { return mControls.owner(control); }
  OSStatus setControlText(ControlRef control, const Text& text) override;
  OSStatus setControlEnabled(ControlRef control, bool enabled) override;
  OSStatus setControlProperty(ControlRef control, FourCharCode creator, FourCharCode tag,
                              void* value) override {
    return mControls.setProperty(control, creator, tag, value);
  }
  OSStatus getControlProperty(ControlRef control, FourCharCode creator, FourCharCode tag,
                              void*& value) override {
    return mControls.getProperty(control, creator, tag, value);
  }

  OSStatus dataBrowserChangeAttributes(ControlRef control, std::uint32_t set,
                                       std::uint32_t clear) override;
  OSStatus initDataBrowserCallbacks(DataBrowserCallbacks& callbacks) override;
  OSStatus setDataBrowserCallbacks(ControlRef control,
                                   const DataBrowserCallbacks& callbacks) override;
  OSStatus setDataBrowserSortProperty(ControlRef control, FourCharCode property) override;
  OSStatus addDataBrowserItem(ControlRef control, ItemId item) override;
  OSStatus removeDataBrowserItem(ControlRef control, ItemId item) override;
  OSStatus getSelectionAnchor(ControlRef control, ItemId& first, ItemId& last) const override;
  OSStatus getNamedColumnWidth(ControlRef control, FourCharCode property,
                               std::uint16_t& width) override;
  OSStatus setNamedColumnWidth(ControlRef control, FourCharCode property,
                               std::uint16_t width) override;

 private:
  OSStatus addWindow(NibRef nib, const Text& name, WindowRef& window);
  void addQuitQuestion(NibRef nib, WindowRef sheet);
  OSStatus loadWindow(NibRef nib, const Text& name, std::unique_ptr<QWidget>& window) const;
  void wireButtons(QWidget& window);
  void wireList(WindowRef window, ListControl& list);
  void wireAction(MainWindow& window, QAction& action);
  void activateRow(const ListControl& list);
  void selectionChanged(ControlRef control);
  void boundsChanged(ControlRef control, const QRect& before, const QRect& after);
  bool closeRequested(WindowRef window);
  void issue(const QWidget& source, FourCharCode command);
  bool mayIssue(const QWidget& source, FourCharCode command) const;
  void issueNow(const QWidget& source, FourCharCode command);

  QtEventLoop& mLoop;
  QtEvents& mEvents;
  const Bundle& mBundle;
  const DownloadState& mDownload;
  std::map<NibRef, QString> mNibs;  // their directories
  std::uint64_t mLastNib = 0;
  ControlTable mControls;
  WindowStack mWindows;
  QuitQuestions mQuitQuestions{mWindows};
  std::optional<Help> mHelp;
  LiveTime mLiveTime;
  SheetGuard mSheetGuard{[this] { return mLiveTime.now(); }};
};

// The program is gone by now: its handlers and callbacks are not called any more.
QtToolkit::~QtToolkit() {
  mEvents.whenAskedToQuit({});
  for (const WindowRef window : mWindows.all()) {
    for (ListControl* list : mWindows.widget(window)->findChildren<ListControl*>()) {
      list->disconnectProgram();
    }
  }
}

OSStatus QtToolkit::createNibReference(const Text& name, NibRef& nib) {
  nib = NibRef::None;
  const auto resources = mBundle.resourcesDirectory();
  if (!resources || name.isNull()) return kIBCarbonRuntimeCantFindNibFile;
  const auto directory = *resources / (std::string(name.utf8()) + ".nib");
  const QString path = QString::fromStdString(directory.string());
  if (!QFileInfo(path).isDir()) return kIBCarbonRuntimeCantFindNibFile;
  nib = static_cast<NibRef>(++mLastNib);
  mNibs[nib] = path;
  return noErr;
}

OSStatus QtToolkit::loadWindow(NibRef nib, const Text& name,
                               std::unique_ptr<QWidget>& window) const {
  const auto found = mNibs.find(nib);
  if (found == mNibs.end() || name.isNull()) return kIBCarbonRuntimeCantFindNibFile;
  const QString path = found->second + u'/' + toQString(name) + QStringLiteral(".ui");
  if (!QFileInfo(path).isFile()) return kIBCarbonRuntimeCantFindObject;
  window = loadInterfaceFile(path, found->second + QStringLiteral("/../icons"));
  return window == nullptr ? kIBCarbonRuntimeObjectNotOfRequestedType : noErr;
}

// A menu bar is drawn in Qt Designer on a main window, and belongs to the program's one here. The
// window has the actions, too: where the desktop shows the bar itself, the keys of a hidden one
// would not count.
OSStatus QtToolkit::setMenuBarFromNib(NibRef nib, const Text& name) {
  std::unique_ptr<QWidget> drawnOn;
  const OSStatus status = loadWindow(nib, name, drawnOn);
  if (status != noErr) return status;
  auto* bar = drawnOn->findChild<QMenuBar*>();
  if (bar == nullptr) return kIBCarbonRuntimeObjectNotOfRequestedType;
  for (const WindowRef ref : mWindows.all()) {
    auto* window = dynamic_cast<MainWindow*>(mWindows.widget(ref));
    if (window == nullptr) continue;
    auto* group = new QActionGroup(bar);
    group->setExclusionPolicy(QActionGroup::ExclusionPolicy::None);
    for (QAction* action : drawnOn->findChildren<QAction*>()) {
      if (commandOf(*action) == 0 && !Help::has(*action)) continue;
      action->setParent(bar);
      window->addAction(action);
      if (commandOf(*action) != kQuitCommand) group->addAction(action);
      wireAction(*window, *action);
    }
    window->setMenuBar(bar);
    mWindows.setActions(ref, *group);
    mHelp.emplace(*window, mNibs.at(nib), [window] {
      for (Notice* notice : noticesIn(*window)) notice->noteCopied();
    });
    return noErr;
  }
  return errInvalidWindowRef;
}

OSStatus QtToolkit::createWindowFromNib(NibRef nib, const Text& name, WindowRef& window) {
  const OSStatus status = addWindow(nib, name, window);
  if (status == noErr) addQuitQuestion(nib, window);
  return status;
}

OSStatus QtToolkit::addWindow(NibRef nib, const Text& name, WindowRef& window) {
  window = WindowRef::None;
  std::unique_ptr<QWidget> loaded;
  const OSStatus status = loadWindow(nib, name, loaded);
  if (status != noErr) return status;
  QWidget& widget = *loaded;
  auto* mainWindow = dynamic_cast<MainWindow*>(&widget);
  auto* sheet = dynamic_cast<SheetDialog*>(&widget);
  if (mainWindow == nullptr && sheet == nullptr) return kIBCarbonRuntimeObjectNotOfRequestedType;

  window = mWindows.add(std::move(loaded));
  wireButtons(widget);
  if (mainWindow != nullptr) {
    mainWindow->whenCloseRequested([this, window] { return closeRequested(window); });
  } else {
    sheet->whenCommanded([this, sheet](FourCharCode command) { issue(*sheet, command); });
  }
  for (QWidget* each : widget.findChildren<QWidget*>()) {
    if (auto* const watcher = dynamic_cast<DownloadWatcher*>(each)) watcher->watch(mDownload);
  }
  layOut(widget);
  for (ListControl* list : widget.findChildren<ListControl*>()) wireList(window, *list);
  for (Notice* notice : noticesIn(widget)) {
    if (ListControl* list = widget.findChild<ListControl*>()) notice->watch(*list);
  }
  return noErr;
}

// Without its file, Quit is not asked about.
void QtToolkit::addQuitQuestion(NibRef nib, WindowRef sheet) {
  const QString name = mWindows.widget(sheet)->property("quitQuestion").toString();
  WindowRef question = WindowRef::None;
  if (name.isEmpty() || addWindow(nib, toText(name), question) != noErr) return;
  mQuitQuestions.add(question, sheet);
}

// Handlers for the end of a control may still use it.
void QtToolkit::disposeWindow(WindowRef window) {
  if (mWindows.widget(window) == nullptr) return;
  mQuitQuestions.withdraw(window);
  for (const ControlRef control : mControls.ownedBy(window)) {
    Event disposed(kControlDisposedEvent);
    disposed.setParameter(kEventParamDirectObject, control);
    mLoop.guard([&] { mEvents.sendToTarget(control, disposed); });
    if (ListControl* list = mControls.list(control)) list->disconnectProgram();
    mControls.forget(control);
  }
  mWindows.remove(window);
}

// What the program has to say about a download comes instead of the question about it.
OSStatus QtToolkit::showSheetWindow(WindowRef sheet, WindowRef parent) {
  if (dynamic_cast<SheetDialog*>(mWindows.widget(sheet)) == nullptr) return errInvalidWindowRef;
  mQuitQuestions.withdraw(parent);
  return mWindows.attach(sheet, parent) ? noErr : errInvalidWindowRef;
}

OSStatus QtToolkit::hideSheetWindow(WindowRef sheet) {
  mQuitQuestions.withdraw(sheet);
  return mWindows.detach(sheet) ? noErr : errInvalidWindowRef;
}

OSStatus QtToolkit::getControlById(WindowRef window, ControlId id, ControlRef& control) {
  control = ControlRef::None;
  QWidget* owner = mWindows.widget(window);
  if (owner == nullptr) return errInvalidWindowRef;
  QWidget* found = findControl(*owner, id);
  if (found == nullptr) return errControlNotFound;
  control = mControls.refFor(*found, window);
  return noErr;
}

OSStatus QtToolkit::setControlText(ControlRef control, const Text& text) {
  auto* label = qobject_cast<QLabel*>(mControls.widget(control));
  if (label == nullptr) return errControlNotFound;
  showLine(*label, toQString(text));
  return noErr;
}

OSStatus QtToolkit::setControlEnabled(ControlRef control, bool enabled) {
  QWidget* widget = mControls.widget(control);
  if (widget == nullptr) return errControlNotFound;
  widget->setEnabled(enabled);
  return noErr;
}

OSStatus QtToolkit::dataBrowserChangeAttributes(ControlRef control, std::uint32_t set,
                                                std::uint32_t clear) {
  ListControl* list = mControls.list(control);
  if (list == nullptr) return errControlNotFound;
  if ((clear & kDataBrowserListViewAlternatingRowColors) != 0) list->setAlternatingRowColors(false);
  if ((set & kDataBrowserListViewAlternatingRowColors) != 0) list->setAlternatingRowColors(true);
  return noErr;
}

OSStatus QtToolkit::initDataBrowserCallbacks(DataBrowserCallbacks& callbacks) {
  callbacks = {};
  return noErr;
}

OSStatus QtToolkit::setDataBrowserCallbacks(ControlRef control,
                                            const DataBrowserCallbacks& callbacks) {
  ListControl* list = mControls.list(control);
  if (list == nullptr) return errControlNotFound;
  list->items().setCallbacks(control, callbacks);
  return noErr;
}

OSStatus QtToolkit::setDataBrowserSortProperty(ControlRef control, FourCharCode property) {
  ListControl* list = mControls.list(control);
  if (list == nullptr) return errControlNotFound;
  const int column = list->items().columnOf(property);
  if (column < 0) return errDataBrowserPropertyNotFound;
  list->sortByColumn(column, Qt::AscendingOrder);
  return noErr;
}

OSStatus QtToolkit::addDataBrowserItem(ControlRef control, ItemId item) {
  ListControl* list = mControls.list(control);
  if (list == nullptr) return errControlNotFound;
  return list->items().add(item) ? noErr : errDataBrowserItemNotAdded;
}

OSStatus QtToolkit::removeDataBrowserItem(ControlRef control, ItemId item) {
  ListControl* list = mControls.list(control);
  if (list == nullptr) return errControlNotFound;
  return list->removeItem(item) ? noErr : errDataBrowserItemNotFound;
}

OSStatus QtToolkit::getSelectionAnchor(ControlRef control, ItemId& first, ItemId& last) const {
  first = last = 0;
  const ListControl* list = mControls.list(control);
  if (list == nullptr) return errControlNotFound;
  first = last = list->selectedItem();
  return noErr;
}

OSStatus QtToolkit::getNamedColumnWidth(ControlRef control, FourCharCode property,
                                        std::uint16_t& width) {
  ListControl* list = mControls.list(control);
  if (list == nullptr) return errControlNotFound;
  const int column = list->items().columnOf(property);
  if (column < 0) return errDataBrowserPropertyNotFound;
  width = list->columnWidthOf(column);
  return noErr;
}

OSStatus QtToolkit::setNamedColumnWidth(ControlRef control, FourCharCode property,
                                        std::uint16_t width) {
  ListControl* list = mControls.list(control);
  if (list == nullptr) return errControlNotFound;
  const int column = list->items().columnOf(property);
  if (column < 0) return errDataBrowserPropertyNotFound;
  list->setColumnWidthOf(column, width);
  return noErr;
}

void QtToolkit::wireButtons(QWidget& window) {
  for (QAbstractButton* button : window.findChildren<QAbstractButton*>()) {
    const FourCharCode command = commandOf(*button);
    if (command == 0) continue;
    QObject::connect(button, &QAbstractButton::clicked, button,
                     [this, button, command] { issue(*button, command); });
  }
}

void QtToolkit::wireAction(MainWindow& window, QAction& action) {
  action.setAutoRepeat(false);
  QObject::connect(&action, &QAction::triggered, &window, [this, &window, &action] {
    if (!action.isEnabled()) return;
    if (!Help::has(action)) return issue(window, commandOf(action));
    mLoop.guard([&] { mHelp->perform(action); });
  });
}

void QtToolkit::wireList(WindowRef window, ListControl& list) {
  const ControlRef control = mControls.refFor(list, window);
  list.fitColumns();
  list.observe({[this, control] { mLoop.call([this, control] { selectionChanged(control); }); },
                [this, control](const QRect& before, const QRect& after) {
                  boundsChanged(control, before, after);
                },
                [this, &list] { activateRow(list); }});
  if (DiscoveryStatus* const status = current().discoveryStatus) {
    const auto note = [status, shown = QPointer<ListControl>(&list)] {
      if (shown) shown->noteDaemon(status->searcher() != DiscoveryStatus::Searcher::Daemon);
    };
    status->whenChanged(note);
    note();
  }
}

// A row stands for the window's default button.
void QtToolkit::activateRow(const ListControl& list) {
  for (QPushButton* button : list.window()->findChildren<QPushButton*>()) {
    if (button->isDefault() && button->window() == list.window()) return button->click();
  }
}

void QtToolkit::selectionChanged(ControlRef control) {
  ListControl* list = mControls.list(control);
  if (list == nullptr) return;
  const auto notify = list->items().callbacks().itemNotification;
  if (notify != nullptr) notify(control, 0, kDataBrowserSelectionSetChanged);
}

void QtToolkit::boundsChanged(ControlRef control, const QRect& before, const QRect& after) {
  Event changed(kControlBoundsChangedEvent);
  changed.setParameter(kEventParamDirectObject, control);
  changed.setParameter(kEventParamOriginalBounds, toFloatRect(before));
  changed.setParameter(kEventParamCurrentBounds, toFloatRect(after));
  mLoop.call([this, control, changed] { mEvents.sendToTarget(control, changed); });
}

// A window that does not close while the program waits is asked again afterwards.
bool QtToolkit::closeRequested(WindowRef window) {
  if (mLoop.isWaiting()) {
    mLoop.callLater([widget = QPointer(mWindows.widget(window))] {
      if (widget != nullptr) widget->close();
    });
    return false;
  }
  if (mQuitQuestions.ask()) return false;
  OSStatus answer = noErr;
  mLoop.guard([&] { answer = mEvents.sendToTarget(window, Event(kWindowCloseEvent)); });
  if (answer != eventNotHandledErr) return false;
  disposeWindow(window);
  return true;
}

// The one place where the activation of a control becomes a command. One that has to wait is looked
// at again when its turn comes.
void QtToolkit::issue(const QWidget& source, FourCharCode command) {
  if (!mayIssue(source, command)) return;
  mLoop.call([this, source = QPointer(&source), command] {
    if (source != nullptr && mayIssue(*source, command)) issueNow(*source, command);
  });
}

bool QtToolkit::mayIssue(const QWidget& source, FourCharCode command) const {
  const WindowRef window = mWindows.refOf(*source.window());
  if (window == WindowRef::None) return false;
  if (command != kQuitCommand && mWindows.isBlocked(window)) return false;
  return source.isVisible() && source.isEnabled();
}

// Of the answers to a question about Quit, the program gets only Quit. What a command lacks is in
// the window's list, also when a sheet on it issues the command.
void QtToolkit::issueNow(const QWidget& source, FourCharCode command) {
  const WindowRef window = mWindows.refOf(*source.window());
  if (mQuitQuestions.isQuestion(window)) {
    mQuitQuestions.withdraw(window);
    if (command != kQuitCommand) return;
  } else if (command == kQuitCommand && mQuitQuestions.ask()) {
    return;
  }
  for (const WindowRef each : mWindows.all()) {
    for (Notice* notice : noticesIn(*mWindows.widget(each))) notice->noteCommand(command);
  }
  HICommand issued;
  issued.commandId = command;
  mEvents.processCommand(issued);
}

}  // namespace

std::unique_ptr<Toolkit> makeQtToolkit(QtEventLoop& loop, QtEvents& events, const Bundle& bundle,
                                       const DownloadState& download) {
  return std::make_unique<QtToolkit>(loop, events, bundle, download);
}

}  // namespace platform
