#include "platform/qt/QuitQuestions.h"

#include <QLabel>
#include <algorithm>

#include "platform/qt/NibLoader.h"
#include "platform/qt/WindowStack.h"

namespace platform {

bool QuitQuestions::ask() {
  for (const auto& [sheet, question] : mQuestions) {
    if (mWindows.isUp(question)) {
      mWindows.activate(question);
      return true;
    }
    if (!mWindows.isUp(sheet) || mWindows.isBlocked(sheet)) continue;
    copyTexts(sheet, question);
    return mWindows.attach(question, sheet);
  }
  return false;
}

bool QuitQuestions::isQuestion(WindowRef window) const {
  return std::ranges::any_of(mQuestions, [&](const auto& each) { return each.second == window; });
}

void QuitQuestions::withdraw(WindowRef window) {
  for (const auto& [sheet, question] : mQuestions) {
    if (sheet == window || question == window) mWindows.detach(question);
  }
}

void QuitQuestions::copyTexts(WindowRef from, WindowRef to) const {
  for (QLabel* label : mWindows.widget(to)->findChildren<QLabel*>()) {
    const auto id = controlIdOf(*label);
    if (!id) continue;
    const auto* source = qobject_cast<QLabel*>(findControl(*mWindows.widget(from), *id));
    if (source == nullptr) continue;
    label->setText(source->text());
    label->setAccessibleName(source->accessibleName());
  }
}

}  // namespace platform
