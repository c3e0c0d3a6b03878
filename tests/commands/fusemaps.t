Logic devices whose fuses the plug-in works itself: a map goes in and comes back.

  $ . "$TESTDIR/bench.sh"

Each byte of the user code reads the same from both ends, for the sake of one wiring.

  $ way() { # DEVICE FUSES
  >   chip $1; code=U10000001011001101100001100100100
  >   jedec $(fuses $2) $code >wanted.jed
  >   fuses $2 | { read -r map; for at in 0 171 355 9000 17199; do
  >     bit=${map:at:1}; map=${map:0:at}$((1 - bit))${map:at+1}; done
  >     jedec $map $code >changed.jed; }
  >   steps erase blank "program wanted.jed" "verify wanted.jed" "read --force read.jed"
  >   json compare changed.jed | jq -c '.status, (.differences | length)'
  >   steps "auto read.jed" "read --force again.jed" "verify wanted.jed"; cmp read.jed again.jed
  >   steps secure "verify wanted.jed" erase blank
  >   fault=stuck=171:0; on --progress none blank
  >   fault=wrongid; on --progress none --on-box abort blank
  > }
  $ way logic-17200-a 17200
  erase: 0
  blank: 0
  program wanted.jed: 0
  verify wanted.jed: 0
  read --force read.jed: 0
  1
  5
  auto read.jed: 0
  read --force again.jed: 0
  verify wanted.jed: 0
  secure: 0
  verify wanted.jed: 1
  erase: 0
  blank: 0
  keld2: simulated programmer, the chip is kept in chip, fault stuck=171:0
  >>Blank Check ...
  >>Device Address:000171   Device Data: 0   Buffer Data: 1
  >>Blank Check failed
  >> <TIME>Sec
  keld2: logic-17200-a: failed in blank at 98 %: not blank at 000171, the chip holds 0
  keld2: simulated programmer, the chip is kept in chip, fault wrongid
  >>Dev. Code:0180D0BC
  Warning! Device Code Error!
  Device: 0180D0BC
  expected: 0180D043, read: 0180D0BC
  keld2: answered with abort
  keld2: logic-17200-a: wrong chip: its id is 0180D0BC, expected 0180D043
  [1]
  $ way logic-17200-b 17200
  erase: 0
  blank: 0
  program wanted.jed: 0
  verify wanted.jed: 0
  read --force read.jed: 0
  1
  5
  auto read.jed: 0
  read --force again.jed: 0
  verify wanted.jed: 0
  secure: 0
  verify wanted.jed: 1
  erase: 0
  blank: 0
  keld2: simulated programmer, the chip is kept in chip, fault stuck=171:0
  >>Blank Check ...
  >>Device Address:000171   Device Data: 0   Buffer Data: 1
  >>Blank Check failed
  >> <TIME>Sec
  keld2: logic-17200-b: failed in blank at 98 %: not blank at 000171, the chip holds 0
  keld2: simulated programmer, the chip is kept in chip, fault wrongid
  >>Dev. Code:0180D0BC
  Warning! Device Code Error!
  Device: 0180D0BC
  expected: 0180D043, read: 0180D0BC
  keld2: answered with abort
  keld2: logic-17200-b: wrong chip: its id is 0180D0BC, expected 0180D043
  [1]
  $ way logic-35600-c 35600
  erase: 0
  blank: 0
  program wanted.jed: 0
  verify wanted.jed: 0
  read --force read.jed: 0
  1
  5
  auto read.jed: 0
  read --force again.jed: 0
  verify wanted.jed: 0
  secure: 0
  verify wanted.jed: 1
  erase: 0
  blank: 0
  keld2: simulated programmer, the chip is kept in chip, fault stuck=171:0
  >>Blank Check ...
  >>Device Address:000171   Device Data: 0   Buffer Data: 1
  >>Blank Check failed
  >> <TIME>Sec
  keld2: logic-35600-c: failed in blank at 98 %: not blank at 000171, the chip holds 0
  keld2: simulated programmer, the chip is kept in chip, fault wrongid
  >>Dev. Code:018090BC
  Warning! Device Code Error!
  Device: 018090BC
  expected: 01809043, read: 018090BC
  keld2: answered with abort
  keld2: logic-35600-c: wrong chip: its id is 018090BC, expected 01809043
  [1]

The security fuse is not written unasked:

  $ chip logic-17200-b; jedec $(fuses 17200) G1 >wish.jed
  $ on --progress none auto wish.jed
  keld2: wish.jed asks for the security fuse; program does not write it, secure does
  keld2: simulated programmer, the chip is kept in chip
  >>Erase ...
  >>Erase OK
  >>Blank Check ...
  >>Blank Check OK
  >>Program ...
  >>Verify(VCC: 5.25V)  ...
  >>Verify(VCC: 4.75V)  ...
  >>Program OK
  >>Verify ...
  >>Verify OK
  >> <TIME>Sec
  keld2: logic-17200-b: erase, blank, program, verify ended well
  $ steps "verify wish.jed" "auto wish.jed --steps erase,program,secure" "verify wish.jed"
  verify wish.jed: 0
  auto wish.jed --steps erase,program,secure: 0
  verify wish.jed: 1

A map of another device is refused:

  $ jedec $(fuses 35600) >other.jed
  $ on -q program other.jed
  keld2: other.jed: 35600 fuses, expected 17200 for logic-17200-b
  [65]

A list of all fuses does not keep anybody waiting:

  $ chip logic-17200-b; jedec $(printf '0%.0s' {1..17200}) >zeros.jed
  $ timeout 30 keld2 -q -d $device compare zeros.jed 2>said | wc -l
  17200
  [1]
