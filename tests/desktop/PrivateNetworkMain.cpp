// Each test has a network of its own.
#include <gtest/gtest.h>

#include "PrivateNetwork.h"

int main(int argc, char** argv) {
  privatenetwork::enter(argc, argv, {});
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
