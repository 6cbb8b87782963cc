// Makes the process, for a while, that of a user who has no right on any device node.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

class AsOtherUser {
 public:
  AsOtherUser() {
    EXPECT_EQ(setegid(kNobody), 0);
    EXPECT_EQ(seteuid(kNobody), 0);
  }
  ~AsOtherUser() {
    EXPECT_EQ(seteuid(0), 0);
    EXPECT_EQ(setegid(0), 0);
  }
  AsOtherUser(const AsOtherUser&) = delete;
  AsOtherUser& operator=(const AsOtherUser&) = delete;

 private:
  static constexpr unsigned kNobody = 65534;
};
