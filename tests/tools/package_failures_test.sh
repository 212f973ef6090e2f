#!/usr/bin/env bash
# What cannot become a package, and what the scripts that make one say about it. A package that was
# made before stays as it is.
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"
scripts=$source_dir/tools/package
make_package=$scripts/make_package
map=$build_dir/TallyportPlugin.map
json=$(sed -n 's/^nlohmann_json_DIR:.*=//p' "$build_dir/CMakeCache.txt")
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:[A-Z]*=//p' "$build_dir/CMakeCache.txt")
name=tallyport-$version-win64
out=$work/out
mkdir "$out"
echo kept >"$out/$name.zip"

# without PROGRAM COMMAND...: runs the command where this one program is missing.
# shellcheck disable=SC2317 # expect calls it
without() {
    local path=$work/without-$1
    mkdir "$path"
    find /usr/bin/ -maxdepth 1 ! -name "$1" -exec ln -s -t "$path" {} +
    PATH=$path "${@:2}"
}
# pretended PROGRAM SCRIPT: the folder of a program that does what the script says.
pretended() {
    mkdir -p "$work/pretended-$1"
    printf '#!/usr/bin/env bash\n%s\n' "$2" >"$work/pretended-$1/$1"
    chmod +x "$work/pretended-$1/$1"
    echo "$work/pretended-$1"
}

# make_package: the call, the build, the machine.
expect 1 "make_package: usage: make_package" "$make_package" "$build_dir"
expect 1 "make_package: '$work' is no build folder; build first" "$make_package" "$work" "$out"
expect 1 "make_package: the folder '$out/$name.zip' for the package cannot be created" \
    "$make_package" "$build_dir" "$out/$name.zip"
fake=$work/build
mkdir -p "$fake/bin"
echo CMAKE_BUILD_TYPE:STRING=Debug >"$fake/CMakeCache.txt"
expect 1 "is no release build" "$make_package" "$fake" "$out"
for option in CHECKED COVERAGE; do
    printf '%s\n' CMAKE_BUILD_TYPE:STRING=RelWithDebInfo "TALLYPORT_$option:BOOL=ON" \
        >"$fake/CMakeCache.txt"
    expect 1 "is built with TALLYPORT_$option; what ships is built with the preset" \
        "$make_package" "$fake" "$out"
done
echo CMAKE_BUILD_TYPE:STRING=RelWithDebInfo >"$fake/CMakeCache.txt"
expect 1 "lacks bin/TallyportPlugin.dll" "$make_package" "$fake" "$out"
echo "no library" | tee "$fake/TallyportPlugin.map" >"$fake/bin/TallyportPlugin.dll"
expect 1 "make_package: '$fake/bin/TallyportPlugin.dll' is no Windows library, see above; build it" \
    "$make_package" "$fake" "$out"
for program in jq zip; do
    expect 1 "make_package: $program is missing; run: ./dev setup" \
        without "$program" "$make_package" "$build_dir" "$out"
done
expect 1 "make_package: zip failed, see above" \
    env SOURCE_DATE_EPOCH=1000000000 "PATH=$(pretended zip 'exit 15'):$PATH" \
    "$make_package" "$build_dir" "$out"
expect 1 "SOURCE_DATE_EPOCH is 'noon'" \
    env SOURCE_DATE_EPOCH=noon "$make_package" "$build_dir" "$out"
expect 1 "set SOURCE_DATE_EPOCH to a time" \
    env GIT_DIR="$work/none" "$make_package" "$build_dir" "$out"
expect 0 "kept" cat "$out/$name.zip"
expect 0 "$name.zip" \
    env GIT_DIR="$work/none" SOURCE_DATE_EPOCH=1000000000 "$make_package" "$build_dir" "$out"

# collect_licences: the call, the link map, the texts.
licences=$scripts/collect_licences
expect 1 "collect_licences: usage: collect_licences LINK_MAP" "$licences" "$map" "$json"
expect_lines 1 "$licences" "$map" "$json"
expect 1 "collect_licences: there is no link map '$work/none.map'; build first: ./dev build" \
    "$licences" "$work/none.map" "$json" "$work/licences"
expect 1 "collect_licences: the folder '$out/$name.zip' for the licences cannot be created" \
    "$licences" "$map" "$json" "$out/$name.zip"
expect 1 "collect_licences: '$work' is not nlohmann json's CMake folder; run: ./dev setup" \
    "$licences" "$map" "$work" "$work/licences"
echo "nothing was linked" >"$work/empty.map"
expect 1 "collect_licences: $work/empty.map names no static library; build again: ./dev build" \
    "$licences" "$work/empty.map" "$json" "$work/licences"
sed "s,^LOAD /.*libstdc++.a$,LOAD $work/libforeign.a," "$map" >"$work/foreign.map"
expect 1 "its licence would be missing" \
    "$licences" "$work/foreign.map" "$json" "$work/licences"
mkdir -p "$work/json/share/cmake/nlohmann_json"
cp "$json/nlohmann_jsonConfigVersion.cmake" "$work/json/share/cmake/nlohmann_json"
expect 1 "copyright is missing" \
    "$licences" "$map" "$work/json/share/cmake/nlohmann_json" "$work/licences"
path=$(pretended dpkg-query 'echo "no-such-package: /usr/lib/file"'):$PATH
expect 1 "the licence text /usr/share/doc/no-such-package/copyright is missing" \
    env "PATH=$path" "$licences" "$map" "$json" "$work/licences"

# bill_of_materials: the call, the package, the components.
bill=$scripts/bill_of_materials
package=$work/package
mkdir "$package"
printf 'name\tversion\turl\tlicence\ttexts\n' >"$work/components"
expect 1 "bill_of_materials: usage: bill_of_materials PACKAGE_DIR" "$bill" "$package" 1.0 0
expect 1 "bill_of_materials: there is no TallyportPlugin.dll in '$package'; name the folder of" \
    "$bill" "$package" 1.0 0 "$work/components"
echo library >"$package/TallyportPlugin.dll"
expect 0 '"created": "1970-01-01T00:00:00Z"' "$bill" "$package" 1.0 0 "$work/components"
expect 1 "bill_of_materials: 'noon' is not a number of seconds since 1970" \
    "$bill" "$package" 1.0 noon "$work/components"
: >"$work/empty"
for file in none empty; do
    expect 1 "bill_of_materials: '$work/$file' is missing or empty; name a file" \
        "$bill" "$package" 1.0 0 "$work/$file"
done
printf 'name\tversion\n' >>"$work/components"
expect 1 "bill_of_materials: $work/components:2: not a line of collect_licences" \
    "$bill" "$package" 1.0 0 "$work/components"
expect_lines 1 "$bill" "$package" 1.0 0 "$work/components"
finish
