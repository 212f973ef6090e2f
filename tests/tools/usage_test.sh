#!/usr/bin/env bash
# Each script below tools/ that is called with the wrong arguments says in one line how to call it. Those
# that have more to say have a test of their own.
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"
cd "$source_dir/tools" || exit

# expect_line EXIT_CODE TEXT COMMAND...: and not a line more.
expect_line() {
    expect "$@"
    expect_lines 1 "${@:3}"
}

expect_line 2 "report: usage: report BUILD_DIR; run: ./dev coverage" coverage/report
expect_line 2 "report: there is no build folder 'none'; run: ./dev coverage" coverage/report none
expect_line 2 "report: no test has recorded anything in '$work'; run: ./dev coverage" \
    coverage/report "$work"

for arguments in "" none; do
    expect_line 2 "product_sources: usage: product_sources BUILD_DIR; ./dev build makes one" \
        lint/product_sources $arguments
    expect_line 2 "tidy: usage: tidy BUILD_DIR; ./dev lint builds one" lint/tidy $arguments
    expect_line 2 "check_product: usage: check_product BUILD_DIR; ./dev lint builds one" \
        msvc_check/check_product $arguments
    expect_line 2 "tidy_source: usage: tidy_source BUILD_DIR SOURCE COMMAND; ./dev lint calls it" \
        lint/tidy_source "$build_dir" $arguments
    expect_line 2 "check_source: usage: check_source SOURCE; ./dev lint calls it" \
        msvc_check/check_source $arguments
    expect_line 2 "compile: usage: compile SOURCE [CLANG_OPTIONS...]" msvc_check/compile $arguments
    expect_line 2 "rename_release: usage: rename_release FILE FROM TO" \
        setup/rename_release $arguments bookworm trixie
done
for library in nlohmann_json benchmark; do
    expect_line 1 "fetch_$library: usage: fetch_$library TARGET_DIR" "setup/fetch_$library"
done
expect_line 127 "plain_output: usage: plain_output COMMAND [ARGS...]" wine/plain_output

# The helper of the fast clock, which only run_accelerated calls.
keeper=$(dirname "$pretended_test")/keep_exit_code.exe
expect 1 "keep_exit_code: TALLYPORT_EXIT_CODE_FILE names no file" \
    wine/run_in_wine "$wine_prefix" "$keeper" "$pretended_test"
export TALLYPORT_EXIT_CODE_FILE=Z:$work/none/code
expect 1 "keep_exit_code: 'none.exe' cannot be started, error 2" \
    wine/run_in_wine "$wine_prefix" "$keeper" none.exe
expect 1 "keep_exit_code: 'Z:$work/none/code' cannot be written" \
    wine/run_in_wine "$wine_prefix" "$keeper" "$pretended_test"
finish
