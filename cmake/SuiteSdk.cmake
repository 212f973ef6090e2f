# suite_sdk: headers and import libraries of the suite's closed libraries. The names are the same
# whether they come from the suite or from the workbench's stand-ins. ZedPluginsManager is absent:
# the plug-in finds it at run time.
set(suite_libraries LogKit xeevent FileKit BoardInfo WmiKit ConsentStore EditionAdapt)

add_library(suite_sdk INTERFACE)
if(TALLYPORT_SUITE_SDK)
    # Before the product's own folder, so that the suite's headers replace the declarations there.
    target_include_directories(suite_sdk BEFORE INTERFACE "${TALLYPORT_SUITE_SDK}/include")
    target_link_directories(suite_sdk INTERFACE "${TALLYPORT_SUITE_SDK}/lib")
endif()
target_link_libraries(suite_sdk INTERFACE ${suite_libraries})
