// Text from printers, for a terminal or a table.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// On one line: what is not to be seen of a text, or would move the rest (control and format
// characters, bytes that are no UTF-8), is U+FFFD.
std::string legibleText(std::string_view text);

// How many columns of a terminal a legible text takes.
std::size_t columnsOf(std::string_view text);

// As much of a legible text as so many columns hold, with an ellipsis where something is left out.
std::string cutText(std::string_view text, std::size_t columns);
