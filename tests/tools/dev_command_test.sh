#!/usr/bin/env bash
# What ./dev says and returns for every kind of wrong call. None of these may start to build.
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"
dev=$source_dir/dev

expect 0 "Usage: ./dev COMMAND" "$dev"
expect 0 "Usage: ./dev COMMAND" "$dev" --help
expect 0 "  test reliability " "$dev" help
for command in setup build run test bench coverage package format lint clean; do
    expect 0 "  $command " "$dev" help
done

expect 1 "unknown command 'biuld'" "$dev" biuld
expect 1 "there is no preset 'mingw'" "$dev" build mingw
expect 1 "there is no preset '.*'" "$dev" build '.*'
expect 1 "unknown option '-x'" "$dev" build mingw-release -x
expect 1 "unknown option '--fast'" "$dev" test --fast
for command in setup bench coverage package format lint clean; do
    expect 1 "unknown option '--wrong'" "$dev" "$command" --wrong
    expect_lines 1 "$dev" "$command" --wrong
done

# From another folder and through a link it is the same command.
ln -s "$dev" "$work/dev"
cd "$work" || exit
expect 1 "unknown command 'x'" ./dev x
finish
