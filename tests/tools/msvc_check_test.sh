#!/usr/bin/env bash
# The check of the Microsoft dialect lets good code pass and rejects what g++ lets through.
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"

# expect_code EXIT_CODE TEXT CODE
expect_code() {
    printf '%s\n' '#include <windows.h>' '#include <memory>' '#include <string>' "$3" >"$work/code.cpp"
    expect "$1" "$2" "$source_dir/tools/msvc_check/compile" "$work/code.cpp"
}

expect_code 0 "" 'std::wstring Name(const std::wstring& name) { return name + L"!"; }'
expect_code 0 "" 'static_assert(sizeof(long) == 4 && sizeof(wchar_t) == 2 && sizeof(void*) == 8);'

expect_code 1 "unistd.h does not exist on Windows" '#include <unistd.h>'
expect_code 1 "dirent.h does not exist on Windows" '#include <dirent.h>'
expect_code 1 "strcasecmp" 'int Compare(const char* a) { return strcasecmp(a, "x"); }'
expect_code 1 "static_assert" '#ifdef _MSC_VER
static_assert(sizeof(long) == 8);
#endif'
expect_code 1 "C-linkage" 'extern "C" std::string Name();'
expect_code 1 "incomplete type" 'struct Part;
struct __declspec(dllexport) Whole { std::unique_ptr<Part> part; };'
expect_code 1 "variable length arrays" 'int Size(int n) { int values[n]; return sizeof(values); }'
expect_code 1 "GNU" 'int Positive(int n) { return n ?: 1; }'
expect_code 1 "unused variable" 'void Nothing() { int unused = 0; }'
finish
