"""The options of a printer, and why each has its value."""

from __future__ import annotations

from collections.abc import Iterator, Mapping
from dataclasses import dataclass
from typing import Literal, Union

from ._provenance import ModelRow

Value = Union[int, str, tuple[Union[int, str, None], ...], None]
"""A value as a device document or the PPD has it; an element of a wrong type is None."""


@dataclass(frozen=True)
class RawValue:
    """A value that an option depends on, as the device reports it or the PPD has it."""

    document: str | None
    """File name of the document; None: the PPD."""

    item: int | None
    """Item of the document's list, from 0; None: the value is not in the list."""

    key: str
    """Key in the document, or keyword of the PPD."""

    state: Literal["present", "missing", "wrong type", "no document"]
    """Whether the value was read, and if not, why."""

    value: Value
    """The value; None unless it is present."""


@dataclass(frozen=True)
class Reason:
    """Why an option has its value."""

    keyword: str
    """Keyword of the PPD."""

    value: str
    """Value of the option."""

    origin: Literal["device", "ppd", "default"]
    """Whether the device reports the value or what it follows from; else whether the PPD's list of
    values gives it, or nothing does and it is the default."""

    default: str
    """The value that the option has when no rule sets it."""

    update: str
    """Name of the update handler that set the option."""

    model: ModelRow | None
    """The row of the model tables that applied; None when the option does not depend on the model."""

    inputs: tuple[RawValue, ...]
    """All values that the option depends on."""


class Options(Mapping[str, str]):
    """The options of a printer: keywords and values, in the order of the query.

    They are a copy, which stays valid after the analyser is closed, in every thread.
    """

    def __init__(
        self,
        reasons: tuple[Reason, ...],
        model_code: str | None,
        missing_documents: Mapping[str, str],
    ) -> None:
        self._reasons = {reason.keyword: reason for reason in reasons}
        self._model_code = model_code
        self._missing_documents = dict(missing_documents)

    def __getitem__(self, keyword: str) -> str:
        return self._reasons[keyword].value

    def __iter__(self) -> Iterator[str]:
        return iter(self._reasons)

    def __len__(self) -> int:
        return len(self._reasons)

    def __repr__(self) -> str:
        return f"Options({dict(self)!r})"

    @property
    def model_code(self) -> str | None:
        """Model code of the PPD; None when it has none."""
        return self._model_code

    @property
    def missing_documents(self) -> Mapping[str, str]:
        """Documents that could not be read, by file name, and why. The options that depend on them
        are absent or have their defaults."""
        return dict(self._missing_documents)

    def reason(self, keyword: str) -> Reason:
        """Why an option has its value.

        :raises KeyError: the printer does not have the option
        """
        return self._reasons[keyword]
