Microcontrollers with a parallel bus, from one process to the next.

  $ . "$TESTDIR/bench.sh"

Each device of the catalogue keeps its content until it is erased:

  $ keeps() { # DEVICE BYTES
  >   chip $1; bytes $2 >a.bin
  >   steps "program a.bin" "read --force out.bin" erase blank; cmp a.bin out.bin
  > }
  $ keeps parallel-byte-64k 65536
  program a.bin: 0
  read --force out.bin: 0
  erase: 0
  blank: 0
  $ keeps parallel-byte-128k 131072
  program a.bin: 0
  read --force out.bin: 0
  erase: 0
  blank: 0
  $ keeps parallel-byte-192k 196608
  program a.bin: 0
  read --force out.bin: 0
  erase: 0
  blank: 0
  $ keeps parallel-byte-256k 262144
  program a.bin: 0
  read --force out.bin: 0
  erase: 0
  blank: 0
  $ keeps parallel-page-64k 65536
  program a.bin: 0
  read --force out.bin: 0
  erase: 0
  blank: 0
  $ keeps parallel-page-384k 393216
  program a.bin: 0
  read --force out.bin: 0
  erase: 0
  blank: 0
  $ keeps parallel-page-512k 524288
  program a.bin: 0
  read --force out.bin: 0
  erase: 0
  blank: 0

The whole way, and the faults of both kinds:

  $ bytes 65536 >a.bin; flip a.bin 18 0 255 16384 50000 65535 >b.bin
  $ way() { # DEVICE
  >   chip $1
  >   steps "program a.bin" blank "verify a.bin"
  >   json compare b.bin | jq -c '[.differences[].address]'
  >   steps "program b.bin"
  >   steps erase "auto b.bin" "verify b.bin"
  >   for fault in stuck=0x1234:6:0 bulkfail=1 bulkfail nopower; do
  >     echo "with $fault"; steps erase blank "program a.bin"
  >   done
  > }
  $ way parallel-byte-64k
  program a.bin: 0
  blank: 1
  verify a.bin: 0
  ["000000","0000FF","004000","00C350","00FFFF"]
  program b.bin: 1
  erase: 0
  auto b.bin: 0
  verify b.bin: 0
  with stuck=0x1234:6:0
  erase: 1
  blank: 1
  program a.bin: 0
  with bulkfail=1
  erase: 0
  blank: 0
  program a.bin: 0
  with bulkfail
  erase: 3
  blank: 3
  program a.bin: 3
  with nopower
  erase: 0
  blank: 0
  program a.bin: 1
  $ way parallel-page-64k
  program a.bin: 0
  blank: 1
  verify a.bin: 0
  ["000000","0000FF","004000","00C350","00FFFF"]
  program b.bin: 1
  erase: 0
  auto b.bin: 0
  verify b.bin: 0
  with stuck=0x1234:6:0
  erase: 1
  blank: 1
  program a.bin: 0
  with bulkfail=1
  erase: 0
  blank: 0
  program a.bin: 0
  with bulkfail
  erase: 3
  blank: 3
  program a.bin: 3
  with nopower
  erase: 0
  blank: 0
  program a.bin: 1
