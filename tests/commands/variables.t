Every shared variable has its type and its count of elements, which hosts rely on.

  $ job() { printf '[shared]\n%s = %s\n' $1 "$2" >j.toml; keld2 job j.toml --replay r 2>&1 | sed 's/.*shared. //'; }
  $ many() { echo "[$(yes 0 | head -n $1 | paste -sd,)]"; }
  $ : >r; while read name count; do
  >   job $name {}; job $name $(many $((count + 1))); done <<END
  > ibuf1 20
  > ubuf1 20
  > ubuf2 300
  > ibuf2 65600
  > usbpip0readresult 2
  > usbpip2readresult 2
  > arrybuf 210
  > prgnote 30
  > prgresult 3
  > wltbigendbuf 4
  > bvccpin 4
  > bgndpin 4
  > bvpppin 4
  > bvcc 4
  > bvcch 4
  > bvpp 4
  > buflength 4
  > Language 4
  > pagelength 4
  > modeltype 4
  > wfig 6
  > chipidtestmode 4
  > pwte 4
  > figmode 4
  > chippin 4
  > wretry 4
  > prgmode 4
  > wordmode 4
  > woption 4
  > wautonum 4
  > tlength 4
  > compid 4
  > typeid 4
  > wsign 4
  > buftype 4
  > autoprg 11
  > rambknum 4
  > MainmnuPrg 20
  > MainRtstr 3
  > ubuflg 3
  > ramlg 3
  > wlverifyvcc 3
  > algo 4
  > figvol 4
  > wwarnno 4
  > spdter 4
  > menu 14
  > order 10
  > pintestmap 3
  > wordmode0 3
  > ppin 13
  > serial 3
  > typeformat 3
  > ICnum 80
  > wcompany 4
  > wtype 3
  > usbable 10
  > algorithm 4
  > selmode 3
  > algobuf 131072
  > ibuffer66 15
  > END
  ibuf1: is a table, expected an integer from 0 to 255
  ibuf1: 21 elements, expected at most 20
  ubuf1: is a table, expected an integer from 0 to 255
  ubuf1: 21 elements, expected at most 20
  ubuf2: is a table, expected an integer from 0 to 255
  ubuf2: 301 elements, expected at most 300
  ibuf2: is a table, expected an integer from 0 to 255
  ibuf2: 65601 elements, expected at most 65600
  usbpip0readresult: is a table, expected true or false
  usbpip0readresult: 3 elements, expected at most 2
  usbpip2readresult: is a table, expected an integer from 0 to 255
  usbpip2readresult: 3 elements, expected at most 2
  arrybuf: is a table, expected an integer from 0 to 255
  arrybuf: 211 elements, expected at most 210
  prgnote: is a table, expected a text
  prgnote: 31 elements, expected at most 30
  prgresult: is a table, expected an integer from 0 to 255
  prgresult: 4 elements, expected at most 3
  wltbigendbuf: is a table, expected a number
  wltbigendbuf: 5 elements, expected at most 4
  bvccpin: is a table, expected an integer from 0 to 255
  bvccpin: 5 elements, expected at most 4
  bgndpin: is a table, expected an integer from 0 to 255
  bgndpin: 5 elements, expected at most 4
  bvpppin: is a table, expected an integer from 0 to 255
  bvpppin: 5 elements, expected at most 4
  bvcc: is a table, expected an integer from -32768 to 32767
  bvcc: 5 elements, expected at most 4
  bvcch: is a table, expected an integer from -32768 to 32767
  bvcch: 5 elements, expected at most 4
  bvpp: is a table, expected an integer from -32768 to 32767
  bvpp: 5 elements, expected at most 4
  buflength: is a table, expected an integer from -2147483648 to 2147483647
  buflength: 5 elements, expected at most 4
  Language: is a table, expected an integer from -2147483648 to 2147483647
  Language: 5 elements, expected at most 4
  pagelength: is a table, expected an integer from -32768 to 32767
  pagelength: 5 elements, expected at most 4
  modeltype: is a table, expected an integer from -32768 to 32767
  modeltype: 5 elements, expected at most 4
  wfig: is a table, expected an integer from 0 to 255
  wfig: 7 elements, expected at most 6
  chipidtestmode: is a table, expected true or false
  chipidtestmode: 5 elements, expected at most 4
  pwte: is a table, expected an integer from -2147483648 to 2147483647
  pwte: 5 elements, expected at most 4
  figmode: is a table, expected an integer from 0 to 255
  figmode: 5 elements, expected at most 4
  chippin: is a table, expected an integer from -32768 to 32767
  chippin: 5 elements, expected at most 4
  wretry: is a table, expected an integer from -32768 to 32767
  wretry: 5 elements, expected at most 4
  prgmode: is a table, expected an integer from 0 to 255
  prgmode: 5 elements, expected at most 4
  wordmode: is a table, expected an integer from 0 to 255
  wordmode: 5 elements, expected at most 4
  woption: is a table, expected an integer from 0 to 255
  woption: 5 elements, expected at most 4
  wautonum: is a table, expected an integer from 0 to 255
  wautonum: 5 elements, expected at most 4
  tlength: is a table, expected an integer from -2147483648 to 2147483647
  tlength: 5 elements, expected at most 4
  compid: is a table, expected an integer from -32768 to 32767
  compid: 5 elements, expected at most 4
  typeid: is a table, expected an integer from -32768 to 32767
  typeid: 5 elements, expected at most 4
  wsign: is a table, expected an integer from 0 to 255
  wsign: 5 elements, expected at most 4
  buftype: is a table, expected an integer from 0 to 255
  buftype: 5 elements, expected at most 4
  autoprg: is a table, expected an integer from 0 to 255
  autoprg: 12 elements, expected at most 11
  rambknum: is a table, expected an integer from 0 to 255
  rambknum: 5 elements, expected at most 4
  MainmnuPrg: is a table, expected a text
  MainmnuPrg: 21 elements, expected at most 20
  MainRtstr: is a table, expected a text
  MainRtstr: 4 elements, expected at most 3
  ubuflg: is a table, expected an integer from -32768 to 32767
  ubuflg: 4 elements, expected at most 3
  ramlg: is a table, expected an integer from -2147483648 to 2147483647
  ramlg: 4 elements, expected at most 3
  wlverifyvcc: is a table, expected an integer from -2147483648 to 2147483647
  wlverifyvcc: 4 elements, expected at most 3
  algo: is a table, expected a text
  algo: 5 elements, expected at most 4
  figvol: is a table, expected an integer from 0 to 255
  figvol: 5 elements, expected at most 4
  wwarnno: is a table, expected an integer from 0 to 255
  wwarnno: 5 elements, expected at most 4
  spdter: is a table, expected a text
  spdter: 5 elements, expected at most 4
  menu: is a table, expected an integer from 0 to 255
  menu: 15 elements, expected at most 14
  order: is a table, expected an integer from 0 to 255
  order: 11 elements, expected at most 10
  pintestmap: is a table, expected a text
  pintestmap: 4 elements, expected at most 3
  wordmode0: is a table, expected an integer from 0 to 255
  wordmode0: 4 elements, expected at most 3
  ppin: is a table, expected a text
  ppin: 14 elements, expected at most 13
  serial: is a table, expected an integer from -2147483648 to 2147483647
  serial: 4 elements, expected at most 3
  typeformat: is a table, expected an integer from 0 to 255
  typeformat: 4 elements, expected at most 3
  ICnum: is a table, expected an integer from 0 to 255
  ICnum: 81 elements, expected at most 80
  wcompany: is a table, expected a text
  wcompany: 5 elements, expected at most 4
  wtype: is a table, expected a text
  wtype: 4 elements, expected at most 3
  usbable: is a table, expected true or false
  usbable: 11 elements, expected at most 10
  algorithm: is a table, expected a text
  algorithm: 5 elements, expected at most 4
  selmode: is a table, expected an integer from 0 to 255
  selmode: 4 elements, expected at most 3
  algobuf: is a table, expected an integer from 0 to 255
  algobuf: 131073 elements, expected at most 131072
  ibuffer66: is a table, expected an integer from 0 to 255
  ibuffer66: 16 elements, expected at most 15
