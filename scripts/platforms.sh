# The platforms that kTools is tried on beside this system: roots with another Wine and other database servers,
# and how a script gets into them. Sourced after lib.sh.
#
# A root is a folder under build/roots with a small Debian in it. Programs of it are started by chroot; files,
# display and network are those of this side, by mounts that only the script's own mount namespace knows: they
# go with its last process, however it ends.
# shellcheck shell=bash

packages_root=(debootstrap debian-archive-keyring)
# Users other than root need users of their own in a root.
((EUID == 0)) || packages_root+=(uidmap)
# What Wine needs in a root, the system's own packages apart that only scripts use.
packages_wine_in_root=(wine fonts-wine fonts-liberation libxcomposite1 libxcursor1 libxfixes3 libxi6
    libxinerama1 libxrandr2 libxrender1 odbc-mariadb libodbc2)

# root_recipe NAME: what make-root takes beside the folder. A root is made anew when this changes.
root_recipe() {
    case $1 in
    wine32) echo i386 "$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)" "${packages_wine_in_root[@]}" wine32 mariadb-client ;;
    unstable)
        echo amd64 sid "${packages_wine_in_root[@]}" wine64 mariadb-server-core mariadb-client-core mariadb-client
        ;;
    # Its packages do not go with those of MariaDB.
    mysql) echo amd64 sid mysql-server-core ;;
    esac
}

# A platform: its heading in tables, the preset whose programs run there, the root of its Wine ("-" is this
# system), the kinds of the local and of the remote database server, and which tests.
all_tests='.*'
database_tests='^(database|dbsetup|accounts|supervision|faults)$'
# They look at sources and builds, which are the same for every platform.
tests_of_sources=(lint imports)
platforms=(this wine32 wine-new mysql mariadb-new)
platform() {
    platform_name=$1
    case $1 in
    this) platform_is "this system" test - mariadb mariadb "$all_tests" ;;
    wine32) platform_is "32-bit" test-i686 wine32 mariadb mariadb "$all_tests" ;;
    wine-new) platform_is "newer Wine" test unstable mariadb mariadb "$all_tests" ;;
    mysql) platform_is "MySQL/MariaDB" test - mysql mariadb-new "$database_tests" ;;
    mariadb-new) platform_is "MariaDB/MySQL" test - mariadb-new mysql "$database_tests" ;;
    *) fail "no such platform: $1" ;;
    esac
}
platform_is() {
    platform_title=$1 platform_preset=$2 platform_wine=$3 platform_local=$4 platform_remote=$5 platform_tests=$6
    [[ $2 == *i686 ]] && platform_bits=win32 || platform_bits=win64
    mapfile -t platform_roots < <(printf '%s\n' "$3" "${4/mariadb-new/unstable}" "${5/mariadb-new/unstable}" |
        grep -vx -e - -e mariadb | sort -u)
}
root_folder() { echo "$top/build/roots/$1"; }

# make_root NAME: makes the root when it is missing or has another recipe. Fails with the reason in $no_root when
# there is none afterwards; one of before is better than none.
make_root() {
    local folder try=(unshare --mount) log=$top/build/roots/$1.log recipe
    folder=$(root_folder "$1")
    recipe=$(root_recipe "$1"; cat "$top/scripts/make-root")
    [[ -f $folder/.recipe && $(<"$folder/.recipe") == "$recipe" ]] && return
    say "making the root $1 (a few minutes; see ${log#"$top"/})"
    mkdir -p "$top/build/roots"
    # The files of a root belong to several users.
    ((EUID == 0)) || try=(unshare --map-root-user --map-auto --mount)
    # shellcheck disable=SC2046
    if ! "${try[@]}" true 2>"$log"; then
        no_root="neither root nor allowed a user namespace with users of its own (newuidmap, /etc/subuid)"
    elif ! EUID_OUTSIDE=$EUID unlocked ending_with_this 60 "${try[@]}" "$top/scripts/make-root" \
        "$folder.new" $(root_recipe "$1") >"$log" 2>&1; then
        no_root="the root $1 could not be made: $(grep -E '^E:|^W: Failed|could not|no mirror' "$log" | head -n 1)"
    else
        "${try[@]}" rm -rf --one-file-system "$folder"
        mv "$folder.new" "$folder" && printf '%s' "$recipe" >"$folder/.recipe" && return
        no_root="the root $1 could not be put in its place"
    fi
    if [[ -f $folder/.recipe ]]; then
        say "$no_root; the root of before is used"
        return
    fi
    return 1
}

# use_platform: in a mount namespace of one's own: gives the platform's roots the files of this side, and has
# `wine` and the servers' script take its programs.
use_platform() {
    local root folder shared
    mount --make-rprivate / 2>/dev/null
    for root in "${platform_roots[@]}"; do
        folder=$(root_folder "$root")
        for shared in /dev /proc "${TMPDIR:-/tmp}" /tmp/.X11-unix "$top"; do
            mkdir -p "$folder$shared" && mount --rbind "$shared" "$folder$shared" || fail "$shared cannot be shared"
        done
        # With the name of this computer, which programs ask the address of.
        mount --bind /etc/hosts "$folder/etc/hosts" || fail "/etc/hosts cannot be shared"
    done
    export KTOOLS_ROOTS=$top/build/roots
    [[ $platform_wine != - ]] || return 0
    KTOOLS_ROOT=$(root_folder "$platform_wine")
    export KTOOLS_ROOT PATH=$top/scripts/in-root:$PATH
}

# results_of NAME: where on-platform leaves what ctest found.
results_of() { echo "$top/build/platforms/$1.xml"; }

# print_table: rows are test programs, columns platforms. What did not run where it should have counts as failed:
# the result is true when all is well. $why tells for a platform that is missing what is missing.
print_table() {
    local name status=0 word
    declare -A cell
    local rows=()
    for name in "${platforms[@]}"; do
        while IFS=$'\t' read -r test seconds word; do
            [[ -v "cell[$test]" ]] || rows+=("$test")
            cell[$test]=1
            case $word in
            run) cell[$test,$name]="$(printf '%.0f s' "$seconds")" ;;
            *) cell[$test,$name]=FAILED ;;
            esac
        done < <(sed -n 's/.*<testcase name="\([^"]*\)".* time="\([^"]*\)" status="\([^"]*\)".*/\1\t\2\t\3/p' \
            "$(results_of "$name")" 2>/dev/null)
    done
    say "seconds of the tests on each platform"
    printf '%-14s' ''
    for name in "${platforms[@]}"; do
        platform "$name"
        printf '%15s' "$platform_title"
    done
    printf '\n'
    for test in "${rows[@]}"; do
        printf '%-14s' "$test"
        for name in "${platforms[@]}"; do
            platform "$name"
            word=${cell[$test,$name]-}
            if [[ ! $word ]]; then
                word=-
                [[ ! $test =~ $platform_tests || ($name != this && " ${tests_of_sources[*]} " == *" $test "*) ]] || word=MISSING
            fi
            [[ $word != MISSING && $word != FAILED ]] || status=1
            printf '%15s' "$word"
        done
        printf '\n'
    done
    for name in "${platforms[@]}"; do
        [[ ! ${why[$name]-} ]] || { platform "$name"; echo "$platform_title is missing: ${why[$name]}"; status=1; }
    done
    ((${#rows[@]})) && return "$status"
}
