#!/usr/bin/env bash
# What the scripts of ./dev lint find in a project of one source: they name place and rule, and look at
# a source again when something changed on which the clean result depended.
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"
# shellcheck source=../../tools/lint/stamp.sh
source "$source_dir/tools/lint/stamp.sh"

project=$work/project
mkdir -p "$project/src" "$project/build"
cp -r "$source_dir/tools" "$source_dir/.clang-tidy" "$project"
source_file=$project/src/code.cpp
command="x86_64-w64-mingw32-g++-posix -std=c++17 -o code.obj -c $source_file"
jq --null-input --arg folder "$project/build" --arg file "$source_file" --arg command "$command" \
    '[{directory: $folder, file: $file, command: $command}]' >"$project/build/compile_commands.json"
cd "$project" || exit
check=(tools/msvc_check/check_sources build)
tidy=(tools/lint/tidy build)

cat >"$source_file" <<'CODE'
#include <windows.h>
#include <memory>
#include <string>
static_assert(sizeof(long) == 4 && sizeof(wchar_t) == 2 && sizeof(void*) == 8);
std::wstring Name(const std::wstring& name) { return name + L"!"; }
CODE
expect 0 "" "${check[@]}"
cat >>"$source_file" <<'CODE'
#include <unistd.h>
#include <dirent.h>
int Compare(const char* a) { return strcasecmp(a, "x"); }
static_assert(sizeof(long) == 8);
extern "C" std::string Exported();
struct Part;
struct __declspec(dllexport) Whole { std::unique_ptr<Part> part; };
int Size(int n) { int values[n]; return sizeof(values); }
int Positive(int n) { return n ?: 1; }
void Nothing() { int unused = 0; }
CODE
output=$("${check[@]}" 2>&1) && complain "the check of the Microsoft dialect passes bad code"
for finding in "src-code.cpp does not compile in the Microsoft dialect" \
    "unistd.h does not exist on Windows" "dirent.h does not exist on Windows" strcasecmp static_assert \
    C-linkage "incomplete type" "variable length arrays" GNU "unused variable"; do
    [[ $output == *"$finding"* ]] || complain "the check of the Microsoft dialect misses: $finding: $output"
done
echo '__attribute__((noinline)) int Size() { return 1; }' >"$source_file"
expect 1 "src/code.cpp:1:__attribute__" "${check[@]}"

echo 'int Size() { return 1; }' >"$source_file"
expect 0 "" "${tidy[@]}"
expect 0 ".clean" find build/tidy -name '*code.cpp.clean'
echo 'int* Nothing() { return 0; }' >"$source_file"
# What was found once is found again.
for _ in 1 2; do
    expect 123 "src/code.cpp:1:25: error: use nullptr [modernize-use-nullptr" "${tidy[@]}"
done
echo 'Checks: [' >.clang-tidy
expect 1 ".clang-tidy" "${tidy[@]}"

includes=(tools/lint/direct_includes build)
echo 'std::size_t Size(const std::string& text) { return text.size(); }' >"$work/use"
printf '#include <string>\n' | cat - "$work/use" >"$source_file"
expect_line 123 "src/code.cpp: include <cstddef> for std::size_t" "${includes[@]}"
printf '#include <cstddef>\n#include <string>\n' | cat - "$work/use" >"$source_file"
expect 0 "" "${includes[@]}"
echo 'int Size() { return one; }' >"$source_file"
expect 123 "error: use of undeclared identifier 'one'" "${includes[@]}"

# A stamp holds as long as everything stays the same, whatever its time.
mkdir "$work/a folder"
files=("$work/a folder/source.cpp" "$work/header.h" "$work/configuration")
printf 'source.o: %s/a\\ folder/source.cpp \\\n  %s\n' "$work" "$work/header.h" >"$work/source.d"
for changed in "${files[@]}"; do
    echo text | tee "${files[@]}" >/dev/null
    mark_clean "$work/stamp" "$work/source.d" "$work/configuration"
    touch "$changed"
    expect 0 "" is_clean "$work/stamp"
    echo more >>"$changed"
    expect 1 "" is_clean "$work/stamp"
done
finish
