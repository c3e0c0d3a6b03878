# Runs inside the Wine tree, which has little but a shell: the rooms' tests, the clients, the jobs.
# usage: bash intree.sh ROOM...
failed=0
check() { # WHAT COMMAND...
    local what=$1
    shift
    if "$@" >out.txt 2>&1; then
        echo "ok      $what"
    else
        echo "FAILED  $what"
        cat out.txt
        failed=1
    fi
}

wineserver -p60
# what a run that was broken off may have left
for library in testhost tq8io tq5keld2; do wine regsvr32 /s /u $library.dll; done
for room in "$@"; do check "tests of $room" wine ./test_"$room".exe --gtest_brief=1; done
check "registration" wine regsvr32 /s tq5keld2.dll
check "boxes, editors and library" timeout 120 wine ./test_windows.exe --gtest_brief=1

check "registration of the stand-ins" wine regsvr32 /s tq8io.dll
check "registration of the script's host" wine regsvr32 /s testhost.dll
while read -r job; do
    check "early-bound client: $job" timeout 60 wine ./playjob.exe "jobs\\$job" </dev/null
done <playable

script() { # JOB [literal]
    WINEPATH="Z:\\w" KELD2_STANDIN_REPLAY="Z:\\w\\jobs\\$1\\replay.txt" KELD2_STANDIN_TRACE="Z:\\w\\$1.trace" \
        timeout 60 wine cscript //nologo client.vbs "jobs\\$1\\job.toml" "Z:\\w\\$1.json" $2 </dev/null
    # a script that has gone wrong ends with 0 all the same
    [ -s "$1.json" ]
}
while read -r job; do check "script client: $job" script "$job"; done <scripted
rm -f serial-read.json
check "script client: literals" script serial-read literal

for library in testhost tq8io tq5keld2; do
    check "removal of $library" wine regsvr32 /s /u $library.dll
done
wineserver -k
wineserver -w
exit $failed
