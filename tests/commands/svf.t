Logic devices that the plug-in works by SVF texts.

  $ . "$TESTDIR/bench.sh"
  $ svf() { # FILE OPERATION LAYOUT [MAP]: what svf make makes, into a file
  >   keld2 -d $device --force svf make -o $1 --operation $2 --layout $3 $4
  > }
  $ geometry() { # cells, and cells of a row
  >   keld2 devices info $device | sed -n 's/.* \([0-9]*\) cells in rows of \([0-9]*\).*/\1 \2/p'
  > }
  $ played=$(keld2 devices list | sed -n 's/^\(logic-[^ ]*\) .*SVF family.*/\1/p')

Every SVF family has a device:

  $ keld2 devices list | sed -n 's/.*SVF family \([0-9]*\).*/\1/p' | sort -n | tr '\n' ' '
  50 80 81 82 83 84 85 86 87 88 89 90 91 92 93 94 95  (no-eol)

Each goes through its life: erase, blank, program, verify, blank; three fuses in turn the other way;
secure, verify, erase, auto, verify, and verify with another device code. A fuse that differs is
found and explained: how many differ, the line of the statement, its row among those read back (the
device code's included), its bit there, its number in the map, the bit expected and the bit read.

  $ why() {
  >   jq -c '.explanation |
  >     [.count] + (.mismatches[0] | [.line, .row, .bit, .fuse, .expected, .read])'
  > }
  $ flipped() { printf '%s%d' ${1:0:-1} $((1 - ${1: -1})); }
  $ way() {
  >   chip $1; read -r cells width < <(geometry)
  >   map=$(fuses $cells); jedec $map >wanted.jed; jedec $(flipped $map) >other.jed
  >   statuses=
  >   for step in erase blank "program wanted.jed" "verify wanted.jed" blank; do
  >     on -q $step >said; statuses+=$?
  >   done
  >   echo "$device $statuses"
  >   for fuse in 0 $((cells / width / 2 * width + 5)) $((cells - 1)); do
  >     fault=stuck=$fuse:0:$((1 - ${map:fuse:1}))
  >     json verify wanted.jed | why
  >   done
  >   fault=; statuses=
  >   for step in secure "verify wanted.jed" erase "auto other.jed" "verify other.jed"; do
  >     on -q $step >said; statuses+=$?
  >   done
  >   fault=wrongid; on verify other.jed >said; echo $statuses$? $(grep "Device Code Error" said)
  > }
  $ for device in $played; do way $device; done
  logic-101844 00001
  [1,8,1,0,0,1,0]
  [1,49,42,5,50927,0,1]
  [1,89,82,1241,101843,1,0]
  0106411 >>Warning! Device Code Error!
  logic-11529 00001
  [1,8,1,0,0,1,0]
  [1,34,27,5,2969,1,0]
  [1,59,52,113,5927,0,1]
  010001 >>Warning! Device Code Error!
  logic-12275 00001
  [1,8,1,0,0,1,0]
  [1,32,25,5,6245,1,0]
  [1,55,48,259,12479,0,1]
  010001 >>Warning! Device Code Error!
  logic-141696 00001
  [1,8,1,0,0,1,0]
  [1,49,42,5,70853,1,0]
  [1,89,82,1727,141695,1,0]
  010001 >>Warning! Device Code Error!
  logic-16160 00001
  [1,8,1,0,0,1,0]
  [1,48,41,5,8085,1,0]
  [1,87,80,201,16159,1,0]
  010001 >>Warning! Device Code Error!
  logic-17019 00001
  [1,8,1,0,0,1,0]
  [1,54,47,5,8423,0,1]
  [1,100,93,182,17018,1,0]
  010001 >>Warning! Device Code Error!
  logic-209356 00001
  [1,8,1,0,0,1,0]
  [1,68,61,5,112085,1,0]
  [1,127,120,1867,224159,0,1]
  010001 >>Warning! Device Code Error!
  logic-23328 00001
  [1,8,1,0,0,1,0]
  [1,372,365,5,11653,0,1]
  [1,736,729,31,23327,1,0]
  010001 >>Warning! Device Code Error!
  logic-24481 00001
  [1,8,1,0,0,1,0]
  [1,60,53,5,6401,1,0]
  [1,111,104,122,12791,0,1]
  010001 >>Warning! Device Code Error!
  logic-30240 00001
  [1,8,1,0,0,1,0]
  [1,48,41,5,15125,0,1]
  [1,87,80,377,30239,1,0]
  010001 >>Warning! Device Code Error!
  logic-30608 00001
  [1,17,10,0,0,1,0]
  [1,1002,995,5,31525,1,0]
  [1,1987,1980,31,63071,1,0]
  010001 >>Warning! Device Code Error!
  logic-32160 00001
  [1,8,1,0,0,1,0]
  [1,75,68,5,16085,1,0]
  [1,141,134,239,32159,1,0]
  010001 >>Warning! Device Code Error!
  logic-33480 00001
  [1,8,1,0,0,1,0]
  [1,54,47,5,16565,1,0]
  [1,100,93,359,33479,0,1]
  010001 >>Warning! Device Code Error!
  logic-63360 00001
  [1,8,1,0,0,1,0]
  [1,48,41,5,31685,1,0]
  [1,87,80,791,63359,0,1]
  010001 >>Warning! Device Code Error!
  logic-75840 00001
  [1,8,1,0,0,1,0]
  [1,87,80,5,37925,1,0]
  [1,165,158,479,75839,1,0]
  010001 >>Warning! Device Code Error!
  logic-8160 00001
  [1,8,1,0,0,1,0]
  [1,59,52,5,4085,1,0]
  [1,109,102,79,8159,1,0]
  010001 >>Warning! Device Code Error!
  logic-93312 00001
  [1,8,1,0,0,1,0]
  [1,591,584,5,46645,1,0]
  [1,1174,1167,79,93359,1,0]
  010001 >>Warning! Device Code Error!

Each plays the texts of its operations:

  $ texts() {
  >   chip $1; read -r cells width < <(geometry); jedec $(fuses $cells) >wanted.jed; statuses=
  >   for operation in id erase blank program verify secure; do
  >     case $operation in program | verify) map=wanted.jed ;; *) map= ;; esac
  >     svf text.svf $operation A2 $map
  >     keld2 -d $device check text.svf >said; statuses+=$?
  >     on -q play text.svf; statuses+=$?
  >   done
  >   echo "$device $statuses"
  > }
  $ for device in $played; do texts $device; done
  logic-101844 000000000000
  logic-11529 000000000000
  logic-12275 000000000000
  logic-141696 000000000000
  logic-16160 000000000000
  logic-17019 000000000000
  logic-209356 000000000000
  logic-23328 000000000000
  logic-24481 000000000000
  logic-30240 000000000000
  logic-30608 000000000000
  logic-32160 000000000000
  logic-33480 000000000000
  logic-63360 000000000000
  logic-75840 000000000000
  logic-8160 000000000000
  logic-93312 000000000000
