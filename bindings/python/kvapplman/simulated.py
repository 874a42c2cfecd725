"""A simulated target, the program kvtarget, started and steered from Python."""

from __future__ import annotations

import json
import os
import shutil
import subprocess
import sys
import tempfile
import threading
from pathlib import Path
from typing import Any, Optional, Union

from ._library import directory

PROGRAM_VARIABLE = "KVTARGET"


def find_program() -> str:
    """The program kvtarget: the one that the environment names, else that which belongs to the library, else the
    PATH's."""
    named = os.environ.get(PROGRAM_VARIABLE)
    if named:
        return named
    name = "kvtarget.exe" if sys.platform == "win32" else "kvtarget"
    libraries = directory()
    for folder in [libraries, *list(libraries.parents)[:2]] if libraries else []:
        for program in (folder / name, folder / "bin" / name):
            if program.is_file():
                return str(program)
    found = shutil.which(name)
    if found is None:
        raise FileNotFoundError(f"{name} is not on the PATH; {PROGRAM_VARIABLE} names it")
    return found


class SimulatedTarget:
    """A running kvtarget. It ends with this object, and with this process.

    :param options: of the command line, for instance "--cores=8"; see `kvtarget --help`
    :param host: IPv4 address to listen on; a host knows a target by its address, so give each one of its own
    :param store: folder for what hosts transfer; without one a temporary folder, which is removed at the end
    """

    def __init__(
        self, *options: str, host: str = "127.0.0.1", store: Optional[Union[str, os.PathLike[str]]] = None
    ) -> None:
        self._temporary = tempfile.TemporaryDirectory(prefix="kvtarget-") if store is None else None
        self.store = Path(self._temporary.name if self._temporary else store or "")
        self._lock = threading.Lock()
        command = [find_program(), f"--listen={host}:0", f"--store={self.store}", "--control", *options]
        self._process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, encoding="utf-8")
        first = self._read()
        if not first.startswith("kvtarget listening on "):
            self.close()
            raise RuntimeError(f"kvtarget did not start, it ended with {self._process.returncode}")
        self.address = first.split()[-1]  #: "a.b.c.d:port", for Target

    def _read(self) -> str:
        assert self._process.stdout is not None
        return self._process.stdout.readline()

    def command(self, line: str) -> dict[str, Any]:
        """Gives a command, as docs/target.md lists them, and returns the answer. Raises a ValueError when the target
        refuses it, and an EOFError when it has ended."""
        assert self._process.stdin is not None
        with self._lock:
            try:
                self._process.stdin.write(line + "\n")
                self._process.stdin.flush()
                reply = self._read()
            except BrokenPipeError:
                reply = ""
        if not reply:
            raise EOFError("kvtarget has ended")
        answer: dict[str, Any] = json.loads(reply)
        if not answer["ok"]:
            raise ValueError(answer["error"])
        return answer

    def fault(self, rule: str) -> None:
        """Lets something go wrong on purpose, for instance "start@2:hang"; see docs/faults.md."""
        self.command(f"fault {rule}")

    def clear(self) -> None:
        """Takes all such rules back."""
        self.command("clear")

    def reboot(self, milliseconds: int = 0) -> None:
        """Restarts the target, which is away for this time and then knows nothing but its files."""
        self.command(f"reboot {milliseconds}")

    def drop(self) -> None:
        """Closes all connections."""
        self.command("drop")

    def crash(self, appl_id: int) -> None:
        """Lets a running process end by itself."""
        self.command(f"crash {appl_id}")

    def state(self) -> dict[str, Any]:
        """Everything that the target holds, and how often each rule has fired."""
        return self.command("state")

    def requests(self) -> list[dict[str, Any]]:
        """The latest requests that hosts have made."""
        requests: list[dict[str, Any]] = self.command("requests")["requests"]
        return requests

    def close(self) -> int:
        """Ends the program. Result: its exit code, for instance 3 when --require-faults was not met."""
        self._process.communicate()  # the end of its input ends it
        if self._temporary is not None:
            self._temporary.cleanup()
        return self._process.returncode

    def __enter__(self) -> SimulatedTarget:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def __repr__(self) -> str:
        return f"SimulatedTarget({self.address!r})"
