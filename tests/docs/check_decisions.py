#!/usr/bin/env python3
"""The page on decisions describes every handler of the model tables, and every option that the sample
printers get but for those that their PPDs name.

usage: check_decisions.py TOOL DRIVER_FOLDER EXAMPLES_FOLDER PAGE
"""

import json
import re
import subprocess
import sys
from pathlib import Path

NAMED_BY_PPD = re.compile(r"QV\w+MediaType")


def ask(*arguments):
    return json.loads(subprocess.run([*arguments, "--format", "json"], check=True,
                                     stdout=subprocess.PIPE).stdout)


def handlers(tool):
    return {row["handler"] for family in ask(tool, "models")["families"] for row in family["rows"]
            if row["handler"]}


def keywords(tool, driver, examples):
    return {option["keyword"] for printer in sorted(Path(examples).glob("*/ppd"))
            for option in ask(tool, "query", "--queue", printer.parent.name, "--cups-root",
                              printer.parent, "--driver-folder", driver, "--device-info",
                              printer.parent / "device-info")["options"]}


def main(tool, driver, examples, page):
    text = Path(page).read_text()
    names = sorted(handlers(tool) | keywords(tool, driver, examples))
    missing = [f"the page does not describe {name}" for name in names
               if not re.search(rf"\b{name}\b", text) and not NAMED_BY_PPD.fullmatch(name)]
    print(f"{len(names)} handlers and options")
    return "\n".join(missing) if missing else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
