"""The package is typed and documented, and its version is that of the project."""

import inspect
import re
import subprocess
import sys

import pytest

import info_analyze
from conftest import ROOT

# What callers get; the last line is wrong.
CLIENT = """
from typing import assert_type
from info_analyze import Analyzer, CurveTable, Options, Snapshot, Value, curve_table

with Analyzer("driver", "office", "documents") as analyzer:
    options = analyzer.query(reload=True)
    assert_type(analyzer, Analyzer)
    assert_type(analyzer.calibration_defaults().curves, CurveTable | None)
assert_type(options["QVFinisher"], str)
assert_type(options.reason("QVFinisher").inputs[0].value, Value)
assert_type(curve_table("LARCH_Def_Calib")[0], memoryview)
assert_type(Snapshot.read("office.tar.gz").query("driver"), Options)
analyzer.query(True)
"""


def check_types(tmp_path, *arguments):
    return subprocess.run(
        [sys.executable, "-m", "mypy", "--strict", "--config-file", ROOT / "python/pyproject.toml",
         "--cache-dir", tmp_path / "cache", *arguments], capture_output=True, text=True)


def test_package_and_examples_are_typed_and_clients_get_the_types(tmp_path):
    client = tmp_path / "client.py"
    client.write_text(CLIENT)
    examples = sorted((ROOT / "python/examples").glob("*.py"))
    run = check_types(tmp_path, ROOT / "python/info_analyze", *examples)
    assert run.returncode == 0, run.stdout + run.stderr
    run = check_types(tmp_path, client)
    (error,) = re.findall(r"error: (.*)", run.stdout)
    assert error.startswith('Too many positional arguments for "query" of "Analyzer"')


def public_objects():
    for name in info_analyze.__all__:
        value = getattr(info_analyze, name)
        yield name, value
        if inspect.isclass(value):
            for member, function in vars(value).items():
                if not member.startswith("_") and (
                        inspect.isfunction(function)
                        or isinstance(function, (property, classmethod))):
                    yield f"{name}.{member}", function


@pytest.mark.parametrize("name, value", [
    (name, value) for name, value in public_objects()
    if callable(value) or isinstance(value, (property, classmethod))
    if value is not info_analyze.Value])
def test_every_public_name_is_documented(name, value):
    documentation = inspect.getdoc(value)
    assert documentation and documentation[0].isupper() and "Not public" not in documentation
    if inspect.isclass(value) and hasattr(value, "__dataclass_fields__"):
        source = inspect.getsource(value)
        for field in value.__dataclass_fields__:
            assert re.search(rf'^    {field}: .*\n    """\S', source, re.M), field


def test_all_public_names_are_exported():
    imported = {name for name, value in vars(info_analyze).items()
                if not name.startswith("_") and not inspect.ismodule(value)}
    assert imported == set(info_analyze.__all__) - {"__version__"}


def test_the_version_is_that_of_the_project():
    project = (ROOT / "CMakeLists.txt").read_text()
    assert info_analyze.__version__ == re.search(r"project\(info_analyze VERSION (\S+)", project)[1]


def test_the_constants_are_those_of_the_headers():
    library = info_analyze._library
    headers = "".join(path.read_text() for path in (ROOT / "include/info_analyze").glob("*.h"))
    names = {"IA_DOCUMENT_COUNT": library.DOCUMENT_COUNT, "IA_KEY_LONG": library.KEY_LONG,
             "IA_DOCUMENT_MAX_SIZE": library.DOCUMENT_MAX_SIZE,
             "IA_DOCUMENT_MAX_PATH_LENGTH": library.DOCUMENT_MAX_PATH_LENGTH,
             "IA_INPUT_OF_PPD": library.INPUT_OF_PPD, "IA_NO_INPUT": library.NO_INPUT,
             "IA_FAMILY_NONE": library.FAMILY_NONE, "IA_OTHER_MODELS": library.OTHER_MODELS,
             "IA_FAMILY_MEDIA_TYPE": library.FAMILY_MEDIA_TYPE,
             "IA_FAMILY_COUNT": library.FAMILY_COUNT,
             "IA_KEY_DICTIONARY": library.KEY_DICTIONARY, "IA_KEY_STRING": library.KEY_STRING,
             "IA_KEY_LONG_ELEMENTS": library.KEY_LONG_ELEMENTS,
             "IA_KEY_STRING_ELEMENTS": library.KEY_STRING_ELEMENTS,
             "IA_CALIB_LEVEL_COUNT": library.CALIB_LEVEL_COUNT}
    for name, value in names.items():
        assert re.search(rf"\b{name} = {value}\b", headers), name
