# tallyport_add_test_program(NAME <name> LABEL <label>... SOURCES <file>... [LIBRARIES <target>...]
#                            [ACCELERATED [SPEED <n>]] [HEADERS_OF <target>]
#                            [ONLY_IN_WINE <reason>])
#
# Builds a GoogleTest program and registers it as one CTest entry. Cross-built programs run in Wine
# through tools/wine/run_test; the checked build has Wine check the heap as well. ACCELERATED runs the
# program on a clock that is SPEED times as fast (36000 unless given: an hour in a tenth of a second).
# HEADERS_OF names the target whose precompiled headers serve, test_support's unless given.
# ONLY_IN_WINE says why Windows itself, where accelerated programs are skipped as well, skips it.
# A program that leaves a record for the table of `./dev test reliability` has that label as well;
# support/reliability_record.h says more.
#
# The target `tests_LABEL` builds all programs of a label. Includes are written from src/, workbench/
# and tests/.
function(tallyport_add_test_program)
    cmake_parse_arguments(PARSE_ARGV 0 arg
        "ACCELERATED" "NAME;SPEED;HEADERS_OF;ONLY_IN_WINE" "LABEL;SOURCES;LIBRARIES")
    foreach(required NAME LABEL SOURCES)
        if(NOT arg_${required})
            message(FATAL_ERROR "tallyport_add_test_program: ${required} is missing")
        endif()
    endforeach()
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "tallyport_add_test_program: unknown '${arg_UNPARSED_ARGUMENTS}'")
    endif()
    if(NOT arg_SPEED)
        set(arg_SPEED 36000)
    endif()

    add_executable(${arg_NAME} ${arg_SOURCES})
    target_include_directories(${arg_NAME} PRIVATE
        "${PROJECT_SOURCE_DIR}/src" "${PROJECT_SOURCE_DIR}/workbench" "${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(${arg_NAME} PRIVATE
        tallyport_workbench_settings ${arg_LIBRARIES} gmock_main)
    if(arg_HEADERS_OF)
        target_precompile_headers(${arg_NAME} REUSE_FROM ${arg_HEADERS_OF})
    else()
        target_precompile_headers(${arg_NAME} REUSE_FROM test_support)
    endif()
    foreach(label IN LISTS arg_LABEL)
        add_dependencies(tests_${label} ${arg_NAME})
    endforeach()

    if(CMAKE_CROSSCOMPILING)
        set(runner "${PROJECT_SOURCE_DIR}/tools/wine/run_test")
        if(TALLYPORT_CHECKED)
            list(APPEND runner --check-heap)
        endif()
        if(arg_ACCELERATED)
            add_dependencies(${arg_NAME} keep_exit_code)
            list(APPEND runner --accelerated ${arg_SPEED} "${CMAKE_BINARY_DIR}/wine-prefix-fast")
        else()
            list(APPEND runner "${CMAKE_BINARY_DIR}/wine-prefix")
        endif()
        # Named by its file: CMake would put the emulator before a target's name.
        add_test(NAME ${arg_NAME} COMMAND ${runner} "$<TARGET_FILE:${arg_NAME}>")
    elseif(arg_ACCELERATED)
        tallyport_add_skipped_test(${arg_NAME} "${arg_LABEL}" "the fast clock exists only with Wine")
    elseif(arg_ONLY_IN_WINE)
        tallyport_add_skipped_test(${arg_NAME} "${arg_LABEL}" "${arg_ONLY_IN_WINE}")
    else()
        add_test(NAME ${arg_NAME} COMMAND ${arg_NAME})
    endif()

    # run_test ends the program itself and says so; CTest's own limit is the net below it.
    set_tests_properties(${arg_NAME} PROPERTIES LABELS "${arg_LABEL}" TIMEOUT 960)
    # Programs of one prefix take turns, because each would see the other's registry, devices and
    # printers; what the checked build runs only looks. Those on the fast clock take longest, so they
    # start first.
    if(arg_ACCELERATED)
        set_tests_properties(${arg_NAME} PROPERTIES RESOURCE_LOCK wine-prefix-fast COST 100)
    elseif(NOT TALLYPORT_CHECKED)
        set_tests_properties(${arg_NAME} PROPERTIES RESOURCE_LOCK wine-prefix)
    endif()
endfunction()

# tallyport_add_skipped_test(<name> <labels> <reason>): what this machine cannot run.
function(tallyport_add_skipped_test name labels reason)
    add_test(NAME ${name} COMMAND "${CMAKE_COMMAND}" -E echo "Skipped: ${reason}")
    set_tests_properties(${name} PROPERTIES SKIP_REGULAR_EXPRESSION "^Skipped" LABELS "${labels}")
endfunction()
