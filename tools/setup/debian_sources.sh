# Sourced by the scripts beside it that download from Debian by means of the machine's own sources.
# shellcheck shell=bash

# Quiet and patient. The scripts' work folders are root's alone, so that apt's download user could
# not write there.
apt_options=(-qq -o APT::Sandbox::User=root -o Acquire::Retries=3 -o Acquire::Languages=none)

# source_files CODENAME: the files that name the machine's sources of that Debian release.
source_files() {
    # shellcheck disable=SC2016 # apt expands the name
    apt-get indextargets --format '$(SOURCESENTRY)' \
        'Created-By: Packages' 'Origin: Debian' "Codename: $1" | sed 's/:[0-9]*$//' | sort -u
}

# use_own_folders DIR: from here on apt reads the sources in DIR/sources and nothing else, and keeps
# lists and downloads below DIR, so that the machine's own stay as they are.
use_own_folders() {
    mkdir -p "$1/sources" "$1/lists/partial" "$1/cache/archives/partial"
    apt_options+=(-o Dir::Etc::sourcelist=/dev/null -o "Dir::Etc::sourceparts=$1/sources"
        -o "Dir::State::lists=$1/lists" -o "Dir::Cache=$1/cache")
}
