#!/usr/bin/env bash
# Every command that the documents show is run here as it is written, in a folder that looks like the
# project's root and has the files of the documents' own examples. What would run this test within
# itself, or change the sources, is listed with what runs it instead. A command in neither list fails,
# and so does an entry that no document shows any more.
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"
source "$(dirname "$0")/documents.sh"

# What each command has to print.
declare -A expected=(
    ["./dev"]="Usage: ./dev COMMAND"
    ["./dev run"]="What left the machine, and why, is in "
    ["./dev run --help"]="--every-line"
    ["./dev run --seconds 5"]="992614518  optimisation component"
    ["./dev run --seconds 5 --page page.html"]="What left the machine, and why, is in page.html"
    ["./dev run --seconds 5 --events events.ndjson --log log.txt"]="Every event is in events.ndjson"
    ["./dev run --page page.html --from events.ndjson --from-log log.txt"]="The page is in page.html"
    ["./dev run --days 7"]="Ran 7d"
    ["./dev run --days 2 --events two_days.ndjson"]="Every event is in two_days.ndjson"
    ["./dev run --list-devices"]="Device inventory of this computer"
    ["./dev run --list-devices --machine workbench/simulation/machines/bare_desktop.json"]="DisplayList: 1 display"
    ["./dev run --machine workbench/simulation/machines/office_laptop_with_dock.json --hours 30"]="992614533  device list"
    ["./dev run --list-devices --machine my_machine.json"]="Basic Keyboard"
    ["./dev run --machine my_machine.json --days 2"]="One keyboard on the desk."
    ["./dev run --days 3 --machine workbench/simulation/machines/office_laptop_with_dock.json --script my_story.jsonl --events my_story.ndjson"]="the run ends"
    ["./dev run --days 2 --machine workbench/simulation/machines/office_laptop_with_dock.json --script workbench/stories/office_laptop.jsonl --every-line"]="BigdataTimerReportFrame loop"
    ["./dev run --days 4 --machine workbench/simulation/machines/office_laptop_with_dock.json --events laptop.ndjson"]="Ran 4d"
    ["tools/benchmarks/event_sizes laptop.ndjson"]="992614533"
    ["tools/wine/run_test build/mingw-release/wine-prefix build/mingw-release/bin/core_unit_test.exe --gtest_filter='UserSid.*'"]="[  PASSED  ]"
)

# What runs a command that cannot be run from within a test.
declare -A elsewhere=(
    ["./dev build"]="./dev test begins with it"
    ["./dev setup"]="./dev build begins with it"
    ["./dev test"]="continuous integration"
    ["./dev lint"]="continuous integration"
    ["./dev format"]="it changes the sources; ./dev lint demands that it would change none"
    ["./dev package"]="tools_package makes and unpacks a package"
    ["./dev bench"]="it measures, which takes a quiet machine"
    ["./dev bench --check"]="like ./dev bench"
    ["./dev coverage"]="it is a build of its own"
    ["cmake --preset mingw-release -B build/for-suite -DTALLYPORT_SUITE_SDK=/path/to/sdk"]="tools_sdk_swap"
    ["cmake --build build/for-suite"]="tools_sdk_swap"
    ["run=\"tools/wine/run_in_wine build/mingw-release/wine-prefix build/mingw-release/bin\""]="the tests"
    ["checked=\"tools/wine/run_in_wine build/mingw-checked/wine-prefix build/mingw-checked/bin\""]="the fuzz tests"
)

complain() {
    echo "FAILED: $*"
    failures=$((failures + 1))
}

# names_tests FILE:LINE ARGUMENT...: each argument of `./dev test` selects something. The tests themselves
# run as a part of all tests.
names_tests() {
    local argument option
    for argument in "${@:2}"; do
        [[ $argument == --checked ]] && continue
        option=--tests-regex
        [[ " $labels " == *" $argument "* ]] && option=--label-regex
        if ctest --test-dir "$build_dir" -N "$option" "$argument" | grep -q '^Total Tests: 0$'; then
            complain "$1: './dev test $argument' selects no test; name one of: $labels, or a program"
        fi
    done
}

# names_program FILE:LINE COMMAND: the long form of a test program, which takes minutes, is shown with
# $run or $checked for the folder of the programs. The tests run the short forms.
names_program() {
    local program=${2#*/}
    [[ -f $build_dir/bin/${program%% *} ]] || complain "$1: there is no program '${program%% *}'"
}

# run_shown COMMAND: runs it in the example folder; what it prints is kept for the checks below.
run_shown() {
    local output code=0
    output=$(cd "$work/root" && bash -c "$1" 2>&1 </dev/null) || code=$?
    if [[ $code != 0 || $output != *"${expected[$1]}"* ]]; then
        complain "$1: exit code $code, expected 0 and in the output: ${expected[$1]}"
        printf '%s\n' "$output" | tail --lines=40
    fi
    printf '%s\n' "$output" >"$work/output of ${1//\//_}"
}

# Lines that differ only in their numbers and blanks are the same.
normalised() { sed -E 's/[0-9]+/N/g; s/ +/ /g; s/ $//'; }

labels=$(ctest --test-dir "$build_dir" --print-labels | sed -n 's/^  //p' | paste -sd ' ')
mkdir "$work/root"
for name in dev tools workbench build; do ln -s "$source_dir/$name" "$work/root/$name"; done
cd "$source_dir" || exit
mapfile -t documents < <(document_files)
for document in "${documents[@]}"; do write_examples "$document" "$work/root"; done

# Without a build that succeeds, everything below would only say so again and again.
if ! (cd "$work/root" && ./dev run --help >/dev/null); then
    complain "./dev run --help, see above"
    finish
fi

declare -A shown=()
while IFS=$'\t' read -r place command; do
    [[ -v shown["$command"] ]] && continue
    shown["$command"]=$place
    if [[ -v expected["$command"] ]]; then
        run_shown "$command"
    elif [[ $command == "./dev test "* ]]; then
        read -ra words <<<"$command"
        names_tests "$place" "${words[@]:2}"
    elif [[ $command == "\$run/"* || $command == "\$checked/"* ]]; then
        names_program "$place" "$command"
    elif [[ ! -v elsewhere["$command"] ]]; then
        complain "$place: nothing runs '$command'; add it to a list of ${0##*/}"
    fi
done < <(shown_commands "${documents[@]}")
for command in "${!expected[@]}"; do
    [[ -v shown["$command"] ]] || complain "no document shows '$command'; take it out of ${0##*/}"
done

# The sample of the README has only lines of a real run, save for numbers and what is cut off.
sed "s|$source_dir/||" "$work/output of ._dev run" | normalised >"$work/story"
while IFS= read -r line; do
    [[ -z $line || $line == ' ...' ]] && continue
    awk -v line="$line" 'index($0, line) == 1 { found = 1 } END { exit !found }' "$work/story" ||
        complain "README.md: ./dev run prints no such line any more: $line"
done < <(block_after README.md "Shortened:" | normalised)

# docs/host.md explains every option of the host, and the example script has every happening.
options_in() { grep -oE -e '--[a-z][a-z-]*|-h\b' | sort -u; }
diff <(sed -n 's/^| \(`-.*\)/\1/p' docs/host.md | cut -d'|' -f1 | options_in) \
    <(awk '/^ *-/ { print $1 }' "$work/output of ._dev run --help" | options_in) ||
    complain "the options in docs/host.md (<) are not those of ./dev run --help (>)"
echo '{"at": "1s", "do": "none"}' >"$work/root/none.jsonl"
happenings=$(cd "$work/root" && ./dev run --script none.jsonl 2>&1 | sed -n 's/.*; use //p' |
    grep -oE '[a-z]+(_[a-z]+)+|stop' | sort)
diff <(sed -n 's/.*"do": "\([a-z_]*\)".*/\1/p' "$work/root/my_story.jsonl" | sort -u) \
    <(printf '%s\n' "$happenings") ||
    complain "the example script in docs/host.md (<) has not exactly the happenings of the host (>)"
finish
