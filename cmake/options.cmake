option(FWUPDATE_TESTS "Build the tests and benchmarks" ON)
include(CMakeDependentOption)
cmake_dependent_option(FWUPDATE_TOOLS "Build the virtual printer and what drives a window" ON
  "NOT FWUPDATE_TESTS" ON)
option(FWUPDATE_MERGE_FILES "Compile several files of a test or tool at a time" OFF)
option(FWUPDATE_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)

# Every target of the project links fw_options, directly or through another.
add_library(fw_options INTERFACE)
target_compile_options(fw_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual)

# GCC 12 warns of overlapping copies in the standard library's own string concatenation (bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(fw_options INTERFACE -Wno-restrict)
endif()

if(FWUPDATE_SANITIZE)
  target_compile_options(fw_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(fw_options INTERFACE -fsanitize=address,undefined)
endif()
