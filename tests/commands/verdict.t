Never a green mark on a wrong chip: what differs is named, and what looks well but is not is said.

  $ . "$TESTDIR/bench.sh"
  $ told() { on -q --progress none "$@" | sed '/^>> /d'; echo "$?"; }
  $ verdict() { json "$@" | jq -c '[.result, .status, .differing, .differences[0], .id, .notices]'; }

The first place of a failed verify, blank check and program, with what chip and file hold:

  $ chip serial-4k; bytes 4096 >a.bin; flip a.bin 10 100 200 300 >b.bin
  $ told program a.bin; told verify b.bin; told blank; told program b.bin
  0
  keld2: serial-4k: failed in verify at 99 %: at 000064 the chip holds 74, the file 64
  1
  keld2: serial-4k: failed in blank at 99 %: not blank at 000000, the chip holds 00
  1
  keld2: serial-4k: failed in program at 99 %: not blank at 0000C8; erase it first (the chip holds E8, the file F8)
  1
  $ verdict verify b.bin; verdict blank
  ["failed",1,1,{"address":"0000C8","chip":"E8","file":"F8"},null,[]]
  ["failed",1,1,{"address":"000000","chip":"00","blank":"FF"},null,[]]
  [1]
  $ chip parallel-page-64k; bytes 65536 >a.bin; flip a.bin 10 40000 >b.bin
  $ told program a.bin; told verify b.bin
  0
  keld2: parallel-page-64k: failed in verify at 74 %: at 009C40 the chip holds DC, the file CC
  1
  $ chip arm-a-256k-word; bytes 262144 >a.bin; flip a.bin 10 100 >b.bin
  $ told program a.bin; told verify b.bin; verdict compare b.bin
  0
  keld2: arm-a-256k-word: failed in verify at 0 %: at 000032 the chip holds 9974, the file 9964
  1
  ["different",1,1,{"address":"000032","chip":"9974","file":"9964"},null,[]]
  [1]
  $ chip logic-17200-b; fuses 17200 >map; jedec $(cat map) >a.jed
  $ perl -pe 's/^(.{500})(.)/$1.(1-$2)/e' map >other; jedec $(cat other) >b.jed
  $ told program a.jed; told verify b.jed; verdict verify b.jed
  0
  keld2: logic-17200-b: failed in verify at 98 %: at 000500 the chip holds 1, the file 0
  1
  ["failed",1,1,{"address":"000500","chip":"1","file":"0"},null,[]]
  [1]

A compare of a fixed logic device is no success when the chip differs:

  $ told compare b.jed; verdict compare b.jed
  keld2: logic-17200-b: 1 difference
  1
  ["different",1,1,{"address":"000500","chip":"1","file":"0"},null,[]]
  [1]
  $ told compare a.jed; verdict compare a.jed
  0
  ["well",0,0,null,null,[]]

A compare lists 256 differences and counts them all:

  $ chip parallel-byte-64k; bytes 65536 >a.bin; on -q program a.bin
  $ flip a.bin FF $(seq 1000 1999) >b.bin
  $ on -q compare b.bin >list; echo $?; grep -c '^>> ' list; tail -n 1 list
  1
  256
  keld2: parallel-byte-64k: 1000 differences, 256 of them listed

A chip of another device: both ids are told, and an ignored one is not forgotten:

  $ chip serial-4k; fault=wrongid; bytes 4096 >a.bin
  $ told --on-box abort read out.bin; verdict --on-box abort read out.bin
  Warning! Device Code Error!
  Maker: 5A   Device: BB01
  expected: 5A 44, read: 5A BB01
  keld2: answered with abort
  keld2: serial-4k: wrong chip: its id is 5A BB01, expected 5A 44
  1
  ["wrong id",1,0,null,{"read":"5A BB01","expected":"5A 44","ignored":false},[]]
  [1]
  $ told --on-box ignore blank; verdict --on-box ignore blank
  Warning! Device Code Error!
  Maker: 5A   Device: BB01
  expected: 5A 44, read: 5A BB01
  keld2: answered with ignore
  keld2: the chip's id is 5A BB01, not 5A 44: it was ignored
  0
  ["well",0,0,null,{"read":"5A BB01","expected":"5A 44","ignored":true},["the chip's id is 5A BB01, not 5A 44: it was ignored"]]
  $ chip logic-16160; fault=wrongid
  $ told blank; verdict blank
  keld2: logic-16160: wrong chip: its id is 6DE13A21, expected 6DE1C521
  1
  ["wrong id",1,0,null,{"read":"6DE13A21","expected":"6DE1C521","ignored":false},[]]
  [1]

An empty socket, or a chip that nothing can be read of, does not just end well:

  $ chip parallel-byte-64k; fault=nopower
  $ told read out.bin; told blank; verdict blank
  keld2: every byte reads FF: the chip is blank or protected from being read, or the socket is empty or without contact: this device has no id that would tell
  0
  keld2: every byte that was checked read FF: an empty socket would look the same, this device has no id that would tell
  0
  ["well",0,0,null,null,["every byte that was checked read FF: an empty socket would look the same, this device has no id that would tell"]]
  $ chip serial-4k; fault=nopower
  $ told blank
  Warning! Device Code Error!
  Maker: FF   Device: FFFF
  expected: 5A 44, read: FF FFFF
  keld2: answered with abort
  keld2: serial-4k: wrong chip: its id is FF FFFF, expected 5A 44; is there a chip in the socket, and does it make contact?
  1

Erase and what follows are two runs of a parallel device, in one command:

  $ for device in parallel-byte-64k parallel-page-64k; do
  >   chip $device; bytes 65536 >a.bin; flip a.bin FF 5 >b.bin
  >   told auto a.bin; told auto b.bin; told verify b.bin
  >   json auto a.bin | jq -c '[.steps, .done, .percent, ([.log[] | select(endswith(" OK"))])]'
  > done
  0
  0
  0
  [["erase","blank","program","verify"],4,100,[">>Erase OK",">>Blank Check OK",">>Program OK",">>Verify OK"]]
  0
  0
  0
  [["erase","blank","program","verify"],4,100,[">>Erase OK",">>Blank Check OK",">>Program OK",">>Verify OK"]]
