"""The analyser of a print queue."""

from __future__ import annotations

import ctypes
import errno
import os
import stat
from collections.abc import Mapping
from ctypes import byref, c_void_p
from functools import partial
from types import MappingProxyType
from typing import Any

from . import _library as c
from ._library import library
from ._owned import Owned
from ._ppd import fetched_ppd, ppd_of
from ._provenance import document_names
from ._reasons import find_reasons
from .calibration import (
    CalibrationDefaults, CalibrationSettings, read_defaults, read_settings)
from .errors import CommunicationLibraryError, DocumentsError, Error, QueueError
from .options import Options

Path = str | os.PathLike[str]
"""A path, as text or as an object of pathlib."""


class Analyzer(Owned):
    """Works out the PPD options of a queue's printer.

    The analyser reads the queue's PPD and loads the communication library of the driver when it is
    made. It belongs to the thread that made it. Use it in a ``with`` block, or close it.

    :param driver_folder: folder of the driver; its communication library is
        ``Bidi/libmqpd_util.so``
    :param queue: name of a CUPS queue
    :param documents: document directory, which :meth:`query` needs
    :raises CommunicationLibraryError: the communication library cannot be loaded
    :raises QueueError: the queue's PPD cannot be read, or is not that of a driver
    """

    def __init__(self, driver_folder: Path, queue: str, documents: Path | None = None) -> None:
        name = c.encode(queue)
        # The library keeps a pointer to this text.
        folder = None if documents is None else ctypes.create_string_buffer(c.encode(documents))
        bidi = _load_communication_library(driver_folder)
        context = library.Analyze_Create(bidi, name, folder)
        if not context:
            library.Bidi_Destroy(bidi)
            with fetched_ppd(queue):  # which raises when there is none
                raise QueueError(ppd_of(queue), 'it has no option lines of a driver ("*QV")')
        self._queue = queue
        self._documents = None if documents is None else os.fspath(documents)
        self._context = context
        super().__init__(f'analyser of queue "{queue}"', partial(_release, context, bidi, folder))

    @property
    def queue(self) -> str:
        """Name of the queue."""
        return self._queue

    @property
    def model_code(self) -> str | None:
        """Model code of the PPD, by which the library decides; None when the PPD has none."""
        with self._in_use():
            return c.decode_optional(self._context.contents.driver_name)

    def query(self, *, reload: bool = False) -> Options:
        """Works out the options from the PPD and the documents that the device reports.

        If a signal handler raises an exception meanwhile, such as KeyboardInterrupt, the analyser is
        closed.

        :param reload: read the documents again; else those that an earlier query has read are kept
        :raises DocumentsError: no document can be read, or the query failed without one
        """
        with self._in_use():
            try:
                return self._query(reload)
            except Error:
                raise
            except BaseException:
                self._finalizer()  # a document may be in the middle of a list
                raise

    def function_version(self, version: int) -> Mapping[str, str]:
        """The protocol and script flags that a version of the driver's functions selects.

        :param version: version, such as ``0x310``
        """
        if not 0 <= version <= 0xFFFFFFFF:
            raise ValueError("a function version has 32 bits")
        with self._in_use(), c.option_list() as head:
            if library.Analyze_Info_FromFunctionVersion(self._context, version, head) != 0:
                raise MemoryError
            return MappingProxyType(
                {c.decode(key): c.decode(value) for key, value in c.appended(head)})

    def calibration_settings(self, job: Mapping[str, str] | None = None) -> CalibrationSettings:
        """The calibration settings of a print job.

        :param job: print options of the job, which win over the defaults of the PPD
        """
        with self._in_use():
            return read_settings(self._context, job or {})

    def calibration_defaults(self, job: Mapping[str, str] | None = None) -> CalibrationDefaults:
        """The calibration data that the model uses while it has not been calibrated.

        :param job: print options of the job, which win over the defaults of the PPD
        """
        with self._in_use():
            return read_defaults(self._context, job or {})

    def _query(self, reload: bool) -> Options:
        with c.option_list() as head:
            status = library.Analyze_Info_FromPrinter(self._context, head, reload)
            missing = self._find_missing_documents()
            if status != 0 or len(missing) == c.DOCUMENT_COUNT:
                raise DocumentsError(f'query of queue "{self._queue}"', self._explain(missing))
            reasons = find_reasons(self._context, dict(c.appended(head)))
        return Options(reasons, c.decode_optional(self._context.contents.driver_name), missing)

    def _find_missing_documents(self) -> dict[str, str]:
        documents = self._context.contents.documents
        return {name: self._find_document_fault(name)
                for document, name in zip(documents, document_names()) if document.xml is None}

    def _find_document_fault(self, name: str) -> str:
        """The library reports only that a document is missing, so its file is checked again."""
        if self._documents is None:
            return "no folder"
        path = os.path.join(self._documents, name)
        if len(os.fsencode(path)) > c.DOCUMENT_MAX_PATH_LENGTH:
            return os.strerror(errno.ENAMETOOLONG)
        try:
            descriptor = os.open(path, os.O_RDONLY | os.O_NONBLOCK | os.O_CLOEXEC)
        except OSError as error:
            return error.strerror or str(error)
        try:
            status = os.fstat(descriptor)
        finally:
            os.close(descriptor)
        if not stat.S_ISREG(status.st_mode):
            return "not a regular file"
        if status.st_size > c.DOCUMENT_MAX_SIZE:
            return "larger than 16 MiB"
        return "not a document that the communication library reads"

    def _explain(self, missing: dict[str, str]) -> str:
        if self._documents is None:
            return "the analyser was made without a document directory"
        if not missing:
            return "the communication library returned no values"
        faults = "; ".join(f"{name}: {fault}" for name, fault in missing.items())
        return f"{len(missing)} of {c.DOCUMENT_COUNT} documents cannot be read: {faults}"


def _release(context: Any, bidi: int, folder: ctypes.Array[ctypes.c_char] | None) -> None:
    library.Analyze_Destroy(context)
    library.Bidi_Destroy(bidi)
    del folder  # had to stay until now


def _load_communication_library(driver_folder: Path) -> int:
    folder = c.encode(driver_folder)
    path_ = c_void_p()
    library.FolderPathToFullPathOfMqpdUtil(folder, byref(path_))
    path = c.take(path_.value)
    if path is None:
        raise CommunicationLibraryError(
            f"driver folder {os.fspath(driver_folder)}", os.strerror(errno.ENAMETOOLONG))
    name = f"communication library {path}"
    # Loading a FIFO would wait for its writer.
    if os.path.exists(path) and not os.path.isfile(path):
        raise CommunicationLibraryError(name, "not a regular file")
    c.libc.dlerror()  # an older error is not the reason
    bidi = library.Bidi_Create(folder)
    if bidi is None:
        reason = c.decode_optional(c.libc.dlerror()) or "it does not have all entry points"
        raise CommunicationLibraryError(name, reason.removeprefix(f"{path}: "))
    return int(bidi)

