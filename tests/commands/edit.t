The editors on files, answered by scripts.

  $ . "$TESTDIR/bench.sh"
  $ cat >mcu.toml <<'END'
  > description = "sixteen bytes and two of configuration"
  > operations = ["program"]
  > auto = ["program"]
  > [shared]
  > prgmode = 21
  > buflength = 48
  > tlength = 48
  > [[range]]
  > name = "memory"
  > file = 0
  > buffer = 0
  > length = 16
  > written = "program"
  > [[range]]
  > name = "configuration"
  > file = 32
  > buffer = 32
  > length = 2
  > written = "config"
  > [sim]
  > kind = "serial"
  > END
  $ edit() { printf "$1" >actions; shift; keld2 -q -d ./$device.toml edit "$@" --form actions; }

Configuration bytes are written back, and the rest stays; a byte that the file lacks is blank, all
entries 1:

  $ device=mcu; both='["choose", "Combo1(3)", 0]\n["choose", "Combo2(1)", 0]\n["ok"]\n'
  $ printf ':020002000102F9\n:02002000FFFFE0\n:00000001FF\n' >a.hex; edit "$both" config a.hex; cat a.hex
  :020002000102F9
  :020020000701D6
  :00000001FF
  $ printf ':0100000009F6\n:00000001FF\n' >a.hex; edit "$both" config a.hex; cat a.hex
  :0100000009F6
  :020020000701D6
  :00000001FF
  $ printf ':0100000009F6\n:0100210002DC\n:00000001FF\n' >a.hex; edit "$both" config a.hex; cat a.hex
  :0100000009F6
  :020020000700D7
  :00000001FF

A file that is not changed stays as it is, to the letter:

  $ printf ':03000000010203F7\r\n:00000001FF\r\n' >a.hex; cp a.hex before.hex
  $ edit '["cancel"]\n' config a.hex; cmp a.hex before.hex
  $ edit '' config a.hex; cmp a.hex before.hex
  keld2: edit_figkeld2 is cancelled: actions has no further actions for it, expected ["ok"] or ["cancel"]
  $ edit '["key", "Text2(0)", "7"]\n' config a.hex; cmp a.hex before.hex
  keld2: edit_figkeld2 is cancelled: actions has no further actions for it, expected ["ok"] or ["cancel"]
  $ edit '["select", "Text1"]\n["ok"]\n' config a.hex; cmp a.hex before.hex
  keld2: actions:1: Text1 is no control of edit_figkeld2, expected an option: Option2(0), Option2(1), Option2(2), Option2(3), Option2(8), Option2(9), Option1(0), Option1(1), Option2(4), Option2(5), Option2(6), Option2(7)
  $ edit '["ok"]\n' usercode a.hex
  keld2: mcu has no user code that can be edited
  [64]
  $ edit '["ok"]\n' config none.hex
  keld2: none.hex: cannot be opened: No such file or directory
  [66]

The user code of a fuse map:

  $ cat >logic.toml <<'END'
  > description = "eight fuses and a user code"
  > content = "fuses"
  > operations = ["program"]
  > auto = ["program"]
  > [shared]
  > prgmode = 41
  > buflength = 41
  > tlength = 8
  > [[range]]
  > name = "fuses"
  > file = 0
  > buffer = 0
  > length = 8
  > written = "program"
  > [[range]]
  > name = "user code"
  > file = 8
  > buffer = 8
  > length = 32
  > written = "program"
  > [sim]
  > kind = "fuses"
  > END
  $ device=logic; printf '\2made by hand*N a note*QF8*F0*L0000 10110001*\0030000' >a.jed
  $ edit '["key","Text2","0"]\n["ok"]\n' usercode a.jed; tr -d '\2\3' <a.jed
  made by hand*
  N a note*
  QF8*
  F1*
  L0 10110001*
  C008D*
  U00001111111111111111111111111111*
  1359
  $ edit '["key","Text3","A"]\n["key","Text3","B"]\n["ok"]\n' usercode a.jed; grep -a U0 a.jed
  U01000001010000101111111111111111*
  $ edit '["ok"]\n' config a.jed
  keld2: logic has no configuration bytes that can be edited
  [64]
  $ edit '["ok"]\n' usercode a.hex
  keld2: a.hex: is no fuse map, which logic needs; expected .jed
  [65]

Actions that cannot be:

  $ device=mcu
  $ for actions in 'x' '[]' '["ok"]\n\n\n{}' '["press"]' '["caret", "Text2(0)"]' \
  >     '["caret", "Text2(0)", -1]' '["caret", "Text2(0)", 1, 1.5]' '["key", 7, "a"]' \
  >     '["key", "Text2(0)", "ab"]' '["key", "Text2(0)", ""]' '["key", "Text2(0)", 8]' \
  >     '["cancel"]\n["ok"]' '["caret", "Text2(0)", 1]\n["key", "Text2", "a"]\n["ok"]' \
  >     '["choose", "Frame1", 0]' '["choose", "Combo1(0)", 2]' '["ok", 1]\n'; do
  >   edit "$actions" config a.hex; echo $?
  > done
  keld2: actions:1: no action, expected a JSON array that begins with caret, key, keydown, choose, select, ok or cancel
  65
  keld2: actions:1: no action, expected a JSON array that begins with caret, key, keydown, choose, select, ok or cancel
  65
  keld2: actions:4: no action, expected a JSON array that begins with caret, key, keydown, choose, select, ok or cancel
  65
  keld2: actions:1: there is no action press, expected a JSON array that begins with caret, key, keydown, choose, select, ok or cancel
  65
  keld2: actions:1: 2 elements, expected ["caret", BOX, POSITION] or ["caret", BOX, POSITION, LENGTH]
  65
  keld2: actions:1: -1 is no whole number from 0 to 2147483647, expected ["caret", BOX, POSITION] or ["caret", BOX, POSITION, LENGTH]
  65
  keld2: actions:1: 1.5 is no whole number from 0 to 2147483647, expected ["caret", BOX, POSITION] or ["caret", BOX, POSITION, LENGTH]
  65
  keld2: actions:1: 7 is no name, expected ["key", BOX, CHARACTER] with a text of one character
  65
  keld2: actions:1: "ab" is no character, expected ["key", BOX, CHARACTER] with a text of one character
  65
  keld2: actions:1: "" is no character, expected ["key", BOX, CHARACTER] with a text of one character
  65
  keld2: actions:1: 8 is no character, expected ["key", BOX, CHARACTER] with a text of one character
  65
  keld2: actions:2: an action behind the one that closes the editor, expected a blank line
  65
  keld2: actions:2: Text2 is no control of edit_figkeld2, expected a text box: Text2(0)
  65
  keld2: actions:1: Frame1 is a frame, expected a combo: Combo1(0), Combo1(1), Combo1(2), Combo1(3), Combo2(0), Combo2(1)
  65
  keld2: actions:1: Combo1(0) has no entry 2, expected an index from 0 to 1
  65
  keld2: actions:1: 2 elements, expected ["ok"]
  65
  $ cmp a.hex before.hex

The editors that a job's calls open take one block of actions each; a wrong action ends the session
before the next call:

  $ printf '[shared]\nprgmode = 1\ntlength = 4\nbuflength = 64\n[buffer]\nfill = 48\n' >job.toml
  $ printf '[run]\ncalls = ["usercode", "editfigkeld2"]\n' >>job.toml; : >r
  $ job() { printf "$1" >actions
  >   keld2 job job.toml --replay r --form actions --form-log log --dump dump
  >   status=$?; jq -r '.ibuffer[8:18]' dump; return $status; }
  $ job '["key","Text1","1"]\n["ok"]\n\n["select","Option2(1)"]\n["ok"]\n'
  3130303022
  $ jq -c '[.window, .controls.Text1.text]' log
  ["usercode0","00000000000000000000000000000000"]
  ["usercode0","10000000000000000000000000000000"]
  ["edit_figkeld2",null]
  ["edit_figkeld2",null]
  $ job '["ok"]\n\n["cancel"]\n'
  3030303030
  $ job '["key","Text1","1"]\n\n'
  keld2: usercode0 is cancelled: actions has no further actions for it, expected ["ok"] or ["cancel"]
  keld2: edit_figkeld2 is cancelled: actions has no further actions for it, expected ["ok"] or ["cancel"]
  3030303030
  $ job '["key","Text4","1"]\n["ok"]\n\n["ok"]\n'
  keld2: actions:1: Text4 is no control of usercode0, expected a text box: Text1, Text2, Text3
  [65]

The members that a log has of each kind of control:

  $ job '["ok"]\n'
  keld2: edit_figkeld2 is cancelled: actions has no further actions for it, expected ["ok"] or ["cancel"]
  3030303030
  $ jq -c '.controls | to_entries | map({key: .key[:4], value: (.value | keys)}) | unique | from_entries' log
  {"Canc":["enabled","left","text","top","visible"],"Labe":["enabled","left","text","top","visible"],"OKBu":["enabled","left","text","top","visible"],"Text":["caret","enabled","left","selection","text","top","visible"]}
  {"Canc":["enabled","left","text","top","visible"],"Comb":["enabled","entries","index","left","text","top","visible"],"Fram":["enabled","left","text","top","visible"],"Labe":["enabled","left","text","top","visible"],"OKBu":["enabled","left","text","top","visible"],"Opti":["enabled","left","selected","text","top","visible"],"Text":["caret","enabled","left","selection","text","top","visible"]}
