// docs/fault-matrix.md, made from the cells.
#pragma once

#include <ostream>

void writeFaultMatrix(std::ostream& out);
