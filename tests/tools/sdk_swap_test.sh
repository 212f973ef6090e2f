#!/usr/bin/env bash
# The plug-in built against a folder with somebody else's headers and import libraries, and run with
# somebody else's libraries: tests/sdk has them. Nothing of the workbench takes part.
# shellcheck disable=SC2016 # jq expands these
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"
guide=$source_dir/docs/integration.md
folder=$build_dir/sdk-swap
sdk=$folder/sdk suite=$folder/suite plugin=$folder/plugin
mapfile -t headers < <(basename --suffix=.h "$source_dir"/src/platform/*.h)
# As this build, with or without a compiler cache.
CMAKE_CXX_COMPILER_LAUNCHER=$(
    sed -n 's/^CMAKE_CXX_COMPILER_LAUNCHER:[A-Z]*=//p' "$build_dir/CMakeCache.txt")
export CMAKE_CXX_COMPILER_LAUNCHER

# guided COMMAND: the guide's command that begins so, with this test's folders.
guided() {
    sed -n "/^${1//\//\\\/}/{ s,/path/to/sdk,$sdk,; s,build/for-suite,$plugin,; p }" "$guide"
}

# The headers say through an export which of them the library was compiled with.
rm -rf "$folder"
mkdir -p "$sdk/include/platform"
cp "$source_dir"/src/platform/*.h "$sdk/include/platform"
for header in "${headers[@]}"; do
    echo "extern \"C\" __declspec(dllexport) inline int SdkHeader_$header() { return 1; }" \
        >>"$sdk/include/platform/$header.h"
done
expect 0 "" cmake -S "$source_dir/tests/sdk" -B "$suite" -G Ninja -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_TOOLCHAIN_FILE="$source_dir/cmake/toolchain-mingw64.cmake" -DSDK="$sdk"
expect 0 "" cmake --build "$suite" --parallel 2
((failures == 0)) || finish

# As the guide says, but without optimisation and debug information: it is the fourfold of the time.
configure=$(guided 'cmake --preset mingw-release')
build=$(guided 'cmake --build build/for-suite')
cd "$source_dir" || exit
expect 0 "" bash -c "${configure:-false} -DCMAKE_CXX_FLAGS_RELWITHDEBINFO='-O0 -DNDEBUG'"
expect 0 "" bash -c "${build:-false}"
((failures == 0)) || finish

# Each header was the SDK's, and no declaration of the project itself took part.
library=$plugin/bin/TallyportPlugin.dll
x86_64-w64-mingw32-objdump --private-headers "$library" >"$work/library"
for header in "${headers[@]}"; do
    expect 0 "" grep --quiet "SdkHeader_$header\$" "$work/library"
done
ninja -C "$plugin" -t deps >"$work/deps"
expect 0 "" grep --quiet --fixed-strings "sdk/include/platform/log_kit.h" "$work/deps"
expect 1 "" grep -e "src/platform/" -e "standins/" "$work/deps"

# The guide's line for Microsoft's compiler names the sources, definitions and libraries of this
# build. The libraries from kernel32 on are CMake's own for every program.
commands=$plugin/compile_commands.json
line=$(sed -n '/^cl /,/^```/p' "$guide" | tr '\n' ' ')
mutex=_DISABLE_CONSTEXPR_MUTEX_CONSTRUCTOR # for Microsoft's library alone
mapfile -t definitions < <(grep --only-matching ' /D[A-Z_][^ ]*' <<<"${line%%/link*}" | cut -c4- |
    grep --invert-match --line-regexp "$mutex")
for place in docs/integration.md cmake/CompilerSettings.cmake tools/msvc_check/compile; do
    expect 0 "" grep --quiet "$mutex" "$source_dir/$place"
done
mapfile -t libraries < <(
    sed -n '/^ *LINK_LIBRARIES = /{s///; s/-lkernel32 .*//; p}' "$plugin/build.ninja" | tr ' ' '\n' |
        sed -n 's,^-l\|^.*/lib/lib\(.*\)\.dll\.a$,\1,p')
expect 0 "7 definitions, 16 libraries" \
    echo "${#definitions[@]} definitions, ${#libraries[@]} libraries"
for definition in "${definitions[@]}"; do
    expect 0 "" jq --exit-status --arg definition " -D$definition " \
        'map(.command | contains($definition)) | any' "$commands"
done
for name in "${libraries[@]}"; do
    expect 0 " $name.lib " echo "$line"
done
expect 0 "" diff <(find "$source_dir/src" -name '*.cpp' | sort) \
    <(jq --raw-output '.[].file | select(endswith(".cpp"))' "$commands" | sort)

# Three days on the fast clock: every library is called, every event comes through the other one.
cp "$library" "$build_dir/bin/keep_exit_code.exe" "$suite/bin"
"$source_dir/tools/wine/run_accelerated" 36000 "$wine_prefix_fast" "$suite/bin/other_host.exe" 72 2>&1 |
    tr -d '\r' >"$work/record"
for pattern in '^other ZedPluginsManager: registered 6FB0F3BF-9BBC-4A0B-9B61-3AD94AEA2DE8$' \
    '^other xeevent: 992614500 Product=OTHER-BOARD String7=Other Machine Version=OTHER\.0001$' \
    '^other xeevent: 992614512 ECLog=0xab0xcd0x000x000x00$' \
    '^other LogKit: level 3, Register timer:12\(TimerReportMgr::RegisterReportCallback\)$' \
    '^other LogKit: level 3, Peripheral list' '^other FileKit: write .*:BiosReportTime$' \
    '^other FileKit: write .*:ReportDevicesCount$' '^other ConsentStore: agreed$' \
    '^other EditionAdapt: property VRLoginGuide=china$' '^other WmiKit: stop$' \
    '^other ZedPluginsManager: withdrawn ' '^other_host: done$'; do
    grep --quiet --extended-regexp -e "$pattern" "$work/record" || complain "no line $pattern"
done
for name in ZedPluginsManager LogKit xeevent FileKit BoardInfo WmiKit ConsentStore EditionAdapt; do
    expect 0 "loaded $name.dll from Z:${suite//\//\\}\\bin\\$name.dll" \
        grep "^loaded $name.dll" "$work/record"
done
((failures == 0)) || cat "$work/record"

# What the SDK lacks is missed, not quietly replaced by the project's own.
rm "$sdk/lib/libWmiKit.dll.a"
expect 1 "The import library of WmiKit is missing in" \
    cmake --preset mingw-release -B "$folder/incomplete" "-DTALLYPORT_SUITE_SDK=$sdk"
rm "$sdk/include/platform/wmi_kit.h"
expect 1 "The header platform/wmi_kit.h is missing in" \
    cmake --preset mingw-release -B "$folder/incomplete" "-DTALLYPORT_SUITE_SDK=$sdk"
finish
