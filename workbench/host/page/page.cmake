# The page's parts become arrays of bytes. Included, because a generated source has to be made in the
# folder of its target. Scripts are joined in the order of their names.
set(page_folder "${CMAKE_CURRENT_LIST_DIR}")
set(page_source "${CMAKE_CURRENT_BINARY_DIR}/page_source.cpp")
file(GLOB page_scripts CONFIGURE_DEPENDS "${page_folder}/script/*.js")
list(JOIN page_scripts "|" joined_scripts)

add_custom_command(
    OUTPUT "${page_source}"
    COMMAND "${CMAKE_COMMAND}" "-DOUTPUT=${page_source}" "-DTEMPLATE=${page_folder}/page.html"
        "-DSTYLE=${page_folder}/page.css" "-DSCRIPT=${joined_scripts}"
        -P "${page_folder}/embed.cmake"
    DEPENDS "${page_folder}/embed.cmake" "${page_folder}/page.html" "${page_folder}/page.css"
        ${page_scripts}
    VERBATIM)

target_sources(host_parts PRIVATE "${page_folder}/page.cpp" "${page_source}")
