"""What comes bit by bit, for a for loop and for asyncio's async for."""

from __future__ import annotations

import asyncio
from typing import Any, AsyncIterator, Callable, Generic, Iterator, TypeVar, cast

T = TypeVar("T")


class Stream(Generic[T]):
    """Comes until it is closed, or until what it comes from has ended.

    Both ``for`` and ``async for`` take from it; leaving the loop leaves it open.
    """

    def __init__(self, source: Any, make: Callable[[tuple[Any, ...]], T]) -> None:
        self._source = source
        self._make = make

    def __iter__(self) -> Iterator[T]:
        return self

    def __next__(self) -> T:
        return self._make(self._source.take(-1))

    def __aiter__(self) -> AsyncIterator[T]:
        return self

    async def __anext__(self) -> T:
        try:
            return self._make(await take(self._source))
        except EndOfStream:
            raise StopAsyncIteration from None

    def close(self) -> None:
        """Ends it, once what has come by now is taken."""
        self._source.close()

    def __enter__(self) -> Stream[T]:
        return self

    def __exit__(self, *error: Any) -> None:
        self.close()


_ENDED = object()


async def take(source: Any) -> tuple[Any, ...]:
    """The next that comes, for a task of asyncio.

    Raises:
        EndOfStream: nothing comes any more
    """
    letter = _taken(source)
    if letter is None:
        loop = asyncio.get_running_loop()
        readable = asyncio.Event()
        loop.add_reader(source.fileno(), readable.set)
        try:
            while letter is None:
                await readable.wait()
                readable.clear()
                letter = _taken(source)
        finally:
            loop.remove_reader(source.fileno())
    if letter is _ENDED:
        raise EndOfStream
    return cast("tuple[Any, ...]", letter)


class EndOfStream(Exception):
    """Nothing comes any more. A coroutine cannot raise StopIteration."""


def _taken(source: Any) -> Any:
    try:
        return source.take(0)
    except StopIteration:
        return _ENDED
