"""The blocks of docs/python.md do what they show."""

import os
import re
import shutil
import subprocess
import sys

import pytest

import info_analyze
from conftest import BUILD, DRIVER, ROOT, documents_of

PAGE = (ROOT / "docs/python.md").read_text()


def blocks(language):
    return re.findall(rf"^```{language}\n(.*?)^```$", PAGE, re.M | re.S)


def matches(shown, printed):
    pattern = "".join(r"(?:.*\n)*" if line == "..." else re.escape(line) + "\n"
                      for line in shown.splitlines())
    return re.fullmatch(pattern, printed)


def run_in_tree(folder, script):
    """Runs a script in a folder like the source tree, with the variables that the page sets."""
    (folder / "build").mkdir()
    (folder / "build/release").symlink_to(BUILD)
    (folder / "examples").symlink_to(ROOT / "examples")
    shutil.copytree(ROOT / "python", folder / "python")  # the build of a wheel writes there
    (folder / "bin").mkdir()
    (folder / "bin/python3").symlink_to(sys.executable)
    (block,) = blocks("console")
    exports = re.findall(r"^\$ (export .*)$", block, re.M)
    assert len(exports) == 2
    environment = {name: value for name, value in os.environ.items()
                   if not name.startswith("CUPS_") and name != "LD_LIBRARY_PATH"}
    environment |= {"PATH": f"{folder}/bin:{os.environ['PATH']}", "MPLCONFIGDIR": str(folder)}
    return subprocess.run(["sh", "-c", "\n".join([*exports, script])], cwd=folder,
                          env=environment, capture_output=True, text=True)


def test_sessions(tmp_path):
    """All sessions of the page are one."""
    session = "\n".join(blocks("pycon"))
    assert session.count(">>>") > 20
    (tmp_path / "session.txt").write_text(session)
    run = run_in_tree(tmp_path, "python3 -m doctest session.txt")
    assert run.returncode == 0, run.stdout + run.stderr


def test_the_first_program(capsys):
    """With the folders of a sample."""
    (program,) = blocks("python")
    for text, replacement in (("/usr/lib/driver", DRIVER), ('"office"', '"office-mfp"'),
                              ("/var/cache/driver/office", documents_of("office-mfp"))):
        assert text in program
        program = program.replace(text, str(replacement))
    exec(program, {})
    printed = capsys.readouterr().out
    assert printed == (ROOT / "examples/office-mfp/expected-options.txt").read_text()


def commands():
    for block in blocks("text"):
        command, _, shown = block.removeprefix("$ ").partition("\n")
        yield command, shown


# test_examples.py runs it with a server.
@pytest.mark.parametrize("command, shown", [
    (command, shown) for command, shown in commands() if "punch_units" not in command])
def test_commands(tmp_path, command, shown):
    run = run_in_tree(tmp_path, command)
    assert run.returncode == 0 and matches(shown, run.stdout), run.stdout + run.stderr


def test_all_exceptions_are_listed():
    errors = {name for name in info_analyze.__all__ if name.endswith("Error")} - {"Error"}
    table = PAGE[PAGE.index("| Exception |"):PAGE.index("Out of memory")]
    assert set(re.findall(r"`(\w+)`", table)) == errors
