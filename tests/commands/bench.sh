# What the sessions of this folder share: a chip in the folder of the session, and files for it.
set -o pipefail
export LC_ALL=C.UTF-8

# A fresh chip of a device, without faults.
chip() {
    device=$1
    fault=
    rm -f chip
}

# keld2 on that chip, with both outputs as one and <TIME> for the seconds of the log.
on() {
    keld2 -d "$device" -p "sim:image=chip${fault:+,fault=$fault}" "$@" 2>&1 |
        sed -E 's/^>> [0-9.]+Sec$/>> <TIME>Sec/'
}

# A command's report as JSON.
json() { keld2 -q -d "$device" -p "sim:image=chip${fault:+,fault=$fault}" "$@" --json 2>said; }

# Each command on the chip, with its exit status alone.
steps() {
    local step
    for step in "$@"; do
        # shellcheck disable=SC2086
        on -q $step >said
        echo "$step: $?"
    done
}

# So many bytes, each other than its neighbours.
bytes() { perl -e 'print map { chr(($_ * 37 + ($_ >> 8)) & 255) } 0 .. $ARGV[0] - 1' "$1"; }

# A file with the bytes at some offsets changed: flip FILE MASK OFFSET...
flip() { perl -e 'my ($file, $mask, @at) = @ARGV; local $/; open F, $file; my $bytes = <F>;
    substr($bytes, $_, 1) ^= chr hex $mask for @at; print $bytes' "$@"; }

# So many fuses without a pattern, as 0 and 1.
fuses() { perl -e 'print map { $_ * $_ % 7 < 3 ? 1 : 0 } 0 .. $ARGV[0] - 1' "$1"; }

# A fuse map for some fuses, with further fields: jedec FUSES [FIELD]...
jedec() {
    local map=$1
    shift
    printf '\002test*\nQF%d*\nF0*\nL0 %s*\n' ${#map} "$map"
    printf '%s*\n' "$@"
    printf '\0030000\n'
}
