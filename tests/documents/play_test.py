#!/usr/bin/env python3
"""The player of pages tells what a page shows otherwise than it is, and nothing else."""

import os
import pathlib
import tempfile
import unittest

import links
import play


def fault(page: str) -> str:
    """The player's answer to a page, "" where there is nothing to tell."""
    with tempfile.TemporaryDirectory() as name:
        return "".join(play.faults_of(page, pathlib.Path(name), {"PATH": os.environ["PATH"]}))


class Player(unittest.TestCase):
    def test_what_is_shown_as_it_is(self):
        for page in (
            "",
            "    true\n    true   # twice\n",
            "    $ echo one; echo two\n    one\n    two\n",
            "```\n$ seq 5\n1\n...\n5\n```\n",
            "    $ seq 5\n    ...\n",
            "    $ echo some words here\n    some ... here\n",
            "    $ echo '>> 0.25Sec'\n    >> 0.01Sec\n",
            "    $ false; echo $?\n    1\n",
            "```console\n$ false\n$ echo $?\n1\n```\n",
            "    $ echo a \\\n    > b\n    a b\n",
            "    x=1\n\nText.\n\n    $ echo $x\n    1\n",
            "<!-- file: a.txt -->\n```toml\nb = 1\n```\n\n    $ cat a.txt\n    b = 1\n",
            "<!-- setup: touch a -->\n<!-- then: rm b -->\n\n    mv a b\n\nText.\n\n    test ! -e b\n",
            "<!-- numbers vary -->\n\n    $ echo 'a  12.5 ms'\n    a 7.25 ms\n",
            "<!-- not run: here -->\n\n    false\n",
            "```text\nfalse\n```\n",
            "<!-- part of: examples/consumer/CMakeLists.txt -->\n```cmake\nfind_package(tq5keld2 REQUIRED)\n```\n",
        ):
            with self.subTest(page):
                self.assertEqual(fault(page), "")

    def test_what_is_not_so(self):
        for page, told in (
            ("    false\n", "1: $ false\nends with 1"),
            ("    $ echo one\n    two\n", "--- shown\ntwo\n--- printed\none\n"),
            ("    $ echo one\n", "--- printed\none\n"),
            ("    $ echo one; echo two\n    one\n", "--- printed\none\ntwo\n"),
            ("    $ true\n    one\n", "--- shown\none\n"),
            ("    $ seq 5\n    1\n    ...\n    6\n", "--- printed\n1\n"),
            ("    $ cat none; true\n", "none: No such file"),
            ("<!-- numbers vary -->\n\n    $ echo 'a 12 ms'\n    a 7.25 ms\n", "--- printed"),
            ("    exit 0\n    true\n", "1: the shell ended"),
            ("```toml\na = 1\n```\n", "2: a block in toml without a marker"),
            ("<!-- not run -->\n\n    true\n", "unknown marker"),
            ("<!-- not run: here -->\n\nText.\n", "stands ahead of text"),
            ("<!-- part of: examples/consumer/CMakeLists.txt -->\n```c\nint x;\n```\n", "no such line"),
            ("<!-- part of: examples/none.c -->\n```c\nint x;\n```\n", "No such file"),
        ):
            with self.subTest(page):
                self.assertIn(told, fault(page))


class Links(unittest.TestCase):
    def test_links_that_lead_nowhere(self):
        with tempfile.TemporaryDirectory() as name:
            page, other = (pathlib.Path(name, file) for file in ("page.md", "other.md"))
            other.write_text("# Image files\n")
            page.write_text("# A heading, and `code`\n```\n[c](none.md)\n```\n"
                            "[a](other.md#image-files) [b](#a-heading-and-code) `sim/programmer.h`\n"
                            "[c](none.md) [d](other.md#none) `sim/none.h` [e](https://none.invalid/)\n")
            told = [fault.split(":", 1)[1] for fault in links.faults_of(page)]
        self.assertEqual(told, ["6: no such file: none.md", "6: no such heading: other.md#none",
                                "6: no such file in the project: sim/none.h"])


if __name__ == "__main__":
    unittest.main()
