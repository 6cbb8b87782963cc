// A push button of an interface file. A key that is held down presses it once: the next press could
// belong to another window's question.
#pragma once

#include <QKeyEvent>
#include <QPushButton>

namespace platform {

class Button : public QPushButton {
 public:
  using QPushButton::QPushButton;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isEnter || !event->isAutoRepeat()) QPushButton::keyPressEvent(event);
  }
};

}  // namespace platform
