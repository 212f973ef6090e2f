#!/usr/bin/env bash
# The wrapper around Wine: exit codes, arguments, and one clear line when something is missing.
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"
run=$source_dir/tools/wine/run_in_wine

expect 127 "usage: run_in_wine" "$run" "$wine_prefix"
expect 127 "there is no program 'missing.exe'; build it first" "$run" "$wine_prefix" missing.exe
expect_lines 1 "$run" "$wine_prefix" missing.exe
touch "$work/a_file"
expect 127 "the folder '$work/a_file' for the Wine prefix cannot be created" \
    "$run" "$work/a_file" "$pretended_test"
# In a prefix that is none Wine cannot lay out its drives.
mkdir "$work/damaged"
touch "$work/damaged/dosdevices"
expect 127 "the Wine prefix could not be created; see $work/damaged.log" \
    "$run" "$work/damaged" "$pretended_test"

# A machine without Wine: the scripts look into an empty folder instead of Debian's, and no other
# folder has it.
mkdir "$work/bin" "$work/no_wine"
find /usr/bin/ -maxdepth 1 ! -name 'wine*' -exec ln -s -t "$work/bin" {} +
cp -r "$source_dir/tools/wine" "$work/wine"
sed -i "s,/usr/lib/wine,$work/no_wine," "$work/wine/prefix.sh"
for script in "run_in_wine" "run_accelerated 36000"; do
    read -ra call <<<"$work/wine/$script $work/new_prefix $pretended_test"
    rm -f "$work"/no_wine/*
    expect 127 "${script% *}: Wine is missing; run: ./dev setup" env "PATH=$work/bin" "${call[@]}"
    ln -s /usr/bin/true "$work/no_wine/wine64"
    expect 127 "${script% *}: Wine's server is missing; run: ./dev setup" \
        env "PATH=$work/bin" "${call[@]}"
    expect_lines 1 env "PATH=$work/bin" "${call[@]}"
done
expect 1 "" test -e "$work/new_prefix"

expect 0 "PASSED" "$run" "$wine_prefix" "$pretended_test"
expect 42 "PASSED" "$run" "$wine_prefix" "$pretended_test" code 42
expect 0 "argument 'two words'" "$run" "$wine_prefix" "$pretended_test" echo 'two words'
# The name in a folder that the caller stands in.
cp "$pretended_test" "$work/here.exe"
cd "$work" || exit
expect 0 "PASSED" "$run" "$wine_prefix" here.exe

# With pipes instead of a terminal the exit code and both outputs arrive as well.
plain=$source_dir/tools/wine/plain_output
expect 42 "PASSED" "$plain" "$run" "$wine_prefix" "$pretended_test" code 42
expect 127 "there is no program" "$plain" "$run" "$wine_prefix" missing.exe
expect_lines 0 bash -c '"$@" 2>/dev/null' bash "$plain" "$run" "$wine_prefix" missing.exe
finish
