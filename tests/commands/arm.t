ARM flash devices, from one process to the next.

  $ . "$TESTDIR/bench.sh"

The whole way of a chip:

  $ way() { # DEVICE BYTES
  >   chip $1; bytes $2 >data.bin
  >   steps blank "program data.bin" "verify data.bin" "compare data.bin" blank
  >   steps "read --force out.bin" erase blank "verify data.bin" "auto data.bin" "verify data.bin"
  >   cmp -n $2 data.bin out.bin
  > }
  $ way arm-a-64k 65536
  blank: 0
  program data.bin: 0
  verify data.bin: 0
  compare data.bin: 0
  blank: 1
  read --force out.bin: 0
  erase: 0
  blank: 0
  verify data.bin: 1
  auto data.bin: 0
  verify data.bin: 0
  $ way arm-a-256k-word 262144
  blank: 0
  program data.bin: 0
  verify data.bin: 0
  compare data.bin: 0
  blank: 1
  read --force out.bin: 0
  erase: 0
  blank: 0
  verify data.bin: 1
  auto data.bin: 0
  verify data.bin: 0
  $ way arm-b-32k-serial 32768
  blank: 0
  program data.bin: 0
  verify data.bin: 0
  compare data.bin: 0
  blank: 1
  read --force out.bin: 0
  erase: 0
  blank: 0
  verify data.bin: 1
  auto data.bin: 0
  verify data.bin: 0
  $ way arm-b-128k-file 131072
  blank: 0
  program data.bin: 0
  verify data.bin: 0
  compare data.bin: 0
  blank: 1
  read --force out.bin: 0
  erase: 0
  blank: 0
  verify data.bin: 1
  auto data.bin: 0
  verify data.bin: 0

A mebibyte goes through several blocks and bulks:

  $ chip arm-b-1m; bytes 1048576 >mega.bin
  $ steps "program mega.bin" "read --force out.bin"; cmp -n 1048576 mega.bin out.bin
  program mega.bin: 0
  read --force out.bin: 0

Configuration bytes go in and come back:

  $ chip arm-a-64k; printf '\245\1\2\3\4\5\6\7\10\11\74' >config.bin
  $ srec_cat config.bin -binary -offset 65536 -o config.hex -intel
  $ steps "config config.hex" "read --force out.bin"
  config config.hex: 0
  read --force out.bin: 0
  $ tail -c +65537 out.bin | od -An -tx1
   a5 01 02 03 04 05 06 07 08 09 3c
  $ steps erase "read --force out.bin"
  erase: 0
  read --force out.bin: 0
  $ tail -c +65537 out.bin | od -An -tx1
   ff ff ff ff ff ff ff ff ff ff ff

A secured chip shows nothing until it is erased:

  $ chip arm-a-256k-word; bytes 262144 >data.bin; rm out.bin
  $ steps "program data.bin" secure "read out.bin"; ls out.bin
  program data.bin: 0
  secure: 0
  read out.bin: 1
  ls: cannot access 'out.bin': No such file or directory
  [2]
  $ on --progress none verify data.bin
  keld2: simulated programmer, the chip is kept in chip
  >>Maker: 1F   Device: AC0D01
  >>Verify ...
  >>Device Address:00000000H  Device Data:FFFFH  Buffer Address:00000000H  Buffer Data:2500H
  >>Verify failed
  >> <TIME>Sec
  keld2: arm-a-256k-word: failed in verify at 0 %: at 000000 the chip holds FFFF, the file 2500
  [1]
  $ steps erase blank
  erase: 0
  blank: 0

Faults end in their results:

  $ chip arm-a-64k; bytes 65536 >data.bin
  $ for fault in phasefail=program:0x1234 phasefail=erase:70 stuck=6:0:1 weak=99 transferfail=10+ \
  >     sendfail=2 bulkfail=1 modefail wrongid; do
  >   echo "-- $fault"; on --progress none auto data.bin | grep -v '^keld2: simulated'; echo "$?"
  > done
  -- phasefail=program:0x1234
  >>Maker: 1F   Device: AB0C
  >>Auto Program ...
  >>Erase ...
  >>Blank Check ...
  >>Device Address:00001234H  Device Data:FFH  Buffer Data:96H
  >>Auto Program failed
  >> <TIME>Sec
  keld2: arm-a-64k: failed in blank at 99 %: at 001234 the chip holds FF, the file 96; done: erase
  1
  -- phasefail=erase:70
  >>Maker: 1F   Device: AB0C
  >>Auto Program ...
  >>Auto Program failed
  >> <TIME>Sec
  keld2: arm-a-64k: failed in erase at 0 %
  1
  -- stuck=6:0:1
  >>Maker: 1F   Device: AB0C
  >>Auto Program ...
  >>Erase ...
  >>Blank Check ...
  >>Program ...
  >>Device Address:00000006H  Device Data:DFH  Buffer Data:DEH
  >>Auto Program failed
  >> <TIME>Sec
  keld2: arm-a-64k: failed in program at 24 %: at 000006 the chip holds DF, the file DE; done: erase, blank
  1
  -- weak=99
  >>Maker: 1F   Device: AB0C
  >>Auto Program ...
  >>Erase ...
  >>Blank Check ...
  >>Program ...
  >>Verify(VCC: 3.3V)  ...
  >>Auto Program OK
  >> <TIME>Sec
  keld2: arm-a-64k: erase, blank, program, verify ended well
  0
  -- transferfail=10+
  >>Maker: 1F   Device: AB0C
  >>Auto Program ...
  >>Erase ...
  >>Blank Check ...
  >>Program ...
  >>Transfer timed out
  >> <TIME>Sec
  keld2: arm-a-64k: a transfer timed out in program at 3 %, done: erase, blank
  3
  -- sendfail=2
  >>Maker: 1F   Device: AB0C
  >>Auto Program ...
  >>Transfer timed out
  >> <TIME>Sec
  keld2: arm-a-64k: a transfer timed out in erase at 0 %
  3
  -- bulkfail=1
  >>Transfer timed out
  >> <TIME>Sec
  keld2: arm-a-64k: a transfer timed out in erase at 0 %
  3
  -- modefail
  >>Transfer timed out
  >> <TIME>Sec
  keld2: arm-a-64k: a transfer timed out in erase at 0 %
  3
  -- wrongid
  Warning! Device Code Error!
  Maker: 1F   Device: 540C
  expected: 1F AB, read: 1F 540C
  keld2: answered with abort
  keld2: arm-a-64k: wrong chip: its id is 1F 540C, expected 1F AB
  2

Only a device that verifies at both supplies notices a weak cell:

  $ chip arm-a-256k-word; bytes 262144 >data.bin; fault=weak=99
  $ on --progress none auto data.bin
  keld2: simulated programmer, the chip is kept in chip, fault weak=99
  >>Maker: 1F   Device: AC0D01
  >>Auto Program ...
  >>Erase ...
  >>Blank Check ...
  >>Program ...
  >>Device Address:00000031H  Device Data:FF2AH  Buffer Data:4F2AH
  >>Auto Program failed
  >> <TIME>Sec
  keld2: arm-a-256k-word: failed in program at 16 %: at 000031 the chip holds FF2A, the file 4F2A; done: erase, blank
  [1]

The algorithm image is made where a run finds it, and never over another:

  $ keld2 -d arm-a-64k algo make --folder run
  run/algo/flasha/arm-a-64k.bin
  $ grep operation run/algo/flasha/arm-a-64k.bin
  operation auto erase blank program verify
  operation read read
  operation verify verify
  operation blank blank
  operation compare read
  operation program program verify
  operation erase erase
  operation config config
  $ keld2 -d arm-a-64k algo make -o run/algo/flasha/arm-a-64k.bin
  keld2: run/algo/flasha/arm-a-64k.bin: exists already; --force overwrites it
  [66]
  $ keld2 -d serial-2k algo make
  keld2: */devices/serial-2k.toml: serial-2k works without an algorithm image, expected an ARM device (glob)
  [65]
