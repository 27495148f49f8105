"""Starts qelctl as users and scripts do, against laboratories made up for one test."""

import fcntl
import json
import os
import pathlib
import pty
import re
import select
import signal
import struct
import subprocess
import tempfile
import termios
import time
import unittest

QELCTL = os.environ["QELCTL"]
SOURCE = pathlib.Path(os.environ["QELDEVICES_SOURCE"])
DOCS = SOURCE / "docs"

# Enough for a machine that is busy with everything else; nothing waits for its end.
PATIENCE = 30


def reader(serial="A-1", model="absorbance-96", *faults, **more):
    """One instrument of a scenario."""
    return {"serial": serial, "model": model, "location": f"bench-{serial}",
            "faults": list(faults), **more}


def at_open(do, **more):
    return {"at": "open", "do": do, **more}


def at_run(do, **more):
    return {"at": "execute", "do": do, **more}


class Terminal:
    """A process on a terminal of its own; `screen` collects what it shows there."""

    def __init__(self, arguments, environment, columns=80, stdout=None):
        self.master, slave = pty.openpty()
        self.resize(columns)
        self.screen = ""
        self.process = subprocess.Popen(
            [QELCTL, *arguments], stdin=slave, stdout=stdout or slave, stderr=slave,
            env=environment, start_new_session=True,
            preexec_fn=lambda: fcntl.ioctl(0, termios.TIOCSCTTY, 0))
        os.close(slave)

    def resize(self, columns):
        fcntl.ioctl(self.master, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))

    def type(self, keys):
        os.write(self.master, keys.encode())

    def _read(self, seconds):
        if not select.select([self.master], [], [], seconds)[0]:
            return False
        try:
            data = os.read(self.master, 65536)
        except OSError:  # the last process has left the terminal
            data = b""
        self.screen += data.decode()
        return bool(data)

    def expect(self, pattern):
        """Waits until the screen shows `pattern` behind what was expected before."""
        end = time.monotonic() + PATIENCE
        while not (match := re.search(pattern, self.screen)):
            if time.monotonic() > end or not self._read(max(0, end - time.monotonic())):
                raise AssertionError(f"no {pattern!r} in {self.screen!r}")
        seen, self.screen = self.screen[:match.end()], self.screen[match.end():]
        return seen

    def finish(self):
        """Reads to the end; returns the exit code."""
        while self._read(PATIENCE):
            pass
        code = self.process.wait(PATIENCE)
        os.close(self.master)
        return code


class ToolTest(unittest.TestCase):
    """A folder and a laboratory for each test."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.scenario = self.folder / "laboratory.json"
        self.environment = {
            **{k: v for k, v in os.environ.items() if not k.startswith(("LC_", "LANG", "QT_"))},
            "LC_ALL": "C.UTF-8", "TERM": "xterm-256color",
            "QELDEVICES_SIMULATOR": str(self.scenario)}
        self.environment.pop("NO_COLOR", None)
        self.furnish(reader())

    def furnish(self, *instruments, time_scale=0):
        # In one step: the tool may be looking.
        text = json.dumps({"timeScale": time_scale, "instruments": instruments})
        fresh = self.scenario.with_suffix(".new")
        fresh.write_text(text, encoding="utf-8")
        fresh.replace(self.scenario)

    def start(self, *arguments, **options):
        options = {"stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE,
                   "stderr": subprocess.PIPE, "env": self.environment, **options}
        process = subprocess.Popen([QELCTL, *map(str, arguments)], **options)
        self.addCleanup(self.end, process)
        return process

    @staticmethod
    def end(process):
        if process.poll() is None:
            process.kill()
        process.communicate()

    def run_tool(self, *arguments, code=0, **options):
        """Runs to the end; returns standard output and standard error."""
        process = self.start(*arguments, **options)
        output, errors = process.communicate(timeout=PATIENCE)
        output, errors = (output or b"").decode(), (errors or b"").decode()
        self.assertEqual(process.returncode, code, f"{arguments}: {output}{errors}")
        return output, errors

    def run_json(self, *arguments):
        return json.loads(self.run_tool(*arguments)[0])

    def on_terminal(self, *arguments, **options):
        terminal = Terminal(list(map(str, arguments)), self.environment, **options)
        self.addCleanup(terminal.process.wait)
        self.addCleanup(terminal.process.kill)
        return terminal

    def interrupt_when(self, process, line, number=signal.SIGINT):
        """Sends a signal once standard error has shown `line`."""
        shown = b""
        while line not in shown:
            byte = process.stderr.read1(4096)
            self.assertTrue(byte, f"{line!r} was never shown, but {shown!r}")
            shown += byte
        process.send_signal(number)

    def files(self):
        """What stands in the folder beside the laboratory, hidden files included."""
        return sorted(set(os.listdir(self.folder)) - {self.scenario.name})
