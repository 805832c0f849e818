"""Snapshots: read, checked, written and queried."""

import gzip
import io
import json
import os
import tarfile

import pytest
from hypothesis import given, settings
from hypothesis import strategies as st

from conftest import DRIVER, EXAMPLES, SUPPORT, add_ppd, documents_of, open_sample, run_tool
from info_analyze import (
    CommunicationLibraryError, DocumentsError, QueueError, Snapshot, SnapshotError)


@pytest.fixture
def snapshot():
    return Snapshot.take("office-mfp", documents_of("office-mfp"))


def pack(files, **changes):
    """An archive of files; a change is made to each entry."""
    packed = io.BytesIO()
    with tarfile.open(fileobj=packed, mode="w:gz") as archive:
        for name, contents in files:
            entry = tarfile.TarInfo(name)
            entry.size = len(contents)
            for key, value in changes.items():
                setattr(entry, key, value)
            archive.addfile(entry, io.BytesIO(contents))
    return packed.getvalue()


def files_of(snapshot, **members):
    """The files of a snapshot, with changed members of its list."""
    listed = {**json.loads(snapshot._list()), **members}
    return [*snapshot.files.items(), ("snapshot.json", json.dumps(listed).encode())]


def cause_of(path, archive=None):
    if archive is not None:
        path.write_bytes(archive)
    with pytest.raises(SnapshotError) as info:
        Snapshot.read(path)
    assert (info.value.step, info.value.object) == ("snapshot", f"snapshot {path}")
    return info.value.cause


def test_a_query_returns_the_options_of_the_printer(sample):
    with open_sample(sample) as analyzer:
        options = analyzer.query()
    answer = Snapshot.take(sample, documents_of(sample)).query(DRIVER)
    assert answer == options
    assert [answer.reason(keyword) for keyword in answer] == [
        options.reason(keyword) for keyword in options]


def test_the_tool_queries_what_was_written(snapshot, tmp_path):
    path = tmp_path / "office.tar.gz"
    snapshot.write(path)
    assert path.stat().st_mode & 0o777 == 0o600
    assert Snapshot.read(path) == snapshot
    text = run_tool("query", "--snapshot", path, "--driver-folder", DRIVER)
    assert text == (EXAMPLES / "office-mfp/expected-options.txt").read_text()


def test_a_file_is_never_replaced(snapshot, tmp_path):
    path = tmp_path / "office.tgz"
    snapshot.write(path)
    before = path.read_bytes()
    with pytest.raises(SnapshotError, match="File exists"):
        snapshot.write(path)
    assert path.read_bytes() == before
    with pytest.raises(SnapshotError, match=r"ends with \.tar\.gz or \.tgz"):
        snapshot.write(tmp_path / "office")


def test_errors_of_a_query_are_those_of_an_analyser(snapshot):
    with pytest.raises(CommunicationLibraryError, match="No such file"):
        snapshot.query("/none")
    with pytest.raises(DocumentsError, match="^query of queue \"office-mfp\": 9 of 9"):
        snapshot.query(SUPPORT / "faulty/stub")


@pytest.mark.parametrize("folder, cause", [
    ("crash_when_called", "its process was ended by SIGSEGV"),
    ("exit_when_loaded", "its process ended with status 0, and without an answer"),
])
def test_a_communication_library_that_ends_its_process(snapshot, folder, cause):
    with pytest.raises(SnapshotError) as info:
        snapshot.query(SUPPORT / "faulty" / folder)
    assert info.value.object == 'query of queue "office-mfp"'
    assert info.value.cause == cause


def test_documents_that_cannot_be_read_are_left_out(tmp_path):
    for name in ("Accessories.xml", "Devicename.xml"):
        (tmp_path / name).write_bytes((documents_of("office-mfp") / name).read_bytes())
    os.mkfifo(tmp_path / "Specid.xml")
    snapshot = Snapshot.take("office-mfp", tmp_path)
    assert set(snapshot.files) == {"ppd/office-mfp.ppd", "device-info/Accessories.xml",
                                   "device-info/Devicename.xml"}
    assert len(snapshot.query(DRIVER).missing_documents) == 7
    with pytest.raises(DocumentsError, match="no document to save"):
        Snapshot.take("office-mfp", tmp_path / "none")
    with pytest.raises(QueueError):
        Snapshot.take("none", tmp_path)


def test_a_ppd_without_model_code(tmp_path):
    add_ppd("no-model", '*PPD-Adobe: "4.3"\n*QVHardDisk: "False"\n')
    assert Snapshot.take("no-model", documents_of("office-mfp")).model_code is None


def test_a_damaged_snapshot_is_refused(snapshot, tmp_path):
    path = tmp_path / "x.tar.gz"
    whole = files_of(snapshot)
    assert cause_of(tmp_path / "none") == "No such file or directory"
    assert cause_of(path, pack(whole[:-1])).startswith("snapshot.json: is missing")
    assert cause_of(path, pack(whole[1:])) == "ppd/office-mfp.ppd: is missing"
    changed = [(name, contents + b"x" if "Tray" in name else contents) for name, contents in whole]
    assert cause_of(path, pack(changed)) == (
        "device-info/Tray_list.xml: is damaged, its checksum is different")
    more = [*whole[2:], ("extra", b""), whole[0], whole[1]]
    assert cause_of(path, pack(more)) == "has too many files"
    fewer = files_of(snapshot, files=json.loads(snapshot._list())["files"][1:])
    assert "was added after the snapshot was made" in cause_of(path, pack(fewer))
    assert cause_of(path, pack([whole[0], whole[0]])) == "ppd/office-mfp.ppd: exists twice"
    assert cause_of(path, pack(whole, type=tarfile.SYMTYPE, linkname="/etc/passwd")).endswith(
        ": not a regular file")
    assert cause_of(path, pack(files_of(snapshot, snapshot_version=2))) == (
        "is of version 2, and this package reads versions up to 1")
    no_ppd = [entry for entry in json.loads(snapshot._list())["files"] if "ppd" not in entry["name"]]
    assert cause_of(path, pack(files_of(snapshot, files=no_ppd)[1:])) == "has no PPD"


@pytest.mark.parametrize("member, value, cause", [
    ("queue", "../office", "'../office' is no name of a queue"),
    ("queue", None, '"queue" is missing'),
    ("files", None, '"files" is missing'),
    ("files", [{"name": "/etc/passwd", "sha256": ""}], "names an unexpected file: /etc/passwd"),
    ("snapshot_version", "1", "is no list of a snapshot"),
    ("snapshot_version", True, "is no list of a snapshot"),
])
def test_a_list_that_names_something_else_is_refused(snapshot, tmp_path, member, value, cause):
    archive = pack(files_of(snapshot, **{member: value}))
    assert cause_of(tmp_path / "x.tgz", archive) == f"snapshot.json: {cause}"


def test_a_large_archive_is_refused(tmp_path):
    path = tmp_path / "x.tar.gz"
    assert cause_of(path, gzip.compress(bytes(65 << 20))) == "contents: larger than 64 MiB"
    with open(path, "wb") as large:
        large.truncate((16 << 20) + 1)
    assert cause_of(path) == "x.tar.gz: larger than 16 MiB"


def test_a_folder_of_a_snapshot_is_checked(snapshot, tmp_path):
    for name, contents in files_of(snapshot):
        (tmp_path / name).parent.mkdir(exist_ok=True)
        (tmp_path / name).write_bytes(contents)
    assert Snapshot.read(tmp_path) == snapshot
    (tmp_path / "device-info/Tray_list.xml").unlink()
    os.mkfifo(tmp_path / "device-info/Tray_list.xml")
    assert cause_of(tmp_path) == "Tray_list.xml: not a regular file"


@settings(max_examples=150)
@given(data=st.data())
def test_a_hostile_archive_is_read_or_refused(data, tmp_path_factory):
    """Bytes of the tar archive are changed, or all of them are random."""
    snapshot = Snapshot.take("office-mfp", documents_of("office-mfp"))
    tar = bytearray(gzip.decompress(pack(files_of(snapshot))))
    if data.draw(st.booleans()):
        for _ in range(data.draw(st.integers(1, 8))):
            tar[data.draw(st.integers(0, len(tar) - 1))] = data.draw(st.integers(0, 255))
    else:
        tar = bytearray(data.draw(st.binary(max_size=2048)))
    packed = bytearray(gzip.compress(tar, 1))
    if data.draw(st.booleans()):
        del packed[data.draw(st.integers(0, len(packed))):]
    path = tmp_path_factory.getbasetemp() / "hostile.tar.gz"
    path.write_bytes(packed)
    try:
        assert Snapshot.read(path).files["ppd/office-mfp.ppd"] == snapshot.files["ppd/office-mfp.ppd"]
    except SnapshotError as error:
        assert error.cause
