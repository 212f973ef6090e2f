# Sourced by checks that take seconds a file. A stamp remembers the contents of everything that a
# clean check depended on, so that an unchanged file is not checked again.
# shellcheck shell=bash

# is_clean STAMP: whether nothing has changed since the stamp was written.
is_clean() { sha256sum --check --status "$1" 2>/dev/null; }

# mark_clean STAMP DEPENDENCIES FILE...: DEPENDENCIES is a file in make's syntax, as compilers write it.
mark_clean() {
    {
        sed -e 's/\\$//' -e '1s/^[^:]*://' "$2" | xargs realpath --
        realpath -- "${@:3}"
    } | tr '\n' '\0' | sort -zu | xargs -0 sha256sum >"$1.new"
    mv "$1.new" "$1"
}
