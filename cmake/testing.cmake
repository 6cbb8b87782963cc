# fw_add_test(NAME SOURCES... LIBRARIES...): a GoogleTest program, each of its cases a test of CTest.
include(GoogleTest)
find_package(GTest REQUIRED)

function(fw_add_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT;PREFIX" "SOURCES;LIBRARIES;PROPERTIES" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 60)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} fw_options GTest::gmock_main)
  gtest_discover_tests(${name}
    TEST_PREFIX "${ARG_PREFIX}"
    DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT ${ARG_TIMEOUT} ${ARG_PROPERTIES})
endfunction()
