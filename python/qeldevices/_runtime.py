"""Starting and ending the library in this process."""

from __future__ import annotations

import atexit
import os
import threading
from typing import Any, Iterable

from . import _native
from ._errors import Error
from ._texts import say, use_language

_lock = threading.Lock()
_started_in = 0  # the process that has started the library
_ended = False

# The ladder of a cancellation has three steps of two seconds, closing takes up to two more.
_PATIENCE = 9.0


def start(*, plugin_folders: Iterable[str | os.PathLike[str]] = (), language: str = "") -> None:
    """Starts the library, before anything else is used.

    Nobody has to call this: everything else starts the library in the user's language and with the
    installed drivers.

    Args:
        plugin_folders: folders to load drivers from; these go before the installed ones
        language: of all sentences, "en" or "de"; by default the user's
    """
    global _started_in
    with _lock:
        if _started_in:
            raise Error(say("The library has been started already; call start() before "
                            "anything else."))
        chosen = (language or _user_language())[:2].lower()
        use_language(chosen)
        folders = [os.fspath(folder) for folder in plugin_folders]
        for folder in folders:
            if not os.path.isdir(folder):
                raise Error(say("There is no plugin folder '{folder}'.", folder=folder))
        try:
            _native.start(folders, chosen)
        except RuntimeError as problem:
            raise Error(say(str(problem))) from None
        _started_in = os.getpid()
        atexit.register(_stop)


def native() -> Any:
    """The library, started."""
    if _started_in != os.getpid():
        if _started_in:
            raise Error(say("This process was forked from one that uses qeldevices, whose "
                            "instruments stay there. Start processes with multiprocessing's "
                            "'spawn' method."))
        try:
            start()
        except Error:
            if not _started_in:  # otherwise another thread was quicker
                raise
    if _ended:
        raise Error(say("The interpreter is exiting."))
    return _native


def _stop() -> None:
    global _ended
    if _started_in == os.getpid():
        _ended = True
        _native.stop(_PATIENCE)


def _user_language() -> str:
    for variable in ("LC_ALL", "LC_MESSAGES", "LANG"):
        if os.environ.get(variable):
            return os.environ[variable]
    return "en"
