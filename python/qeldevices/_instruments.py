"""The instruments that there are."""

from __future__ import annotations

from dataclasses import dataclass

from ._runtime import native


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
