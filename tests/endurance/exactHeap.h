// Makes what is told of this process's heap exact.
#pragma once

// Continues this program from its beginning without the C library's caches of freed blocks, which
// count as blocks in use. To be called first of all in main().
void restartWithExactHeap(char** argv);
