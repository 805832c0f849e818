#!/usr/bin/env python3
"""mandoc and groff accept the manual pages, written and generated ones, and print them in 80 columns;
they refer to existing pages; those of section 3 name everything that is exported.

usage: check_pages.py MANDOC MAN PAGES_FOLDER XML_FOLDER VERSION_SCRIPT
"""

import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

sys.dont_write_bytecode = True  # the sources stay as they are
from exported_names import declared_names

# mandoc looks for them among the pages of the system; our own are looked for here.
NOT_INSTALLED = ("referenced manual not found", "outdated mandoc.db")
PAGES_OF_OTHERS = {"ippeveprinter.1", "ipptoolfile.5", "lpadmin.8", "systemd.1"}
TERMINAL = 80
# groff 1.23 indents text by two columns more than mandoc and earlier versions of groff.
MANDOC_WIDTH = TERMINAL - 2
# groff 1.23 says so of a line with a single word.
NOT_ADJUSTED = "cannot adjust line"
# Backspaces print a character bold or underlined, as escape sequences do.
OVERSTRIKE = re.compile(r".\x08|\x1b\[[0-9;]*m")


def findings_of(mandoc, page):
    said = subprocess.run([mandoc, "-Tlint", page], capture_output=True, text=True, check=False)
    return [line for line in (said.stdout + said.stderr).splitlines()
            if not any(words in line for words in NOT_INSTALLED)]


def wide_lines(text, width):
    lines = OVERSTRIKE.sub("", text).expandtabs().splitlines()
    return [line for line in lines if len(line) > width]


def rendering_faults(program, width, page, *command):
    """What a program warns of when it prints the page, and the lines that are too wide."""
    # man(1) filters system calls, which fails under an emulated processor.
    environment = dict(os.environ, LC_ALL="C.UTF-8", MANWIDTH=str(TERMINAL), MANOPT="",
                       MAN_DISABLE_SECCOMP="1")
    done = subprocess.run([*command, page], capture_output=True, text=True, check=False,
                          env=environment)
    faults = [f"warning: {line}" for line in done.stderr.splitlines()
              if line and NOT_ADJUSTED not in line]
    faults += [f"{len(line)} columns: {line.strip()}" for line in wide_lines(done.stdout, width)]
    if done.returncode != 0 or not done.stdout:
        faults.append(f"status {done.returncode}, {len(done.stdout)} characters printed")
    return [f"{page.name} in {program}: {fault}" for fault in faults]


def layout_faults(mandoc, man, page):
    return [*rendering_faults("man", TERMINAL, page, man, "--warnings", "-l"),
            *rendering_faults("mandoc", MANDOC_WIDTH, page, mandoc, "-O", f"width={MANDOC_WIDTH}",
                              "-Tutf8")]


def names_of(page):
    return set(re.findall(r"^\.Nm (\w+)", page.read_text(), re.MULTILINE))


def missing_references(pages):
    known = {page.name for page in pages} | PAGES_OF_OTHERS
    return [f"{page.name} refers to {name}({section}), which is no page" for page in pages
            for name, section in re.findall(r"\.Xr (\S+) (\d)", page.read_text())
            if f"{name}.{section}" not in known]


def main(mandoc, man, folder, xml, version_script):
    written = sorted(Path(folder).glob("*.[1-9]"))
    with tempfile.TemporaryDirectory() as scratch:
        subprocess.run([sys.executable, f"{folder}/make_pages.py", xml,
                        f"{folder}/libinfo_analyze.3", scratch], check=True)
        made = sorted(Path(scratch).iterdir())
        pages = [*written, *made]
        wrong = [line for page in pages for line in findings_of(mandoc, page)]
        wrong += [line for page in pages for line in layout_faults(mandoc, man, page)]
        wrong += missing_references(pages)
        named = set().union(*map(names_of, made))
    exported = declared_names(Path(version_script))
    wrong += [f"{name} has no page" for name in sorted(exported - named)]
    print(f"{len(written)} written and {len(made)} generated pages")
    return "\n".join(wrong) if wrong else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
