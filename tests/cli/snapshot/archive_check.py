#!/usr/bin/env python3
"""Gives the tool hostile archives as snapshots, made by Python's and by GNU's tar, and ends it by
signals while it reads or writes a valid one. It must refuse each with one message, within limits of
time and memory, and leave no file.

usage: archive_check.py TOOL HANGING_DRIVER_FOLDER SOURCE_FOLDER"""
import gzip
import io
import os
import pathlib
import resource
import shutil
import signal
import subprocess
import sys
import tarfile
import tempfile
import time

SNAPSHOT_FAILURE = 9
MEBIBYTE = 1 << 20
MEMORY_LIMIT = 512 * MEBIBYTE


def member(name, size=0, **fields):
    info = tarfile.TarInfo(name)
    info.size = size
    for key, value in fields.items():
        setattr(info, key, value)
    return info


def with_member(files, info, contents=b""):
    """The files of a snapshot and one more."""
    def add(tar):
        for name, text in files.items():
            tar.addfile(member(name, len(text)), io.BytesIO(text))
        tar.addfile(info, io.BytesIO(contents))
    return add


def packed(add, layers=1, **options):
    buffer = io.BytesIO()
    with tarfile.open(fileobj=buffer, mode="w", **options) as tar:
        add(tar)
    data = buffer.getvalue()
    for _ in range(layers):
        data = gzip.compress(data)
    return data


def many(tar):
    for i in range(100):
        tar.addfile(member(f"file{i}"))


def huge_pax(tar):
    tar.addfile(member("a", pax_headers={"comment": "x" * (MEBIBYTE // 2)}))


def sparse_map():
    """A file whose list of holes is as long as an archive can be."""
    text = b"1000000000\n" + b"0\n0\n" * (10 * MEBIBYTE // 4)
    headers = {"GNU.sparse.major": "1", "GNU.sparse.minor": "0", "GNU.sparse.name": "snapshot.json",
               "GNU.sparse.realsize": "1"}

    def add(tar):
        tar.addfile(member("x", len(text), pax_headers=headers), io.BytesIO(text))
    return packed(add, format=tarfile.PAX_FORMAT)


def zeros(mebibytes):
    buffer = io.BytesIO()
    with gzip.GzipFile(fileobj=buffer, mode="wb", compresslevel=9) as file:
        for _ in range(mebibytes):
            file.write(bytes(MEBIBYTE))
    return buffer.getvalue()


def hostile_archives(files, folder):
    """Name, bytes and a part of the message."""
    extra = [
        ("absolute", member("/etc/info-analyze"), "leads out"),
        ("parent", member("ppd/../../x"), "leads out"),
        ("symbolic link", member("l", type=tarfile.SYMTYPE, linkname="/etc/passwd"), "not a regular"),
        ("hard link", member("l", type=tarfile.LNKTYPE, linkname="snapshot.json"), "not a regular"),
        ("device", member("d", type=tarfile.CHRTYPE, devmajor=1, devminor=5), "not a regular"),
        ("block device", member("d", type=tarfile.BLKTYPE, devmajor=8), "not a regular"),
        ("FIFO", member("f", type=tarfile.FIFOTYPE), "not a regular"),
        ("folder", member("ppd", type=tarfile.DIRTYPE), "not a regular"),
        ("duplicate", member("device-info/Specid.xml"), "exists twice"),
        ("long path", member("a/" * 200 + "b"), "too long"),
    ]
    listed = dict(list(files.items())[:10])
    for name, info, message in extra:
        yield name, packed(with_member(listed, info)), message
    yield "unlisted", packed(with_member(listed, member("more"))), ""
    yield "many files", packed(many), "too many"
    size = 17 * MEBIBYTE
    yield "large file", packed(with_member({}, member("a", size), bytes(size))), "larger than"
    yield "bomb", zeros(1000), "larger than"
    yield "two layers", packed(with_member(files, member("x")), layers=2), ""
    yield "long header", packed(huge_pax, format=tarfile.PAX_FORMAT), "too long"
    yield "list of holes", sparse_map(), "too long"
    good = packed(lambda tar: with_member(files, member("x"))(tar))
    for part in (0, 1, 9, 30, len(good) // 2, len(good) - 1):
        yield f"first {part} bytes", good[:part], ""
    yield "no archive", b"snapshot" * 1000, ""
    yield "empty archive", packed(lambda tar: None), "snapshot.json"
    sparse = folder / "snapshot.json"
    os.truncate(os.open(sparse, os.O_CREAT | os.O_WRONLY, 0o600), 1 << 40)
    for tar_format in ("gnu", "posix"):
        run = subprocess.run(["tar", f"--format={tar_format}", "-C", folder, "-czSf", "-", sparse.name],
                             check=True, capture_output=True)
        yield f"sparse {tar_format}", run.stdout, ""


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT, MEMORY_LIMIT))


TEMPORARY = "info-analyze."  # the names of its temporary folders begin so


class Checker:
    def __init__(self, tool, hanging_driver, folder):
        self.tool = tool
        self.hanging_driver = hanging_driver
        self.folder = folder
        self.temporary = folder / "tmp"
        self.temporary.mkdir()
        self.environment = {**os.environ, "TMPDIR": str(self.temporary)}
        # A tool that was built with a sanitizer does not start with so little memory.
        start = subprocess.run([tool, "--version"], capture_output=True, preexec_fn=limit_memory)
        self.limit = limit_memory if start.returncode == 0 else None
        self.count = 0
        self.wrong = []

    def expect(self, holds, *what):
        self.count += 1
        if not holds:
            self.wrong.append(" ".join(map(str, what)))

    def left(self):
        return [*self.temporary.iterdir()]

    def query(self, snapshot, driver):
        return [self.tool, "query", "--snapshot", snapshot, "--driver-folder", driver]

    def refuse(self, name, data, message):
        archive = self.folder / "hostile.tar.gz"
        archive.write_bytes(data)
        started = time.monotonic()
        run = subprocess.run(self.query(archive, self.folder), capture_output=True, text=True,
                             env=self.environment, preexec_fn=self.limit)
        lines = run.stderr.splitlines()
        self.expect(run.returncode == SNAPSHOT_FAILURE and run.stdout == "" and len(lines) == 1 and
                    str(archive) in lines[0] and message in lines[0], name, run)
        self.expect(time.monotonic() - started < 10, name, "takes too long")
        self.expect(not self.left(), name, "leaves", self.left())

    def end_by(self, number, archive):
        """Ends the tool while it waits for a communication library, the archive being unpacked."""
        process = subprocess.Popen(self.query(archive, self.hanging_driver), stderr=subprocess.DEVNULL,
                                   env=self.environment)
        wait_until(lambda: self.left() and any(self.left()[0].glob("ppd/*")))
        self.expect(self.left() and process.poll() is None, number, "nothing to interrupt")
        self.expect(all(path.stat().st_mode & 0o077 == 0 for path in self.left()), "not private")
        process.send_signal(number)
        self.expect(process.wait() == -number, number, "status", process.returncode)
        wait_until(lambda: not self.left())
        self.expect(not self.left(), number, "leaves", self.left())


    def kill_writer(self, take, delay, name):
        """Kills the tool while it saves a snapshot, which is then complete or missing."""
        place = self.folder / "place"
        place.mkdir()
        process = subprocess.Popen(take(place / name), stderr=subprocess.DEVNULL,
                                   env=self.environment)
        time.sleep(delay)
        process.kill()
        process.wait()
        # Nothing can remove what a killed process was writing.
        left = [path.name for path in place.iterdir() if not path.name.startswith(TEMPORARY)]
        self.expect(left in ([], [name]), "killed after", delay, left)
        if left:
            run = subprocess.run(self.query(place / name, self.folder), capture_output=True,
                                 text=True, env=self.environment)
            self.expect("communication library" in run.stderr, "incomplete", run)
        shutil.rmtree(place)
        for path in self.left():
            shutil.rmtree(path)  # a copy of the PPD


def wait_until(holds):
    end = time.monotonic() + 10
    while not holds() and time.monotonic() < end:
        time.sleep(0.01)


def main():
    tool, hanging_driver, source = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])
    printer = source / "examples/office-mfp"
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        checker = Checker(tool, hanging_driver, folder)
        archive = folder / "kept.tar.gz"
        def take(path):
            return [tool, "snapshot", path, "--queue", printer.name, "--cups-root", printer,
                    "--device-info", printer / "device-info"]
        subprocess.run(take(archive), check=True)
        with tarfile.open(archive) as tar:
            files = {info.name: tar.extractfile(info).read() for info in tar}
        for hostile in hostile_archives(files, folder):
            checker.refuse(*hostile)
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            checker.end_by(number, archive)
        for i in range(40):
            checker.kill_writer(take, i / 1000, "kept" if i % 2 else "kept.tar.gz")
    print(f"{checker.count} checks")
    print("\n".join(checker.wrong))
    return 1 if checker.wrong else 0


sys.exit(main())
