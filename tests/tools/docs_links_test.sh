#!/usr/bin/env bash
# Every relative link of the documents leads to a file that exists, and behind a # to a heading in it.
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"
source "$(dirname "$0")/documents.sh"

# links_in FILE: the targets of its links, blocks of code left out.
links_in() {
    awk '/^ *```/ { inside = !inside; next } !inside' "$1" |
        grep -oE '\]\([^)]+\)' | sed 's/^](//; s/)$//'
}

# anchors_of FILE: what browsers find its headings by: small letters, no punctuation, hyphens for blanks.
anchors_of() {
    awk '/^ *```/ { inside = !inside; next } !inside' "$1" |
        sed -nE 's/^#+ //p' | tr '[:upper:]' '[:lower:]' | sed -E 's/[^a-z0-9 _-]//g; s/ /-/g'
}

# check_link FILE TARGET
check_link() {
    local path=${2%%#*} file
    file=$1
    [[ -z $path ]] || file=$(dirname "$1")/$path
    if [[ ! -e $file ]]; then
        echo "FAILED: $1 links to '$path', which does not exist"
    elif [[ $2 == *'#'* ]] && ! anchors_of "$file" | grep -qxF -- "${2#*#}"; then
        echo "FAILED: $1 links to '$2', but $file has no such heading"
    else
        return
    fi
    failures=$((failures + 1))
}

cd "$source_dir" || exit
count=0
while IFS= read -r document; do
    while IFS= read -r target; do
        [[ $target =~ ^[a-z]+: ]] && continue
        check_link "$document" "$target"
        count=$((count + 1))
    done < <(links_in "$document")
done < <(document_files)
if ((count < 10)); then
    echo "FAILED: only $count links were found; the documents have more"
    failures=$((failures + 1))
fi
finish
