// Writes docs/fault-matrix.md to standard output.
#include <iostream>

#include "Document.h"

int main() {
  writeFaultMatrix(std::cout);
  return std::cout.flush() ? 0 : 1;
}
