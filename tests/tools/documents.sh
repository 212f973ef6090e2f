# Sourced by the tests of the documents: what Markdown files show. All work in the project's root.
# shellcheck shell=bash

document_files() { find . -name '*.md' -not -path './build/*' -printf '%P\n' | sort; }

# shown_commands FILE...: place and command, with a tab between, each without its comment and with its
# continuations. Commands are all lines of a block that is marked `sh`, those of an unmarked block that
# begin like one of this project's, and each `./dev ...` within the text. Words in capitals stand for
# something else there and make it no command.
shown_commands() {
    awk '
        function tell() {
            sub(/[ \t]+#.*$/, "", command)
            gsub(/[ \t]+/, " ", command)
            gsub(/^ | $/, "", command)
            if (command != "" && command !~ /^#/) print FILENAME ":" line "\t" command
            command = ""
        }
        FNR == 1 { in_block = 0 }
        /^ *```/ {
            in_block = !in_block
            kind = $1
            next
        }
        in_block && (command != "" || kind == "```sh" ||
                     kind == "```" && /^ *(\.\/dev|tools\/[a-z]|cmake )/) {
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

# write_examples FILE FOLDER: a block that is marked with a file name behind its language becomes that
# file.
write_examples() {
    awk -v folder="$2" '
        /^ *```/ {
            file = file == "" && NF == 2 && $1 ~ /^```[a-z]+$/ ? folder "/" $2 : ""
            next
        }
        file != "" { print >file }' "$1"
}

# block_after FILE TEXT: the first block behind the line with this text.
block_after() {
    awk -v text="$2" '
        index($0, text) { armed = 1 }
        /^ *```/ && armed { if (inside) exit; inside = 1; next }
        inside { print }' "$1"
}
