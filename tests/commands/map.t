Fuse maps as pictures.

  $ . "$TESTDIR/bench.sh"
  $ jedec $(fuses 17200) >a.jed; jedec $(fuses 17200 | sed 's/^./0/') >b.jed
  $ map() { keld2 -d logic-17200-a map "$@"; }

As text, two rows a line, with another map as well:

  $ map a.jed -q | sed -n '1,2p' | cut -c1-40
  \xe2\x96\x88\xe2\x96\x80\xe2\x96\x84\xe2\x96\x88\xe2\x96\x88 \xe2\x96\x88\xe2\x96\x88\xe2\x96\x80\xe2\x96\x84\xe2\x96\x88\xe2\x96\x88 \xe2\x96\x88\xe2\x96 (esc)
  \xe2\x96\x80\xe2\x96\x84\xe2\x96\x88\xe2\x96\x88 \xe2\x96\x88\xe2\x96\x88\xe2\x96\x80\xe2\x96\x84\xe2\x96\x88\xe2\x96\x88 \xe2\x96\x88\xe2\x96\x88\xe2\x96 (esc)
  $ map a.jed --against b.jed 2>&1 | tail -2
  rows with differences: 0
  keld2: 100 rows of 172 fuses, 1 differ

As files, by their endings, and never over another unasked:

  $ map a.jed map.svg --against b.jed; grep -o '<rect.*' map.svg | sed -n '1,3p'
  keld2: 100 rows of 172 fuses, 1 differ
  <rect x="0" y="0" width="1" height="1" fill="#ff9a3c"/>
  <rect x="1" y="0" width="1" height="1" fill="#e6eaf0"/>
  <rect x="2" y="0" width="1" height="1" fill="#222b3a"/>
  $ map a.jed map.png; head -c 24 map.png | od -An -tx1
  keld2: 100 rows of 172 fuses
   89 50 4e 47 0d 0a 1a 0a 00 00 00 0d 49 48 44 52
   00 00 02 b0 00 00 01 90
  $ map a.jed map.png
  keld2: map.png: exists already; --force overwrites it
  [66]
  $ map a.jed map.png --force --quiet

What cannot be:

  $ map a.jed map.gif
  keld2: map.gif: unknown kind of picture, expected .png or .svg
  [64]
  $ map none.jed
  keld2: none.jed: cannot be opened: No such file or directory
  [66]
  $ keld2 -d serial-2k map a.jed
  keld2: serial-2k has no fuse map, expected a logic device
  [64]
  $ keld2 map a.jed
  keld2: no device, expected -d DEVICE or the environment variable KELD2_DEVICE
  [64]
