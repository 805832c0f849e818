#!/usr/bin/env python3
"""Everything that is exported or declared in the public headers is in the reference and described:
functions with each parameter and their results, records with their fields, constants.

usage: check_reference.py XML_FOLDER VERSION_SCRIPT
"""

import sys
import xml.etree.ElementTree as ElementTree
from pathlib import Path

sys.dont_write_bytecode = True  # the sources stay as they are
from exported_names import declared_names


def text_of(element, path):
    return " ".join("".join(found.itertext()) for found in element.findall(path)).strip()


def is_described(element):
    return bool(text_of(element, "briefdescription"))


def lacks_of_function(member):
    name = member.findtext("name")
    described = {parameter.text for item in member.iter("parameteritem")
                 for parameter in item.iter("parametername")
                 if text_of(item, "parameterdescription")}
    lacks = [f"{name}: parameter {parameter.text}" for parameter in member.findall("param/declname")
             if parameter.text not in described]
    results = [result for result in member.iter("simplesect") if result.get("kind") == "return"]
    if text_of(member, "type") != "void" and not any(text_of(result, "para") for result in results):
        lacks.append(f"{name}: result")
    return lacks


def lacks_of_member(member):
    name = member.findtext("name")
    lacks = [] if is_described(member) else [name]
    if member.get("kind") == "function":
        lacks += lacks_of_function(member)
    return lacks + [value.findtext("name") for value in member.findall("enumvalue")
                    if not is_described(value)]


def main(folder, version_script):
    index = ElementTree.parse(folder / "index.xml").getroot()
    lacks, names = [], set()
    for entry in index.findall("compound"):
        if entry.get("kind") not in ("file", "struct", "union"):
            continue
        compound = ElementTree.parse(folder / f"{entry.get('refid')}.xml").find("compounddef")
        # The header that includes all others is described on the main page.
        if not is_described(compound) and entry.findtext("name") != "info_analyze.h":
            lacks.append(entry.findtext("name"))
        for member in compound.iter("memberdef"):
            names.add(member.findtext("name"))
            scope = "" if entry.get("kind") == "file" else f"{entry.findtext('name')}."
            lacks += [scope + lack for lack in lacks_of_member(member)]
    exported = declared_names(version_script)
    lacks += [f"{name}: no entry" for name in sorted(exported - names)]
    if not exported or not index.findall("compound[@kind='page']"):
        lacks.append("nothing was checked, or there is no main page")
    print(f"{len(exported)} exported names, {len(names)} names in all")
    return "\n".join(["not described:", *lacks]) if lacks else 0


if __name__ == "__main__":
    sys.exit(main(*map(Path, sys.argv[1:])))
