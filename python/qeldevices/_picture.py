"""A plate as a notebook shows it."""

from __future__ import annotations

import html as escaping
from typing import TYPE_CHECKING

import numpy as np

if TYPE_CHECKING:
    from ._results import Plate, Read

# From low to high; light enough for black letters.
_RAMP = ((247, 251, 255), (198, 219, 239), (158, 202, 225), (107, 174, 214), (253, 174, 97))
_CELL = "padding:2px 4px;text-align:right;font-size:80%;"


def html(plate: Plate) -> str:
    """One coloured table for each read, without anything to load."""
    caption = (f"{plate.instrument.name} {plate.instrument.serial}, "
               f"{plate.started_at:%Y-%m-%d %H:%M:%S} UTC")
    tables = "".join(_table(plate, read) for read in plate.reads)
    return f"<p>{escaping.escape(caption)}</p>{tables}"


def _table(plate: Plate, read: Read) -> str:
    from ._results import well_name

    finite = read.values[np.isfinite(read.values)]
    low, high = (float(finite.min()), float(finite.max())) if finite.size else (0.0, 0.0)
    title = plate.unit if read.label == plate.unit else f"{read.label} ({plate.unit})"
    lines = ["<table style='border-collapse:collapse;color:black'>"
             f"<caption>{escaping.escape(title)}</caption><tr><th></th>"
             + "".join(f"<th style='{_CELL}'>{column + 1}</th>" for column in range(plate.columns))
             + "</tr>"]
    saturated = np.zeros(read.values.shape, bool) if read.maximum is None else read.saturated
    for row in range(plate.rows):
        name = well_name(row, 0)[:-1]
        cells = "".join(_cell(float(value), low, high, bool(is_saturated))
                        for value, is_saturated in zip(read.values[row], saturated[row]))
        lines.append(f"<tr><th style='{_CELL}'>{name}</th>{cells}</tr>")
    return "".join(lines) + "</table>"


def _cell(value: float, low: float, high: float, is_saturated: bool) -> str:
    if np.isnan(value):
        return f"<td style='{_CELL}'></td>"
    share = 1.0 if value > high else (value - low) / (high - low) if high > low else 0.0
    share = max(0.0, share)
    step = min(int(share * (len(_RAMP) - 1)), len(_RAMP) - 2)
    rest = share * (len(_RAMP) - 1) - step
    color = ",".join(str(round(a + (b - a) * rest)) for a, b in zip(_RAMP[step], _RAMP[step + 1]))
    text = f"{value:.4g}" + ("+" if is_saturated else "")
    return f"<td style='{_CELL}background:rgb({color})'>{text}</td>"
