"""Device URIs of the printer daemon, and what follows from them."""

from __future__ import annotations

from ctypes import byref, c_void_p
from dataclasses import dataclass

from . import _library as c
from ._library import library
from .errors import DeviceUriError

_PDL_TYPE = "/PDLType="


@dataclass(frozen=True)
class DeviceUri:
    """The parts of a device URI, and the folders, libraries and ports of its driver family.

    A part is None when it cannot be derived.
    """

    endpoint_family: str | None
    """Prefix that names the endpoint, such as ``"net:"``."""

    address: str | None
    """Address of the printer."""

    pdl_type: str | None
    """Key of the page description language."""

    driver_folder: str | None
    """Folder in which the driver family is installed."""

    cache_folder: str | None
    """Cache folder of the driver family."""

    endpoint_library: str | None
    """Path of the library that talks to the endpoint."""

    communication_library: str | None
    """Path of the communication library."""

    port: int | None
    """TCP port of the driver family."""

    data_port: int | None
    """TCP port of the driver family for data."""

    @classmethod
    def parse(cls, uri: str) -> DeviceUri:
        """Takes a device URI apart.

        :raises DeviceUriError: no part can be derived
        """
        folder = _derive("MqpdUriToFullPathOfDriverFolder", uri)
        before, mark, pdl_type = uri.partition(_PDL_TYPE)
        parsed = cls(
            _derive("MqpdUriToEndpointFamily", uri),
            _derive("MqpdUriToPrinterAddress", uri),
            pdl_type if mark else None,
            folder,
            _derive("MqpdUriToFullPathOfDriverCache", uri),
            _derive("MqpdUriToFullPathOfIOLib", uri),
            folder and _derive("FolderPathToFullPathOfMqpdUtil", folder),
            _port("FolderPathToPortNumber", folder),
            _port("FolderPathToDataPortNumber", folder))
        if parsed == cls(*[None] * 9):
            raise DeviceUriError(
                f"device URI {uri}", "it has neither a known endpoint nor a PDL type")
        return parsed


def _derive(function: str, source: str) -> str | None:
    text = c_void_p()
    status = getattr(library, function)(c.encode(source), byref(text))
    taken = c.take(text.value)  # a failed call may return one too
    return taken if status == 0 else None


def _port(function: str, folder: str | None) -> int | None:
    return folder and getattr(library, function)(c.encode(folder)) or None
