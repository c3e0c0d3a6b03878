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
  keld2: serial-2k: failed in blank at 98 %: not blank at 000000, the chip holds 01
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

A link stays and so do a file's permissions; what is no file takes what comes:

  $ touch real.bin; chmod 640 real.bin; ln -s real.bin link.bin
  $ on -q read link.bin --force
  keld2: every byte reads FF: the chip is blank or protected from being read
  $ stat -c '%N %a %s' link.bin real.bin
  'link.bin' -> 'real.bin' 777 8
  'real.bin' 640 2082
  $ on -q read /dev/stdout --format hex | sed -n 1p
  :10000000FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF00
  $ on -q read /dev/full --format bin
  keld2: /dev/full: cannot be written: No space left on device
  [66]
  $ on -q blank --vcd /dev/full | tail -1
  keld2: /dev/full: cannot be written: No space left on device
  [66]

A result that finds no place is a failure:

  $ keld2 devices list >/dev/full
  keld2: standard output cannot be written
  [66]

Nobody has to read the log to its end:

  $ keld2 -d serial-2k -p sim:image=kept program a.bin 2>&1 | sed -n 1q; ls kept
  kept
