#!/usr/bin/env python3
"""Checks which room includes which: every #include between rooms must be an arrow of the design.

usage: arrows.py SOURCE_DIR
"""
import pathlib
import re
import sys

# room -> what it may include from (itself is always allowed); "texts" is src/plugin/texts
RUN = {"shared", "external", "platform", "texts"}
ALLOWED = {
    "external": set(),
    "platform": set(),
    "platform/posix": {"platform"},
    "platform/win32": {"platform"},
    "texts": set(),
    "shared": {"platform"},
    "run": RUN,
    "mpu": RUN | {"run"},
    "jtag": RUN | {"run"},
    "families": RUN | {"run", "jtag"},
    "arm": RUN,
    "editors": {"shared", "external", "platform", "texts"},
    "external/win32": {"external", "shared", "platform", "platform/win32"},
    "plugin": RUN | {"run", "mpu", "jtag", "families", "arm", "editors"},
    "plugin/com": RUN | {"plugin", "run", "platform/win32", "external/win32"},
    # a host for other languages, within the library
    "capi": {"plugin", "external", "shared", "platform", "platform/posix"},
    "sim": {"external", "shared", "platform"},
    # the public headers of the plug-in, and the machine that a host hands in
    "host": {"plugin", "texts", "external", "shared", "platform", "platform/posix",
             "platform/win32", "external/win32", "sim",
             # texts are made and checked by the rules by which the engine reads them
             "jtag", "families"},
}
SYSTEM = {"platform/posix", "platform/win32", "plugin/com", "external/win32", "host", "sim"}
SYSTEM_HEADER = re.compile(r'#include <(sys/|unistd\.h|fcntl\.h|windows\.h|poll\.h|signal\.h|ole|oaidl)')


def room_of(path):
    """The room of a path written from src/ or from the root: longest name that matches."""
    path = path.removeprefix("src/")
    if path.startswith("plugin/texts/"):
        return "texts"
    rooms = [r for r in ALLOWED if path.startswith(r + "/")]
    return max(rooms, key=len, default=None)


def faults(root):
    for file in sorted(root.glob("src/**/*.[hc]*")) + sorted(root.glob("sim/**/*.[hc]*")) + \
            sorted(root.glob("host/**/*.[hc]*")):
        name = file.relative_to(root).as_posix()
        room = room_of(name)
        if room is None:
            continue
        for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
            if SYSTEM_HEADER.match(line) and room not in SYSTEM:
                yield f"{name}:{number}: {room} includes a header of the operating system: {line}"
            found = re.match(r'#include "([^"]+)"', line)
            target = room_of(found.group(1)) if found else None
            if target and target != room and target not in ALLOWED[room]:
                yield f"{name}:{number}: {room} must not know {target}: {line}"


def main():
    found = list(faults(pathlib.Path(sys.argv[1])))
    print("\n".join(found) or "all includes follow the arrows")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
