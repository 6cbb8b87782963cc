# Builds for another machine with Debian's cross compiler. Headers and libraries come from a folder of
# Debian packages for that machine, CMAKE_SYSROOT; what is built runs in an emulator. FW_GNU_TYPE names
# the compiler, FW_MULTIARCH the folders of libraries, FW_EMULATOR the program (tests/architectures/run).
set(CMAKE_SYSTEM_NAME Linux)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES FW_GNU_TYPE FW_MULTIARCH FW_EMULATOR)
string(REGEX MATCH "^[^-]*" CMAKE_SYSTEM_PROCESSOR ${FW_GNU_TYPE})
set(CMAKE_CXX_COMPILER ${FW_GNU_TYPE}-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR ${FW_EMULATOR} -L ${CMAKE_SYSROOT})

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${CMAKE_SYSROOT})
set(ENV{PKG_CONFIG_LIBDIR}
  ${CMAKE_SYSROOT}/usr/lib/${FW_MULTIARCH}/pkgconfig:${CMAKE_SYSROOT}/usr/share/pkgconfig)
set(QT_HOST_PATH /usr CACHE PATH "moc and its like run here")
