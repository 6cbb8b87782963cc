// The sheets that ask before Quit, each for another sheet that must not be left lightly, as long as
// that one is on top. What such a question is about stands in the other sheet: the question shows
// the same text in each of its labels that has the same control ID. Used by the toolkit.
#pragma once

#include <map>

#include "platform/Handles.h"

namespace platform {

class WindowStack;

class QuitQuestions {
 public:
  explicit QuitQuestions(WindowStack& windows) : mWindows(windows) {}

  // Both are windows of the stack.
  void add(WindowRef question, WindowRef sheet) { mQuestions[sheet] = question; }

  // False when there is nothing to ask about; otherwise the question is up.
  bool ask();

  bool isQuestion(WindowRef window) const;

  // Takes down what asks about `sheet`, or is this question itself.
  void withdraw(WindowRef window);

 private:
  void copyTexts(WindowRef from, WindowRef to) const;

  WindowStack& mWindows;
  std::map<WindowRef, WindowRef> mQuestions;  // by the sheets that they are about
};

}  // namespace platform
