#!/usr/bin/env python3
"""Counts the instructions of the library's operations and compares them with bench/baseline.json.

usage: check.py PROGRAM --check|--renew    (./dev bench --check, ./dev bench --renew)

Callgrind counts the same work alike on a busy machine and an idle one. Counted is what the library
itself does, with what libc does for it; what libcups and the communication library do is theirs.

The counts depend on the compiler and on libc: the baseline is that of Debian 12, on x86-64. They
do not depend on the processor, because libc is kept from choosing its functions by it. The cost of
strlen() depends on the address of the text, so a change to how the option table is built also moves
the counts of walks over it, by some percent.
"""

import concurrent.futures
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

BASELINE = pathlib.Path(__file__).with_name("baseline.json")
TOLERATED_PERCENT = 3
MADE_WITH = ("g++-12", "libc6:amd64", "valgrind")
# Objects whose work, and all that they call for it, is not the library's.
OTHERS = ("libcups.so", "libmqpd_util.so")
ENVIRONMENT = {
    "PATH": "/usr/bin:/bin",
    "LC_ALL": "C",
    "LD_BIND_NOW": "1",  # no symbol is looked up while instructions are counted
    "GLIBC_TUNABLES": "glibc.cpu.hwcaps=-AVX2,-AVX,-BMI2,-ERMS,-SSE4_2,-SSSE3",
}


def is_of_others(path):
    return os.path.basename(path).startswith(OTHERS)


class Names:
    """Callgrind writes "(7) name" the first time, then "(7)" alone."""

    def __init__(self):
        self.names = {}

    def of(self, text):
        number, name = re.fullmatch(r"\((\d+)\)(?: (.*))?", text).groups()
        if name is not None:
            self.names[number] = name
        return self.names[number]


def own_instructions(profile):
    """All instructions, without those of the calls that lead into the others' objects."""
    names = Names()
    total = 0
    caller = callee = ""
    is_call = False
    for line in profile.splitlines():
        field, _, text = line.partition("=")
        if field == "ob":
            caller = callee = names.of(text)
        elif field == "cob":
            callee = names.of(text)
        elif field == "calls":
            is_call = True
        elif re.match(r"[0-9+*-]", line):
            cost = int(line.split()[1])
            if not is_call:
                total += cost
            elif is_of_others(callee) and not is_of_others(caller):
                total -= cost
            callee, is_call = caller, False
    return total


def count(program, name):
    with tempfile.TemporaryDirectory(prefix="info_analyze_") as folder:
        profile = pathlib.Path(folder) / "profile"
        subprocess.run(
            ["valgrind", "--tool=callgrind", "--quiet", "--toggle-collect=MeasuredOperation",
             f"--callgrind-out-file={profile}", program, name],
            env=ENVIRONMENT | {"TMPDIR": folder}, check=True)
        return own_instructions(profile.read_text())


def count_all(program):
    operations = subprocess.check_output([program], text=True).split()
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        return dict(zip(operations, pool.map(lambda name: count(program, name), operations)))


def versions():
    return {
        package: subprocess.check_output(
            ["dpkg-query", "-W", "-f", "${Version}", package], text=True)
        for package in MADE_WITH
    }


def judge(old, new):
    """What is said of an operation, and whether it is a failure."""
    if old is None or new is None:
        return ("NOT IN THE BASELINE" if old is None else "GONE"), True
    change = new / old - 1
    if new * 100 > old * (100 + TOLERATED_PERCENT):
        return f"{change:+.1%} SLOWER", True
    if new * 100 < old * (100 - TOLERATED_PERCENT):
        return f"{change:+.1%} faster: renew the baseline to keep it", False
    return f"{change:+.1%}", False


def check(counts):
    baseline = json.loads(BASELINE.read_text())
    for package, version in versions().items():
        made_with = baseline["made_with"].get(package)
        if version != made_with:
            print(f"{package} is {version}, the baseline was made with {made_with}")
    old = baseline["instructions"]
    failures = 0
    print(f"{'instructions':<28} {'baseline':>14} {'now':>14}")
    for name in [*counts, *(name for name in old if name not in counts)]:
        verdict, is_failure = judge(old.get(name), counts.get(name))
        print(f"{name:<28} {old.get(name, '-'):>14} {counts.get(name, '-'):>14}  {verdict}")
        failures += is_failure
    return failures


def main():
    program, verb = sys.argv[1:]
    counts = count_all(program)
    if verb == "--check":
        return 1 if check(counts) > 0 else 0
    content = {"made_with": versions(), "instructions": counts}
    BASELINE.write_text(json.dumps(content, indent=2) + "\n")
    return 0


if __name__ == "__main__":
    sys.exit(main())
