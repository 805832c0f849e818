#!/usr/bin/env python3
"""Completes command lines of info-analyze in a real shell on a terminal.

usage: completion_check.py TOOL SHELL     exit status 77: there is no such shell
"""
import os
import pathlib
import pty
import re
import select
import shutil
import subprocess
import sys
import tempfile
import time

# What is typed before a tab, and the line that the shell makes of it.
CASES = (
    ("info-analyze expl", "info-analyze explain "),
    ("info-analyze quer", "info-analyze query "),
    ("info-analyze calibration set", "info-analyze calibration settings "),
    ("info-analyze query --dri", "info-analyze query --driver-folder "),
    ("info-analyze query --format j", "info-analyze query --format json "),
    ("info-analyze models --format mark", "info-analyze models --format markdown "),
    ("info-analyze diff --lp", "info-analyze diff --lpadmin "),
    ("info-analyze query --queue models --for", "info-analyze query --queue models --format "),
    ("info-analyze query --driver-folder fold", "info-analyze query --driver-folder folder/"),
    ("info-analyze calibration curves --svg pict", "info-analyze calibration curves --svg picture.svg "),
    ("info-analyze completion z", "info-analyze completion zsh "),
    ("info-analyze diff snapsh", "info-analyze diff snapshot.of/"),
)
# How each shell is started, and the ways in which it gets to know the script.
ZSH = "unsetopt zle_bracketed_paste prompt_sp; setopt no_beep; autoload -Uz compinit; "
SHELLS = {
    "bash": (["bash", "--norc", "--noprofile", "-i"],
             ["bind 'set bell-style none'; source ./completion"]),
    "zsh": (["zsh", "-f", "-i"], [ZSH + "compinit -u -D; source ./completion",
                                  ZSH + "fpath=($PWD/functions $fpath); compinit -u -D"]),
}


class Terminal:
    def __init__(self, command, folder):
        self.child, self.end = pty.fork()
        if self.child == 0:
            os.chdir(folder)
            environment = {**os.environ, "TERM": "dumb", "HOME": str(folder), "PS1": ""}
            os.execvpe(command[0], command, environment)

    def type(self, text):
        os.write(self.end, text.encode())

    def read_until(self, pattern, seconds=10):
        """The first group of the pattern, or nothing in time."""
        seen, end = "", time.monotonic() + seconds
        while time.monotonic() < end:
            if select.select([self.end], [], [], 0.1)[0]:
                seen += os.read(self.end, 4096).decode(errors="replace")
            if found := re.search(pattern, seen):
                return found.group(1)
        return repr(seen)

    def close(self):
        os.close(self.end)
        os.waitpid(self.child, 0)


def complete_lines(terminal, preparation):
    """What is wrong with the lines that the shell makes."""
    terminal.type(f"PS1=; {preparation}; echo re''ady\n")
    terminal.read_until("(ready)")
    wrong = []
    for typed, expected in CASES:
        # The line is not run: what is put around it makes the shell print it.
        terminal.type(typed + "\t")
        time.sleep(0.3)
        terminal.type("'\x01echo 'line:\n")
        line = terminal.read_until(r"\nline:(.*?)\r?\n")
        if line != expected:
            wrong.append(f"{typed!r}: {line!r}, expected {expected!r}")
    return wrong


def main():
    tool, shell = sys.argv[1:]
    if shutil.which(shell) is None:
        return 77
    command, preparations = SHELLS[shell]
    wrong = []
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        for made in ("folder", "snapshot.of", "functions"):
            (folder / made).mkdir()
        (folder / "picture.svg").touch()
        script = subprocess.run([tool, "completion", shell], check=True, capture_output=True).stdout
        for file in (folder / "completion", folder / "functions" / "_info-analyze"):
            file.write_bytes(script)
        subprocess.run([shell, "-n", folder / "completion"], check=True)
        for preparation in preparations:
            terminal = Terminal(command, folder)
            wrong += complete_lines(terminal, preparation)
            terminal.close()
    print("\n".join(wrong) if wrong else f"{len(CASES)} lines in {shell}")
    return 1 if wrong else 0


sys.exit(main())
