#!/usr/bin/env bash
# Runs a test program under Wine on a virtual desktop of its own, so that test programs that run side by side
# do not see each other's windows. Prints what the program prints, while it does, and exits with its result.
#
#   run-under-wine.sh PROGRAM.exe [GOOGLETEST OPTION...]
set -u
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
source "$top/scripts/lib.sh"
program=$1
shift
# A desktop without a program would stay open for ever.
[[ -f $program ]] || fail "$program has not been built"

log=$(mktemp)
# ctest kills this script when the time is over, and Wine's programs are not its children. They have the name
# of the log in their environment, as programs of this computer that tests start have, too.
export KTOOLS_TEST_LOG=$log
# shellcheck disable=SC2013,SC2317
end_programs_after() {
    local process command again=1
    tail -f --pid="$1" /dev/null
    # What is killed may just have started others.
    while [[ -f $KTOOLS_TEST_LOG && $again ]]; do
        again=
        for process in $(grep -slz "^KTOOLS_TEST_LOG=$KTOOLS_TEST_LOG\$" /proc/[0-9]*/environ | cut -d / -f 3); do
            command=$(tr '\0' ' ' <"/proc/$process/cmdline")
            [[ $command == [A-Z]:\\* ]] && kill -KILL "$process" && again=1
        done
        sleep 0.5
    done
    rm -f "$KTOOLS_TEST_LOG"
}
export -f end_programs_after
# Out of this script's tree of processes, which goes as a whole.
(setsid bash -c "end_programs_after $$" </dev/null >/dev/null 2>&1 &)

desktop="test$$"
wine explorer "/desktop=$desktop,1280x1024" "$(windows_path "$program")" "--log=$(windows_path "$log")" "$@" &
tail -n +1 -f --pid=$! "$log"
# explorer's exit status says nothing of the program's, and a program that crashed or never ran prints no
# closing line.
tr -d '\r' <"$log" | grep -q '^test program ended with 0$'
result=$?
rm -f "$log"
exit "$result"
