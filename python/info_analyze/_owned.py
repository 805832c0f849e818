"""Objects of the library that one thread uses, and that are released once."""

from __future__ import annotations

import threading
import weakref
from collections.abc import Callable, Iterator
from contextlib import contextmanager
from types import TracebackType
from typing import TypeVar

from .errors import ClosedError, ThreadError, UseError

_Self = TypeVar("_Self", bound="Owned")

# Identifiers of threads are used again when a thread ends; an object of each thread's own is not.
_thread = threading.local()


def _token() -> object:
    try:
        token: object = _thread.token
    except AttributeError:
        token = _thread.token = object()
    return token


class Owned:
    """An object that belongs to the thread that made it, until it is closed or collected.

    Any thread may collect it: then nothing uses it. The end of the process does not release it,
    because a daemon thread may still be in a call.
    """

    def __init__(self, name: str, release: Callable[[], None]) -> None:
        self._name = name
        self._token = _token()
        self._owner = threading.current_thread().name
        self._is_busy = False
        self._finalizer = weakref.finalize(self, release)
        self._finalizer.atexit = False

    @property
    def closed(self) -> bool:
        """Whether :meth:`close` was called."""
        return not self._finalizer.alive

    def close(self) -> None:
        """Releases what the object holds; closing it again does nothing.

        Results that it has returned stay valid.

        :raises ThreadError: a thread calls that did not make the object
        :raises UseError: a call of the object is still running, and a signal handler closes it
        """
        self._check_thread()
        self._check_idle()
        self._finalizer()

    def __enter__(self: _Self) -> _Self:
        self._check()
        return self

    def __exit__(
        self,
        exception_type: type[BaseException] | None,
        exception: BaseException | None,
        traceback: TracebackType | None,
    ) -> None:
        self.close()

    def _check_thread(self) -> None:
        if self._token is not _token():
            user = threading.current_thread().name
            raise ThreadError(
                self._name, f"it belongs to the thread {self._owner}, and {user} uses it")

    def _check_idle(self) -> None:
        if self._is_busy:
            raise UseError(self._name, "a call of it is still running")

    def _check(self) -> None:
        self._check_thread()
        if self.closed:
            raise ClosedError(self._name, "it is closed")

    @contextmanager
    def _in_use(self) -> Iterator[None]:
        """Keeps signal handlers from using the object during the calls of a block."""
        self._check()
        self._check_idle()
        try:
            self._is_busy = True
            yield
        finally:
            self._is_busy = False
