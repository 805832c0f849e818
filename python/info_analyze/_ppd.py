"""The PPD of a queue, as CUPS has it."""

from __future__ import annotations

import ctypes
import errno
import os
from collections.abc import Iterator
from contextlib import contextmanager
from ctypes import byref, c_void_p

from . import _library as c
from ._library import library
from .errors import QueueError


def ppd_of(queue: str) -> str:
    """What messages call the PPD of a queue."""
    return f'PPD of queue "{queue}"'


@contextmanager
def fetched_ppd(queue: str) -> Iterator[str]:
    """Fetches the PPD of a queue into a temporary file, which is deleted at the end.

    :raises QueueError: there is none
    """
    copy = c_void_p()
    file = library.wrapCupsFileOpen2(c.encode(queue), b"r", byref(copy))
    number = ctypes.get_errno()
    path = c.take(copy.value)
    if file is None or path is None:
        # Without an answer of a server, libcups leaves a number that says nothing.
        reason = "" if number in (0, errno.EBADF) else f" ({os.strerror(number)})"
        raise QueueError(
            ppd_of(queue), f"CUPS has no PPD of this queue, or does not answer{reason}")
    try:
        yield path
    finally:
        library.wrapCupsFileClose2(file, c.encode(path))
