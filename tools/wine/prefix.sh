# Sourced by the scripts beside it: finds Wine and prepares a Wine prefix. Nothing here touches the
# user's own prefix.
# shellcheck shell=bash

wine_failed() {
    echo "$(basename "$0"): $*" >&2
    exit 127
}

# Sets `wine` and `wineserver`. Wine's own launcher script would print about a missing 32-bit part,
# so the programs themselves are called.
find_wine() {
    wine=/usr/lib/wine/wine64
    [[ -x $wine ]] || wine=$(command -v wine64) || wine_failed "Wine is missing; run: ./dev setup"
    wineserver=/usr/lib/wine/wineserver64
    [[ -x $wineserver ]] || wineserver=$(command -v wineserver) ||
        wine_failed "Wine's server is missing; run: ./dev setup"
}

# use_prefix DIR: sets the environment of Wine programs and creates the prefix on first use.
use_prefix() {
    mkdir -p "$1" || wine_failed "the folder '$1' for the Wine prefix cannot be created"
    # Links resolved: a prefix has one lock, by whatever name it is called.
    WINEPREFIX=$(cd "$1" && pwd -P)
    export WINEPREFIX WINEARCH=win64 WINEDEBUG=${WINEDEBUG--all}
    # A crash must end the program instead of waiting in the debugger. The other two would ask for
    # downloads, and no menu entries are to appear on the developer's desktop.
    export WINEDLLOVERRIDES='winedbg.exe=d;mscoree=;mshtml=;winemenubuilder.exe=d'
    # Arguments and file names are UTF-8 on every machine.
    export LC_ALL=C.UTF-8
    [[ -e $WINEPREFIX/.complete ]] || (create_prefix) || exit
}

create_prefix() {
    exec {lock}>"$WINEPREFIX.lock"
    flock "$lock"
    [[ -e $WINEPREFIX/.complete ]] && return
    # Wine's server outlives these commands: it must hold neither the lock nor the caller's output.
    ("$wine" wineboot --init && be_patient_with_drivers) \
        </dev/null >"$WINEPREFIX.log" 2>&1 {lock}>&- ||
        wine_failed "the Wine prefix could not be created; see $WINEPREFIX.log"
    touch "$WINEPREFIX/.complete"
}

# Ten seconds after a driver's start Wine gives up waiting for it, and on a busy machine has none of its
# devices until it is started anew. It reads the limit, in milliseconds, when it starts.
be_patient_with_drivers() {
    "$wine" reg add 'HKLM\SYSTEM\CurrentControlSet\Control' /v ServicesPipeTimeout /d 300000 /f &&
        "$wineserver" -k && "$wineserver" -w
}
