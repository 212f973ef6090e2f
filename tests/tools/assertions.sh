# Sourced by the tests beside it.
# shellcheck shell=bash
# shellcheck disable=SC2034 # the tests use them

source_dir=$1 build_dir=$2 pretended_test=$3
wine_prefix=$build_dir/wine-prefix
wine_prefix_fast=$build_dir/wine-prefix-fast
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

complain() {
    echo "FAILED: $*"
    failures=$((failures + 1))
}

# expect EXIT_CODE TEXT COMMAND...: the command ends with this code and prints a line with this text.
expect() {
    local wanted=$1 text=$2 output code=0
    output=$("${@:3}" 2>&1 </dev/null) || code=$?
    if [[ $code != "$wanted" || $output != *"$text"* ]]; then
        complain "${*:3}"
        echo "  exit code $code, expected $wanted; expected in the output: $text; the output:"
        printf '%s\n' "$output"
    fi
}

# expect_line EXIT_CODE TEXT COMMAND...: the same, and it prints not a line more.
expect_line() {
    local count
    expect "$@"
    count=$("${@:3}" 2>&1 </dev/null | wc -l)
    [[ $count == 1 ]] || complain "${*:3} printed $count lines, expected one"
}

# without PROGRAM COMMAND...: runs the command where this one program is missing.
without() {
    local path=$work/without-$1
    mkdir -p "$path"
    find /usr/bin/ -maxdepth 1 ! -name "$1" -exec ln -sf -t "$path" {} +
    PATH=$path "${@:2}"
}

finish() {
    ((failures == 0)) && echo "all as expected"
    exit $((failures > 0))
}
