#!/usr/bin/env bash
# The fast clock: an hour passes in a moment and the exit code arrives unharmed.
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"
run=$source_dir/tools/wine/run_accelerated

expect 127 "usage: run_accelerated" "$run" 36000 "$wine_prefix_fast"
expect 127 "the speed must be a whole number" "$run" fast "$wine_prefix_fast" "$pretended_test"
expect 127 "the speed must be a whole number" "$run" 0 "$wine_prefix_fast" "$pretended_test"
expect 127 "there is no program 'missing.exe'" "$run" 36000 "$wine_prefix_fast" missing.exe
cp "$pretended_test" "$work/alone.exe"
expect 127 "there is no program '$work/keep_exit_code.exe'; build it first: ./dev build" \
    "$run" 36000 "$wine_prefix_fast" "$work/alone.exe"
echo "no program" >"$work/keep_exit_code.exe"
expect 127 "'$work/alone.exe' was ended before it could return an exit code" \
    "$run" 36000 "$wine_prefix_fast" "$work/alone.exe"
mkdir "$work/bin"
find /usr/bin/ -maxdepth 1 ! -name faketime -exec ln -s -t "$work/bin" {} +
expect 127 "faketime is missing; run: ./dev setup" \
    env "PATH=$work/bin" "$run" 36000 "$wine_prefix_fast" "$pretended_test"

# Creates the prefix, so that what follows measures the clock.
expect 0 "PASSED" "$run" 36000 "$wine_prefix_fast" "$pretended_test"
start=$SECONDS
expect 0 "slept 36" "$run" 36000 "$wine_prefix_fast" "$pretended_test" sleep 3600
if ((SECONDS - start > 20)); then
    echo "FAILED: an hour took $((SECONDS - start)) seconds"
    failures=$((failures + 1))
fi
expect_lines 3 "$run" 36000 "$wine_prefix_fast" "$pretended_test" sleep 3600
for code in 0 1 7 42; do
    expect "$code" "PASSED" "$run" 36000 "$wine_prefix_fast" "$pretended_test" code "$code"
done
expect 0 "argument 'two words'" \
    "$run" 36000 "$wine_prefix_fast" "$pretended_test" echo 'two words' 'a "quoted" one'

# Nothing of that clock is left behind.
if WINEPREFIX=$wine_prefix_fast /usr/lib/wine/wineserver64 -k0 2>/dev/null; then
    echo "FAILED: the server of the fast clock still runs"
    failures=$((failures + 1))
fi
finish
