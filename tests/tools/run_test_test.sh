#!/usr/bin/env bash
# run_test passes only a program that returned 0 and also printed GoogleTest's closing line.
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"
run=$source_dir/tools/wine/run_test

for clock in normal fast; do
    if [[ $clock == normal ]]; then
        options=("$wine_prefix" "$pretended_test")
    else
        options=(--accelerated 36000 "$wine_prefix_fast" "$pretended_test")
    fi
    expect 0 "[  PASSED  ] 1 test." "$run" "${options[@]}"
    expect 1 "pretended_test.exe: exit code 3" "$run" "${options[@]}" code 3
    expect 1 "pretended_test.exe: exit code 5" "$run" "${options[@]}" crash
    expect 1 "GoogleTest's last line is missing" "$run" "${options[@]}" early
    expect 1 "a test failed although the exit code is 0" "$run" "${options[@]}" failed
    # What it printed before it was ended is shown.
    expect 1 $'Pretended.Test\r\nrun_test: pretended_test.exe: not done after 8 seconds' \
        "$run" --timeout 8 "${options[@]}" hang
done

expect 0 "PASSED" "$run" --check-heap "$wine_prefix" "$pretended_test"
expect 1 "Wine found the heap damaged" "$run" --check-heap "$wine_prefix" "$pretended_test" overflow

expect 2 "unknown option '--fast'" "$run" --fast "$wine_prefix" "$pretended_test"
expect 2 "--timeout needs a whole number" "$run" --timeout soon "$wine_prefix" "$pretended_test"
expect 2 "a program" "$run" "$wine_prefix"
finish
