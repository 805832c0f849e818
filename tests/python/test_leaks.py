"""No call leaves references, memory or descriptors, whether it succeeds or fails.

A debug build of Python counts all references, each build counts objects and descriptors, and the C
library counts its allocations. With PYTHONMALLOC=malloc those of Python are among them, and with
GLIBC_TUNABLES=glibc.malloc.tcache_count=0 released memory is not."""

import ctypes
import functools
import gc
import os
import shutil
import sys

import pytest

import info_analyze
from conftest import CUPS_ROOT, DRIVER, SUPPORT, add_ppd, documents_of, open_sample
from info_analyze import Analyzer, DeviceUri, Snapshot

ROUNDS = 40
# A leak in each round grows by the number of rounds; the smallest allocation has 32 bytes.
LIMITS = {"objects": ROUNDS / 2, "descriptors": ROUNDS / 2, "references": ROUNDS / 2,
          "bytes": 24 * ROUNDS}


class AllocationInfo(ctypes.Structure):
    _fields_ = [(name, ctypes.c_size_t) for name in (
        "arena", "ordblks", "smblks", "hblks", "hblkhd", "usmblks", "fsmblks", "uordblks",
        "fordblks", "keepcost")]


allocation_info = ctypes.CDLL(None).mallinfo2
allocation_info.restype = AllocationInfo


def allocated_bytes():
    info = allocation_info()
    return info.uordblks + info.hblkhd


def query():
    with open_sample("office-mfp") as analyzer:
        options = analyzer.query()
        analyzer.query(reload=True)
        analyzer.function_version(0x310)
        return options.reason("QVFinisher"), options.missing_documents, analyzer.model_code


def query_without_closing():
    open_sample("production-press").query()


def query_without_documents():
    with Analyzer(DRIVER, "office-mfp", documents_of("office-mfp").parent) as analyzer:
        analyzer.query()


@functools.cache
def documents_of_wrong_types():
    documents = CUPS_ROOT / "documents"
    shutil.copytree(documents_of("office-mfp"), documents, dirs_exist_ok=True)
    (documents / "Accessories.xml").write_text(
        '<document version="1"><binary key="hd">AAEC</binary><array key="memory"/></document>')
    (documents / "Finisher_list.xml").write_text(
        '<document version="1"><dict key="list"><long key="name">1</long><array key="func">'
        '<long>1</long><string>punch</string></array></dict></document>')
    return documents


def query_values_of_wrong_types():
    with Analyzer(DRIVER, "office-mfp", documents_of_wrong_types()) as analyzer:
        states = {value.state for keyword in ("QVHardDisk", "QVTotalMemSize", "QVFinisher")
                  for value in analyzer.query().reason(keyword).inputs}
    assert "wrong type" in states


def query_a_stub():
    with Analyzer(SUPPORT / "faulty/stub", "office-mfp", documents_of("office-mfp")) as analyzer:
        analyzer.query()


def calibrate():
    with Analyzer(DRIVER, "leaks") as analyzer:
        defaults = analyzer.calibration_defaults({"QVGradation": "High2"})
        analyzer.calibration_settings({"QVGradation": "High2", "QVColorMode": "mono"})
        return defaults.curves[3][256]


def read_a_changed_curve_table():
    info_analyze.calibration.CurveTable(None, bytes(16384)).values.tolist()


def take_a_snapshot():
    Snapshot.take("office-mfp", documents_of("office-mfp"))


def take_no_snapshot():
    Snapshot.take("none", documents_of("office-mfp"))


def open_no_library():
    Analyzer("/none", "office-mfp")


def open_a_foreign_library():
    Analyzer(SUPPORT / "foreign", "office-mfp")


def open_no_queue():
    Analyzer(DRIVER, "none")


def open_a_long_path():
    Analyzer("/" + "x" * 3000, "office-mfp")


def use_a_closed_analyser():
    analyzer = open_sample("office-mfp")
    analyzer.close()
    analyzer.query()


def parse_device_uris():
    for uri in ("net:192.0.2.10/PDLType=kappa2", "net:192.0.2.10", "none"):
        DeviceUri.parse(uri)


def list_queues():
    info_analyze.cups_queues()
    info_analyze.driver_folders()


def list_no_daemon_queues():
    info_analyze.daemon_queues(info_analyze.driver_folders()[0])


def find_no_daemon_queue():
    info_analyze.daemon_queue_of("net:192.0.2.10/PDLType=kappa2")


def read_models():
    info_analyze.model_tables.cache_clear()
    info_analyze.rows_of_model("RA-H5")
    info_analyze.model_tables()


SCENARIOS = [
    query, query_without_closing, query_without_documents,
    query_values_of_wrong_types, query_a_stub, calibrate,
    read_a_changed_curve_table, take_a_snapshot, take_no_snapshot, open_no_library,
    open_a_foreign_library, open_no_queue, open_a_long_path, use_a_closed_analyser,
    parse_device_uris, list_queues, list_no_daemon_queues, find_no_daemon_queue, read_models]


def run(scenario):
    try:
        scenario()
    except info_analyze.Error:
        pass


def counts():
    """What grows by a leak."""
    gc.collect()
    return {"objects": len(gc.get_objects()),
            "descriptors": len(os.listdir("/proc/self/fd")),
            "references": getattr(sys, "gettotalrefcount", lambda: 0)(),
            "bytes": allocated_bytes()}


def growth(scenario):
    before = counts()
    for _ in range(ROUNDS):
        run(scenario)
    after = counts()
    return {name: after[name] - before[name] for name in before}


@pytest.mark.parametrize("scenario", SCENARIOS, ids=lambda scenario: scenario.__name__)
def test_nothing_is_left(scenario):
    add_ppd("leaks", '*PPD-Adobe: "4.3"\n*QVAnlz_DriverName: "RB-J9"\n')
    growth(scenario)
    for _ in range(5):  # until the caches are full
        grown = growth(scenario)
        if all(value < LIMITS[name] for name, value in grown.items()):
            return
    pytest.fail(f"grown in {ROUNDS} rounds: {grown}")


@pytest.mark.parametrize("leak, name", [
    (lambda kept=[]: kept.append(object()), "references"),
    (lambda kept=[]: kept.append([]), "objects"),
    (lambda: os.dup(0), "descriptors"),
    (lambda: ctypes.CDLL(None).malloc(1), "bytes"),
], ids=["reference", "object", "descriptor", "allocation"])
def test_a_leak_would_be_noticed(leak, name):
    if name == "references" and not hasattr(sys, "gettotalrefcount"):
        pytest.skip("only a debug build of Python counts references")
    if name == "bytes" and allocated_bytes() == 0:
        pytest.skip("the sanitizer's allocator does not count")
    growth(leak)
    grown = growth(leak)
    assert grown[name] >= LIMITS[name]
