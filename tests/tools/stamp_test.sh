#!/usr/bin/env bash
# A stamp holds as long as everything that the clean check depended on stays the same.
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"
# shellcheck source=../../tools/lint/stamp.sh
source "$source_dir/tools/lint/stamp.sh"

mkdir "$work/a folder"
source_file=$work/a\ folder/source.cpp header=$work/header.h configuration=$work/configuration
stamp=$work/stamp

write_all() {
    echo source >"$source_file"
    echo header >"$header"
    echo configuration >"$configuration"
    printf 'source.o: %s/a\\ folder/source.cpp \\\n  %s\n' "$work" "$header" >"$work/source.d"
}

expect 1 "" is_clean "$stamp"
for changed in "$source_file" "$header" "$configuration"; do
    write_all
    mark_clean "$stamp" "$work/source.d" "$configuration"
    expect 0 "" is_clean "$stamp"
    touch "$changed"
    expect 0 "" is_clean "$stamp"
    echo more >>"$changed"
    expect 1 "" is_clean "$stamp"
    rm "$changed"
    expect 1 "" is_clean "$stamp"
done
finish
