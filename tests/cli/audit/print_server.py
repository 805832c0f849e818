"""A CUPS server of a test's own, with queues of sample printers. It lives in a folder, listens on a
socket there, and needs root for nothing but the rights that cupsd checks."""
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import time

CONFIGURATION = """LogLevel info
Listen {root}/socket
Browsing No
WebInterface No
IdleExitTimeout 0
MaxLogSize 0
<Location />
  Order deny,allow
  Allow all
</Location>
<Location /admin>
  Order deny,allow
  Allow all
</Location>
<Policy default>
  <Limit CUPS-Add-Modify-Printer CUPS-Delete-Printer CUPS-Add-Modify-Class>
    AuthType {auth}
    {require}
    Order deny,allow
    Allow all
  </Limit>
  <Limit All>
    Order deny,allow
    Allow all
  </Limit>
</Policy>
"""
FILES = """ServerRoot {root}/etc
RequestRoot {root}/run
StateDir {root}/state
CacheDir {root}/cache
TempDir {root}/tmp
ErrorLog {root}/log/error
AccessLog {root}/log/access
PageLog {root}/log/page
Printcap {root}/printcap
FileDevice Yes
SystemGroup root
ServerBin {root}/programs
"""
# Prints for as long as a file of the server's folder says so.
SLOW_BACKEND = """#!/bin/sh
test $# -eq 0 && exit 0
while test -e {root}/printing; do sleep 0.05; done
"""
ENVIRONMENT = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LANG": "C.UTF-8"}


def is_installed():
    return all(shutil.which(name, path=ENVIRONMENT["PATH"]) for name in ("cupsd", "lpadmin"))


class PrintServer:
    def __init__(self, root, requires_root=False, addresses=()):
        self.root = pathlib.Path(root)
        for folder in ("etc/ppd", "run", "state", "cache", "tmp", "log"):
            (self.root / folder).mkdir(parents=True, exist_ok=True)
        auth = {"auth": "Default", "require": "Require user @SYSTEM"} if requires_root else \
            {"auth": "None", "require": ""}
        listen = "".join(f"Listen {address}\n" for address in addresses)
        (self.root / "cupsd.conf").write_text(listen + CONFIGURATION.format(root=root, **auth))
        (self.root / "cups-files.conf").write_text(FILES.format(root=root))
        self.add_programs()
        self.environment = {**ENVIRONMENT, "CUPS_SERVER": str(self.socket), "HOME": str(self.root),
                            "CUPS_SERVERROOT": str(self.root / "etc"),
                            "TMPDIR": str(self.root / "tmp")}
        self.process = None

    def add_programs(self):
        """The machine's programs, with a backend that prints slowly."""
        programs = self.root / "programs"
        programs.mkdir(exist_ok=True)
        for path in pathlib.Path("/usr/lib/cups").glob("*"):
            if path.name != "backend":
                (programs / path.name).symlink_to(path)
        (programs / "backend").mkdir()
        slow = programs / "backend/slow"
        slow.write_text(SLOW_BACKEND.format(root=self.root))
        slow.chmod(0o755)

    @property
    def socket(self):
        return self.root / "socket"

    def start(self):
        self.process = subprocess.Popen(
            ["cupsd", "-f", "-c", self.root / "cupsd.conf", "-s", self.root / "cups-files.conf"],
            env=ENVIRONMENT, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        for _ in range(1000):
            try:
                with socket.socket(socket.AF_UNIX) as probe:
                    probe.connect(str(self.socket))
                return
            except OSError:
                time.sleep(0.02)
        raise RuntimeError("cupsd does not start: " + (self.root / "log/error").read_text())

    def stop(self, how=signal.SIGTERM):
        if self.process:
            self.process.send_signal(how)
            self.process.wait()
        self.process = None

    def __enter__(self):
        self.start()
        return self

    def __exit__(self, *_):
        self.stop()

    def lpadmin(self, *arguments):
        run = subprocess.run(["lpadmin", *map(str, arguments)], env=self.environment,
                             capture_output=True, text=True)
        if run.returncode:
            raise RuntimeError(f"lpadmin {arguments}: {run.stderr}")

    def add(self, name, ppd, uri="file:///dev/null"):
        self.lpadmin("-p", name, "-E", "-v", uri, "-P", ppd)

    def ppd(self, name):
        return self.root / f"etc/ppd/{name}.ppd"

    def ppds(self):
        """The bytes of all PPDs, by queue."""
        return {path.stem: path.read_bytes() for path in (self.root / "etc/ppd").glob("*.ppd")}
