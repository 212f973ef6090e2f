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
