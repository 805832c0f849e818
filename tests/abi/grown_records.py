#!/usr/bin/env python3
"""A program keeps working when a later library appends fields to the records of provenance.h, and a
program that knows these fields works with the library of today. Builds such a library.

usage: grown_records.py LIBRARY SOURCE_FOLDER SCRATCH_FOLDER C_COMPILER"""

import os
import subprocess
import sys
from pathlib import Path

HEADER = "include/info_analyze/provenance.h"
FIELDS = "  const char* planted;\n  int32_t planted_number;\n"
VALUES = '.planted = "planted", .planted_number = 7'

# For each record the field in its declaration, the source that fills it, and the last field there.
RECORDS = (
    ("} InputKey;", "analyze/inputs.h", ".key = (key_of)}", ".key = (key_of), %s}",
     "analyze/inputs.cc", "found.key,", "found.planted_number,"),
    ("} OptionSource;", "analyze/query/printer_query.cc", ".input_count = found->inputs.Count()}",
     ".input_count = found->inputs.Count(), %s}",
     "analyze/query/printer_query.cc", "record.input_count,", "record.planted_number,"),
    ("} UpdateSource;", "analyze/query/printer_query.cc",
     ".option_count = static_cast<int32_t>(handler->options.size())}",
     ".option_count = static_cast<int32_t>(handler->options.size()), %s}",
     "analyze/query/printer_query.cc", "record.option_count,", "record.planted_number,"),
    ("} ModelRow;", "analyze/model/model_matrix.cc",
     ".input_count = cell->inputs != nullptr ? cell->inputs->Count() : 0}",
     ".input_count = cell->inputs != nullptr ? cell->inputs->Count() : 0, %s}",
     "analyze/model/model_matrix.cc", "record.input_count,", "record.planted_number,"),
)


def replace(path, old, new):
    text = path.read_text()
    if text.count(old) != 1:
        sys.exit(f"{path.name} has {text.count(old)} times {old!r}")
    path.write_text(text.replace(old, new))


def grow(tree):
    for closing, filler, fill, grown_fill, copier, last, grown_last in RECORDS:
        replace(tree / HEADER, closing, FIELDS + closing)
        replace(tree / filler, fill, grown_fill % VALUES)
        replace(tree / copier, last, grown_last)


def run(*command, **options):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          check=False, **options)
    if done.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))}:\n{done.stdout}")
    return done.stdout


def build_grown_library(source_folder, folder):
    tree = folder / "source"
    tree.mkdir(parents=True, exist_ok=True)
    run("rsync", "-rlpt", "--delete", "--exclude=/build", "--exclude=/obj-*", "--exclude=/.git",
        "--exclude=/tests", f"{source_folder}/", tree)
    grow(tree)
    build = folder / "build"
    run("cmake", "-S", tree, "-B", build, "-DCMAKE_BUILD_TYPE=Release", "-DINFO_ANALYZE_TOOL=OFF",
        "-DINFO_ANALYZE_COMMLIB=OFF", "-DINFO_ANALYZE_TESTS=OFF", "-DINFO_ANALYZE_DOCS=OFF",
        "-DINFO_ANALYZE_BENCHMARKS=OFF", "-DINFO_ANALYZE_FUZZERS=OFF")
    run("cmake", "--build", build, "--target", "info_analyze", "--parallel", "2")
    return tree, build / "libinfo_analyze.so.1"


def build_client(compiler, include, library, program, *flags):
    source = Path(__file__).with_name("records_client.c")
    run(compiler, "-std=c99", "-Wall", "-Wextra", "-Werror", *flags, f"-I{include}", source, "-o",
        program, library)


def answers(program, library):
    return run(program, env=dict(os.environ, LD_LIBRARY_PATH=str(library.parent)))


def expect_same(what, expected, found):
    if expected != found:
        pairs = zip(expected.splitlines(), found.splitlines())
        first = next((f"{a!r}, {b!r}" for a, b in pairs if a != b), "their lengths")
        sys.exit(f"{what} differs: {first}")


def main(library, source_folder, folder, compiler):
    tree, grown_library = build_grown_library(source_folder, folder)
    client, grown_client = folder / "client", folder / "grown_client"
    build_client(compiler, source_folder / "include", library, client)
    build_client(compiler, tree / "include", grown_library, grown_client, "-DIA_GROWN")

    today = answers(client, library)
    if len(today.splitlines()) < 250:
        sys.exit(f"the library describes too little:\n{today}")
    expect_same("what a program of today reads from a grown library", today,
                answers(client, grown_library))
    lines = today.splitlines(keepends=True)
    expect_same("what a grown program reads from the library of today",
                "".join(line.replace("\n", " + (none) 0\n") for line in lines),
                answers(grown_client, library))
    expect_same("what a grown program reads from a grown library",
                "".join(line.replace("\n", " + planted 7\n") for line in lines),
                answers(grown_client, grown_library))


if __name__ == "__main__":
    main(*(Path(argument).resolve() for argument in sys.argv[1:4]), sys.argv[4])
