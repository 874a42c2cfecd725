"""The two shared libraries: where they are found, and the functions that they offer."""

from __future__ import annotations

import ctypes
import os
import sys
from pathlib import Path
from typing import Any

DIRECTORY_VARIABLE = "KVAPPLMAN_LIBRARY_DIR"

_WINDOWS = sys.platform == "win32"
_PACKAGE = Path(__file__).resolve().parent

c_handle = ctypes.c_void_p
_word = ctypes.c_uint32
_long = ctypes.c_int32
_text = ctypes.c_char_p
_Words = ctypes.POINTER(_word)
_Pointer = ctypes.POINTER


class ProgressRecord(ctypes.Structure):
    _fields_ = [
        ("fraction", ctypes.c_double),
        ("phase", _word),
        ("phase_count", _word),
        ("file_name", _text),
        ("phase_name", _text),
    ]


class ListedRecord(ctypes.Structure):
    _fields_ = [("appl_id", _word), ("info_text", _text)]


class AddedFileRecord(ctypes.Structure):
    _fields_ = [
        ("source", ctypes.c_char * 1024),
        ("name", ctypes.c_char * 256),
        ("directory", ctypes.c_char * 1024),
        ("type", _word),
        ("reserved", ctypes.c_ubyte * 1024),
    ]


ProgressFunction = ctypes.CFUNCTYPE(None, _Pointer(ProgressRecord), c_handle)

_APPLICATION = [c_handle, c_handle, c_handle, _word]  # pool, device, access, application
_TARGET = _APPLICATION[:3]

# Function: arguments. All of them return a status but those below.
_MANAGER: dict[str, list[Any]] = {
    "KvApplMan_createApplGroupHandle_2": [
        c_handle, _Pointer(c_handle), _Pointer(c_handle), _word, _Pointer(c_handle)],
    "KvApplMan_deleteApplGroupHandle": [c_handle, c_handle],
    "KvApplMan_registerAppl_2": [*_TARGET, c_handle, _word, _Words],
    "KvApplMan_setApplParameter": [*_APPLICATION, _word, c_handle, _long],
    "KvApplMan_downloadApplUtf8": [
        c_handle, _Pointer(c_handle), _Pointer(c_handle), _Words, _Pointer(_text), _word, _word, ProgressFunction,
        c_handle, _Pointer(_text)],
    "KvApplMan_startAppl": _APPLICATION,
    "KvApplMan_stopAppl": _APPLICATION,
    "KvApplMan_terminateAppl": _APPLICATION,
    "KvApplMan_unloadAppl": _APPLICATION,
    "KvApplMan_pauseAppl": _APPLICATION,
    "KvApplMan_stepAppl": _APPLICATION,
    "KvApplMan_getApplInfo": [*_APPLICATION, _word, c_handle, _Pointer(_long)],
    "KvApplMan_getApplications": [*_TARGET, _word, _Words, _Pointer(_long)],
    "KvApplMan_getApplInfoList": [*_TARGET, _Pointer(_Pointer(ListedRecord)), _Words, _text],
    "KvApplMan_freeApplInfoList": [_Pointer(_Pointer(ListedRecord)), _Words],
    "KvApplMan_getAvailableCoreIDs": [*_TARGET, _word, _Words, _Words],
    "KvApplMan_loadFileUtf8": [
        *_APPLICATION, _text, _text, _text, _word, _word, ProgressFunction, c_handle, _text],
    "KvApplMan_getFileInfo": [*_APPLICATION, _Words, _Pointer(AddedFileRecord)],
    "KvApplMan_removeFile": [*_APPLICATION, _text, _word],
    "KvApplMan_getFlashApplications": [*_TARGET, _word, _Words, _Words],
    "KvApplMan_getFlashApplInfo": [*_APPLICATION, _word, c_handle, _Pointer(_long)],
    "KvApplMan_setFlashApplParameter": [*_APPLICATION, _word, c_handle, _word],
    "KvApplMan_loadFlashAppl": [*_TARGET, ctypes.c_uint64],
    "KvApplMan_clearFlashAppl": [*_TARGET, ctypes.c_uint64],
}
_PLATFORM: dict[str, list[Any]] = {
    "KvPlatform_createPool": [],
    "KvPlatform_deletePool": [c_handle],
    "KvPlatform_addDevice": [c_handle, _text, _word, _Pointer(c_handle)],
    "KvPlatform_removeDevice": [c_handle, c_handle],
    "KvHIM_createAccessRestrictionHandle": [c_handle, c_handle, _Pointer(c_handle)],
    "KvPlatform_entryCount": [c_handle],
    "KvPlatform_entryCode": [c_handle, _word],
    "KvPlatform_entryLine": [c_handle, _word],
    "KvPlatform_entryOperation": [c_handle, _word],
    "KvPlatform_entrySignature": [c_handle, _word],
    "KvPlatform_entryArgumentCount": [c_handle, _word],
    "KvPlatform_entryArgument": [c_handle, _word, _word],
    "KvPlatform_entryText": [c_handle, _word],
}
_RESULTS: dict[str, Any] = {
    "KvApplMan_freeApplInfoList": None,
    "KvPlatform_createPool": c_handle,
    "KvPlatform_deletePool": None,
    "KvPlatform_entryCount": _word,
    "KvPlatform_entryCode": _word,
    "KvPlatform_entryLine": _word,
    "KvPlatform_entryOperation": _text,
    "KvPlatform_entrySignature": _text,
    "KvPlatform_entryArgumentCount": _word,
    "KvPlatform_entryArgument": _text,
    "KvPlatform_entryText": _text,
}


def file_name(library: str) -> str:
    return f"{library}.dll" if _WINDOWS else f"lib{library}.so.1"


def directory() -> Path | None:
    """The folder with both libraries: the one that the environment names, else the package's own, or one that an
    installation with this package has above it. None leaves it to the system's loader."""
    named = os.environ.get(DIRECTORY_VARIABLE)
    if named:
        return Path(named)
    above = list(_PACKAGE.parents)[:4]
    for folder in [_PACKAGE, *above, *(parent / "bin" for parent in above if _WINDOWS)]:
        if (folder / file_name("KvPlatform")).is_file():
            return folder
    return None


def _load(library: str, functions: dict[str, list[Any]], folder: Path | None) -> ctypes.CDLL:
    name = file_name(library)
    loaded = ctypes.CDLL(str(folder / name) if folder else name)
    for function, arguments in functions.items():
        entry = getattr(loaded, function)
        entry.argtypes = arguments
        entry.restype = _RESULTS.get(function, _long)
    return loaded


def _load_both() -> tuple[ctypes.CDLL, ctypes.CDLL]:
    folder = directory()
    if _WINDOWS and folder:
        os.add_dll_directory(str(folder))  # type: ignore[attr-defined]
    try:
        return _load("KvPlatform", _PLATFORM, folder), _load("KvApplicationManagerAP", _MANAGER, folder)
    except OSError as fault:
        where = f"in {folder}" if folder else "by the system's loader"
        raise ImportError(
            f"{file_name('KvApplicationManagerAP')} was not found {where}; {DIRECTORY_VARIABLE} names its folder: {fault}"
        ) from fault


# The first makes, reads and deletes pools, devices and access handles; the second has the 24 functions.
platform, manager = _load_both()
