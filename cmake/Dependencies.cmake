# Libraries that the project calls. `./dev setup` puts them below build/deps; where it did not run,
# CMake fetches the same versions.
include(FetchContent)

find_package(nlohmann_json 3.11.3 EXACT CONFIG QUIET)
if(NOT nlohmann_json_FOUND)
    FetchContent_Declare(nlohmann_json
        GIT_REPOSITORY https://github.com/nlohmann/json.git GIT_TAG v3.11.3 GIT_SHALLOW ON)
    FetchContent_MakeAvailable(nlohmann_json)
endif()

if(TALLYPORT_WORKBENCH)
    if(NOT TALLYPORT_DEPS_DIR)
        set(TALLYPORT_DEPS_DIR "${CMAKE_SOURCE_DIR}/build/deps")
    endif()

    if(EXISTS "${TALLYPORT_DEPS_DIR}/cli11/include/CLI/CLI.hpp")
        add_library(CLI11 INTERFACE)
        add_library(CLI11::CLI11 ALIAS CLI11)
        target_include_directories(CLI11 SYSTEM INTERFACE "${TALLYPORT_DEPS_DIR}/cli11/include")
    else()
        FetchContent_Declare(CLI11
            GIT_REPOSITORY https://github.com/CLIUtils/CLI11.git GIT_TAG v2.3.2 GIT_SHALLOW ON)
        FetchContent_MakeAvailable(CLI11)
    endif()

    set(INSTALL_GTEST OFF CACHE INTERNAL "")
    set(gtest_force_shared_crt ON CACHE INTERNAL "")
    if(EXISTS "/usr/src/googletest/CMakeLists.txt")
        FetchContent_Declare(googletest SOURCE_DIR /usr/src/googletest)
    else()
        FetchContent_Declare(googletest
            GIT_REPOSITORY https://github.com/google/googletest.git GIT_TAG release-1.12.1
            GIT_SHALLOW ON)
    endif()
    FetchContent_MakeAvailable(googletest)
    if(NOT MSVC)
        foreach(library gtest gtest_main gmock gmock_main)
            target_compile_options(${library} PRIVATE -O0 -g0)
        endforeach()
    endif()
endif()
