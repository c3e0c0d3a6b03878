Runs as waveforms, read again by a reader that knows nothing of the writer.

  $ . "$TESTDIR/bench.sh"

Changes of a waveform as "TIME SIGNAL VALUE"; whatever breaks the format is said:

  $ changes() {
  >   awk '$1 == "$var" { name[$4] = $5 }
  >     $1 == "$enddefinitions" { body = 1; next }
  >     !body || /^\$/ { next }
  >     /^#/ { if (substr($0, 2) + 0 < at + 0) print "back in time: " $0; at = substr($0, 2); next }
  >     { long = /^[brs]/; code = long ? $2 : substr($0, 2)
  >       if (NF != (long ? 2 : 1) || !(code in name)) print "no change: " $0
  >       print at, name[code], long ? substr($1, 2) : substr($0, 1, 1) }' $1 | sed 's/\\x20/ /g'
  > }
  $ of() { changes run.vcd | sed -n "s/^[0-9]* $1 //p"; }

The levels of a line at the rising edges of another, while a statement lasts:

  $ sampled() { # LINE CLOCK STATEMENT
  >   changes run.vcd | awk -v line=$1 -v clock=$2 -v during="$3" '
  >     $2 == "statement" { on = index($0, during) }
  >     $2 == clock && $3 == 1 && level[clock] == 0 && on { printf "%s ", level[line] }
  >     { level[$2] = $3 } END { print "" }'
  > }

A logic device shows its device code on its lines, bit 0 first; the walk there has three clocks:

  $ chip logic-8160; on -q blank --vcd run.vcd
  $ of statement | grep 'shift DR 32'
  shift DR 32 bits, TDI stays 0, TDO 0x2846E9E1
  $ sampled TDO TCK 'shift DR 32' | cut -d' ' -f4-35
  1 0 0 0 0 1 1 1 1 0 0 1 0 1 1 1 0 1 1 0 0 0 1 0 0 0 0 1 0 1 0 0
  $ of operation; of row | sed -n 1p; of VCC | tail -1
  Information
  Blank Check ...
  1
  0

A statement begins where its first line moves:

  $ chip serial-2k; bytes 64 >a.bin; on -q program a.bin --vcd run.vcd
  $ sampled data strobe 'write page at 0x0020' | cut -d' ' -f1-5
  10101010 01010000 00000000 00100000 10100000

Parallel lines, and the byte that is read from them:

  $ chip parallel-byte-64k; on -q blank --vcd run.vcd
  keld2: every byte that was checked read FF: an empty socket would look the same, this device has no id that would tell
  $ of statement | cut -c1-60; of address | sort -u | sed -n '2p;$p'; of address | wc -l; of read; of VPP0
  bus: read command at 0x1C0000
  bus: read at 0x1C0000 to 0x1C3FFF, 16384 bytes: ffffffffffff
  bus: read command at 0x1C0000
  bus: read at 0x1C4000 to 0x1C7FFF, 16384 bytes: ffffffffffff
  bus: read command at 0x1C0000
  bus: read at 0x1C8000 to 0x1CBFFF, 16384 bytes: ffffffffffff
  bus: read command at 0x1C0000
  bus: read at 0x1CC000 to 0x1CFFFF, 16384 bytes: ffffffffffff
  0000111000000000000000000
  1111111111111111111111111
  65542
  11111111
  0
  12
  0

A replay knows no answers of the lines, and the trace stays as it is:

  $ job="$TESTDIR/../data/jobs/svf-90-drives-and-reads"
  $ keld2 job "$job/job.toml" --replay "$job/replay.txt" --trace trace --vcd run.vcd
  $ cmp trace "$job/trace.txt"
  $ of TDO; of TCK | wc -l; changes run.vcd | tail -1
  x
  1823
  2005631750 VCC_pins 0
  $ keld2 job "$job/job.toml" --replay "$job/replay.txt" --vcd none/run.vcd
  keld2: none/run.vcd: cannot be written: No such file or directory
  [66]
