#!/usr/bin/env python3
"""Builds the project on other releases of Debian and for other processors, runs the tests there, and
prints a table of what ran and what passed. As root, on Debian.

usage: machines.py [NAME...]     all machines, or these
       machines.py --clean       remove their roots

Each machine is a root of its own, kept in ~/.cache/info-analyze/machines. What another processor has
to run is compiled by this one's cross compiler, and run by qemu-user. Results and logs are written to
build/machines/NAME."""

import os
import re
import shutil
import subprocess
import sys
import time
import xml.etree.ElementTree as ElementTree
from dataclasses import dataclass, field
from pathlib import Path

SOURCE = Path(__file__).resolve().parent.parent.parent
CACHE = Path(os.environ.get("XDG_CACHE_HOME") or Path.home() / ".cache", "info-analyze/machines")
RESULTS = SOURCE / "build/machines"
INSIDE = Path("/src/main")  # the copy of the sources in each root


@dataclass(frozen=True)
class Machine:
    name: str
    suite: str
    architecture: str = "amd64"
    triplet: str = ""   # of its compiler; empty: this processor's
    emulator: str = ""  # of qemu-user
    has_packages: bool = False


MACHINES = (
    Machine("debian13", "trixie", has_packages=True),
    Machine("sid", "sid"),
    Machine("arm64", "trixie", "arm64", "aarch64-linux-gnu", "qemu-aarch64", has_packages=True),
    Machine("armhf", "trixie", "armhf", "arm-linux-gnueabihf", "qemu-arm"),
    Machine("s390x", "trixie", "s390x", "s390x-linux-gnu", "qemu-s390x"),
)

EMULATED = ("arm64", "armhf", "s390x")

# What cannot run by an emulator: machines, the name in CTest, and why.
EXCEPTIONS = (
    (EMULATED, "abi.unloading", "the emulator's translations of code count as the process's memory"),
    (EMULATED, "abi.grown_records", "compiles for the machine's own processor"),
    (EMULATED, "docs.commands", "compiles for the machine's own processor"),
    (EMULATED, "ToolSnapshot.RefusesHostileArchives", "the emulator needs more than its limit of memory"),
    (EMULATED, "PrintServer.IsKeptRight", "the emulator needs more than the memory limit of workers"),
    (EMULATED, "cli_cups_server_test", "the emulated cupsd cannot add a driverless queue"),
)


@dataclass
class Result:
    steps: dict = field(default_factory=dict)  # by name: "passed" or "FAILED"
    tests: int = 0
    passed: int = 0
    skipped: int = 0
    cases: int = 0
    minutes: float = 0


def run(command, log, **options):
    with open(log, "ab") as output:
        return subprocess.run(command, stdin=subprocess.DEVNULL, stdout=output,
                              stderr=subprocess.STDOUT, check=False, **options).returncode == 0


def make_root(machine, log):
    """A minimal system, made once."""
    root = CACHE / machine.name
    if (root / "made").exists():
        return True
    shutil.rmtree(root, ignore_errors=True)
    root.parent.mkdir(parents=True, exist_ok=True)
    if not run(["debootstrap", "--variant=minbase", machine.suite, root], log):
        return False
    # A list of packages may be older than its signature says.
    (root / "etc/apt/apt.conf.d/valid").write_text('Acquire::Check-Valid-Until "false";\n')
    (root / "made").touch()
    return True


def copy_sources(machine, log):
    folder = CACHE / machine.name / INSIDE.relative_to("/")
    folder.mkdir(parents=True, exist_ok=True)
    return run(["rsync", "-rlp", "--checksum", "--delete", "--exclude=/build", "--exclude=/.git",
                f"{SOURCE}/", folder], log)


def run_inside(machine, log, *command):
    """In namespaces of its own: nothing stays mounted or running."""
    root = CACHE / machine.name
    script = """
        root=$1; shift
        mount --bind "$root" "$root"  # or its programs could not make namespaces themselves
        mount -t proc proc "$root/proc"
        mount --rbind /dev "$root/dev"
        exec env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 HOME=/root CI=true \
          chroot "$root" sh -c 'cd "$1" && shift && exec "$@"' sh "$FOLDER" "$@" """
    return run(["unshare", "--mount", "--pid", "--fork", "--kill-child", "sh", "-ec", script, "sh",
                root, *command], log, env=os.environ | {"FOLDER": str(INSIDE)})


def register_emulator(machine):
    """With the kernel, which then runs the processor's programs like its own."""
    entries = Path("/proc/sys/fs/binfmt_misc")
    if not (entries / machine.emulator).exists():
        subprocess.run(["update-binfmts", "--enable", machine.emulator], check=False)
    return (entries / machine.emulator).exists()


def exceptions_of(machine):
    return [(test, reason) for names, test, reason in EXCEPTIONS if machine.name in names]


def test(machine, log):
    left_out = "|".join(f"^{test}$" for test, _ in exceptions_of(machine))
    if machine.triplet:
        return register_emulator(machine) and run_inside(
            machine, log, "tests/machines/cross.sh", machine.architecture, machine.triplet, left_out)
    return run_inside(machine, log, "./dev", "demo") and run_inside(machine, log, "./dev", "test")


def count(machine, result):
    """From what CTest and the GoogleTest programs wrote."""
    inside = CACHE / machine.name / INSIDE.relative_to("/")
    folder = RESULTS / machine.name / "test-results"
    shutil.rmtree(folder, ignore_errors=True)
    shutil.copytree(inside / "build/release/test-results", folder)
    for path in folder.glob("*.xml"):
        suite = ElementTree.parse(path).getroot()
        if path.name != "results.xml":
            result.cases += int(suite.get("tests"))
            result.skipped += sum(1 for _ in suite.iter("skipped"))
            continue
        result.tests = int(suite.get("tests"))
        not_passed = int(suite.get("failures")) + int(suite.get("skipped")) + int(suite.get("disabled"))
        result.passed = result.tests - not_passed
        result.skipped += int(suite.get("skipped"))


def compare(machine, log):
    """The exports and the answers for the sample printers, with those of this machine."""
    folder = RESULTS / machine.name
    (folder / "answers").unlink(missing_ok=True)
    return (run_inside(machine, folder / "answers", "tests/machines/answers.sh", "build/release")
            and run(["diff", "-u", RESULTS / "answers", folder / "answers"], log))


def steps_of(machine):
    yield "root", make_root
    yield "sources", copy_sources
    yield "tests", test
    yield "answers", compare
    if machine.has_packages:
        yield "packages", lambda machine, log: run_inside(
            machine, log, "tests/machines/packages.sh", machine.architecture)


def visit(machine):
    folder = RESULTS / machine.name
    folder.mkdir(parents=True, exist_ok=True)
    result = Result()
    begin = time.monotonic()
    for name, step in steps_of(machine):
        log = folder / f"{name}.log"
        log.unlink(missing_ok=True)
        passed = step(machine, log)
        result.steps[name] = "passed" if passed else "FAILED"
        if name == "tests" and (CACHE / machine.name / INSIDE.relative_to("/")
                                / "build/release/test-results/results.xml").exists():
            count(machine, result)
        if not passed:
            print(f"{machine.name}: {name} failed, see {log}", flush=True)
            if name in ("root", "sources"):
                break
    result.minutes = (time.monotonic() - begin) / 60
    return result


def print_table(results):
    row = "{:<10} {:<7} {:<6} {:>5} {:>6} {:>8} {:>8} {:>6} {:<8} {:<8} {:>7}".format
    print(row("machine", "suite", "for", "tests", "passed", "left out", "skipped", "cases", "answers",
              "packages", "minutes"))
    for machine, result in results.items():
        print(row(machine.name, machine.suite, machine.architecture, result.tests, result.passed,
                  len(exceptions_of(machine)), result.skipped, result.cases,
                  result.steps.get("answers", "-"), result.steps.get("packages", "-"),
                  f"{result.minutes:.0f}"))
    for machine in results:
        for test_name, reason in exceptions_of(machine):
            print(f"{machine.name} leaves out {test_name}: {reason}")


def main(arguments):
    if arguments == ["--clean"]:
        shutil.rmtree(CACHE, ignore_errors=True)
        return
    known = {machine.name: machine for machine in MACHINES}
    unknown = [name for name in arguments if name not in known]
    if unknown:
        sys.exit(f"./dev machines: unknown machine '{unknown[0]}'; known are {', '.join(known)}")
    RESULTS.mkdir(parents=True, exist_ok=True)
    with open(RESULTS / "answers", "wb") as output:
        subprocess.run(["tests/machines/answers.sh", "build/release"], cwd=SOURCE, stdout=output,
                       check=True)
    results = {known[name]: visit(known[name]) for name in arguments or known}
    print_table(results)
    if any("FAILED" in result.steps.values() for result in results.values()):
        sys.exit(1)


if __name__ == "__main__":
    main(sys.argv[1:])
