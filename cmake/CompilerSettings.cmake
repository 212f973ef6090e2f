# How everything of this project is compiled. Targets take it with
# target_link_libraries(... PRIVATE tallyport_compiler_settings).
add_library(tallyport_compiler_settings INTERFACE)

target_compile_definitions(tallyport_compiler_settings INTERFACE
    UNICODE _UNICODE
    _WIN32_WINNT=0x0A00 WINVER=0x0A00
    WIN32_LEAN_AND_MEAN NOMINMAX)

if(MSVC)
    target_compile_options(tallyport_compiler_settings INTERFACE
        /W4 /permissive- /utf-8 /EHsc /Zc:__cplusplus)
    # Without it a std::mutex of Visual Studio 2022 17.10 or newer crashes at its first lock in a host
    # that has loaded an older msvcp140.dll. Which one it loads is the host's choice.
    target_compile_definitions(tallyport_compiler_settings INTERFACE
        _DISABLE_CONSTEXPR_MUTEX_CONSTRUCTOR)
else()
    target_compile_options(tallyport_compiler_settings INTERFACE
        -Wall -Wextra -Wpedantic -Wconversion -Wshadow -fstack-protector-strong)
    # No DLL of the compiler has to travel with the plug-in.
    target_link_options(tallyport_compiler_settings INTERFACE -static -fstack-protector-strong)
    # Functions that nothing calls do not ship.
    target_compile_options(tallyport_compiler_settings INTERFACE -ffunction-sections -fdata-sections)
    target_link_options(tallyport_compiler_settings INTERFACE -Wl,--gc-sections)
endif()

if(TALLYPORT_CHECKED)
    target_compile_definitions(tallyport_compiler_settings INTERFACE _GLIBCXX_ASSERTIONS)
    target_compile_options(tallyport_compiler_settings INTERFACE
        -fsanitize=undefined,float-cast-overflow -fsanitize-undefined-trap-on-error)
endif()

if(TALLYPORT_COVERAGE)
    target_compile_options(tallyport_compiler_settings INTERFACE --coverage -fprofile-update=atomic)
    target_link_options(tallyport_compiler_settings INTERFACE --coverage)
endif()

# Everything around the product compiles the same way, only faster: without the optimiser and without
# debug information, which the debug build has for stepping through. Benchmarks keep the optimiser,
# because a slow workbench would flatter the plug-in.
#
# The optimiser would also take the address of an imported function for constant, so a test that
# calls one before and after its redirection would call the old one twice.
add_library(tallyport_workbench_settings INTERFACE)
target_link_libraries(tallyport_workbench_settings INTERFACE tallyport_compiler_settings)
if(MSVC)
    # A target has definitions that the precompiled headers, which are the system's, need not know.
    target_compile_options(tallyport_workbench_settings INTERFACE
        /wd4605 $<$<CXX_COMPILER_ID:Clang>:-Wno-clang-cl-pch>)
else()
    if(NOT TALLYPORT_BENCHMARKS)
        target_compile_options(tallyport_workbench_settings INTERFACE -O0)
    endif()
    if(TALLYPORT_CHECKED OR TALLYPORT_COVERAGE OR NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
        target_compile_options(tallyport_workbench_settings INTERFACE -g0)
    endif()
endif()

# GNU's linker takes seconds for one program of tests, LLVM's a fraction of one. The product is linked
# by the former. GCC's own choice of linkers looks in one fixed folder only, hence the specs.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND EXISTS "/usr/bin/ld.lld-14")
    target_link_options(tallyport_workbench_settings INTERFACE
        -fno-use-linker-plugin "-specs=${CMAKE_CURRENT_LIST_DIR}/lld.specs")
endif()

# Headers that most sources of the workbench and the tests include: read once, then reused.
set(TALLYPORT_COMMON_HEADERS
    <windows.h> <algorithm> <chrono> <cstdint> <functional> <map> <memory> <optional> <set>
    <sstream> <string> <string_view> <utility> <vector>)
