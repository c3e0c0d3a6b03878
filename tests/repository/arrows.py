#!/usr/bin/env python3
"""Checks every #include between rooms against the table of docs/architecture.md.

usage: arrows.py SOURCE_DIR
"""
import pathlib
import re
import sys

SYSTEM_HEADER = re.compile(r"#include <(?!std|png|toml)\S+\.h>")


def read_table(page):
    """room -> the rooms that it may know, itself among them; rooms of src without "src/"."""
    table = {}
    for line in page.read_text(encoding="utf-8").splitlines():
        cells = re.fullmatch(r"\| (`[^|]*) \|[^|]*\| ([^|]*) \|", line)
        for room in re.findall(r"`([^`]+)`", cells[1]) if cells else ():
            table[room.removeprefix("src/")] = cells[2]

    def known(room, below):
        named = set(re.findall(r"`([^`]+)`", table[room]))
        if named - table.keys():
            sys.exit(f"the table names {named - table.keys()}, which is no room")
        return named.union({room}, *(known(other, True) for other in named if below))

    return {room: known(room, text.endswith(" and below")) for room, text in table.items()}


def room_of(path, allowed):
    """The room of a path written from src/ or from the root: the longest name that matches."""
    path = path.removeprefix("src/")
    return max((room for room in allowed if path.startswith(room + "/")), key=len, default=None)


def faults_of(name, text, allowed):
    room = room_of(name, allowed)
    if room is None:
        yield f"{name}: in no room of the table"
        return
    system = room == "plugin/com" or {"posix", "win32"} & set(name.split("/"))
    for number, line in enumerate(text.splitlines(), 1):
        where = f"{name}:{number}: {line}"
        if SYSTEM_HEADER.match(line) and not system:
            yield f"{where}: a header of the operating system in {room}"
        found = re.match(r'#include "([^"]+/[^"]+)"', line)
        if not found:
            continue
        target = room_of(found[1], allowed)
        if target is None:
            yield f"{where}: from no room of the table"
        elif target not in allowed[room]:
            yield f"{where}: {room} must not know {target}"


def main():
    root = pathlib.Path(sys.argv[1])
    allowed = read_table(root / "docs/architecture.md")
    found = [fault for folder in ("src", "sim", "host")
             for file in sorted((root / folder).glob("**/*.[hc]*"))
             for fault in faults_of(file.relative_to(root).as_posix(),
                                    file.read_text(encoding="utf-8"), allowed)]
    print("\n".join(found) or "all includes follow the arrows")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
