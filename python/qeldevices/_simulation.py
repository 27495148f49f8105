"""A lab of simulated instruments, for tests of one's own programs."""

from __future__ import annotations

import json
import os
import shutil
import tempfile
import weakref
from typing import Any, Mapping

from ._runtime import native

_VARIABLE = "QELDEVICES_SIMULATOR"


# Those that hold, the last one now.
_labs: list[Lab] = []


class Lab:
    """A simulated lab; it lasts until it is left, closed or the process ends.

    Attributes:
        file: the scenario, for the environment variable QELDEVICES_SIMULATOR of other programs
    """

    def __init__(self, scenario: Mapping[str, Any]) -> None:
        folder = tempfile.mkdtemp(prefix="qeldevices-")
        self._remove = weakref.finalize(self, _remove, folder, os.getpid())
        self.file = os.path.join(folder, "lab.json")
        self.change(scenario)
        _labs.append(self)
        _use_last()

    def change(self, scenario: Mapping[str, Any]) -> None:
        """Makes it another lab: what is new in it is plugged in, what is gone is unplugged."""
        written = self.file + ".new"
        with open(written, "w", encoding="utf-8") as stream:
            json.dump(scenario, stream)
        os.replace(written, self.file)

    def close(self) -> None:
        """Puts the lab from before in its place. Repeating it does nothing."""
        if self in _labs:
            _labs.remove(self)
            _use_last()
            self._remove()

    def __enter__(self) -> Lab:
        return self

    def __exit__(self, *error: Any) -> None:
        self.close()


def _use_last() -> None:
    file = _labs[-1].file if _labs else os.environ.get(_VARIABLE, "")
    native().set_variable(_VARIABLE, file)


# Not in a process that was forked from the one with the lab.
def _remove(folder: str, owner: int) -> None:
    if os.getpid() == owner:
        shutil.rmtree(folder, ignore_errors=True)


def simulate(scenario: Mapping[str, Any]) -> Lab:
    """Has the simulator's instruments be those of a scenario, faults included.

    >>> import qeldevices as qel
    >>> with qel.simulate({"instruments": [{"model": "combined-384", "serial": "B-2"}]}):
    ...     [instrument.serial for instrument in qel.instruments()]
    ['B-2']
    """
    return Lab(scenario)
