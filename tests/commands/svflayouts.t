Logic devices worked by SVF texts, in every layout of the texts.

  $ . "$TESTDIR/bench.sh"
  $ svf() { # FILE OPERATION LAYOUT [MAP]: what svf make makes, into a file
  >   keld2 -d $device --force svf make -o $1 --operation $2 --layout $3 $4
  > }
  $ geometry() { # cells, and cells of a row
  >   keld2 devices info $device | sed -n 's/.* \([0-9]*\) cells in rows of \([0-9]*\).*/\1 \2/p'
  > }
  $ played=$(keld2 devices list | sed -n 's/^\(logic-[^ ]*\) .*SVF family.*/\1/p')

  $ why() {
  >   jq -c '.explanation |
  >     [.count] + (.mismatches[0] | [.line, .row, .bit, .fuse, .expected, .read])'
  > }
  $ flipped() { printf '%s%d' ${1:0:-1} $((1 - ${1: -1})); }

Each reads in every layout that compares rows, and finds the last fuse in it; 64 where there is no
such layout:

  $ layouts() {
  >   chip $1; read -r cells width < <(geometry); map=$(fuses $cells)
  >   jedec $map >wanted.jed; jedec $(flipped $map) >other.jed
  >   on -q program wanted.jed
  >   for layout in A2 B1 B2 C1 C2 C3 C4; do
  >     svf good.svf verify $layout wanted.jed 2>said || { echo "$1 $layout $?"; continue; }
  >     svf bad.svf verify $layout other.jed
  >     keld2 -d $1 check good.svf >said; statuses=$?
  >     on -q play good.svf; statuses+=$?
  >     echo "$1 $layout $statuses $(json play bad.svf | why)"
  >   done
  > }
  $ for device in $played; do layouts $device; done
  logic-101844 A2 00 [1,89,82,1241,null,0,1]
  logic-101844 B1 00 [1,171,82,1241,null,0,1]
  logic-101844 B2 00 [1,253,82,1241,null,0,1]
  logic-101844 C1 00 [1,499,82,1241,null,0,1]
  logic-101844 C2 64
  logic-101844 C3 64
  logic-101844 C4 64
  logic-11529 A2 00 [1,59,52,113,null,1,0]
  logic-11529 B1 00 [1,111,52,113,null,1,0]
  logic-11529 B2 00 [1,163,52,113,null,1,0]
  logic-11529 C1 00 [1,319,52,113,null,1,0]
  logic-11529 C2 00 [1,163,52,113,null,1,0]
  logic-11529 C3 64
  logic-11529 C4 00 [1,111,52,113,null,1,0]
  logic-12275 A2 00 [1,55,48,259,null,1,0]
  logic-12275 B1 00 [1,103,48,259,null,1,0]
  logic-12275 B2 00 [1,151,48,259,null,1,0]
  logic-12275 C1 00 [1,295,48,259,null,1,0]
  logic-12275 C2 00 [1,151,48,259,null,1,0]
  logic-12275 C3 64
  logic-12275 C4 00 [1,103,48,259,null,1,0]
  logic-141696 A2 00 [1,89,82,1727,null,0,1]
  logic-141696 B1 00 [1,171,82,1727,null,0,1]
  logic-141696 B2 00 [1,253,82,1727,null,0,1]
  logic-141696 C1 00 [1,499,82,1727,null,0,1]
  logic-141696 C2 00 [1,253,82,1727,null,0,1]
  logic-141696 C3 64
  logic-141696 C4 00 [1,171,82,1727,null,0,1]
  logic-16160 A2 00 [1,87,80,201,null,0,1]
  logic-16160 B1 00 [1,167,80,201,null,0,1]
  logic-16160 B2 00 [1,247,80,201,null,0,1]
  logic-16160 C1 00 [1,487,80,201,null,0,1]
  logic-16160 C2 00 [1,247,80,201,null,0,1]
  logic-16160 C3 64
  logic-16160 C4 00 [1,167,80,201,null,0,1]
  logic-17019 A2 00 [1,100,93,182,null,0,1]
  logic-17019 B1 00 [1,193,93,182,null,0,1]
  logic-17019 B2 00 [1,286,93,182,null,0,1]
  logic-17019 C1 00 [1,565,93,182,null,0,1]
  logic-17019 C2 00 [1,286,93,182,null,0,1]
  logic-17019 C3 64
  logic-17019 C4 00 [1,193,93,182,null,0,1]
  logic-209356 A2 00 [1,127,120,1867,null,1,0]
  logic-209356 B1 00 [1,247,120,1867,null,1,0]
  logic-209356 B2 00 [1,367,120,1867,null,1,0]
  logic-209356 C1 00 [1,727,120,1867,null,1,0]
  logic-209356 C2 00 [1,367,120,1867,null,1,0]
  logic-209356 C3 64
  logic-209356 C4 00 [1,247,120,1867,null,1,0]
  logic-23328 A2 00 [1,736,729,31,null,0,1]
  logic-23328 B1 00 [1,1465,729,31,null,0,1]
  logic-23328 B2 00 [1,2194,729,31,null,0,1]
  logic-23328 C1 00 [1,4381,729,31,null,0,1]
  logic-23328 C2 00 [1,2194,729,31,null,0,1]
  logic-23328 C3 64
  logic-23328 C4 64
  logic-24481 A2 00 [1,111,104,122,null,1,0]
  logic-24481 B1 00 [1,215,104,122,null,1,0]
  logic-24481 B2 00 [1,319,104,122,null,1,0]
  logic-24481 C1 00 [1,631,104,122,null,1,0]
  logic-24481 C2 00 [1,319,104,122,null,1,0]
  logic-24481 C3 64
  logic-24481 C4 00 [1,215,104,122,null,1,0]
  logic-30240 A2 00 [1,87,80,377,null,0,1]
  logic-30240 B1 00 [1,167,80,377,null,0,1]
  logic-30240 B2 00 [1,247,80,377,null,0,1]
  logic-30240 C1 00 [1,487,80,377,null,0,1]
  logic-30240 C2 00 [1,247,80,377,null,0,1]
  logic-30240 C3 64
  logic-30240 C4 00 [1,167,80,377,null,0,1]
  logic-30608 A2 00 [1,1987,1980,31,null,0,1]
  logic-30608 B1 00 [1,3967,1980,31,null,0,1]
  logic-30608 B2 00 [1,5947,1980,31,null,0,1]
  logic-30608 C1 00 [1,11887,1980,31,null,0,1]
  logic-30608 C2 00 [1,5947,1980,31,null,0,1]
  logic-30608 C3 64
  logic-30608 C4 00 [1,3967,1980,31,null,0,1]
  logic-32160 A2 00 [1,141,134,239,null,0,1]
  logic-32160 B1 00 [1,275,134,239,null,0,1]
  logic-32160 B2 00 [1,409,134,239,null,0,1]
  logic-32160 C1 00 [1,811,134,239,null,0,1]
  logic-32160 C2 00 [1,409,134,239,null,0,1]
  logic-32160 C3 64
  logic-32160 C4 00 [1,275,134,239,null,0,1]
  logic-33480 A2 00 [1,100,93,359,null,1,0]
  logic-33480 B1 00 [1,193,93,359,null,1,0]
  logic-33480 B2 00 [1,286,93,359,null,1,0]
  logic-33480 C1 00 [1,565,93,359,null,1,0]
  logic-33480 C2 00 [1,286,93,359,null,1,0]
  logic-33480 C3 64
  logic-33480 C4 00 [1,193,93,359,null,1,0]
  logic-63360 A2 00 [1,87,80,791,null,1,0]
  logic-63360 B1 00 [1,167,80,791,null,1,0]
  logic-63360 B2 00 [1,247,80,791,null,1,0]
  logic-63360 C1 00 [1,487,80,791,null,1,0]
  logic-63360 C2 00 [1,247,80,791,null,1,0]
  logic-63360 C3 64
  logic-63360 C4 00 [1,167,80,791,null,1,0]
  logic-75840 A2 00 [1,165,158,479,null,0,1]
  logic-75840 B1 00 [1,323,158,479,null,0,1]
  logic-75840 B2 00 [1,481,158,479,null,0,1]
  logic-75840 C1 00 [1,955,158,479,null,0,1]
  logic-75840 C2 00 [1,481,158,479,null,0,1]
  logic-75840 C3 64
  logic-75840 C4 00 [1,323,158,479,null,0,1]
  logic-8160 A2 00 [1,109,102,79,null,0,1]
  logic-8160 B1 00 [1,211,102,79,null,0,1]
  logic-8160 B2 00 [1,313,102,79,null,0,1]
  logic-8160 C1 00 [1,619,102,79,null,0,1]
  logic-8160 C2 00 [1,313,102,79,null,0,1]
  logic-8160 C3 64
  logic-8160 C4 00 [1,211,102,79,null,0,1]
  logic-93312 A2 00 [1,1174,1167,79,null,0,1]
  logic-93312 B1 00 [1,2341,1167,79,null,0,1]
  logic-93312 B2 00 [1,3508,1167,79,null,0,1]
  logic-93312 C1 00 [1,7009,1167,79,null,0,1]
  logic-93312 C2 00 [1,3508,1167,79,null,0,1]
  logic-93312 C3 64
  logic-93312 C4 64
