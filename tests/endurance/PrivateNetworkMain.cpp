// The network has a bus; each test starts the daemon when it wants one.
#include <gmock/gmock.h>

#include "PrivateNetwork.h"
#include "exactHeap.h"

int main(int argc, char** argv) {
  restartWithExactHeap(argv);
  privatenetwork::enter(argc, argv, {"--no-daemon", "--links", "2"});
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
