#!/usr/bin/env python3
"""Checks where the pages lead: links to files and headings, and paths that stand in the text.

usage: links.py
"""

import os
import pathlib
import re
import sys

PROJECT = pathlib.Path(__file__).resolve().parents[2]
ROOMS = "bench|cmake|devices|docs|examples|fuzz|host|packaging|scripts|sim|src|tests"


def prose_of(page: pathlib.Path) -> str:
    """A page without its fenced blocks, of which empty lines are left."""
    return re.sub(r"^```.*?^```", lambda block: "\n" * block[0].count("\n"), page.read_text(),
                  flags=re.M | re.S)


def headings_of(page: pathlib.Path) -> set[str]:
    """The anchors of a page's headings: lower case, blanks as dashes, nothing else but letters."""
    titles = re.findall(r"^#+ +(.*?) *$", prose_of(page), flags=re.M)
    return {re.sub(r"[^\w\- ]", "", title.lower()).replace(" ", "-") for title in titles}


def faults_of(page: pathlib.Path) -> list[str]:
    faults = []
    for number, line in enumerate(prose_of(page).splitlines(), 1):
        for link in re.findall(r"\]\(([^)\s]+)\)", line):
            if re.match(r"[a-z]+:", link):
                continue
            path, _, anchor = link.partition("#")
            target = page.parent / path if path else page
            if not target.exists():
                faults.append(f"{number}: no such file: {link}")
            elif anchor and anchor not in headings_of(target):
                faults.append(f"{number}: no such heading: {link}")
        for path in re.findall(rf"`((?:{ROOMS})/[\w./-]*)`", line):
            if not (PROJECT / path).exists():
                faults.append(f"{number}: no such file in the project: {path}")
    return [f"{os.path.relpath(page, PROJECT)}:{fault}" for fault in faults]


def main() -> int:
    pages = [PROJECT / name for name in ("README.md", "CHANGELOG.md")]
    pages += sorted((PROJECT / "docs").glob("*.md"))
    faults = [fault for page in pages for fault in faults_of(page)]
    print("\n".join(faults), end="\n" if faults else "")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
