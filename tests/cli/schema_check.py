#!/usr/bin/env python3
"""Checks what each verb writes in JSON, for all sample printers: against the published schema, and
where LINES has the verb, and for audit, against what it writes as text.

usage: schema_check.py TOOL DRIVER_FOLDER SOURCE_FOLDER     exit status 77: no jsonschema
"""
import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

try:
    import jsonschema
except ImportError:
    sys.exit(77)


def closed(schema):
    """The schema, refusing members that it does not describe."""
    if isinstance(schema, list):
        return [closed(item) for item in schema]
    if not isinstance(schema, dict):
        return schema
    schema = {key: closed(value) for key, value in schema.items()}
    if schema.get("type") == "object" and "properties" in schema:
        schema["additionalProperties"] = False
    return schema


def lines_of_query(answer):
    return [f"{option['keyword']}={option['value']}" for option in answer["options"]]


def lines_of_doctor(answer):
    return [f"{finding['level']:<9}{finding['check']:<11}{finding['sentence']}"
            for finding in answer["findings"]]


def lines_of_diff(answer):
    """The changed values."""
    values = [tuple(side and side["value"] or "-" for side in (change["before"], change["after"]))
              for change in answer["changes"]]
    return [f"{change['keyword']}: {before} -> {after}  ({change['change']}"
            for change, (before, after) in zip(answer["changes"], values)]


def lines_of_models(answer):
    codes = {"prefix": "{}*", "whole": "{}", "other models": "(other models)"}
    return ["\t".join((family["option"], codes[row["match"]].format(row["code"]),
                       row["handler"] or "-", ", ".join(map(input_name, row["inputs"])) or "-"))
            for family in answer["families"] for row in family["rows"]]


def value_as_text(value):
    return f"[{', '.join(map(str, value))}]" if isinstance(value, list) else str(value)


def lines_of_acquire(answer):
    """A line for each document and each key."""
    lines = []
    for document in answer["documents"]:
        left_out = document["left_out"]
        lines.append(document["document"] + (f"  (left out: {left_out})" if left_out else ""))
        for key in document["keys"]:
            source = "the device does not report this"
            if key["source"] is not None:
                source = ("profile " if key["origin"] == "profile" else "") + key["source"]
            value = "-" if key["value"] is None else value_as_text(key["value"])
            name = ("  " if key["item"] is None else "    ") + key["key"]
            lines.append(f"{f'{name}  ':<32}{f'{value}  ':<18}{source}")
    return lines


def lines_of_commlib_check(answer):
    return [f"{clause['result']:<12}{clause['clause']:<21}{clause['sentence']}"
            for clause in answer["clauses"]]


def lines_of_profile_check(answer):
    return [f"{finding['rule']} {finding['sentence']}" for finding in answer["findings"]]


def lines_of_config(answer):
    """The settings that have a value, and the files."""
    folders = [f"{'driver-folder':<15}{folder['value']}  ({folder['models']} in {folder['source']})"
               for folder in answer["driver_folders"]]
    lines = [f"{setting['key']:<15}{setting['value']}  ({setting['source']})"
             for setting in answer["settings"] if setting["value"] is not None]
    if answer["settings"][0]["value"] is not None:
        folders = [lines.pop(0), *folders]
    return [*folders, *lines,
            *(f"{'file':<15}{file['path']}  ({file['state']})" for file in answer["files"])]


def input_name(input_):
    if input_["document"] is None:
        return f"PPD {input_['key']}"
    if input_["key"] == "list":
        return f"{input_['document']} number of items"
    return f"{input_['document']} {'list[] ' if input_['in_list'] else ''}{input_['key']}"


def text_of_option(option):
    """As audit prints it."""
    change = f"{option['default'] or ''} -> {option['value']}"
    return f"{option['keyword']} " + {
        "equal": option["value"], "differs": change,
        "not offered": f"{change} ({option['reason']})",
        "unknown": f"unknown ({option['reason']})"}[option["state"]]


def line_of_audit(answer):
    """The line of text about a queue."""
    name = answer["queue"] or answer["snapshot"]
    if answer["state"] != "judged":
        why = "; ".join(filter(None, (answer["reason"], answer["hint"])))
        return f"{name}  {answer['state']}  {why}"
    differ, unknown = answer["differ"], answer["unknown"]
    counts = [f"{differ} {'differs' if differ == 1 else 'differ'}"] * bool(differ)
    counts += [f"{unknown} unknown"] * bool(unknown)
    details = [text_of_option(option) for option in answer["options"]]
    details += [f"{change['keyword']} was {change['before']} at {answer['since']} and is "
                f"{change['after']}" for change in answer["changes"]]
    return "  ".join(filter(None, (name, ", ".join(counts) or "right", ", ".join(details))))


def summary_of(answers):
    """What the last line of an audit must count."""
    judged = [answer for answer in answers if answer["state"] == "judged"]
    return {"queues": len(answers),
            "right": sum(not answer["differ"] + answer["unknown"] for answer in judged),
            "differ": sum(answer["differ"] > 0 for answer in judged),
            "unknown": sum(answer["unknown"] > 0 for answer in judged),
            "not_applicable": sum(answer["state"] == "not applicable" for answer in answers),
            "failed": sum(answer["state"] == "failed" for answer in answers)}


# The lines that the text of a verb must have, made of its JSON, and no others of their pattern.
LINES = {
    "query": (lines_of_query, r"(.*)"),
    "doctor": (lines_of_doctor, r"((?:ok|note|warning|failure) .*)"),
    "diff": (lines_of_diff, r"(\w+: .* -> .*  \([^:)]*).*"),
    "acquire": (lines_of_acquire, r"(?!  list\[)(.*)"),
    "profile_check": (lines_of_profile_check, r"(.*)"),
    "commlib_check": (lines_of_commlib_check, r"((?:kept|broken|not tested) .*)"),
    "models": (lines_of_models, r"(.*)"),
    "config": (lines_of_config, r"(\S.*\))"),
}


class Checker:
    def __init__(self, schema):
        jsonschema.Draft202012Validator.check_schema(schema)
        self.schema = closed(schema)
        self.count = 0
        self.wrong = []

    def check(self, what, name, text):
        if not text.isascii():
            self.wrong.append(f"{what}: is not ASCII")
        schema = {"$defs": self.schema["$defs"], "$ref": f"#/$defs/{name}"}
        errors = list(jsonschema.Draft202012Validator(schema).iter_errors(json.loads(text)))
        self.wrong += [f"{what}: {error.json_path}: {error.message[:200]}" for error in errors]
        self.count += 1

    def check_list(self, snapshot, schema):
        """The list of a snapshot, and its files against the list."""
        listed = json.loads((snapshot / "snapshot.json").read_text(encoding="ascii"))
        errors = list(jsonschema.Draft202012Validator(closed(schema)).iter_errors(listed))
        self.wrong += [f"{snapshot}: {error.json_path}: {error.message[:200]}" for error in errors]
        missing = set(schema["properties"]) - set(listed)
        sizes = {entry["name"]: entry["size"] for entry in listed["files"]}
        found = {str(path.relative_to(snapshot)): path.stat().st_size
                 for path in snapshot.glob("*/*")}
        if missing or sizes != found:
            self.wrong.append(f"{snapshot}: {missing or sizes}")
        self.count += 1

    def compare(self, what, name, text, plain):
        make_lines, pattern = LINES[name]
        expected = make_lines(json.loads(text))
        matches = (re.fullmatch(pattern, line) for line in plain.splitlines())
        lines = [match[1] for match in matches if match]
        if lines != expected:
            self.wrong.append(f"{what}: text {lines}, JSON {expected}")


def keys(schema):
    """The members that a schema describes, at any depth."""
    if isinstance(schema, list):
        return [key for item in schema for key in keys(item)]
    if not isinstance(schema, dict):
        return []
    return [*schema.get("properties", {}), *keys(list(schema.values()))]


def model_code(printer):
    ppd = (printer / "ppd" / f"{printer.name}.ppd").read_text(encoding="utf-8")
    return re.search(r'^\*QVAnlz_DriverName: "(.*)"', ppd, re.M)[1]


def main():
    tool, driver, source = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])
    schema = json.loads((source / "docs/info-analyze.schema.json").read_text(encoding="utf-8"))
    snapshot_schema = json.loads(
        (source / "docs/info-analyze-snapshot.schema.json").read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(snapshot_schema)
    checker = Checker(schema)
    asked = set()

    def ask(name, *arguments, statuses=(0,)):
        run = subprocess.run([tool, *arguments, "--format", "json"], capture_output=True)
        if run.returncode not in statuses:
            checker.wrong.append(f"{arguments}: status {run.returncode}: {run.stderr.decode()}")
            return
        asked.add(name)
        what = " ".join(map(str, arguments))
        checker.check(what, name, run.stdout.decode())
        if name in LINES:
            plain = subprocess.run([tool, *arguments], capture_output=True)
            checker.compare(what, name, run.stdout.decode(), plain.stdout.decode())

    def audit(status, *arguments):
        """Returns the answers about queues, by queue."""
        what = " ".join(map(str, ("audit", *arguments)))
        run = subprocess.run([tool, "audit", *arguments, "--format", "json"], capture_output=True)
        *lines, last = run.stdout.decode().splitlines() or [""]
        if run.returncode != status or not lines:
            checker.wrong.append(f"{what}: status {run.returncode}: {run.stderr.decode()}")
            return {}
        asked.update(("audit", "audit_summary"))
        for line in lines:
            checker.check(what, "audit", line)
        checker.check(what, "audit_summary", last)
        answers = [json.loads(line) for line in lines]
        if json.loads(last)["summary"] != summary_of(answers):
            checker.wrong.append(f"{what}: {last}, should be {summary_of(answers)}")
        if "--all" not in arguments:
            plain = subprocess.run([tool, "audit", *arguments], capture_output=True)
            text = plain.stdout.decode().splitlines()[:-1]
            if text != list(map(line_of_audit, answers)):
                checker.wrong.append(f"{what}: text {text}, JSON {answers}")
        return {answer["queue"]: answer for answer in answers}

    def audit_all(folder):
        """Audits the snapshots in a folder, and queues in each state."""
        on_driver = ["--driver-folder", driver]
        pathlib.Path(folder, "damaged.tar.gz").write_text("no archive")
        whole = audit(12, "--snapshots", folder, "--all", *on_driver)
        short = audit(12, "--snapshots", folder, *on_driver)
        states = {option["state"] for answer in whole.values() for option in answer["options"]}
        if not {"equal", "differs", "unknown"} <= states or set(whole) != set(short):
            checker.wrong.append(f"audit: states {states}")
        root = pathlib.Path(folder, "root")
        shutil.copytree(source / "examples/office-mfp", root)
        office = root / "ppd/office-mfp.ppd"
        text = office.read_text()
        accessories = root / "device-info/Accessories.xml"
        accessories.write_text(accessories.read_text().replace('key="hd">1<', 'key="hd">0<'))
        lines = [line for line in text.splitlines(True) if "QVFinisher" not in line or
                 "BKFINW1" not in line]
        office.write_text("".join(lines))
        office.with_name("foreign.ppd").write_text(
            "".join(line for line in text.splitlines(True) if "QV" not in line))
        office.with_name("broken.ppd").write_text("no PPD")
        queues = audit(12, "--cups-root", root, "--device-info", root / "device-info", "--since",
                       folder, *on_driver)
        found = {name: answer["state"] for name, answer in queues.items()}
        expected = {"office-mfp": "judged", "foreign": "not applicable", "broken": "failed"}
        if found != expected:
            checker.wrong.append(f"audit: {found}")
            return
        office = queues["office-mfp"]
        if [change["keyword"] for change in office["changes"]] != ["QVHardDisk"]:
            checker.wrong.append(f"audit: changes {office['changes']}")
        if "not offered" not in {option["state"] for option in office["options"]}:
            checker.wrong.append(f"audit: no value that the PPD does not offer {office['options']}")

    def fail(status, *arguments):
        """A failure writes nothing but one line of JSON, whose parts make the text of it."""
        what = " ".join(map(str, arguments))
        run = subprocess.run([tool, *arguments, "--format", "json"], capture_output=True, text=True)
        plain = subprocess.run([tool, *arguments], capture_output=True, text=True)
        asked.add("failure")
        checker.check(what, "failure", run.stderr)
        failure = json.loads(run.stderr)["failure"]
        subject = " ".join(filter(None, (failure["action"], failure["object"])))
        message = "; ".join(filter(None, (
            ": ".join(filter(None, (subject, failure["cause"]))), failure["hint"])))
        # Without a verb, the words of the format are a second mistake.
        same = not arguments or plain.stderr == f"info-analyze: error: {message}\n"
        if (run.returncode, failure["exit_status"], run.stdout, run.stderr.count("\n"),
                same) != (status, status, "", 1, True):
            checker.wrong.append(f"{what}: {run} {plain.stderr}")

    with tempfile.TemporaryDirectory() as folder:
        snapshots = []
        settings = pathlib.Path(folder, "info-analyze.conf")
        settings.write_text(f"device-info = /x/{{queue}}\n[driver-folders]\nR* = {driver}\nR = x\n",
                            encoding="ascii")
        for printer in sorted(path.parent for path in source.glob("examples/*/device-info")):
            snapshots.append(f"{folder}/{printer.name}")
            queue = ["--queue", printer.name, "--cups-root", printer]
            documents = ["--device-info", printer / "device-info"]
            for more in (["--redact", f"{snapshots[-1]}.redacted"], [snapshots[-1]]):
                subprocess.run([tool, "snapshot", *more, *queue, *documents], check=True,
                               stdout=subprocess.DEVNULL)
                checker.check_list(pathlib.Path(more[-1]), snapshot_schema)
            on_printer = ["--snapshot", snapshots[-1], "--driver-folder", driver]
            ask("query", "query", *on_printer)
            ask("query", "function-version", "0x310", *on_printer)
            ask("explain", "explain", *on_printer)
            ask("doctor", "doctor", *on_printer)
            ask("calibration_settings", "calibration", "settings", *on_printer)
            ask("calibration_defaults", "calibration", "defaults", *on_printer)
            ask("queues", "queues", "cups", "--cups-root", printer)
            ask("models", "models", model_code(printer))
            attributes, profile = printer / "device.attributes", printer / "device-profile.json"
            acquire = ["acquire", attributes, f"{folder}/documents", "--driver-folder", driver]
            ask("acquire", *acquire)
            ask("acquire", *acquire, "--profile", profile)
            ask("profile_check", "profile", "check", profile)
            ask("profile_check", "profile", "check", profile, "--driver-folder", driver, "--ppd",
                printer / "ppd" / f"{printer.name}.ppd", statuses=(0, 7))
            ask("config", "config", *queue, "--config", settings)
            ask("diff", "diff", snapshots[0], snapshots[-1], "--driver-folder", driver)
        audit_all(folder)
        ask("doctor", "doctor", "--queue", "none", "--cups-root", folder, "--driver-folder", folder,
            "--device-info", folder, statuses=(8,))
    ask("commlib_check", "commlib", "check", driver)
    ask("config", "config")
    ask("models", "models")
    ask("models", "models", "RA-Z5")
    ask("uri", "uri", "net:192.0.2.10/PDLType=kappa2")
    ask("queues", "queues", "daemon")
    # Names a queue of this machine's daemon, so there is no answer to ask for here.
    checker.check("queues find", "queue",
                  '{"schema_version": 1, "verb": "queues find", "queue": "office"}')
    fail(2)
    fail(2, "query")
    fail(2, "function-version", "x", "--snapshot", "none", "--driver-folder", driver)
    fail(3, "query", "--queue", "none", "--cups-root", "/", "--device-info", "/",
         "--driver-folder", driver)
    fail(4, "query", "--queue", "none", "--device-info", "/", "--driver-folder", "/none")
    fail(6, "uri", "none")
    fail(2, "audit", "--live")
    fail(9, "audit", "--snapshots", "/none", "--driver-folder", driver, "--since", "/none")
    fail(13, "acquire", "usb://none", "/none", "--driver-folder", driver)
    fail(2, "profile", "check", "/none")
    fail(9, "explain", "--snapshot", "/none", "--driver-folder", driver)
    checker.wrong += [f"key {key!r} has a blank" for key in keys(schema) if " " in key]
    unasked = {entry["$ref"].split("/")[-1] for entry in schema["oneOf"]} - asked - {"queue"}
    if unasked:
        checker.wrong.append(f"not asked: {unasked}")
    print(f"{checker.count} answers")
    print("\n".join(checker.wrong))
    return 1 if checker.wrong else 0


sys.exit(main())
