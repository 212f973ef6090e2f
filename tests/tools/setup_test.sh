#!/usr/bin/env bash
# What the installing and fetching scripts say when they cannot go on. Programs that stand in for the
# package tools fail upon request; nothing is downloaded or installed.
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"

# Copies, in a folder that every user may read.
chmod 755 "$work"
mkdir "$work/bin"
cp -r "$source_dir/tools/setup" "$work"
cat >"$work/bin/apt-get" <<'PROGRAM'
#!/usr/bin/env bash
[[ -n ${FAILING-} && " $* " == *" $FAILING "* ]] && exit 100
[[ $1 == indextargets ]] && echo "$SOURCE_FILE:1"
[[ $1 == download ]] && touch nlohmann-json3-dev_3.9.1_all.deb
[[ $1 == source ]] && touch benchmark_1.6.dsc
exit 0
PROGRAM
printf '#!/usr/bin/env bash\necho "  Candidate: 3.9.1-1"\n' >"$work/bin/apt-cache"
printf '#!/usr/bin/env bash\n' | tee "$work/bin/dpkg-deb" >"$work/bin/dpkg-query"
chmod 755 "$work"/bin/*
export SOURCE_FILE=$work/machine.list
pretended=(env "PATH=$work/bin:$PATH")

install=("$work/setup/install_packages" run)
expect 1 "this needs Debian or a system derived from it" without dpkg-query "${install[@]}"
for step in update install; do
    expect 1 "'apt-get $step' failed" "${pretended[@]}" FAILING=$step "${install[@]}"
done
((EUID != 0)) || install=(setpriv --reuid=65534 --clear-groups "${pretended[@]}" "${install[@]}")
expect 1 "only root can install packages; as root run: apt-get install " "${pretended[@]}" "${install[@]}"

# shellcheck source=/dev/null
codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
for call in "nlohmann_json download" "benchmark source"; do
    fetch=("$work/setup/fetch_${call% *}" "$work/target")
    expect 1 "this needs Debian; elsewhere unpack" without apt-get "${fetch[@]}"
    echo "deb http://mirror.example/debian another main" >"$SOURCE_FILE"
    expect 1 "no apt source of Debian $codename found to derive" "${pretended[@]}" "${fetch[@]}"
    echo "deb http://mirror.example/debian $codename main" >"$SOURCE_FILE"
    for step in update "${call#* }"; do
        expect 1 "downloaded; check the network" "${pretended[@]}" FAILING="$step" "${fetch[@]}"
    done
    expect 1 "but not in version " "${pretended[@]}" "${fetch[@]}"
done
[[ ! -e $work/target ]] || complain "a fetch that failed left something behind"

# An apt source of the next release is derived from the machine's own, in both of apt's forms.
rename=("$work/setup/rename_release" "$SOURCE_FILE" bookworm trixie)
printf '%s\n' "# deb http://mirror.example/debian bookworm main" \
    "deb [signed-by=/a.gpg] http://mirror.example/bookworm/debian bookworm main contrib" \
    "deb http://mirror.example/debian bookworm-updates main" >"$SOURCE_FILE"
expect_line 0 "deb [signed-by=/a.gpg] http://mirror.example/bookworm/debian trixie main contrib" "${rename[@]}"
SOURCE_FILE=$work/machine.sources
rename[1]=$SOURCE_FILE
printf '%s\n' "Types: deb" "Suites: bookworm bookworm-updates" "Signed-By: /a.gpg" "" \
    "Types: deb" "Suites: bookworm-security" >"$SOURCE_FILE"
expect 0 $'Types: deb\nSuites: trixie\nSigned-By: /a.gpg' "${rename[@]}"
finish
