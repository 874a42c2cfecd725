"""Targets, groups and applications, over all 24 functions of the library."""

from __future__ import annotations

import ctypes
import os
from collections.abc import Callable, Sequence
from dataclasses import dataclass
from datetime import datetime, timedelta, timezone
from types import TracebackType
from typing import Any, Optional, Union

from ._library import (
    AddedFileRecord,
    ListedRecord,
    ProgressFunction,
    c_handle,
    manager,
    platform,
)
from .constants import ITEM_KINDS, PARAM_KINDS, CoreKind, FileType, Item, Kind, Param, State, Status, Value
from .errors import Error, Message, Pool, text_of

PathLike = Union[str, "os.PathLike[str]"]
MessageHandler = Callable[[str, "tuple[Message, ...]"], None]

_NO_FUNCTION: Any = ctypes.cast(0, ProgressFunction)
_FIRST_TRY = 256  # bytes; one request does for most items
_ARRAYS: dict[Kind, Any] = {Kind.TEXT: ctypes.c_char, Kind.TEXTS: ctypes.c_char, Kind.WORDS: ctypes.c_uint32, Kind.QUADS: ctypes.c_int64}
_SCALARS: dict[Kind, Any] = {
    Kind.STATE: ctypes.c_uint32,
    Kind.WORD: ctypes.c_uint32,
    Kind.QUAD: ctypes.c_int64,
    Kind.REAL: ctypes.c_double,
    Kind.TIME: ctypes.c_int64,
    Kind.SECONDS: ctypes.c_uint32,
}


@dataclass(frozen=True)
class Progress:
    """How far a long call is."""

    fraction: float  #: share of the whole task that is done, 0.0 to 1.0
    phase: int  #: number of the current phase, from 1
    phase_count: int
    file_name: str  #: the file being handled; empty when there is none
    phase_name: str  #: empty when there is none


ProgressCallback = Callable[[Progress], None]


@dataclass(frozen=True)
class ListedApplication:
    id: int
    info_text: str


@dataclass(frozen=True)
class AddedFile:
    """An additional file as the target has registered it. What the members mean is the target's business; the names are
    those of the simulated target."""

    source: str  #: path on the host
    name: str  #: name on the target
    directory: str  #: where it lies on the target
    type: int


class _ProgressBridge:
    """Hands progress on and keeps what the callback raises: it is not called again, and the exception surfaces after
    the call."""

    def __init__(self, callback: Optional[ProgressCallback]) -> None:
        self._callback = callback
        self._raised: Optional[BaseException] = None
        self.function = ProgressFunction(self._receive) if callback else _NO_FUNCTION

    def _receive(self, record: Any, _: Any) -> None:
        if self._raised is not None or self._callback is None:
            return
        try:
            at = record.contents
            phase_name = text_of(at.phase_name)
            if len(phase_name) >= 2 and phase_name[0] == phase_name[-1] == '"':
                phase_name = phase_name[1:-1]
            self._callback(Progress(at.fraction, at.phase, at.phase_count, text_of(at.file_name), phase_name))
        except BaseException as raised:  # KeyboardInterrupt, too: no exception may pass through the library
            self._raised = raised

    def surface(self) -> None:
        if self._raised is not None:
            raise self._raised


def _path(path: PathLike) -> bytes:
    return os.fspath(path).encode("utf-8", "surrogateescape")


def _scalar(kind: Kind, value: Any) -> Any:
    if kind is Kind.STATE:
        return State(value) if value in State.__members__.values() else value
    if kind is Kind.TIME:
        return datetime.fromtimestamp(value, timezone.utc)
    return timedelta(seconds=value) if kind is Kind.SECONDS else value


def _array(kind: Kind, values: Any) -> Any:
    if kind is Kind.TEXT:
        return text_of(values.value)
    if kind is Kind.TEXTS:
        text = text_of(values.value)
        return text.split(";") if text else []
    return list(values)


class Target:
    """A target: its device, and an access-restriction handle for all that is asked of it. Nothing is sent before the first
    call, which connects.

    :param address: "a.b.c.d:port"; each target needs an IPv4 address of its own
    :param cn_serial_number: serial number of the device's CN, 0 when unknown
    :param on_messages: receives the messages of calls that succeed, warnings of the target for instance
    """

    def __init__(
        self, address: str, cn_serial_number: int = 0, on_messages: Optional[MessageHandler] = None
    ) -> None:
        self.address = address
        self.on_messages = on_messages
        self.device, self.access = c_handle(), c_handle()
        with Pool() as pool:
            function = "KvPlatform_addDevice"
            status = platform.KvPlatform_addDevice(pool, address.encode(), cn_serial_number, ctypes.byref(self.device))
            if status == 0:
                function = "KvHIM_createAccessRestrictionHandle"
                status = platform.KvHIM_createAccessRestrictionHandle(pool, self.device, ctypes.byref(self.access))
            if status != 0:
                error = Error(function, status, pool.messages())
                self.close()
                raise error

    def close(self) -> None:
        """Closes the connections to the target. No call may be under way, and none can follow, also of its groups and
        applications."""
        if self.device:
            with Pool() as pool:
                platform.KvPlatform_removeDevice(pool, self.device)
            self.device, self.access = c_handle(), c_handle()

    def __enter__(self) -> Target:
        return self

    def __exit__(
        self, kind: Optional[type[BaseException]], raised: Optional[BaseException], trace: Optional[TracebackType]
    ) -> None:
        self.close()

    def __repr__(self) -> str:
        return f"Target({self.address!r})"

    def application(self, id: int) -> Application:
        """Names an application process; nothing is sent."""
        return Application(self, id)

    @property
    def manager(self) -> Application:
        """The target's application manager, for items and parameters that are its own."""
        return Application(self, Value.MANAGER)

    def flash_application(self, id: int) -> FlashApplication:
        """Names an application in flash memory; nothing is sent."""
        return FlashApplication(self, id)

    def application_ids(self, state: int = State.ANY) -> list[int]:
        """KvApplMan_getApplications: the applications in a state."""
        return self._list("KvApplMan_getApplications", ctypes.c_int32, ctypes.c_uint32, state, count_first=False)

    def applications(self, name: str = "") -> list[ListedApplication]:
        """KvApplMan_getApplInfoList: at most 128 applications; with a name, those with this file name without its last
        extension."""
        elements = ctypes.POINTER(ListedRecord)()
        count = ctypes.c_uint32()
        try:
            self.call("KvApplMan_getApplInfoList", ctypes.byref(elements), ctypes.byref(count), name.encode())
            return [ListedApplication(e.appl_id, text_of(e.info_text)) for e in elements[: count.value]]
        finally:
            manager.KvApplMan_freeApplInfoList(ctypes.byref(elements), ctypes.byref(count))

    def cores(self, kind: int = CoreKind.ALL) -> list[int]:
        """KvApplMan_getAvailableCoreIDs. A call that fails may read as no cores."""
        return self._list("KvApplMan_getAvailableCoreIDs", ctypes.c_uint32, ctypes.c_uint32, kind)

    def flash_application_ids(self) -> list[int]:
        """KvApplMan_getFlashApplications. A call that fails may read as none."""
        mode = Value.FLASH_MODE_ALL
        return self._list("KvApplMan_getFlashApplications", ctypes.c_uint32, ctypes.c_uint32, mode)

    def call(self, function: str, *arguments: Any) -> None:
        """Calls a function of the library for this target. Raises an Error when it fails."""
        with Pool() as pool:
            self.finish(getattr(manager, function)(pool, self.device, self.access, *arguments), function, pool)

    def finish(self, status: int, function: str, pool: Pool) -> None:
        messages = pool.messages()
        if status != 0:
            raise Error(function, status, messages)
        if messages and self.on_messages is not None:
            self.on_messages(function, messages)

    def _list(self, function: str, count_type: Any, element: Any, *arguments: Any, count_first: bool = True) -> list[Any]:
        """Asks for a list until it fits."""
        capacity = int(Value.MOST_LISTED)
        while True:
            elements = (element * capacity)()
            count = count_type(capacity)
            last = (ctypes.byref(count), elements) if count_first else (elements, ctypes.byref(count))
            try:
                self.call(function, *arguments, *last)
                return list(elements[: count.value])
            except Error:
                if count.value <= capacity:
                    raise
                capacity = count.value


class _Readable:
    """Something on a target that has information items."""

    _READ: str

    def __init__(self, target: Target, id: int) -> None:
        self.target = target
        self.id = id  #: by which the target knows it

    def __repr__(self) -> str:
        return f"{type(self).__name__}({self.target!r}, {self.id})"

    def info(self, item: int) -> Any:
        """Reads an information item. Its type is that of its kind: State, int, float, datetime (UTC), timedelta, str, or
        a list; empty texts in a list of addresses stand for empty slots."""
        kind = ITEM_KINDS[Item(item)]
        if kind in _SCALARS:
            value = _SCALARS[kind]()
            size = ctypes.c_int32(ctypes.sizeof(value))
            self.target.call(self._READ, self.id, item, ctypes.byref(value), ctypes.byref(size))
            return _scalar(kind, value.value)
        return self._read_array(item, kind)

    def _read_array(self, item: int, kind: Kind) -> Any:
        element = _ARRAYS[kind]
        room = _FIRST_TRY
        while True:
            values = (element * (room // ctypes.sizeof(element)))()
            size = ctypes.c_int32(room)
            try:
                self.target.call(self._READ, self.id, item, values, ctypes.byref(size))
            except Error as error:
                if error.status != Status.SIZE or size.value <= room:
                    raise
                room = size.value
                continue
            return _array(kind, values if element is ctypes.c_char else values[: size.value // ctypes.sizeof(element)])


class Application(_Readable):
    """An application process on a target, or its application manager."""

    _READ = "KvApplMan_getApplInfo"

    def _command(self, function: str) -> None:
        self.target.call(function, self.id)

    def start(self) -> None:
        """KvApplMan_startAppl: starts the loaded process, or goes on with a paused one."""
        self._command("KvApplMan_startAppl")

    def stop(self) -> None:
        """KvApplMan_stopAppl."""
        self._command("KvApplMan_stopAppl")

    def terminate(self) -> None:
        """KvApplMan_terminateAppl."""
        self._command("KvApplMan_terminateAppl")

    def unload(self) -> None:
        """KvApplMan_unloadAppl: the target then no longer knows the ID."""
        self._command("KvApplMan_unloadAppl")

    def pause(self) -> None:
        """KvApplMan_pauseAppl."""
        self._command("KvApplMan_pauseAppl")

    def step(self) -> None:
        """KvApplMan_stepAppl: lets the paused process run one step."""
        self._command("KvApplMan_stepAppl")

    @property
    def state(self) -> Union[State, int]:
        """Item 0; a number when the library does not know the state."""
        state: Union[State, int] = self.info(Item.STATE)
        return state

    def set(self, param: int, value: Any) -> None:
        """KvApplMan_setApplParameter: writes a parameter, given as the type of its kind."""
        data, size = _given(PARAM_KINDS[Param(param)], value)
        self.target.call("KvApplMan_setApplParameter", self.id, param, data, size)

    def load_file(
        self,
        source: PathLike,
        type: int = FileType.FALLBACK,
        *,
        target_path: str = "",
        target_name: str = "",
        flags: int = 0,
        additional_info: str = "",
        progress: Optional[ProgressCallback] = None,
    ) -> None:
        """KvApplMan_loadFileUtf8: registers an additional file, or a directory (FileType.DIRECTORY), and transfers it."""
        bridge = _ProgressBridge(progress)
        with Pool() as pool:
            status = manager.KvApplMan_loadFileUtf8(
                pool, self.target.device, self.target.access, self.id, _path(source), target_path.encode(),
                target_name.encode(), type, flags, bridge.function, None, additional_info.encode(),
            )
            bridge.surface()
            self.target.finish(status, "KvApplMan_loadFileUtf8", pool)

    def files(self) -> list[AddedFile]:
        """KvApplMan_getFileInfo: the additional files that the target has registered."""
        records = self.target._list("KvApplMan_getFileInfo", ctypes.c_uint32, AddedFileRecord, self.id)
        return [AddedFile(text_of(r.source), text_of(r.name), text_of(r.directory), r.type) for r in records]

    def remove_file(self, name: str, type: int = FileType.FALLBACK) -> None:
        """KvApplMan_removeFile: by the name on the target, and the type under which the file was loaded."""
        self.target.call("KvApplMan_removeFile", self.id, name.encode(), type)


def _given(kind: Kind, value: Any) -> tuple[Any, int]:
    """A value as the library takes it, and its size."""
    if kind is Kind.TEXT:
        return ctypes.create_string_buffer(value.encode()), 0
    if kind is Kind.TEXTS:
        texts = [text.encode() for text in value]
        return (ctypes.c_char_p * (len(texts) + 1))(*texts), len(texts)
    if kind is Kind.WORDS:
        words = list(value)
        return (ctypes.c_uint32 * max(1, len(words)))(*words), 4 * len(words)
    scalar = _SCALARS[kind](value)
    return ctypes.byref(scalar), ctypes.sizeof(scalar)


class FlashApplication(_Readable):
    """An application in a target's flash memory."""

    _READ = "KvApplMan_getFlashApplInfo"

    def set_values(self, values: Sequence[int]) -> None:
        """KvApplMan_setFlashApplParameter: writes the values, the one item that can be written."""
        quads = (ctypes.c_int64 * max(1, len(values)))(*values)
        self.target.call("KvApplMan_setFlashApplParameter", self.id, Item.FLASH_VALUES, quads, 8 * len(values))

    def load(self) -> None:
        """KvApplMan_loadFlashAppl."""
        self.target.call("KvApplMan_loadFlashAppl", self.id)

    def clear(self) -> None:
        """KvApplMan_clearFlashAppl: removes it from the flash memory."""
        self.target.call("KvApplMan_clearFlashAppl", self.id)


class Group:
    """A group of application processes, one per slot. Its end sends nothing; the processes stay on their targets.

    :param targets: 1 to 128 targets; None leaves a slot empty
    """

    def __init__(self, targets: Sequence[Optional[Target]]) -> None:
        self.targets = list(targets)
        self.ids = [0] * len(self.targets)  #: per slot the application ID; 0 before it is registered
        self._handle = c_handle()
        with Pool() as pool:
            status = manager.KvApplMan_createApplGroupHandle_2(
                pool, *self._slots(), len(self.targets), ctypes.byref(self._handle)
            )
            self._finish(status, "KvApplMan_createApplGroupHandle_2", pool)

    def _slots(self) -> tuple[Any, Any]:
        handles = c_handle * max(1, len(self.targets))
        return (
            handles(*(target.device if target else c_handle() for target in self.targets)),
            handles(*(target.access if target else c_handle() for target in self.targets)),
        )

    def _finish(self, status: int, function: str, pool: Pool) -> None:
        first = next((target for target in self.targets if target), None)
        if first is None:
            raise Error(function, status, pool.messages())
        first.finish(status, function, pool)

    def close(self) -> None:
        """KvApplMan_deleteApplGroupHandle."""
        if self._handle:
            with Pool() as pool:
                manager.KvApplMan_deleteApplGroupHandle(pool, self._handle)
            self._handle = c_handle()

    def __enter__(self) -> Group:
        return self

    def __exit__(
        self, kind: Optional[type[BaseException]], raised: Optional[BaseException], trace: Optional[TracebackType]
    ) -> None:
        self.close()

    def register(self, number: int) -> Application:
        """KvApplMan_registerAppl_2: registers the process of a slot, from 1, in ascending order. When only the last step
        fails, `ids` has the ID of a process that the target knows all the same."""
        if not 1 <= number <= len(self.targets):
            raise IndexError(f"no slot {number}")
        target = self.targets[number - 1]
        if target is None:
            raise ValueError(f"slot {number} is empty")
        id = ctypes.c_uint32()
        try:
            target.call("KvApplMan_registerAppl_2", self._handle, number, ctypes.byref(id))
        finally:
            self.ids[number - 1] = id.value or self.ids[number - 1]
        return Application(target, id.value)

    def download(
        self,
        files: Sequence[Optional[PathLike]],
        *,
        option: int = 0,
        target_paths: Sequence[Optional[str]] = (),
        progress: Optional[ProgressCallback] = None,
    ) -> None:
        """KvApplMan_downloadApplUtf8: brings all processes onto their targets, once each is registered; one binary per
        slot, and for an empty slot None."""
        count = len(self.targets)
        if len(files) != count or len(target_paths) > count:
            raise ValueError("a group is downloaded with one file per slot")
        announced = [path.encode() if path else None for path in target_paths]
        texts = ctypes.c_char_p * count
        bridge = _ProgressBridge(progress)
        with Pool() as pool:
            status = manager.KvApplMan_downloadApplUtf8(
                pool, *self._slots(), (ctypes.c_uint32 * count)(*self.ids),
                texts(*(None if file is None else _path(file) for file in files)), option, count, bridge.function, None,
                texts(*announced),
            )
            bridge.surface()
            self._finish(status, "KvApplMan_downloadApplUtf8", pool)
