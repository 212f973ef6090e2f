# Sourced by the tests beside it.
# shellcheck shell=bash
# shellcheck disable=SC2034 # the tests use them

source_dir=$1 build_dir=$2 pretended_test=$3
wine_prefix=$build_dir/wine-prefix
wine_prefix_fast=$build_dir/wine-prefix-fast
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

# expect EXIT_CODE TEXT COMMAND...: the command ends with this code and prints a line with this text.
expect() {
    local wanted=$1 text=$2 output code=0
    output=$("${@:3}" 2>&1 </dev/null) || code=$?
    if [[ $code != "$wanted" || $output != *"$text"* ]]; then
        echo "FAILED: ${*:3}"
        echo "  exit code $code, expected $wanted; expected in the output: $text; the output:"
        printf '%s\n' "$output"
        failures=$((failures + 1))
    fi
}

# expect_lines COUNT COMMAND...: the command prints this many lines.
expect_lines() {
    local count
    count=$("${@:2}" 2>&1 </dev/null | wc -l)
    if [[ $count != "$1" ]]; then
        echo "FAILED: ${*:2} printed $count lines, expected $1"
        failures=$((failures + 1))
    fi
}

finish() {
    ((failures == 0)) && echo "all as expected"
    exit $((failures > 0))
}
