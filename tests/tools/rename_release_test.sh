#!/usr/bin/env bash
# An apt source of the next release is derived from the machine's own, in both of apt's forms.
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"

# expect_renamed FILE: bookworm becomes trixie as FILE.expected says.
expect_renamed() {
    if ! diff -u "$1.expected" <("$source_dir/tools/setup/rename_release" "$1" bookworm trixie); then
        echo "FAILED: $1"
        failures=$((failures + 1))
    fi
}

cat >"$work/machine.sources" <<'SOURCES'
Types: deb
# a comment within
URIs: http://mirror.example/debian
Suites: bookworm bookworm-updates
Components: main
Signed-By: /usr/share/keyrings/a.gpg

Types: deb
URIs: http://mirror.example/debian-security
Suites: bookworm-security
Components: main
SOURCES
cat >"$work/machine.sources.expected" <<'SOURCES'
Types: deb
# a comment within
URIs: http://mirror.example/debian
Suites: trixie
Components: main
Signed-By: /usr/share/keyrings/a.gpg

SOURCES

cat >"$work/machine.list" <<'SOURCES'
# deb http://mirror.example/debian bookworm main
deb [signed-by=/a.gpg] http://mirror.example/bookworm/debian bookworm main contrib
deb http://mirror.example/debian bookworm-updates main
deb-src http://mirror.example/debian bookworm main
deb http://mirror.example/debian	bookworm	main
SOURCES
cat >"$work/machine.list.expected" <<'SOURCES'
deb [signed-by=/a.gpg] http://mirror.example/bookworm/debian trixie main contrib
deb http://mirror.example/debian	trixie	main
SOURCES

expect_renamed "$work/machine.sources"
expect_renamed "$work/machine.list"
finish
