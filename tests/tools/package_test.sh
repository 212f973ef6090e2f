#!/usr/bin/env bash
# The package as its receiver gets it: unpacked, checked and run. And what cannot become one.
# shellcheck disable=SC2016 # jq expands these
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"
scripts=$source_dir/tools/package
make_package=$scripts/make_package

# The version as a person would look it up; everything else has to agree with it.
version=$(sed -n 's/^project(Tallyport VERSION \([0-9.]*\) .*/\1/p' "$source_dir/CMakeLists.txt")
name=tallyport-$version-win64
expect 0 "$name.zip" "$make_package" "$build_dir" "$work"
(cd "$work" && cmake -E tar xf "$name.zip")
package=$work/$name
library=$package/TallyportPlugin.dll
symbols=$package/symbols/TallyportPlugin.dll.debug
bill=$package/tallyport-$version.spdx.json
cd "$package" || exit

# contains FILE PATTERN: the file has this text.
contains() { expect 0 "" grep --quiet --binary-files=text --extended-regexp -e "$2" "$1"; }

# Twice the same, and nothing in it of the machine that made it.
sleep 1.1
expect 0 "$name.zip" "$make_package" "$build_dir" "$work/again"
expect 0 "" cmp "$work/$name.zip" "$work/again/$name.zip"
for trace in "$source_dir" "$build_dir" "$work"; do
    expect 1 "" grep --recursive --binary-files=text --fixed-strings -e "$trace" .
done
expect 1 "" grep --text --fixed-strings '@' README.txt

# The library: stripped, with the project's version.
expect 1 "" grep --quiet '\.debug_' <(x86_64-w64-mingw32-objdump --section-headers "$library")
x86_64-w64-mingw32-windres --input-format=coff "$library" "$work/version.rc"
contains "$work/version.rc" "\"ProductVersion\", \"$version\""

# Its symbols: the checksum in the debug link is theirs, and they know an address of the library.
# The last eight bytes of a gzip file are the CRC-32 and the length.
crc=$(gzip --stdout "$symbols" | tail --bytes=8 | od --address-radix=n --format=x4 --read-bytes=4)
expect 0 "CRC value: 0x$(printf '%x' "0x${crc// /}")" \
    x86_64-w64-mingw32-objdump --dwarf=links "$library"
x86_64-w64-mingw32-objdump --private-headers "$library" >"$work/headers"
image_base=$(sed -n 's/^ImageBase[[:space:]]*//p' "$work/headers")
first_export=$(sed -n 's/.*\[ *0\] +base\[ *1\] \([0-9a-f]*\) Export RVA/\1/p' "$work/headers")
expect 0 "src/plugin/module_entry.cpp:" \
    x86_64-w64-mingw32-addr2line -e "$symbols" "$(printf '0x%x' $((0x$image_base + 0x$first_export)))"
build_id=$(sed -n 's/.*RSDS signature \([0-9a-f]*\).*/\1/p' "$work/headers")
contains README.txt "^ *${build_id:-no build id}\.\$"

# Checksums and bill of materials name every file, and rightly.
expect 0 "" sha256sum --check --strict --quiet SHA256SUMS
expect 0 "" diff <(cut -c67- SHA256SUMS) <(find . -type f ! -name SHA256SUMS -printf '%P\n' | sort)
for sum in sha1 sha256; do
    expect 0 "" diff \
        <(jq --raw-output --arg sum "${sum^^}" '.files[] | .fileName as $f | .checksums[] |
            select(.algorithm == $sum) | "\(.checksumValue)  \($f)"' "$bill" | sort) \
        <(find . -type f ! -name SHA256SUMS ! -name '*.spdx.json' -exec ${sum}sum {} + | sort)
done
expect 0 "SPDX-2.3 $version" jq --raw-output '.spdxVersion + " " + .packages[0].versionInfo' "$bill"
# Every id that a relation names is one of the document's.
expect 0 "true" jq '([.SPDXID] + [.packages[], .files[] | .SPDXID]) as $ids |
    [.relationships[] | .spdxElementId, .relatedSpdxElement] - $ids == [] and
    ($ids | length) == ($ids | unique | length)' "$bill"

# What is linked in is there by name and version, with its licence.
for component in nlohmann-json mingw-w64-x86-64-dev g{cc,++}-mingw-w64-x86-64-posix; do
    installed=$(dpkg-query --show --showformat='${Version}' "$component" 2>/dev/null) ||
        installed=3.11.3
    expect 0 "$installed" jq --arg name "$component" \
        '.packages[] | select(.name == $name) | .versionInfo' "$bill"
done
contains licences/nlohmann-json.txt "Permission is hereby granted, free of charge"
contains licences/gcc-mingw-w64-base.txt "GCC RUNTIME LIBRARY EXCEPTION"

expect 0 "992614500" "$source_dir/tools/wine/run_in_wine" "$wine_prefix" \
    "$build_dir/bin/tallyport_host.exe" --plugin "$library" --seconds 3 --events "$work/events.ndjson"
contains "$work/events.ndjson" '"id":992614518'

# What cannot become a package leaves the one that is there alone.
sums=$(sha256sum "$work/$name.zip")
expect_line 1 "'$work' is no build folder; build first" "$make_package" "$work" "$work"
mkdir "$work/build"
echo CMAKE_BUILD_TYPE:STRING=Debug >"$work/build/CMakeCache.txt"
expect_line 1 "is no release build" "$make_package" "$work/build" "$work"
sed "s,^LOAD /.*libstdc++.a$,LOAD $work/libforeign.a," "$build_dir/TallyportPlugin.map" >"$work/foreign.map"
json=$(sed -n 's/^nlohmann_json_DIR:.*=//p' "$build_dir/CMakeCache.txt")
expect 1 "its licence would be missing" "$scripts/collect_licences" "$work/foreign.map" "$json" "$work/licences"
[[ $sums == "$(sha256sum "$work/$name.zip")" ]] || complain "a failure changed the package"
finish
