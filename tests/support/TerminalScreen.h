// The screen of a terminal, as a program's output makes it: what a person reads there, and where
// the cursor is. The emulation is that of libvterm, which moves rows as xterm does when its size
// changes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct VTerm;
struct VTermScreen;

class TerminalScreen {
 public:
  struct Position {
    int row;
    int column;
    bool operator==(const Position&) const = default;
  };

  TerminalScreen(int rows, int columns);
  ~TerminalScreen();
  TerminalScreen(const TerminalScreen&) = delete;
  TerminalScreen& operator=(const TerminalScreen&) = delete;

  // Bytes as they arrive from the line discipline, which has made CR LF of a program's LF.
  void write(std::string_view bytes);

  void resize(int rows, int columns);

  // Without blanks at their ends, and without empty rows at the end of the screen.
  std::vector<std::string> rows() const;

  // The rows that have left it at its top, the oldest first, and those that are still there.
  std::vector<std::string> allRows() const;

  Position cursor() const;
  bool isCursorVisible() const { return mIsCursorVisible; }

 private:
  friend struct TerminalScreenCallbacks;

  std::string textOf(int row) const;

  int mRows;
  int mColumns;
  bool mIsCursorVisible = true;
  std::vector<std::string> mLeft;
  VTerm* mTerminal;
  VTermScreen* mScreen;
};
