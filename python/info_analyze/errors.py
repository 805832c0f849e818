"""The exceptions of this package."""

from __future__ import annotations

from typing import ClassVar


class Error(Exception):
    """The base of all exceptions of this package: what failed, on which object, and why."""

    step: ClassVar[str] = ""
    """What failed: ``"communication library"``, ``"queue"``, ``"documents"``, ``"snapshot"``, ..."""

    object: str
    """The object on which it failed, such as ``'queue "office"'``."""

    cause: str
    """Why it failed."""

    def __init__(self, object: str, cause: str) -> None:
        super().__init__(object, cause)
        self.object = object
        self.cause = cause

    def __str__(self) -> str:
        return f"{self.object}: {self.cause}"


class CommunicationLibraryError(Error):
    """The communication library of a driver folder cannot be loaded."""

    step = "communication library"


class QueueError(Error):
    """A queue has no PPD of a driver that the library works with, or no queue is found."""

    step = "queue"


class DocumentsError(Error):
    """A query failed because device documents cannot be read."""

    step = "documents"


class DriverFolderError(Error):
    """A driver folder has no configuration of the printer daemon that can be read."""

    step = "driver folder"


class DeviceUriError(Error):
    """A text is not a device URI of the printer daemon."""

    step = "device URI"


class SnapshotError(Error):
    """A snapshot cannot be read, written or queried."""

    step = "snapshot"


class UseError(Error):
    """An object was used in a way that is never right."""

    step = "use"


class ClosedError(UseError):
    """An object was used after it was closed."""


class ThreadError(UseError):
    """An object was used in a thread that does not own it."""
