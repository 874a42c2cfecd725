"""Messages of the library and of targets, and the exception that carries them."""

from __future__ import annotations

from dataclasses import dataclass, field

from ._library import c_handle, platform
from .constants import Status


def text_of(raw: bytes | None) -> str:
    return (raw or b"").decode("utf-8", "replace")


@dataclass(frozen=True)
class Message:
    """One message of a call."""

    code: int
    line: int  #: source line that reported it
    operation: str  #: function or internal operation that reported it
    signature: str  #: one of %s, %u, %d, %x per argument
    arguments: tuple[str, ...] = field(default=())
    text: str = ""  #: the whole message, arguments in place; empty when there is none

    def __str__(self) -> str:
        return f"0x{self.code:08x} {self.operation}: {self.text or '(no text)'}"


class Error(Exception):
    """A call has failed."""

    function: str  #: the name of the function that failed
    status: int  #: what it returned: mostly a Status
    messages: tuple[Message, ...]  #: what it reported, innermost first

    def __init__(self, function: str, status: int, messages: tuple[Message, ...]) -> None:
        super().__init__(function, status, messages)
        self.function, self.status, self.messages = function, status, messages

    def has(self, code: int) -> bool:
        """Whether a message of this code was reported."""
        return any(message.code == code for message in self.messages)

    def __str__(self) -> str:
        named = f" ({Status(self.status).name})" if self.status in Status.__members__.values() else ""
        return "\n  ".join([f"{self.function} failed with status {self.status}{named}", *map(str, self.messages)])


class Pool:
    """A pool of messages for one call."""

    def __init__(self) -> None:
        self._pool = platform.KvPlatform_createPool()
        if not self._pool:
            raise MemoryError
        self._as_parameter_ = c_handle(self._pool)

    def __enter__(self) -> Pool:
        return self

    def __exit__(self, *_: object) -> None:
        platform.KvPlatform_deletePool(self)

    def messages(self) -> tuple[Message, ...]:
        return tuple(self._message(index) for index in range(platform.KvPlatform_entryCount(self)))

    def _message(self, index: int) -> Message:
        count = platform.KvPlatform_entryArgumentCount(self, index)
        return Message(
            code=platform.KvPlatform_entryCode(self, index),
            line=platform.KvPlatform_entryLine(self, index),
            operation=text_of(platform.KvPlatform_entryOperation(self, index)),
            signature=text_of(platform.KvPlatform_entrySignature(self, index)),
            arguments=tuple(text_of(platform.KvPlatform_entryArgument(self, index, i)) for i in range(count)),
            text=text_of(platform.KvPlatform_entryText(self, index)),
        )
