#!/usr/bin/env bash
# What the scripts below tools/benchmarks say about wrong calls and files that are none of theirs. A
# result that was measured before stays as it is.
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"
cd "$source_dir/tools/benchmarks" || exit

# What an event takes.
event='{"time": "2026-11-20T18:54:03.120Z", "id": 7, "fields": [{"key": "ab", "value": "cde"}]}'
printf '%s\n' "$event" "$event" >"$work/record"
expect 0 $'7\t2\t10\t0\t-' ./event_sizes "$work/record"
expect 2 "event_sizes: usage: event_sizes RECORD; './dev run --events RECORD' makes one" ./event_sizes
expect 2 "event_sizes: there is no record 'none'; './dev run --events none' makes one" \
    ./event_sizes none
expect_lines 1 ./event_sizes none
for content in '{"id": 7' 'no JSON' '{"fields": []}' '{"id": 7}' '[]' '{"id": "7", "fields": []}'; do
    printf '%s\n' "$event" "$content" >"$work/odd"
    expect 2 "event_sizes: '$work/odd' is not a record of events, see above; './dev run" \
        ./event_sizes "$work/odd"
    # The reason and the advice, and nothing of a table.
    expect_lines 2 ./event_sizes "$work/odd"
done

# What was measured.
row() {
    echo "{\"rows\": [{\"what\": \"time\", \"floor\": \"none\", \"met\": $1," \
        '"ratio": {"median": 1.25, "low": 1, "high": 2}}]}'
}
row true >"$work/good"
row false >"$work/missed"
expect 0 "1.25 x" ./table "$work/good"
expect 0 "ok" ./table "$work/good" --check
expect 0 "missed" ./table "$work/missed"
expect 1 "table: a bar is missed; on a machine that is busy" ./table "$work/missed" --check
expect 2 "table: usage: table RESULT [--check]; './dev bench' makes one" ./table
expect 2 "table: usage: table RESULT [--check]; './dev bench' makes one" ./table "$work/good" --chekc
expect 2 "table: there is no result 'none'; './dev bench' makes one" ./table none --check
expect_lines 1 ./table none
for content in '' 'no JSON' '[]' '{}' '{"rows": []}' '{"rows": [{"what": "time"}]}'; do
    echo "$content" >"$work/odd"
    expect 2 "table: '$work/odd' is not a result of the benchmarks, see above; './dev bench' makes one" \
        ./table "$work/odd" --check
    expect_lines 2 ./table "$work/odd"
done

# Measuring: the call, the build, and programs that do not measure.
build=$work/build
samples=$build/benchmark-samples
mkdir -p "$build/bin" "$samples"
touch "$samples/earlier"
cp "$work/good" "$work/result"
expect 1 "measure: usage: measure BUILD_DIR RESULT; ./dev bench calls it" ./measure
expect 1 "measure: there are no benchmarks in '$build'; run: ./dev bench" ./measure "$build" "$work/result"
expect 1 "measure: there are no benchmarks in 'none'; run: ./dev bench" ./measure none "$work/result"
expect_lines 1 ./measure none "$work/result"
cp "$pretended_test" "$build/bin/real_fill_benchmark.exe"
for result in "$work/none/result" "$work"; do
    expect 1 "measure: the result cannot be written to '$result'; name a file in a folder that exists" \
        ./measure "$build" "$result"
done
expect 0 "" test -e "$samples/earlier"

# Other tests' prefixes: making new ones would take longer than all of this.
mkdir -p "$wine_prefix" "$wine_prefix_fast"
ln -s "$wine_prefix" "$build/wine-prefix-bench"
ln -s "$wine_prefix_fast" "$build/wine-prefix-fast"
expect 1 "measure: instant_benchmarks ended with code 127: run_in_wine: there is no program" \
    ./measure "$build" "$work/result"
cp "$(dirname "$pretended_test")/keep_exit_code.exe" "$build/bin"
for file in instant_benchmarks.exe start_benchmark.exe fill_memory.exe TallyportPlugin.dll floor_dll.dll; do
    cp "$pretended_test" "$build/bin/$file"
done
expect 1 "measure: idle_days ended with code 127" ./measure "$build" "$work/result"
cp "$pretended_test" "$build/bin/idle_days.exe"
expect 1 "measure: the samples in $samples are not as expected, see the line above" \
    ./measure "$build" "$work/result"
expect 0 "" cmp "$work/good" "$work/result"
finish
