# For building on another machine what arm64 runs, with Debian's cross compiler and libraries; the tests
# then run under qemu's emulation of a process. The preset "arm64" uses it.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)

# Debian keeps the libraries of each machine side by side, and what this one runs in /usr/bin.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_IGNORE_PREFIX_PATH /usr/lib/x86_64-linux-gnu)
set(PKG_CONFIG_EXECUTABLE aarch64-linux-gnu-pkg-config)

find_program(qemu_aarch64 NAMES qemu-aarch64 qemu-aarch64-static)
set(CMAKE_CROSSCOMPILING_EMULATOR ${qemu_aarch64})
