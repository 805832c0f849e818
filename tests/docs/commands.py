#!/usr/bin/env python3
"""Runs the commands that the documents show, and compares what they print with what is shown.

usage: tests/docs/commands.py [--slow | --all] BUILD_FOLDER

A command is a line that starts with "$ " in a console block: ```console in Markdown, .Bd -literal in a
manual page. Lines that follow are its output, and a line "..." means any number of them. The
commands of a document run one after the other in a scratch copy of the tree, in which the tool of
the build is found first. A command ends with status 0, or "$ echo $?" follows it.

Blocks that run the tests of a build of their own, by ctest --test-dir, are run with --slow. ./dev VERB
is run by .ci/run; with --all every verb that is shown is run here, in the tree itself, which takes
hours."""

import argparse
import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
LANGUAGES = {"c", "cmake", "console", "cpp", "diff", "pycon", "python", "text", "xml"}
MARK = "@@status "
NOT_COPIED = (".git", "build")
NOT_COPIED_EITHER = ("fuzz", "tests")  # unless it takes long anyway


class Command:
    def __init__(self, document, line, text):
        self.document = document
        self.line = line
        self.text = text
        self.shown = []

    def builds(self):
        return self.text.startswith("./dev ")

    def tests(self):
        return self.text.startswith("ctest --test-dir ")

    def __str__(self):
        return f"{self.document.relative_to(ROOT)}:{self.line}: {self.text}"


def documents():
    return sorted(path for pattern in ("*.md", "docs/*.md", "examples/*.md", "docs/man/*.[1-9]")
                  for path in ROOT.glob(pattern))


def blocks_of_markdown(document):
    """Yields language, number of the first line and lines of each block."""
    indentation, language, block = "", None, []
    for number, line in enumerate(document.read_text().split("\n"), 1):
        fence = re.fullmatch(r"( *)```(\w*)", line)
        if fence and language is None:
            indentation, language, block = fence[1], fence[2], []
        elif fence:
            yield language, number - len(block), block
            language = None
        elif language is not None:
            block.append(line.removeprefix(indentation))
        elif re.match(r" {4,}(\$|\./|info-analyze )", line):
            yield "", number, [line]


def blocks_of_manual_page(document):
    inside, block = False, []
    for number, line in enumerate(document.read_text().split("\n"), 1):
        if line.startswith(".Bd -literal"):
            inside, block = True, []
        elif line == ".Ed" and inside:
            yield "console", number - len(block), block
            inside = False
        elif inside:
            block.append(line.replace(r"\&", "").replace(r"\-", "-").replace(r"\(aq", "'")
                         .replace(r"\(dq", '"').replace(r"\e", "\\"))


def commands_of_block(document, first, lines):
    commands, continued = [], False
    for number, line in enumerate(lines, first):
        if continued:
            commands[-1].text += "\n" + line
        elif line.startswith("$ "):
            commands.append(Command(document, number, line[2:]))
        else:
            for command in commands[-1:]:
                command.shown.append(line)
            continue
        continued = line.endswith(("\\", "|"))
    return commands


def blocks(document):
    """The commands of each block that has some."""
    is_markdown = document.suffix == ".md"
    for language, first, lines in (blocks_of_markdown if is_markdown
                                   else blocks_of_manual_page)(document):
        if language not in LANGUAGES:
            sys.exit(f"{document.relative_to(ROOT)}:{first}: unknown language '{language}' of a block")
        if language == "console":
            commands = commands_of_block(document, first, lines)
            if is_markdown and not commands:
                sys.exit(f"{document.relative_to(ROOT)}:{first}: a console block without a command")
            yield commands


def as_pattern(lines):
    return "".join(r"(?:.*\n)*" if line.strip() == "..." else re.escape(line.rstrip()) + " *\n"
                   for line in lines)  # documents have no blanks at the ends of lines


def run_block(commands, folder, environment):
    """Yields each command, its status and its output."""
    script = "".join(f"{command.text}\n"
                     f'ia_status=$?; printf "\\n{MARK}%d\\n" $ia_status; (exit $ia_status)\n'
                     for command in commands)
    done = subprocess.run(["bash", "-s"], input=script, cwd=folder, env=environment, check=False,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    parts = re.split(rf"\n{MARK}(\d+)\n", done.stdout)
    for command, output, status in zip(commands, parts[0::2], parts[1::2]):
        yield command, int(status), output


def scratch_copy(folder, build, with_tests):
    left_out = NOT_COPIED + (() if with_tests else NOT_COPIED_EITHER)
    shutil.copytree(ROOT, folder, dirs_exist_ok=True, ignore=lambda directory, names:
                    left_out if Path(directory) == ROOT else ())
    for preset in ("dev", "release"):
        (folder / "build").mkdir(exist_ok=True)
        (folder / "build" / preset).symlink_to(build)
    # A build by Ninja finds what the release compiled in the cache.
    return dict(os.environ, PATH=f"{build / 'bin'}:{os.environ['PATH']}", TERM="dumb",
                LC_ALL="C.UTF-8", CCACHE_BASEDIR=str(folder), CMAKE_GENERATOR="Ninja")


def check(commands, folder, environment):
    """Returns the number of commands that do not what is shown."""
    failures = 0
    for index, (command, status, output) in enumerate(run_block(commands, folder, environment)):
        followed = index + 1 < len(commands) and commands[index + 1].text == "echo $?"
        if status != 0 and not followed:
            print(f"{command}\n  ends with status {status}:\n{output}")
            failures += 1
        elif command.shown and not re.fullmatch(as_pattern(command.shown), output):
            print(f"{command}\n  prints a different output:\n{output}")
            failures += 1
    return failures


def run_in_tree(commands):
    failures = 0
    for command in commands:
        print(f"running {command}", flush=True)
        failures += check([command], ROOT, os.environ)
    return failures


def verbs():
    usage = subprocess.run([ROOT / "dev"], capture_output=True, text=True, check=False).stderr
    return set(re.findall(r"^  (\w+)", usage, re.M))


def check_verbs(documents_):
    """Checks that each ./dev VERB in the documents exists."""
    known, failures = verbs(), 0
    for document in documents_:
        for verb in re.findall(r"\./dev ([a-z]\w*)", document.read_text()):
            if verb not in known:
                print(f"{document.relative_to(ROOT)}: ./dev has no verb '{verb}'")
                failures += 1
    return failures


def check_counts(commands, build):
    """Checks that the number of tests in a document is that of the build."""
    shown = re.findall(r"tests failed out of (\d+)",
                       "\n".join(line for command in commands for line in command.shown))
    if not shown:
        return 0
    listed = subprocess.run(["ctest", "--test-dir", build, "-N"], check=True, capture_output=True,
                            text=True).stdout
    count = re.search(r"^Total Tests: (\d+)$", listed, re.M)[1]
    for number in set(shown) - {count}:
        print(f"{commands[0]}\n  the document shows {number} tests, the build has {count}")
    return len(set(shown) - {count})


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--slow", action="store_true")
    parser.add_argument("--all", action="store_true")
    parser.add_argument("build", type=Path)
    arguments = parser.parse_args()
    is_slow = arguments.slow or arguments.all
    found = documents()
    failures, runs = check_verbs(found), 0
    for document in found:
        blocks_ = list(blocks(document))
        if not blocks_:
            continue
        with tempfile.TemporaryDirectory() as folder:
            environment = scratch_copy(Path(folder), arguments.build.resolve(), is_slow)
            for commands in blocks_:
                if any(command.tests() for command in commands) and not is_slow:
                    continue
                here = [command for command in commands if not command.builds()]
                failures += check(here, folder, environment)
                failures += check_counts(commands, arguments.build)
                runs += len(here)
                if arguments.all:
                    failures += run_in_tree([command for command in commands if command.builds()])
    print(f"{runs} commands run, {failures} failures")
    return 0 if runs > 0 and failures == 0 else 1


if __name__ == "__main__":
    sys.exit(main())
