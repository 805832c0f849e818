"""The library's tables of update handlers, inputs and models."""

from __future__ import annotations

import ctypes
from collections.abc import Iterator
from dataclasses import dataclass
from functools import cache, cached_property
from typing import Literal

from . import _library as c
from ._library import library


@dataclass(frozen=True)
class Input:
    """A value of a device document, or a text of the PPD, that an option depends on."""

    document: str | None
    """File name of the document; None: the PPD."""

    in_list: bool
    """Whether each item of the document's list has the key."""

    key: str
    """Key in the document, or keyword of the PPD; ``"list"``: the number of items."""


@dataclass(frozen=True)
class ModelRow:
    """A row of a model table: which function decides an option for some model codes."""

    code: str | None
    """The model code, or its prefix; None: all models without a row of their own."""

    match: Literal["prefix", "whole", "other models"]
    """How a model code is compared with the row."""

    handler: str | None
    """Name of the function that decides; None: the option keeps its default."""

    inputs: tuple[Input, ...]
    """What the function reads."""


@dataclass(frozen=True)
class Source:
    """An input with what its reader needs."""

    number: int
    document: int
    type: int
    key: bytes
    input: Input


@dataclass(frozen=True)
class Option:
    """An option that an update handler sets."""

    keyword: bytes | None
    default: str
    family: int
    value_input: int
    inputs: tuple[int, ...]


@dataclass(frozen=True)
class Update:
    """An update handler of the query."""

    number: int
    name: str
    options: tuple[Option, ...]

    @cached_property
    def _named(self) -> dict[bytes | None, Option]:
        return {option.keyword and option.keyword.lower(): option for option in self.options}

    def option(self, keyword: bytes) -> Option:
        """The record of a keyword in lower case; media types have one together."""
        return self._named.get(keyword) or self._named[None]


@cache
def document_names() -> tuple[str, ...]:
    """The file names of the nine device documents."""
    return tuple(
        c.decode(library.Analyze_Provenance_GetDocumentName(number))
        for number in range(c.DOCUMENT_COUNT))


@cache
def sources() -> tuple[Source, ...]:
    """All inputs, by number."""
    found: list[Source] = []
    key = c.InputKey()
    while library.Analyze_Provenance_GetInput(len(found), ctypes.byref(key), ctypes.sizeof(key)):
        of_ppd = key.document == c.INPUT_OF_PPD
        document = None if of_ppd else document_names()[key.document]
        found.append(Source(len(found), key.document, key.type, key.key,
                            Input(document, key.in_list != 0, c.decode(key.key))))
    return tuple(found)


def _options_of(update: int) -> Iterator[Option]:
    source = c.OptionSource()
    number = 0
    while library.Analyze_Provenance_GetOption(
            update, number, ctypes.byref(source), ctypes.sizeof(source)):
        inputs = tuple(library.Analyze_Provenance_GetOptionInput(update, number, index)
                       for index in range(source.input_count))
        yield Option(source.keyword, c.decode(source.default_value), source.family,
                     source.value_input, inputs)
        number += 1


@cache
def updates() -> tuple[Update, ...]:
    """The update handlers, in the order in which they run."""
    found: list[Update] = []
    source = c.UpdateSource()
    while library.Analyze_Provenance_GetUpdate(
            len(found), ctypes.byref(source), ctypes.sizeof(source)):
        found.append(Update(len(found), c.decode(source.name), tuple(_options_of(len(found)))))
    return tuple(found)


@dataclass(frozen=True)
class NumberedRow:
    """A row with the numbers of its inputs."""

    row: ModelRow
    inputs: tuple[int, ...]


@cache
def read_row(family: int, number: int) -> NumberedRow | None:
    """A row of a family's table; None when the number is out of range."""
    source = c.ModelRow()
    if not library.Analyze_Provenance_GetModelRow(
            family, number, ctypes.byref(source), ctypes.sizeof(source)):
        return None
    inputs = tuple(library.Analyze_Provenance_GetModelRowInput(family, number, index)
                   for index in range(source.input_count))
    row = ModelRow(
        c.decode(source.code) if source.code else None,
        "other models" if not source.code else "whole" if source.whole_code else "prefix",
        c.decode_optional(source.handler), tuple(sources()[i].input for i in inputs))
    return NumberedRow(row, inputs)


def find_row(family: int, model_code: bytes | None) -> NumberedRow:
    """The row that a model code selects; each code has one."""
    row = read_row(family, library.Analyze_Provenance_FindModelRow(family, model_code))
    assert row is not None
    return row
