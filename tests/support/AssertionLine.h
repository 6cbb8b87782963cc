// What a failed assertion prints, for death tests: EXPECT_DEATH(f(), assertionLine(...)).
#pragma once

#include <gmock/gmock.h>

#include <string>

inline testing::Matcher<const std::string&> assertionLine(const std::string& expression,
                                                          const std::string& function,
                                                          const std::string& file, int line) {
  return testing::Eq("Assertion failed: (" + expression + "), function " + function + ", file " +
                     file + ", line " + std::to_string(line) + ".\n");
}
