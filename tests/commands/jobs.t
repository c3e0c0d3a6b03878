Job and replay files: what they are refused for, and what a session leaves.

  $ job() { printf "$1" >j.toml; shift; keld2 job j.toml --replay r "$@"; }
  $ : >r; yes x | tr -d '\n' | head -c 2300 >long.bin; echo x >strange.xyz

Variables:

  $ job '[shared]\nbvc = 500\n'
  keld2: j.toml:2: [shared] bvc: is no shared variable, expected the name of one
  [65]
  $ job '[shared]\nfigmode = 256\n'
  keld2: j.toml:2: [shared] figmode: 256 is out of range, expected an integer from 0 to 255
  [65]
  $ job '[shared]\nfigmode = [1, -1]\n'
  keld2: j.toml:2: [shared] figmode[1]: -1 is out of range, expected an integer from 0 to 255
  [65]
  $ job '[shared]\n\nbvcc = 32768'
  keld2: j.toml:3: [shared] bvcc: 32768 is out of range, expected an integer from -32768 to 32767
  [65]
  $ job '[shared]\npwte = 2147483648'
  keld2: j.toml:2: [shared] pwte: 2147483648 is out of range, expected an integer from -2147483648 to 2147483647
  [65]
  $ job '[shared]\npwte = 1.0'
  keld2: j.toml:2: [shared] pwte: is a number with a fraction, expected an integer from -2147483648 to 2147483647
  [65]
  $ job '[shared]\nwltbigendbuf = [0, "1"]'
  keld2: j.toml:2: [shared] wltbigendbuf[1]: is a text, expected a number
  [65]
  $ job '[shared]\nwltbigendbuf = true'
  keld2: j.toml:2: [shared] wltbigendbuf: is true or false, expected a number
  [65]
  $ job '[shared]\nprgnote = ["", 5]'
  keld2: j.toml:2: [shared] prgnote[1]: is an integer, expected a text
  [65]
  $ job '[shared]\nchipidtestmode = 2'
  keld2: j.toml:2: [shared] chipidtestmode: 2 is out of range, expected true or false
  [65]
  $ job '[shared]\nMainRtstr = ["", "", "", ""]'
  keld2: j.toml:2: [shared] MainRtstr: 4 elements, expected at most 3
  [65]
  $ job '[shared]\nbvcc = [[1]]'
  keld2: j.toml:2: [shared] bvcc[0]: is an array, expected an integer from -32768 to 32767
  [65]

Buffer and run:

  $ job '[shard]\n'
  keld2: j.toml:1: shard: is no part of a job, expected [shared], [buffer] or [run]
  [65]
  $ job 'run = 5'
  keld2: j.toml:1: run: is an integer, expected the table [run]
  [65]
  $ job '[shared]\nbvcc =\n'
  keld2: j.toml:2: is no TOML text: Error while parsing key-value pair: expected value, saw '\n'
  [65]
  $ job '[buffer]\nfil = 1'
  keld2: j.toml:2: [buffer] fil: is no key of a job, expected one of file, fill, offset, patch
  [65]
  $ job '[buffer]\nfill = 256'
  keld2: j.toml:2: [buffer] fill: 256 is out of range, expected an integer from 0 to 255
  [65]
  $ job '[buffer]\npatch = [[1]]'
  keld2: j.toml:2: [buffer] patch[0]: 1 elements, expected [offset, "bytes in hexadecimal"]
  [65]
  $ job '[buffer]\npatch = [[0, "00"], [1, "0f0"]]'
  keld2: j.toml:2: [buffer] patch[1]: is no hexadecimal text, expected two digits for each byte
  [65]
  $ job '[buffer]\npatch = [[2199, "0f03"]]'
  keld2: j.toml:2: [buffer] patch[0]: bytes 2199 to 2200 lie outside the buffer, expected places from 0 to 2199
  [65]
  $ job '[buffer]\nfile = "long.bin"'
  keld2: j.toml:2: [buffer] file: bytes 0 to 2299 lie outside the buffer, expected places from 0 to 2199
  [65]
  $ job '[buffer]\nfile = "no.bin"'
  keld2: no.bin: cannot be opened: No such file or directory
  [66]
  $ job '[buffer]\nfile = "strange.xyz"'
  keld2: strange.xyz: the ending ".xyz" names no format, expected one of .bin, .hex, .ihx, .s19, .srec, .mot, .jed
  [65]
  $ job '[run]\nfolder = 5'
  keld2: j.toml:2: [run] folder: is an integer, expected the name of a folder
  [65]
  $ job '[run]\nnum = 32768'
  keld2: j.toml:2: [run] num: 32768 is out of range, expected an integer from -32768 to 32767
  [65]
  $ job '[run]\ncalls = ["runkeld2prg"]'
  keld2: j.toml:2: [run] calls[0]: "runkeld2prg" is no call, expected runKeld2Prg, editfigkeld2, usercode, bufcomkeld2, freesharebufferkeld2, keld2warn or sinitkeld2
  [65]
  $ job '[run]\ncalls = ["sinitkeld2", "keld2warn"]'
  keld2: j.toml:2: [run] calls[1]: "keld2warn" is no call, expected keld2warn NO, from 0 to 255
  [65]
  $ job '[run]\ncalls = ["keld2warn 256"]'
  keld2: j.toml:2: [run] calls[0]: "keld2warn 256" is no call, expected keld2warn NO, from 0 to 255
  [65]
  $ job '[run]\ncalls = ["usercode 1"]'
  keld2: j.toml:2: [run] calls[0]: "usercode 1" is no call, expected usercode
  [65]

Replays:

  $ replay() { printf "$1\n" >r; keld2 job j.toml --replay r; }
  $ : >j.toml
  $ replay 'readycheck 0\n\n# well\nregread x'
  keld2: r:4: "x" cannot be used, expected a number from 0 to 255
  [65]
  $ replay 'regread 256'
  keld2: r:1: "256" cannot be used, expected a number from 0 to 255
  [65]
  $ replay 'regread'
  keld2: r:1: "" cannot be used, expected a number from 0 to 255
  [65]
  $ replay 'regread 1 2'
  keld2: r:1: "2" stands behind the answer, expected nothing
  [65]
  $ replay 'regread *1'
  keld2: r:1: "*1" cannot be used, expected a number from 0 to 255
  [65]
  $ replay 'stop -1'
  keld2: r:1: "-1" cannot be used, expected a number from 0 to 9223372036854775807
  [65]
  $ replay 'transferwait yes'
  keld2: r:1: "yes" is no answer of transferwait, expected ok HEX or fail
  [65]
  $ replay 'transferwait ok 6'
  keld2: r:1: "6" is no hexadecimal text, expected two digits for each byte
  [65]
  $ replay 'transferwait ok 000102030405060708090a0b0c0d0e0f1011121314'
  keld2: r:1: 21 bytes, expected at most 20
  [65]
  $ replay 'usbbulkread * fill 300'
  keld2: r:1: "300" cannot be used, expected a number from 0 to 255
  [65]
  $ replay 'usbbulkread file'
  keld2: r:1: the file's name is missing, expected file PATH
  [65]
  $ replay 'usbbulkread hangs'
  keld2: r:1: "hangs" is no answer of usbbulkread, expected ok HEX, fill N, file PATH, fail or hang
  [65]
  $ replay 'messagebox yes'
  keld2: r:1: "yes" is no answer of a box, expected ok, cancel, abort, retry or ignore
  [65]
  $ replay 'regwrite 1'
  keld2: r:1: "regwrite" is no operation with an answer, expected readycheck, modeselect, modeselect2, modeselect3, armready, regread, transferwait, usbcomwrite, usbbulkwrite, usbbulkread, messagebox or stop
  [65]

The exit status is the result cell:

  $ : >r
  $ for result in 0 1 2 3 4 5; do
  >   job "[shared]\nprgresult = $result\n[run]\ncalls = []\n"; echo -n "$? "
  > done
  0 1 2 3 4 1  (no-eol)

A run that waits for ever is abandoned; trace, dump and record are written all the same:

  $ waits="$TESTDIR/../data/jobs/arm-device-code-and-stale-frame-bytes/job.toml"
  $ echo 'usbbulkread hang' >hang
  $ keld2 job "$waits" --replay hang --trace trace --dump dump --record record
  keld2: */data/jobs/arm-device-code-and-stale-frame-bytes/job.toml: the run is abandoned: the wait behind "usbbulkread local 48" never ends, expected an answer that ends it (glob)
  [65]
  $ tail -1 trace; cat record; jq .prgresult[0] dump
  usbbulkread local 48
  usbbulkread hang
  3

A file that cannot be written is found before the run, when none has been touched:

  $ job '[run]\ncalls = ["runKeld2Prg"]' --trace no/file
  keld2: no/file: cannot be written: No such file or directory
  [66]
  $ job '[run]\ncalls = ["runKeld2Prg"]' --record no/file --trace t; wc -c <t
  keld2: no/file: cannot be written: No such file or directory
  0
  $ job '[run]\ncalls = ["runKeld2Prg"]' --dump no/file --trace t; wc -c <t
  keld2: no/file: cannot be written: No such file or directory
  0

Nor does anything that is written take the place of another file of the command:

  $ job '' --trace same --dump ./same
  keld2: --trace same would overwrite --dump, expected files of their own
  [64]
  $ job '' --trace j.toml
  keld2: --trace j.toml would overwrite the job, expected files of their own
  [64]
  $ job '' --record r
  keld2: --record r would overwrite --replay, expected files of their own
  [64]
  $ job '' --trace /dev/null --dump /dev/null

The record of a simulated chip gives its trace again:

  $ cat >chip.toml <<END
  > [shared]
  > prgmode = 21
  > buflength = 4144
  > tlength = 4144
  > bvcch = 32
  > pagelength = 32
  > wltbigendbuf = [0, 95, 0]
  > bvcc = 500
  > bvpp = 1200
  > bvccpin = 40
  > bgndpin = 20
  > bvpppin = 31
  > pwte = 5000
  > chipidtestmode = true
  > compid = 90
  > typeid = 69           # the chip's is 68
  > wautonum = 4
  > autoprg = [8, 4, 6, 2]
  > [buffer]
  > patch = [[0, "00112233445566778899aabbccddeeff"]]
  > END
  $ keld2 -q -d serial-4k job chip.toml --record record --trace trace --dump dump
  Warning! Device Code Error!
  5A   4401
  keld2: answered with abort
  $ keld2 -q -d serial-4k --on-box ignore job chip.toml --record record --trace trace --dump dump
  Warning! Device Code Error!
  5A   4401
  keld2: answered with ignore
  $ grep messagebox trace
  messagebox abortretryignore exclamation "Warning! Device Code Error!" "5A   4401" -> ignore
  $ keld2 job chip.toml --replay record --trace again && cmp trace again

The profile of a run: its pulses, its waits with their milliseconds, its transfers:

  $ profile() { # JOB
  >   keld2 job "$TESTDIR/../data/jobs/$1/job.toml" --replay "$TESTDIR/../data/jobs/$1/replay.txt" \
  >     --trace trace --profile "${@:2}"
  > }
  $ counted() {
  >   profile $1 --json | jq -c '.profile | [.pulses.calls, .waits.calls, .waits.programmer_ms,
  >     .transfers.calls, .host.real_ms > 0, .host.real_ms < .total.real_ms]'
  >   awk '/^q?wait|^q?(reg|bus)/ { n = $1 ~ /wait/ ? "waits" : "pulses"
  >       if ($1 ~ /^q/) queued[n]++; else now[n]++ }
  >     $1 == "qrun" { for (n in queued) now[n] += queued[n]; delete queued }
  >     $1 == "powerdown" { delete queued }
  >     /^usb(com|bulk)|^transferwait/ { now["transfers"]++ }
  >     END { print now["pulses"] + 0, now["waits"] + 0, now["transfers"] + 0 }' trace
  > }
  $ counted svf-90-drives-and-reads
  [439,20,2004.31,7,true,true]
  439 20 7
  $ counted parallel-blank-check-stopped-while-it-is-queued
  [25,22,15.97,1,true,true]
  25 22 1
  $ counted serial-configuration
  [76,47,706.44,0,true,true]
  76 47 0
  $ counted arm-auto-with-verify-margins
  [0,0,0,12,true,true]
  0 0 12
  $ profile serial-read 2>&1 | sed -E 's/ +[0-9.]+$/  REAL/'
                        calls  programmer ms        real ms
  host  REAL
  message loop              2          0.000  REAL
  transfers                 4          0.785  REAL
  waits                   153        303.260  REAL
  pulses                  251          0.063  REAL
  total                              304.107  REAL
