# What ./run, ./test and the scripts share: packages, building, the Wine environment, displays, and the
# clean-up of what was started. Sourced by bash scripts; needs $top, the folder of the checkout.
# shellcheck shell=bash

say() { printf '\033[1m==> %s\033[0m\n' "$*"; }
fail() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# windows_path PATH: the path as a Windows program finds it.
windows_path() { printf 'Z:%s' "${1//\//\\}"; }

# Another version of clang lays code out in another way, and warns of other things.
clang_version=14

# Packages by purpose. The libraries named with Wine are its recommendations that it cannot do without here:
# it loads them at run time, and recommendations are not installed. The core packages of MariaDB bring the
# programs without a system server that would take port 3306.
packages_build=(cmake ninja-build g++-mingw-w64-x86-64-posix)
packages_wine=(wine wine64 fonts-wine fonts-liberation libxcomposite1 libxcursor1 libxfixes3 libxi6
    libxinerama1 libxrandr2 libxrender1 procps util-linux)
packages_database=(mariadb-server-core mariadb-client-core mariadb-client odbc-mariadb libodbc2 iproute2)
packages_display=(xvfb)
packages_build_i686=(g++-mingw-w64-i686-posix)
packages_package=(nsis zip unzip cmark-gfm)
packages_test=(x11-utils googletest "clang-format-$clang_version" shellcheck python3)
packages_browser=(x11vnc novnc websockify)
packages_tidy=("clang-tidy-$clang_version")

# clang_tool NAME: the program of that version; fails where it is another one.
clang_tool() {
    local tool=$1-$clang_version
    [[ $("$tool" --version 2>/dev/null) == *"version $clang_version."* ]] || fail "$tool is missing, or not of version $clang_version"
    printf '%s\n' "$tool"
}

# install_missing PACKAGE...: asks apt-get for those of the packages that are not there.
install_missing() {
    local missing=() package as_root=()
    for package in "$@"; do
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q '^install ok installed' || missing+=("$package")
    done
    ((${#missing[@]})) || return 0
    command -v apt-get >/dev/null || fail "this system has no apt-get; please install: ${missing[*]}"
    if ((EUID)); then
        command -v sudo >/dev/null || fail "not root and no sudo; as root, please: apt-get install ${missing[*]}"
        as_root=(sudo)
    fi
    say "installing ${missing[*]}"
    # A fresh machine or container has no package lists, an old one has lists of packages that are gone.
    apt_get() { "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y "$@" </dev/null; }
    if [[ -z $(apt-cache policy "${missing[0]}" 2>/dev/null | sed -n 's/^  Candidate: \((none)\)\?//p') ]]; then
        apt_get update
    fi
    apt_get install --no-install-recommends "${missing[@]}" ||
        { apt_get update && apt_get install --no-install-recommends "${missing[@]}"; } ||
        fail "could not install: ${missing[*]}"
}

# build PRESET [TARGET...]: one at a time in a build folder, as ./run and ./test share it.
build() {
    local preset=$1
    shift
    say "building $preset"
    mkdir -p "$top/build"
    (
        cd "$top" && flock 8
        cmake --preset "$preset" >"build/$preset.log" 2>&1 || { cat "build/$preset.log" >&2; exit 1; }
        cmake --build --preset "$preset" ${1:+--target "$@"}
    ) 8>"$top/build/$preset.building" || fail "the build of $preset failed"
}

# only_once LOCKFILE: fails when another run holds the lock; what is started in the background must go through
# `unlocked`, or a process that outlives this one would keep the lock.
only_once() {
    mkdir -p "${1%/*}"
    exec 9>"$1"
    flock -n 9 || fail "another ${0##*/} is running in this folder"
}
unlocked() { "$@" 9>&-; }

# Clean-up: the last thing registered is undone first. `forget` the lot by clearing the array.
cleanups=()
on_exit() { cleanups+=("$*"); }
run_cleanups() {
    local i status=$?
    trap '' INT TERM HUP
    for ((i = ${#cleanups[@]} - 1; i >= 0; i--)); do
        eval "${cleanups[i]}" || true
    done
    cleanups=()
    exit "$status"
}
clean_up_when_done() {
    trap run_cleanups EXIT
    trap 'exit 130' INT
    trap 'exit 143' TERM HUP
}

# background NAME COMMAND...: runs it as the leader of a process group of its own, out of Ctrl-C's reach, and
# ends the group on exit. The output goes to $logs/NAME.log, the id into $background_pid.
background() {
    local name=$1
    shift
    set -m
    unlocked "$@" >"$logs/$name.log" 2>&1 </dev/null &
    background_pid=$!
    set +m
    on_exit "end_group $background_pid"
}

# end_group ID [SECONDS]: asks the group to end, and after the time (5 s) makes it.
end_group() {
    local i
    kill -TERM -- "-$1" 2>/dev/null || return 0
    for ((i = 0; i < ${2-5} * 20; i++)); do
        kill -0 -- "-$1" 2>/dev/null || return 0
        sleep 0.05
    done
    kill -KILL -- "-$1" 2>/dev/null
}

# ending_with_this SECONDS COMMAND...: runs it and waits for it, as a process group that is ended when this script is
# told to end meanwhile, and has that time to clean up after itself. A shell hears of that only behind a command
# that it runs in its own group.
ending_with_this() {
    local seconds=$1 status
    shift
    set -m
    "$@" </dev/null &
    on_exit "end_group $! $seconds"
    set +m
    wait "$!"
    status=$?
    unset 'cleanups[-1]'
    return "$status"
}

# wait_for SECONDS COMMAND...: until the command succeeds.
wait_for() {
    local tries=$(($1 * 10))
    shift
    while ! "$@" >/dev/null 2>&1; do
        ((tries-- > 0)) || return 1
        sleep 0.1
    done
}

# start_display SIZE: a virtual display with a number that is free; sets DISPLAY. A socket file is all that
# clients need, so the display can also be reached from another network namespace. It must not start afresh
# whenever its last client leaves: who comes at that moment is turned away, or waits for ever.
start_display() {
    rm -f "$logs/display.number"
    background display bash -c "exec 5>'$logs/display.number'; exec Xvfb -displayfd 5 -screen 0 $1x24 -nolisten tcp -noreset"
    wait_for 30 grep -q . "$logs/display.number" || fail "the virtual display did not start: see $logs/display.log"
    DISPLAY=:$(cat "$logs/display.number")
    export DISPLAY
}

# start_wine FOLDER [win32]: makes it a Wine prefix when it is none yet, and keeps Wine's server running in it.
# A wine of a root has its own kind of prefix and its own fonts.
start_wine() {
    export WINEPREFIX=$1 WINEARCH=${2-win64} WINEDEBUG=-all WINEDLLOVERRIDES=mscoree,mshtml=
    # Dates, decimal signs and AM and PM in the programs follow it; with C they are those of the United States.
    export LC_ALL=C.UTF-8
    # What a killed run left behind would go on living in its old network namespace and on its old display.
    [[ ! -d $WINEPREFIX ]] || unlocked wineserver -k 2>/dev/null || true
    if [[ ! -f $WINEPREFIX/.complete ]]; then
        say "preparing Wine in ${WINEPREFIX#"$top"/}"
        rm -rf "$WINEPREFIX"
        mkdir -p "$WINEPREFIX"
        unlocked wine wineboot -i >"$logs/wineboot.log" 2>&1 </dev/null || fail "wineboot failed: see $logs/wineboot.log"
        # A program that crashes must end, not wait behind a dialog.
        unlocked wine reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >/dev/null 2>&1
        unlocked wine reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug' /v Debugger /d '' /f >/dev/null 2>&1
        unlocked wineserver -w
        # Debian's Wine does not look into the folder of its own fonts: without these, windows have letters for
        # title bar buttons and another font than on Windows, with other widths.
        for font in "${KTOOLS_ROOT-}"/usr/share/wine/fonts/*.ttf; do
            ln -sf "${font#"${KTOOLS_ROOT-}"}" "$WINEPREFIX/drive_c/windows/Fonts/"
        done
        touch "$WINEPREFIX/.complete"
    fi
    unlocked wineserver -p
    on_exit 'unlocked wineserver -k 2>/dev/null; unlocked wineserver -w'
}

port_is_free() { ! (exec 3<>"/dev/tcp/127.0.0.1/$1") 2>/dev/null; }

# own_namespaces [--net] [--mount]: the command that runs another with a network or mounts of its own; fails where
# that is not allowed. Root needs no user namespace; others keep their user id in theirs, because MariaDB and Wine
# both look at it.
own_namespaces() {
    local try=(unshare "$@") proof=(true)
    ((EUID == 0)) || try+=(--map-current-user --keep-caps)
    [[ $* != *--net* ]] || proof=(ip link set lo up)
    "${try[@]}" "${proof[@]}" 2>/dev/null || return 1
    printf '%s\n' "${try[@]}"
}

# go_to_own_network SCRIPT [ARGUMENT...]: starts the script anew as SCRIPT --in-own-network ARGUMENT..., where
# port 3306 is free whatever runs on this machine, where possible with mounts of its own too. Returns where that is not
# allowed but the port is free.
go_to_own_network() {
    local network
    mapfile -t network < <(own_namespaces --net --mount || own_namespaces --net)
    ((${#network[@]} == 0)) || exec "${network[@]}" "$1" --in-own-network "${@:2}"
    port_is_free 3306 || fail "port 3306 is taken, and this system does not let me have a network of my own"
}

# in_own_network: what a script does first that go_to_own_network has started anew.
in_own_network() {
    ip link set lo up
    # The same number of a display is free in each network, and the files of their sockets must not meet.
    [[ -d /tmp/.X11-unix ]] || mkdir -m 1777 /tmp/.X11-unix
    [[ $(readlink /proc/self/ns/mnt) == "$(readlink /proc/1/ns/mnt)" ]] ||
        mount -t tmpfs -o mode=1777 kTools /tmp/.X11-unix 2>/dev/null || true
}

# start_databases [ADDRESS...]: the private database servers, and what programs need to find them, until the
# exit.
start_databases() {
    on_exit "unlocked '$top/scripts/mariadb.sh' stop $* 2>/dev/null"
    unlocked "$top/scripts/mariadb.sh" stop "$@" # whatever a killed run left
    unlocked "$top/scripts/mariadb.sh" start "$@" || fail "the database servers did not start"
    eval "$("$top/scripts/mariadb.sh" env)"
}

# start_surroundings WINE_FOLDER [win32]: the display, Wine and both database servers, until the exit.
start_surroundings() {
    mkdir -p "$logs"
    clean_up_when_done
    say "starting the display, Wine and the database servers"
    start_display 1280x1024
    start_wine "$@"
    # The first desktop of a Wine server takes long; a test's time limit must not pay for it, nor a measurement.
    unlocked wine explorer /desktop=warmup,800x600 cmd /c exit >/dev/null 2>&1 </dev/null
    start_databases
}
