#!/usr/bin/env python3
"""Finds words that a reader would have to read twice, in text and in names, and prints the plain ones.

usage: words.py [PATH...]     all files of the tree, or those whose names begin with a PATH

A pattern sees each line in lower case, with names such as kMostItems or most_items taken apart."""

import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent

# Pattern, and what to write instead.
WORDS = (
    (r"tell|tells|telling|told", "print, report, return, describe, specify, document"),
    (r"mend|mends|mended|mending", "fix"),
    (r"(look|looks|looked|looking) at", "reads, depends on"),
    (r"rooms|(?<!print )room(?! (for|left|is|enough))", "module, folder"),
    (r"rim|rims", "ABI boundary, internals"),
    (r"landing|landings", "merge; in CI"),
    (r"(is|are|was|were|has been) (there already|already there)|what is there|(is|are) not there",
     "present, exists already, missing"),
    (r"of which", "whose"),
    (r"behind", "after"),
    (r"begin of|beginning|beginnings", "prefix, start"),
    (r"letter case", "case"),
    (r"kind|kinds", "type"),
    (r"memory runs out", "an allocation fails, out of memory"),
    (r"folder of (the |its )?(device )?documents", "document directory"),
    (r"(hand|hands|handed|handing) (over|out|back)", "return; ownership passes to the caller"),
    (r"(stand|stands|stood|standing) (for|in)", "means, represents, is in, replacement"),
    (r"the way of|road|roads", "how a query works"),
    (r"asked on the command line|(ask|asks|asked|asking) (a|the|its|sample|each) (sample )?printers?",
     "query"),
    (r"twin|twins", "case variants"),
    (r"most (items|bytes|length|size|count|entries|values)(?= \w)", "kMax..."),
    (r"manners", "terminal"),
)

# Where a word is right: part of a path, and part of a line.
ALLOWED = (
    ("tests/words.py", ""),
    ("", "printer-kind"),  # an attribute of IPP
    ("CMake", "TARGET_FILE"),
    ("dev", "--errors-for-leak-kinds"),
    ("docs/man/make_pages.py", '.get("kind")'),  # an attribute of Doxygen's XML
    ("packaging/debian/copyright", "WARRANTY OF ANY KIND"),
    ("tests/abi/definitions.sh", "ctags -x --kinds-c++"),
    ("tests/docs/check_reference.py", "kind"),  # an attribute of Doxygen's XML
)

PATTERN = re.compile("|".join(rf"(?P<w{i}>\b(?:{words})\b)" for i, (words, _) in enumerate(WORDS)))
CAMEL = re.compile(r"(?<=[a-z0-9])(?=[A-Z])")


def plain(line):
    return CAMEL.sub(" ", line).replace("_", " ").replace("-", " ").lower()


def is_allowed(name, line):
    return any(path in name and part in line for path, part in ALLOWED)


def files(prefixes):
    listed = subprocess.run(["git", "ls-files", "-z", "-co", "--exclude-standard"], cwd=ROOT, check=True,
                            stdout=subprocess.PIPE, text=True).stdout.split("\0")
    return [name for name in listed if name and name.startswith(prefixes)]


def findings(name):
    try:
        text = (ROOT / name).read_text()
    except (UnicodeDecodeError, FileNotFoundError):
        return  # no text
    for number, line in enumerate([name] + text.split("\n")):
        for match in PATTERN.finditer(plain(line)):
            if not is_allowed(name, line):
                index = int(match.lastgroup[1:])
                yield f"{name}:{number}: '{match[0]}': {WORDS[index][1]}"


def main(prefixes):
    found = [finding for name in files(tuple(prefixes) or ("",)) for finding in findings(name)]
    print(*found, sep="\n")
    if found:
        sys.exit(f"{len(found)} words to replace; a word that is right is allowed in tests/words.py")


if __name__ == "__main__":
    main(sys.argv[1:])
