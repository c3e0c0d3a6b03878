Files of data that cannot be used: what is wrong is said with its line.

  $ use() { printf "$2" >"$1"; keld2 -q -d $device verify "$1"; }

Intel HEX: checksum, digits, form, lengths, types; the end; data given twice; the address range:

  $ device=serial-2k
  $ use a.hex ':0100000055AB\n'
  keld2: a.hex:1: checksum is AB, expected AA
  [65]
  $ use a.hex ':0100000055A\n'
  keld2: a.hex:1: record has 11 hexadecimal digits, expected an even number
  [65]
  $ use a.hex ':01000G0055AA\n'
  keld2: a.hex:1: 'G' in column 7, expected a hexadecimal digit
  [65]
  $ use a.hex '\n0100000055AA\n'
  keld2: a.hex:2: '0' begins the record, expected ':'
  [65]
  $ use a.hex ':010000\n'
  keld2: a.hex:1: record has 3 bytes, expected at least 5
  [65]
  $ use a.hex ':0200000055A9\n'
  keld2: a.hex:1: record holds 1 data byte, its length byte says 2
  [65]
  $ use a.hex ':0100000655A4\n'
  keld2: a.hex:1: record type 06, expected 00 to 05
  [65]
  $ use a.hex ':0100000400FB\n'
  keld2: a.hex:1: record of type 04 holds 1 data byte, expected 2
  [65]
  $ use a.hex ':0100000055AA\n'
  keld2: a.hex: the file ends without an end-of-file record (:00000001FF)
  [65]
  $ use a.hex ':0100000055AA\n:00000001FF\n:0100010055A9\n'
  keld2: a.hex:3: text behind the end-of-file record
  [65]
  $ use a.hex ':020000000102FB\n:0100010055A9\n:00000001FF\n'
  keld2: a.hex:2: address 0001 was already given in line 1
  [65]
  $ use a.hex ':0100010055A9\n:020000000102FB\n:00000001FF\n'
  keld2: a.hex:2: address 0001 was already given in line 1
  [65]
  $ use a.hex ':02000004FFFFFC\n:02FFFF000102FD\n:00000001FF\n'
  keld2: a.hex:2: data from address FFFFFFFF on go beyond FFFFFFFF
  [65]
  $ use a.hex ':00000001FF\n'
  keld2: a.hex: the file holds no data
  [65]

S-records: checksum, digits, form, types, lengths; counts; the end; data given twice:

  $ use a.s19 'S1050010AABB86\n'
  keld2: a.s19:1: checksum is 86, expected 85
  [65]
  $ use a.s19 'S1050010AABB8\n'
  keld2: a.s19:1: record has 11 hexadecimal digits, expected an even number
  [65]
  $ use a.s19 'S105001zAABB85\n'
  keld2: a.s19:1: 'z' in column 8, expected a hexadecimal digit
  [65]
  $ use a.s19 ':00000001FF\n'
  keld2: a.s19:1: ':' begins the record, expected 'S'
  [65]
  $ use a.s19 'S4030000FC\n'
  keld2: a.s19:1: record type S4, expected S0 to S3 or S5 to S9
  [65]
  $ use a.s19 'S\n'
  keld2: a.s19:1: record type S , expected S0 to S3 or S5 to S9
  [65]
  $ use a.s19 'S103\n'
  keld2: a.s19:1: record has 1 byte, expected at least 4
  [65]
  $ use a.s19 'S1060010AABB85\n'
  keld2: a.s19:1: record holds 5 bytes behind its length byte, which says 6
  [65]
  $ use a.s19 'S9040000FFFC\n'
  keld2: a.s19:1: record of type S9 holds 1 data byte, expected 0
  [65]
  $ use a.s19 'S1050010AABB85\nS5030002FA\n'
  keld2: a.s19:2: count record says 2 data records, the file has 1 before it
  [65]
  $ use a.s19 'S1050010AABB85\n'
  keld2: a.s19: the file ends without an end record (S7, S8, S9) or a count (S5, S6)
  [65]
  $ use a.s19 'S1050010AABB85\nS5030001FB\nS1050012AABB83\n'
  keld2: a.s19: the file ends without an end record (S7, S8, S9) or a count (S5, S6)
  [65]
  $ use a.s19 'S1050010AABB85\nS9030000FC\nS1050012AABB83\n'
  keld2: a.s19:3: text behind the end record
  [65]
  $ use a.s19 'S1050010AABB85\nS1050011AABB84\nS9030000FC\n'
  keld2: a.s19:2: address 0011 was already given in line 1
  [65]

Fuse maps; their fields stand between STX and ETX, with no transmission checksum:

  $ device=logic-17200-b
  $ map() { use a.jed "\\002header*\n$1\\003${2-0000}\n"; }
  $ map 'QF8*\nL0 11110000*\nC000E*\n'
  keld2: a.jed:4: field C: fuse checksum is 000E, expected 000F
  [65]
  $ map 'QF8*F0*\nC0F*\n'
  keld2: a.jed:3: field C: "0F", expected four hexadecimal digits
  [65]
  $ map 'QF8*\nL4 1111\n1*\n'
  keld2: a.jed:4: field L: fuse 8 lies behind the last fuse 7
  [65]
  $ map 'QF8*F0*\nL0 11*\nL1 0*\n'
  keld2: a.jed:4: field L: fuse 1 was already given
  [65]
  $ map 'QF8*F0*\nL0 12*\n'
  keld2: a.jed:3: field L: fuse 1 has the state '2', expected 0 or 1
  [65]
  $ map 'QF8*F0*\nLx 1*\n'
  keld2: a.jed:3: field L: "x 1", expected a decimal fuse number, a blank and fuse states
  [65]
  $ map 'QF8*\nL0 1111*\n'
  keld2: a.jed: fuse 4 is given in no field L, and there is no default (field F)
  [65]
  $ map 'F0*\n'
  keld2: a.jed: no field QF, the number of fuses
  [65]
  $ map 'L0 1*\nQF8*\n'
  keld2: a.jed:2: field L: stands before the number of fuses (QF)
  [65]
  $ map 'QF8x*\n'
  keld2: a.jed:2: field QF: "8x", expected a decimal number
  [65]
  $ map 'QF0*\n'
  keld2: a.jed:2: field QF: 0 fuses, expected 1 to 16777216
  [65]
  $ map 'QF8*QF8*\n'
  keld2: a.jed:2: field QF: given twice
  [65]
  $ map 'QF8*F2*\n'
  keld2: a.jed:2: field F: "2", expected 0 or 1
  [65]
  $ map 'QF8*F0*G*\n'
  keld2: a.jed:2: field G: "", expected 0 or 1
  [65]
  $ map 'QF8*F0*\nUHFF*\n'
  keld2: a.jed:3: field UH: user code of 8 bits, expected 32
  [65]
  $ map 'QF8*F0*\nUHFG*\n'
  keld2: a.jed:3: field UH: 'G', expected a hexadecimal digit
  [65]
  $ map 'QF8*F0*\nUAABCD*\nUAABCD*\n'
  keld2: a.jed:4: field UA: given twice
  [65]
  $ map 'QF8*F0*E2*\n'
  keld2: a.jed:2: field E: '2', expected 0 or 1
  [65]
  $ map 'QF8*F0*\n\n?8*\n'
  keld2: a.jed:4: field begins with '?', expected a field name of a fuse map
  [65]
  $ map 'QF8*F0*\nN note'
  keld2: a.jed:3: the last field does not end with '*'
  [65]
  $ use a.jed 'QF8*F0*'
  keld2: a.jed: no STX (character 2), which begins a fuse map
  [65]
  $ use a.jed '\002QF8*F0*'
  keld2: a.jed: no ETX (character 3), which ends a fuse map
  [65]
  $ map 'QF8*F0*' 1234
  keld2: a.jed:2: transmission checksum is 1234, expected 043B
  [65]
  $ map 'QF8*F0*' ''
  keld2: a.jed:2: "" behind ETX, expected the transmission checksum, four hexadecimal digits (0000 for none), and nothing more
  [65]
  $ map 'QF8*F0*' '0000 QF8*'
  keld2: a.jed:2: "0000 QF8*" behind ETX, expected the transmission checksum, four hexadecimal digits (0000 for none), and nothing more
  [65]

Files that hold nothing, or whose ending names no format:

  $ device=serial-2k; : >empty.bin
  $ use a.txt x
  keld2: a.txt: the ending ".txt" names no format, expected one of .bin, .hex, .ihx, .s19, .srec, .mot, .jed
  [65]
  $ use empty.bin ''
  keld2: empty.bin: the file holds no data
  [65]
  $ keld2 -q -d serial-2k verify none.hex
  keld2: none.hex: cannot be opened: No such file or directory
  [66]

The ending names the format, in any case, unless an option does:

  $ chip() { keld2 -q -d serial-2k -p sim:image=chip "$@"; }
  $ printf ':0100000055AA\n:00000001FF\n' >a.hex; cp a.hex b.IHX; cp a.hex c.txt
  $ printf 'S104000055A6\nS9030000FC\n' >d.s19; cp d.s19 e.srec; cp d.s19 f.mot; printf U >g.bin
  $ chip program a.hex
  $ for file in a.hex b.IHX d.s19 e.srec f.mot g.bin; do chip verify $file || echo $file; done
  $ chip verify c.txt --format hex

Another program reads what is written, and writes what is read; gaps of raw files are filled:

  $ for i in 0 1 2; do yes "line $i" | head -c 500 >$i.bin; done
  $ srec_cat 0.bin -binary 1.bin -binary -offset 0x4000 2.bin -binary -offset 0xF800 -o all.hex -intel
  $ parallel() { keld2 -q -d parallel-byte-64k -p sim:image=parallel "$@"; }
  $ parallel program all.hex
  $ for name in back.hex back.srec back.bin; do parallel read $name; done
  $ srec_cmp back.hex -intel back.srec -motorola
  $ srec_cmp back.hex -intel back.bin -binary
  $ srec_cat all.hex -intel -fill 0xFF 0 0x10000 -o filled.bin -binary; cmp filled.bin back.bin
  $ for form in -intel "-intel -address-length=3" -motorola; do
  >   case $form in -motorola) name=other.srec ;; *) name=other.hex ;; esac
  >   srec_cat all.hex -intel -o $name $form; parallel verify $name || echo $form
  > done
