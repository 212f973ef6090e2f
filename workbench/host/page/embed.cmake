# cmake -DOUTPUT=FILE.cpp -DTEMPLATE=FILE -DSTYLE=FILE -DSCRIPT=FILE|FILE... -P embed.cmake
#
# Writes the page up to the record and behind it as arrays of bytes, which no compiler limits in length.
cmake_minimum_required(VERSION 3.25)

# The text of files without carriage returns: a browser hashes text after it has dropped them.
function(read_text files result)
    string(REPLACE "|" ";" files "${files}")
    set(all "")
    foreach(name IN LISTS files)
        file(READ "${name}" text)
        string(APPEND all "${text}")
    endforeach()
    string(REPLACE "\r" "" all "${all}")
    set(${result} "${all}" PARENT_SCOPE)
endfunction()

# "sha256-" and the SHA-256 in Base64, as a Content-Security-Policy has it.
function(name_by_hash text result)
    set(alphabet "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")
    string(SHA256 hash "${text}")
    set(base64 "")
    # Three bytes are four letters; a zero byte completes the last three.
    foreach(at RANGE 0 60 6)
        string(SUBSTRING "${hash}00" ${at} 6 three_bytes)
        foreach(shift 18 12 6 0)
            math(EXPR index "(0x${three_bytes} >> ${shift}) & 63")
            string(SUBSTRING "${alphabet}" ${index} 1 letter)
            string(APPEND base64 "${letter}")
        endforeach()
    endforeach()
    string(SUBSTRING "${base64}" 0 43 base64)
    set(${result} "sha256-${base64}=" PARENT_SCOPE)
endfunction()

function(append_array name text)
    string(HEX "${text}" bytes)
    string(REGEX REPLACE "(..)" "'\\\\x\\1'," bytes "${bytes}")
    string(REPLACE "'\\x0a'," "'\\n',\n" bytes "${bytes}")
    file(APPEND "${OUTPUT}" "static const char ${name}Bytes[] = {\n${bytes}};\n"
        "const std::string_view ${name}(${name}Bytes, sizeof(${name}Bytes));\n")
endfunction()

read_text("${TEMPLATE}" page)
read_text("${STYLE}" style)
read_text("${SCRIPT}" script)
name_by_hash("${style}" style_hash)
name_by_hash("${script}" script_hash)
string(REPLACE "@STYLE_HASH@" "${style_hash}" page "${page}")
string(REPLACE "@SCRIPT_HASH@" "${script_hash}" page "${page}")
string(REPLACE "@STYLE@" "${style}" page "${page}")
string(REPLACE "@SCRIPT@" "${script}" page "${page}")
string(FIND "${page}" "@RECORD@" at)
string(SUBSTRING "${page}" 0 ${at} front)
string(LENGTH "@RECORD@" length)
math(EXPR at "${at} + ${length}")
string(SUBSTRING "${page}" ${at} -1 back)

file(WRITE "${OUTPUT}" "#include \"host/page/page.h\"\n\nnamespace host {\n\n")
append_array(kPageFront "${front}")
append_array(kPageBack "${back}")
file(APPEND "${OUTPUT}" "\n}  // namespace host\n")
