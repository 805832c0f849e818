#!/usr/bin/env python3
"""systemd accepts the packaged units, exposes the service no more than docs/print-server.md says, and
the tool accepts the command of the service.

usage: units_check.py TOOL SOURCE_FOLDER     exit status 77: no systemd-analyze"""

import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

TOOL = "/usr/bin/info-analyze"
NO_SERVER = 3  # the first status of the tool after those for a wrong command line


def analyze(*arguments):
    run = subprocess.run(["systemd-analyze", *map(str, arguments)], stdout=subprocess.PIPE,
                         stderr=subprocess.STDOUT, text=True, env={**os.environ, "LC_ALL": "C.UTF-8"})
    return run.returncode, run.stdout


def faults_of_units(units, tool):
    """What systemd says of the units, with the tool of the build in place of the installed one."""
    with tempfile.TemporaryDirectory() as folder:
        for unit in units:
            Path(folder, unit.name).write_text(unit.read_text().replace(TOOL, str(tool)))
        for unit in units:
            status, output = analyze("verify", "--man=no", Path(folder, unit.name))
            # It reads the units of the system, too.
            lines = [line for line in output.splitlines() if "info-analyze" in line]
            if status != 0 or lines:
                yield f"{unit.name}: status {status}: {output}"


def faults_of_exposure(service, page):
    documented = re.search(r"rates its\s+exposure\s+as\s+([\d.]+)\s+of\s+10", page.read_text())
    _, output = analyze("security", "--offline=true", "--no-pager", service)
    measured = re.search(r"Overall exposure level for \S+: ([\d.]+)", output)
    if not documented or not measured:
        yield f"no exposure in {page} or in the output: {output}"
    elif float(measured[1]) > float(documented[1]):
        yield f"{service.name}: exposure {measured[1]}, but {page.name} says {documented[1]}"


def faults_of_command(service, tool):
    """The command reads its folders and then fails because no server answers."""
    with tempfile.TemporaryDirectory() as folder:
        command = re.search(r"^ExecStart=(.*)$", service.read_text(), re.M)[1]
        Path(folder, "info-analyze/snapshots").mkdir(parents=True)
        words = [word.replace("%S", folder) for word in shlex.split(command)]
        if words[0] != TOOL or "%" in " ".join(words):
            yield f"{service.name}: {command}"
        run = subprocess.run([tool, *words[1:]], capture_output=True, text=True, env={
            **os.environ, "CUPS_SERVER": f"{folder}/socket", "XDG_CONFIG_HOME": folder,
            "INFO_ANALYZE_DRIVER_FOLDER": "/none", "INFO_ANALYZE_DEVICE_INFO": "/none"})
        if run.returncode != NO_SERVER:
            yield f"{command}: status {run.returncode}: {run.stderr}"


def main(tool, source):
    if not shutil.which("systemd-analyze"):
        print("no systemd-analyze")
        return 77
    folder = source / "packaging/systemd"
    units = sorted(folder.iterdir())
    service = folder / "info-analyze-audit.service"
    faults = [*faults_of_units(units, tool), *faults_of_command(service, tool),
              *faults_of_exposure(service, source / "docs/print-server.md")]
    print(f"{len(units)} units, {len(faults)} faults", *faults, sep="\n")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()))
