"""What the tests of the Python package share: the sample printers and the build."""

import atexit
import json
import os
import shutil
import subprocess
import tempfile
from pathlib import Path

import pytest
from hypothesis import settings

ROOT = Path(__file__).resolve().parent.parent.parent
BUILD = Path(os.environ["IA_BUILD_FOLDER"])
# Its own sanitizer, if it has one, is not the one that Python is started with.
TOOL = ("env", "-u", "LD_PRELOAD", BUILD / "bin/info-analyze")
DRIVER = BUILD / "driver"
SUPPORT = BUILD / "tests/support"
EXAMPLES = ROOT / "examples"
SAMPLES = sorted(path.parent.parent.name for path in EXAMPLES.glob("*/ppd/*.ppd"))

# The same cases in each run; how long a case takes depends on what else runs.
settings.register_profile("tests", derandomize=True, deadline=None, database=None)
settings.load_profile("tests")

# libcups reads the variables once in each thread, so one folder has the PPDs of all tests.
CUPS_ROOT = Path(tempfile.mkdtemp())
atexit.register(shutil.rmtree, CUPS_ROOT)
os.environ["CUPS_SERVER"] = "localhost"
os.environ["CUPS_SERVERROOT"] = str(CUPS_ROOT)
(CUPS_ROOT / "ppd").mkdir()
for _sample in SAMPLES:
    shutil.copy(EXAMPLES / _sample / f"ppd/{_sample}.ppd", CUPS_ROOT / "ppd")

from info_analyze import Analyzer  # noqa: E402


def documents_of(sample):
    return EXAMPLES / sample / "device-info"


def open_sample(sample):
    return Analyzer(DRIVER, sample, documents_of(sample))


def add_ppd(queue, text):
    """Gives a queue this PPD."""
    path = CUPS_ROOT / f"ppd/{queue}.ppd"
    path.write_text(text)
    return path


def run_tool(*arguments):
    """What the tool prints."""
    return subprocess.run([*TOOL, *map(str, arguments)], check=True, capture_output=True,
                          text=True).stdout


def ask_tool(*arguments):
    """What the tool answers in JSON."""
    return json.loads(run_tool(*arguments, "--format", "json"))


def ask_about(sample, *arguments, documents=None):
    """What the tool answers about a sample printer; some verbs do not read its documents."""
    more = ["--device-info", documents] if documents else []
    return ask_tool(*arguments, "--queue", sample, "--cups-root", EXAMPLES / sample,
                    "--driver-folder", DRIVER, *more)


@pytest.fixture(params=SAMPLES)
def sample(request):
    return request.param
