# For building on another machine what arm64 runs, with Debian's cross compiler and libraries; the tests
# then run under qemu's emulation of a process. The preset "arm64" uses it.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER) # what helps to build runs here
# pkg-config, which CMake asks for some libraries, would tell where this machine's are.
if(NOT DEFINED ENV{PKG_CONFIG_LIBDIR})
    set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/pkgconfig:/usr/share/pkgconfig)
endif()

find_program(CONSOLIDATOR_AARCH64_COMPILER NAMES ${CMAKE_CXX_COMPILER})
mark_as_advanced(CONSOLIDATOR_AARCH64_COMPILER)
if(NOT CONSOLIDATOR_AARCH64_COMPILER)
    message(FATAL_ERROR "${CMAKE_CXX_COMPILER} is missing. On Debian run:\n"
        "  scripts/install-dependencies build test arm64\n")
endif()

find_program(CONSOLIDATOR_QEMU_AARCH64 NAMES qemu-aarch64 qemu-aarch64-static)
mark_as_advanced(CONSOLIDATOR_QEMU_AARCH64)
if(CONSOLIDATOR_QEMU_AARCH64)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${CONSOLIDATOR_QEMU_AARCH64})
else()
    message(WARNING "qemu-aarch64 is not installed: tests for arm64 cannot run")
endif()
