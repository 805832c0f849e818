"""The print queues of CUPS on this machine and of the printer daemon."""

from __future__ import annotations

import os
from collections.abc import Iterator
from contextlib import contextmanager
from ctypes import byref, c_int32, c_void_p
from dataclasses import dataclass
from datetime import datetime, timezone

from . import _library as c
from ._library import library
from .errors import DeviceUriError, DriverFolderError, QueueError


@dataclass(frozen=True)
class Queue:
    """A queue of CUPS that has a PPD."""

    name: str
    """Name of the queue."""

    modified: datetime | None
    """When its PPD was modified, in UTC; None when this is not known."""


@dataclass(frozen=True)
class Device:
    """The device of a queue of the printer daemon."""

    address: str | None
    """Address of the printer; None when the queue has no complete device URI."""

    endpoint_family: str | None
    """Prefix of the device URI, such as ``"net:"``; None when the queue has no device URI."""


def cups_queues() -> tuple[Queue, ...]:
    """The queues that have a PPD in ``/etc/cups/ppd``, by name; none when the folder cannot be
    read."""
    count = c_int32()
    queues = library.CupsQueueList_Initialize(byref(count))
    if queues is None:
        raise MemoryError
    try:
        found = [Queue(c.decode(library.CupsQueueList_GetQueueName(queues, index)),
                       _time(library.CupsQueueList_GetQueueModifyTimeStamp(queues, index)))
                 for index in range(count.value)]
    finally:
        library.CupsQueueList_Terminate(queues)
    return tuple(sorted(found, key=lambda queue: queue.name))


def _time(seconds: int) -> datetime | None:
    return datetime.fromtimestamp(seconds, timezone.utc) if seconds else None


def driver_folders() -> tuple[str, ...]:
    """The folders in which the driver families are installed."""
    folders: list[str] = []
    while (folder := library.DriverFamily_GetFolderPath(len(folders))) is not None:
        folders.append(c.decode(folder))
    return tuple(folders)


def daemon_queues(driver_folder: str | os.PathLike[str]) -> tuple[str, ...]:
    """The names of the printer daemon's queues, in the order of its configuration.

    :param driver_folder: folder in which a driver family is installed, one of
        :func:`driver_folders`
    :raises DriverFolderError: the family has no configuration, or it cannot be read
    """
    count = c_int32()
    with _configuration(driver_folder) as configuration:
        queues = library.MqpdQueueList_Initialize(configuration, byref(count))
        if queues is None:
            raise MemoryError
        try:
            return tuple(c.decode(library.CupsQueueList_GetQueueName(queues, index))
                         for index in range(count.value))
        finally:
            library.MqpdQueueList_Terminate(queues)


def daemon_device(driver_folder: str | os.PathLike[str], queue: str) -> Device:
    """The device of a queue of the printer daemon.

    :param driver_folder: as for :func:`daemon_queues`
    :param queue: name of the queue
    :raises DriverFolderError: as for :func:`daemon_queues`
    :raises QueueError: the configuration does not have the queue, or has a device URI for it with
        an unknown prefix
    """
    address, family = c_void_p(), c_void_p()
    with _configuration(driver_folder) as configuration:
        found = library.FolderPathForConf_GetAddressAndProtocol(
            configuration, c.encode(queue), byref(address), byref(family))
    device = Device(c.take(address.value), c.take(family.value))
    if not found:
        raise QueueError(f'queue "{queue}"',
                         f"the configuration of {os.fspath(driver_folder)} has no device for it")
    return device


def daemon_queue_of(device_uri: str) -> str:
    """The name of the printer daemon's queue that serves a device.

    :raises DeviceUriError: no queue serves it, or its driver family has no configuration
    """
    name_ = c_void_p()
    status = library.MqpdUriToQueueName(c.encode(device_uri), byref(name_))
    name = c.take(name_.value)
    if status == 0 and name is not None:
        return name
    cache = c_void_p()
    library.MqpdUriToFullPathOfDriverCache(c.encode(device_uri), byref(cache))
    raise DeviceUriError(f"device URI {device_uri}", _explain(
        c.take(cache.value), "no queue serves it" if status < 0 else "it cannot be read"))


@contextmanager
def _configuration(driver_folder: str | os.PathLike[str]) -> Iterator[int]:
    folder = c.encode(driver_folder)
    configuration = library.FolderPathForConf_Initialize(folder)
    if configuration is None:
        cache = c_void_p()
        library.FolderPathToDriverCache(folder, byref(cache))
        raise DriverFolderError(f"driver folder {os.fspath(driver_folder)}",
                                _explain(c.take(cache.value), "it cannot be read"))
    try:
        yield int(configuration)
    finally:
        library.FolderPathForConf_Terminate(configuration)


def _explain(cache_folder: str | None, otherwise: str) -> str:
    """The library reports only that it has no answer, so its file is checked again."""
    if cache_folder is None:
        return "it belongs to no driver family that has a configuration"
    path = f"{cache_folder}/MQPD/mqpd.conf"
    try:
        with open(path, "rb"):
            return f"{path}: {otherwise}"
    except OSError as error:
        return f"{path}: {error.strerror}"
