# The second compiler for the same target: clang, with the headers, libraries and linker of GCC's.
include("${CMAKE_CURRENT_LIST_DIR}/toolchain-mingw64.cmake")

execute_process(
    COMMAND "${CMAKE_CXX_COMPILER}" -print-libgcc-file-name
    OUTPUT_VARIABLE libgcc OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
cmake_path(GET libgcc PARENT_PATH gcc_folder)

foreach(language C CXX)
    set(CMAKE_${language}_COMPILER_TARGET x86_64-w64-mingw32)
endforeach()
set(CMAKE_C_COMPILER clang-14)
set(CMAKE_CXX_COMPILER clang++-14)

# Debian's name of that folder, which holds the thread library's, is none that clang looks for.
set(CMAKE_CXX_FLAGS_INIT "--start-no-unused-arguments -nostdlibinc --end-no-unused-arguments")
foreach(folder "${gcc_folder}/include/c++" "${gcc_folder}/include/c++/x86_64-w64-mingw32"
        "${gcc_folder}/include/c++/backward" /usr/x86_64-w64-mingw32/include)
    string(APPEND CMAKE_CXX_FLAGS_INIT " -isystem ${folder}")
endforeach()
# As g++ has it: the comparison of types is in the library already.
string(APPEND CMAKE_CXX_FLAGS_INIT " -D__GXX_TYPEINFO_EQUALITY_INLINE=0")

# The linker would warn a hundred times that both compilers' names of types have other padding.
foreach(kind EXE SHARED MODULE)
    set(CMAKE_${kind}_LINKER_FLAGS_INIT "-B${gcc_folder} -L${gcc_folder} -pthread -Wl,--no-warnings")
endforeach()
