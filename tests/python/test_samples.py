"""The answers about the sample printers are those of the tool."""

import numpy
import pytest

import info_analyze
from conftest import (
    DRIVER, EXAMPLES, SAMPLES, add_ppd, ask_about, ask_tool, documents_of, open_sample, run_tool)
from info_analyze import Analyzer, DeviceUri, Snapshot


def as_json(value):
    return list(value) if isinstance(value, tuple) else value


def raw_value_json(raw):
    return {"document": raw.document, "item": raw.item, "key": raw.key, "state": raw.state,
            "value": as_json(raw.value)}


def row_json(row):
    return {"code": row.code, "match": row.match, "handler": row.handler}


def reason_json(reason):
    """The members of an explanation that the package has."""
    return {"keyword": reason.keyword, "value": reason.value, "origin": reason.origin,
            "default_value": reason.default, "update": reason.update,
            "model": reason.model and row_json(reason.model),
            "inputs": [raw_value_json(raw) for raw in reason.inputs]}


def input_json(source):
    return {"document": source.document, "in_list": source.in_list, "key": source.key}


def test_there_are_ten_samples():
    assert len(SAMPLES) == 10


def test_query_returns_the_options_of_the_tool_in_their_order(sample):
    with open_sample(sample) as analyzer:
        options = analyzer.query()
    answer = ask_about(sample, "query", documents=documents_of(sample))
    assert list(options.items()) == [(option["keyword"], option["value"])
                                     for option in answer["options"]]
    assert options.model_code == answer["driver_name"]
    assert options.missing_documents == {}
    expected = (EXAMPLES / sample / "expected-options.txt").read_text()
    assert "".join(f"{keyword}={value}\n" for keyword, value in options.items()) == expected


def test_reasons_are_those_of_explain(sample):
    with open_sample(sample) as analyzer:
        options = analyzer.query()
    explained = ask_about(sample, "explain", documents=documents_of(sample))["explanations"]
    reasons = [reason_json(options.reason(keyword)) for keyword in options]
    assert reasons == [{key: explanation[key] for key in reason_json(options.reason("QVHardDisk"))}
                       for explanation in explained]


@pytest.mark.parametrize("version", [0, 0x310, 0x400, 0xFFFFFFFF])
def test_function_versions_are_those_of_the_tool(sample, version):
    with open_sample(sample) as analyzer:
        flags = analyzer.function_version(version)
    answer = ask_about(sample, "function-version", hex(version))
    assert list(flags.items()) == [(flag["keyword"], flag["value"]) for flag in answer["options"]]


JOBS = ({}, {"QVGradation": "High2"}, {"QVGradation": "Normal"},
        {"QVColorMode": "Color", "QVColorHalftone": "Resolution", "Resolution": "1200x600dpi"})


def options_of_job(job):
    return [f"--option={key}={value}" for key, value in job.items()]


def settings_json(settings):
    calib4 = settings.calib4
    return {"calib3": settings.halftone_codes and {"halftone_codes": list(settings.halftone_codes)},
            "calib4": calib4 and {
                "flag": calib4.flag, "x_dpi": calib4.x_dpi, "y_dpi": calib4.y_dpi,
                "groups": [list(group) for group in calib4.groups]}}


def defaults_json(defaults):
    return {"calib3": {"curves": defaults.curves and defaults.curves.name},
            "calib4": {"values": list(defaults.values), "codes": list(defaults.codes),
                       "model_values": list(defaults.model_values)}}


@pytest.mark.parametrize("job", JOBS, ids=str)
def test_calibration_is_that_of_the_tool(sample, job):
    with open_sample(sample) as analyzer:
        settings, defaults = analyzer.calibration_settings(job), analyzer.calibration_defaults(job)
    answer = ask_about(sample, "calibration", "settings", *options_of_job(job))
    assert settings_json(settings).items() <= answer.items()
    answer = ask_about(sample, "calibration", "defaults", *options_of_job(job))
    assert defaults_json(defaults).items() <= answer.items()


# Of each, the samples have none or not all: curves, halftone codes, resolutions of 0.
CODES = ("RC-STD", "RB-W7", "RB-P9", "RB-J9", "RB-J8", "RB-T3", "RC-W0", "unknown")


@pytest.mark.parametrize("code", CODES)
def test_calibration_of_other_models_is_that_of_the_tool(code):
    text = (EXAMPLES / "office-mfp/ppd/office-mfp.ppd").read_text()
    ppd = add_ppd(code, text.replace('"RA-H5-MLT-JP"', f'"{code}"'))
    with Analyzer(DRIVER, code) as analyzer:
        for job in JOBS:
            arguments = (*options_of_job(job), "--queue", code, "--cups-root", ppd.parent.parent,
                         "--driver-folder", DRIVER)
            settings = ask_tool("calibration", "settings", *arguments)
            assert settings_json(analyzer.calibration_settings(job)).items() <= settings.items()
            defaults = ask_tool("calibration", "defaults", *arguments)
            assert defaults_json(analyzer.calibration_defaults(job)).items() <= defaults.items()


def test_models_differ_in_their_curves():
    def curves_of(code, **job):
        add_ppd(code, f'*PPD-Adobe: "4.3"\n*QVAnlz_DriverName: "{code}"\n')
        with Analyzer(DRIVER, code) as analyzer:
            return analyzer.calibration_defaults(job).curves
    assert curves_of("RB-W7") == info_analyze.curve_table("LARCH_Def_Calib")
    assert curves_of("RB-P9") == info_analyze.curve_table("Linden_Def_Calib_2bit")
    assert curves_of("RB-J9", QVGradation="High2") == info_analyze.curve_table(
        "PinePoplar_Def_Calib_4bit")
    assert curves_of("RB-J9", QVGradation="Normal") is None
    assert curves_of("RA-H5") is None


@pytest.mark.parametrize("name", info_analyze.CURVE_TABLE_NAMES)
def test_curves_are_those_that_the_tool_prints(name):
    table = info_analyze.curve_table(name)
    lines = run_tool("calibration", "curves", "--table", name, "--csv").splitlines()[1:]
    columns = list(zip(*(map(int, line.split(",")) for line in lines)))[1:]
    assert [tuple(curve) for curve in table] == columns
    assert table.name == name


def test_curves_are_arrays_of_numpy_without_a_copy():
    table = info_analyze.curve_table("LARCH_Def_Calib")
    array = numpy.frombuffer(table.values, numpy.uint16)
    assert array.shape == (8192,)
    assert not array.flags.owndata and not array.flags.writeable
    assert numpy.shares_memory(array, numpy.frombuffer(table[3], numpy.uint16))
    assert array.reshape(8, 1024)[3].tolist() == table[3].tolist()


def test_a_curve_table_is_a_sequence():
    table = info_analyze.curve_table("LARCH_Def_Calib")
    assert len(table) == 8 and table[-1] == table[7] and table[2:4] == [table[2], table[3]]
    with pytest.raises(IndexError):
        table[8]
    with pytest.raises(IndexError):
        table[-9]
    with pytest.raises(TypeError):
        table.values[0] = 1
    with pytest.raises(KeyError):
        info_analyze.curve_table("strlcpy")


@pytest.mark.parametrize("code", ["", "RA-H5-MLT-JP", "RA-Z5", "RA-Z55"])
def test_models_are_those_of_the_tool(code):
    tables = [(table.option, table.rows) for table in info_analyze.model_tables()]
    if code:
        tables = [(option, [row])
                  for option, row in info_analyze.rows_of_model(code).items()]
    answer = ask_tool("models", *filter(None, [code]))["families"]
    assert [{"option": option, "rows": [
        {**row_json(row), "inputs": [input_json(source) for source in row.inputs]} for row in rows]}
        for option, rows in tables] == answer


URIS = ("net:192.0.2.10/PDLType=kappa2", "net6:[2001:db8::1]/PDLType=kappa2", "usb://x",
        "net:192.0.2.10", "x/PDLType=fax", "ncap_usb_cdc://y/PDLType=nsuKAPPA2")


@pytest.mark.parametrize("uri", URIS)
def test_device_uris_have_the_parts_of_the_tool(uri):
    answer = ask_tool("uri", uri)
    assert vars(DeviceUri.parse(uri)) == {
        key: value for key, value in answer.items() if key not in ("schema_version", "verb")}


@pytest.mark.parametrize("suffix", ["", ".tar.gz"])
def test_a_snapshot_of_the_tool_has_the_options_of_its_printer(sample, suffix, tmp_path):
    path = tmp_path / f"printer{suffix}"
    run_tool("snapshot", path, "--queue", sample, "--cups-root", EXAMPLES / sample,
             "--device-info", documents_of(sample))
    snapshot = Snapshot.read(path)
    assert snapshot.queue == sample and snapshot.date and not snapshot.redacted
    with open_sample(sample) as analyzer:
        assert snapshot.model_code == analyzer.model_code
    assert snapshot.files == {
        f"ppd/{sample}.ppd": (EXAMPLES / sample / f"ppd/{sample}.ppd").read_bytes(),
        **{f"device-info/{path.name}": path.read_bytes()
           for path in documents_of(sample).iterdir()}}
