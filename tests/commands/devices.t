The catalogue of devices.

  $ keld2 devices list
  arm-a-256k-word     Device with an ARM core, family A, 256 KiB of flash in words of two bytes, verified at two voltages
  arm-a-64k           Device with an ARM core, family A, 64 KiB of flash in words of one byte
  arm-b-128k-file     Device with an ARM core, family B, 128 KiB of flash, programmed from a data file
  arm-b-1m            Device with an ARM core, family B, 1 MiB of flash
  arm-b-32k-serial    Device with an ARM core, family B, 32 KiB of flash, with a serial number
  logic-101844        Logic device, 101844 cells in rows of 1242, SVF family 50
  logic-11529         Logic device, 5928 cells in rows of 114, SVF family 92, geometry 11529
  logic-12275         Logic device, 12480 cells in rows of 260, SVF family 90, geometry 12275
  logic-141696        Logic device, 141696 cells in rows of 1728, SVF family 83
  logic-16160         Logic device, 16160 cells in rows of 202, SVF family 80
  logic-17019         Logic device, 17019 cells in rows of 183, SVF family 87
  logic-17200-a       Fuse-array logic device, 17200 fuses in rows of 172, wiring 41
  logic-17200-b       Fuse-array logic device, 17200 fuses in rows of 172, wiring 42
  logic-17200-c       Fuse-array logic device, 17200 fuses in rows of 172, wiring 43
  logic-209356        Logic device, 224160 cells in rows of 1868, SVF family 91, geometry 209356
  logic-23328         Logic device, 23328 cells in rows of 32, SVF family 94
  logic-24481         Logic device, 12792 cells in rows of 123, SVF family 93, geometry 24481
  logic-30240         Logic device, 30240 cells in rows of 378, SVF family 81
  logic-30608         Logic device, 63072 cells in rows of 32, SVF family 89, geometry 30608
  logic-32160         Logic device, 32160 cells in rows of 240, SVF family 85
  logic-33480         Logic device, 33480 cells in rows of 360, SVF family 88
  logic-35600-a       Fuse-array logic device, 35600 fuses in rows of 356, wiring 41
  logic-35600-b       Fuse-array logic device, 35600 fuses in rows of 356, wiring 42
  logic-35600-c       Fuse-array logic device, 35600 fuses in rows of 356, wiring 43
  logic-63360         Logic device, 63360 cells in rows of 792, SVF family 82
  logic-75840         Logic device, 75840 cells in rows of 480, SVF family 86
  logic-8160          Logic device, 8160 cells in rows of 80, SVF family 84
  logic-93312         Logic device, 93360 cells in rows of 80, SVF family 95, geometry 93312
  parallel-byte-128k  Microcontroller on parallel lines, 131072 bytes from address 40000, programmed a byte at a time
  parallel-byte-192k  Microcontroller on parallel lines, 196608 bytes from address 40000, programmed a byte at a time
  parallel-byte-256k  Microcontroller on parallel lines, 262144 bytes from address 40000, programmed a byte at a time
  parallel-byte-64k   Microcontroller on parallel lines, 65536 bytes, programmed a byte at a time
  parallel-page-384k  Microcontroller on parallel lines, 393216 bytes, programmed a page at a time
  parallel-page-512k  Microcontroller on parallel lines, 524288 bytes, programmed a page at a time
  parallel-page-64k   Microcontroller on parallel lines, 65536 bytes, programmed a page at a time
  serial-2k           Microcontroller with a serial byte port, 2048 bytes of program memory
  serial-4k           Microcontroller with a serial byte port, 4096 bytes of program memory
  $ keld2 devices search SERIAL 4096
  serial-4k  Microcontroller with a serial byte port, 4096 bytes of program memory
  $ keld2 devices search toaster
  keld2: no device matches "toaster"
  [1]
  $ keld2 devices info serial-2k
  serial-2k: Microcontroller with a serial byte port, 2048 bytes of program memory
  operations: read, verify, blank, compare, program, erase, config
  auto: erase, blank, program, verify
  files: .bin, .hex, .ihx, .s19, .srec, .mot
    0000 to 07FF  program memory, written by program
    0800 to 081F  ID area, written by program
    0820 to 0821  configuration bytes, written by config
  file: */devices/serial-2k.toml (glob)
  $ keld2 devices info serial-2k --json | jq -c .ranges
  [{"name":"program memory","file":0,"buffer":0,"length":2048,"written":"program"},{"name":"ID area","file":2048,"buffer":2048,"length":32,"written":"program"},{"name":"configuration bytes","file":2080,"buffer":2080,"length":2,"written":"config"}]
  $ KELD2_DEVICE=serial-4k keld2 -q erase
  keld2: simulated programmer, a fresh chip that is not kept (-p sim:image=FILE keeps it)
  $ KELD2_DEVICES=/no/such keld2 devices list
  keld2: /no/such: the folder of the devices cannot be opened: No such file or directory
  [66]
  $ echo 'description = 5' >broken.toml
  $ KELD2_DEVICES=. keld2 devices list
  keld2: ./broken.toml:1: description: is an integer, expected one line of text
  [65]
