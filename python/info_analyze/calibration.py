"""Calibration settings, default calibration data, and the default curves.

Curves are read-only buffers of 16-bit numbers, so ``numpy.frombuffer(table.values, numpy.uint16)``
makes an array of them without copying.
"""

from __future__ import annotations

import ctypes
from collections.abc import Mapping, Sequence
from ctypes import byref, c_uint16, c_uint32
from dataclasses import dataclass
from functools import cache
from typing import Any, overload

from . import _library as c
from ._library import library

CURVE_TABLE_NAMES = (
    "LARCH_Def_Calib",
    "Linden_Def_Calib_2bit",
    "Linden_Def_Calib_4bit",
    "PinePoplar_Def_Calib_2bit",
    "PinePoplar_Def_Calib_4bit",
)
"""The names of the default curve tables."""

# No code has all bits set, so outputs that the library did not write are known by them.
_UNWRITTEN = 0xFFFFFFFF


class CurveTable(Sequence[memoryview]):
    """Eight default curves. Each has an output level, 0 to 1023, for each input level, its index."""

    def __init__(self, name: str | None, values: bytes) -> None:
        self._name = name
        self._values = values

    @property
    def name(self) -> str | None:
        """Name of the table, such as ``"LARCH_Def_Calib"``; None when it has no name."""
        return self._name

    @property
    def values(self) -> memoryview:
        """The levels of all eight curves, one curve after the other: 8192 numbers of 16 bits."""
        return memoryview(self._values).cast("H")

    def __len__(self) -> int:
        return c.CALIB_TABLE_VALUES // c.CALIB_LEVEL_COUNT

    @overload
    def __getitem__(self, index: int) -> memoryview: ...

    @overload
    def __getitem__(self, index: slice) -> Sequence[memoryview]: ...

    def __getitem__(self, index: int | slice) -> memoryview | Sequence[memoryview]:
        if isinstance(index, slice):
            return [self[number] for number in range(*index.indices(len(self)))]
        if not -len(self) <= index < len(self):
            raise IndexError("a table has eight curves")
        start = index % len(self) * c.CALIB_LEVEL_COUNT
        return self.values[start:start + c.CALIB_LEVEL_COUNT]

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, CurveTable):
            return NotImplemented
        return (self._name, self._values) == (other._name, other._values)

    def __hash__(self) -> int:
        return hash((self._name, self._values))

    def __repr__(self) -> str:
        return f"<CurveTable {self._name}>"


@dataclass(frozen=True)
class Calib4Settings:
    """Calibration settings of the second generation of devices."""

    flag: int
    """0 or 1, by model."""

    x_dpi: int
    """Horizontal resolution in dots per inch."""

    y_dpi: int
    """Vertical resolution in dots per inch."""

    groups: tuple[tuple[int, ...], ...]
    """For each of the job's three halftone values its code and two words, by model."""


@dataclass(frozen=True)
class CalibrationSettings:
    """What a calibration tool sends to a printer."""

    halftone_codes: tuple[int, ...] | None
    """Calib3 settings: three halftone codes; None when the model has none."""

    calib4: Calib4Settings | None
    """Calib4 settings; None when the model has none."""


@dataclass(frozen=True)
class CalibrationDefaults:
    """Calibration data that a model uses while it has not been calibrated."""

    curves: CurveTable | None
    """Calib3 default curves; None when the model and the job have none."""

    values: tuple[int, ...]
    """Calib4 default values: four numbers."""

    model_values: tuple[int, int]
    """Calib4 numbers that depend on the model."""

    codes: tuple[int, ...]
    """Calib4 codes of the job's three halftone values."""


@cache
def curve_table(name: str) -> CurveTable:
    """A table of default curves.

    :param name: one of :data:`CURVE_TABLE_NAMES`
    :raises KeyError: no table has the name
    """
    if name not in CURVE_TABLE_NAMES:
        raise KeyError(name)
    return CurveTable(name, bytes((c_uint16 * c.CALIB_TABLE_VALUES).in_dll(library, name)))


def _job_table(context: Any, job: Mapping[str, str]) -> tuple[Any, list[c.OptTable]]:
    """An option table with the job's options before those of the PPD, and what owns its nodes."""
    head = context.contents.ppd_options
    nodes = []
    for key, value in job.items():
        nodes.append(c.OptTable(c.encode(key), c.encode(value), head))
        head = ctypes.pointer(nodes[-1])
    return head, nodes


def read_settings(context: Any, job: Mapping[str, str]) -> CalibrationSettings:
    """The settings of an analyser for a job."""
    options, nodes = _job_table(context, job)
    codes = [c_uint32(_UNWRITTEN) for _ in range(3)]
    library.Analyze_Info_GetCalib3Settings(context, options, *map(byref, codes))
    flag, x_dpi, y_dpi, words = c_uint32(), c_uint32(), c_uint32(), (c_uint32 * 9)()
    status = library.Analyze_Info_GetCalib4Settings(
        context, options, byref(flag), byref(x_dpi), byref(y_dpi), words)
    del nodes
    groups = tuple(tuple(words[at:at + 3]) for at in (0, 3, 6))
    return CalibrationSettings(
        None if codes[0].value == _UNWRITTEN else tuple(code.value for code in codes),
        Calib4Settings(flag.value, x_dpi.value, y_dpi.value, groups) if status == 0 else None)


def read_defaults(context: Any, job: Mapping[str, str]) -> CalibrationDefaults:
    """The default data of an analyser for a job."""
    options, nodes = _job_table(context, job)
    entries = (c.Calib4Entry * 3)()
    header = c.Calib4Header(entries=entries)
    info = c.Calib4Info(header=ctypes.pointer(header))
    library.Analyze_Info_CreateDefault_Calib4Info(context, options, byref(info))
    curves = _read_curves(context, options)
    del nodes
    return CalibrationDefaults(
        curves, tuple(info.values), (header.first_model_value, header.second_model_value),
        tuple(entry.code for entry in entries))


def _read_curves(context: Any, options: Any) -> CurveTable | None:
    info = c.Calib3Info()
    status = library.Analyze_Info_CreateDefault_Calib3Info(context, options, byref(info))
    first = c.take_words(info.first_set, c.CALIB_SET_VALUES)
    second = c.take_words(info.second_set, c.CALIB_SET_VALUES)
    if status != 0:
        raise MemoryError
    if first is None or second is None:
        return None
    # The library returns copies of the halves of a table, and not its name.
    tables = (curve_table(name) for name in CURVE_TABLE_NAMES)
    values = first + second
    return next((table for table in tables if table.values.tobytes() == values),
                CurveTable(None, values))
