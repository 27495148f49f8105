"""Laboratory plate readers from Python.

    import qeldevices as qel

    with qel.open("SIM-A-0001") as reader:
        plate = reader.absorbance(wavelengths=[450, 620])
    plate.to_pandas()
"""

from ._errors import (Aborted, CannotOpen, DeviceError, DeviceGone, Error, InvalidConfiguration,
                      NotOffered, TimedOut)
from ._instruments import Change, Instrument, drivers, instruments, watch
from ._reader import AioReader, Event, Feature, Reader, Setting, open, open_async
from ._results import Plate, Read, Result, read_json, read_series
from ._runtime import start
from ._simulation import Lab, simulate
from ._stream import Stream

__all__ = [
    "Aborted", "AioReader", "CannotOpen", "Change", "DeviceError", "DeviceGone", "Error", "Event",
    "Feature", "Instrument", "InvalidConfiguration", "Lab", "NotOffered", "Plate", "Read", "Reader",
    "Result", "Setting", "Stream", "TimedOut", "drivers", "instruments", "open", "open_async",
    "read_json", "read_series", "simulate", "start", "watch",
]
