"""What a run delivers."""

from __future__ import annotations

import datetime
import json
import os
import re
import warnings
from dataclasses import dataclass
from typing import TYPE_CHECKING, Any, Optional, Union

import numpy as np

from . import _native
from ._errors import Error, whole
from ._instruments import Instrument
from ._running import title
from ._runtime import native
from ._texts import say

if TYPE_CHECKING:
    import pandas  # type: ignore[import]

Path = Union[str, "os.PathLike[str]"]


class Result:
    """What one run has delivered, with everything that was known of the run.

    Attributes:
        feature: the enumerator, for instance "DF_Orientation"
        instrument: where it comes from
        configuration: the settings that the run had, those left out included
        started_at: when the run was started, in UTC
        elapsed: how long it took, in seconds
    """

    def __init__(self, ending: _native.Ending) -> None:
        self._ending = ending
        self.feature: str = ending.feature
        self.instrument = Instrument(**ending.device)
        self.started_at: datetime.datetime = ending.started_at
        self.elapsed: float = ending.elapsed

    @property
    def configuration(self) -> dict[str, Any]:
        return self._ending.configuration

    @property
    def value(self) -> Any:
        """What the device delivered: a number, a text, a dict or None.

        Enumerators are their names, milliseconds are whole numbers.
        """
        return self._ending.value

    @property
    def unit(self) -> str:
        """The unit of the value; empty for one without."""
        descriptor = self._ending.descriptor
        return str(descriptor.get("unit", "")) if isinstance(descriptor, dict) else ""

    def to_json(self, file: Optional[Path] = None) -> Optional[str]:
        """The document of ``qelctl run --format json``, to the letter.

        Args:
            file: where to write it; without one the text is returned
        """
        return _written(self._ending.json(False), file)

    def __repr__(self) -> str:
        shown = f"{self.value!r} {self.unit}".rstrip()
        return f"<{self.feature} of {title(self._ending.device)}: {shown}>"


@dataclass(frozen=True)
class Read:
    """One read of a whole plate."""

    label: str  #: tells it from the other reads: "450 nm", or the unit
    wavelength: Optional[int]  #: in nm
    values: np.ndarray[Any, Any]  #: rows x columns, NaN where not measured; cannot be written to
    maximum: Optional[float]  #: of the detector; None when it is not known

    @property
    def saturated(self) -> np.ndarray[Any, Any]:
        """rows x columns: whether the well holds the value or more."""
        if self.maximum is None:
            raise Error(say("The detector's maximum is not known."))
        return self.values >= self.maximum


class Plate(Result):
    """A measured plate.

    ``plate[450]`` is the read at 450 nm, an array of rows x columns; ``plate["A1"]`` is a well: its
    value, or an array of one value for each read if there are several; ``plate[450, "A1"]`` is one
    number.

    Attributes:
        rows, columns: its size
        unit: of the values, "OD" or "RLU/s"
        reads: in the order of measurement
        measured_at: when the device began, in UTC; None when it did not tell
        temperature: inside the instrument, in °C; None when the device did not tell
        integration_time: for each well, in ms; None for absorbance
    """

    def __init__(self, ending: _native.Ending) -> None:
        super().__init__(ending)
        plate = ending.plate()
        self.rows: int = plate["rows"]
        self.columns: int = plate["columns"]
        self._unit: str = plate["unit"]
        self.measured_at: Optional[datetime.datetime] = plate["started_at"]
        self.temperature: Optional[float] = plate["temperature"]
        self.integration_time: Optional[int] = plate["integration_time"]
        self.reads = [Read(label, wavelength, values, plate["maximum"])
                      for label, wavelength, values in plate["reads"]]

    @property
    def unit(self) -> str:
        return self._unit

    @property
    def wavelengths(self) -> list[Optional[int]]:
        """Of the reads, in nm."""
        return [read.wavelength for read in self.reads]

    @property
    def values(self) -> np.ndarray[Any, Any]:
        """All reads in one array of reads x rows x columns."""
        return np.stack([read.values for read in self.reads])

    def read(self, wavelength: Optional[int] = None) -> Read:
        """The read at a wavelength in nm; without one, the only read."""
        found = [read for read in self.reads if wavelength in (None, read.wavelength)]
        if len(found) == 1 or (found and wavelength is not None):
            return found[0]
        labels = ", ".join(read.label for read in self.reads)
        raise KeyError(f"no read at {wavelength} nm; there are {labels}" if wavelength is not None
                       else f"which read? There are {labels}")

    def saturated(self, wavelength: Optional[int] = None) -> np.ndarray[Any, Any]:
        """rows x columns: whether the detector could not count any more. Then the well holds the
        value or more."""
        return self.read(wavelength).saturated

    def __getitem__(self, key: Union[int, str, tuple[int, str]]) -> Any:
        if isinstance(key, tuple):
            return float(self[key[0]][self._place(key[1])])
        if isinstance(key, str):
            row, column = self._place(key)
            values = np.array([read.values[row, column] for read in self.reads])
            return float(values[0]) if len(values) == 1 else values
        return self.read(key).values

    def to_pandas(self) -> pandas.DataFrame:
        """One line for each well and read, in the columns well, row, column, wavelength (nm), value
        and saturated. What holds for all of them, the unit above all, stands in the frame's attrs.
        """
        import pandas

        names = [well_name(row, column) for row in range(self.rows)
                 for column in range(self.columns)]
        wells = self.rows * self.columns
        frame = pandas.DataFrame({
            "well": names * len(self.reads),
            "row": np.tile(np.repeat(np.arange(1, self.rows + 1), self.columns), len(self.reads)),
            "column": np.tile(np.arange(1, self.columns + 1), self.rows * len(self.reads)),
            "wavelength": pandas.array(np.repeat(
                [-1 if read.wavelength is None else read.wavelength for read in self.reads], wells),
                dtype="Int64"),
            "value": np.concatenate([read.values.ravel() for read in self.reads]),
            "saturated": pandas.NA if self.reads[0].maximum is None else np.concatenate(
                [read.saturated.ravel() for read in self.reads]),
        })
        frame["wavelength"] = frame["wavelength"].mask(frame["wavelength"] < 0)
        frame.attrs = {"unit": self.unit, "instrument": self.instrument.name,
                       "serial": self.instrument.serial, "started_at": self.started_at,
                       "temperature": self.temperature, "integration_time": self.integration_time,
                       "configuration": self.configuration}
        return frame

    def to_csv(self, file: Optional[Path] = None, *, layout: str = "tidy") -> Optional[str]:
        """The plate as comma-separated values.

        Args:
            file: where to write them; without one the text is returned
            layout: "tidy" for one line a well, as ``qelctl run --format csv`` has it, or "plate" for
                one grid a read
        """
        if layout not in ("tidy", "plate"):
            raise ValueError(f"layout is 'tidy' or 'plate', not {layout!r}")
        return _written(self._ending.csv(layout == "plate").decode(), file)

    def _place(self, well: str) -> tuple[int, int]:
        match = re.fullmatch(r"([A-Za-z]+)([0-9]+)", well)
        if match:
            row = 0
            for letter in match[1].upper():
                row = row * 26 + ord(letter) - ord("A") + 1
            column = int(match[2])
            if row <= self.rows and 1 <= column <= self.columns:
                return row - 1, column - 1
        last = well_name(self.rows - 1, self.columns - 1)
        raise KeyError(f"no well {well!r}; the plate has A1 to {last}")

    def __repr__(self) -> str:
        labels = [read.label for read in self.reads if read.label != self.unit]
        shown = ", ".join([f"{self.rows} x {self.columns}", *labels, self.unit])
        return f"<Plate of {title(self._ending.device)}: {shown}>"

    def _repr_html_(self) -> str:
        from ._picture import html

        return html(self)


def result_of(ending: _native.Ending) -> Result:
    """The result of a run that has one."""
    return Plate(ending) if ending.is_measurement else Result(ending)


def read_json(file: Path) -> Result:
    """The result in a document that to_json() or ``qelctl run --format json`` wrote.

    Raises:
        Error: the file is no such document
    """
    with open(file, encoding="utf-8") as stream:
        return _read(stream.read(), os.fspath(file))


def read_series(file: Path) -> list[Result]:
    """The results in a file that series() keeps, one document a line.

    A line that was not written to its end is left out with a warning.
    """
    results = []
    with open(file, encoding="utf-8") as stream:
        for number, line in enumerate(stream, 1):
            place = f"{os.fspath(file)}, line {number}"
            try:
                json.loads(line)
            except ValueError:
                warnings.warn(say("{place}: not written to its end", place=place))
            else:
                results.append(_read(line, place))
    return results


def _read(text: str, place: str) -> Result:
    try:
        return result_of(native().read_document(text))
    except ValueError as problem:
        raise Error(whole(f"{place}: {problem}")) from None


def well_name(row: int, column: int) -> str:
    """The name of a well; `row` and `column` count from 0.

    >>> well_name(0, 0), well_name(15, 23), well_name(26, 0)
    ('A1', 'P24', 'AA1')
    """
    letters = ""
    row += 1
    while row:
        row, rest = divmod(row - 1, 26)
        letters = chr(ord("A") + rest) + letters
    return f"{letters}{column + 1}"


def _written(text: str, file: Optional[Path]) -> Optional[str]:
    if file is None:
        return text
    with open(file, "w", encoding="utf-8", newline="") as stream:
        stream.write(text)
    return None
