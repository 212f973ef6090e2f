#!/usr/bin/env bash
# What the scripts of ./dev lint say when they find something: the place, the rule and, where the
# finding does not say it itself, what to do. They look at a project of one source.
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"

project=$work/project
mkdir -p "$project/src" "$project/build"
cp -r "$source_dir/tools" "$source_dir/.clang-tidy" "$project"
source_file=$project/src/code.cpp
command="x86_64-w64-mingw32-g++-posix -std=c++17 -o code.obj -c $source_file"
jq --null-input --arg folder "$project/build" --arg file "$source_file" --arg command "$command" \
    '[{directory: $folder, file: $file, command: $command}]' >"$project/build/compile_commands.json"
cd "$project" || exit
check=(tools/msvc_check/check_product build)
tidy=(tools/lint/tidy build)

echo 'int Size() { return 1; }' >"$source_file"
expect 0 "" "${check[@]}"
expect 0 "" "${tidy[@]}"
expect 0 "build/tidy/src/code.cpp.clean" find build -name 'code.cpp.clean'

echo 'int Size(int n) { int values[n]; return sizeof(values); }' >"$source_file"
expect 1 "msvc_check: src/code.cpp does not compile in the Microsoft dialect" "${check[@]}"
expect 1 "variable length arrays" "${check[@]}"
echo '__attribute__((noinline)) int Size() { return 1; }' >"$source_file"
expect 1 "msvc_check: the places above use what Microsoft's compiler does not have" "${check[@]}"
expect 1 "src/code.cpp:1:__attribute__" "${check[@]}"

echo 'int* Nothing() { return 0; }' >"$source_file"
expect 123 "modernize-use-nullptr" "${tidy[@]}"
# What was found once is found again.
expect 123 "src/code.cpp:1:25: error: use nullptr" "${tidy[@]}"
echo 'Checks: [' >.clang-tidy
expect 1 "tidy: mend .clang-tidy" "${tidy[@]}"
finish
