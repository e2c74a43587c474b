# Toolchain: the compiler for 64-bit Windows of the Debian package g++-mingw-w64-x86-64-posix.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
