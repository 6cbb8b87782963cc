// An accessible object of a program on the desktop: what a screen reader sees of a window, a button
// or a cell. Nodes are looked up anew each time, since what is on the screen changes under them.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct _AtspiAccessible;

namespace desktop {

class Node {
 public:
  struct Rectangle {
    int x, y, width, height;
  };

  explicit Node(std::shared_ptr<_AtspiAccessible> accessible)
      : mAccessible(std::move(accessible)) {}

  std::string role() const;  // "push button", "table cell", "frame", …
  std::string name() const;
  std::string description() const;
  std::string text() const;  // the text of a label or an entry; the name where there is none

  bool isShowing() const;  // visible on the screen, with every parent
  bool isEnabled() const;
  bool isSelected() const;
  bool isFocused() const;
  bool isExpanded() const;  // of what can be expanded
  bool isActive() const;    // a window that has the keyboard

  Rectangle extents() const;          // on the screen, in pixels
  Rectangle extentsInWindow() const;  // where programs do not learn where their windows are

  std::vector<Node> children() const;

  // Of this node and all below it, in depth-first order, the first that shows and meets the
  // condition. Below what does not show nothing does, so it is not looked at.
  std::optional<Node> firstShowing(const std::function<bool(const Node&)>& condition) const;

  // Likewise, all that show.
  std::vector<Node> allShowing() const;

  // Presses the object as assistive technology does: its first action. False when it has none.
  bool activate() const;

  // The tree below this node, one line each, for a test's message.
  std::string dump(int indent = 0) const;

 private:
  std::shared_ptr<_AtspiAccessible> mAccessible;
};

// The accessible object of the program with this process ID, or none while it has not registered.
std::optional<Node> findApplication(int processId);

// The first showing node with this role and name in the program, waiting for it to appear.
std::optional<Node> findNode(int processId, const std::string& role, const std::string& name,
                             std::chrono::milliseconds limit);

// The same with a condition of the caller's.
std::optional<Node> findNode(int processId, const std::function<bool(const Node&)>& condition,
                             std::chrono::milliseconds limit);

}  // namespace desktop
