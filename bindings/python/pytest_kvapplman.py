"""For pytest: the fixture `kvtarget`, a simulated target that lives for one test.

A module of its own: pytest imports its plugins for every test run, also where the libraries are not at hand."""

from __future__ import annotations

from collections.abc import Iterator
from typing import TYPE_CHECKING

import pytest

if TYPE_CHECKING:
    from kvapplman.simulated import SimulatedTarget


@pytest.fixture
def kvtarget(request: pytest.FixtureRequest) -> Iterator[SimulatedTarget]:
    """A simulated target. The mark `kvtarget` gives it options: @pytest.mark.kvtarget("--cores=8", host="127.0.0.2"). With
    "--require-faults" among them, a test fails when a fault never happened."""
    from kvapplman.simulated import SimulatedTarget

    mark = request.node.get_closest_marker("kvtarget")
    arguments, named = (mark.args, mark.kwargs) if mark else ((), {})
    target = SimulatedTarget(*arguments, **named)
    yield target
    code = target.close()
    if code != 0:
        pytest.fail(f"kvtarget ended with {code}" + (": a fault rule has never fired" if code == 3 else ""))


def pytest_configure(config: pytest.Config) -> None:
    config.addinivalue_line("markers", "kvtarget(*options, **arguments): how the simulated target of a test is started")
