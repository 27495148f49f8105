"""When the runs of a series begin, and how their results are kept."""

from __future__ import annotations

import os
import time
from typing import Any, Optional

from . import _native
from ._results import Path, Result


class Series:
    """The clock and the file of one series."""

    def __init__(self, every: float, count: Optional[int], keep: Optional[Path]) -> None:
        if every < 0 or (count is not None and count < 0):
            raise ValueError("every and count cannot be negative")
        self._every = every
        self._count = count
        self._next = 0.0  # when, by the monotonic clock; 0 before the first
        # At once, so that nobody loses a measurement to a mistyped path.
        self._file: Optional[_native.KeptFile] = None
        if keep is not None:
            self._file = _native.KeptFile(os.fspath(keep))
            self._before = "\n" if _is_torn(keep) else ""

    def is_unfinished(self) -> bool:
        return self._count is None or self._count > 0

    def pause(self) -> float:
        """The seconds until the next run begins, which is counted by this."""
        now = time.monotonic()
        wait = max(0.0, self._next - now) if self._next else 0.0
        self._next = now + wait + self._every
        if self._count is not None:
            self._count -= 1
        return wait

    def kept(self, result: Result) -> Result:
        """The result, once it is on the disk."""
        if self._file:
            self._file.add(self._before + result._ending.json(True) + "\n")
            self._before = ""
        return result

    def __enter__(self) -> Series:
        return self

    def __exit__(self, *error: Any) -> None:
        self._file = None


# What others have left behind stays a line of its own.
def _is_torn(path: Path) -> bool:
    if not os.path.isfile(path) or os.path.getsize(path) == 0:
        return False
    with open(path, "rb") as file:
        file.seek(-1, os.SEEK_END)
        return file.read() != b"\n"
