#include "Cell.h"

std::string nameOf(const Cell& cell) { return cell.table + ": " + cell.what + ", " + cell.when; }
