#include "Cell.h"

std::string nameOf(const Cell& cell) {
  return cell.table + ": the printer " + cell.what + ", " + cell.when;
}
