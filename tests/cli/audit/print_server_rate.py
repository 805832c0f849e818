#!/usr/bin/env python3
"""Measures how many queues audit judges in a second, beside a shell loop over explain in the same run,
and how much memory it needs for many snapshots.

usage: print_server_rate.py TOOL DRIVER_FOLDER SOURCE_FOLDER QUEUES"""
import os
import pathlib
import subprocess
import sys
import tempfile
import time

from print_server import PrintServer

LOOP = """lpstat -e | while read -r queue; do
  "$TOOL" explain --queue "$queue" --driver-folder "$DRIVER" --device-info "$DOCUMENTS/$queue" \\
    --format json >/dev/null
done"""


def seconds_of(command, environment):
    start = time.monotonic()
    subprocess.run(command, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                   check=False)
    return time.monotonic() - start


def drop_caches():
    """So that the next run is a cold one; needs root."""
    os.sync()
    try:
        pathlib.Path("/proc/sys/vm/drop_caches").write_text("3")
        return True
    except OSError:
        return False


def peak_memory(command, environment):
    """Of the process and of its largest worker, in MiB."""
    process = subprocess.Popen(command, env=environment, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL)
    _, _, usage = os.wait4(process.pid, 0)
    return usage.ru_maxrss / 1024


def main():
    tool, driver, source, queues = sys.argv[1], sys.argv[2], sys.argv[3], int(sys.argv[4])
    samples = sorted(path.parent for path in pathlib.Path(source).glob("examples/*/ppd"))
    with tempfile.TemporaryDirectory() as root, PrintServer(f"{root}/cups") as server:
        documents = pathlib.Path(root, "documents")
        documents.mkdir()
        for i in range(queues):
            sample = samples[i % len(samples)]
            server.add(f"q{i:04}", sample / f"ppd/{sample.name}.ppd")
            (documents / f"q{i:04}").symlink_to(sample / "device-info")
        environment = {**server.environment, "TOOL": tool, "DRIVER": driver,
                       "DOCUMENTS": str(documents)}
        audit = [tool, "audit", "--driver-folder", driver, "--device-info", f"{documents}/{{queue}}"]

        def report(name, command):
            cold = f"{queues / seconds_of(command, environment):.0f}" if drop_caches() else "-"
            warm = queues / min(seconds_of(command, environment) for _ in range(3))
            print(f"{name}: {cold} queues a second cold, {warm:.0f} warm", flush=True)
            return warm

        one = report("audit, one worker", [*audit, "--jobs", "1"])
        report(f"audit, {os.cpu_count()} workers", audit)
        loop = report("shell loop over explain", ["sh", "-c", LOOP])
        print(f"audit with one worker is {one / loop:.1f} times as fast as the loop")

        saved = pathlib.Path(root, "saved")
        saved.mkdir()
        subprocess.run([*audit, "--save", saved], env=environment, stdout=subprocess.DEVNULL,
                       check=False)
        many = pathlib.Path(root, "many")
        many.mkdir()
        sources = sorted(saved.iterdir())
        for i in range(10000):
            os.link(sources[i % len(sources)], many / f"{i:05}.tar.gz")
        few = pathlib.Path(root, "few")
        few.mkdir()
        for i in range(100):
            os.link(sources[i % len(sources)], few / f"{i:05}.tar.gz")
        for folder, count in ((few, 100), (many, 10000)):
            command = [tool, "audit", "--driver-folder", driver, "--snapshots", folder]
            start = time.monotonic()
            memory = peak_memory(command, environment)
            print(f"{count} snapshots: {memory:.1f} MiB at most in one process, "
                  f"{count / (time.monotonic() - start):.0f} snapshots a second")


if __name__ == "__main__":
    sys.exit(main())
