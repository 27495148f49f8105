"""What can go wrong, as one exception for each way in which it does."""

from __future__ import annotations

from typing import Any


class Error(Exception):
    """Whatever this package complains about.

    Attributes:
        sentence: what happened, in the language of start()
        code: the device's error code, for instance 0x8004; 0 when the device reported none
        id: the translation id of the code; empty when the code is 0
        details: what the driver adds to the code; may be empty
        instrument: the instrument's name and serial; may be empty
        delivered: what the device delivered although it is no result, for instance half a plate, as
            a dict of its values; it may be all there is of a measurement. None where nothing came
    """

    delivered: Any = None

    def __init_subclass__(cls) -> None:
        cls.__module__ = "qeldevices"  # as tracebacks should call it

    def __init__(self, sentence: str, *, code: int = 0, id: str = "", details: str = "",
                 instrument: str = "") -> None:
        self.sentence = sentence
        self.code = code
        self.id = id
        self.details = details
        self.instrument = instrument
        text = " ".join(part for part in (sentence, details) if part)
        super().__init__(f"{instrument}: {text}" if instrument else text)


class DeviceError(Error):
    """The device ended the run without a result, or with one that is none."""


class TimedOut(Error):
    """The run was not over by the end of its timeout."""


class Aborted(Error):
    """The run was cancelled, or an action that the device asked for was declined."""


class CannotOpen(Error):
    """There is no such instrument, or it did not open."""


class NotOffered(Error):
    """The device does not have the feature."""


class InvalidConfiguration(Error):
    """Settings are wrong. Nothing has moved.

    Attributes:
        problems: a sentence for each thing that is wrong
    """

    problems: list[str] = []


class DeviceGone(Error):
    """The device was closed or unplugged in the middle."""


def whole(sentence: str) -> str:
    """A sentence with a capital and a full stop, as it stands alone in a line."""
    sentence = sentence[:1].upper() + sentence[1:]
    return sentence if not sentence or sentence[-1] in ".?" or "\n" in sentence else sentence + "."
