#!/usr/bin/env python3
"""Includes point one way: a module, which is a folder, includes from itself and from the modules
below it.

In the library a public header belongs to the modules that define the functions it declares. A
header without functions belongs to none, and every module may include it. The tool includes
the folder of the public headers, not the library's modules.

usage: includes.py SOURCE_FOLDER"""

import re
import sys
from pathlib import Path

PUBLIC = "include/info_analyze"  # the folder of the public headers

# Each module and the modules directly below it, whose lower modules it may include too.
MODULES = {
    "info_common": (),
    "queue": ("info_common",),
    "bidi": ("queue",),
    "analyze": ("bidi",),
    "analyze/model": ("analyze",),
    "analyze/query": ("analyze/model",),
    "calib": ("analyze",),
    "calib/curves": ("calib",),
    PUBLIC: (),
    "cli/terminal": (PUBLIC,),
    "cli/printer": ("cli/terminal",),
    "cli/provenance": ("cli/printer",),
    "cli/config": ("cli/printer",),
    "cli/acquire": ("cli/config",),
    "cli/snapshot": ("cli/acquire",),
    "cli/calibration": ("cli/snapshot",),
    "cli/commlib": ("cli/provenance",),
    "cli/explain": ("cli/provenance", "cli/snapshot"),
    "cli/doctor": ("cli/explain",),
    "cli/diff": ("cli/explain",),
    "cli/audit": ("cli/explain",),
    "cli/apply": ("cli/audit",),
    "cli": ("cli/apply", "cli/calibration", "cli/commlib", "cli/diff", "cli/doctor"),
}
SOURCES = (".cc", ".h", ".inc")


def with_below(module):
    """The modules that a module may include from, the lowest first."""
    below = [found for lower in MODULES[module] for found in with_below(lower)]
    return list(dict.fromkeys([*below, module]))


def module_of(name):
    folder = str(Path(name).parent)
    return folder if folder in MODULES else None


def homes_of_public_headers(sources, headers):
    """For each public header its folder and the modules that define its functions; nothing for a
    header without functions."""
    defined = {}
    for name, text in sources.items():
        for function in re.findall(r"^[A-Za-z_].*?\b(\w+)\(", text, re.MULTILINE):
            defined.setdefault(function, set()).add(module_of(name))
    homes = {name: set().union(*(defined.get(function, set()) for function in
                                 re.findall(r"\b(\w+)\((?!\*)", text)))
             for name, text in headers.items()}
    return {name: modules and modules | {PUBLIC} for name, modules in homes.items()}


def main(root):
    tops = {module.split("/")[0] for module in MODULES}
    sources = {str(path.relative_to(root)): path.read_text()
               for top in tops for path in sorted((root / top).rglob("*"))
               if path.suffix in SOURCES}
    headers = {f"info_analyze/{path.name}": path.read_text()
               for path in sorted((root / PUBLIC).glob("*.h"))}
    homes = homes_of_public_headers(
        {name: text for name, text in sources.items() if name.endswith(".cc")}, headers)
    wrong = [f"{folder}: no folder of this name has sources" for folder in MODULES
             if not any(module_of(name) == folder for name in sources)]
    for name, text in sources.items():
        module = module_of(name)
        if module is None:
            wrong.append(f"{name}: its folder is not a module")
            continue
        allowed = set(with_below(module))
        for included in re.findall(r'^ *# *include "(.*)"', text, re.MULTILINE):
            targets = homes.get(included, {module_of(included)})
            if targets and not targets & allowed:
                wrong.append(f"{name} includes {included} of {', '.join(map(str, targets))}")
    print(f"{len(sources)} files in {len(MODULES)} modules")
    if wrong:
        print("includes that point the wrong way:", *wrong, sep="\n", file=sys.stderr)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(Path(sys.argv[1]).resolve()))
