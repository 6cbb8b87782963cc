#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QTreeView>

#include "FakeBundle.h"
#include "Places.h"
#include "ToolkitWorld.h"
#include "platform/qt/NibLoader.h"
#include "platform/qt/QtApplication.h"
#include "platform/qt/QtText.h"

using platform::FourCharCode;

namespace {

class QtToolkitWorld final : public ToolkitWorld {
 public:
  QtToolkitWorld() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    mBundle.setResourcesDirectory(builtFile("share/fwupdate"));
    mApplication = platform::makeQtApplication("test", mBundle);
  }

  platform::Toolkit& toolkit() override { return mApplication->toolkit(); }
  platform::Events& events() override { return mApplication->events(); }

  void press(const std::string& window, FourCharCode command) override {
    if (QAbstractButton* button = buttonFor(window, command)) button->click();
  }

  void chooseMenuItem(FourCharCode command) override {
    QWidget* window = find(kMainWindow);
    if (window == nullptr) return;
    for (QAction* action : window->findChildren<QAction*>()) {
      if (platform::commandOf(*action) == command) return action->trigger();
    }
  }

  void select(platform::ItemId item) override {
    QTreeView* list = listControl();
    if (item == 0) return list->clearSelection();
    for (int row = 0; row < list->model()->rowCount(); ++row) {
      const QModelIndex index = list->model()->index(row, 0);
      if (itemOf(index) == item) list->setCurrentIndex(index);
    }
  }

  void closeWindow(const std::string& window) override {
    if (QWidget* found = find(window)) found->close();
  }

  void widenList(int by) override {
    QWidget* window = find(kMainWindow);
    window->resize(window->width() + by, window->height());
    QCoreApplication::processEvents();
  }

  bool isVisible(const std::string& window) override {
    const QWidget* found = find(window);
    return found != nullptr && found->isVisible();
  }

  bool isEnabled(const std::string& window, FourCharCode command) override {
    const QAbstractButton* button = buttonFor(window, command);
    return button != nullptr && button->isEnabled();
  }

  std::optional<std::string> text(const std::string& window, platform::ControlId id) override {
    const auto* label = qobject_cast<QLabel*>(platform::findControl(*find(window), id));
    if (label == nullptr || label->text().isEmpty()) return std::nullopt;
    return label->accessibleName().toStdString();  // without marks for its layout
  }

  std::vector<platform::ItemId> rows() override {
    const QAbstractItemModel& model = *listControl()->model();
    std::vector<platform::ItemId> items;
    for (int row = 0; row < model.rowCount(); ++row) items.push_back(itemOf(model.index(row, 0)));
    return items;
  }

 private:
  // A disposed window is there until the loop runs, but nobody can see it.
  static QWidget* find(const std::string& window) {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->objectName().toStdString() == window) return widget;
    }
    return nullptr;
  }

  static QAbstractButton* buttonFor(const std::string& window, FourCharCode command) {
    QWidget* found = find(window);
    if (found == nullptr) return nullptr;
    for (QAbstractButton* button : found->findChildren<QAbstractButton*>()) {
      if (platform::commandOf(*button) == command && button->window() == found) return button;
    }
    return nullptr;
  }

  static QTreeView* listControl() { return find(kMainWindow)->findChild<QTreeView*>(); }

  // The tests' item-data callback ends a name with its item.
  static platform::ItemId itemOf(const QModelIndex& index) {
    return index.data().toString().section(u'#', 1).toUInt();
  }

  FakeBundle mBundle;
  std::unique_ptr<platform::QtApplication> mApplication;
};

}  // namespace

std::unique_ptr<ToolkitWorld> makeQtToolkitWorld() { return std::make_unique<QtToolkitWorld>(); }
