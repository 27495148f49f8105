"""Laboratory plate readers from Python.

    import qeldevices as qel

    with qel.open("SIM-A-0001") as reader:
        plate = reader.absorbance(wavelengths=[450, 620])
    plate.to_pandas()
"""

from ._errors import (Aborted, CannotOpen, DeviceError, DeviceGone, Error, InvalidConfiguration,
                      NotOffered, TimedOut)
from ._instruments import Instrument, drivers, instruments
from ._reader import Feature, Reader, Setting, open
from ._results import Plate, Read, Result
from ._runtime import start
from ._simulation import Lab, simulate

__all__ = [
    "Aborted", "CannotOpen", "DeviceError", "DeviceGone", "Error", "Feature", "Instrument",
    "InvalidConfiguration", "Lab", "NotOffered", "Plate", "Read", "Reader", "Result", "Setting",
    "TimedOut", "drivers", "instruments", "open", "simulate", "start",
]
