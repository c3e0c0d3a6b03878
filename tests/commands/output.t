What is written where when nobody sits at a terminal.

  $ . "$TESTDIR/bench.sh"
  $ chip serial-2k; printf '\1' >a.bin

Progress is plain lines:

  $ on program a.bin | grep -E '50 %|OK'
   50 % Program ...
  >>Program OK
  $ on --progress none blank
  keld2: simulated programmer, the chip is kept in chip
  >>Maker: 5A   Device: 2401
  >>Blank Check ...
  >>Blank Check failed
  >> <TIME>Sec
  keld2: serial-2k: failed in blank at 98 %
  [1]

The programmer is named whenever nobody has chosen it:

  $ on -q erase
  $ keld2 -q -d serial-2k erase
  keld2: simulated programmer, a fresh chip that is not kept (-p sim:image=FILE keeps it)

The log speaks the language that is asked:

  $ on --progress none erase --language it
  keld2: simulated programmer, the chip is kept in chip
  >>Maker: 5A   Device: 2401
  >>Cancellazione ...
  >>Cancellazione OK
  >> <TIME>Sec
  keld2: serial-2k: erase ended well
