"""An open instrument."""

from __future__ import annotations

import asyncio
import inspect
import time
from dataclasses import dataclass
from typing import (Any, AsyncIterator, Generic, Iterator, Mapping, Optional, Type, TypeVar, Union,
                    cast)

from . import _native
from ._errors import CannotOpen, DeviceGone, NotOffered, whole
from ._instruments import Instrument
from ._results import Path, Plate, Result, result_of
from ._running import OnAction, Progress, check, finish, finish_async, title, written
from ._runtime import native
from ._series import Series
from ._stream import Stream
from ._texts import say

R = TypeVar("R", bound=Result)


def open(instrument: Union[str, Instrument], *, timeout: float = 30,
         on_action: Optional[OnAction] = None) -> Reader:
    """Opens an instrument.

    Args:
        instrument: one of instruments(), or its serial, its driver/location, or an unambiguous
            beginning of either or of its name
        timeout: how long it may take, in seconds
        on_action: is told what the user is to do, and answers whether that has been done. Without
            it, the user is asked in the terminal or the notebook; nobody there means no.

    Raises:
        CannotOpen: there is no such instrument, or it does not open

    >>> import qeldevices as qel
    >>> with qel.open("SIM-A-0001") as reader:
    ...     reader.absorbance(wavelengths=[450])["A1"] > 1
    True
    """
    handle, device = _found(instrument)
    check(finish(handle.run(None, "{}", timeout), False, on_action))
    return Reader(handle, device, on_action)


async def open_async(instrument: Union[str, Instrument], *, timeout: float = 30,
                     on_action: Optional[OnAction] = None) -> Reader:
    """open() for a task of asyncio; on_action may be a coroutine."""
    handle, device = await asyncio.to_thread(_found, instrument)
    check(await finish_async(handle.run(None, "{}", timeout), False, on_action))
    return Reader(handle, device, on_action)


def _found(instrument: Union[str, Instrument]) -> tuple[_native.Handle, dict[str, str]]:
    text = instrument.path if isinstance(instrument, Instrument) else instrument
    found = native().open(text)
    if isinstance(found, str):
        raise CannotOpen(whole(found))
    if found is None:
        raise CannotOpen(say("The driver does not know the instrument '{text}' any more.",
                             text=text))
    handle, device = found
    return handle, device


@dataclass(frozen=True)
class Setting:
    """One setting of a feature, as the driver describes it."""

    name: str
    sentence: str  #: what it may be, for people
    type: str
    default: Any = None  #: holds when the setting is left out
    is_required: bool = False
    minimum: Optional[float] = None
    maximum: Optional[float] = None
    step: Optional[float] = None
    unit: str = ""
    choices: tuple[Any, ...] = ()
    names: tuple[str, ...] = ()  #: of the choices
    length: Optional[int] = None  #: of a list that is not empty


def _setting(name: str, sentence: str, described: Mapping[str, Any]) -> Setting:
    known = {key: described.get(key) for key in ("minimum", "maximum", "step", "length", "default")}
    return Setting(name, sentence, str(described.get("type", "")),
                   is_required="default" not in described, unit=str(described.get("unit", "")),
                   choices=tuple(described.get("choices", ())),
                   names=tuple(described.get("names", ())), **known)


class _LiveDoc:
    """Documents a class with a text, and each of its objects with what it says of itself."""

    def __init__(self, text: str) -> None:
        self._text = text

    def __get__(self, feature: Any, owner: Any) -> str:
        return self._text if feature is None else str(feature._describe())


class Feature(Generic[R]):
    __doc__ = cast(str, _LiveDoc("""One feature of a reader: call it to run it.

    ``help(reader.absorbance)`` tells its settings, and so does ``reader.absorbance.settings``.
    """))

    def __init__(self, reader: Reader, number: int) -> None:
        self._reader = reader
        self._number = number

    def __call__(self, *, timeout: float = 600, progress: Progress = False,
                 on_action: Optional[OnAction] = None, **settings: Any) -> R:
        """Runs the feature and waits for its result.

        Args:
            timeout: how long it may take, waiting for the user included, in seconds; 0: for ever
            progress: a function that is told the progress from 0 to 1, or True for a bar
            on_action: answers for the user here; by default the reader's
            settings: of the feature; those left out have their defaults
        """
        run = self._reader._start(self._number, timeout, settings)
        ending = check(finish(run, progress, on_action or self._reader._on_action))
        return cast(R, result_of(ending))

    @property
    def descriptor(self) -> dict[str, Any]:
        """What the driver says of the feature."""
        return self._description()["descriptor"] or {}

    @property
    def settings(self) -> dict[str, Setting]:
        """What can be set, by name."""
        description = self._description()
        described = (description["descriptor"] or {}).get("settings", {})
        return {name: _setting(name, description["sentences"][name], entry)
                for name, entry in described.items()}

    @property
    def __signature__(self) -> inspect.Signature:
        plain = inspect.signature(Feature.__call__)
        options = [option for name, option in plain.parameters.items()
                   if name not in ("self", "settings")]
        own = [inspect.Parameter(setting.name, inspect.Parameter.KEYWORD_ONLY,
                                 default=inspect.Parameter.empty if setting.is_required
                                 else setting.default)
               for setting in self.settings.values() if setting.name.isidentifier()]
        return inspect.Signature(own + options)

    def _description(self) -> Any:
        for description in self._reader._descriptions():
            if description["number"] == self._number:
                return description
        raise NotOffered(say("The device does not have the feature."), instrument=self._reader.title)

    def _describe(self) -> str:
        description = self._description()
        lines = [f"{description['argument']} of {self._reader.title}", "", "Settings:"]
        for setting in self.settings.values():
            default = "required" if setting.is_required else f"default {setting.default!r}"
            lines.append(f"    {setting.name}: {setting.sentence}; {default}")
        if len(lines) == 3:
            lines[-1] = "It has no settings."
        return "\n".join(lines)

    def __repr__(self) -> str:
        return f"<feature {self._number} of {self._reader.title}>"


class AioFeature(Feature[R]):
    """A feature whose runs are awaited."""

    async def __call__(  # type: ignore[override]
            self, *, timeout: float = 600, progress: Progress = False,
            on_action: Optional[OnAction] = None, **settings: Any) -> R:
        """Runs the feature, as Feature does. Cancelling the task cancels the run."""
        run = self._reader._start(self._number, timeout, settings)
        ending = check(await finish_async(run, progress, on_action or self._reader._on_action))
        return cast(R, result_of(ending))


class _Known(Generic[R]):
    """A feature that every reader may have, as an attribute of Reader."""

    def __init__(self, number: int, result: Type[R]) -> None:
        self._number = number

    def __get__(self, reader: Any, owner: Any) -> Feature[R]:
        if reader is None:
            return cast("Feature[R]", self)
        return Feature(reader, self._number)


class _AioKnown(Generic[R]):
    """The same as an attribute of AioReader."""

    def __init__(self, number: int, result: Type[R]) -> None:
        self._number = number

    def __get__(self, reader: Any, owner: Any) -> AioFeature[R]:
        if reader is None:
            return cast("AioFeature[R]", self)
        return AioFeature(reader._reader, self._number)


@dataclass(frozen=True)
class Event:
    """Something that a device has reported.

    Kinds: "open", "busy" (value: bool), "features", "value" (what it sent in the middle of a run),
    "ended" (value: the result, or None), "action" (value: what the user is to do), "error" (value:
    the sentence; empty when the error is gone).
    """

    kind: str
    value: Any = None
    feature: Optional[str] = None


def _event(letter: tuple[Any, ...]) -> Event:
    kind, *facts = letter
    if kind == "value":
        return Event(kind, facts[1], facts[0])
    if kind == "ended":
        return Event(kind, facts[2] if facts[1] else None, facts[0])
    return Event(kind, facts[-1] if facts else None)


class Reader:
    """An open instrument. Made by open(); to be closed with close() or a with statement.

    It may be used from any thread: one run goes after another.
    """

    ambient_temperature = _Known(1, Result)
    absorbance = _Known(2, Plate)
    luminescence = _Known(3, Plate)
    calibration = _Known(4, Result)
    plate_detection = _Known(5, Result)
    firmware_info = _Known(6, Result)
    firmware_update = _Known(7, Result)
    reference_number = _Known(8, Result)
    orientation = _Known(9, Result)
    parts_aligned = _Known(10, Result)
    led_bar_effect = _Known(11, Result)

    def __init__(self, handle: _native.Handle, device: dict[str, str],
                 on_action: Optional[OnAction]) -> None:
        self._handle = handle
        self._on_action = on_action
        self.instrument = Instrument(**device)
        self.title = title(device)

    def run(self, feature: Union[str, int], *, timeout: float = 600, progress: Progress = False,
            on_action: Optional[OnAction] = None, **settings: Any) -> Result:
        """Runs any feature, also one that this package has never heard of.

        Args:
            feature: the name as in features, or the number
            timeout, progress, on_action, settings: as for each feature
        """
        return Feature[Result](self, _number_of(feature))(
            timeout=timeout, progress=progress, on_action=on_action, **settings)

    def series(self, feature: Union[str, int, None] = None, *, every: float,
               count: Optional[int] = None, keep: Optional[Path] = None, timeout: float = 600,
               progress: Progress = False, on_action: Optional[OnAction] = None,
               **settings: Any) -> Iterator[Result]:
        """Runs a feature again and again. What fails ends the series with its exception.

        Args:
            feature: as for run(); may be left out where the device measures in one way only
            every: seconds from the start of one run to the start of the next
            count: how many; without it, for ever
            keep: a file to which each result is added, one document a line, before it is delivered;
                read_series() reads it
            timeout, progress, on_action, settings: as for each feature
        """
        series = Series(every, count, keep)
        measure = Feature[Result](self, self._number_or_only(feature))

        def results() -> Iterator[Result]:
            with series:
                while series.is_unfinished():
                    time.sleep(series.pause())
                    yield series.kept(measure(timeout=timeout, progress=progress,
                                              on_action=on_action, **settings))

        return results()

    def events(self) -> Stream[Event]:
        """What the device reports from now on, for ``for`` and for ``async for``."""
        native()
        return Stream(self._handle.observe(), _event)

    @property
    def aio(self) -> AioReader:
        """The same for tasks of asyncio."""
        return AioReader(self)

    @property
    def features(self) -> list[str]:
        """What the device offers, in names for run()."""
        return [description["argument"] for description in self._descriptions()]

    @property
    def is_open(self) -> bool:
        """Whether the device is open."""
        state = native() and self._handle.state()
        return bool(state and state["is_open"])

    def close(self) -> None:
        """Closes the device. What runs is cancelled by the ladder. Repeating it does nothing."""
        self._handle.close()

    def __enter__(self) -> Reader:
        return self

    def __exit__(self, *error: Any) -> None:
        self.close()

    def __repr__(self) -> str:
        return f"<Reader {self.title}>"

    def _start(self, number: int, timeout: float, settings: dict[str, Any]) -> _native.Run:
        native()
        return self._handle.run(number, written(settings), timeout)

    def _number_or_only(self, feature: Union[str, int, None]) -> int:
        if feature is not None:
            return _number_of(feature)
        measuring = [one for one in self._descriptions() if one["is_measurement"]]
        if len(measuring) == 1:
            return int(measuring[0]["number"])
        names = ", ".join(one["argument"] for one in measuring)
        raise NotOffered(say("Which feature? There are {names}.", names=names) if measuring
                         else say("The device does not measure."), instrument=self.title)

    def _descriptions(self) -> list[dict[str, Any]]:
        native()
        descriptions = self._handle.features()
        if descriptions is None:
            raise DeviceGone(say("The reader has been closed."), instrument=self.title)
        return descriptions


class AioReader:
    """A reader for tasks of asyncio: what takes time is awaited."""

    ambient_temperature = _AioKnown(1, Result)
    absorbance = _AioKnown(2, Plate)
    luminescence = _AioKnown(3, Plate)
    calibration = _AioKnown(4, Result)
    plate_detection = _AioKnown(5, Result)
    firmware_info = _AioKnown(6, Result)
    firmware_update = _AioKnown(7, Result)
    reference_number = _AioKnown(8, Result)
    orientation = _AioKnown(9, Result)
    parts_aligned = _AioKnown(10, Result)
    led_bar_effect = _AioKnown(11, Result)

    def __init__(self, reader: Reader) -> None:
        self._reader = reader

    async def run(self, feature: Union[str, int], *, timeout: float = 600,
                  progress: Progress = False, on_action: Optional[OnAction] = None,
                  **settings: Any) -> Result:
        """Reader.run(), to be awaited."""
        return await AioFeature[Result](self._reader, _number_of(feature))(
            timeout=timeout, progress=progress, on_action=on_action, **settings)

    async def series(self, feature: Union[str, int, None] = None, *, every: float,
                     count: Optional[int] = None, keep: Optional[Path] = None, timeout: float = 600,
                     progress: Progress = False, on_action: Optional[OnAction] = None,
                     **settings: Any) -> AsyncIterator[Result]:
        """Reader.series(), for ``async for``."""
        measure = AioFeature[Result](self._reader, self._reader._number_or_only(feature))
        with Series(every, count, keep) as series:
            while series.is_unfinished():
                await asyncio.sleep(series.pause())
                yield series.kept(await measure(timeout=timeout, progress=progress,
                                                on_action=on_action, **settings))

    async def close(self) -> None:
        """Reader.close(), to be awaited."""
        await asyncio.to_thread(self._reader.close)


def _number_of(feature: Union[str, int]) -> int:
    if isinstance(feature, int):
        return feature
    found = native().find_feature(feature)
    if isinstance(found, str):
        raise NotOffered(whole(found))
    return int(found)
