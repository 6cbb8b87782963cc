# fw_add_test(NAME SOURCES... LIBRARIES...): a GoogleTest program, each of its cases a test of CTest.
# With LAUNCHER, the program is started by that command.
include(GoogleTest)
find_package(GTest REQUIRED)

# GoogleTest's headers, compiled once for all test programs.
file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/fw_test_headers.cpp CONTENT "")
add_library(fw_test_headers OBJECT ${PROJECT_BINARY_DIR}/fw_test_headers.cpp)
target_link_libraries(fw_test_headers PRIVATE fw_options GTest::gmock)
target_precompile_headers(fw_test_headers PRIVATE
  <gmock/gmock.h> <gtest/gtest.h> <algorithm> <functional> <memory> <span> <string> <vector>)

function(fw_add_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT;PREFIX" "SOURCES;LIBRARIES;LAUNCHER;PROPERTIES" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 60)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} fw_options GTest::gmock_main)
  target_precompile_headers(${name} REUSE_FROM fw_test_headers)
  # GCC 12 sees overruns in the standard library where short literals become strings and vectors.
  target_compile_options(${name} PRIVATE -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread)
  if(ARG_LAUNCHER)
    set_target_properties(${name} PROPERTIES CROSSCOMPILING_EMULATOR "${ARG_LAUNCHER}")
  endif()
  gtest_discover_tests(${name}
    TEST_PREFIX "${ARG_PREFIX}"
    DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT ${ARG_TIMEOUT} ${ARG_PROPERTIES})
endfunction()
