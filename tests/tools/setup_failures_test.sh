#!/usr/bin/env bash
# What the installing and fetching scripts say when they cannot go on. Programs that stand in for the
# package tools fail upon request; nothing is downloaded or installed.
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"

# Copies, in a folder that every user may read.
chmod 755 "$work"
mkdir "$work/bin" "$work/setup"
cp "$source_dir"/tools/setup/* "$work/setup"

cat >"$work/bin/apt-get" <<'PROGRAM'
#!/usr/bin/env bash
[[ -n ${FAILING-} && " $* " == *" $FAILING "* ]] && exit 100
# The machine's sources: none at first when NO_LISTS is set, a file of a release behind that.
[[ $1 == indextargets && -z ${NO_LISTS-} ]] && echo "$SOURCE_FILE:1"
[[ $1 == download ]] && touch nlohmann-json3-dev_3.9.1_all.deb
[[ $1 == source ]] && touch benchmark_1.6.dsc
# The name of the right version, and an empty folder in it.
[[ $1 == source && -n ${EMPTY-} ]] && mkdir empty && tar --create --file benchmark_1.7.1.orig.tar.gz empty
exit 0
PROGRAM
cat >"$work/bin/apt-cache" <<'PROGRAM'
#!/usr/bin/env bash
echo "  Candidate: 3.9.1-1"
PROGRAM
printf '#!/usr/bin/env bash\n' | tee "$work/bin/dpkg-deb" >"$work/bin/dpkg-query"
chmod 755 "$work"/bin/*
# shellcheck source=/dev/null
codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
export SOURCE_FILE=$work/machine.list

# expect_words SETTINGS TEXT SCRIPT...: with these settings, "NAME=VALUE ...", the script returns 1.
expect_words() {
    local settings
    read -ra settings <<<"$1"
    expect 1 "$2" env "PATH=$work/bin:$PATH" "${settings[@]}" "${@:3}"
}
# without PROGRAM SCRIPT...: runs the script where this one program is missing.
# shellcheck disable=SC2317 # expect calls it
without() {
    local path=$work/without-$1 folder
    mkdir -p "$path"
    for folder in /usr/bin /bin; do
        find "$folder/" -maxdepth 1 ! -name "$1" -exec ln -sf -t "$path" {} +
    done
    PATH=$path "${@:2}"
}

install=$work/setup/install_packages
expect 1 "install_packages: this needs Debian or a system derived from it; others need the packages by" \
    without dpkg-query "$install"
expect_words FAILING=update "'apt-get update' failed; check the network and the sources below" "$install"
expect_words FAILING=install "'apt-get install' failed; mend what it says above, then try again" "$install"
user=(env "PATH=$work/bin:$PATH")
((EUID != 0)) || user=(setpriv --reuid=65534 --clear-groups "${user[@]}")
expect 1 "only root can install packages; as root run: apt-get install --no-install-recommends " \
    "${user[@]}" "$install"

for library in nlohmann_json benchmark; do
    fetch=("$work/setup/fetch_$library" "$work/target")
    echo "deb http://mirror.example/debian $codename main" >"$SOURCE_FILE"
    expect 1 "fetch_$library: this needs Debian; others unpack" without apt-get "${fetch[@]}"
    expect_words "NO_LISTS=1 FAILING=update" "'apt-get update' failed; check the network and the sources" \
        "${fetch[@]}"
    expect_words FAILING=update "could not be downloaded; check the network and the sources below" \
        "${fetch[@]}"
    echo "deb http://mirror.example/debian another main" >"$SOURCE_FILE"
    expect_words "" "no apt source of Debian $codename found to derive" "${fetch[@]}"
done
echo "deb http://mirror.example/debian $codename main" >"$SOURCE_FILE"
expect_words FAILING=download "the package nlohmann-json3-dev could not be downloaded; check the network" \
    "$work/setup/fetch_nlohmann_json" "$work/target"
expect_words "" "but not in version 3.11.3: nlohmann-json3-dev_3.9.1_all.deb" \
    "$work/setup/fetch_nlohmann_json" "$work/target"
expect_words FAILING=source "the source package benchmark could not be downloaded; check the network" \
    "$work/setup/fetch_benchmark" "$work/target"
expect_words "" "the apt sources offer benchmark, but not in version 1.7.1: " \
    "$work/setup/fetch_benchmark" "$work/target"
expect_words EMPTY=1 "the source package benchmark is not of version 1.7.1" \
    "$work/setup/fetch_benchmark" "$work/target"
if [[ -e $work/target ]]; then
    echo "FAILED: a fetch that failed left something behind"
    failures=$((failures + 1))
fi
finish
