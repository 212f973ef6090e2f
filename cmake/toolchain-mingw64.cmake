# 64-bit Windows from Linux with Debian's mingw-w64, the variant with the standard thread library.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Libraries and headers come from the target's folder only; the machine's own never leak in.
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# GNU's ar and ranlib each take up to fifteen seconds to index an archive, LLVM's a fraction of one.
find_program(CMAKE_AR NAMES llvm-ar-14 x86_64-w64-mingw32-ar)
find_program(CMAKE_RANLIB NAMES llvm-ranlib-14 x86_64-w64-mingw32-ranlib)

set(CMAKE_CROSSCOMPILING_EMULATOR
    "${CMAKE_CURRENT_LIST_DIR}/../tools/wine/run_in_wine;${CMAKE_BINARY_DIR}/wine-prefix")
