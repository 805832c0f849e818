#!/usr/bin/env python3
"""Renews what the tool itself prints: docs/models.md, the model codes after each handler in the manual
page on decisions, and the completion scripts. With --check it reports what is out of date instead.

usage: renew.py [--check] TOOL SOURCE_FOLDER"""

import difflib
import json
import re
import subprocess
import sys
import textwrap
from pathlib import Path

HEADING = re.compile(r"^\.It Sy (analyze_\w+) Pq(?: (?:.*\\\n)*.*)?$", re.MULTILINE)


def output(tool, *arguments):
    return subprocess.run([tool, *arguments], check=True, text=True,
                          stdout=subprocess.PIPE).stdout


def codes_of_handlers(tool):
    """The model codes that select each handler, in the order of the tables."""
    codes = {}
    for family in json.loads(output(tool, "models", "--format", "json"))["families"]:
        others = [row["handler"] for row in family["rows"] if row["code"] is None]
        for row in family["rows"]:
            if row["handler"] in others:
                codes[row["handler"]] = ["all others"]
            elif row["handler"]:
                codes.setdefault(row["handler"], []).append(row["code"])
    return codes


def heading(handler, codes):
    line = f".It Sy {handler} Pq {', '.join(codes)}"
    return " \\\n".join(textwrap.wrap(line, 98, break_on_hyphens=False))


def renewed_page(text, codes):
    missing = sorted(set(re.findall(HEADING, text)) - set(codes))
    if missing:
        sys.exit(f"no row of a model table names {', '.join(missing)}: add the row first, or remove Pq "
                 "and the codes from its heading in the page on decisions")
    return HEADING.sub(lambda match: heading(match[1], codes[match[1]]), text)


def main(arguments):
    check = "--check" in arguments
    tool, source = [argument for argument in arguments if argument != "--check"]
    page = Path(source, "docs/man/info-analyze-decisions.7")
    completions = Path(source, "cli/completions")
    files = {
        Path(source, "docs/models.md"): output(tool, "models", "--format", "markdown"),
        page: renewed_page(page.read_text(), codes_of_handlers(tool)),
        completions / "info-analyze.bash": output(tool, "completion", "bash"),
        completions / "_info-analyze": output(tool, "completion", "zsh"),
    }
    stale = {path: text for path, text in files.items() if path.read_text() != text}
    for path, text in stale.items():
        if check:
            print(*difflib.unified_diff(path.read_text().splitlines(), text.splitlines(), str(path),
                                        "the tool", lineterm="", n=0), sep="\n")
        else:
            path.write_text(text)
            print(f"renewed {path}")
    if check and stale:
        sys.exit("./dev docs renews them")
    print(f"{len(files)} files agree with the tool")


if __name__ == "__main__":
    main(sys.argv[1:])
