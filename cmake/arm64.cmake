# Builds for 64-bit ARM on another Debian, with that system's libraries beside its own (packages
# NAME:arm64). Programs of the build, and tests, run under qemu.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64)
set(PKG_CONFIG_EXECUTABLE aarch64-linux-gnu-pkg-config)
