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
trap 'rm -f "$log"' EXIT
desktop="test$$"
wine explorer "/desktop=$desktop,1280x1024" "$(windows_path "$program")" "--log=$(windows_path "$log")" "$@" &
# A program that hangs is killed together with this script, and its last lines tell where it was.
tail -n +1 -f --pid=$! "$log"
# explorer's exit status says nothing of the program's, and a program that crashed or never ran prints no
# closing line.
tr -d '\r' <"$log" | grep -q '^test program ended with 0$'
