# Runs keld2.exe inside the Wine tree, in the folder that host_test.sh has filled. Writes each
# command's status behind its name into statuses, and what it prints into said/NAME.
export LC_ALL=C.UTF-8  # by which file names come to Windows
mkdir -p said out
keld2() { # NAME ARGUMENT...
    local name=$1
    shift
    wine ./keld2.exe "$@" >"said/$name" 2>&1
    echo "$name $?" >>statuses
}

wineserver -p60
keld2 list devices list

keld2 program -d serial-4k -p sim:image=chip.img auto firmware.bin
keld2 verify -d serial-4k -p sim:image=chip.img verify firmware.bin
keld2 readback -d serial-4k -p sim:image=chip.img read 'Gerät-ж.bin'
keld2 differs -d serial-4k -p sim:image=chip.img verify other.bin
keld2 keeps -d serial-4k -p sim:image=chip.img read 'Gerät-ж.bin'
keld2 timeout -q -d serial-4k -p sim:fault=bulkhang blank

keld2 nocommand
keld2 nooption --bogus
keld2 nodevice -d nothere blank
keld2 nofile -d serial-4k program missing.bin
keld2 nofolder -d serial-4k read missing/out.bin
keld2 nocomponent -d serial-4k -p hardware blank
keld2 nocomponentjob -p hardware job jobs/serial-read/job.toml
keld2 svg -d logic-17200-a map map.jed map.svg
keld2 png -d logic-17200-a map map.jed map.png

for job in jobs/*/; do
    job=$(basename "$job")
    files=jobs/$job
    options=(--replay none.txt)
    [ -e "$files/replay.txt" ] && options=(--replay "$files/replay.txt")
    [ -e "$files/form.txt" ] && options+=(--form "$files/form.txt")
    [ -e "$files/without.txt" ] && options+=(--trace-without "$(paste -sd, "$files/without.txt")")
    keld2 "job-$job" job "$files/job.toml" "${options[@]}" --trace "out/$job.trace"
done

# With components that stand for the programmer's own.
if [ -e testhost.dll ]; then
    wine regsvr32 /s tq8io.dll
    wine regsvr32 /s testhost.dll
    for job in $HARDWAREJOBS; do
        export KELD2_STANDIN_REPLAY="$PWD/jobs/$job/replay.txt"
        export KELD2_STANDIN_TRACE="$PWD/standin.trace"
        keld2 "hardware-$job" -p hardware job "jobs/$job/job.toml" \
            --trace "out/hardware-$job.trace" --record "out/hardware-$job.record"
        keld2 "recorded-$job" job "jobs/$job/job.toml" \
            --replay "out/hardware-$job.record" --trace "out/recorded-$job.trace"
    done
    wine regsvr32 /s /u testhost.dll
    wine regsvr32 /s /u tq8io.dll
fi
wineserver -k
