Traces told in words, and their first difference.

The lines of the first wiring: register 0, TMS 4, TCK 16, TDI 1, TDO 2.

  $ begin() { printf 'window usbsvfprg load\ndrivercommit 000810a202010008080000\n' >trace; }
  $ q=q
  $ line() { echo "${q}regwrite $((130 | $1)) 0" >>trace; }
  $ clock() { line $(($1 * 4 | $2)); line $(($1 * 4 | $2 | 16)); line $(($1 * 4 | $2)); }
  $ walk() { for bit in $(echo $1 | sed 's/./& /g'); do clock $bit 0; done; }
  $ add() { printf "$1" >>trace; }
  $ show() { keld2 trace show trace --depth $1; }

Scans are told by following the test access port. The read code keeps TDI where the driven byte has
left it, at bit 7 of 0xB1:

  $ begin; walk 1111101100; clock 0 1; clock 0 0; clock 1 1; walk 10100
  $ add 'qregwrite 177 144\nqregwrite 1 143\nqregread 0\n'
  $ clock 1 1; walk 1000; add 'qwaitlong 20\nqrun\n'
  $ show 3
         1    window usbsvfprg load
         2    pin set-up ends, record 000810a202010008080000
         3    list of 73 lines runs
         3      5 clocks to Test-Logic-Reset
        21      shift IR 3 bits, TDI 0x5
        48      shift DR 17 bits, TDI 0x1FFB1, 9 bits read
        69      2 clocks in Run-Test/Idle; pause 20 ms
  $ show 4
         1    window usbsvfprg load
         2    pin set-up ends, record 000810a202010008080000
         3    list of 73 lines runs
         3      5 clocks to Test-Logic-Reset
         3        5 clocks to Test-Logic-Reset
        18        walk Test-Logic-Reset > Run-Test/Idle
        21      shift IR 3 bits, TDI 0x5
        21        walk Run-Test/Idle > Select-DR > Select-IR > Capture-IR > Shift-IR
        33        shift IR 3 bits, TDI 0x5
        42        walk Exit1-IR > Update-IR > Run-Test/Idle
        48      shift DR 17 bits, TDI 0x1FFB1, 9 bits read
        48        walk Run-Test/Idle > Select-DR > Capture-DR > Shift-DR
        57        shift DR 17 bits, TDI 0x1FFB1, 9 bits read
        63        walk Exit1-DR > Update-DR > Run-Test/Idle
        69      2 clocks in Run-Test/Idle; pause 20 ms
        69        2 clocks in Run-Test/Idle
        75        pause 20 ms

What an immediate sample has read; the walk out of Shift-DR clocks a fifth bit, which nobody looks
at:

  $ begin; q=; walk 0100
  $ for answer in 255 253 253 255; do add "regread 0 -> $answer\n"; clock 0 0; done
  $ walk 11; show 2; q=q
         1    window usbsvfprg load
         2    pin set-up ends, record 000810a202010008080000
         3    walk Test-Logic-Reset > Run-Test/Idle
         6    shift DR 5 bits, TDI stays 0, TDO 0x9

Bytes of the mode that works bit seven first:

  $ for mode in 2a 0a; do
  >   begin; add "usbcomwrite 15 0d${mode}0000000810a202010008080000 -> 0\n"
  >   walk 0100; add 'qregwrite 3 146\n'; walk 11; add 'qrun\n'; show 3 | grep -E 'shift|frame'
  > done
         3    frame: list engine to mode 42
         7      shift DR 9 bits, TDI 0x003
         3    frame: list engine to mode 10
         7      shift DR 9 bits, TDI 0x0C0

Commands of the byte port:

  $ mcu() { echo "window usbkel2mpuprg load" >trace; }
  $ port() { q=$1; shift; for byte; do
  >   add "${q}regwrite $byte 4\n${q}regwrite 42 6\n${q}regwrite 10 6\n"; done; }
  $ got() { for byte; do add "regread 4 -> $byte\nregwrite 42 6\nregwrite 10 6\n"; done; }
  $ mcu; add 'regwrite 10 6\n'; port '' 170 56 255 0; add 'regwrite 255 5\nregwrite 10 6\n'
  $ got 30 146; add 'regwrite 0 5\nregwrite 74 6\n'; show 2
         1    window usbkel2mpuprg load
         2    command: read id, 2 bytes read 1e92
  $ mcu; add 'qregwrite 10 6\n'; port q 170 48 1 128
  $ add 'qregwrite 255 5\nqregread 4\nqwaitshort 10\nqregwrite 42 6\nqregwrite 10 6\n'
  $ add 'qregwrite 0 5\nqregwrite 74 6\nqrun\n'; show 3
         1    window usbkel2mpuprg load
         2    list of 20 lines runs
         2      command: read page at 0x0180, 1 byte read
  $ show 2
         1    window usbkel2mpuprg load
         2    list of 20 lines runs
  $ mcu; add 'qregwrite 10 6\npowerdown\n'; show 2
         1    window usbkel2mpuprg load
         2    list of 1 line, never run
         3    power down

Cycles of the bus; data may look like the check behind them:

  $ cycle() { for byte; do
  >   add "qbuswrite 1310724 $byte 252\nqwaitshort 5\nqbuswrite 1310724 $byte 255\n"; done; }
  $ for data in 171 192; do mcu; cycle 64 $data 192; add 'qrun\n'; show 3; done
         1    window usbkel2mpuprg load
         2    list of 9 lines runs
         2      bus: program ab at 0x140004
         1    window usbkel2mpuprg load
         2    list of 9 lines runs
         2      bus: program c0 at 0x140004
  $ enabled() { for byte; do line="qbuswrite 1310724 $byte"
  >   add "$line 253\nqwaitshort 5\n$line 252\n$line 253\n"; done; }
  $ mcu; enabled 64 91; at="qbuswrite 1310725 92"
  $ add "$at 253\n$at 252\n$at 253\nqwaitlong 6\nqrun\n"; show 3
         1    window usbkel2mpuprg load
         2    list of 12 lines runs
         2      bus: program 5b5c at 0x140004
  $ mcu; cycle 32 32; add 'qrun\n'; show 3
         1    window usbkel2mpuprg load
         2    list of 6 lines runs
         2      bus: erase at 0x140004
  $ mcu; add 'buswrite 16 0 249\nregread 0 -> 1\nbuswrite 16 0 253\n'
  $ add 'buswrite 17 0 249\nregread 0 -> 254\nbuswrite 17 0 253\n'; show 2
         1    window usbkel2mpuprg load
         2    bus: read at 0x000010 to 0x000011, 2 bytes: 01fe

Frames of an ARM run, status waits, checks, supplies, boxes:

  $ printf 'usbcomwrite 8 3301800000000000 -> 0\n' >trace
  $ add 'usbcomwrite 16 34078101020000000000000000000000 -> 0\n'; show 2
         1    frame: image write
         2  operation Program
         2    frame: Program, bank 1, block 513, the last one
  $ printf 'transferwait 15 -> true\nprogress 5\ntransferwait 15 -> true\n' >trace
  $ add 'transferwait 15 -> false\n'; show 4
         1    status asked 3 times, then the transfer failed
         1      status asked
         2      progress 5 %
         3      status asked
         4      status asked: the transfer failed
  $ printf 'checkbyte 255 16 2 -> 0\ncheckbyte 255 17 2 -> 0\ncheckbyte 7 18 2 -> 1\n' >trace
  $ show 2
         1    3 checks, blank check of 0xFF at 0x000010 to 0x000012; 1 ended with 1
  $ printf 'setvpp 12500 1\nmessagebox okcancel none "a" "b -> c" -> cancel\n' >trace; show 2
         1    VPP 1 12.500 V
         2    question none "a" "b -> c": cancel

The first difference, with the step it lies in:

  $ made() { begin; add 'window usbsvfprg caption "Verify"\nsetvcc 3300\n'; walk 0100; clock 0 $2
  >   walk 11; add 'qrun\npowerdown\n'; mv trace $1; }
  $ made a 1; made b 0; made c 1
  $ keld2 trace diff a c
  $ keld2 trace diff a b
  first difference: line 17
  - a
  + b
    in operation "Verify"
          4  VCC 3.300 V
          5  list of 21 lines runs
  -       8    shift DR 2 bits, TDI 0x1
  -      17      shift DR 2 bits, TDI 0x1
  -      17        register 0 = 131
  -          qregwrite 131 0
  +       8    shift DR 2 bits, TDI 0x0
  +      17      shift DR 2 bits, TDI 0x0
  +      17        register 0 = 130
  +          qregwrite 130 0
  [1]
  $ printf 'setvcc 5000\nqrun\n' >a; printf 'setvcc 5000\n' >b
  $ keld2 trace diff a b
  first difference: line 2
  - a
  + b
          1  VCC 5.000 V
  -       2  an empty list runs
  -          qrun
  +          the trace ends here
  [1]

What is no trace:

  $ for text in 'setvcc 5000\nsing' 'setvpp 12 x' 'regwrite 1' 'qrun 5' 'regread 4' \
  >     'setvcc 5000000000'; do
  >   printf "$text\n" >trace; show 3
  > done
         1    VCC 5.000 V
  keld2: trace:2: "sing" is no call, expected a line of a trace such as "setvcc 5000"
  keld2: trace:1: "x" is no number, expected setvpp NUMBER NUMBER
  keld2: trace:1: "" is no number, expected regwrite NUMBER NUMBER
  keld2: trace:1: "5" is too much, expected qrun
  keld2: trace:1: the answer is missing, expected regread NUMBER -> ANSWER
  keld2: trace:1: "5000000000" is no number, expected setvcc NUMBER
  [65]
  $ keld2 trace show none
  keld2: none: cannot be opened: No such file or directory
  [66]
