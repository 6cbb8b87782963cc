option(FWUPDATE_TESTS "Build the tests and benchmarks" ON)
option(FWUPDATE_PART_TESTS "With the tests, also those that the build with the sanitizers has, and the benchmarks" ON)
option(FWUPDATE_VM_TESTS "With the tests, also those in the virtual machine" ON)
include(CMakeDependentOption)
cmake_dependent_option(FWUPDATE_TOOLS "Build the virtual printer and what drives a window" ON
  "NOT FWUPDATE_TESTS" ON)
option(FWUPDATE_MERGE_FILES "Compile several files of a test or tool at a time" OFF)
option(FWUPDATE_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
option(FWUPDATE_COVERAGE "Count which lines and branches of Host run (clang only)" OFF)
option(FWUPDATE_LIBFUZZER "Build the fuzzers of tests/fuzz with libFuzzer (clang only)" OFF)

# Every target of the project links fw_options, directly or through another.
add_library(fw_options INTERFACE)
target_compile_options(fw_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual)

# GCC 12 warns of overlapping copies in the standard library's own string concatenation (bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(fw_options INTERFACE -Wno-restrict)
endif()

# What foreign bytes could do with a mistake of ours is kept small: Debian's hardening, with the
# stronger checks of copies, of jumps, and of the standard library's containers. The sanitizers have
# checks of their own, and without optimization the compiler knows no sizes.
include(CheckPIESupported)
check_pie_supported()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
if(NOT FWUPDATE_SANITIZE)
  target_compile_options(fw_options INTERFACE
    -fstack-protector-strong -fstack-clash-protection
    $<$<NOT:$<CONFIG:Debug>>:SHELL:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3>)
  target_compile_definitions(fw_options INTERFACE _GLIBCXX_ASSERTIONS)
  target_link_options(fw_options INTERFACE -Wl,-z,relro -Wl,-z,now)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|i.86")
    target_compile_options(fw_options INTERFACE -fcf-protection)
  elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "aarch64")
    target_compile_options(fw_options INTERFACE -mbranch-protection=standard)
  endif()
endif()

if(FWUPDATE_SANITIZE)
  target_compile_options(fw_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(fw_options INTERFACE -fsanitize=address,undefined)
endif()

# libFuzzer sees which branches of the product an input reaches.
if(FWUPDATE_LIBFUZZER)
  target_compile_options(fw_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

if(FWUPDATE_COVERAGE)
  target_link_options(fw_options INTERFACE -fprofile-instr-generate)
endif()
