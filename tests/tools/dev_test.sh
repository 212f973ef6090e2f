#!/usr/bin/env bash
# What ./dev does with a wrong call, which starts nothing, and when one of its steps fails.
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"
source "$(dirname "$0")/pretended_project.sh"

expect 0 "Usage: ./dev COMMAND" pretended_dev
for command in setup build run test bench coverage package format lint clean; do
    expect 0 "  $command " pretended_dev help
done
expect_line 1 "unknown command 'biuld'" pretended_dev biuld
for command in setup build test bench coverage package format lint clean; do
    expect_line 1 "'--wrong'" pretended_dev "$command" --wrong
done
expect 1 "there is no build preset '.*'" pretended_dev build '.*'
expect 1 "no test has such a name" pretended_dev test none
# From another folder and through a link it is the same command.
ln -s "$project/dev" "$work/link"
expect_line 1 "unknown command 'x'" "$work/link" x

# expect_failure FAILING TEXT ARGUMENT...: ./dev ARGUMENT... returns 1, and this is in its last line.
expect_failure() {
    local output code=0
    output=$(FAILING=$1 pretended_dev "${@:3}" 2>&1 >/dev/null </dev/null) || code=$?
    [[ $code == 1 && ${output##*$'\n'} == "./dev: "*"$2"* ]] ||
        complain "./dev ${*:3}, with '$1' failing: exit code $code, expected in the last line: $2: $output"
}
expect_failure install_packages "the whole output is in build/packages.log" setup
expect_failure fetch_nlohmann_json "the whole output is in build/nlohmann_json.log" build
expect_failure "cmake --preset" "build/configure-mingw-release.log" build
expect_failure "cmake --build" "build/build-mingw-release.log" run --seconds 5
expect_failure fetch_benchmark "build/benchmark-library.log" bench
expect_failure "ctest --test-dir build/mingw-release" "tests failed" test
expect_failure "ctest --test-dir build/mingw-checked" "tests failed" test
expect_failure "ctest --test-dir build/mingw-release" "tests failed" test library
expect_failure "ctest --test-dir build/mingw-checked" "tests failed" test unit
expect_failure table "badly" test reliability
expect_failure "ctest --test-dir build/mingw-clang" "badly" test reliability
expect_failure "clang-format-14 --dry-run" "./dev format" lint
for step in shellcheck check_sources direct_includes tidy; do
    expect_failure "$step" "above" lint
done

# Of a failed build the first error is shown; of others the end.
PRINTED='[1/9] good\nFAILED: bad.obj\nbad.cpp:7: error\n' FAILING="cmake --build" \
    expect 1 $'FAILED: bad.obj\nbad.cpp:7: error' pretended_dev build
PRINTED='the last words\n' FAILING=install_packages expect 1 "the last words" pretended_dev setup
# A script that explains itself has the last word.
PRINTED='why and what to do\n' FAILING=make_package expect 1 "why and what to do" pretended_dev package
finish
