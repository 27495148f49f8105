"""One run, from the first event to the last: waited for by a thread or by a task of asyncio."""

from __future__ import annotations

import asyncio
import base64
import datetime
import inspect
import json
import sys
from typing import Any, Awaitable, Callable, Optional, Union

from . import _native
from ._errors import (Aborted, CannotOpen, DeviceError, DeviceGone, Error, InvalidConfiguration,
                      NotOffered, TimedOut, whole)
from ._stream import EndOfStream, take
from ._texts import say

#: Is told the progress of a run, from 0 to 1; True shows a bar, if there is tqdm.
Progress = Union[bool, Callable[[float], Any]]
#: Is told what the user is to do, and answers whether that has been done.
OnAction = Callable[[str], Union[bool, Awaitable[bool]]]


def written(settings: dict[str, Any]) -> str:
    """Settings as the JSON text that the library reads."""
    try:
        return json.dumps(settings, default=_plain, allow_nan=False)
    except (TypeError, ValueError) as problem:
        raise InvalidConfiguration(whole(say("settings cannot be written: {problem}", problem=problem))) from None


def _plain(value: Any) -> Any:
    if hasattr(value, "ravel"):  # an array; wells go row by row
        return value.ravel().tolist()
    if hasattr(value, "tolist"):
        return value.tolist()
    if isinstance(value, datetime.timedelta):
        return round(value / datetime.timedelta(milliseconds=1))
    if isinstance(value, (bytes, bytearray)):
        return base64.b64encode(value).decode()
    if isinstance(value, (tuple, range, set)):
        return list(value)
    raise TypeError(f"{type(value).__name__} is none of the types that settings have")


def ask_user(text: str) -> bool:
    """Asks in the terminal or the notebook; declines where nobody can be asked."""
    if not (sys.stdin and sys.stdin.isatty()) and "ipykernel" not in sys.modules:
        return False
    try:
        answer = input(say("{text} Done? [Y/n] ", text=text))
    except (EOFError, NotImplementedError, RuntimeError):
        return False
    return answer.strip().lower() in ("", "y", "yes", "j", "ja")


class Attendant:
    """Does what the events of one run ask for."""

    def __init__(self, run: _native.Run, progress: Progress, on_action: Optional[OnAction]) -> None:
        self._run = run
        self._on_action = on_action
        self._bar: Any = None
        self._progress: Optional[Callable[[float], Any]] = None
        if callable(progress):
            self._progress = progress
        elif progress:
            self._open_bar()

    def attend(self, event: tuple[Any, ...]) -> Optional[_native.Ending]:
        """The end of the run, if `event` is that."""
        if event[0] == "ended":
            ending: _native.Ending = event[1]
            return ending
        if event[0] == "progress" and self._progress:
            self._progress(event[1])
        elif event[0] == "action":
            answer = (self._on_action or ask_user)(event[2])
            if inspect.iscoroutine(answer):
                answer.close()
                raise TypeError("on_action is a coroutine; reader.aio awaits those")
            self._answer(event[1], bool(answer))
        return None

    async def attend_async(self, event: tuple[Any, ...]) -> Optional[_native.Ending]:
        if event[0] != "action":
            return self.attend(event)
        if self._on_action is None:
            answer: Any = await asyncio.to_thread(ask_user, event[2])
        else:
            answer = self._on_action(event[2])
            if inspect.isawaitable(answer):
                answer = await answer
        self._answer(event[1], bool(answer))
        return None

    def leave(self) -> None:
        if self._bar is not None:
            self._bar.close()

    def _answer(self, action: int, is_done: bool) -> None:
        if is_done:
            self._run.confirm(action)
        else:
            self._run.decline(action)

    def _open_bar(self) -> None:
        try:
            from tqdm.auto import tqdm  # type: ignore[import]
        except ImportError:
            return
        bar = tqdm(total=1.0, bar_format="{percentage:3.0f}% |{bar}| {elapsed}<{remaining}")
        self._bar = bar
        self._progress = lambda fraction: bar.update(fraction - bar.n)


def finish(run: _native.Run, progress: Progress, on_action: Optional[OnAction]) -> _native.Ending:
    """Waits for the end of a run. Whatever interrupts the wait cancels the run."""
    attendant = Attendant(run, progress, on_action)
    try:
        while True:
            event = run.take(-1)
            ending = attendant.attend(event) if event else None
            if ending is not None:
                return ending
    except StopIteration:
        raise DeviceGone(say("The reader has been closed.")) from None
    except BaseException:
        run.cancel()
        raise
    finally:
        attendant.leave()


async def finish_async(run: _native.Run, progress: Progress,
                       on_action: Optional[OnAction]) -> _native.Ending:
    """finish() for a task of asyncio: whoever cancels the task cancels the run."""
    attendant = Attendant(run, progress, on_action)
    try:
        while True:
            ending = await attendant.attend_async(await take(run))
            if ending is not None:
                return ending
    except EndOfStream:
        raise DeviceGone(say("The reader has been closed.")) from None
    except BaseException:
        run.cancel()
        raise
    finally:
        attendant.leave()


def check(ending: _native.Ending) -> _native.Ending:
    """Raises what a run without a result deserves."""
    if ending.kind == "result":
        return ending
    error: Error
    facts: dict[str, Any] = {"code": ending.code, "id": ending.id, "details": ending.details,
                             "instrument": title(ending.device)}
    if ending.configuration_problems:
        problems = [whole(problem) for problem in ending.configuration_problems]
        error = InvalidConfiguration(" ".join(problems), **facts)
        error.problems = problems
    elif ending.is_not_offered:
        error = NotOffered(whole(ending.sentence), **facts)
    else:
        kinds = {"cannot-open": CannotOpen, "aborted": Aborted, "timed-out": TimedOut,
                 "device-gone": DeviceGone}
        error = kinds.get(ending.kind, DeviceError)(whole(ending.sentence), **facts)
    error.delivered = ending.delivered
    raise error


def title(device: dict[str, str]) -> str:
    """An instrument's name and serial, as people know it."""
    name = device["name"] or f"{device['driver']}/{device['location']}"
    return f"{name} ({device['serial']})" if device["serial"] else name
