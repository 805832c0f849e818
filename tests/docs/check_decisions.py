#!/usr/bin/env python3
"""The page on decisions speaks of every option that the sample printers get but for those that their
PPDs name, and of every handler of the model tables; where model codes stand behind a handler, they
are those that select it.

usage: check_decisions.py TOOL DRIVER_FOLDER EXAMPLES_FOLDER PAGE
"""

import collections
import json
import re
import subprocess
import sys
from pathlib import Path

NAMED_BY_PPD = re.compile(r"QV\w+MediaType")


def ask(*arguments):
    return json.loads(subprocess.run([*arguments, "--format", "json"], check=True,
                                     stdout=subprocess.PIPE).stdout)


def codes_of_handlers(tool):
    """The model codes that select each handler; none for the rows of other models."""
    codes = collections.defaultdict(set)
    for family in ask(tool, "models")["families"]:
        for row in family["rows"]:
            if row["handler"]:
                codes[row["handler"]] |= {row["code"]} - {"", None}
    return codes


def told_codes(page):
    """The model codes behind each handler that is the heading of a rule for some models."""
    return {handler: set(re.findall(r"R[A-Z]-[\w-]+", codes))
            for handler, codes in re.findall(r"^\.It Sy (analyze_\w+)((?: .*)?)$",
                                             page.replace("\\\n", ""), re.MULTILINE)
            if "all others" not in codes}


def keywords(tool, driver, examples):
    return {option["keyword"] for printer in sorted(Path(examples).glob("*/ppd"))
            for option in ask(tool, "query", "--queue", printer.parent.name, "--cups-root",
                              printer.parent, "--driver-folder", driver, "--device-info",
                              printer.parent / "device-info")["options"]}


def main(tool, driver, examples, page):
    text = Path(page).read_text()
    selecting = codes_of_handlers(tool)
    wrong = [f"{name} is not told" for name in sorted({*selecting, *keywords(tool, driver, examples)})
             if not re.search(rf"\b{name}\b", text) and not NAMED_BY_PPD.fullmatch(name)]
    told = told_codes(text)
    wrong += [f"{handler} is selected by {sorted(selecting[handler])}, told are {sorted(codes)}"
              for handler, codes in sorted(told.items()) if codes != selecting[handler]]
    print(f"{len(selecting)} handlers, {len(told)} with their model codes")
    return "\n".join(wrong) if wrong else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
