#!/usr/bin/env python3
"""Plays what a page shows as a reader would type it, and compares what it prints.

usage: play.py PAGE --keld2 FOLDER

A page's blocks of code are run in their order, in one shell. A block whose first line begins with
"$ " is a session: commands behind "$ " (continued behind "> "), each with its output. Of any other
block each line is a command. A command has to end with 0, unless "echo $?" follows it, and has to
print what is shown; "..." stands for anything, also for lines that are left out. The seconds of a
run vary. A block fenced as ```text is text. Of a block in another language a marker has to say what
becomes of it. Markers are comments of the Markdown ahead of a block:

    <!-- not run: REASON -->     the block is not run
    <!-- file: NAME -->          the block is written to this file of the folder
    <!-- part of: PATH -->       each line of the block stands in this file of the project, in order
    <!-- numbers vary -->        only the shape of the numbers that are shown is compared
    <!-- setup: COMMANDS -->     run ahead of the block: commands that a reader has no need to see
    <!-- then: COMMANDS -->      the same, behind the block

README.md is played in a folder like the one that scripts/demo leaves, every other page where the
README's session leads: in a copy of examples/data, try, with keld2 on the path. PREFIX is taken
from the environment.
"""

import argparse
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
from dataclasses import dataclass, field

PROJECT = pathlib.Path(__file__).resolve().parents[2]
SALT = "-- end of a command --"


@dataclass
class Block:
    """A block of code of a page, with the markers that stand ahead of it."""

    line: int  # of its first line of code
    language: str = ""
    lines: list[str] = field(default_factory=list)
    markers: list[str] = field(default_factory=list)


@dataclass
class Command:
    line: int
    text: str
    shown: list[str] | None  # None: nothing is told of its output
    numbers_vary: bool = False


class PageError(Exception):
    """What a page shows cannot be played."""


def blocks_of(page: str) -> list[Block]:
    """The blocks of code of a page, fenced or indented by four blanks."""
    lines = page.splitlines()
    blocks: list[Block] = []
    markers: list[str] = []
    at = 0
    while at < len(lines):
        line = lines[at]
        at += 1
        if line.startswith("<!--"):
            comment = [line]
            while "-->" not in comment[-1] and at < len(lines):
                comment.append(lines[at])
                at += 1
            markers.append("\n".join(comment).removeprefix("<!--").split("-->")[0].strip())
            continue
        block = None
        if line.startswith("```"):
            block = Block(at + 1, line[3:].strip())
            while at < len(lines) and not lines[at].startswith("```"):
                block.lines.append(lines[at])
                at += 1
            at += 1
        elif line.startswith("    ") and (at < 2 or not lines[at - 2].strip()):
            block = Block(at)
            at -= 1
            while at < len(lines) and (lines[at].startswith("    ") or not lines[at].strip()):
                block.lines.append(lines[at][4:])
                at += 1
            while not block.lines[-1].strip():
                block.lines.pop()
        if block is not None:
            block.markers, markers = markers, []
            blocks.append(block)
        elif line.strip() and markers:
            raise PageError(f"{at}: a marker stands ahead of text, not of a block: {markers[0]}")
    return blocks


def session_of(block: Block, numbers_vary: bool) -> list[Command]:
    """The commands of a session with the output of each, or of a block that has commands alone."""
    if not block.lines[0].startswith("$ "):
        return [Command(block.line + i, text, None) for i, text in enumerate(block.lines) if text]
    commands: list[Command] = []
    for i, line in enumerate(block.lines):
        if line.startswith("$ "):
            commands.append(Command(block.line + i, line[2:], [], numbers_vary))
        elif line.startswith("> ") and not commands[-1].shown:
            commands[-1].text += "\n" + line[2:]
        else:
            commands[-1].shown.append(line)
    return commands


def check_part(block: Block, path: str) -> None:
    """Each line of the block stands in the file of the project, in order."""
    source = iter((PROJECT / path).read_text().splitlines())
    for i, line in enumerate(block.lines):
        wanted = line.strip()
        if wanted not in ("", "...", "/* ... */", "// ...", "# ...") and not any(
            wanted == other.strip() for other in source
        ):
            raise PageError(f"{block.line + i}: {path} has no such line here: {wanted}")


def commands_of(page: str, folder: pathlib.Path) -> list[Command]:
    """All commands of a page in their order; blocks that are files are written as commands, too."""
    commands: list[Command] = []
    for block in blocks_of(page):
        run = block.language in ("", "console", "sh")
        numbers_vary = False
        behind: list[Command] = []
        for marker in block.markers:
            kind, _, rest = (part.strip() for part in marker.partition(":"))
            if kind in ("setup", "then"):
                hidden = [Command(block.line, text, None) for text in rest.splitlines()]
                (commands if kind == "setup" else behind).extend(hidden)
            elif kind == "numbers vary":
                numbers_vary = True
            elif kind == "not run" and rest:
                run = False
            elif kind == "file":
                kept = folder / f".block-{block.line}"
                kept.write_text("".join(line + "\n" for line in block.lines))
                commands.append(Command(block.line, f"cp {kept.name} {rest}", None))
                run = False
            elif kind == "part of":
                check_part(block, rest)
                run = False
            else:
                raise PageError(f"{block.line}: unknown marker: {marker}")
        if run:
            commands += session_of(block, numbers_vary)
        elif not block.markers and block.language != "text":
            raise PageError(f"{block.line}: a block in {block.language} without a marker")
        commands += behind
    return commands


def play(commands: list[Command], folder: pathlib.Path, environment: dict[str, str]) -> list[str]:
    """Runs the commands in one shell; answers what each has printed, with its status at the end."""
    script = folder / ".session"
    with script.open("w") as file:
        file.write("set -o pipefail\n")
        for command in commands:
            file.write(f"{command.text}\n")
            file.write(f'{{ keep=$?; printf "\\n%s %d\\n" "{SALT}" $keep; (exit $keep); }}\n')
    done = subprocess.run(
        ["bash", script.name], cwd=folder, env=environment, stdin=subprocess.DEVNULL, check=False,
        stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=300)
    printed = re.split(rf"\n{SALT} (\d+)\n", done.stdout.decode(errors="replace"))
    answers = [text + f"[{status}]" for text, status in zip(printed[0::2], printed[1::2])]
    if len(answers) < len(commands):
        raise PageError(f"{commands[len(answers)].line}: the shell ended: {printed[-1]}")
    return answers


def pattern_of(shown: list[str], numbers_vary: bool) -> str:
    """A regular expression for output as a page shows it."""
    pattern = ""
    for line in shown:
        if line.strip() == "...":
            pattern += r"(?:.*\n)*?"
            continue
        text = re.escape(line.rstrip()).replace(re.escape("..."), ".*?")
        if numbers_vary:
            text = re.sub(r"(\\ )*\d+(\\\.\d+)?",
                          lambda number: r" *\d+" + (r"\.\d+" if number[2] else ""), text)
        else:
            text = re.sub(r"^(>>\\? )[\d\\.]+Sec$", r"\1[\\d.]+Sec", text)
        pattern += text + " *\n"
    return pattern


def faults_of(page: str, folder: pathlib.Path, environment: dict[str, str]) -> list[str]:
    """What the page shows otherwise than it is."""
    try:
        commands = commands_of(page, folder)
        answers = play(commands, folder, environment) if commands else []
    except (PageError, OSError, subprocess.TimeoutExpired) as error:
        return [str(error)]
    faults = []
    for i, (command, answer) in enumerate(zip(commands, answers)):
        output, _, status = answer[:-1].rpartition("[")
        asked = command.text.endswith("echo $?") or (
            i + 1 < len(commands) and commands[i + 1].text.startswith("echo $?"))
        if status != "0" and not asked:
            faults.append(f"{command.line}: $ {command.text}\nends with {status}\n{output}")
        elif command.shown is not None:
            output = output if output == "" or output.endswith("\n") else output + "\n"
            if not re.fullmatch(pattern_of(command.shown, command.numbers_vary), output):
                shown = "".join(line + "\n" for line in command.shown)
                faults.append(f"{command.line}: $ {command.text}\n"
                              f"--- shown\n{shown}--- printed\n{output}")
    return faults


def furnish(
    page: str, project: pathlib.Path, keld2: pathlib.Path
) -> tuple[pathlib.Path, dict[str, str]]:
    """Makes what a reader has at hand; answers the folder to begin in and the environment."""
    path = os.environ["PATH"]
    shutil.copytree(PROJECT / "examples", project / "examples")
    (project / "build/demo").mkdir(parents=True)
    (project / "build/demo/host").symlink_to(keld2)
    folder = project
    if page != "README.md":
        folder = project / "try"
        shutil.copytree(project / "examples/data", folder)
        path = f"{keld2}:{path}"
    kept = {name: value for name, value in os.environ.items()
            if name.endswith("SAN_OPTIONS") or name == "PREFIX"}
    return folder, kept | {"PATH": path, "HOME": str(project), "LC_ALL": "C.UTF-8"}


def main() -> int:
    parser = argparse.ArgumentParser(description="Plays what a page shows.")
    parser.add_argument("page", help="relative to the project")
    parser.add_argument("--keld2", type=pathlib.Path, required=True, help="folder of the program")
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="keld2-page-") as name:
        folder, environment = furnish(arguments.page, pathlib.Path(name), arguments.keld2.resolve())
        faults = faults_of((PROJECT / arguments.page).read_text(), folder, environment)
    for fault in faults:
        print(f"{arguments.page}:{fault}")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
