#!/usr/bin/env bash
# Private database servers for trying the tool and for its tests, and the ODBC driver's alias.
#
#   mariadb.sh start [ADDRESS...]   starts a server on port 3306 of each address and waits until it answers
#   mariadb.sh stop [ADDRESS...]    stops them; their data stays
#   mariadb.sh clean                stops all and deletes their data
#   mariadb.sh env                  prints the exports that programs need to find driver and servers
#   mariadb.sh run COMMAND...       start, COMMAND with that environment, stop; exits as COMMAND did
#
# Without addresses: 127.0.0.1 ("localhost") and 127.0.0.2 (the remote one). KTOOLS_MARIADB names the folder
# that holds everything, build/mariadb when it is not set. Each address has a folder there:
#   data/   the data folder           log     the server's messages
#   hold    while this file exists, a server that has ended is not started again
#   kill    when this file appears, the server is killed as by a power cut, and the file removed
#   pause   while this file exists, the server is stopped where it is, and the file paused tells that it is
# KTOOLS_SERVERS names the kind of each server, as in "127.0.0.1=mysql 127.0.0.2=mariadb-new"; "mariadb", this
# system's MariaDB, is the one that is not named. The others are programs of roots in the folder KTOOLS_ROOTS.
# The login that servers used to come with is there: root without a password.
set -euo pipefail

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
source "$top/scripts/lib.sh"
servers=${KTOOLS_MARIADB:-$top/build/mariadb}
addresses=(127.0.0.1 127.0.0.2)
export PATH=$PATH:/usr/sbin:/sbin

# The servers refuse to run as root unless told so by name.
as_user=()
[ "$(id -u)" = 0 ] && as_user=(--user=root)

# kind_of ADDRESS: sets $kind, and $enter, the command that starts programs of that server's system.
kind_of() {
    local root=
    kind=mariadb enter=()
    case " ${KTOOLS_SERVERS-} " in
    *" $1=mysql "*) kind=mysql root=mysql ;;
    *" $1=mariadb-new "*) kind=mariadb-new root=unstable ;;
    esac
    [ -z "$root" ] || enter=(chroot "$KTOOLS_ROOTS/$root" /usr/bin/env PATH=/usr/sbin:/usr/bin:/sbin:/bin)
}

# make_data FOLDER: what stands in "$kind" decides how.
make_data() {
    local data=$1/data
    [ -d "$data/mysql" ] && return
    rm -rf "$data"
    case $kind in
    mysql)
        "${enter[@]}" mysqld --no-defaults "${as_user[@]}" --datadir="$data" --initialize-insecure \
            --tmpdir="$1/tmp" --innodb-redo-log-capacity=32M
        ;;
    *)
        "${enter[@]}" mariadb-install-db --no-defaults "${as_user[@]}" --datadir="$data" --skip-test-db \
            --tmpdir="$1/tmp" --auth-root-authentication-method=normal --innodb-log-file-size=8M
        ;;
    esac >"$1/install.log" 2>&1 && return
    rm -rf "$data"
    fail "no data folder could be made, see $1/install.log"
}

# Keeps one server running until the file "stop" appears. Name resolution stays on: without it a login
# over TCP never counts as one from localhost. InnoDB's size and flushing are cut down to start quickly.
# A table that a kill has broken is mended without a copy of it, which would keep its database from being dropped.
supervise() {
    local address=$1 folder=$servers/$1 server='' program
    kind_of "$address"
    case $kind in
    mysql) program=(mysqld --innodb-redo-log-capacity=32M --secure-file-priv= --mysqlx=OFF --skip-log-bin) ;;
    *) program=(mariadbd --innodb-log-file-size=8M) ;;
    esac
    trap 'touch "$folder/stop"; [ -z "$server" ] || kill -TERM "$server" 2>/dev/null && kill -CONT "$server" 2>/dev/null || true' TERM INT
    while [ ! -e "$folder/stop" ]; do
        if [ -e "$folder/hold" ]; then
            sleep 0.05
            continue
        fi
        rm -f "$folder/kill"
        "${enter[@]}" "${program[0]}" --no-defaults "${program[@]:1}" "${as_user[@]}" --datadir="$folder/data" \
            --tmpdir="$folder/tmp" --socket=server.sock --bind-address="$address" --port=3306 --pid-file="$folder/pid" \
            --innodb-buffer-pool-size=32M --innodb-flush-log-at-trx-commit=2 \
            --myisam-recover-options=QUICK >>"$folder/log" 2>&1 &
        server=$!
        while kill -0 "$server" 2>/dev/null; do
            if [ -e "$folder/kill" ]; then
                kill -KILL "$server" 2>/dev/null || true
                wait "$server" 2>/dev/null || true
                rm -f "$folder/kill"
                break
            fi
            if [ -e "$folder/pause" ] && [ ! -e "$folder/paused" ]; then
                kill -STOP "$server" && touch "$folder/paused"
            elif [ ! -e "$folder/pause" ] && [ -e "$folder/paused" ]; then
                kill -CONT "$server" && rm -f "$folder/paused"
            fi
            sleep 0.05
        done
        wait "$server" 2>/dev/null || true
        server=
        # A server that cannot start at all would be started again for ever.
        [ -e "$folder/ready" ] || break
    done
    rm -f "$folder/supervisor"
}

answers() {
    mariadb --no-defaults --connect-timeout=2 -h "$1" -P 3306 -u root -BNe 'SELECT 1' >/dev/null 2>&1
}

running() {
    [ -e "$servers/$1/supervisor" ] && kill -0 "$(cat "$servers/$1/supervisor")" 2>/dev/null
}

start() {
    local address folder
    for address in "$@"; do
        running "$address" && continue
        folder=$servers/$address
        mkdir -p "$folder"
        if (exec 3<>"/dev/tcp/$address/3306") 2>/dev/null; then
            fail "port 3306 of $address is taken; stop what listens there, or run under 'unshare --net'"
        fi
        kind_of "$address"
        # Data of another kind of server would not do.
        [ "$(cat "$folder/kind" 2>/dev/null || echo mariadb)" = "$kind" ] || rm -rf "$folder/data"
        # A server that starts removes the temporary tables in its folder, those of another one too.
        rm -rf "$folder/tmp" && mkdir "$folder/tmp"
        echo "$kind" >"$folder/kind"
        make_data "$folder"
        rm -f "$folder"/{stop,hold,kill,pause,paused,ready} "$folder/log"
        # A session of its own: an interrupt meant for the caller must not end the servers before it.
        setsid "${BASH_SOURCE[0]}" supervise "$address" </dev/null >/dev/null 2>&1 &
        echo $! >"$folder/supervisor"
    done
    for address in "$@"; do
        folder=$servers/$address
        for ((i = 0; ; ++i)); do
            answers "$address" && break
            if ! running "$address" || [ $i -ge 300 ]; then
                tail -n 15 "$folder/log" >&2 || true
                fail "the server on $address did not start, see $folder/log"
            fi
            sleep 0.1
        done
        touch "$folder/ready"
    done
}

stop() {
    local address folder
    for address in "$@"; do
        folder=$servers/$address
        [ -e "$folder/supervisor" ] || continue
        touch "$folder/stop"
        rm -f "$folder/pause"
        [ -e "$folder/pid" ] && kill "$(cat "$folder/pid")" 2>/dev/null || true
    done
    for address in "$@"; do
        for ((i = 0; i < 200; ++i)); do
            running "$address" || break
            sleep 0.05
        done
        if running "$address"; then
            touch "$servers/$address/kill"
        fi
    done
}

# An odbcinst.ini of our own that gives the MariaDB driver beside Wine (in KTOOLS_ROOT, where that is set) the
# name that the tool asks for.
make_alias() {
    local library root=${KTOOLS_ROOT-}
    for library in "$root"/usr/lib/*/odbc/libmaodbc.so "$root"/usr/lib64/libmaodbc.so \
        "$root"/usr/local/lib/*/libmaodbc.so; do
        [ -e "$library" ] && break
    done
    [ -e "$library" ] || fail "the MariaDB ODBC driver is missing (package odbc-mariadb)"
    mkdir -p "$servers/odbc"
    printf '[MySQL ODBC 3.51 Driver]\nDriver=%s\nThreading=0\n' "${library#"$root"}" >"$servers/odbc/odbcinst.ini"
}

set_environment() {
    make_alias
    export ODBCSYSINI=$servers/odbc KTOOLS_MARIADB=$servers
}

command=${1:-}
shift || true
case $command in
start)
    [ $# -gt 0 ] || set -- "${addresses[@]}"
    start "$@"
    ;;
stop)
    [ $# -gt 0 ] || set -- "${addresses[@]}"
    stop "$@"
    ;;
clean)
    stop "${addresses[@]}"
    rm -rf "$servers"
    ;;
env)
    set_environment
    printf 'export ODBCSYSINI=%q KTOOLS_MARIADB=%q\n' "$ODBCSYSINI" "$KTOOLS_MARIADB"
    ;;
run)
    set_environment
    trap 'stop "${addresses[@]}"' EXIT
    start "${addresses[@]}"
    "$@"
    ;;
supervise)
    supervise "$1"
    ;;
*)
    sed -n '2,/^set /{/^set /!s/^# \{0,1\}//p}' "${BASH_SOURCE[0]}"
    exit 2
    ;;
esac
