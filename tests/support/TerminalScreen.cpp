#include "TerminalScreen.h"

#include <vterm.h>

namespace {

void addUtf8(std::string& text, std::uint32_t character) {
  if (character < 0x80) {
    text += static_cast<char>(character);
    return;
  }
  int following = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
  const std::uint32_t mark = ~(0xFFU >> (following + 1)) & 0xFFU;
  text += static_cast<char>(mark | character >> 6 * following);
  while (following-- > 0) text += static_cast<char>(0x80 | (character >> 6 * following & 0x3F));
}

// A wide character takes two cells, the second of which holds none.
void addCell(std::string& text, const VTermScreenCell& cell) {
  if (cell.chars[0] == static_cast<std::uint32_t>(-1)) return;
  if (cell.chars[0] == 0) text += ' ';
  for (int i = 0; i < VTERM_MAX_CHARS_PER_CELL && cell.chars[i] != 0; ++i) {
    addUtf8(text, cell.chars[i]);
  }
}

void removeBlanks(std::string& text) { text.erase(text.find_last_not_of(' ') + 1); }

}  // namespace

struct TerminalScreenCallbacks {
  static int rowLeft(int columns, const VTermScreenCell* cells, void* screen) {
    std::string text;
    for (int i = 0; i < columns; ++i) addCell(text, cells[i]);
    removeBlanks(text);
    static_cast<TerminalScreen*>(screen)->mLeft.push_back(text);
    return 1;
  }

  static int propertyChanged(VTermProp property, VTermValue* value, void* screen) {
    if (property == VTERM_PROP_CURSORVISIBLE) {
      static_cast<TerminalScreen*>(screen)->mIsCursorVisible = value->boolean != 0;
    }
    return 1;
  }

  static VTermScreenCallbacks all() {
    VTermScreenCallbacks callbacks{};
    callbacks.settermprop = &propertyChanged;
    callbacks.sb_pushline = &rowLeft;
    return callbacks;
  }
};

TerminalScreen::TerminalScreen(int rows, int columns)
    : mRows(rows),
      mColumns(columns),
      mTerminal(vterm_new(rows, columns)),
      mScreen(vterm_obtain_screen(mTerminal)) {
  vterm_set_utf8(mTerminal, 1);
  static const VTermScreenCallbacks callbacks = TerminalScreenCallbacks::all();
  vterm_screen_set_callbacks(mScreen, &callbacks, this);
  vterm_screen_reset(mScreen, 1);
}

TerminalScreen::~TerminalScreen() { vterm_free(mTerminal); }

void TerminalScreen::write(std::string_view bytes) {
  vterm_input_write(mTerminal, bytes.data(), bytes.size());
}

void TerminalScreen::resize(int rows, int columns) {
  vterm_set_size(mTerminal, rows, columns);
  mRows = rows;
  mColumns = columns;
}

std::string TerminalScreen::textOf(int row) const {
  std::string text;
  for (int column = 0; column < mColumns; ++column) {
    VTermScreenCell cell{};
    vterm_screen_get_cell(mScreen, {row, column}, &cell);
    addCell(text, cell);
  }
  removeBlanks(text);
  return text;
}

std::vector<std::string> TerminalScreen::rows() const {
  std::vector<std::string> rows;
  for (int row = 0; row < mRows; ++row) rows.push_back(textOf(row));
  while (!rows.empty() && rows.back().empty()) rows.pop_back();
  return rows;
}

std::vector<std::string> TerminalScreen::allRows() const {
  std::vector<std::string> all = mLeft;
  const std::vector<std::string> present = rows();
  all.insert(all.end(), present.begin(), present.end());
  return all;
}

TerminalScreen::Position TerminalScreen::cursor() const {
  VTermPos position{};
  vterm_state_get_cursorpos(vterm_obtain_state(mTerminal), &position);
  return {position.row, position.col};
}
