"""The instruments that there are."""

from __future__ import annotations

from dataclasses import dataclass
from typing import Any, Optional

from ._runtime import native
from ._stream import Stream


@dataclass(frozen=True)
class Instrument:
    """One attached instrument, as its driver reports it."""

    name: str
    serial: str
    driver: str
    location: str
    interface: str  #: for instance "USB HID"

    @property
    def path(self) -> str:
        """driver/location, the name of an instrument that is always there."""
        return f"{self.driver}/{self.location}"


def instruments() -> list[Instrument]:
    """All instruments that can be opened now.

    >>> import qeldevices as qel
    >>> [instrument.serial for instrument in qel.instruments()]
    ['SIM-A-0001', 'SIM-L-0001']
    """
    return [Instrument(**device) for device in native().instruments()]


def drivers() -> list[str]:
    """The names of the drivers that are loaded."""
    return sorted(native().drivers())


@dataclass(frozen=True)
class Change:
    """An instrument that has come, gone or become another."""

    kind: str  #: "arrived", "left" or "changed"
    instrument: Instrument
    before: Optional[Instrument] = None  #: it was, if it has changed


def watch(*, pause: float = 1.0) -> Stream[Change]:
    """Tells which instruments come and go, those first that are there already.

    Args:
        pause: between two searches, in seconds

    >>> import qeldevices as qel
    >>> with qel.watch() as changes:
    ...     change = next(changes)
    >>> change.kind, change.instrument.serial
    ('arrived', 'SIM-A-0001')
    """
    return Stream(native().watch(pause), _change)


def _change(letter: tuple[Any, ...]) -> Change:
    kind, *devices = letter
    return Change(kind, *(Instrument(**device) for device in devices))
