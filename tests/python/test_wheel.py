"""The wheel that is built from the tree serves in an environment of its own."""

import os
import shutil
import subprocess
import sys
import zipfile

import pytest

from conftest import DRIVER, EXAMPLES, ROOT

SCRIPT = """
import info_analyze, sys
with info_analyze.Analyzer(*sys.argv[1:]) as analyzer:
    for keyword, value in analyzer.query().items():
        print(f"{keyword}={value}")
assert info_analyze.__file__.startswith(sys.prefix), info_analyze.__file__
"""


@pytest.fixture(scope="module")
def wheel(tmp_path_factory):
    folder = tmp_path_factory.mktemp("wheel")
    # The build writes into its source folder.
    shutil.copytree(ROOT / "python", folder / "python")
    subprocess.run([sys.executable, "-m", "build", "--wheel", "--no-isolation", "--outdir", folder,
                    folder / "python"], check=True, stdout=subprocess.DEVNULL,
                   env={**os.environ, "SOURCE_DATE_EPOCH": "1763755200"})
    (built,) = folder.glob("*.whl")
    return built


def test_the_wheel_has_the_package_and_nothing_else(wheel):
    sources = {f"info_analyze/{path.name}" for path in (ROOT / "python/info_analyze").iterdir()
               if path.suffix == ".py" or path.name == "py.typed"}
    names = set(zipfile.ZipFile(wheel).namelist())
    assert {name for name in names if ".dist-info/" not in name} == sources
    assert wheel.name == "info_analyze-1.0.0-py3-none-any.whl"


def test_an_environment_with_the_wheel_queries_a_sample(wheel, tmp_path):
    environment = {name: value for name, value in os.environ.items() if name != "PYTHONPATH"}
    environment |= {"CUPS_SERVERROOT": str(EXAMPLES / "office-mfp"), "PIP_NO_INDEX": "1"}
    subprocess.run([sys.executable, "-m", "venv", tmp_path], check=True, env=environment)
    python = tmp_path / "bin/python3"
    subprocess.run([python, "-m", "pip", "install", "--quiet", "--no-deps", wheel], check=True,
                   env=environment)
    run = subprocess.run(
        [python, "-I", "-c", SCRIPT, DRIVER, "office-mfp", EXAMPLES / "office-mfp/device-info"],
        check=True, env=environment, stdout=subprocess.PIPE, text=True)
    assert run.stdout == (EXAMPLES / "office-mfp/expected-options.txt").read_text()
