"""The model tables by which the library decides, and the inputs that each of their rows reads."""

from __future__ import annotations

from collections.abc import Iterator, Mapping
from dataclasses import dataclass
from functools import cache
from types import MappingProxyType

from . import _library as c
from ._provenance import Input, ModelRow, document_names, find_row, read_row, updates

MEDIA_TYPES = "(media types)"
"""The option of the table whose keywords the PPD names: ``QVCas1MediaType``, ..."""


__all__ = [
    "MEDIA_TYPES", "Input", "ModelRow", "ModelTable", "document_names", "model_tables",
    "rows_of_model"]


@dataclass(frozen=True)
class ModelTable:
    """The model table of an option."""

    option: str
    """Keyword of the option, or :data:`MEDIA_TYPES`."""

    rows: tuple[ModelRow, ...]
    """The rows in the order in which they are compared; the last is that of other models."""


def _option_of_family(family: int) -> str:
    for update in updates():
        for option in update.options:
            if option.family == family:
                return MEDIA_TYPES if option.keyword is None else c.decode(option.keyword)
    raise AssertionError(f"no option is of family {family}")


def _rows_of(family: int) -> Iterator[ModelRow]:
    number = 0
    while (found := read_row(family, number)) is not None:
        yield found.row
        number += 1
    others = read_row(family, c.OTHER_MODELS)
    assert others is not None
    yield others.row


@cache
def model_tables() -> tuple[ModelTable, ...]:
    """The model table of each option that depends on the model."""
    return tuple(ModelTable(_option_of_family(family), tuple(_rows_of(family)))
                 for family in range(c.FAMILY_COUNT))


def rows_of_model(model_code: str) -> Mapping[str, ModelRow]:
    """The row that a model code selects in each table, by the table's option."""
    code = c.encode(model_code)
    return MappingProxyType({_option_of_family(family): find_row(family, code).row
                             for family in range(c.FAMILY_COUNT)})
