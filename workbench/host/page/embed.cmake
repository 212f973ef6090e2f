# cmake -DOUTPUT=FILE.cpp -DTEMPLATE=FILE -DSTYLE=FILE -DSCRIPT=FILE|FILE... -P embed.cmake
#
# Writes the page's parts as arrays of bytes, which no compiler limits in length.

# The file's text without carriage returns, as 'c', for each byte.
function(read_as_bytes files result)
    string(REPLACE "|" ";" files "${files}")
    set(all "")
    foreach(name IN LISTS files)
        file(READ "${name}" bytes HEX)
        string(REGEX REPLACE "(..)" "'\\\\x\\1'," bytes "${bytes}")
        string(REPLACE "'\\x0d'," "" bytes "${bytes}")
        string(REPLACE "'\\x0a'," "'\\n',\n" bytes "${bytes}")
        string(APPEND all "${bytes}")
    endforeach()
    set(${result} "${all}" PARENT_SCOPE)
endfunction()

set(code "#include \"host/page/page_source.h\"\n\nnamespace host {\n")
foreach(part TEMPLATE STYLE SCRIPT)
    read_as_bytes("${${part}}" bytes)
    string(TOLOWER ${part} name)
    string(APPEND code "\nstatic const char ${name}Bytes[] = {\n${bytes}};\n")
endforeach()
string(APPEND code "
const std::string_view kPageTemplate(templateBytes, sizeof(templateBytes));
const std::string_view kPageStyle(styleBytes, sizeof(styleBytes));
const std::string_view kPageScript(scriptBytes, sizeof(scriptBytes));

}  // namespace host
")
file(WRITE "${OUTPUT}" "${code}")
