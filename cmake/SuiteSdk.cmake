# suite_sdk: import libraries of the suite's closed libraries. The names are the same whether they
# come from the suite or from the workbench's stand-ins. ZedPluginsManager is absent: the plug-in
# finds it at run time.
set(suite_libraries LogKit xeevent FileKit BoardInfo WmiKit ConsentStore EditionAdapt)

add_library(suite_sdk INTERFACE)
if(NOT TALLYPORT_SUITE_SDK)
    target_link_libraries(suite_sdk INTERFACE ${suite_libraries})
    return()
endif()

# The product's own declarations would silently take the place of a missing header.
foreach(header board_info consent_store edition_adapt file_kit log_kit plugins_manager wmi_kit
        xeevent)
    if(NOT EXISTS "${TALLYPORT_SUITE_SDK}/include/platform/${header}.h")
        message(FATAL_ERROR "The header platform/${header}.h is missing in\n"
            "  ${TALLYPORT_SUITE_SDK}/include\ndocs/integration.md lists what belongs there.")
    endif()
endforeach()
# By their full names: a static link looks for no import library of mingw-w64 by its short name.
foreach(library IN LISTS suite_libraries)
    find_library(import_library NAMES ${library} PATHS "${TALLYPORT_SUITE_SDK}/lib"
        NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH NO_CACHE)
    if(NOT import_library)
        message(FATAL_ERROR "The import library of ${library} is missing in\n"
            "  ${TALLYPORT_SUITE_SDK}/lib\ndocs/integration.md lists what belongs there.")
    endif()
    target_link_libraries(suite_sdk INTERFACE "${import_library}")
    unset(import_library)
endforeach()
