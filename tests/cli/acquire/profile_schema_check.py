#!/usr/bin/env python3
"""Checks that the sample profiles follow the published schema, and that the schema and the tool
accept and refuse the same profiles: those that changes of one place in the samples give.

usage: profile_schema_check.py TOOL SOURCE_FOLDER     exit status 77: no jsonschema
"""
import copy
import json
import pathlib
import re
import subprocess
import sys
import tempfile

try:
    import jsonschema
except ImportError:
    sys.exit(77)

GONE, NOWHERE = object(), object()
TOO_LARGE, TOO_SMALL = 2**31, -2**31 - 1
RULE = ("trays", 0)
NAME = (*RULE, "if", "name")
ALIAS = (*RULE, "then", "alias")
SECTIONS = ("device", "trays", "bins", "finishers", "fax_lines")

# The place of a change, and the values that are wrong there.
BROKEN = (
    ((), [], "profile", 1, None, {}),
    (("profile_version",), GONE, 0, 2, "1", True, None, [1]),
    (("name",), 5, None, ["x"], "a\0b"),
    (("version",), 1),
    (("Trays",), []),
    *(((section,), None, {}, "x", 1) for section in SECTIONS),
    *(((section, 0), None, [], "x", {}) for section in SECTIONS),
    *(((section, 0, "then"), GONE, None, "x", 1) for section in SECTIONS),
    *(((section, 0, "else"), {}) for section in SECTIONS),
    *(((section, 0, "if"), None, [], "x") for section in SECTIONS),
    *(((section, 0, "then"), []) for section in SECTIONS if section != "fax_lines"),
    (NAME, None, True, [], [1], [None], ["x", "a\0"], "a\0", 1.5, TOO_LARGE, TOO_SMALL),
    (NAME, {}, {"min": "1"}, {"max": None}, {"min": 1.5}, {"min": 1, "step": 2},
     {"max": TOO_LARGE}, {"min": TOO_SMALL}),
    ((*RULE, "if", "colour"), "x"),
    ((*RULE, "if", "Name"), "x"),
    ((*RULE, "if", "media_type"), "x"),
    ((*RULE, "if", "media-ready"), "x"),
    *(((section, 0, "if", "media-type"), "x") for section in SECTIONS if section != "trays"),
    *((("device", 0, "if", field), "x") for field in ("name", "type", "capacity")),
    *((("fax_lines", 0, "if", field), "x") for field in ("name", "type", "capacity")),
    (ALIAS, 101, "101", None, ["101"], [1.5], [None], [TOO_LARGE], [TOO_SMALL]),
    ((*RULE, "then", "type"), "2", 2.5, None, [2], True, TOO_LARGE),
    ((*RULE, "then", "hd"), 1),
    (("device", 0, "then", "hd"), "1", True, TOO_SMALL),
    (("device", 0, "then", "devicename"), 1, None, ["x"], "a\0"),
    (("device", 0, "then", "alias"), [1]),
    (("bins", 0, "then", "capacity"), 1),
    (("bins", 0, "then", "number"), "1"),
    (("finishers", 0, "then", "func"), "staple", [1], ["a\0"]),
    (("finishers", 0, "then", "detail_func"), {}, [None]),
    (("finishers", 0, "then", "name"), 1),
    (("finishers", 0, "then", "communication_mode"), [1]),
    (("fax_lines", 0, "then"), {}, [1], [[]], [{"id": "1"}], [{"alias": [1]}],
     [{"communication_mode": ["1"]}], [{"id": 1}, None]),
)

# And those that are unusual but right.
ODD = (
    ((), {"profile_version": 1}),
    (("$schema",), "info-analyze-profile.schema.json"),
    (("name",), GONE, ""),
    *(((section,), [], GONE) for section in SECTIONS),
    *(((section, 0, "if"), {}, GONE) for section in SECTIONS),
    *(((section, 0, "then"), {}) for section in SECTIONS if section != "fax_lines"),
    (NAME, "", "*", "[ab]?", "a\nb", "\u00fc", ["x"], ["x", "*"], 0, -1, TOO_LARGE - 1,
     TOO_SMALL + 1),
    (NAME, {"min": 0}, {"max": -5}, {"min": 9, "max": 1}, {"max": TOO_LARGE - 1}),
    (ALIAS, [], [TOO_LARGE - 1, TOO_SMALL + 1]),
    (("finishers", 0, "then", "func"), [], ["unheard-of"]),
    (("fax_lines", 0, "then"), [], [{}], [{}, {"id": -1, "communication_mode": []}]),
)


def changed(profile, place, value):
    """The profile with the value there, or NOWHERE when it has no such place."""
    if not place:
        return copy.deepcopy(value)
    result = copy.deepcopy(profile)
    parent = result
    try:
        for step in place[:-1]:
            parent = parent[step]
        if value is GONE:
            del parent[place[-1]]
        else:
            parent[place[-1]] = value
    except (KeyError, IndexError):
        return NOWHERE
    return result


def named(place, value):
    return f"{'.'.join(map(str, place)) or 'profile'} {'gone' if value is GONE else repr(value)}"


def main():
    tool, source = sys.argv[1], pathlib.Path(sys.argv[2])
    schema = json.loads((source / "docs/info-analyze-profile.schema.json").read_text())
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    files = sorted(source.glob("examples/*/device-profile.json"))
    samples = {file.parent.name: json.loads(file.read_text()) for file in files}
    wrong, count = [], 0

    def check(what, profile, is_right):
        nonlocal count
        count += 1
        file.write_text(json.dumps(profile))
        status = subprocess.run([tool, "profile", "check", file], capture_output=True).returncode
        if status != (0 if is_right else 2):
            wrong.append(f"{what}: the tool ends with status {status}")
        if validator.is_valid(profile) != is_right:
            wrong.append(f"{what}: the schema {'refuses' if is_right else 'accepts'} it")

    with tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder, "profile.json")
        for name, sample in samples.items():
            check(name, sample, True)
        for is_right, changes in ((True, ODD), (False, BROKEN)):
            for place, *values in changes:
                for value in values:
                    what = named(place, value)
                    found = [name for name, sample in samples.items()
                             if changed(sample, place, value) is not NOWHERE]
                    if not found:
                        wrong.append(f"{what}: no sample has this place")
                        continue
                    name = found[count % len(found)]  # all samples have their turn
                    check(f"{name}: {what}", changed(samples[name], place, value), is_right)
        header = (source / "cli/acquire/printer_attributes.h").read_text()
        requested = re.findall(r'"([\w-]+)"', header.split("kRequestedAttributes =")[1].split("}")[0])
        if schema["$defs"]["attribute"]["enum"] != requested or not requested:
            wrong.append(f"the schema has other attributes than {requested}")
        for section in SECTIONS:
            then = [] if section == "fax_lines" else {}
            for attribute in requested:
                check(f"{section}: {attribute}", {"profile_version": 1, section: [
                    {"if": {attribute: "x"}, "then": then}]}, True)
    if len(samples) < 10:
        wrong.append(f"only {len(samples)} samples")
    print(f"{count} profiles")
    print("\n".join(wrong))
    return 1 if wrong else 0


sys.exit(main())
