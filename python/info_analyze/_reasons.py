"""Finds out why each option of a query has its value, from the tables by which the library decides.

Each update handler runs again by itself, with and without defaults. What it set is compared with the
options of the query, and the values that it read are read once more.
"""

from __future__ import annotations

from collections.abc import Iterator
from ctypes import byref, c_double, c_int32, c_void_p, pointer
from typing import Any, Literal

from . import _library as c
from ._library import library
from ._provenance import Option, Source, Update, find_row, sources, updates
from .options import RawValue, Reason, Value

_ENCODING = b"UTF-8"
_LIST = b"list"


class _Document:
    """A loaded document at its current place."""

    def __init__(self, bidi: int, reader: int) -> None:
        self._at = (bidi, reader)

    def number(self, key: bytes) -> int | None:
        number = c_int32()
        found = library.Bidi_qvxmlwrapGet_Long(*self._at, key, byref(number), 0)
        return number.value if found else None

    def text(self, key: bytes) -> str | None:
        text = c_void_p()
        found = library.Bidi_qvxmlwrapGet_String(*self._at, key, byref(text), None, _ENCODING, 0)
        taken = c.take(text.value)
        return taken if found else None

    def elements(self, key: bytes, are_numbers: bool) -> Value:
        count = c_int32()
        if not library.Bidi_qvxmlwrapGet_ArrayCount(*self._at, key, byref(count)):
            return None
        element = self._number_at if are_numbers else self._text_at
        library.Bidi_qvxmlwrapGet_OpenArray(*self._at, key)
        try:
            return tuple(element(index) for index in range(count.value))
        finally:
            library.Bidi_qvxmlwrapGet_CloseArray(*self._at)

    def _number_at(self, index: int) -> int | None:
        number = c_int32()
        found = library.Bidi_qvxmlwrapGet_LongFromArray(*self._at, index, byref(number), 0)
        return number.value if found else None

    def _text_at(self, index: int) -> str | None:
        text = c_void_p()
        found = library.Bidi_qvxmlwrapGet_StringFromArray(
            *self._at, index, byref(text), None, _ENCODING, 0)
        taken = c.take(text.value)
        return taken if found else None

    def has(self, key: bytes) -> bool:
        """Whether the key has a value of any type."""
        number, data, count = c_double(), c_void_p(), c_int32()
        if self.number(key) is not None or self.text(key) is not None:
            return True
        if library.Bidi_qvxmlwrapGet_Double(*self._at, key, byref(number), 0.0):
            return True
        is_binary = library.Bidi_qvxmlwrapGet_Binary(*self._at, key, byref(data), byref(count))
        c.libc.free(data)
        if is_binary or library.Bidi_qvxmlwrapGet_ArrayCount(*self._at, key, byref(count)):
            return True
        found = library.Bidi_qvxmlwrapGet_DictCount(*self._at, key, byref(count))
        return bool(found) and count.value > 0

    def open_item(self, index: int) -> None:
        """Enters an item of the document's list."""
        library.Bidi_qvxmlwrapGet_OpenDict(*self._at, _LIST, index)

    def close_item(self) -> None:
        """Leaves the item."""
        library.Bidi_qvxmlwrapGet_CloseDict(*self._at)


class _RawValues:
    """The values that options depend on, each read once."""

    def __init__(self, context: Any) -> None:
        self._context = context.contents
        self._read: dict[int, tuple[RawValue, ...]] = {}

    def of(self, number: int) -> tuple[RawValue, ...]:
        """The values of an input: several for a list, and for several lines of the PPD."""
        if number not in self._read:
            self._read[number] = tuple(self._values(sources()[number]))
        return self._read[number]

    def _values(self, source: Source) -> Iterator[RawValue]:
        if source.document == c.INPUT_OF_PPD:
            yield from self._ppd_lines(source)
            return
        data = self._context.documents[source.document]
        if data.xml is None:
            yield RawValue(source.input.document, None, source.input.key, "no document", None)
            return
        document = _Document(self._context.bidi, data.xml)
        if source.type == c.KEY_DICTIONARY:
            yield self._count(source, data.count)
        elif source.input.in_list:
            for index in range(data.count):
                document.open_item(index)
                try:
                    value = self._value(document, source, index)
                finally:
                    document.close_item()
                yield value
        else:
            yield self._value(document, source, None)

    @staticmethod
    def _count(source: Source, count: int) -> RawValue:
        return RawValue(source.input.document, None, source.input.key,
                        "present" if count > 0 else "missing", count if count > 0 else None)

    @staticmethod
    def _value(document: _Document, source: Source, item: int | None) -> RawValue:
        value: Value
        if source.type == c.KEY_LONG:
            value = document.number(source.key)
        elif source.type == c.KEY_STRING:
            value = document.text(source.key)
        else:
            value = document.elements(source.key, source.type == c.KEY_LONG_ELEMENTS)
        state: Literal["present", "wrong type", "missing"] = "present"
        if value is None:
            state = "wrong type" if document.has(source.key) else "missing"
        return RawValue(source.input.document, item, source.input.key, state, value)

    def _ppd_lines(self, source: Source) -> Iterator[RawValue]:
        """Several lines of the PPD make one flag text, a value list is one line."""
        has_several = source.type == c.KEY_STRING_ELEMENTS
        is_missing = True
        for key, value in c.nodes(self._context.ppd_options):
            if key == source.key or (has_several and key.startswith(source.key)):
                is_missing = False
                yield RawValue(None, None, c.decode(key), "present", c.decode(value))
        if is_missing:
            yield RawValue(None, None, source.input.key, "missing", None)


class _Run:
    """What an update handler sets, with and without defaults, by keyword in lower case."""

    def __init__(self, context: Any, update: Update) -> None:
        self.update = update
        self.all = _run(context, update, with_defaults=True)
        self.given = _run_with_unknown_media_types(context, update)


def _run(context: Any, update: Update, with_defaults: bool) -> dict[bytes, str]:
    with c.option_list() as head:
        library.Analyze_Provenance_RunUpdate(context, update.number, with_defaults, head)
        return {key.lower(): c.decode(value) for key, value in c.appended(head)}


def _run_with_unknown_media_types(context: Any, update: Update) -> dict[bytes, str]:
    """Runs it without defaults, and with other names for the PPD's media types. So a medium that the
    PPD names differs from the default."""
    analyzer = context.contents
    if not analyzer.media_type_flags:
        return _run(context, update, with_defaults=False)
    names = analyzer.media_type_flags.contents  # the field itself changes below
    marked = library.zflaginfo_init(b"", names.capacity)
    if not marked:
        raise MemoryError
    try:
        for pair in names.entries[:names.count]:
            text = b"known " + pair.name + b":" + pair.value
            if library.zflaginfo_get(text, marked) != 0:
                raise MemoryError
        analyzer.media_type_flags = marked
        return _run(context, update, with_defaults=False)
    finally:
        analyzer.media_type_flags = pointer(names)
        library.zflaginfo_term(marked)


def _origin(
    run: _Run, option: Option, keyword: bytes, value: str, inputs: tuple[RawValue, ...],
    raw: _RawValues,
) -> Literal["device", "ppd", "default"]:
    if option.value_input == c.NO_INPUT:
        given = run.given.get(keyword.lower())
        is_default = option.family == c.FAMILY_MEDIA_TYPE and given == option.default
        return "default" if given is None or is_default else "device"
    if _is_reported(raw.of(option.value_input)):
        return "device"
    if value == option.default:
        return "default"
    return "device" if _is_reported(inputs) else "ppd"


def _is_reported(values: tuple[RawValue, ...]) -> bool:
    return any(value.state == "present" and value.document is not None for value in values)


def find_reasons(context: Any, options: dict[bytes, bytes]) -> tuple[Reason, ...]:
    """The reasons of the options that a query of the analyser has returned."""
    deciding: dict[bytes, _Run] = {}  # the last that sets a keyword
    for update in updates():
        run = _Run(context, update)
        deciding.update(dict.fromkeys(run.all, run))
    raw = _RawValues(context)
    reasons = []
    for keyword, value in options.items():
        run = deciding[keyword.lower()]
        option = run.update.option(keyword.lower())
        row = None
        numbers = set(option.inputs)
        if option.family != c.FAMILY_NONE:
            row = find_row(option.family, context.contents.driver_name)
            numbers.update(row.inputs)
        inputs = tuple(value for number in sorted(numbers) for value in raw.of(number))
        reasons.append(Reason(
            c.decode(keyword), c.decode(value),
            _origin(run, option, keyword, c.decode(value), inputs, raw), option.default,
            run.update.name, row.row if row else None, inputs))
    return tuple(reasons)
