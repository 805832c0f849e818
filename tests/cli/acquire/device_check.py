#!/usr/bin/env python3
"""Reads devices by IPP: each sample printer played by ippeveprinter, queues of a real CUPS server,
encrypted devices, and servers that stall, lie and never end.

usage: device_check.py TOOL DRIVER_FOLDER SOURCE_FOLDER [--all | --table | --time]

--all tries each byte position and each syntax of each attribute, --table prints where the keys of
the samples come from, --time compares the time of an acquisition with that of ipptool. Exits with 77
without root, ippeveprinter, or the right to make namespaces."""
import collections
import concurrent.futures
import contextlib
import json
import os
import pathlib
import re
import shutil
import socket
import statistics
import struct
import subprocess
import sys
import tempfile
import time
import xml.etree.ElementTree

import device_server as device
from device_server import Device, HostileServer, answering, closing, http, message, value, values

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "audit"))
from print_server import PrintServer  # noqa: E402

DOCUMENTS = {"Accessories", "Functions", "Specid", "Finisher_list", "Bin_list", "Tray_list",
             "Resolutions", "Fax_line_list", "Devicename"}
FAX_OF_ALL = ("QVFAXNumOfLine", "QVFAXLineType", "QVEnableQuick", "QVEnableFine",
              "QVEnableSuperFine")
# Options that the samples have and that acquired documents do not give, by reason.
NOT_REPORTED = {
    "no attribute reports a hard disk": {
        "QVHardDisk": ("colour-copier", "department-mfp", "fax-centre", "light-production",
                       "office-mfp", "print-room", "production-press")},
    "no attribute reports the size of the memory": {
        "QVTotalMemSize": ("colour-copier", "department-mfp", "fax-centre", "floor-printer",
                           "light-production", "office-mfp", "print-room", "production-press",
                           "small-office", "workgroup-mfp")},
    "no attribute reports trust print": {
        "QVEnableTrustPrint": ("fax-centre", "office-mfp", "production-press", "workgroup-mfp")},
    "no attribute reports how users authenticate": {
        "QVUseCSModeJobAccount": ("colour-copier", "department-mfp", "light-production",
                                  "office-mfp", "print-room", "production-press"),
        "QVUseCSModeSecured": ("office-mfp", "print-room", "production-press", "small-office"),
        "QVUseCSModeFCode": ("department-mfp", "light-production", "production-press"),
        "QVUseUsrManagement": ("colour-copier", "department-mfp", "fax-centre", "office-mfp")},
    "attributes report whether a device faxes, but not its lines": {
        **{option: ("colour-copier", "department-mfp", "fax-centre", "light-production",
                    "office-mfp", "small-office") for option in FAX_OF_ALL},
        "QVFAXDialLineA": ("colour-copier", "department-mfp", "fax-centre", "light-production",
                           "office-mfp"),
        "QVFAXDialLineB": ("department-mfp", "fax-centre", "office-mfp"),
        "QVFAXDialLineC": ("fax-centre",),
        "QVFAXDialLineD": ("fax-centre",),
        "QVFAXIPFAXINTRA": ("colour-copier", "fax-centre", "office-mfp"),
        "QVFAXIPFAXVoIP": ("fax-centre", "light-production"),
        "QVFAXIPFAXNGN": ("fax-centre",),
        "QVFAXIPFAXMyNumberNGN": ("fax-centre",)},
}
OK, SNAPSHOT, DEVICE = 0, 9, 13
TIMEOUT = 1
GRACE = 1.0  # what a run may take longer than its timeout
Run = collections.namedtuple("Run", "status out err seconds")


class Checker:
    def __init__(self, tool, driver, source, root):
        self.tool = tool
        self.driver = pathlib.Path(driver)
        self.samples = sorted(path.parent for path in
                              pathlib.Path(source).glob("examples/*/device.attributes"))
        self.root = pathlib.Path(root)
        self.count = 0
        self.wrong = []
        self.runs = 0
        (self.root / "home/.cups").mkdir(parents=True)

    def expect(self, holds, *what):
        self.count += 1
        if not holds:
            self.wrong.append(" ".join(map(str, what))[:2000])
            print("WRONG:", self.wrong[-1], flush=True)

    def folder(self):
        return pathlib.Path(tempfile.mkdtemp(dir=self.root))

    def run(self, *arguments, status=None, **environment):
        start = time.monotonic()
        run = subprocess.run([self.tool, *map(str, arguments), "--driver-folder", self.driver],
                             env={"PATH": device.PATH, "LANG": "C.UTF-8",
                                  "HOME": str(self.root / "home"), **environment},
                             stdin=subprocess.DEVNULL, capture_output=True)
        run = Run(run.returncode, run.stdout, run.stderr.decode(errors="replace"),
                  time.monotonic() - start)
        if status is not None:
            self.expect(run.status == status, arguments, "ended with", run.status,
                        run.out[-300:], run.err[-600:])
        return run

    def acquire(self, uri, *more, status=OK, **environment):
        """The documents' texts by name."""
        folder = self.folder() / "documents"
        run = self.run("acquire", uri, folder, *more, status=status, **environment)
        self.expect(folder.exists() == (status == OK), uri, "has written", folder)
        return run, texts(folder)


def texts(folder):
    return {path.name: path.read_bytes() for path in folder.glob("*")}


def profile(sample):
    return ["--profile", sample / "device-profile.json"]


def options(text):
    return dict(line.split("=", 1) for line in text.splitlines() if "=" in line)


# The samples --------------------------------------------------------------------------------------


def check_sample(checker, sample, player, again):
    name, uri = sample.name, player.uri()
    folder = checker.folder()
    kept = folder / "kept.attributes"
    documents = folder / "documents"
    checker.run("acquire", uri, documents, *profile(sample), "--keep-attributes", kept, status=OK)
    acquired = texts(documents)
    check_documents(checker, documents)
    queue = ["--queue", name, "--cups-root", sample]
    query = checker.run("query", *queue, "--device-info", documents, status=OK)
    compare_options(checker, sample, query.out.decode())
    # A second time, from the kept file, and from a device that plays that file.
    _, second = checker.acquire(uri, *profile(sample))
    checker.expect(second == acquired, name, "gives other documents the second time")
    _, replayed = checker.acquire(kept, *profile(sample))
    checker.expect(replayed == acquired, name, "gives other documents from its kept attributes")
    player_of_kept = Device(folder / "player", name, kept, again)
    try:
        player_of_kept.wait()
        kept_again = folder / "again.attributes"
        run, replayed = checker.acquire(player_of_kept.uri(), *profile(sample),
                                        "--keep-attributes", kept_again)
        checker.expect(replayed == acquired, name, "gives other documents when played again")
        checker.expect(attribute_lines(kept) == attribute_lines(kept_again), name,
                       "has other attributes when played again:",
                       attribute_lines(kept) ^ attribute_lines(kept_again))
    finally:
        player_of_kept.stop()
    check_verbs(checker, sample, queue, uri, documents, query.out)


def attribute_lines(file):
    """Without the name and the identity that ippeveprinter makes up."""
    return {line for line in file.read_text(errors="surrogateescape").splitlines()
            if not re.match(r"ATTR \S+ printer-(uuid|info|name|dns-sd-name) ", line)}


def check_documents(checker, folder):
    for path in folder.iterdir():
        checker.expect(path.stem in DOCUMENTS and path.suffix == ".xml", "unknown file", path)
        with contextlib.suppress(xml.etree.ElementTree.ParseError):
            xml.etree.ElementTree.parse(path)
            continue
        checker.expect(False, path, "is not XML:", path.read_bytes()[:300])


def compare_options(checker, sample, answer):
    expected = options((sample / "expected-options.txt").read_text())
    actual = options(answer)
    listed = {option: reason for reason, table in NOT_REPORTED.items()
              for option, printers in table.items() if sample.name in printers}
    for option in expected.keys() | actual.keys():
        is_equal = expected.get(option) == actual.get(option)
        checker.expect(is_equal != (option in listed), sample.name, option, actual.get(option),
                       "and not", expected.get(option), "listed:", listed.get(option))


def check_verbs(checker, sample, queue, uri, documents, answer):
    """Documents from a device are as good as those in a folder."""
    of_device = [*queue, "--device", uri, *profile(sample)]
    of_folder = [*queue, "--device-info", documents]
    checker.expect(checker.run("query", *of_device, status=OK).out == answer, sample.name, "query")
    for verb in ("explain", "doctor"):
        runs = [checker.run(verb, *where) for where in (of_device, of_folder)]
        # Both name the document directory, each by its name.
        outputs = [run.out.decode().replace(str(place), "PLACE")
                   for run, place in zip(runs, (uri, documents))]
        checker.expect(outputs[0] == outputs[1] and runs[0].status == runs[1].status,
                       sample.name, verb, *outputs)
    snapshot = checker.folder() / "printer.snapshot"
    missing = DOCUMENTS - {path.stem for path in documents.iterdir()}
    checker.run("snapshot", snapshot, *of_device, status=SNAPSHOT if missing else OK)
    of_snapshot = checker.run("query", "--snapshot", snapshot, status=OK)
    checker.expect(of_snapshot.out == answer, sample.name, "query of a snapshot")
    checker.run("diff", snapshot, f"queue:{sample.name}", *of_device[2:], status=OK)


# Other servers ------------------------------------------------------------------------------------


def check_queues(checker, sample, player):
    """A CUPS server as the device, and the device of its queue."""
    with PrintServer(checker.root / "cups", addresses=("localhost:8500",)) as server:
        (server.root / "programs/backend/ipp").symlink_to("slow")  # for its scheme
        server.add("office", sample / f"ppd/{sample.name}.ppd", player.uri())
        server.add("usb", sample / f"ppd/{sample.name}.ppd", "file:///dev/null")
        _, acquired = checker.acquire("ipp://localhost:8500/printers/office", *profile(sample))
        checker.expect({"Functions.xml", "Resolutions.xml"} <= acquired.keys(), acquired.keys())
        environment = {"CUPS_SERVER": str(server.socket)}
        folder = checker.folder() / "documents"
        checker.run("acquire", "--queue", "office", folder, *profile(sample), status=OK,
                    **environment)
        _, of_device = checker.acquire(player.uri(), *profile(sample))
        checker.expect(texts(folder) == of_device, "the queue's device gives other documents")
        run = checker.run("acquire", "--queue", "usb", folder, **environment)
        checker.expect(run.status in (3, DEVICE) and "host" in run.err, run)
        run, _ = checker.acquire("ipp://localhost:8500/printers/missing", status=DEVICE)
        check_error(checker, "a queue that is missing", run, "not-found|404")


CLIENT_CONF = {"": True, "TrustOnFirstUse No": False, "AllowAnyRoot No": False}
CERTIFICATES = pathlib.Path("/etc/cups/ssl")  # where libcups keeps them for root


def forget_certificates():
    shutil.rmtree(CERTIFICATES, ignore_errors=True)
    CERTIFICATES.mkdir()


def check_tls(checker, older, newer):
    """Devices that make their certificates themselves, when they are first needed."""
    configuration = checker.root / "home/.cups/client.conf"
    checker.acquire(older.uri("ipps"), "--insecure")  # makes its certificate
    time.sleep(1.1)  # certificates count seconds
    for line, is_trusted in CLIENT_CONF.items():
        configuration.write_text(line + "\n")
        forget_certificates()
        run, _ = checker.acquire(newer.uri("ipps"), status=OK if is_trusted else DEVICE)
        if not is_trusted:
            check_error(checker, line, run, "certificate is not trusted.*--insecure")
        checker.acquire(newer.uri("ipps"), "--insecure")
        checker.expect((CERTIFICATES / "localhost.crt").exists() == is_trusted, line,
                       "keeps the certificate")
    # By its address, the certificate is not valid, and ValidateCerts says that this matters.
    configuration.write_text("ValidateCerts Yes\n")
    forget_certificates()
    checker.acquire(newer.uri("ipps"))
    run, _ = checker.acquire(newer.uri("ipps", "127.0.0.1"), status=DEVICE)
    check_error(checker, "a name of another device", run, "certificate is not trusted")
    # A certificate that has changed: an older one never, a newer one unless the first one counts.
    configuration.write_text("\n")
    forget_certificates()
    checker.acquire(newer.uri("ipps"))
    run, _ = checker.acquire(older.uri("ipps"), status=DEVICE)
    check_error(checker, "a changed certificate", run, "certificate is not trusted")
    checker.acquire(older.uri("ipps"), "--insecure")
    configuration.write_text("TrustOnFirstUse No\n")
    checker.acquire(newer.uri("ipps"))  # known by now
    run, _ = checker.acquire(older.uri("ipps"), status=DEVICE)
    check_error(checker, "a changed certificate", run, "certificate is not trusted")
    configuration.write_text("\n")
    forget_certificates()


def check_addresses(checker, player):
    _, by_name = checker.acquire(player.uri())
    for host in ("[::1]", "127.0.0.1"):
        _, documents = checker.acquire(player.uri(host=host))
        checker.expect(documents == by_name, host)
    _, documents = checker.acquire(player.uri("ipps", "[::1]"))
    checker.expect(documents == by_name, "ipps by IPv6")
    proxies = {name: "http://192.0.2.1:9" for name in
               ("http_proxy", "https_proxy", "HTTP_PROXY", "HTTPS_PROXY", "ALL_PROXY")}
    _, documents = checker.acquire(player.uri(), **proxies)
    checker.expect(documents == by_name, "with a proxy")
    for uri, cause in {"ipp://localhost:9/ipp/print": "refused",
                       "ipp://host.invalid/ipp/print": "does not answer",
                       "ipp://192.0.2.7/ipp/print": "unreachable|within",
                       "usb://Vorel/6050": "does not name a host"}.items():
        run, _ = checker.acquire(uri, status=DEVICE)
        check_error(checker, uri, run, cause)


# Hostile devices ----------------------------------------------------------------------------------


def check_error(checker, what, run, pattern):
    lines = run.err.splitlines()
    checker.expect(len(lines) == 1 and lines[0].startswith("info-analyze: error: ") and
                   re.search(pattern, lines[0], re.I), what, "has the error", run.err)


def try_hostile(checker, what, uri, allowed, pattern, has_folder, more):
    """One acquisition; returns what is wrong with it, the time excepted, and the run."""
    folder = checker.folder()
    documents, temporary = folder / "documents", folder / "tmp"
    temporary.mkdir()
    before = {}
    if has_folder:
        documents.mkdir()
        before = {f"{name}.xml": b"kept" for name in DOCUMENTS}
        for name, text in before.items():
            (documents / name).write_bytes(text)
    run = checker.run("acquire", uri, documents, "--timeout", TIMEOUT, *more,
                      TMPDIR=str(temporary))
    wrong = []
    if run.status not in allowed:
        wrong.append(f"status {run.status}")
    lines = run.err.splitlines()
    if run.status != OK:
        if len(lines) != 1 or not lines[0].startswith("info-analyze: error: "):
            wrong.append("not one line of error")
        if not re.search(pattern, run.err):
            wrong.append(f"the error does not match {pattern}")
        if documents.exists() != has_folder or texts(documents) != before:
            wrong.append("the folder has changed")
    else:
        if not all(line.startswith("info-analyze: warning: ") for line in lines):
            wrong.append("not only warnings")
        if not documents.is_dir() or any(text == b"kept" for text in texts(documents).values()):
            wrong.append("the folder is not whole")
        else:
            check_documents(checker, documents)
    if b"\x1b" in run.out or "\x1b" in run.err or "\x9b" in run.err:
        wrong.append("an escape sequence comes through")
    left = [path for path in (*folder.iterdir(), *temporary.iterdir())
            if path not in (documents, temporary)]
    if left:
        wrong.append(f"temporary files: {left}")
    shutil.rmtree(folder)
    return wrong, run


def expect_hostile(checker, what, uri, allowed=(DEVICE,), pattern="", has_folder=False, more=()):
    for _ in range(3):  # a busy machine can be late
        wrong, run = try_hostile(checker, what, uri, allowed, pattern, has_folder, more)
        is_in_time = run.seconds < TIMEOUT + GRACE
        if wrong or is_in_time:
            break
    checker.expect(is_in_time, what, "takes", run.seconds)
    checker.expect(not wrong, what, wrong, run.err[-500:], run.out[-300:])
    checker.runs += 1
    return run.seconds


TRAY = "type=sheetFeedManual;maxcapacity=100;name=By-pass;"
SMALL = (values(device.KEYWORD, "sides-supported", "one-sided", "two-sided-long-edge"),
         value(device.OCTETS, "printer-input-tray", TRAY),
         value(device.TEXT, "printer-make-and-model", "Vorel 1"))


def stall_positions(answer, all_positions):
    """Each byte of the status line, the ends of fields, and a sample of the others."""
    if all_positions:
        return range(len(answer))
    borders = {match.start() + i for match in re.finditer(rb"\r\n|: |=|;", answer)
               for i in range(3)}
    start = answer.rindex(b"\r\n\r\n") + 4
    position = start + 8
    while position < len(answer) - 1:  # the fields of IPP
        borders |= {position, position + 1, position + 3}
        if answer[position] < 0x10:  # the tag of a group
            position += 1
            continue
        position += 3 + struct.unpack(">H", answer[position + 1:position + 3])[0]
        borders |= {position, position + 2}
        position += 2 + struct.unpack(">H", answer[position:position + 2])[0]
    chosen = sorted(borders | set(range(0, 20)) | set(range(start, start + 10)) |
                    {len(answer) - 1})
    return [position for position in chosen if position < len(answer)]


def stalls(all_positions):
    answer = b"HTTP/1.1 100 Continue\r\n\r\n" + http(message(*SMALL))
    positions = stall_positions(answer, all_positions)
    if not all_positions:
        positions = positions[::3] + positions[-1:]

    def stall(position):
        def behave(connection):
            connection.sendall(answer[:position])
            device.wait_for_end(connection)
        return behave
    for position in positions:
        yield f"stall after {position} bytes", stall(position), {"pattern": "within 1 s"}


def slow_devices():
    answer = http(message(*SMALL))
    yield "one byte a second", device.dripping(answer), {"pattern": "within 1 s"}
    yield "no accepted request", device.wait_for_end, {"pattern": "within 1 s"}
    yield "headers without end", device.endless(b"HTTP/1.1 200 OK\r\n", b"X-More: 1\r\n" * 100), {}
    yield "a header without end", device.endless(b"HTTP/1.1 200 OK\r\nX: ", b"x" * 4096), {}
    yield "continues without end", device.endless(b"", b"HTTP/1.1 100 Continue\r\n\r\n" * 50), {}
    yield "a body without end", device.endless(
        http(b"", length=False), message(*SMALL)), {"pattern": "larger than 1 MiB"}
    chunk = b"1000\r\n" + b"\x44" * 4096 + b"\r\n"
    yield "chunks without end", device.endless(
        http(b"", "Transfer-Encoding: chunked", length=False), chunk), \
        {"pattern": "larger than 1 MiB"}
    yield "empty lines without end", device.endless(b"", b"\r\n" * 1000), {}


def refusals():
    for status, pattern in {
            "301 Moved Permanently": "redirects", "302 Found": "redirects",
            "307 Temporary Redirect": "redirects", "308 Permanent Redirect": "redirects",
            "400 Bad Request": "400",
            "401 Unauthorized": "401", "403 Forbidden": "403", "404 Not Found": "404",
            "405 Method Not Allowed": "405", "413 Too Large": "413", "500 Internal": "500",
            "503 Service Unavailable": "503", "999 Odd": "error"}.items():
        fields = ["Location: http://localhost:9/elsewhere"] if status[0] == "3" else []
        if status[:3] == "401":
            fields = ['WWW-Authenticate: Basic realm="\x1b[31mdevice"']
        yield status, answering(http(b"", *fields, status=status)), {"pattern": pattern}
    yield "not IPP", answering(
        b"HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 5\r\n\r\nhello"), \
        {"pattern": "does not answer with IPP"}
    yield "not HTTP", closing(b"SSH-2.0-device\r\n"), {}
    yield "an IPP error", answering(http(message(status=0x0401))), {"pattern": "refuses"}
    yield "an unknown IPP error", answering(http(message(status=0x7fff))), {"pattern": "refuses"}
    yield "closed at once", lambda connection: None, {}
    yield "closed after the request", closing(b""), {"pattern": "without an answer"}
    whole = http(message(*SMALL))
    start = whole.index(b"\r\n\r\n") + 4
    for size in (10, start, start + 3, start + 8, start + 9, start + 60, len(whole) - 1):
        yield f"cut at {size}", closing(whole[:size]), {"pattern": "error"}


def oddities():
    """Answers that break rules: an error, or the documents that are known for sure."""
    def answer(*attributes, **fields):
        return answering(http(message(*attributes, **fields)))
    either = {"allowed": (OK, DEVICE)}
    fine = {"allowed": (OK,)}
    yield "one good answer", answer(*SMALL), fine
    yield "substituted attributes", answer(*SMALL, status=1), fine
    yield "no attributes", answer(), either
    yield "an empty body", answering(http(b"")), {"pattern": "ends in the middle"}
    yield "larger than 1 MiB", answer(*[value(device.TEXT, f"a{i}", b"x" * 1000)
                                        for i in range(1100)]), {"pattern": "larger than 1 MiB"}
    yield "5,000 attributes", answer(*[value(device.INTEGER, f"a{i}", b"\0\0\0\1")
                                       for i in range(5000)]), {"pattern": "too many attributes"}
    yield "4,000 attributes", answer(*SMALL, *[value(device.INTEGER, f"a{i}", b"\0\0\0\1")
                                               for i in range(4000)]), fine
    yield "70,000 values", answer(values(device.INTEGER, "sides-supported",
                                         *[b"\0\0\0\1"] * 70000)), {"pattern": "too many values"}
    yield "20,000 trays", answer(values(device.OCTETS, "printer-input-tray", *["name=A;"] * 20000)), \
        either
    yield "collections in collections", answer(device.nested(6)), either
    for depth in (8, 100, 20000):
        yield f"{depth} nested collections", answer(device.nested(depth)), \
            {"pattern": "nested too deep"}
    yield "a collection without end", answer(value(device.COLLECTION, "media-col-ready", b"")), \
        {"pattern": "collection"}
    yield "an end without collection", answer(value(device.END_COLLECTION, "", b"")), \
        {"pattern": "collection"}
    yield "a value without attribute", answer(value(device.KEYWORD, "", "one-sided")), either
    yield "a size too large", answer(b"\x44\xff\xff"), {"pattern": "ends in the middle"}
    yield "names that are huge", answer(value(device.KEYWORD, "n" * 32767, "v" * 32767)), either
    yield "an attribute twice", answer(*SMALL, *SMALL), either
    yield "groups twice", answer(*SMALL, b"\x04", *SMALL), either
    evil = b"\x1b[31m\x07\x00\x9b31m\xff\xfe\xc3\x28\r\n\x1b]0;x\x07%s%n <&\"' \xe2\x80\xae"
    for name in ("printer-make-and-model", "printer-info", "printer-device-id", "printer-name",
                 "printer-finisher-description", evil):
        yield f"evil text in {name}", answer(*SMALL[:2], value(device.TEXT, name, evil)), either
    yield "evil fields", answer(
        *[value(device.OCTETS, name, b"type=" + evil + b";name=" + evil + b";maxcapacity=7;")
          for name in ("printer-input-tray", "printer-output-tray", "printer-finisher")],
        value(device.TEXT, "printer-finisher-description", evil)), either
    yield "evil numbers", answer(values(
        device.OCTETS, "printer-input-tray",
        *[f"type=sheetFeedManual;maxcapacity={number};name=T{i};" for i, number in enumerate(
            ("-1", "-99999999999", "99999999999999999999", "2147483648", "1e9", "0x10", "",
             "\0", "+5", " 7", "7 ", "NaN"))])), either
    yield "evil field lists", answer(values(
        device.OCTETS, "printer-input-tray", b"", b";", b"=", b"==;;", b";" * 1000, b"name=",
        b"name=a;name=b;name", b"=x;" * 500, b"name=" + b"A" * 32000, b"\0" * 100)), either


def wrong_syntaxes(names, all_pairs):
    """Each attribute with each syntax, well-formed or not; together, or one at a time."""
    date = b"\x07\xea\x0b\x16\x15\x00\x00\x00+\x00\x00"
    resolution = struct.pack(">iib", 600, -600, 3)
    syntaxes = {
        "integer": value(device.INTEGER, "{}", b"\x7f\xff\xff\xff"),
        "negative integer": value(device.INTEGER, "{}", b"\x80\0\0\0"),
        "short integer": value(device.INTEGER, "{}", b"\1"),
        "boolean": value(device.BOOLEAN, "{}", b"\1"),
        "long boolean": value(device.BOOLEAN, "{}", b"\1\1\1"),
        "enum": value(device.ENUM, "{}", b"\xff\xff\xff\xff"),
        "octets": value(device.OCTETS, "{}", b"\0\xff\x1b;=;"),
        "date": value(device.DATE, "{}", date),
        "short date": value(device.DATE, "{}", date[:5]),
        "resolution": value(device.RESOLUTION, "{}", resolution),
        "odd resolution": value(device.RESOLUTION, "{}", b"\xff" * 9),
        "short resolution": value(device.RESOLUTION, "{}", b"\1"),
        "range": value(device.RANGE, "{}", struct.pack(">ii", 9, -9)),
        "collection": value(device.COLLECTION, "{}", b"") + value(device.MEMBER, "", "m") +
        value(device.INTEGER, "", b"\0\0\0\1") + value(device.END_COLLECTION, "", b""),
        "text": value(device.TEXT, "{}", b"\x1b[2Jtext"),
        "text with language": value(device.TEXT_WITH_LANGUAGE, "{}", b"\0\2en\0\2ab"),
        "odd text with language": value(device.TEXT_WITH_LANGUAGE, "{}", b"\xff\xffen\0\2ab"),
        "name": value(device.NAME, "{}", b"\xc3\x28"),
        "keyword": value(device.KEYWORD, "{}", "keyword"),
        "uri": value(device.URI, "{}", "ipp://[::1"),
        "unsupported": value(0x10, "{}", b""),
        "unknown": value(0x12, "{}", b""),
        "no value": value(0x13, "{}", b""),
        "out of band with bytes": value(0x12, "{}", b"\x1b[2J"),
        "unassigned tag": value(0x5f, "{}", b"\x1b[2J"),
        "extension": value(0x7f, "{}", b"\0\0\1\0\x1b"),
    }

    def named(template, name):
        return template[:1] + struct.pack(">H", len(name)) + name.encode() + template[5:]
    for syntax, template in syntaxes.items():
        groups = [[name] for name in names] if all_pairs else [names]
        for group in groups:
            body = message(*[named(template, name) for name in group])
            yield f"{syntax} for {group[0]} (of {len(group)})", answering(http(body)), \
                {"allowed": (OK, DEVICE)}


def requested_attributes(checker):
    """What the tool asks a device for."""
    requests = []

    def behave(connection):
        requests.append(device.read_request(connection).body)
        connection.sendall(http(message(*SMALL)))
    checker.acquire(HostileServer(behave).uri())
    names = re.findall(rb"\x44\0(?:\x14requested-attributes|\0)\0.([a-z-]+)", requests[0], re.S)
    checker.expect(len(names) > 20 and b"printer-finisher" in names, names)
    return [name.decode() for name in names]


def check_hostile(checker, devices):
    """Four at once: much of the time is spent in waiting, and more tools than that would wait for a
    processor when they are instrumented."""
    slowest = 0.0
    with concurrent.futures.ThreadPoolExecutor(4) as pool:
        running = []
        for i, (what, behave, terms) in enumerate(devices):
            terms = {"has_folder": i % 2 == 0, "uri": HostileServer(behave).uri(), **terms}
            running.append(pool.submit(expect_hostile, checker, what, **terms))
        for run in running:
            slowest = max(slowest, run.result())
    print(f"  {len(running)} devices, the slowest took {slowest:.2f} s")


def check_hostile_tls(checker, folder):
    context = device.context_of(folder)
    good = http(message(*SMALL))

    def devices():
        yield "426", device.upgrading(good, context), {"allowed": (OK,)}
        yield "426 again", answering(http(b"", status="426 Upgrade Required")), {"pattern": "TLS"}
        yield "garbage after the handshake", device.garbage_over_tls(context), {"encrypted": True}
        yield "garbage for a handshake", closing(b"\x16\x03\x03" + b"\xff" * 500), \
            {"encrypted": True}
        yield "a handshake that stalls", device.wait_for_end, \
            {"encrypted": True, "pattern": "within 1 s"}
        yield "no TLS", lambda connection: connection.sendall(good), {"encrypted": True}
    with concurrent.futures.ThreadPoolExecutor(6) as pool:
        running = []
        for what, behave, terms in devices():
            scheme = "ipps" if terms.pop("encrypted", False) else "ipp"
            uri = HostileServer(behave).uri(scheme)
            running.append(pool.submit(expect_hostile, checker, what, uri, more=["--insecure"],
                                       **terms))
        for run in running:
            run.result()


def check_processes(checker):
    """No child survives; orphans would belong to this process, which is the first one."""
    tool = pathlib.Path(checker.tool).name
    for stat in pathlib.Path("/proc").glob("[0-9]*/stat"):
        with contextlib.suppress(OSError):
            checker.expect(f"({tool[:15]})" not in stat.read_text(), "left running:", stat)


# The table and the times --------------------------------------------------------------------------


def print_table(checker, players):
    totals = collections.Counter()
    for sample, player in players.items():
        run, _ = checker.acquire(player.uri(), *profile(sample), "--format", "json")
        counts = collections.Counter()
        for document in json.loads(run.out)["documents"]:
            for key in document["keys"]:
                counts[key["origin"]] += 1
                item = "" if key["item"] is None else f"[{key['item']}]"
                print(f"{sample.name:17} {document['document'] + item:20} {key['key']:28} "
                      f"{json.dumps(key['value'], ensure_ascii=False):45} "
                      f"{key['source'] or 'not reported'}")
        print_shares(sample.name, counts)
        totals += counts
    print_shares("all samples", totals)


def print_shares(name, counts):
    total = sum(counts.values())
    print(f"{name}: {total} keys; " + ", ".join(
        f"{origin} {counts[origin]} ({100 * counts[origin] / total:.0f} %)"
        for origin in ("attribute", "profile", "not reported")))


def print_times(checker, sample, player, rounds=30):
    """Alternately, so that both meet the same machine."""
    commands = {
        "acquire": [checker.tool, "acquire", player.uri(), checker.folder() / "documents",
                    *profile(sample), "--driver-folder", checker.driver],
        "ipptool": ["ipptool", "-t", player.uri(), "get-printer-attributes.test"],
        "--help": [checker.tool, "--help"]}
    times = {name: [] for name in commands}
    for _ in range(rounds):
        for name, command in commands.items():
            start = time.monotonic()
            subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL, check=False)
            times[name].append(time.monotonic() - start)
    for name, each in times.items():
        print(f"{name}: {1000 * statistics.median(each):.1f} ms, at best {1000 * min(each):.1f}")
    ratio = statistics.median(a / b for a, b in zip(times["acquire"], times["ipptool"]))
    print(f"acquire takes {ratio:.2f} times as long as ipptool (median of {rounds} pairs)")


def print_step(text):
    print(f"{time.strftime('%H:%M:%S')} {text}", flush=True)


def check_all(checker, players, is_long):
    office = next(sample for sample in players if sample.name == "office-mfp")
    print_step("samples")
    with concurrent.futures.ThreadPoolExecutor(4) as pool:
        running = [pool.submit(check_sample, checker, sample, player, 8700 + i)
                   for i, (sample, player) in enumerate(players.items())]
        for run in running:
            run.result()
    print_step("queues")
    check_queues(checker, office, players[office])
    print_step("certificates and addresses")
    newer = Device(checker.root / "newer", "newer", office / "device.attributes", 8800)
    try:
        newer.wait()
        check_tls(checker, players[office], newer)
        check_addresses(checker, players[office])
        check_hostile_tls(checker, newer.root)
    finally:
        newer.stop()
    print_step("refusals and oddities")
    names = requested_attributes(checker)
    check_hostile(checker, [*refusals(), *oddities(), *wrong_syntaxes(names, is_long)])
    print_step("slow devices")
    check_hostile(checker, slow_devices())
    check_hostile(checker, stalls(is_long))
    check_processes(checker)


def main():
    reason = None if device.IS_INSIDE in os.environ else device.missing()
    if reason:
        print(reason)
        return 77
    device.enter_namespaces()
    tool, driver, source = sys.argv[1:4]
    mode = sys.argv[4] if len(sys.argv) > 4 else ""
    device.set_up_machine()
    with tempfile.TemporaryDirectory() as root:
        checker = Checker(tool, driver, source, root)
        players = {sample: Device(checker.root / sample.name, sample.name,
                                  sample / "device.attributes", 8600 + i)
                   for i, sample in enumerate(checker.samples)}
        for player in players.values():
            player.wait()
        if mode == "--table":
            print_table(checker, players)
        elif mode == "--time":
            sample = next(sample for sample in players if sample.name == "office-mfp")
            print_times(checker, sample, players[sample])
        else:
            check_all(checker, players, mode == "--all")
    print(f"{checker.count} checks, {checker.runs} hostile devices, {len(checker.wrong)} wrong")
    return 1 if checker.wrong else 0


if __name__ == "__main__":
    sys.exit(main())
