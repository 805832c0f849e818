"""What fails raises an exception with step, object and cause."""

import os
import pickle
import shutil

import pytest

import info_analyze
from conftest import DRIVER, SUPPORT, add_ppd, documents_of, open_sample
from info_analyze import (
    Analyzer, CommunicationLibraryError, DeviceUri, DeviceUriError, DocumentsError,
    DriverFolderError, Error, QueueError)


def raised(error_type, call):
    with pytest.raises(error_type) as info:
        call()
    error = info.value
    assert isinstance(error, Error)
    assert str(error) == f"{error.object}: {error.cause}"
    copy = pickle.loads(pickle.dumps(error))
    assert (type(copy), copy.object, copy.cause) == (error_type, error.object, error.cause)
    return error


def test_a_driver_folder_without_communication_library():
    error = raised(CommunicationLibraryError, lambda: Analyzer("/none", "office-mfp"))
    assert error.step == "communication library"
    assert error.object == "communication library /none/Bidi/libmqpd_util.so"
    assert error.cause == "cannot open shared object file: No such file or directory"


@pytest.mark.parametrize("folder", ["foreign", "lacking/qvxmlwrapGet_New"])
def test_a_communication_library_without_all_entry_points(folder):
    raised(CommunicationLibraryError, lambda: Analyzer("/none", "office-mfp"))
    error = raised(CommunicationLibraryError, lambda: Analyzer(SUPPORT / folder, "office-mfp"))
    assert error.cause == "it does not have all entry points"


def test_a_communication_library_that_is_a_fifo(tmp_path):
    (tmp_path / "Bidi").mkdir()
    os.mkfifo(tmp_path / "Bidi/libmqpd_util.so")
    error = raised(CommunicationLibraryError, lambda: Analyzer(tmp_path, "office-mfp"))
    assert error.cause == "not a regular file"


def test_a_driver_folder_with_a_long_path():
    error = raised(CommunicationLibraryError, lambda: Analyzer("/" + "x" * 3000, "office-mfp"))
    assert error.cause == "File name too long"


def test_a_queue_that_cups_does_not_have():
    error = raised(QueueError, lambda: Analyzer(DRIVER, "none"))
    assert error.step == "queue"
    assert error.object == 'PPD of queue "none"'
    assert error.cause == "CUPS has no PPD of this queue, or does not answer"


def test_a_ppd_that_is_not_of_a_driver():
    add_ppd("foreign", '*PPD-Adobe: "4.3"\n*ModelName: "Foreign"\n')
    error = raised(QueueError, lambda: Analyzer(DRIVER, "foreign"))
    assert error.cause == 'it has no option lines of a driver ("*QV")'


def test_a_folder_without_documents(tmp_path):
    with Analyzer(DRIVER, "office-mfp", tmp_path) as analyzer:
        error = raised(DocumentsError, analyzer.query)
    assert error.step == "documents"
    assert error.object == 'query of queue "office-mfp"'
    assert error.cause.startswith(
        "9 of 9 documents cannot be read: Accessories.xml: No such file or directory; ")


def test_no_document_directory():
    with Analyzer(DRIVER, "office-mfp") as analyzer:
        error = raised(DocumentsError, analyzer.query)
    assert error.cause == "the analyser was made without a document directory"


def test_some_missing_documents_are_reported_with_the_options(tmp_path):
    shutil.copytree(documents_of("office-mfp"), tmp_path, dirs_exist_ok=True)
    (tmp_path / "Finisher_list.xml").unlink()
    (tmp_path / "Bin_list.xml").write_text("no document")
    (tmp_path / "Specid.xml").unlink()
    (tmp_path / "Specid.xml").mkdir()
    with open(tmp_path / "Functions.xml", "wb") as large:
        large.truncate((16 << 20) + 1)
    with Analyzer(DRIVER, "office-mfp", tmp_path) as analyzer:
        options = analyzer.query()
    assert options.missing_documents == {
        "Functions.xml": "larger than 16 MiB",
        "Specid.xml": "not a regular file",
        "Finisher_list.xml": "No such file or directory",
        "Bin_list.xml": "not a document that the communication library reads"}
    assert options["QVHardDisk"] == "True"
    assert "QVDupUnit" not in options


def test_documents_are_read_again_on_request(tmp_path):
    shutil.copytree(documents_of("office-mfp"), tmp_path, dirs_exist_ok=True)
    with Analyzer(DRIVER, "office-mfp", tmp_path) as analyzer:
        assert analyzer.query()["QVHardDisk"] == "True"
        (tmp_path / "Accessories.xml").write_text('<document version="1"/>')
        assert analyzer.query()["QVHardDisk"] == "True"
        assert analyzer.query(reload=True)["QVHardDisk"] == "False"


def test_a_text_that_is_no_device_uri():
    error = raised(DeviceUriError, lambda: DeviceUri.parse("none"))
    assert (error.step, error.object) == ("device URI", "device URI none")


def test_a_driver_folder_without_daemon():
    error = raised(DriverFolderError, lambda: info_analyze.daemon_queues("/none"))
    assert (error.step, error.object) == ("driver folder", "driver folder /none")


@pytest.mark.parametrize("call", [
    lambda text: Analyzer(text, "office-mfp"),
    lambda text: Analyzer(DRIVER, text),
    lambda text: Analyzer(DRIVER, "office-mfp", text),
    lambda text: DeviceUri.parse(text),
    lambda text: info_analyze.rows_of_model(text),
])
def test_a_null_character_is_refused(call):
    with pytest.raises(ValueError, match="embedded null character"):
        call("office\0mfp")


def test_a_function_version_has_32_bits():
    with open_sample("office-mfp") as analyzer:
        for version in (-1, 1 << 32):
            with pytest.raises(ValueError):
                analyzer.function_version(version)


def test_an_option_that_the_printer_does_not_have():
    with open_sample("office-mfp") as analyzer:
        options = analyzer.query()
    assert "QVNone" not in options and options.get("QVNone") is None
    with pytest.raises(KeyError):
        options.reason("QVNone")


def test_texts_that_are_not_utf_8_are_kept():
    ppd = b'*PPD-Adobe: "4.3"\n*QVAnlz_DriverName: "RA-\xe9"\n'
    add_ppd("latin", "").write_bytes(ppd)
    with Analyzer(DRIVER, "latin") as analyzer:
        assert analyzer.model_code == "RA-\udce9"
        assert info_analyze.rows_of_model(analyzer.model_code)["QVFinisher"].code is None
