#!/usr/bin/env python3
"""Shows that the gates can fail. Plants one fault after the other in a copy of the tree and checks
that the gate meant for it notices. A fault is a row of faults.py.

usage: tests/gates/prove.py [PART_OF_A_NAME...]

With parts of names only the faults whose names hold one of them are planted. The copy is kept under
build/gates, so that another run has less to build."""

import subprocess
import sys
from pathlib import Path

sys.dont_write_bytecode = True  # faults.py is in the tree, which stays clean
from faults import COPY, FAULTS, GATES

ROOT = Path(__file__).resolve().parent.parent.parent


class BadRow(Exception):
    """A row that proves nothing: its text does not occur exactly once, or the tree does not build."""


def make_copy():
    """By content and with new times, so that what an interrupted run left is built again."""
    COPY.mkdir(parents=True, exist_ok=True)
    subprocess.run(["rsync", "-rlp", "--checksum", "--delete", "--exclude=/build", "--exclude=/.git",
                    f"{ROOT}/", COPY], check=True)


class Planted:
    """The tree with a fault in it."""

    def __init__(self, fault):
        self.originals = {}
        self.changed = {}
        for name, old, new in fault.edits:
            path = COPY / name
            text = self.changed.get(path, path.read_text())
            self.originals.setdefault(path, path.read_text())
            if text.count(old) != 1:
                raise BadRow(f"{fault.name}: stale, {name} has {text.count(old)} times {old!r}")
            self.changed[path] = text.replace(old, new)

    def __enter__(self):
        for path, text in self.changed.items():
            path.write_text(text)

    def __exit__(self, *_):
        for path, text in self.originals.items():
            path.write_text(text)


def run(*command):
    done = subprocess.run(command, cwd=COPY, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          text=True, errors="replace", check=False)
    killed = f"\nkilled by signal {-done.returncode}" if done.returncode < 0 else ""
    return done.returncode, done.stdout + killed


def check(gate):
    """Builds what a gate checks and runs it. Returns whether it failed, and its output."""
    if gate.preset:
        status, said = run("cmake", "--preset", gate.preset)
        if status == 0:
            status, said = run("cmake", "--build", "--preset", gate.preset, "--target",
                               *gate.targets)
        if gate.is_build:
            return status != 0, said
        if status != 0:
            raise BadRow(f"the tree does not build:\n{said}")
    status, said = run(*gate.command)
    return status != 0, said


def is_noticed(fault, change):
    """Prints and returns whether the gate fails for the right reason."""
    try:
        with change:
            is_red, said = check(GATES[fault.gate])
        noticed = is_red and fault.says in said
        verdict = "red" if noticed else "RED FOR THE WRONG REASON" if is_red else "STAYS GREEN"
    except BadRow as bad:
        noticed, said, verdict = False, str(bad), "NOT RUN"
    print(f"{fault.name}: {fault.gate} {verdict}", flush=True)
    if not noticed:
        print(said[-3000:], file=sys.stderr)
    return noticed


def is_green(name):
    """Whether a gate passes without a fault, and has checked something."""
    is_red, said = check(GATES[name])
    if is_red or GATES[name].proof not in said:
        print(f"{name} fails without a fault:\n{said}", file=sys.stderr)
        return False
    return True


def main():
    make_copy()
    wanted = sys.argv[1:]
    faults = [fault for fault in FAULTS
              if not wanted or any(part in fault.name for part in wanted)]
    changes = [Planted(fault) for fault in faults]  # reports a stale row before anything is built
    if not all([is_green(name) for name in dict.fromkeys(fault.gate for fault in faults)]):
        return 1
    noticed = sum([is_noticed(fault, change) for fault, change in zip(faults, changes)])
    print(f"{noticed} of {len(faults)} faults turn their gates red")
    return 0 if faults and noticed == len(faults) else 1


if __name__ == "__main__":
    try:
        sys.exit(main())
    except BadRow as bad_row:
        sys.exit(str(bad_row))
