A microcontroller with a serial port, from one process to the next.

  $ . "$TESTDIR/bench.sh"

The whole way of a chip:

  $ way() { # DEVICE BYTES
  >   chip $1; { bytes $2; printf '\372\74'; } >all.bin
  >   steps blank "program all.bin" "verify all.bin" "config all.bin" blank "read $1.srec"
  >   srec_cat $1.srec -o - -binary | cmp all.bin
  >   steps erase blank "verify all.bin" "auto all.bin" "verify $1.srec"
  > }
  $ way serial-2k 2080
  blank: 0
  program all.bin: 0
  verify all.bin: 0
  config all.bin: 0
  blank: 1
  read serial-2k.srec: 0
  erase: 0
  blank: 0
  verify all.bin: 1
  auto all.bin: 0
  verify serial-2k.srec: 0
  $ way serial-4k 4128
  blank: 0
  program all.bin: 0
  verify all.bin: 0
  config all.bin: 0
  blank: 1
  read serial-4k.srec: 0
  erase: 0
  blank: 0
  verify all.bin: 1
  auto all.bin: 0
  verify serial-4k.srec: 0

Program adds to what is there, and no bit goes back to 1 without an erase:

  $ chip serial-2k
  $ printf '\360' >a.bin; printf '\17' >b.bin
  $ steps "program a.bin" "verify a.bin"
  program a.bin: 0
  verify a.bin: 0
  $ on --progress none program b.bin
  keld2: simulated programmer, the chip is kept in chip
  >>Maker: 5A   Device: 2401
  >>Program ...
  >>Verify(VCC: 5.25V)  ...
  >>Program failed
  >> <TIME>Sec
  keld2: serial-2k: failed in program at 98 %: not blank at 000000; erase it first (the chip holds 00, the file 0F)
  [1]

Compare lists every difference, on standard output:

  $ chip serial-2k; bytes 2080 >a.bin; flip a.bin 81 0 31 255 1024 2079 >b.bin
  $ on -q program a.bin
  $ on --progress none compare b.bin
  keld2: simulated programmer, the chip is kept in chip
  >>Maker: 5A   Device: 2401
  >>Compare ...
  Differences between chip and buffer:
     Address     Chip       Buffer
  >>Compare failed
  >> <TIME>Sec
  >> 000000      00         81
  >> 00001F      7B         FA
  >> 0000FF      DB         5A
  >> 000400      04         85
  >> 00081F      83         02
  keld2: serial-2k: 5 differences
  [1]
  $ keld2 -q -d serial-2k -p sim:image=chip compare b.bin 2>said | sed -n 1p
  >> 000000      00         81
  [1]
  $ json compare b.bin | jq -c '.status, .differences[0,1], (.differences | length)'
  1
  {"address":"000000","chip":"00","file":"81"}
  {"address":"00001F","chip":"7B","file":"FA"}
  5
  [1]
  $ on -q compare a.bin

Auto does its steps in their order until one fails; without a terminal a question is answered with
Cancel:

  $ chip serial-2k; printf '\1\2\3' >a.bin
  $ on --progress none auto a.bin --steps program,verify
  keld2: simulated programmer, the chip is kept in chip
  >>Maker: 5A   Device: 2401
  >>Program ...
  >>Verify(VCC: 5.25V)  ...
  >>Verify(VCC: 4.75V)  ...
  >>Program OK
  >>Verify ...
  >>Verify OK
  >> <TIME>Sec
  keld2: serial-2k: program, verify ended well
  $ on --progress none auto a.bin --steps erase,program,blank,verify
  keld2: simulated programmer, the chip is kept in chip
  >>Maker: 5A   Device: 2401
  >>Erase ...
  >>Erase OK
  >>Program ...
  >>Verify(VCC: 5.25V)  ...
  >>Verify(VCC: 4.75V)  ...
  >>Program OK
  >>Blank Check ...
  >>Blank Check failed
  Blank check
  The chip is not blank. Go on?
  keld2: answered with cancel
  >> <TIME>Sec
  keld2: serial-2k: failed in blank at 98 %: not blank at 000000, the chip holds 01; done: erase, program
  [1]
  $ json auto a.bin --steps erase,program,blank,verify | jq -c '[.status, .done]'
  [1,2]
  [1]
  $ on -q auto a.bin --steps blank,verify --on-box ok
  Blank check
  The chip is not blank. Go on?
  keld2: answered with ok

Steps that use no file need none:

  $ steps "auto --steps erase,blank"
  auto --steps erase,blank: 0

Read never covers a file unasked, and a failed read leaves none:

  $ chip serial-2k; echo mine >out.bin
  $ on read out.bin
  keld2: out.bin: exists already; --force overwrites it
  [66]
  $ cat out.bin; ls chip
  mine
  ls: cannot access 'chip': No such file or directory
  [2]
  $ mkdir fresh; on -q read fresh/new.bin; on -q read out.bin --force; wc -c <out.bin; ls fresh
  keld2: every byte reads FF: the chip is blank or protected from being read
  keld2: every byte reads FF: the chip is blank or protected from being read
  2082
  new.bin
  $ fault=bulkfail
  $ on -q read new.bin; ls new.bin
  keld2: serial-2k: a transfer timed out in read at 98 %
  ls: cannot access 'new.bin': No such file or directory
  [2]

Faults end in their status:

  $ chip serial-2k; printf '\377\377\0' >a.bin
  $ for fault in refuse modefail wrongid nopower; do on --progress none erase; done
  keld2: simulated programmer, the chip is kept in chip, fault refuse
  keld2: serial-2k: the programmer is not ready; nothing was done
  keld2: simulated programmer, the chip is kept in chip, fault modefail
  keld2: serial-2k: the programmer could not be set up; nothing was done
  keld2: simulated programmer, the chip is kept in chip, fault wrongid
  Warning! Device Code Error!
  Maker: 5A   Device: DB01
  expected: 5A 24, read: 5A DB01
  keld2: answered with abort
  keld2: serial-2k: wrong chip: its id is 5A DB01, expected 5A 24
  keld2: simulated programmer, the chip is kept in chip, fault nopower
  Warning! Device Code Error!
  Maker: FF   Device: FFFF
  expected: 5A 24, read: FF FFFF
  keld2: answered with abort
  keld2: serial-2k: wrong chip: its id is FF FFFF, expected 5A 24; is there a chip in the socket, and does it make contact?
  [1]
  $ fault=bulkfail on --progress none blank
  keld2: simulated programmer, the chip is kept in chip, fault bulkfail
  >>Maker: 5A   Device: 2401
  >>Blank Check ...
  >>Transfer timed out
  >> <TIME>Sec
  keld2: serial-2k: a transfer timed out in blank at 98 %
  [3]
  $ fault=stuck=1:3 on --progress none program a.bin
  keld2: simulated programmer, the chip is kept in chip, fault stuck=1:3
  >>Maker: 5A   Device: 2401
  >>Program ...
  >>Verify(VCC: 5.25V)  ...
  >>Program failed
  >> <TIME>Sec
  keld2: serial-2k: failed in program at 98 %: not blank at 000001; erase it first (the chip holds F7, the file FF)
  [1]

Boxes take the answer that is given; a retry goes on only for so long:

  $ fault=wrongid
  $ on --progress none erase --on-box ignore
  keld2: simulated programmer, the chip is kept in chip, fault wrongid
  Warning! Device Code Error!
  Maker: 5A   Device: DB01
  expected: 5A 24, read: 5A DB01
  keld2: answered with ignore
  >>Erase ...
  >>Erase OK
  >> <TIME>Sec
  keld2: the chip's id is 5A DB01, not 5A 24: it was ignored
  keld2: serial-2k: erase ended well
  $ on -q erase --on-box retry | uniq -c
        1 Warning! Device Code Error!
        1 Maker: 5A   Device: DB01
        1 expected: 5A 24, read: 5A DB01
        1 keld2: answered with retry
        1 Warning! Device Code Error!
        1 Maker: 5A   Device: DB01
        1 expected: 5A 24, read: 5A DB01
        1 keld2: answered with retry
        1 Warning! Device Code Error!
        1 Maker: 5A   Device: DB01
        1 expected: 5A 24, read: 5A DB01
        1 keld2: answered with retry
        1 Warning! Device Code Error!
        1 Maker: 5A   Device: DB01
        1 expected: 5A 24, read: 5A DB01
        1 keld2: answered with retry
        1 Warning! Device Code Error!
        1 Maker: 5A   Device: DB01
        1 expected: 5A 24, read: 5A DB01
        1 keld2: answered with retry
        1 Warning! Device Code Error!
        1 Maker: 5A   Device: DB01
        1 expected: 5A 24, read: 5A DB01
        1 keld2: answered with retry
        1 Warning! Device Code Error!
        1 Maker: 5A   Device: DB01
        1 expected: 5A 24, read: 5A DB01
        1 keld2: answered with retry
        1 Warning! Device Code Error!
        1 Maker: 5A   Device: DB01
        1 expected: 5A 24, read: 5A DB01
        1 keld2: answered with retry
        1 Warning! Device Code Error!
        1 Maker: 5A   Device: DB01
        1 expected: 5A 24, read: 5A DB01
        1 keld2: answered with retry
        1 Warning! Device Code Error!
        1 Maker: 5A   Device: DB01
        1 expected: 5A 24, read: 5A DB01
        1 keld2: answered with retry
        1 Warning! Device Code Error!
        1 Maker: 5A   Device: DB01
        1 expected: 5A 24, read: 5A DB01
        1 keld2: answered with abort
        1 keld2: serial-2k: wrong chip: its id is 5A DB01, expected 5A 24
  [1]

A chip of another device is refused, and something else is not overwritten:

  $ chip serial-2k; on -q erase; device=serial-4k
  $ on -q erase
  keld2: chip image chip: has the line 'device serial-2k', expected 'device serial-4k'
  [65]
  $ echo "something else" >chip
  $ on -q erase
  keld2: chip image chip: has the line 'something else', expected 'keld2 chip image 1'
  [65]
  $ cat chip
  something else

Configuration bytes are written by their own step, and looked at by none of the others:

  $ chip serial-2k; bytes 2082 >whole.bin
  $ on -q program whole.bin
  keld2: whole.bin gives configuration bytes; program does not write them, config does
  $ on -q verify whole.bin
  keld2: whole.bin gives configuration bytes; verify does not look at them
  $ on -q auto whole.bin --steps program,config,verify
