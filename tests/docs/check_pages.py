#!/usr/bin/env python3
"""The manual pages, written and made ones, are without a finding of mandoc; those of section 3 name
everything that is exported, and refer to each other only.

usage: check_pages.py MANDOC PAGES_FOLDER XML_FOLDER VERSION_SCRIPT
"""

import re
import subprocess
import sys
import tempfile
from pathlib import Path

sys.dont_write_bytecode = True  # the sources stay as they are
from exported_names import declared_names

# mandoc looks for them among the pages of the system; section 3 is looked for here.
NOT_INSTALLED = "referenced manual not found"


def findings_of(mandoc, page):
    said = subprocess.run([mandoc, "-Tlint", page], capture_output=True, text=True, check=False)
    return [line for line in (said.stdout + said.stderr).splitlines() if NOT_INSTALLED not in line]


def names_of(page):
    return set(re.findall(r"^\.Nm (\w+)", page.read_text(), re.MULTILINE))


def missing_references(pages):
    known = {page.stem for page in pages}
    return [f"{page.name} refers to {name}(3), which is no page" for page in pages
            for name in re.findall(r"\.Xr (\S+) 3", page.read_text()) if name not in known]


def main(mandoc, folder, xml, version_script):
    written = sorted(Path(folder).glob("*.[1-9]"))
    with tempfile.TemporaryDirectory() as scratch:
        subprocess.run([sys.executable, f"{folder}/make_pages.py", xml,
                        f"{folder}/libinfo_analyze.3", scratch], check=True)
        made = sorted(Path(scratch).iterdir())
        wrong = [line for page in [*written, *made] for line in findings_of(mandoc, page)]
        wrong += missing_references([page for page in [*written, *made] if page.suffix == ".3"])
        named = set().union(*map(names_of, made))
    exported = declared_names(Path(version_script))
    wrong += [f"{name} has no page" for name in sorted(exported - named)]
    print(f"{len(written)} written and {len(made)} made pages")
    return "\n".join(wrong) if wrong else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
