#!/usr/bin/env bash
# The wrappers around Wine: exit codes and arguments arrive, run_test passes only what passed, an hour
# of the fast clock passes in a moment, and what is missing is named in one line.
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"
tools=$source_dir/tools/wine
run=$tools/run_in_wine
fast=("$tools/run_accelerated" 36000 "$wine_prefix_fast")

expect_line 127 "there is no program 'missing.exe'; build it first" "$run" "$wine_prefix" missing.exe
mkdir "$work/damaged"
touch "$work/damaged/dosdevices"
expect 127 "the Wine prefix could not be created; see $work/damaged.log" \
    "$run" "$work/damaged" "$pretended_test"
# A machine without Wine: the scripts look into an empty folder instead of Debian's.
cp -r "$tools" "$work/wine"
sed -i "s,/usr/lib/wine,$work/none," "$work/wine/prefix.sh"
expect_line 127 "run_in_wine: Wine is missing; run: ./dev setup" \
    without wine64 "$work/wine/run_in_wine" "$work/new_prefix" "$pretended_test"
expect 127 "faketime is missing; run: ./dev setup" without faketime "${fast[@]}" "$pretended_test"

expect 42 "PASSED" "$run" "$wine_prefix" "$pretended_test" code 42
expect 0 "argument 'two words'" "$run" "$wine_prefix" "$pretended_test" echo 'two words'
# Two starts that Wine loses, and one that it does not.
cat >"$work/wine/run_in_wine" <<LOST
#!/bin/sh
echo >>"$work/starts"
[ "\$(wc -l <"$work/starts")" -lt 3 ] && exit 1
echo "[  PASSED  ]"
LOST
expect 0 "start 2 ended with 1 before its first line" "$work/wine/run_test" "$wine_prefix" "$pretended_test"
expect 0 "3" wc -l "$work/starts"

# A name in the folder that the caller stands in, and pipes instead of a terminal.
cp "$pretended_test" "$work/here.exe"
cd "$work" || exit
expect 42 "PASSED" "$tools/plain_output" "$run" "$wine_prefix" here.exe code 42

# end_hanging OPTION...: ends a program that hangs, once it had time enough to get so far.
# shellcheck disable=SC2317 # called by expect
end_hanging() {
    local seconds output code
    for seconds in 5 20 80; do
        code=0
        output=$("$tools/run_test" --timeout "$seconds" "$@" hang) || code=$?
        [[ $output != *Pretended.Test* ]] || break
    done
    printf '%s\n' "${output/ $seconds seconds/ N seconds}"
    return "$code"
}
normal=("$wine_prefix" "$pretended_test")
accelerated=(--accelerated 36000 "$wine_prefix_fast" "$pretended_test")
expect 0 "[  PASSED  ] 1 test." "$tools/run_test" "${normal[@]}"
expect 1 "pretended_test.exe: exit code 5" "$tools/run_test" "${normal[@]}" crash
expect 1 "GoogleTest's last line is missing" "$tools/run_test" "${normal[@]}" early
expect 1 "a test failed although the exit code is 0" "$tools/run_test" "${normal[@]}" failed
expect 0 "PASSED" "$tools/run_test" --check-heap "${normal[@]}"
expect 1 "Wine found the heap damaged" "$tools/run_test" --check-heap "${normal[@]}" overflow
expect 1 "pretended_test.exe: exit code 3" "$tools/run_test" "${accelerated[@]}" code 3
# What it printed before it was ended is shown.
for options in normal accelerated; do
    declare -n call=$options
    expect 1 $'Pretended.Test\r\nrun_test: pretended_test.exe: not done after N seconds' \
        end_hanging "${call[@]}"
done

start=$SECONDS
expect 0 "slept for all of the time" "${fast[@]}" "$pretended_test" sleep 3600
# Less than an hour, however busy the machine is.
((SECONDS - start < 300)) || complain "an hour took $((SECONDS - start)) seconds"
expect 42 "PASSED" "${fast[@]}" "$pretended_test" code 42
expect 0 "argument 'two words'" "${fast[@]}" "$pretended_test" echo 'two words' 'a "quoted" one'
echo "no program" >"$work/keep_exit_code.exe"
expect 127 "'$work/here.exe' was ended before it could return an exit code" "${fast[@]}" "$work/here.exe"
# Nothing of that clock is left behind.
WINEPREFIX=$wine_prefix_fast /usr/lib/wine/wineserver64 -k0 2>/dev/null &&
    complain "the server of the fast clock still runs"
finish
