# fw_add_test(NAME SOURCES... LIBRARIES...): a GoogleTest program, each of its cases a test of CTest.
# With LAUNCHER, the program is started by that command. The suites of TOGETHER run in one process each
# and are a test each; so is a whole program with the sanitizers, where the start of a process is what
# most cases would spend their time on (tests/results names the case that failed). Cases that have to be
# ALONE, as those that end or start processes, are not put together. With SHORT, all other cases get the
# prefix "long.", with FURTHER those that match it, and those that match LONG are one test with that prefix:
# ./test has them with --all only. A test that waits for other processes (a printer, a bus, a daemon, a
# window, an emulated machine) while real time limits run has the label "waits": it may need another try
# (tests/results), and no other.
#
# FW_ON_ITS_OWN_MACHINE starts a program where nobody else has a port, and so nobody else's lock of a
# printer is in its way. It takes SKIP_RETURN_CODE 77.
include(GoogleTest)
find_package(GTest REQUIRED)
find_package(nlohmann_json REQUIRED)

# Position-independent as Qt wants it, so that all test programs can share the headers below. The
# checks left out here double the time that a test takes to compile; what is tested keeps them.
add_library(fw_test_options INTERFACE)
target_compile_options(fw_test_options INTERFACE -fPIC)
if(FWUPDATE_SANITIZE)
  target_compile_options(fw_test_options INTERFACE -fno-sanitize=alignment,null,object-size,vptr)
endif()

# The headers of most tests, compiled once for all test programs.
file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/fw_test_headers.cpp CONTENT "")
add_library(fw_test_headers OBJECT ${PROJECT_BINARY_DIR}/fw_test_headers.cpp)
target_link_libraries(fw_test_headers PRIVATE
  fw_options GTest::gmock nlohmann_json::nlohmann_json fw_test_options)
target_precompile_headers(fw_test_headers PRIVATE
  <gmock/gmock.h> <gtest/gtest.h> <nlohmann/json.hpp> <algorithm> <filesystem> <fstream> <functional>
  <memory> <optional> <span> <sstream> <string> <vector>)

# A folder of tests that ./test has with the sanitizers, or of what it does not run. Where they are not
# wanted, editors and checkers still know how they are compiled.
function(fw_add_part folder)
  if(FWUPDATE_PART_TESTS)
    add_subdirectory(${folder})
  else()
    set(FW_NOT_RUN ON)
    add_subdirectory(${folder} EXCLUDE_FROM_ALL)
  endif()
endfunction()

set(FW_ON_ITS_OWN_MACHINE ${PROJECT_SOURCE_DIR}/tools/private-network --no-bus --links 0 --)

function(fw_add_test name)
  cmake_parse_arguments(ARG "ALONE" "TIMEOUT;PREFIX" "SOURCES;LIBRARIES;LAUNCHER;PROPERTIES;TOGETHER;SHORT;FURTHER;LONG" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 60)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE
    ${ARG_LIBRARIES} fw_options fw_test_places GTest::gmock_main fw_test_options)
  target_precompile_headers(${name} REUSE_FROM fw_test_headers)
  if(ARG_LAUNCHER)
    set_target_properties(${name} PROPERTIES CROSSCOMPILING_EMULATOR "${ARG_LAUNCHER}")
  endif()
  if(FW_NOT_RUN)
    return()
  endif()
  if(FWUPDATE_SANITIZE AND NOT ARG_ALONE AND NOT "waits" IN_LIST ARG_PROPERTIES)
    fw_add_cases(${ARG_PREFIX}${name} ${name} "*" TIMEOUT 600 ${ARG_PROPERTIES})
    return()
  endif()
  list(JOIN ARG_LONG ":" long)
  if(ARG_LONG)
    fw_add_cases(long.${ARG_PREFIX}${name} ${name} "${long}" TIMEOUT 600 ${ARG_PROPERTIES})
  endif()
  set(others "*-${long}:")
  foreach(suite IN LISTS ARG_TOGETHER)
    fw_add_cases(${ARG_PREFIX}${suite} ${name} "*${suite}.*-${long}" TIMEOUT 600 ${ARG_PROPERTIES})
    string(APPEND others "*${suite}.*:")
  endforeach()
  if(ARG_FURTHER)
    list(JOIN ARG_FURTHER ":" further)
    fw_discover_cases(${name} "long.${ARG_PREFIX}" "${further}" TIMEOUT ${ARG_TIMEOUT} ${ARG_PROPERTIES})
    string(APPEND others "${further}:")
  endif()
  if(ARG_SHORT)
    list(JOIN ARG_SHORT ":" short)
    fw_discover_cases(${name} "${ARG_PREFIX}" "${short}" TIMEOUT ${ARG_TIMEOUT} ${ARG_PROPERTIES})
    set(ARG_PREFIX "long.${ARG_PREFIX}")
    string(APPEND others "${short}")
  endif()
  fw_discover_cases(${name} "${ARG_PREFIX}" "${others}" TIMEOUT ${ARG_TIMEOUT} ${ARG_PROPERTIES})
endfunction()

# Each case of a program as a test.
function(fw_discover_cases program prefix filter)
  gtest_discover_tests(${program}
    TEST_PREFIX "${prefix}"
    TEST_FILTER "${filter}"
    NO_PRETTY_VALUES # the instances of a case have names
    DISCOVERY_MODE PRE_TEST
    DISCOVERY_TIMEOUT 60 # while much else runs
    PROPERTIES ${ARGN})
endfunction()

# Cases of a program as one test.
function(fw_add_cases name program filter)
  add_test(NAME ${name} COMMAND ${program} --gtest_filter=${filter})
  set_tests_properties(${name} PROPERTIES ${ARGN})
endfunction()
