#!/usr/bin/env python3
"""Each test that a page names in brackets, [`suite`], exists.

usage: check_test_names.py SOURCE_FOLDER PAGE...
"""

import re
import sys
from pathlib import Path

BRACKETS = re.compile(r"\[(`[^\]\[]*`)\]")  # not the words of a link, which are without the ticks


def has_test(name, sources):
    """A gate is a script of its name; another test has its suite or its name in a source."""
    if name.startswith("abi."):
        return any(path.stem == name.removeprefix("abi.") for path in sources)
    return all(any(re.search(rf"\b{part}\b", text) for text in sources.values())
               for part in name.split("."))


def main(folder, *pages):
    sources = {path: path.read_text() for path in Path(folder, "tests").rglob("*")
               if path.suffix in (".cc", ".sh", ".py") or path.name == "CMakeLists.txt"}
    named = {name for page in pages for group in BRACKETS.findall(Path(page).read_text())
             for name in re.findall(r"`([\w.]+)`", group)}
    missing = sorted(name for name in named if not has_test(name, sources))
    print(f"{len(named)} tests are named")
    if missing or not named:
        return "\n".join(["named, but not there:", *missing])
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
