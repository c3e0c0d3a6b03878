Whatever cannot be right is refused before the programmer is touched.

  $ . "$TESTDIR/bench.sh"
  $ chip serial-2k
  $ printf ':0100000055AA\n:00000001FF\n' >good.hex
  $ echo ':0100000055AB' >damaged.hex
  $ printf '\2*QF8*F0*\0030000' >map.jed
  $ printf ':05081E000102030405C6\n:00000001FF\n' >big.hex

Files:

  $ on program damaged.hex
  keld2: damaged.hex:1: checksum is AB, expected AA
  [65]
  $ on program big.hex
  keld2: big.hex: bytes 0822 to 0822 lie outside serial-2k, expected addresses 0000 to 0821
  [65]
  $ on program map.jed
  keld2: map.jed: is a fuse map, serial-2k holds bytes; expected .bin, .hex, .ihx, .s19, .srec or .mot
  [65]
  $ on config good.hex
  keld2: good.hex: gives no byte for address 0820, expected the configuration bytes (0820 to 0821)
  [65]
  $ on verify none.hex
  keld2: none.hex: cannot be opened: No such file or directory
  [66]
  $ on read out.txt
  keld2: out.txt: the ending ".txt" names no format, expected one of .bin, .hex, .ihx, .s19, .srec, .mot, .jed
  [65]
  $ on read no/out.bin
  keld2: no/out.bin: cannot be written: No such file or directory
  [66]
  $ on verify good.hex --format elf
  keld2: --format elf: is not known, expected bin, hex, srec or jed
  [64]

Operations and steps:

  $ on secure
  keld2: serial-2k cannot do "secure", expected one of read, verify, blank, compare, program, erase, config
  [64]
  $ on auto
  keld2: no file for "program", expected auto FILE
  [64]
  $ on auto good.hex --steps erase,wipe
  keld2: --steps erase,wipe: "wipe" is no operation, expected some of read, verify, blank, compare, program, erase, config, secure, with commas between
  [64]
  $ on auto good.hex --steps erase,read
  keld2: read is no step of a sequence, expected the command "read OUT"
  [64]
  $ on auto good.hex --steps erase,erase,erase,erase,erase,erase,erase,erase,erase,erase,erase,erase
  keld2: --steps: 12 steps, expected at most 11
  [64]

Words and options:

  $ on verfy good.hex
  keld2: there is no command "verfy"; nearest: verify; see keld2 --help
  [64]
  $ on erase --langage pl
  keld2: there is no option "--langage"; nearest: --language; see keld2 erase --help
  [64]
  $ on erase now
  keld2: "now" is one word too many; see keld2 erase --help
  [64]
  $ on devices
  keld2: no command; see keld2 devices --help
  [64]
  $ on read
  keld2: OUT is required; see keld2 read --help
  [64]
  $ on erase --language xx
  keld2: --language xx: is not known, expected one of en, zh-cn, zh-tw, ko, pl, it, nl, pt, tr, hu, ru
  [64]
  $ on erase --progress dots
  keld2: --progress dots: is not known, expected auto, bar, lines or none
  [64]
  $ on erase --on-box maybe
  keld2: --on-box maybe: is not known, expected ok, cancel, abort, retry or ignore
  [64]
  $ on verify good.hex --vcd ./good.hex
  keld2: --vcd ./good.hex would overwrite FILE, expected files of their own
  [64]
  $ on verify good.hex --vcd chip
  keld2: --vcd chip would overwrite the chip image, expected files of their own
  [64]
  $ keld2 -d logic-101844 auto
  keld2: logic-101844 has no sequence of its own, expected --steps with some of verify, blank, program, erase, secure
  [64]
  $ ls chip
  ls: cannot access 'chip': No such file or directory
  [2]

Devices and programmers:

  $ keld2 erase
  keld2: no device, expected -d DEVICE or the environment variable KELD2_DEVICE
  [64]
  $ keld2 -d serial-3k erase
  keld2: there is no device "serial-3k"; nearest: serial-2k, serial-4k
  [65]
  $ keld2 -d serial-2k -p usb erase
  keld2: -p usb: there is no programmer "usb", expected sim[:image=FILE][,fault=FAULT]... or hardware
  [64]
  $ keld2 -d serial-2k -p sim:speed=2 erase
  keld2: -p sim:speed=2: "speed=2" is no setting, expected sim[:image=FILE][,fault=FAULT]... or hardware
  [64]
  $ keld2 -d serial-2k -p sim:fault=smoke erase
  keld2: simulated programmer, a fresh chip that is not kept (-p sim:image=FILE keeps it), fault smoke
  keld2: -p: fault 'smoke': cannot be understood, expected refuse[=COUNT], modefail[=COUNT], bulkfail[=COUNT], bulkhang[=COUNT], transferfail[=COUNT], sendfail[=COUNT], stuck=ADDRESS:BIT[:LEVEL], wrongid, nopower, weak=ADDRESS, phasefail=PHASE:ADDRESS, neverdone or nostop
  [64]
  $ keld2 -q -d serial-2k -p hardware erase
  keld2: -p hardware: the components that drive the programmer are libraries of Windows, expected keld2.exe on the machine that has them, or -p sim here
  [64]
  $ keld2 -d serial-2k program
  keld2: FILE is required; see keld2 program --help
  [64]
  $ keld2 wipe
  keld2: there is no command "wipe"; see keld2 --help
  [64]
  $ keld2
  keld2: no command; see keld2 --help
  [64]
  $ keld2 --help | sed -n 1p
  Command-line host of tq5keld2, the device-family plug-in of a programmer
  $ keld2 --version | diff - <(sed -n 's/^project(.* VERSION \([0-9.]*\).*/keld2 \1/p' "$TESTDIR/../../CMakeLists.txt")
