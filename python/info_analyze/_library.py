"""The functions and records of ``libinfo_analyze.so.1`` that this package calls.

ctypes releases the interpreter lock during each call. The headers of the library say who owns what
a function returns; the helpers at the end of this file release it.
"""

from __future__ import annotations

import ctypes
import os
from collections.abc import Iterator
from contextlib import contextmanager
from ctypes import POINTER, Structure, c_char_p, c_double, c_int32, c_size_t, c_ssize_t, c_uint8
from ctypes import c_uint16, c_uint32, c_void_p
from typing import Any

NAME = "libinfo_analyze.so.1"

DOCUMENT_COUNT = 9
DOCUMENT_MAX_SIZE = 16 << 20
DOCUMENT_MAX_PATH_LENGTH = 1023

INPUT_OF_PPD = -1
NO_INPUT = -1
FAMILY_NONE = -1
FAMILY_MEDIA_TYPE = 5
FAMILY_COUNT = 10
OTHER_MODELS = -1

KEY_DICTIONARY = 1
KEY_LONG = 2
KEY_STRING = 4
KEY_LONG_ELEMENTS = 7
KEY_STRING_ELEMENTS = 9

CALIB_LEVEL_COUNT = 1024
CALIB_SET_VALUES = 4 * CALIB_LEVEL_COUNT
CALIB_TABLE_VALUES = 8 * CALIB_LEVEL_COUNT


class OptTable(Structure):
    """A node of an option table."""


OptTable._fields_ = [("key", c_char_p), ("value", c_char_p), ("next", POINTER(OptTable))]


class FlagPair(Structure):
    _fields_ = [("name", c_char_p), ("value", c_char_p)]


class FlagInfo(Structure):
    _fields_ = [("entries", POINTER(FlagPair)), ("count", c_int32), ("capacity", c_int32)]


class XmlData(Structure):
    _fields_ = [("xml", c_void_p), ("count", c_int32)]


class AnalyzeContext(Structure):
    _fields_ = [
        ("bidi", c_void_p),
        ("queue_name", c_char_p),
        ("xml_folder", c_char_p),
        ("driver_name", c_char_p),
        ("documents", XmlData * DOCUMENT_COUNT),
        ("media_type_flags", POINTER(FlagInfo)),
        ("input_tray_flags", POINTER(FlagInfo)),
        ("slot_media_info_flags", POINTER(FlagInfo)),
        ("src_option_flags", POINTER(FlagInfo)),
        ("finisher_name_flags", POINTER(FlagInfo)),
        ("ppd_options", POINTER(OptTable)),
        ("is_ppd_cache", c_uint8),
    ]


class InputKey(Structure):
    _fields_ = [("document", c_int32), ("in_list", c_int32), ("type", c_int32), ("key", c_char_p)]


class OptionSource(Structure):
    _fields_ = [
        ("keyword", c_char_p),
        ("getter", c_void_p),
        ("default_value", c_char_p),
        ("family", c_int32),
        ("value_input", c_int32),
        ("input_count", c_int32),
    ]


class UpdateSource(Structure):
    _fields_ = [("name", c_char_p), ("guard", c_int32), ("option_count", c_int32)]


class ModelRow(Structure):
    _fields_ = [
        ("code", c_char_p),
        ("handler", c_char_p),
        ("whole_code", c_int32),
        ("input_count", c_int32),
    ]


class Calib3Info(Structure):
    _fields_ = [("words", c_uint32 * 12), ("first_set", c_void_p), ("second_set", c_void_p)]


class Calib4Entry(Structure):
    _fields_ = [("code", c_uint32), ("index", c_uint32), ("words", c_uint32 * 2)]


class Calib4Header(Structure):
    _fields_ = [
        ("entry_count", c_uint32),
        ("first_model_value", c_uint32),
        ("second_model_value", c_uint32),
        ("entries", POINTER(Calib4Entry)),
    ]


class Calib4Info(Structure):
    _fields_ = [
        ("words", c_uint32 * 14),
        ("values", c_uint32 * 4),
        ("bytes", c_uint8 * 4),
        ("header", POINTER(Calib4Header)),
    ]


Analyzer = POINTER(AnalyzeContext)
Options = POINTER(OptTable)
_Text = POINTER(c_void_p)  # receives a text that the caller releases
_Number = POINTER(c_int32)
_Word = POINTER(c_uint32)
_Reader = (c_void_p, c_void_p, c_char_p)  # the start of the arguments of most readers

# Result, then arguments. A result of c_void_p is a text that the caller releases, or a handle.
_FUNCTIONS: dict[str, tuple[Any, ...]] = {
    "Analyze_Create": (Analyzer, c_void_p, c_char_p, c_char_p),
    "Analyze_Destroy": (None, Analyzer),
    "Analyze_Info_FromPrinter": (c_int32, Analyzer, Options, c_uint8),
    "Analyze_Info_FromFunctionVersion": (c_int32, Analyzer, c_uint32, Options),
    "Analyze_Info_GetCalib3Settings": (c_int32, Analyzer, Options, _Word, _Word, _Word),
    "Analyze_Info_GetCalib4Settings": (c_int32, Analyzer, Options, _Word, _Word, _Word, _Word),
    "Analyze_Info_CreateDefault_Calib3Info": (c_int32, Analyzer, Options, POINTER(Calib3Info)),
    "Analyze_Info_CreateDefault_Calib4Info": (c_int32, Analyzer, Options, POINTER(Calib4Info)),
    "Analyze_Provenance_GetInput": (c_int32, c_int32, POINTER(InputKey), c_size_t),
    "Analyze_Provenance_GetDocumentName": (c_char_p, c_int32),
    "Analyze_Provenance_GetUpdate": (c_int32, c_int32, POINTER(UpdateSource), c_size_t),
    "Analyze_Provenance_GetOption": (c_int32, c_int32, c_int32, POINTER(OptionSource), c_size_t),
    "Analyze_Provenance_GetOptionInput": (c_int32, c_int32, c_int32, c_int32),
    "Analyze_Provenance_RunUpdate": (c_int32, Analyzer, c_int32, c_uint8, Options),
    "Analyze_Provenance_FindModelRow": (c_int32, c_int32, c_char_p),
    "Analyze_Provenance_GetModelRow": (c_int32, c_int32, c_int32, POINTER(ModelRow), c_size_t),
    "Analyze_Provenance_GetModelRowInput": (c_int32, c_int32, c_int32, c_int32),
    "Bidi_Create": (c_void_p, c_char_p),
    "Bidi_Destroy": (None, c_void_p),
    "Bidi_qvxmlwrapGet_DictCount": (c_int32, *_Reader, _Number),
    "Bidi_qvxmlwrapGet_OpenDict": (c_int32, *_Reader, c_int32),
    "Bidi_qvxmlwrapGet_CloseDict": (c_int32, c_void_p, c_void_p),
    "Bidi_qvxmlwrapGet_Long": (c_int32, *_Reader, _Number, c_ssize_t),
    "Bidi_qvxmlwrapGet_Double": (c_int32, *_Reader, POINTER(c_double), c_double),
    "Bidi_qvxmlwrapGet_String": (c_int32, *_Reader, _Text, c_void_p, c_char_p, c_ssize_t),
    "Bidi_qvxmlwrapGet_Binary": (c_int32, *_Reader, _Text, _Number),
    "Bidi_qvxmlwrapGet_ArrayCount": (c_int32, *_Reader, _Number),
    "Bidi_qvxmlwrapGet_OpenArray": (c_int32, *_Reader),
    "Bidi_qvxmlwrapGet_CloseArray": (c_int32, c_void_p, c_void_p),
    "Bidi_qvxmlwrapGet_LongFromArray": (c_int32, c_void_p, c_void_p, c_int32, _Number, c_ssize_t),
    "Bidi_qvxmlwrapGet_StringFromArray": (
        c_int32, c_void_p, c_void_p, c_int32, _Text, c_void_p, c_char_p, c_ssize_t),
    "CupsQueueList_Initialize": (c_void_p, _Number),
    "CupsQueueList_Terminate": (None, c_void_p),
    "CupsQueueList_GetQueueName": (c_char_p, c_void_p, c_int32),
    "CupsQueueList_GetQueueModifyTimeStamp": (c_int32, c_void_p, c_int32),
    "DriverFamily_GetFolderPath": (c_char_p, c_int32),
    "FolderPathForConf_Initialize": (c_void_p, c_char_p),
    "FolderPathForConf_Terminate": (None, c_void_p),
    "FolderPathForConf_GetAddressAndProtocol": (c_int32, c_void_p, c_char_p, _Text, _Text),
    "FolderPathToDataPortNumber": (c_int32, c_char_p),
    "FolderPathToDriverCache": (c_int32, c_char_p, _Text),
    "FolderPathToFullPathOfMqpdUtil": (c_int32, c_char_p, _Text),
    "FolderPathToPortNumber": (c_int32, c_char_p),
    "MqpdQueueList_Initialize": (c_void_p, c_void_p, _Number),
    "MqpdQueueList_Terminate": (None, c_void_p),
    "MqpdUriToEndpointFamily": (c_int32, c_char_p, _Text),
    "MqpdUriToFullPathOfDriverCache": (c_int32, c_char_p, _Text),
    "MqpdUriToFullPathOfDriverFolder": (c_int32, c_char_p, _Text),
    "MqpdUriToFullPathOfIOLib": (c_int32, c_char_p, _Text),
    "MqpdUriToPrinterAddress": (c_int32, c_char_p, _Text),
    "MqpdUriToQueueName": (c_int32, c_char_p, _Text),
    "OptionList_Terminate": (None, POINTER(Options)),
    "info_common_optlist_additem_front": (None, POINTER(Options), c_char_p, c_char_p),
    "info_common_optlist_create": (Options, c_char_p),
    "info_common_optlist_destroy": (None, Options),
    "info_common_optlist_getvalue": (c_void_p, Options, c_char_p),
    "wrapCupsFileOpen2": (c_void_p, c_char_p, c_char_p, _Text),
    "wrapCupsFileClose2": (c_int32, c_void_p, c_char_p),
    "zflaginfo_get": (c_int32, c_char_p, POINTER(FlagInfo)),
    "zflaginfo_init": (POINTER(FlagInfo), c_char_p, c_int32),
    "zflaginfo_term": (None, POINTER(FlagInfo)),
}


def _declare(library: ctypes.CDLL, functions: dict[str, tuple[Any, ...]]) -> ctypes.CDLL:
    for name, (result, *arguments) in functions.items():
        function = getattr(library, name)
        function.restype = result
        function.argtypes = arguments
    return library


def _load() -> ctypes.CDLL:
    try:
        library = ctypes.CDLL(NAME, use_errno=True)
    except OSError as error:
        raise ImportError(f"cannot load {NAME} ({error}); install libinfo-analyze1") from error
    return _declare(library, _FUNCTIONS)


library = _load()
libc = _declare(ctypes.CDLL(None), {"free": (None, c_void_p), "dlerror": (c_char_p,)})


def encode(text: str | os.PathLike[str]) -> bytes:
    """The bytes of a text or path for a C function, which would stop at a null character."""
    encoded = os.fspath(text).encode("utf-8", "surrogateescape")
    if b"\0" in encoded:
        raise ValueError("embedded null character")
    return encoded


def decode(text: bytes) -> str:
    """The text of bytes from a C function; bytes that are not UTF-8 become surrogates."""
    return text.decode("utf-8", "surrogateescape")


def decode_optional(text: bytes | None) -> str | None:
    """As :func:`decode`; a null pointer is None."""
    return None if text is None else decode(text)


def take(address: int | None) -> str | None:
    """Copies a text that the caller has to release, and releases it."""
    if address is None:
        return None
    try:
        return decode(ctypes.string_at(address))
    finally:
        libc.free(address)


def take_words(address: int | None, count: int) -> bytes | None:
    """Copies an array of 16-bit words that the caller has to release, and releases it."""
    if address is None:
        return None
    try:
        return ctypes.string_at(address, count * ctypes.sizeof(c_uint16))
    finally:
        libc.free(address)


@contextmanager
def option_list() -> Iterator[Any]:
    """A list that the library appends to, which needs a first node. It is released at the end."""
    head = Options()
    library.info_common_optlist_additem_front(ctypes.byref(head), b"", b"")
    if not head:
        raise MemoryError
    try:
        yield head
    finally:
        library.OptionList_Terminate(ctypes.byref(head))


def nodes(first: Any) -> Iterator[tuple[bytes, bytes]]:
    """The keys and values of an option table, from a node on."""
    node = first
    while node:
        entry = node.contents
        yield entry.key, entry.value
        node = entry.next


def appended(head: Any) -> Iterator[tuple[bytes, bytes]]:
    """The keys and values that the library has appended to an :func:`option_list`."""
    return nodes(head.contents.next)
