"""Snapshots: a printer's PPD and documents, saved by ``info-analyze snapshot`` or by this package."""

from __future__ import annotations

import gzip
import hashlib
import io
import json
import os
import pickle
import signal
import stat
import subprocess
import sys
import tarfile
import tempfile
import time
import zlib
from collections.abc import Mapping
from dataclasses import dataclass
from pathlib import Path
from types import MappingProxyType
from typing import Any

from . import _library as c
from ._library import library
from ._ppd import fetched_ppd
from ._provenance import document_names
from ._version import __version__
from .errors import DocumentsError, Error, SnapshotError
from .options import Options

_LIST = "snapshot.json"
_VERSION = 1  # of the list of files
_MAX_UNPACKED = 64 << 20
_MAX_FILES = 11  # the list, a PPD and nine documents


@dataclass(frozen=True)
class Snapshot:
    """A saved printer. It is a copy of all files, which any thread may use."""

    queue: str
    """Name of the queue."""

    date: str | None
    """When it was made, in UTC, such as ``"2026-11-22T17:39:09Z"``; older snapshots have no date."""

    device_uri: str | None
    """Device URI of the queue, if it is known."""

    model_code: str | None
    """Model code of the PPD."""

    redacted: bool
    """Whether names, addresses and serial numbers were replaced."""

    files: Mapping[str, bytes]
    """Contents by name: ``"ppd/QUEUE.ppd"``, ``"device-info/Finisher_list.xml"``, ..."""

    @classmethod
    def read(cls, path: str | os.PathLike[str]) -> Snapshot:
        """Reads a snapshot, a folder or an archive, and checks its files against its list.

        :raises SnapshotError: the snapshot cannot be read, or is damaged
        """
        name = f"snapshot {os.fspath(path)}"
        try:
            files = _read_folder(Path(path)) if os.path.isdir(path) else _read_archive(Path(path))
            return cls._of(files)
        except _Damage as damage:
            raise SnapshotError(name, str(damage)) from None
        except OSError as error:
            raise SnapshotError(name, error.strerror or str(error)) from error

    @classmethod
    def take(cls, queue: str, documents: str | os.PathLike[str]) -> Snapshot:
        """Takes a snapshot of a queue: its PPD, from CUPS, and its documents.

        Documents that cannot be read are left out.

        :raises QueueError: CUPS has no PPD of the queue
        :raises DocumentsError: no document can be read
        """
        files = {_ppd_name(queue): _fetch_ppd(queue)}
        for document in document_names():
            try:
                contents = _read_regular(Path(documents, document))
            except (OSError, _Damage):
                continue
            files[f"device-info/{document}"] = contents
        if len(files) == 1:
            raise DocumentsError(f"folder {os.fspath(documents)}", "it has no document to save")
        now = time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime())
        return cls(queue, now, None, _model_code(queue), False, MappingProxyType(files))

    def write(self, path: str | os.PathLike[str]) -> None:
        """Writes the snapshot into a new archive.

        :param path: path of the archive, ``*.tar.gz`` or ``*.tgz``
        :raises SnapshotError: the file exists, or cannot be written
        """
        name = f"snapshot {os.fspath(path)}"
        if not os.fspath(path).endswith((".tar.gz", ".tgz")):
            raise SnapshotError(name, "the name of an archive ends with .tar.gz or .tgz")
        archive = io.BytesIO()
        with tarfile.open(fileobj=archive, mode="w:gz", format=tarfile.GNU_FORMAT) as tar:
            for file, contents in sorted({**self.files, _LIST: self._list()}.items()):
                entry = tarfile.TarInfo(file)
                entry.size, entry.mode = len(contents), 0o600
                tar.addfile(entry, io.BytesIO(contents))
        try:
            with open(path, "xb", opener=_open_for_owner) as target:
                target.write(archive.getbuffer())
        except OSError as error:
            raise SnapshotError(name, error.strerror or str(error)) from error

    def query(self, driver_folder: str | os.PathLike[str]) -> Options:
        """Works out the options of the saved printer, as :meth:`Analyzer.query` does.

        The query runs in a process of its own, because libcups reads the PPD of a queue from one
        place for the whole process. If the communication library crashes, only that process ends.

        :param driver_folder: folder of the driver
        :raises CommunicationLibraryError: as for :class:`Analyzer`
        :raises QueueError: the saved PPD is not that of a driver
        :raises DocumentsError: as for :meth:`Analyzer.query`
        :raises SnapshotError: the process ended before it had an answer
        """
        with tempfile.TemporaryDirectory(prefix="info-analyze-") as folder:
            for name, contents in self.files.items():
                file = Path(folder, name)
                file.parent.mkdir(exist_ok=True)
                file.write_bytes(contents)
            return self._query_in_process(Path(folder), os.fspath(driver_folder))

    def _query_in_process(self, folder: Path, driver_folder: str) -> Options:
        package = str(Path(__file__).resolve().parent.parent)
        search_path = os.pathsep.join(filter(None, (package, os.environ.get("PYTHONPATH"))))
        done = subprocess.run(
            [sys.executable, "-P", "-m", "info_analyze._snapshot_process",
             driver_folder, self.queue, str(folder / "device-info")],
            env={**os.environ, "PYTHONPATH": search_path, "CUPS_SERVER": "localhost",
                 "CUPS_SERVERROOT": str(folder)},
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, check=False)
        if done.returncode != 0 or not done.stdout:
            raise SnapshotError(f'query of queue "{self.queue}"', _end_of(done.returncode))
        answer = pickle.loads(done.stdout)
        if isinstance(answer, Error):
            raise answer
        assert isinstance(answer, Options)
        return answer

    def _list(self) -> bytes:
        files = [{"name": name, "size": len(contents),
                  "sha256": hashlib.sha256(contents).hexdigest()}
                 for name, contents in sorted(self.files.items())]
        listed = {"snapshot_version": _VERSION, "date": self.date, "queue": self.queue,
                  "device_uri": self.device_uri, "model_code": self.model_code,
                  "tool_version": __version__, "library_version": None,
                  "redacted": self.redacted, "files": files}
        return (json.dumps(listed, indent=2) + "\n").encode("ascii")

    @classmethod
    def _of(cls, files: Mapping[str, bytes]) -> Snapshot:
        listed = _parse_list(files)
        queue = _text(listed, "queue")
        _check_queue(queue)
        checked = {}
        for entry in _entries(listed):
            name = _text(entry, "name")
            if name not in _expected_names(queue):
                raise _Damage(f"{_LIST}: names an unexpected file: {name}")
            if name not in files:
                raise _Damage(f"{name}: is missing")
            if hashlib.sha256(files[name]).hexdigest() != _text(entry, "sha256"):
                raise _Damage(f"{name}: is damaged, its checksum is different")
            checked[name] = files[name]
        if _ppd_name(queue) not in checked:
            raise _Damage("has no PPD")
        for name in files.keys() - checked.keys() - {_LIST}:
            raise _Damage(f"{name}: was added after the snapshot was made")
        return cls(queue, _optional_text(listed, "date"), _optional_text(listed, "device_uri"),
                   _optional_text(listed, "model_code"), listed.get("redacted") is True,
                   MappingProxyType(checked))


class _Damage(Exception):
    """Why a snapshot is refused."""


def _ppd_name(queue: str) -> str:
    return f"ppd/{queue}.ppd"


def _expected_names(queue: str) -> set[str]:
    return {_ppd_name(queue), *(f"device-info/{document}" for document in document_names())}


# Reading ------------------------------------------------------------------------------------------


def _read_regular(path: Path) -> bytes:
    with open(os.open(path, os.O_RDONLY | os.O_NONBLOCK | os.O_CLOEXEC), "rb") as file:
        status = os.fstat(file.fileno())
        if not stat.S_ISREG(status.st_mode):
            raise _Damage(f"{path.name}: not a regular file")
        if status.st_size > c.DOCUMENT_MAX_SIZE:
            raise _Damage(f"{path.name}: larger than 16 MiB")
        return file.read(status.st_size)


def _read_folder(folder: Path) -> dict[str, bytes]:
    files = {_LIST: _read_regular(folder / _LIST)}
    queue = _text(_parse_list(files), "queue")
    _check_queue(queue)
    for name in _expected_names(queue):
        if os.path.lexists(folder / name):
            files[name] = _read_regular(folder / name)
    return files


def _read_archive(path: Path) -> dict[str, bytes]:
    packed = _read_regular(path)
    try:
        with gzip.open(io.BytesIO(packed)) as file:
            unpacked = file.read(_MAX_UNPACKED + 1)
        if len(unpacked) > _MAX_UNPACKED:
            raise _Damage("contents: larger than 64 MiB")
        with tarfile.open(fileobj=io.BytesIO(unpacked), mode="r:") as archive:
            return _read_members(archive)
    except (EOFError, OSError, ValueError, tarfile.TarError, zlib.error) as error:
        raise _Damage(f"is no archive of a snapshot ({error})") from error


def _read_members(archive: tarfile.TarFile) -> dict[str, bytes]:
    files: dict[str, bytes] = {}
    for entry in archive:
        if entry.name in files:
            raise _Damage(f"{entry.name}: exists twice")
        if len(files) == _MAX_FILES:
            raise _Damage("has too many files")
        file = archive.extractfile(entry) if entry.isreg() and not entry.issparse() else None
        if file is None:
            raise _Damage(f"{entry.name}: not a regular file")
        files[entry.name] = file.read()
    return files


def _parse_list(files: Mapping[str, bytes]) -> dict[str, Any]:
    try:
        listed = json.loads(files[_LIST])
        version = listed["snapshot_version"]
    except KeyError:
        raise _Damage(f"{_LIST}: is missing, or is no list of a snapshot") from None
    except (RecursionError, TypeError, ValueError):
        raise _Damage(f"{_LIST}: is no list of a snapshot") from None
    if not isinstance(listed, dict) or type(version) is not int or version < 1:
        raise _Damage(f"{_LIST}: is no list of a snapshot")
    if version > _VERSION:
        raise _Damage(f"is of version {version}, and this package reads versions up to {_VERSION}")
    return listed


def _entries(listed: dict[str, Any]) -> list[dict[str, Any]]:
    entries = listed.get("files")
    if not isinstance(entries, list) or not all(isinstance(entry, dict) for entry in entries):
        raise _Damage(f'{_LIST}: "files" is missing')
    return entries


def _text(values: dict[str, Any], key: str) -> str:
    text = values.get(key)
    if not isinstance(text, str):
        raise _Damage(f'{_LIST}: "{key}" is missing')
    return text


def _optional_text(values: dict[str, Any], key: str) -> str | None:
    text = values.get(key)
    return text if isinstance(text, str) else None


def _check_queue(queue: str) -> None:
    """The name is part of a path."""
    if not queue or queue in (".", "..") or "/" in queue or not queue.isprintable():
        raise _Damage(f"{_LIST}: {queue!r} is no name of a queue")


# Taking -------------------------------------------------------------------------------------------


def _fetch_ppd(queue: str) -> bytes:
    with fetched_ppd(queue) as path:
        return Path(path).read_bytes()


def _model_code(queue: str) -> str | None:
    options = library.info_common_optlist_create(c.encode(queue))
    try:
        return c.take(library.info_common_optlist_getvalue(options, b"QVAnlz_DriverName"))
    finally:
        library.info_common_optlist_destroy(options)


def _open_for_owner(path: str, flags: int) -> int:
    return os.open(path, flags, 0o600)


def _end_of(status: int) -> str:
    if status < 0:
        return f"its process was ended by {signal.Signals(-status).name}"
    return f"its process ended with status {status}, and without an answer"
