#!/usr/bin/env bash
# What ./dev says when a step of it fails: in one line what failed, where more stands and what to do.
# A copy of it works in an empty project on programs that fail upon request.
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"

project=$work/project
mkdir -p "$project"/build/mingw-{release,checked,clang,coverage} "$work/bin"
cp "$source_dir/dev" "$source_dir/CMakePresets.json" "$project"

# pretend FILE...: programs that fail, after printing PRINTED, when FAILING names them with their
# first arguments; otherwise they do nothing.
pretend() {
    local file
    for file in "$@"; do
        mkdir -p "$(dirname "$file")"
        cat >"$file" <<'PROGRAM'
#!/usr/bin/env bash
[[ -n ${FAILING-} && "${0##*/} $*" == "$FAILING"* ]] || exit 0
printf '%b' "${PRINTED-}"
exit 1
PROGRAM
        chmod +x "$file"
    done
}
pretend "$project"/tools/setup/{install_packages,fetch_nlohmann_json,fetch_benchmark} \
    "$project"/tools/lint/{cpp_files,shell_files,tidy} "$project"/tools/msvc_check/check_product \
    "$project"/tools/{coverage/report,package/make_package,reliability/table} \
    "$work"/bin/{cmake,ctest,clang-format-14,shellcheck}

# expect_failure FAILING TEXT ARGUMENT...: ./dev ARGUMENT... returns 1 and ends with this line.
expect_failure() {
    local output code=0
    output=$(cd "$project" && PATH=$work/bin:$PATH FAILING=$1 ./dev "${@:3}" 2>&1 >/dev/null </dev/null) ||
        code=$?
    if [[ $code != 1 || ${output##*$'\n'} != "./dev: $2" ]]; then
        echo "FAILED: ./dev ${*:3}, with '$1' failing"
        echo "  exit code $code, expected 1; expected as the last line: ./dev: $2; the errors:"
        printf '%s\n' "$output"
        failures=$((failures + 1))
    fi
}
whole() { echo "failed: $1; the whole output is in build/$2.log"; }

PATH=$work/bin:$PATH expect 0 "==> Packages and dependencies" "$project/dev" build
expect_failure install_packages "$(whole tools/setup/install_packages packages)" setup
expect_failure fetch_nlohmann_json "$(whole \
    "tools/setup/fetch_nlohmann_json build/deps/nlohmann_json" nlohmann_json)" build
expect_failure "cmake --preset" "$(whole "cmake --preset mingw-release" \
    configure-mingw-release). If nothing else helps: ./dev clean" build
expect_failure "cmake --build" "$(whole \
    "flock build/mingw-release/.turn cmake --build --preset mingw-release" \
    build-mingw-release). Mend the first error and try again." run --seconds 5
expect_failure fetch_benchmark "$(whole \
    "tools/setup/fetch_benchmark build/deps/benchmark" benchmark-library)" bench
expect_failure "cmake --build --preset mingw-release --target" "$(whole \
    "flock build/mingw-release/.turn cmake --build --preset mingw-release --target benchmarks" \
    build-benchmarks). Mend the first error and try again." bench

# Of a failed build the first error is shown; of others the end.
export PRINTED='[1/9] good\nFAILED: bad.obj\nbad.cpp:7: error\n'
FAILING="cmake --build" PATH=$work/bin:$PATH expect 1 $'FAILED: bad.obj\nbad.cpp:7: error' \
    "$project/dev" build
PRINTED='the last words\n' FAILING=install_packages PATH=$work/bin:$PATH expect 1 "the last words" \
    "$project/dev" setup
unset PRINTED

none="tests failed or none is called that; all names: ctest --test-dir build/mingw-release -N"
expect_failure "ctest --test-dir build/mingw-release --parallel" "$none" test nothing
expect_failure "ctest --test-dir build/mingw-release --parallel" "$none" test unit
expect_failure "ctest --test-dir build/mingw-release --parallel" "tests failed, see above" test
expect_failure "ctest --test-dir build/mingw-checked --parallel" "tests failed, see above" test
expect_failure "ctest --test-dir build/mingw-clang --parallel" "tests failed, see above" test
expect_failure table "something ended other than laid down, see above" test reliability

expect_failure "clang-format-14 --dry-run" "files are not formatted; run: ./dev format" lint
expect_failure shellcheck "mend the scripts above" lint
expect_failure check_product "the sources above do not compile there" lint
expect_failure tidy "mend the findings above; .clang-tidy explains the checks" lint

# Coverage is shown all the same.
FAILING="ctest --test-dir build/mingw-coverage" PATH=$work/bin:$PATH \
    expect 0 "Some tests failed; what follows is what the others covered." "$project/dev" coverage

# A script that explains itself has the last word.
for step in "make_package package" "report coverage"; do
    PRINTED="why and what to do\n" FAILING=${step% *} PATH=$work/bin:$PATH \
        expect 1 "why and what to do" "$project/dev" "${step#* }"
done
finish
