#!/usr/bin/env python3
"""Lists the tests that were skipped, with their reasons. Where CI is set, a skip that is not in
tests/allowed_skips.txt is a failure.

usage: skips.py RESULTS_FOLDER   (results.xml of CTest, and a file of each GoogleTest program)"""

import os
import sys
import xml.etree.ElementTree as ElementTree
from pathlib import Path

ALLOWED = Path(__file__).with_name("allowed_skips.txt")


def last_line(text):
    lines = (text or "").strip().splitlines()
    return lines[-1].strip() if lines else "no reason given"


def skips_of_ctest(path):
    """Tests that are programs of their own and print their reason."""
    for case in ElementTree.parse(path).getroot().iter("testcase"):
        if case.find("skipped") is not None:
            yield case.get("name"), last_line(case.findtext("system-out"))


def skips_of_program(path):
    """The message is the place in the source, and on the next line the reason."""
    for case in ElementTree.parse(path).getroot().iter("testcase"):
        skipped = case.find("skipped")
        if skipped is not None:
            yield f"{case.get('classname')}.{case.get('name')}", last_line(skipped.get("message"))


def allowed_names():
    lines = ALLOWED.read_text().splitlines()
    return {line.split()[0] for line in lines if line and not line.startswith("#")}


def main(folder):
    skips = dict(skips_of_ctest(folder / "results.xml"))
    for path in sorted(folder.glob("*.xml")):
        if path.name != "results.xml":
            skips |= dict(skips_of_program(path))
    if not skips:
        print("No test was skipped.")
        return
    print("Skipped tests:")
    for name, reason in sorted(skips.items()):
        print(f"  {name}: {reason}")
    surprising = sorted(set(skips) - allowed_names())
    if surprising and os.environ.get("CI"):
        sys.exit(f"{ALLOWED.name} does not list {', '.join(surprising)}")


if __name__ == "__main__":
    main(Path(sys.argv[1]))
