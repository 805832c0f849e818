#!/usr/bin/env python3
"""Checks that the tests notice changes in the library. Makes one small change after the other in a copy
of the tree (mutations.py lists them), builds and runs the tests that see the changed module, and names
the changes that none notices. Changes are skipped that do not compile, unless a static_assert
notices them, and changes whose object code is that of the original.

usage: tests/mutate.py [--cells] [--sample N] [--seed N] [--jobs N] [--folder DIR] [FILE...]

Sources, headers and lists (.inc) of the library can be changed; without files all of them are. With
--cells only the cells of constant tables, constants and the rules of handlers are changed. With a
sample only so many changes are tried, drawn at random. Each job has a copy of its own. With a folder
the copies are made there and kept, so that another run has less to build."""

import argparse
import collections
import concurrent.futures
import hashlib
import os
import queue
import random
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

sys.dont_write_bytecode = True
from mutations import changes_of_file

ROOT = Path(__file__).resolve().parent.parent
MODULES = ("info_common", "queue", "bidi", "analyze", "calib")

# The test programs that see a module, those that know it best first.
TESTS = {
    "info_common": ("info_common", "queue", "bidi", "analyze", "integration"),
    "queue": ("queue", "bidi", "integration"),
    "bidi": ("bidi", "analyze", "integration"),
    "analyze": ("analyze", "info_common", "integration"),
    "calib": ("calib", "integration"),
}
# Integration tests that notice nothing more than the rest, or take long.
PASSED_OVER = {"long_run_test", "parallel_users_test", "argument_matrix_test", "cupsd_query_test"}
# Tests by names as GoogleTest filters them: most changes are noticed by the quick ones. Those that
# make a locale first are skipped, because no change here can matter to them.
SLOW_TESTS = ("*Lying*:*EverySet*:Large*:*Inputs.AreThoseThatMatter*:CupsQueues.AreFoundInAnyNumber:"
              "UnreadableStream*:OptionTableDestroy.ReleasesALongTable:CallSites*")
QUICK_RUN = f"-*Turkish*:{SLOW_TESTS}"
SLOW_RUN = f"{SLOW_TESTS}-*Turkish*"
# Makes glibc check whether something was written past the end of a block.
CHECKED_HEAP = {"LD_PRELOAD": "libc_malloc_debug.so.0", "MALLOC_CHECK_": "3"}


class Copy:
    def __init__(self, folder, modules):
        self.folder = folder
        self.build = folder / "build" / "mutants"
        self.environment = dict(os.environ, GTEST_FAIL_FAST="1", GTEST_BRIEF="1",
                                RC_PARAMS="max_success=50", CCACHE_BASEDIR=str(folder))
        # By content and with new times, so that what an interrupted run left is built again.
        subprocess.run(["rsync", "-rlp", "--checksum", "--delete", "--exclude=/build", "--exclude=/.git",
                        f"{ROOT}/", f"{folder}/"], check=True)
        # Light optimisation, so that changes without effect give the same object code.
        self.run("cmake", "--preset", "dev", "-B", str(self.build),
                 "-DCMAKE_CXX_FLAGS_DEBUG=-O1 -g0", check=True)
        folders = [path.parent for module in modules
                   for path in (self.folder / "tests" / module).rglob("CMakeLists.txt")]
        self.ninja(*(f"{path.relative_to(self.folder)}/all" for path in folders), check=True)
        self.programs = {module: [program for program in
                                sorted((self.build / "tests" / module).rglob("*_test"))
                                if program.is_file() and program.name not in PASSED_OVER]
                         for module in modules}
        for module in modules:
            for program in self.programs[module]:
                if self.fails(program, QUICK_RUN) or self.fails(program, SLOW_RUN):
                    sys.exit(f"{program.name} fails before anything is changed")
        self.environment["CCACHE_READONLY"] = "1"  # no change is built twice

    def run(self, *command, check=False, timeout=None, variables=None):
        return subprocess.run(command, cwd=self.folder, check=check, timeout=timeout,
                              env=self.environment | (variables or {}), stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL).returncode

    def ninja(self, *targets, check=False):
        return self.run("ninja", "-C", str(self.build), *targets, check=check)

    def build_library(self):
        """Whether the sources compile, and whether a static_assert says why they do not."""
        done = subprocess.run(["ninja", "-C", str(self.build), "info_analyze_objects"],
                              env=self.environment, stdout=subprocess.PIPE, text=True, check=False)
        return done.returncode == 0, "static assertion failed" in done.stdout

    def object_code(self):
        """The library's, hashed."""
        objects = sorted((self.build / "CMakeFiles/info_analyze_objects.dir").rglob("*.o"))
        return [hashlib.sha256(file.read_bytes()).digest() for file in objects]

    def is_noticed(self, source):
        """Those of the source's own folder are asked first."""
        own = self.build / "tests" / source.parent
        programs = sorted((program for module in TESTS[source.parts[0]]
                           for program in self.programs[module]),
                          key=lambda program: program.parent != own)
        return any(self.ninja(str(program.relative_to(self.build))) != 0 or self.fails(program, tests)
                   for tests in (QUICK_RUN, SLOW_RUN) for program in programs)

    def fails(self, program, tests):
        try:
            # A busy machine delays a program, but does not make it work longer.
            return self.run("prlimit", "--cpu=60", str(program), timeout=600,
                            variables=CHECKED_HEAP | {"GTEST_FILTER": tests}) != 0
        except subprocess.TimeoutExpired:
            return True

    def try_change(self, source, change, original_code):
        """None: no change; else whether it was noticed."""
        path = self.folder / source
        lines = (ROOT / source).read_text().split("\n")
        lines[change.number] = change.changed
        path.write_text("\n".join(lines))
        compiles, is_asserted = self.build_library()
        if not compiles:
            return True if is_asserted else None
        return None if self.object_code() == original_code else self.is_noticed(source)

    def try_changes(self, source, changes):
        """Prints those that are not noticed. Returns how many were, and how many were tried."""
        tried = noticed = 0
        self.build_library()
        original_code = self.object_code()
        for change in changes:
            result = self.try_change(source, change, original_code)
            if result is None:
                continue
            tried += 1
            noticed += result
            if not result:
                print(f"not noticed: {source}:{change.number + 1}: {change.line.strip()}"
                      f"  ->  {change.changed.strip()}", flush=True)
        shutil.copyfile(ROOT / source, self.folder / source)
        print(f"{source}: noticed {noticed} of {tried}", flush=True)
        return noticed, tried


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--cells", action="store_true")
    parser.add_argument("--sample", type=int)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--folder", type=Path)
    parser.add_argument("files", nargs="*", type=Path)
    arguments = parser.parse_args()
    files = [file.resolve() for file in arguments.files] or [
        file for module in MODULES for file in sorted((ROOT / module).rglob("*.*"))
        if file.suffix in (".cc", ".h", ".inc") and "curves" not in file.parts]
    changes = [(file.relative_to(ROOT), change) for file in files for change in changes_of_file(file)
               if change.is_cell or not arguments.cells]
    if arguments.sample is not None and arguments.sample < len(changes):
        changes = sorted(random.Random(arguments.seed).sample(changes, arguments.sample))
    changes_of_source = collections.defaultdict(list)
    for source, change in changes:
        changes_of_source[source].append(change)

    folder = arguments.folder or Path(tempfile.mkdtemp())
    modules = sorted({module for source in changes_of_source for module in TESTS[source.parts[0]]})
    copies = queue.SimpleQueue()
    for job in range(arguments.jobs):
        (folder / str(job)).mkdir(parents=True, exist_ok=True)
        copies.put(Copy(folder / str(job), modules))

    def try_source(source):
        copy = copies.get()
        try:
            return copy.try_changes(source, changes_of_source[source])
        finally:
            copies.put(copy)

    with concurrent.futures.ThreadPoolExecutor(arguments.jobs) as pool:
        results = list(pool.map(try_source, changes_of_source))
    if arguments.folder is None:
        shutil.rmtree(folder)
    noticed, tried = (sum(counts) for counts in zip(*results))
    print(f"noticed {noticed} of {tried} changes ({100 * noticed / max(tried, 1):.1f} %)")
    return 0 if noticed == tried > 0 else 1


if __name__ == "__main__":
    sys.exit(main())
