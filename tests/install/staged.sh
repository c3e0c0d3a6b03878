#!/usr/bin/env bash
# Installs the build into a folder of its own, runs keld2 from there on the installed catalogue, and
# checks man pages and bash completion against the program.
# usage: staged.sh BUILD_DIR SOURCE_DIR
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "staged: $*" >&2; exit 1; }
cmake --install "$1" --prefix "$work/prefix" >"$work/install.log" || { cat "$work/install.log"; exit 1; }
export PATH=$work/prefix/bin:$PATH
unset KELD2_DEVICES KELD2_DEVICE
cd "$work"

# the installed catalogue, whole, and a chip there and back
keld2 devices info serial-4k | grep -qxF "file: $work/prefix/share/keld2/devices/serial-4k.toml" ||
    fail "keld2 does not use the installed catalogue"
[ "$(keld2 devices list | wc -l)" -eq "$(ls "$2"/devices/*.toml | wc -l)" ] || fail "devices are missing"
chip=(-q -d serial-4k -p "sim:image=$work/chip.img")
keld2 "${chip[@]}" auto "$2/examples/data/firmware.hex" --steps erase,program,config
keld2 "${chip[@]}" compare "$2/examples/data/firmware.hex"

# every command and option of --help stands in the man page, and no other option does
page=$work/prefix/share/man/man1/keld2.1.gz
helps() {
    keld2 "$@" --help
    local inner
    for inner in $(keld2 "$@" --help | awk '/^Subcommands:/ { on = 1; next } on && /^  [a-z]/ { print $1 }'); do
        helps "$@" "$inner"
    done
}
options() { grep -oE '^ *(-|\.It )[^ ].*' | sed 's/^ *\.It //; s/  .*//; s/\\//g' | grep -oE -- '--[a-z-]+' | sort -u; }
if [ -e "$page" ]; then
    helps | sed 's/^ *//' | options >"$work/has"
    zcat "$page" | options >"$work/told"
    diff "$work/has" "$work/told" || fail "the man page has other options than --help"
    for command in $(helps | awk '/^Usage: keld2 [a-z]/ && !/SUBCOMMAND/ { sub(/ \[OPTIONS\].*/, ""); print $3 "_" $4 }'); do
        zcat "$page" | grep -qE "^\.Ss ${command//_/ ?}" || fail "the man page lacks $command"
    done
fi
desktop=$work/prefix/share/man/man1/keld2-desktop.1.gz
if [ -e "$desktop" ]; then
    diff <(QT_QPA_PLATFORM=offscreen keld2-desktop --help | grep -oE -- '--[a-z-]+' | sort -u) \
        <(zcat "$desktop" | grep -oE -- 'Fl -[a-z-]+' | sed 's/Fl -/--/' | sort -u) ||
        fail "the man page of keld2-desktop has other options than --help"
fi

# completion: "the line typed", "what is offered"; : and = are words of their own, as in a shell
. "$work/prefix/share/bash-completion/completions/keld2"
check() {
    local offered
    COMP_LINE=$1 COMP_POINT=${#1} COMP_WORDBREAKS=$' \t\n"\'><=;|&(:'
    read -ra COMP_WORDS < <(sed -E 's/[:=]+/ & /g' <<<"$1")
    [[ $1 == *' ' ]] && COMP_WORDS+=('')
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    _keld2
    offered="${COMPREPLY[*]-}"
    [ "$offered" = "$2" ] || fail "completion of \"$1\" offers \"$offered\", expected \"$2\""
}
check 'keld2 pro' program
check 'keld2 -d serial-4' serial-4k
check 'keld2 -d serial-4k ver' verify
check 'keld2 devices ' 'list search info'
check 'keld2 devices info serial-4' serial-4k
check 'keld2 -q svf ' make
check 'keld2 trace show --de' '--depth --device'
check 'keld2 auto --ste' --steps
check 'keld2 -p sim:image=chip.img auto --ste' --steps
check 'keld2 -p sim:image=chip.img devices info serial-4' serial-4k
check 'keld2 -d serial-4k --vcd blank.vcd bl' blank
check 'keld2 --device=serial-4' serial-4k
check 'keld2 -p ' 'sim hardware'
check 'keld2 -p sim:im' image=
check 'keld2 -p sim:image=' ''
check 'keld2 -d serial-4k auto --steps=erase,v' erase,verify
check 'keld2 -d serial-4k auto --steps sec' ''
check 'keld2 auto --steps sec' secure
check 'keld2 svf make --operation pro' program
check 'keld2 svf make --layout B' 'B1 B2'
check 'keld2 --language zh' 'zh-cn zh-tw'
check 'keld2 --on-box re' retry
check 'keld2 -d serial-4k program ' ''
