#!/usr/bin/env python3
"""What `explain` says of the sample printers, compared with their files as this program reads them.

usage: explain_check.py TOOL DRIVER_FOLDER EXAMPLES_FOLDER

Values and raw values come from the XML documents and the PPD, handlers from a table of their own.
"""
import json
import pathlib
import re
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

LISTS = ("Finisher_list", "Bin_list", "Tray_list", "Fax_line_list")

# Update handler: (options, keys of each document); "*" reads what its model's handler reads.
UPDATES = {
    "z_Update_Prn_accessories": {
        "QVHardDisk": ["Accessories hd"], "QVTotalMemSize": ["Accessories memory"]},
    "z_Update_Prn_functions": {
        "QVDupUnit": ["Functions duplex"], "QVUseJobAccount": ["Functions management"],
        "QVEnableTrustPrint": ["Functions trustprint"],
        "QVUseSecuredPrint": ["Functions securedprint"],
        "QVUseCSModeJobAccount": ["Functions authentication_user"],
        "QVUseCSModeSecured": ["Functions authentication_job_password"],
        "QVUseCSModeFCode": ["Functions authentication_f_code"],
        "QVUseUsrManagement": ["Functions must_authentication", "Functions management",
                               "Functions authentication_user"]},
    "z_Update_Prn_specid": {"QVSpecID": ["Specid version"]},
    "z_Update_Prn_platformVer": {
        "QVPlatformVersion": ["Specid platform_name", "Specid platform_version"]},
    "z_Update_Prn_finisher_list": {
        "QVOptionStaple": "*", "QVPuncher": "*", "QVFolder": ["Finisher_list func"],
        "QVTrimmer": ["Finisher_list func", "Finisher_list name"],
        "QVInnerTrimmer": ["Finisher_list func", "Finisher_list name"],
        "QVInsertUnit": ["Finisher_list func", "Finisher_list type"],
        "QVEnableMultiInserter": ["Finisher_list func", "Finisher_list type",
                                  "Finisher_list detail_func"],
        "QVStacker": ["Finisher_list type"], "QVBinderOption": ["Finisher_list type"],
        "QVProPuncher": ["Finisher_list name", "Finisher_list detail_func"],
        "QVTopBottomTrimmer": ["Finisher_list type", "Finisher_list detail_func"]},
    "z_Update_Prn_bin_list": {"QVTrayCSetting": ["Bin_list number", "Bin_list alias"]},
    "z_Update_Prn_tray_list": {
        "QVSidePaperDeck": "*", "QVSrcOption": "*", "QVEnvelopeFeeder": "*", "MediaType": "*"},
    "z_Update_Prn_resolutions": {
        "QVEnableQuick": ["Resolutions resolution_300"],
        "QVEnableFine": ["Resolutions resolution_600"],
        "QVEnableSuperFine": ["Resolutions resolution_1200"]},
    "z_Update_Prn_fax_line_list": {
        "QVFAXNumOfLine": ["Fax_line_list list", "Fax_line_list type"],
        "QVFAXLineType": ["Fax_line_list type"],
        **{f"QVFAXDialLine{line}": ["Fax_line_list id_support", "Devicename devicename"]
           for line in "ABC"},
        "QVFAXDialLineD": ["Fax_line_list id_support"],
        **{f"QVFAXIPFAX{way}": ["Fax_line_list communication_mode"]
           for way in ("INTRA", "VoIP", "NGN", "MyNumberNGN")}},
    "z_Update_Prn_extra": {"QVInsertUnit": "*"},
    "z_Update_Prn_Complex_FinisherInformations": {
        "QVFinisher": "*", "QVCopyTray": "*", "QVFinTray": "*"},
}

# The handlers of the sample printers' models, from the model tables' rows as they are documented.
COMMON = {"QVFinisher": "analyze_GetQVFinisherCommon", "QVCopyTray": None, "QVFinTray": None,
          "QVSidePaperDeck": "analyze_GetQVSidePaperDeckCommon",
          "QVSrcOption": "analyze_GetQVSrcOptionCommon",
          "MediaType": "analyze_GetQVXXXMediaTypeCommon",
          "QVPuncher": "analyze_GetPuncherOptionString",
          "QVOptionStaple": "analyze_GetFinishingFunctionOptionStringCommon"}
MULTI_PUNCHER = {"QVPuncher": "analyze_GetPuncherOptionStringJUNIPER_MLT"}
MODELS = {
    "RA-X6-MLT-JP": {"QVFinisher": "analyze_GetQVFinisherSpecialIn2TrayCommon",
                     "QVCopyTray": "analyze_GetQVCopyTrayCommon",
                     "QVFinTray": "analyze_GetQVFinTrayCommon",
                     "QVSrcOption": "analyze_GetQVSrcOptionREDWOOD", **MULTI_PUNCHER},
    "RA-P9-1": {"QVFinisher": "analyze_GetQVFinisher_FIR",
                "QVCopyTray": "analyze_GetQVCopyTray_FIR",
                "QVFinTray": "analyze_GetQVFinTray_FIR"},
    "RA-H2-JP": {"QVPuncher": "analyze_GetPuncherOptionStringJUNIPER"},
    "RC-T7": {"QVSrcOption": "analyze_GetQVSrcOption_ELM",
              "QVOptionStaple": "analyze_GetFinishingFunctionOptionString_ELM"},
    "RA-Z5": {"QVSrcOption": "analyze_GetQVSrcOptionROWAN",
              "QVInsertUnit": "analyze_GetExtraOptionStringROWAN"},
    "RA-H5-MLT-JP": {"QVFinisher": "analyze_GetQVFinisherSUMAC",
                     "QVCopyTray": "analyze_GetQVCopyTrayMAPLE",
                     "QVFinTray": "analyze_GetQVFinTrayHORNBEAM", **MULTI_PUNCHER},
    "RA-T0-MLT-JP": {"QVSrcOption": "analyze_GetQVSrcOptionHOLLY", **MULTI_PUNCHER},
    "RC-W0": {"QVSrcOption": "analyze_GetQVSrcOptionREDWOOD",
              "MediaType": "analyze_GetQVXXXMediaTypeREDWOOD",
              "QVEnvelopeFeeder": "analyze_GetQVEnvelopeFeederCommon"},
    "RB-T9-1": {"QVCopyTray": "analyze_GetQVCopyTrayCommon",
                "QVFinTray": "analyze_GetQVFinTrayMYRTLE",
                "QVSrcOption": "analyze_GetQVSrcOptionCommonByCount",
                "MediaType": "analyze_GetQVXXXMediaTypeYEW"},
    "RA-P9-JP": {"QVFinisher": "analyze_GetQVFinisher_ASPEN",
                 "QVCopyTray": "analyze_GetQVCopyTray_ASPEN",
                 "QVFinTray": "analyze_GetQVFinTray_ASPEN"},
}

wrong = []


def expect(what, actual, expected):
    if actual != expected:
        wrong.append(f"{what}: {actual!r}, expected {expected!r}")


def read_value(parent, key):
    for child in parent:
        if child.get("key") != key or child.tag == "dict":
            continue
        if child.tag == "array":
            return [int(e.text) if e.tag == "long" else (e.text or "") for e in child]
        return int(child.text) if child.tag == "long" else (child.text or "")
    return None


def raw_values(documents, name):
    """(item, value) of "Document key", a missing one as None."""
    document, key = name.split(" ")
    root = documents[document]
    items = [child for child in root if child.tag == "dict" and child.get("key") == "list"]
    if key == "list":
        return [(None, len(items) or None)]
    if document in LISTS:
        return [(index, read_value(item, key)) for index, item in enumerate(items)]
    return [(None, read_value(root, key))]


def option_name(keyword):
    return "MediaType" if re.fullmatch(r"QV\w+MediaType", keyword) else keyword


def check_inputs(what, why, documents, keys):
    printed = [(f"{i['document'].removesuffix('.xml')} {i['key']}", i["item"], i["value"])
            for i in why["inputs"] if i["document"] is not None]
    if keys == "*":  # what a model's handler reads; each key must be printed in full
        keys = {name for name, _, _ in printed}
    expected = [(name, item, value) for name in keys
                for item, value in raw_values(documents, name)]
    expect(f"{what}: raw values", sorted(map(repr, printed)), sorted(map(repr, expected)))
    for raw in why["inputs"]:
        expect(f"{what}: state", raw["state"], "missing" if raw["value"] is None else "present")


def check_model(what, why, code):
    option = option_name(why["keyword"])
    handlers = {**COMMON, **MODELS[code]}
    is_extra = why["update"] == "z_Update_Prn_extra"
    if option in handlers and (option != "QVInsertUnit" or is_extra):
        expect(f"{what}: handler", why["model"]["handler"], handlers[option])
        row = why["model"]["code"]
        if (row is None) == (option in MODELS[code]) and handlers[option] != COMMON.get(option):
            wrong.append(f"{what}: row {row!r}")
        if row is not None and not code.startswith(row):
            wrong.append(f"{what}: row {row!r} of model {code}")
    else:
        expect(f"{what}: model", why["model"], None)


def check_choices(what, why, ppd):
    keyword = re.escape(why["keyword"])
    if not re.search(rf"^\*OpenUI \*{keyword}[/:]", ppd, re.M):
        expect(f"{what}: choices", why["ppd"], None)
        return
    choices = re.findall(rf"^\*{keyword} ([^/:]+)/([^:]*):", ppd, re.M)
    expect(f"{what}: choices", [(c["choice"], c["text"]) for c in why["ppd"]["choices"]], choices)
    default = re.search(rf"^\*Default{keyword}: *(.*)$", ppd, re.M).group(1)
    expect(f"{what}: default", why["ppd"]["default"], default)
    expect(f"{what}: has value", why["ppd"]["has_value"], why["value"] in [c for c, _ in choices])


def check_origin(what, why):
    """A device's value, else one of the PPD's list of values, else the default."""
    is_reported = any(raw["document"] and raw["value"] is not None for raw in why["inputs"])
    if why["origin"] == "default":
        expect(f"{what}: default value", why["value"], why["default_value"])
    elif why["origin"] == "ppd":
        lists = [raw["value"] for raw in why["inputs"] if raw["document"] is None]
        expect(f"{what}: reported", is_reported, False)
        expect(f"{what}: in the PPD's list", why["value"] in ",".join(lists).split(","), True)
    else:
        expect(f"{what}: reported", is_reported, True)
    if why["value"] != why["default_value"] and is_reported:
        expect(f"{what}: origin of another value", why["origin"], "device")


def check_reason(what, why):
    """What decided is among what was read; with the default, it says so."""
    inputs = [str(raw) for raw in why["inputs"]]
    for raw in why["needed"] + why["unmatched"]:
        expect(f"{what}: decided by an input", str(raw) in inputs, True)
    for other in why["rejected"]:
        expect(f"{what}: rejected", other["value"] == why["value"], False)
    expect(f"{what}: reason", why["because"].endswith("default"), why["origin"] == "default")


def check_printer(tool, driver, folder):
    name = folder.name
    run = subprocess.run(
        [tool, "explain", "--queue", name, "--driver-folder", driver, "--cups-root", folder,
         "--device-info", folder / "device-info", "--format", "json"],
        check=True, capture_output=True)
    report = json.loads(run.stdout)
    ppd = (folder / "ppd" / f"{name}.ppd").read_text(encoding="utf-8")
    code = re.search(r'^\*QVAnlz_DriverName: "(.*)"', ppd, re.M).group(1)
    documents = {path.stem: ElementTree.parse(path).getroot()
                 for path in (folder / "device-info").glob("*.xml")}
    expect(f"{name}: model code", report["driver_name"], code)
    expected = (folder / "expected-options.txt").read_text(encoding="utf-8").splitlines()
    expect(f"{name}: options",
           [f"{why['keyword']}={why['value']}" for why in report["explanations"]], expected)
    for why in report["explanations"]:
        what = f"{name}: {why['keyword']}"
        keys = UPDATES[why["update"]].get(option_name(why["keyword"]))
        if keys is None:
            wrong.append(f"{what}: set by {why['update']}")
            continue
        check_inputs(what, why, documents, keys)
        check_model(what, why, code)
        check_choices(what, why, ppd)
        check_origin(what, why)
        check_reason(what, why)
    return len(report["explanations"])


def main():
    tool, driver, examples = sys.argv[1:]
    folders = [path.parent for path in sorted(pathlib.Path(examples).glob("*/device-info"))]
    options = sum(check_printer(tool, driver, folder) for folder in folders)
    print(f"{options} options of {len(folders)} printers")
    for line in wrong:
        print(line)
    return 1 if wrong or len(folders) < 10 or options < 300 else 0


sys.exit(main())
