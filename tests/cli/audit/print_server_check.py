#!/usr/bin/env python3
"""Audits the queues of a real CUPS server, sets what differs, audits again and takes it back. The
queues are of all types, some of their communication libraries are hostile, and apply is killed,
refused, raced, and left without a server or without disk space in the middle.

usage: print_server_check.py TOOL DRIVER_FOLDER FAULTY_FOLDER SOURCE_FOLDER [QUEUES [KILLS]]

Needs cupsd and lpadmin, and root for some of the checks; exits with 77 without cupsd."""
import contextlib
import ctypes
import json
import os
import pathlib
import pty
import random
import re
import shlex
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time

from print_server import PrintServer, is_installed

# What the samples' devices do not report stays unknown, so they are not audited as right.
HOSTILE = ("crash_when_called", "hang_when_called", "crash_when_loaded", "exit_when_loaded",
           "grab_when_called", "stub")
TIMEOUT = 4


class Checker:
    def __init__(self, tool, driver, faulty, source, root, requires_root=False):
        self.tool = tool
        self.driver = pathlib.Path(driver)
        self.faulty = pathlib.Path(faulty)
        self.samples = sorted(path.parent for path in pathlib.Path(source).glob("examples/*/ppd"))
        self.root = pathlib.Path(root)
        self.count = 0
        self.wrong = []
        self.root.chmod(0o755)  # backends run as a user of their own
        self.server = PrintServer(self.root / "cups", requires_root)
        for folder in ("documents", "drivers", "tmp", "state"):
            (self.root / folder).mkdir()

    def expect(self, holds, *what):
        self.count += 1
        if not holds:
            self.wrong.append(" ".join(map(str, what))[:2000])
            print("WRONG:", self.wrong[-1], flush=True)

    # Queues ----------------------------------------------------------------------------------

    def add(self, name, sample, driver=None, ppd=None):
        """A queue with its own document directory and driver folder."""
        self.server.add(name, ppd or sample / f"ppd/{sample.name}.ppd")
        (self.root / "documents" / name).symlink_to(sample / "device-info")
        (self.root / "drivers" / name).symlink_to(driver or self.driver)

    def environment(self, **more):
        return {**self.server.environment, "TMPDIR": str(self.root / "tmp"),
                "XDG_STATE_HOME": str(self.root / "state"),
                "STATE_DIRECTORY": str(self.root / "state"), **more}

    def command(self, verb, *arguments, documents=None):
        folders = [] if "--undo" in arguments else [
            "--driver-folder", f"{self.root}/drivers/{{queue}}",
            "--device-info", documents or f"{self.root}/documents/{{queue}}"]
        return [str(part) for part in (self.tool, verb, *arguments, *folders,
                                       "--timeout", TIMEOUT)]

    def run(self, verb, *arguments, status=None, documents=None, **environment):
        run = subprocess.run(self.command(verb, *arguments, documents=documents),
                             env=self.environment(**environment),
                             stdin=subprocess.DEVNULL, capture_output=True, text=True,
                             errors="replace")
        if status is not None:
            self.expect(run.returncode == status, verb, arguments, "ended with", run.returncode,
                        run.stdout[-600:], run.stderr[-600:])
        return run

    def judgements(self, *arguments):
        """By queue, and the summary."""
        lines = [json.loads(line) for line in
                 self.run("audit", "--format", "json", *arguments).stdout.splitlines()]
        return {line["queue"]: line for line in lines[:-1]}, lines[-1]["summary"]

    def undo_path(self, run):
        found = re.search(r"^undo with: info-analyze apply --undo (\S+)$", run.stdout, re.M)
        self.expect(found, "no undo file is named", run.stdout[-300:], run.stderr[-300:])
        return found[1]


def check_whole_server(checker, queues):
    """All types of queues at once: audit, apply, audit, undo."""
    server, samples = checker.server, checker.samples
    for i in range(queues):
        checker.add(f"q{i:04}", samples[i % len(samples)])
    office = next(sample for sample in samples if sample.name == "office-mfp")
    for name in ("Büro-Süd", "キュー", "a&b;c$(x)", "x..", "x" * 127):
        checker.add(name, office)
    checker.add("shared1", office)
    checker.add("shared2", office)
    hostile = [name for name in HOSTILE if name != "grab_when_called" or limits_memory(checker.tool)]
    for name in hostile:
        checker.add(name, office, driver=checker.faulty / name)
    server.lpadmin("-p", "raw", "-E", "-v", "file:///dev/null")
    server.lpadmin("-p", "shared1", "-c", "class")
    server.lpadmin("-p", "shared2", "-c", "class")
    make_odd_ppds(checker, office)
    before = server.ppds()

    print_step("audit")
    run = checker.run("audit", status=12)
    names = [line.split("  ")[0] for line in run.stdout.splitlines()[:-1]]
    checker.expect(len(names) == len(set(names)) and len(names) > queues, "queues of the audit")
    judged, summary = checker.judgements()
    checker.expect([name for name in names] == list(judged), "text and JSON have other queues")
    check_counts(checker, run.stdout.splitlines()[-1], judged)
    checker.expect(summary["queues"] == len(judged), summary)
    for name, why in {"raw": "raw queue", "class": "class", "driverless": "driverless",
                      "foreign": "option lines"}.items():
        checker.expect(judged[name]["state"] == "not applicable" and why in judged[name]["reason"],
                       judged[name])
    for name, why in {"broken": "not a PPD", "missing": "has no PPD of the queue",
                      "crash_when_called": "SIGSEGV",
                      "crash_when_loaded": "SIGSEGV", "exit_when_loaded": "ended",
                      "hang_when_called": f"longer than {TIMEOUT} s",
                      "grab_when_called": "memory", "stub": "documents",
                      "missing-documents": "documents"}.items():
        checker.expect(name in HOSTILE and name not in hostile or
                       judged[name]["state"] == "failed" and why in judged[name]["reason"],
                       name, judged.get(name))
    for name in ("crash_when_called", "missing-documents"):
        checker.expect(judged[name]["hint"].endswith(f"`info-analyze doctor --queue {name}`"),
                       judged[name]["hint"])
    good = [name for name in judged if judged[name]["state"] == "judged"]
    checker.expect(len(good) >= queues + 7, "judged:", len(good))
    checker.expect(all(judged[name]["differ"] for name in good), "some sample does not differ")
    for name in ("shared1", "shared2", "Büro-Süd", "キュー"):
        checker.expect(judged[name]["options"] == judged["q0005"]["options"], name)
    checker.expect(server.ppds() == before, "audit changes PPDs")

    print_step("dry run")
    dry = checker.run("apply", "--dry-run", status=12)
    checker.expect(server.ppds() == before, "a dry run changes PPDs")
    check_dry_run(checker, dry.stdout, "q0000", judged["q0000"])

    print_step("apply")
    run = checker.run("apply", status=12)
    undo = checker.undo_path(run)
    changed = server.ppds()
    checker.expect("unusual is left alone: its PPD has an unusual line *DefaultQVDupUnit" in
                   run.stderr, run.stderr[-300:])
    good.remove("unusual")
    for name in before:
        checker.expect((before[name] != changed[name]) == (name in good), "changed or not:", name)
    now, summary = checker.judgements()
    checker.expect(summary["differ"] == 1, "still differ:", summary)
    for name in good:
        check_defaults(checker, changed[name], judged[name])
        checker.expect(now[name]["unknown"] == judged[name]["unknown"], name, "unknown options")
    again = checker.run("apply", status=12)
    checker.expect(again.stdout.startswith("0 queues changed"), again.stdout[:200])
    checker.expect(server.ppds() == changed, "a second apply changes PPDs")

    print_step("undo")
    kept = server.ppd("q0000").read_bytes()
    server.ppd("q0000").write_bytes(kept.replace(b"*DefaultQVDupUnit: True", b"*DefaultQVDupUnit: Mine"))
    run = checker.run("apply", "--undo", undo, status=10)
    checker.expect("q0000: QVDupUnit has changed since" in run.stderr, run.stderr[-300:])
    server.ppd("q0000").write_bytes(
        server.ppd("q0000").read_bytes().replace(b"*DefaultQVDupUnit: Mine", b"*DefaultQVDupUnit: True"))
    checker.run("apply", "--undo", undo, status=0)
    checker.expect(server.ppds() == before, "undo does not restore the bytes")
    left = list((checker.root / "tmp").iterdir())
    checker.expect(not left, "left in TMPDIR:", left)


def check_counts(checker, line, judged):
    """The last line counts each queue once."""
    queues = list(judged.values())
    of_differing = [queue for queue in queues if queue["differ"]]
    both = sum(queue["unknown"] > 0 for queue in of_differing)
    counts = {
        "right": sum(queue["state"] == "judged" and not queue["differ"] and not queue["unknown"]
                     for queue in queues),
        f"differ ({both} with unknown options, too)" if both else "differ": len(of_differing),
        "right but for unknown options":
            sum(queue["unknown"] > 0 and not queue["differ"] for queue in queues),
        "not applicable": sum(queue["state"] == "not applicable" for queue in queues),
        "failed": sum(queue["state"] == "failed" for queue in queues)}
    checker.expect(sum(counts.values()) == len(queues) and both, counts)
    text = ", ".join(f"{count} {name}" for name, count in counts.items() if count)
    checker.expect(line == f"{len(queues)} queues: {text}", line, text)


def limits_memory(tool):
    """Sanitizers need more address space than any limit."""
    return b"__asan_init" not in pathlib.Path(tool).read_bytes()


def make_odd_ppds(checker, office):
    """PPDs as they are in old set-ups."""
    text = (office / "ppd/office-mfp.ppd").read_bytes()
    lines = text.split(b"\n")
    ppds = {
        "driverless": re.sub(rb'NickName: ".*"', b'NickName: "Office - IPP Everywhere"', text),
        "foreign": b"\n".join(line for line in lines if not re.match(rb"\*(Default)?QV|\*.*QV", line)),
        "missing-documents": text,
        "unusual": text.replace(b"*DefaultQVDupUnit:", b"*DefaultQVDupUnit x:"),
        # Blanks, line ends and bytes that an edit has to keep.
        "crlf": text.replace(b"\n", b"\r\n").replace(b"*DefaultQVFinisher: None",
                                                     b"*DefaultQVFinisher:\t None/\xe4 "),
    }
    for name, ppd in ppds.items():
        checker.add(name, office)
        if name != "driverless":  # which the server has to know
            checker.server.ppd(name).write_bytes(ppd)  # lpadmin would change blanks and line ends
            continue
        path = checker.root / f"{name}.ppd"
        path.write_bytes(ppd)
        checker.server.add(name, path)
    (checker.root / "documents/missing-documents").unlink()
    checker.add("missing", office)
    checker.server.ppd("missing").unlink()
    checker.add("broken", office)
    checker.server.ppd("broken").write_bytes(b"\x00\xffnot a PPD\n" * 100)


def check_dry_run(checker, text, name, judged):
    """The commands do what apply does."""
    line = next(line for line in text.splitlines()
                if shlex.split(line)[:3] == ["lpadmin", "-p", name])
    server = checker.server
    kept = server.ppd(name).read_bytes()
    subprocess.run(["sh", "-c", line], env=server.environment, check=True, capture_output=True)
    check_defaults(checker, server.ppd(name).read_bytes(), judged)
    server.ppd(name).write_bytes(kept)


def check_defaults(checker, ppd, judged):
    """The defaults of a PPD are what its device has."""
    lines = {line.strip() for line in ppd.decode("latin-1").splitlines()}
    for option in judged["options"]:
        if option["state"] != "differs":
            continue
        wanted = option["keyword"] + ":"
        has = [line.split(":", 1)[1].strip() for line in lines
               if line.startswith("*Default" + wanted)]
        checker.expect(has == [option["value"]], judged["queue"], option, has)


def check_kept(checker, name, judged):
    """Apply names each option that it cannot judge, and changes none of them."""
    before = checker.server.ppds()[name]
    run = checker.run("apply", name)
    after = checker.server.ppds()[name]
    for option in judged["options"]:
        if option["state"] != "unknown":
            continue
        line = f"*Default{option['keyword']}:".encode()
        of_option = [[text for text in ppd.split(b"\n") if text.startswith(line)]
                     for ppd in (before, after)]
        checker.expect(of_option[0] == of_option[1], option, of_option)
        checker.expect(f"{name}: {option['keyword']} stays as it is: {option['reason']}\n" in
                       run.stderr, option, run.stderr[-600:])
    if "undo with" in run.stdout:
        checker.run("apply", "--undo", checker.undo_path(run), status=0)
    checker.expect(checker.server.ppds()[name] == before, name, "is not undone")


def check_missing_data(checker):
    """What a device does not report is never changed."""
    sample = next(path for path in checker.samples if path.name == "office-mfp")
    for document in sorted(path.name for path in (sample / "device-info").iterdir()):
        folder = checker.root / "documents/partial"
        shutil.rmtree(folder, ignore_errors=True)
        shutil.copytree(sample / "device-info", folder)
        (folder / document).unlink()
        if document == "Accessories.xml":
            checker.server.add("partial", sample / "ppd/office-mfp.ppd")
            (checker.root / "drivers/partial").symlink_to(checker.driver)
        judged, _ = checker.judgements("partial", "--all")
        whole, _ = checker.judgements("shared1", "--all")
        values = {option["keyword"]: option for option in whole["shared1"]["options"]}
        checker.expect({option["keyword"] for option in judged["partial"]["options"]} == set(values),
                       "options without", document)
        checker.expect(document == "Devicename.xml" or judged["partial"]["unknown"] > 0,
                       "all known without", document)
        for option in judged["partial"]["options"]:
            checker.expect((option["value"] is None) == (option["state"] == "unknown"), document,
                           option)
            checker.expect(option["state"] in ("unknown", "equal") or
                           option["value"] == values[option["keyword"]]["value"], document, option)
        check_kept(checker, "partial", judged["partial"])
    checker.server.lpadmin("-x", "partial")


def check_jobs(checker):
    """A queue that prints is left alone, unless it is forced."""
    server = checker.server
    (server.root / "printing").touch()
    server.lpadmin("-p", "q0001", "-v", "slow:/somewhere")
    job = checker.root / "job"
    job.write_text("text")
    subprocess.run(["lp", "-d", "q0001", "-o", "raw", job], env=server.environment, check=True,
                   capture_output=True)
    for _ in range(100):
        state = subprocess.run(["lpstat", "-p", "q0001"], env=server.environment,
                               capture_output=True, text=True).stdout
        if "now printing" in state:
            break
        time.sleep(0.05)
    before = server.ppds()
    run = checker.run("apply", "q0001", "q0002")
    checker.expect("q0001 is left alone: a job is being printed" in run.stderr, run.stderr[-300:])
    after = server.ppds()
    changed = [name for name in before if before[name] != after[name]]
    checker.expect(changed == ["q0002"], "changed while printing:", changed, state)
    forced = checker.run("apply", "q0001", "--force")
    checker.expect(server.ppds()["q0001"] != before["q0001"], "not forced", forced.stderr)
    for undone in (run, forced):
        checker.run("apply", "--undo", checker.undo_path(undone), "--force", status=0)
    (server.root / "printing").unlink()
    server.lpadmin("-p", "q0001", "-v", "file:///dev/null")


def check_snapshots(checker):
    """Snapshots of all queues, audited instead of them and against them, and what has changed."""
    folder = checker.root / "monday"
    folder.mkdir()
    names = ["q0000", "q0003", "shared1"]
    checker.run("audit", *names, "--save", folder)
    checker.expect(sorted(path.name for path in folder.iterdir()) ==
                   [f"{name}.tar.gz" for name in sorted(names)], list(folder.iterdir()))
    live, _ = checker.judgements(*names)
    saved, _ = checker.judgements("--snapshots", folder)
    for name in names:
        checker.expect(saved[name]["options"] == live[name]["options"], name, "as a snapshot")
    paired, _ = checker.judgements(*names, "--snapshots", folder, "--live")
    checker.expect({name: paired[name]["options"] for name in names} ==
                   {name: live[name]["options"] for name in names}, "against snapshots")
    checker.expect(list(checker.judgements("--snapshots", folder, "q0003")[0]) == ["q0003"],
                   "one of the snapshots")
    several = [word for name in names for word in ("--snapshots", folder / f"{name}.tar.gz")]
    checker.expect(checker.judgements(*several)[0] == saved, "several snapshots")
    checker.expect(checker.judgements("--snapshots", *sorted(folder.iterdir()))[0] == saved,
                   "several paths")
    two = checker.judgements("--snapshots", *sorted(folder.iterdir()), *names[:2])[0]
    checker.expect(sorted(two) == sorted(names[:2]), "two of several paths")
    run = checker.run("audit", "--snapshots", folder, "nothing", status=9)
    checker.expect("no snapshot of it can be read" in run.stderr, run.stderr)
    documents = checker.root / "documents/shared1"
    sample = documents.resolve()
    documents.unlink()
    shutil.copytree(sample, documents)
    path = documents / "Accessories.xml"
    path.write_text(path.read_text().replace('<long key="hd">1<', '<long key="hd">0<'))
    changed, _ = checker.judgements(*names, "--since", folder, "--save", folder)
    checker.expect(changed["shared1"]["changes"] ==
                   [{"keyword": "QVHardDisk", "before": "True", "after": "False"}],
                   changed["shared1"]["changes"])
    checker.expect(not changed["q0000"]["changes"], changed["q0000"]["changes"])
    same, _ = checker.judgements(*names, "--since", folder)
    checker.expect(not any(same[name]["changes"] for name in names), "saved snapshots are old")
    (folder / "q0003.tar.gz").write_bytes(b"damaged")
    for save in (["--save", folder], []):  # the second one reads what the first one saved
        judged, _ = checker.judgements("q0003", "--since", folder, *save)
        judged = judged["q0003"]
        checker.expect(judged["state"] == "judged" and judged["options"] == live["q0003"]["options"]
                       and (judged["reason"] is not None) == bool(save), judged)
    (folder / "q0000.tar.gz").unlink()
    (folder / "q0000.tar.gz").symlink_to("q0000.tar.gz")
    judged = checker.judgements("q0000", "--since", folder)[0]["q0000"]
    checker.expect(judged["state"] == "judged" and judged["options"] == live["q0000"]["options"]
                   and judged["reason"].startswith("cannot read snapshot"), judged)
    check_model_change(checker, folder)
    log = checker.run("audit", "shared1", "--format", "log").stdout.splitlines()[:-1]
    checker.expect(len(log) == same["shared1"]["differ"] and
                   all(line.startswith("shared1: QV") for line in log), log)


def check_model_change(checker, folder):
    """A PPD of a different model is named among the changes."""
    ppd = checker.server.ppd("shared1")
    kept = ppd.read_bytes()
    line = b'*QVAnlz_DriverName: "RA-H5-MLT-JP"'
    checker.expect(line in kept, "a different model code")
    ppd.write_bytes(kept.replace(line, b'*QVAnlz_DriverName: "RA-X"'))
    changed, _ = checker.judgements("shared1", "--since", folder)
    changes = {change["keyword"]: change for change in changed["shared1"]["changes"]}
    checker.expect(changes.get("QVAnlz_DriverName") ==
                   {"keyword": "QVAnlz_DriverName", "before": "RA-H5-MLT-JP", "after": "RA-X"},
                   changed["shared1"])
    ppd.write_bytes(kept)


def check_progress(checker):
    """A terminal has a bar while it takes time, and none when quiet."""
    checker.add("slow", checker.samples[0], driver=checker.faulty / "hang_when_called")
    for option, is_shown in (("--all", True), ("--quiet", False)):
        terminal, of_tool = pty.openpty()
        subprocess.run(checker.command("audit", "slow", "q0000", option, "--jobs", "1"),
                       env=checker.environment(), stderr=of_tool, stdout=subprocess.DEVNULL)
        os.close(of_tool)
        shown = b""
        with contextlib.suppress(OSError):
            while part := os.read(terminal, 4096):
                shown += part
        os.close(terminal)
        checker.expect((b"] 1 of 2 queues, 1 failed, 0:0" in shown) == is_shown, option, shown)
        checker.expect(not shown or shown.endswith(b"\r\x1b[K"), "the bar stays:", shown)
    checker.server.lpadmin("-x", "slow")


def check_output(checker):
    """What cannot be written, and readers that end, lose no change and leave no file."""
    before = checker.server.ppds()
    with open("/dev/full", "wb") as full:
        run = subprocess.run(checker.command("apply", "q0000", "q0003"), env=checker.environment(),
                             stdout=full, stderr=subprocess.PIPE, text=True)
    now = checker.server.ppds()
    checker.expect(run.returncode == 1 and "standard output" in run.stderr, run)
    checker.expect(now["q0000"] != before["q0000"] and now["q0003"] == before["q0003"], "full")
    checker.run("apply", "--undo", re.search(r"apply --undo (\S+)$", run.stderr, re.M)[1], status=0)
    checker.expect(checker.server.ppds() == before, "full output cannot be undone")
    line = shlex.join(checker.command("audit")) + " | head -1"
    run = subprocess.run(["bash", "-c", line + "; exit ${PIPESTATUS[0]}"],
                         env=checker.environment(), capture_output=True, text=True)
    checker.expect(run.returncode == 141 and run.stdout.count("\n") == 1 and not run.stderr, run)
    for i in range(20):
        process = subprocess.Popen(checker.command("apply", "q0000", "q0003"),
                                   env=checker.environment(), stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        time.sleep(0.01 * i)
        process.send_signal(random.choice([signal.SIGINT, signal.SIGTERM, signal.SIGHUP]))
        process.wait()
        time.sleep(0.02)
        left = list((checker.root / "tmp").iterdir())
        checker.expect(not left, "an interrupt leaves", left)
        newest = sorted((checker.root / "state").glob("*.json"), key=lambda path: path.stat().st_mtime)
        if newest:
            checker.run("apply", "--undo", newest[-1])
        checker.expect(checker.server.ppds() == before, "an interrupt cannot be undone")
    run = checker.run("apply", "q0000", "--save-undo", checker.root / "none/undo", status=1)
    checker.expect(checker.server.ppds() == before, "changed without an undo file")


def check_undo_files(checker):
    """A record of what is no printer of the server changes nothing."""
    before = checker.server.ppds()
    undo = pathlib.Path(checker.undo_path(checker.run("apply", "shared1")))
    after = checker.server.ppds()
    other = checker.root / "undo.json"
    for name, why in {"class": "it is a class", "none": "the CUPS server has no such queue",
                      "../ppd/shared1": "the CUPS server has no such queue"}.items():
        other.write_text(undo.read_text().replace('"queue":"shared1"', f'"queue":"{name}"'))
        other.chmod(0o600)
        run = checker.run("apply", "--undo", other, status=10)
        checker.expect(f"{name} is left alone: {why}\n" in run.stderr, run)
        checker.expect(checker.server.ppds() == after, "changed by the record of", name)
    other.write_text(undo.read_text().replace('"queue":"shared1"', '"queue":"SHARED1"'))
    checker.run("apply", "--undo", other, status=0)
    checker.expect(checker.server.ppds() == before, "not undone")


def check_shared_documents(checker):
    """The documents of one device are not those of the others."""
    server = checker.server
    before = server.ppds()
    server.lpadmin("-p", "q0001", "-v", "slow:/one")
    server.lpadmin("-p", "q0002", "-v", "slow:/two")
    folder = (checker.root / "documents/q0001").resolve()
    for verb, status in (("audit", None), ("apply", 2)):
        for documents in (folder, checker.root / "documents/{model}"):
            run = checker.run(verb, "q0001", "q0002", documents=documents, status=status)
            checker.expect("they are of one device, but the queues are of 2; write {queue}"
                           in run.stderr and bool(run.stdout) == (verb == "audit"), run)
    checker.expect(server.ppds() == before, "changed")
    run = checker.run("audit", "q0001", documents=folder)
    checker.expect("1 queue: 1 differs" in run.stdout, "one queue:", run)
    for name in ("q0001", "q0002"):
        server.lpadmin("-p", name, "-v", "file:///dev/null")
    run = checker.run("audit", "q0001", "q0002", documents=folder)
    checker.expect("2 queues: " in run.stdout, "queues of one device:", run)


def check_queue_named_twice(checker):
    """It is judged and changed once."""
    judged, summary = checker.judgements("q0000", "Q0000", "q0003", "q0000")
    checker.expect(list(judged) == ["q0000", "q0003"] and summary["queues"] == 2, summary)
    before = checker.server.ppds()
    run = checker.run("apply", "q0000", "q0000")
    checker.expect("left alone" not in run.stderr and "1 queue changed; 1 queue:" in run.stdout, run)
    checker.run("apply", "--undo", checker.undo_path(run), status=0)
    checker.expect(checker.server.ppds() == before, "not undone")


def check_other_server(checker):
    """A queue of the same name on a server elsewhere is not taken for that of this machine."""
    root = checker.root / "elsewhere"
    ipv6 = ["[::1]:18632"] if has_ipv6() else []
    with PrintServer(root, addresses=["localhost:18631", *ipv6]) as other:
        sample = checker.samples[0]
        other.add("q0000", sample / f"ppd/{sample.name}.ppd")
        path = other.ppd("q0000")
        path.write_bytes(path.read_bytes() + b"*% elsewhere\n")
        before, here = other.ppds(), checker.server.ppds()
        for host in ("localhost:18631", "127.0.0.1:18631", str(other.socket), *ipv6):
            run = checker.run("apply", "q0000", "-h", host, status=11)
            now = other.ppds()["q0000"]
            checker.expect(now != before["q0000"] and now.endswith(b"*% elsewhere\n"), host)
            undo = re.search(r"^undo with: info-analyze apply --undo (\S+) -h (\S+)$", run.stdout,
                             re.M)
            checker.expect(undo and shlex.split(undo[2]) == [host], run.stdout[-300:])
            refused = checker.run("apply", "--undo", undo[1], status=3)
            checker.expect("may be a different one; pass -h " + undo[2] in refused.stderr,
                           refused.stderr)
            checker.run("apply", "--undo", undo[1], "-h", host, status=0)
            checker.expect(other.ppds() == before and checker.server.ppds() == here, "undone", host)


def has_ipv6():
    with contextlib.suppress(OSError), socket.socket(socket.AF_INET6) as probe:
        probe.bind(("::1", 0))
        return True
    print("not checked: IPv6 (no ::1)")
    return False


def check_server_names(checker):
    """Texts that libcups would take for a different server are refused, and a hint names what the
    command line has."""
    for text in ("", "::1", "::1:631", "[::1", "[::1]x", "[::1]:", "[::1]:x", "[::1]:0", ":631",
                 "localhost:", "localhost:65536", "localhost:631x"):
        run = checker.run("audit", "-h", text, status=2)
        checker.expect(f'--host: "{text}" is not HOST, HOST:PORT, [IPV6-ADDRESS]:PORT or' in
                       run.stderr, text, run.stderr)
    for verb, host, hint in (("audit", "127.0.0.1:9", "correct -h or start CUPS there"),
                             ("apply", "/none", "correct -h or start CUPS there"),
                             ("apply", None, "start cups.service"),
                             ("audit", None, "start cups.service or pass --cups-root")):
        run = checker.run(verb, *(["-h", host] if host else []), status=3, CUPS_SERVER="/none")
        checker.expect(run.stderr.endswith("; " + hint + "\n"), verb, host, run.stderr)


def check_two_at_once(checker):
    before = checker.server.ppds()
    runs = [None, None]

    def apply(i):
        runs[i] = checker.run("apply", "q0000", "q0001", "q0002", "q0003", "q0004")

    threads = [threading.Thread(target=apply, args=(i,)) for i in range(2)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    changed = sorted(run.stdout.count("QVDupUnit False -> True") for run in runs)
    checker.expect(changed == [0, 5], "two at once:", [run.stdout[-200:] for run in runs])
    for run in runs:
        if "undo with" in run.stdout:
            checker.run("apply", "--undo", checker.undo_path(run), status=0)
    checker.expect(checker.server.ppds() == before, "two at once cannot be undone")


def check_rights(checker):
    """Who may not change queues gets an error before the first change."""
    for i in range(2):
        checker.add(f"q{i:04}", checker.samples[i])
    before = checker.server.ppds()
    os.chmod(checker.root, 0o755)
    state = checker.root / "state-of-nobody"
    state.mkdir()
    os.chown(state, 65534, 65534)
    run = subprocess.run(
        ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups",
         *checker.command("apply", "q0000", "q0001")],
        env=checker.environment(STATE_DIRECTORY=str(state), TMPDIR="/tmp"), capture_output=True,
        text=True)
    checker.expect(run.returncode == 3 and "does not let user" in run.stderr, run)
    checker.expect("undo with" not in run.stdout + run.stderr and not list(state.glob("*.json")),
                   "an undo file without a change:", run)
    checker.expect(checker.server.ppds() == before, "changed without rights")


def check_stopped_server(checker):
    """The server ends in the middle; a second run finishes."""
    server = checker.server
    server.stop()  # writes its list of queues
    server.start()
    before = server.ppds()
    process = subprocess.Popen(checker.command("apply"), env=checker.environment(),
                               stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    for _ in range(8):
        process.stdout.readline()
    server.stop(signal.SIGKILL)
    _, err = process.communicate()
    checker.expect(process.returncode not in (0, 10) and "does not answer" in err, err[-500:])
    between = server.ppds()
    server.start()
    run = checker.run("apply", status=12)
    after = server.ppds()
    for name in before:
        checker.expect(between[name] in (before[name], after[name]), "half set:", name)
    checker.run("apply", "--undo", checker.undo_path(run), status=0)
    found = re.search(r"undo with: info-analyze apply --undo (\S+)$", err, re.M)
    checker.expect(found, "no undo file is named when the server stops", err[-300:])
    if found:
        checker.run("apply", "--undo", found[1], status=0)
    checker.expect(server.ppds() == before, "a stopped server leaves changes")


def check_full_disk(checker):
    """The server's disk fills up in the middle."""
    server = checker.server
    before = server.ppds()
    libc = ctypes.CDLL(None, use_errno=True)
    folder = server.root / "etc"
    server.stop()
    copy = checker.root / "etc-before"
    shutil.copytree(folder, copy)
    size = sum(path.stat().st_size // 4096 + 2 for path in folder.rglob("*")) * 4096 + (16 << 20)
    if libc.mount(b"none", str(folder).encode(), b"tmpfs", 0, f"size={size}".encode()):
        print("not checked: a full disk (no mounts)")
        server.start()
        return
    try:
        shutil.copytree(copy, folder, dirs_exist_ok=True)
        server.start()
        with open(folder / "ballast", "wb", buffering=0) as file:
            with contextlib.suppress(OSError):
                while True:
                    file.write(b"x" * 4096)
        run = checker.run("apply", "q0000", "q0001", "q0002")
        checker.expect(run.returncode not in (0, 10) and "PPD" in run.stderr, run)
        between = server.ppds()
        (folder / "ballast").unlink()
        again = checker.run("apply", "q0000", "q0001", "q0002")
        after = server.ppds()
        for name in before:
            checker.expect(between[name] in (before[name], after[name]), "half set:", name,
                           len(between[name]))
        for undone in (again, run):
            if "undo with" in undone.stdout:
                checker.run("apply", "--undo", checker.undo_path(undone), status=0)
        checker.expect(server.ppds() == before, "a full disk leaves changes")
    finally:
        server.stop()
        libc.umount2(str(folder).encode(), 2)
        server.start()


def check_kills(checker, kills):
    """Killed at any moment, each queue is untouched or set, and can be undone."""
    server = checker.server
    names = [f"q{i:04}" for i in range(4)]
    before = server.ppds()
    run = checker.run("apply", *names)
    after = server.ppds()
    checker.run("apply", "--undo", checker.undo_path(run), status=0)
    random.seed(1)
    start = time.time()
    checker.run("apply", *names)
    whole = time.time() - start
    newest = max((checker.root / "state").glob("*.json"), key=lambda path: path.stat().st_mtime)
    checker.run("apply", "--undo", newest, status=0)
    untouched = half = complete = 0
    for _ in range(kills):
        for path in (checker.root / "state").glob("*.json"):
            path.unlink()
        process = subprocess.Popen(checker.command("apply", *names), env=checker.environment(),
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        time.sleep(random.uniform(0, whole * 1.1))
        process.kill()
        process.wait()
        time.sleep(0.02)  # for a request that is on its way
        now = server.ppds()
        set_queues = sum(now[name] == after[name] for name in names)
        checker.expect(all(now[name] in (before[name], after[name]) for name in before),
                       "half set after a kill")
        untouched += set_queues == 0
        complete += set_queues == len(names)
        half += 0 < set_queues < len(names)
        for path in (checker.root / "state").glob("*.json"):
            has_record = b"\n" in path.read_bytes()
            checker.run("apply", "--undo", path, status=0 if has_record else 1)
        if server.ppds() != before:
            checker.expect(False, "not undone after a kill")
            break
    print(f"{kills} kills: {untouched} before the first queue, {half} between queues, {complete} "
          "after the last; no queue half set")
    if kills >= 40:
        checker.expect(untouched and half, "the kills come at no interesting moment")
    for path in (checker.root / "tmp").iterdir():  # of killed processes
        shutil.rmtree(path)


def print_step(text):
    print(f"{time.strftime('%H:%M:%S')} {text}", flush=True)


def main():
    tool, driver, faulty, source = sys.argv[1:5]
    queues = int(sys.argv[5]) if len(sys.argv) > 5 else 20
    kills = int(sys.argv[6]) if len(sys.argv) > 6 else 20
    if not is_installed():
        print("no cupsd")
        return 77
    with tempfile.TemporaryDirectory() as root:
        checker = Checker(tool, driver, faulty, source, root)
        with checker.server:
            check_whole_server(checker, queues)
            checks = [check_missing_data, check_snapshots, check_progress, check_output,
                      check_undo_files, check_shared_documents, check_queue_named_twice,
                      check_other_server, check_server_names, check_two_at_once]
            if os.geteuid() == 0:  # cupsd runs programs of root only
                checks.append(check_jobs)
            for check in checks:
                print_step(check.__name__)
                check(checker)
            for name in HOSTILE:  # they only cost time from here on
                if checker.server.ppd(name).exists():
                    checker.server.lpadmin("-x", name)
            if os.geteuid() == 0:
                for check in (check_full_disk, check_stopped_server):
                    print_step(check.__name__)
                    check(checker)
            print_step("check_kills")
            check_kills(checker, kills)
    if os.geteuid() == 0:
        with tempfile.TemporaryDirectory() as root:
            guarded = Checker(tool, driver, faulty, source, root, requires_root=True)
            with guarded.server:
                check_rights(guarded)
            checker.count += guarded.count
            checker.wrong += guarded.wrong
    print(f"{checker.count} checks, {len(checker.wrong)} wrong")
    return 1 if checker.wrong else 0


if __name__ == "__main__":
    sys.exit(main())
