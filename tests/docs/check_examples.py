#!/usr/bin/env python3
"""The examples of the documents are code: those in C compile as C99 and as C++20 without a warning
and link to the library, those in C++ as C++20; projects in CMake are built against what is
installed. A block that is not code has a word after its fence.

usage: check_examples.py SOURCE_FOLDER BUILD_FOLDER CMAKE C_COMPILER CXX_COMPILER
"""

import re
import subprocess
import sys
import tempfile
from pathlib import Path

FENCE = re.compile(r"^```(\w*)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
DISPLAY = re.compile(r"^\.Bd -literal.*\n((?:(?!\.Ed).*\n)*)\.Ed$", re.MULTILINE)
WARNINGS = ("-Wall", "-Wextra", "-Wpedantic", "-Werror")
C99 = ("c", "-x", "c", "-std=c99")
CXX20 = ("c++", "-x", "c++", "-std=c++20")
LANGUAGES = {"c": (C99, CXX20), "cpp": (CXX20,)}
PROJECT = "cmake_minimum_required(VERSION 3.25)\nproject(example LANGUAGES C CXX)\n"
PROGRAM = """#include <info_analyze/info_analyze.h>
int main(void) { return info_common_is_ppd_cache(); }
"""


class Failed(Exception):
    pass


def run(*command, **options):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          check=False, **options)
    if done.returncode != 0:
        raise Failed(done.stdout)


def blocks_of(folder):
    """(where, language, text) of each example."""
    for document in [folder / "README.md", folder / "CONTRIBUTING.md", *folder.glob("docs/*.md")]:
        text = document.read_text()
        for block in FENCE.finditer(text):
            line = text[:block.start()].count("\n") + 1
            yield f"{document.name}:{line}", block[1], block[2]
    for page in folder.glob("docs/man/*.[1-9]"):
        text = page.read_text()
        for block in DISPLAY.finditer(text):
            if "int main" in block[1]:
                line = text[:block.start()].count("\n") + 1
                yield f"{page.name}:{line}", "c", re.sub(r"\\e", r"\\", block[1])


def compile_program(text, language, compilers, build, include):
    name, *options = language
    with tempfile.TemporaryDirectory() as scratch:
        link = (f"-L{build}", "-linfo_analyze") if "int main" in text else ("-c",)
        run(compilers[name], *options, *WARNINGS, f"-I{include}", "-", "-o", f"{scratch}/example",
            *link, input=text)


def configure_project(text, cmake, compilers, prefix):
    """A project that is the block; the sources that it names ask the library something."""
    with tempfile.TemporaryDirectory() as scratch:
        folder = Path(scratch)
        (folder / "CMakeLists.txt").write_text(text if "project(" in text else PROJECT + text)
        for source in re.findall(r"\w+\.c(?:c|pp)?\b", text):
            (folder / source).write_text(PROGRAM)
        run(cmake, "-S", folder, "-B", folder / "build", f"-DCMAKE_PREFIX_PATH={prefix}",
            f"-DCMAKE_C_COMPILER={compilers['c']}", f"-DCMAKE_CXX_COMPILER={compilers['c++']}")
        run(cmake, "--build", folder / "build")


def main(source, build, cmake, c_compiler, cxx_compiler):
    compilers = {"c": c_compiler, "c++": cxx_compiler}
    wrong, seen = [], {"c": 0, "cpp": 0, "cmake": 0}
    with tempfile.TemporaryDirectory() as prefix:
        run(cmake, "--install", build, "--prefix", prefix)
        for where, language, text in blocks_of(Path(source)):
            seen[language] = seen.get(language, 0) + 1
            try:
                for standard in LANGUAGES.get(language, ()):
                    compile_program(text, standard, compilers, build, f"{source}/include")
                if language == "cmake":
                    configure_project(text, cmake, compilers, prefix)
                if not language:
                    wrong.append(f"{where}: a block does not say what it is")
            except Failed as failed:
                wrong.append(f"{where}: {language}\n{failed}")
    print(", ".join(f"{count} blocks of {language}" for language, count in sorted(seen.items())))
    if not (seen["c"] and seen["cmake"]):
        wrong.append("there are no examples")
    return "\n".join(wrong) if wrong else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
