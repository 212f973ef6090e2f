#!/usr/bin/env bash
# What the documents show is there: every command, which is tried without its work, every option of
# the host, every happening of a script, and the target of every link.
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"
source "$(dirname "$0")/pretended_project.sh"
cd "$source_dir" || exit
mapfile -t documents < <(find . -name '*.md' -not -path './build/*' -printf '%P\n' | sort)

# shown_commands FILE...: place and command, with a tab between, each without its comment and with its
# continuations. Commands are all lines of a block that is marked `sh` and each `./dev ...` within the
# text. Words in capitals stand for something else there and make it no command.
shown_commands() {
    awk '
        function tell() {
            sub(/[ \t]+#.*$/, "", command)
            gsub(/[ \t]+/, " ", command)
            gsub(/^ | $/, "", command)
            if (command != "" && command !~ /^#/) print FILENAME ":" line "\t" command
            command = ""
        }
        /^ *```/ { in_block = !in_block; is_sh = $1 == "```sh"; next }
        in_block && is_sh {
            if (command == "") line = FNR
            command = command " " $0
            if (!sub(/\\$/, "", command)) tell()
        }
        !in_block {
            rest = $0
            while (match(rest, /`\.\/dev[^`]*`/)) {
                line = FNR
                command = substr(rest, RSTART + 1, RLENGTH - 2)
                rest = substr(rest, RSTART + RLENGTH)
                if (command ~ / [A-Z]/) command = ""
                tell()
            }
        }' "$@"
}

# A block that is marked with a file name behind its language becomes that file.
for document in "${documents[@]}"; do
    awk -v folder="$project" '
        /^ *```/ { file = file == "" && NF == 2 && $1 ~ /^```[a-z]+$/ ? folder "/" $2 : ""; next }
        file != "" { print >file }' "$document"
done
event='{"time": "2026-11-20T18:54:03.120Z", "id": 992614500, "fields": []}'
echo "$event" | tee "$project/events.ndjson" >"$project/laptop.ndjson"
touch "$project/log.txt"

host() {
    (cd "$project" && "$source_dir/tools/wine/run_in_wine" "$wine_prefix" "$build_dir/bin/tallyport_host.exe" "$@")
}

# try_run OPTION...: a run reads its options and files first, and stops at a plug-in that is missing.
try_run() {
    case " $* " in
        *" --help "* | *" --list-devices "* | *" --from "*) expect 0 "" host "$@" ;;
        *) expect 2 "there is no plug-in 'none.dll'" host "$@" --plugin none.dll ;;
    esac
}

# names_program NAME: the build or another one of this project makes it.
names_program() { grep --recursive --quiet --include=CMakeLists.txt -E "(NAME |_test\(|add_executable\()$1\b" .; }

declare -A tried=()
while IFS=$'\t' read -r place command; do
    [[ -v tried["$command"] ]] && continue
    tried["$command"]=$place
    before=$failures
    read -ra words <<<"$command"
    case $command in
        ./dev*) expect 0 "" pretended_dev "${words[@]:1}" ;;&
        "./dev run "*) try_run "${words[@]:2}" ;;
        ./dev*) ;;
        *.exe\ *)
            program=${command%%.exe *}
            names_program "${program##*/}" || complain "there is no program '${program##*/}'"
            ;;
        tools/benchmarks/*) (cd "$project" && "$source_dir/${words[0]}" "${words[@]:1}") >/dev/null || complain "$command" ;;
        run=* | checked=*) [[ -x tools/wine/run_in_wine ]] || complain "$command" ;;
        "cmake --preset "* | "cmake --build "*) ;; # tools_sdk_swap runs them
        *) complain "nothing tries '$command'; ${0##*/} has to" ;;
    esac
    ((failures == before)) || echo "  shown at $place"
done < <(shown_commands "${documents[@]}")
((${#tried[@]} > 20)) || complain "only ${#tried[@]} commands were found; the documents show more"

# docs/host.md explains every option of the host, and the example script has every happening.
options_in() { grep -oE -e '--[a-z][a-z-]*|-h\b' | sort -u; }
diff <(sed -n 's/^| \(`-.*\)/\1/p' docs/host.md | cut -d'|' -f1 | options_in) \
    <(host --help | awk '/^ *-/ { print $1 }' | options_in) ||
    complain "the options in docs/host.md (<) are not those of ./dev run --help (>)"
echo '{"at": "1s", "do": "none"}' >"$project/none.jsonl"
diff <(sed -n 's/.*"do": "\([a-z_]*\)".*/\1/p' "$project/my_story.jsonl" | sort -u) \
    <(host --script none.jsonl 2>&1 | sed -n 's/.*expected one of \(.*\), found.*/\1/p' |
        grep -oE '[a-z_]+' | sort) ||
    complain "the example script in docs/host.md (<) has not exactly the happenings of the host (>)"

# outside_blocks FILE
outside_blocks() { awk '/^ *```/ { inside = !inside; next } !inside' "$1"; }

# anchors_of FILE: what browsers find its headings by: small letters, no punctuation, hyphens for blanks.
anchors_of() {
    outside_blocks "$1" | sed -nE 's/^#+ //p' | tr '[:upper:]' '[:lower:]' |
        sed -E 's/[^a-z0-9 _-]//g; s/ /-/g'
}

links=0
for document in "${documents[@]}"; do
    while IFS= read -r target; do
        links=$((links + 1))
        file=$document
        [[ $target == '#'* ]] || file=$(dirname "$document")/${target%%#*}
        if [[ ! -e $file ]]; then
            complain "$document links to '$file', which does not exist"
        elif [[ $target == *'#'* ]] && ! anchors_of "$file" | grep -qxF -- "${target#*#}"; then
            complain "$document links to '$target', but $file has no such heading"
        fi
    done < <(outside_blocks "$document" | grep -oE '\]\([^)]+\)' | sed 's/^](//; s/)$//' | grep -vE '^[a-z]+:')
done
((links > 10)) || complain "only $links links were found; the documents have more"
finish
