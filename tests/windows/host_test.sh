#!/usr/bin/env bash
# Tests keld2.exe in a Wine tree: a device from program to read-back, what it refuses, and that all
# jobs give the traces that they give on Linux.
# usage: tests/windows/host_test.sh TREE FOLDER [STANDINS]
#   TREE      of scripts/wine32-tree; its folder w/keld2 is made anew
#   FOLDER    keld2.exe and devices, as scripts/windows-build makes them
#   STANDINS  testhost.dll, tq8io.dll and tq5io.dll in place of the programmer's own
set -euo pipefail
tree=$1
program=$2
standins=${3:-}
cd "$(dirname "$0")/../.."

w=$tree/w/keld2
rm -rf "$w"
mkdir -p "$w"
cp -r "$program/keld2.exe" "$program/devices" tests/data/jobs tests/windows/host_intree.sh "$w/"
[ -n "$standins" ] && cp "$standins"/{testhost,tq8io,tq5io}.dll "$w/"
: >"$w/none.txt"
head -c 4096 "$w/keld2.exe" >"$w/firmware.bin"
{ head -c 4000 "$w/keld2.exe"; printf 'other'; } >"$w/other.bin"
printf '\002*\nQF17200*\nF1*\nL0 0110*\n\0030000' >"$w/map.jed"

hardwarejobs="serial-read svf-90-drives-and-reads arm-auto-with-verify-margins"
timeout 900 scripts/wine32 "$tree" "cd keld2 && HARDWAREJOBS='$hardwarejobs' bash host_intree.sh" || true

failed=0
# check WHAT COMMAND...
check() {
    local what=$1
    shift
    if "$@"; then echo "ok      $what"; else echo "FAILED  $what"; failed=1; fi
}

# ended NAME STATUS [TEXT]: how a command has ended, and what it has said.
ended() {
    grep -qx "$1 $2" "$w/statuses" && grep -qF -- "${3:-}" "$w/said/$1" && return
    grep "^$1 " "$w/statuses" || echo "$1 has not been run"
    head -3 "$w/said/$1"
    return 1
}
check "catalogue beside the program" ended list 0 "serial-4k "
check "program a device" ended program 0 "ended well"
check "verify it" ended verify 0 "ended well"
check "read it back into a file whose name is not ASCII" ended readback 0
check "what is read is what was programmed" cmp -n 4096 \
    "$w/firmware.bin" "$w/Gerät-ж.bin"
check "a difference fails" ended differs 1 "failed in verify"
check "a file is not overwritten" ended keeps 66 "Gerät-ж.bin: exists already"
check "a transfer that hangs times out" ended timeout 3
check "no command" ended nocommand 64
check "no such option" ended nooption 64 'there is no option "--bogus"'
check "no such device" ended nodevice 65 'there is no device "nothere"'
check "no such file" ended nofile 66 "missing.bin: cannot be opened: No such file or directory"
check "no such folder" ended nofolder 66 "cannot be written: No such file or directory"
check "a missing component is named" ended nocomponent 3 "Missing component: DevCore"
check "a missing component is named in a job" ended nocomponentjob 3 "Missing component: DevCore"
check "a fuse map as a picture" ended svg 0
check "no PNG pictures" ended png 64 "draws no PNG pictures"

# sametraces PREFIX JOB...: against those of the jobs' folders.
sametraces() {
    local prefix=$1 job same=0
    shift
    for job in "$@"; do
        cmp "$w/out/$prefix$job.trace" "tests/data/jobs/$job/trace.txt" && same=$((same + 1))
    done
    [ $same -eq $# ]
}
mapfile -t jobs < <(ls tests/data/jobs)
check "the traces of ${#jobs[@]} jobs" sametraces "" "${jobs[@]}"

if [ -n "$standins" ]; then
    # The programmer's own time is not the replay's: windows and progress may come elsewhere.
    for job in $hardwarejobs; do
        check "$job on components in place of the programmer's" diff \
            <(grep -vE '^(window|progress) ' "tests/data/jobs/$job/trace.txt") \
            <(grep -vE '^(window|progress) ' "$w/out/hardware-$job.trace")
        check "$job replayed from its record" cmp \
            "$w/out/hardware-$job.trace" "$w/out/recorded-$job.trace"
    done
fi

[ $failed -eq 0 ] && echo "keld2.exe: all passed" || echo "keld2.exe: FAILED"
exit $failed
