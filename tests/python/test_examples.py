"""The worked examples, run as their readers run them."""

import os
import subprocess
import sys

import pytest

from conftest import DRIVER, EXAMPLES, ROOT, SAMPLES

sys.path.insert(0, str(ROOT / "tests/cli/audit"))
from print_server import PrintServer, is_installed  # noqa: E402

SCRIPTS = ROOT / "python/examples"


def run_example(name, *arguments, **environment):
    return subprocess.run([sys.executable, SCRIPTS / name, *map(str, arguments)],
                          env={**os.environ, **environment}, capture_output=True, text=True)


@pytest.fixture(scope="module")
def server(tmp_path_factory):
    """A private CUPS server with a queue for each sample, a raw queue and one without documents."""
    if not is_installed():
        pytest.skip("no cupsd or lpadmin")
    root = tmp_path_factory.mktemp("cups")
    documents = tmp_path_factory.mktemp("documents")
    with PrintServer(root) as started:
        for sample in SAMPLES:
            started.add(sample, EXAMPLES / sample / f"ppd/{sample}.ppd")
            (documents / sample).symlink_to(EXAMPLES / sample / "device-info")
        started.add("lobby", EXAMPLES / "office-mfp/ppd/office-mfp.ppd")
        started.lpadmin("-p", "raw", "-E", "-v", "file:///dev/null")
        started.documents = documents
        yield started


def test_punch_units_are_those_of_the_samples(server):
    expected = {}
    for sample in SAMPLES:
        options = dict(line.split("=", 1) for line in (
            EXAMPLES / sample / "expected-options.txt").read_text().splitlines())
        if options.get("QVPuncher", "None") != "None":
            expected[sample] = options["QVPuncher"]
    assert 0 < len(expected) < len(SAMPLES)
    # libcups takes the PPDs from the server itself, not from its folder.
    environment = {**server.environment, "CUPS_SERVERROOT": "/none"}
    run = run_example("punch_units.py", DRIVER, server.documents / "{queue}", **environment)
    assert run.returncode == 0, run.stderr
    lines = [line.split(":")[:2] for line in run.stdout.splitlines()]
    assert {queue: unit.split(",")[0].strip() for queue, unit in lines} == expected
    faults = run.stderr.splitlines()
    assert len(faults) == 2
    assert faults[0].startswith('lobby: not known: query of queue "lobby": 9 of 9 documents')
    assert faults[1].startswith('raw: not known: PPD of queue "raw": CUPS has no PPD of this queue')


@pytest.mark.parametrize("suffix, start", [("png", b"\x89PNG"), ("svg", b"<?xml")])
def test_curves_are_plotted_into_a_file(tmp_path, suffix, start):
    path = tmp_path / f"curves.{suffix}"
    run = run_example("plot_curves.py", "LARCH_Def_Calib", path, MPLCONFIGDIR=str(tmp_path))
    assert run.returncode == 0, run.stderr
    assert run.stdout == ("curve 0: lowest by 68 levels, at input level 277\n"
                          "curve 3: lowest by 55 levels, at input level 362\n")
    contents = path.read_bytes()
    assert contents.startswith(start) and len(contents) > 10_000


@pytest.mark.parametrize("name", ["punch_units.py", "plot_curves.py"])
def test_an_example_without_arguments_says_how_it_is_used(name):
    run = run_example(name)
    assert run.returncode == 1 and "usage: " + name in run.stderr
