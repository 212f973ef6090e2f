# Sourced by checks that read sources with clang as the cross compiler reads them.
# shellcheck shell=bash

# cross_headers COMPILER: sets `cross` to the options for the headers of the compiler that really builds,
# in the order that this compiler has.
cross_headers() {
    local folder
    cross=(--target=x86_64-w64-mingw32 -nostdlibinc)
    while read -r folder; do
        cross+=(-isystem "$folder")
    done < <("$1" -xc++ -E -v /dev/null 2>&1 |
        sed -n '/^#include </,/^End of search list/s/^ //p' |
        grep -e '/c++' -e '/x86_64-w64-mingw32/include$')
}
