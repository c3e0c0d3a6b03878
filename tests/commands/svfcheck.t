The check of SVF texts, and texts that lose statements when they are played.

  $ . "$TESTDIR/bench.sh"
  $ chip logic-16160
  $ check() { printf "$1" >text.svf; shift; keld2 -d $device check "$@" text.svf; }

Line, column and reason of what is passed over, lost, or fails the run:

  $ check '! fine\n\nHIR 0;\nSIR 8 TDI (16);\nSDR 8 TDI (A5);\n'
  text.svf:3: skipped: HIR: no header bits
  text.svf: 5 lines: 1 SIR, 1 SDR that drive, 0 that read, 0 that replay, 0 RUNTEST
  text.svf: 16 bits shifted, 0 clocks, 0.000 s of waiting; 0 rows stored, 0 compared
  text.svf: the device's comparison takes rows 1 to 80
  $ check 'HIR 8 TDI (FF);\n'
  text.svf:1: lost: HIR 8TDI(FF): is not supported
  text.svf: 1 lines: 0 SIR, 0 SDR that drive, 0 that read, 0 that replay, 0 RUNTEST
  text.svf: 0 bits shifted, 0 clocks, 0.000 s of waiting; 0 rows stored, 0 compared
  text.svf: the device's comparison takes rows 1 to 80
  [65]
  $ check 'SIR 8 TDI (16);\n  SDR 8 TDI (A5);\n'
  text.svf:2: lost: SDR: stands behind blanks, expected at the start of the line
  text.svf: 2 lines: 1 SIR, 0 SDR that drive, 0 that read, 0 that replay, 0 RUNTEST
  text.svf: 8 bits shifted, 0 clocks, 0.000 s of waiting; 0 rows stored, 0 compared
  text.svf: the device's comparison takes rows 1 to 80
  [65]
  $ check 'STATE RESET;\nTRST ON;\n'
  text.svf:1: skipped: STATE: the run begins with a reset
  text.svf:1: lost: the text has no statement, expected SIR, SDR or RUNTEST
  text.svf:2: skipped: TRST: there is no TRST line, the run begins with a reset
  text.svf: 2 lines: 0 SIR, 0 SDR that drive, 0 that read, 0 that replay, 0 RUNTEST
  text.svf: 0 bits shifted, 0 clocks, 0.000 s of waiting; 0 rows stored, 0 compared
  text.svf: the device's comparison takes rows 1 to 80
  [65]
  $ check 'SIR 8 TDI (16);\nSTATE RESET;\n'
  text.svf:2: lost: STATE RESET: is not supported
  text.svf: 2 lines: 1 SIR, 0 SDR that drive, 0 that read, 0 that replay, 0 RUNTEST
  text.svf: 8 bits shifted, 0 clocks, 0.000 s of waiting; 0 rows stored, 0 compared
  text.svf: the device's comparison takes rows 1 to 80
  [65]
  $ check 'SDR 16 TDI (A5);\n'
  text.svf:1:1: the run fails here: a field has fewer digits than its bit count needs
  text.svf: 1 lines: 0 SIR, 0 SDR that drive, 0 that read, 0 that replay, 0 RUNTEST
  text.svf: 0 bits shifted, 0 clocks, 0.000 s of waiting; 0 rows stored, 0 compared
  text.svf: the device's comparison takes rows 1 to 80
  [65]
  $ check 'BLAH 1;\n'
  text.svf:1: lost: no statement begins with "BLAH"
  text.svf: 1 lines: 0 SIR, 0 SDR that drive, 0 that read, 0 that replay, 0 RUNTEST
  text.svf: 0 bits shifted, 0 clocks, 0.000 s of waiting; 0 rows stored, 0 compared
  text.svf: the device's comparison takes rows 1 to 80
  [65]
  $ check 'SIR 8 TDI (16);\r\nSDR 8 TDI (AG);\r\n'
  text.svf:2:13: the run fails here: a field holds a character that is no hexadecimal digit
  text.svf: 2 lines: 1 SIR, 0 SDR that drive, 0 that read, 0 that replay, 0 RUNTEST
  text.svf: 8 bits shifted, 0 clocks, 0.000 s of waiting; 0 rows stored, 0 compared
  text.svf: the device's comparison takes rows 1 to 80
  [65]
  $ check 'SDR 16 TDI (0\n\tZ00);\nSDR'
  text.svf:2:2: the run fails here: a field holds a character that is no hexadecimal digit
  text.svf: 1 lines: 0 SIR, 0 SDR that drive, 0 that read, 0 that replay, 0 RUNTEST
  text.svf: 0 bits shifted, 0 clocks, 0.000 s of waiting; 0 rows stored, 0 compared
  text.svf: the device's comparison takes rows 1 to 80
  [65]
  $ check 'SIR 8 TDI (8000);'
  text.svf:1:1: the run fails here: SIR: value (8000), expected 0 to 7FFF
  text.svf: 1 lines: 0 SIR, 0 SDR that drive, 0 that read, 0 that replay, 0 RUNTEST
  text.svf: 0 bits shifted, 0 clocks, 0.000 s of waiting; 0 rows stored, 0 compared
  text.svf: the device's comparison takes rows 1 to 80
  [65]
  $ check 'RUNTEST 1 SEC;'
  text.svf:1:1: the run fails here: "TCK" is missing
  text.svf: 1 lines: 0 SIR, 0 SDR that drive, 0 that read, 0 that replay, 0 RUNTEST
  text.svf: 0 bits shifted, 0 clocks, 0.000 s of waiting; 0 rows stored, 0 compared
  text.svf: the device's comparison takes rows 1 to 80
  [65]
  $ check 'SDR 8 TDI (1\n2\n3\n4\n5\n6\n78);\n'
  text.svf:1: lost: SDR: its TDI has more than four lines between the first and the closing one, the statement is given up
  text.svf:7: lost: no statement begins with "78)"
  text.svf: 2 lines: 0 SIR, 0 SDR that drive, 0 that read, 0 that replay, 0 RUNTEST
  text.svf: 0 bits shifted, 0 clocks, 0.000 s of waiting; 0 rows stored, 0 compared
  text.svf: the device's comparison takes rows 1 to 80
  [65]
  $ check 'RUNTEST IDLE 20 TCK 2.00E-003 SEC;\n'
  text.svf: 1 lines: 0 SIR, 0 SDR that drive, 0 that read, 0 that replay, 1 RUNTEST
  text.svf: 0 bits shifted, 20 clocks, 0.002 s of waiting; 0 rows stored, 0 compared
  text.svf: the device's comparison takes rows 1 to 80
  $ check 'SDR 12 TDI (ABC);\nSIR 8 TDI (01);\n'
  text.svf: 2 lines: 1 SIR, 1 SDR that drive, 0 that read, 0 that replay, 0 RUNTEST
  text.svf: 20 bits shifted, 0 clocks, 0.000 s of waiting; 0 rows stored, 0 compared
  text.svf: the device's comparison takes rows 1 to 80
  $ check 'SDR 32 TDI (00000000) TDO (00000000);\n'
  text.svf: 1 lines: 0 SIR, 0 SDR that drive, 1 that read, 0 that replay, 0 RUNTEST
  text.svf: 32 bits shifted, 0 clocks, 0.000 s of waiting; 1 rows stored, 1 compared
  text.svf: the device's comparison takes rows 1 to 80

The statements that run, in their order:

  $ text='SIR 8 TDI (16);\nSDR 32 TDI (00000000)\n\tTDO (00000000);\nHIR 0;\nSDR 12 TDI (123);\n'
  $ text+='RUNTEST 12 TCK;\nRUNTEST IDLE 8 TCK 1.5 SEC;\nBLAH;\n'
  $ check "$text" --statements
  text.svf:1: SIR: 8 bits
  text.svf:2: SDR: 32 bits back, row 0
  text.svf:4: skipped: HIR: no header bits
  text.svf:5: SDR: 12 bits out
  text.svf:6: RUNTEST: 16 clocks, 0 us of waiting
  text.svf:7: RUNTEST: 8 clocks, 1500000 us of waiting
  text.svf:8: lost: no statement begins with "BLAH"
  text.svf: 7 lines: 1 SIR, 1 SDR that drive, 1 that read, 0 that replay, 2 RUNTEST
  text.svf: 52 bits shifted, 24 clocks, 1.500 s of waiting; 1 rows stored, 1 compared
  text.svf: the device's comparison takes rows 1 to 80
  [65]
  $ check "$text" --json | jq -c '[(.run | length), .seconds, .usesall]'
  [5,1.5,false]
  [65]

Rows that nobody compares, and what lies beyond the line limit:

  $ check "SDR 32 TDI (00000000) TDO (00000000);\n$(yes 'SDR 8 TDI (00) TDO (00);\n' | head -81 | tr -d '\n')"
  text.svf:2: lost: SDR: its row is number 1 and has 8 bits, the device's comparison takes 202; 79 more rows of other widths
  text.svf:82: lost: SDR: its row is number 81, which the device's comparison leaves out
  text.svf: 82 lines: 0 SIR, 0 SDR that drive, 82 that read, 0 that replay, 0 RUNTEST
  text.svf: 680 bits shifted, 0 clocks, 0.000 s of waiting; 82 rows stored, 81 compared
  text.svf: the device's comparison takes rows 1 to 80
  [65]
  $ check "$(yes '\n' | head -10000 | tr -d '\n')SIR 8 TDI (16);\n"
  text.svf:10001: lost: the run reads 10000 lines and statements, the rest is lost
  text.svf: 10000 lines: 0 SIR, 0 SDR that drive, 0 that read, 0 that replay, 0 RUNTEST
  text.svf: 0 bits shifted, 0 clocks, 0.000 s of waiting; 0 rows stored, 0 compared
  text.svf: the device's comparison takes rows 1 to 80
  [65]

A text that loses statements is played after a question, or anyway:

  $ printf ' SIR 8 TDI (16);\n' >lossy.svf
  $ on --progress none play lossy.svf
  lossy.svf:1: lost: SIR: stands behind blanks, expected at the start of the line
  lossy.svf: 1 lines: 0 SIR, 0 SDR that drive, 0 that read, 0 that replay, 0 RUNTEST
  lossy.svf: 0 bits shifted, 0 clocks, 0.000 s of waiting; 0 rows stored, 0 compared
  lossy.svf: the device's comparison takes rows 1 to 80
  keld2
  lossy.svf: not all of it would be played. Play it all the same?
  keld2: answered with cancel
  keld2: lossy.svf: not all of it would be played; --anyway plays it all the same
  [65]
  $ on -q play lossy.svf --anyway
  lossy.svf:1: lost: SIR: stands behind blanks, expected at the start of the line
  lossy.svf: 1 lines: 0 SIR, 0 SDR that drive, 0 that read, 0 that replay, 0 RUNTEST
  lossy.svf: 0 bits shifted, 0 clocks, 0.000 s of waiting; 0 rows stored, 0 compared
  lossy.svf: the device's comparison takes rows 1 to 80
  $ on -q play lossy.svf --on-box ok
  lossy.svf:1: lost: SIR: stands behind blanks, expected at the start of the line
  lossy.svf: 1 lines: 0 SIR, 0 SDR that drive, 0 that read, 0 that replay, 0 RUNTEST
  lossy.svf: 0 bits shifted, 0 clocks, 0.000 s of waiting; 0 rows stored, 0 compared
  lossy.svf: the device's comparison takes rows 1 to 80
  keld2
  lossy.svf: not all of it would be played. Play it all the same?
  keld2: answered with ok

A failure is explained when asked, and in a sequence by the text of its step:

  $ printf 'SIR 8 TDI (16);\nSDR 32 TDI (00000000) TDO (00000000) MASK (00000100);\n' >code.svf
  $ on -q play code.svf
  keld2: logic-16160: wrong chip: its id is 6DE1C521, expected 00000000
  [1]
  $ on -q play code.svf --explain
  code.svf:2: device code, row 0, bit 8: expected 0, read 1
  keld2: logic-16160: wrong chip: its id is 6DE1C521, expected 00000000
  [1]
  $ fault=stuck=809:0:1; printf '\2t*\nQF16160*\nF0*\n\0030000\n' >zeros.jed
  $ json auto zeros.jed | jq -c '[.done, .explanation.count, .explanation.mismatches[0].fuse]'
  [2,1,809]
  [1]

What cannot be:

  $ keld2 -d logic-16160 check none.svf
  keld2: none.svf: cannot be opened: No such file or directory
  [66]
  $ keld2 -d serial-2k check code.svf
  keld2: serial-2k is not worked by SVF texts, expected a device that is
  [64]
  $ keld2 -d logic-16160 svf make --operation cook
  keld2: --operation cook: is not known, expected one of id, blank, erase, program, verify, secure
  [64]
  $ keld2 -d logic-16160 svf make --operation verify
  keld2: no DATA, expected the file with the chip's content for verify
  [64]
  $ keld2 -d logic-16160 svf make --operation id --layout D1
  keld2: --layout D1: is not known, expected one of A2, B1, B2, C1, C2, C3, C4
  [64]
