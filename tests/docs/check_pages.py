#!/usr/bin/env python3
"""mandoc accepts the manual pages, written and generated ones, and they refer to existing pages; those
of section 3 name everything that is exported.

usage: check_pages.py MANDOC PAGES_FOLDER XML_FOLDER VERSION_SCRIPT
"""

import re
import subprocess
import sys
import tempfile
from pathlib import Path

sys.dont_write_bytecode = True  # the sources stay as they are
from exported_names import declared_names

# mandoc looks for them among the pages of the system; our own are looked for here.
NOT_INSTALLED = ("referenced manual not found", "outdated mandoc.db")
PAGES_OF_OTHERS = {"lpadmin.8"}


def findings_of(mandoc, page):
    said = subprocess.run([mandoc, "-Tlint", page], capture_output=True, text=True, check=False)
    return [line for line in (said.stdout + said.stderr).splitlines()
            if not any(words in line for words in NOT_INSTALLED)]


def names_of(page):
    return set(re.findall(r"^\.Nm (\w+)", page.read_text(), re.MULTILINE))


def missing_references(pages):
    known = {page.name for page in pages} | PAGES_OF_OTHERS
    return [f"{page.name} refers to {name}({section}), which is no page" for page in pages
            for name, section in re.findall(r"\.Xr (\S+) (\d)", page.read_text())
            if f"{name}.{section}" not in known]


def main(mandoc, folder, xml, version_script):
    written = sorted(Path(folder).glob("*.[1-9]"))
    with tempfile.TemporaryDirectory() as scratch:
        subprocess.run([sys.executable, f"{folder}/make_pages.py", xml,
                        f"{folder}/libinfo_analyze.3", scratch], check=True)
        made = sorted(Path(scratch).iterdir())
        wrong = [line for page in [*written, *made] for line in findings_of(mandoc, page)]
        wrong += missing_references([*written, *made])
        named = set().union(*map(names_of, made))
    exported = declared_names(Path(version_script))
    wrong += [f"{name} has no page" for name in sorted(exported - named)]
    print(f"{len(written)} written and {len(made)} generated pages")
    return "\n".join(wrong) if wrong else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
