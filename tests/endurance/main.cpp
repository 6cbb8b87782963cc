#include <gmock/gmock.h>

#include "exactHeap.h"

int main(int argc, char** argv) {
  restartWithExactHeap(argv);
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
