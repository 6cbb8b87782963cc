// A window of an interface file that stands on its own (a QMainWindow there). Whether it closes is
// its owner's decision. Owned by the toolkit.
#pragma once

#include <QMainWindow>
#include <functional>
#include <utility>

namespace platform {

class MainWindow : public QMainWindow {
 public:
  using QMainWindow::QMainWindow;

  // `requested` answers whether the window closes.
  void whenCloseRequested(std::function<bool()> requested) { mRequested = std::move(requested); }

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  std::function<bool()> mRequested;
};

}  // namespace platform
