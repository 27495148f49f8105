"""A server of instruments and its clients, each a process, and a wire between them that can break."""

import json
import os
import pathlib
import re
import signal
import socket
import struct
import subprocess
import tempfile
import threading
import time
import unittest

QELCTL = os.environ["QELCTL"]
SERVER = os.environ["QELDEVICESD"]
CLIENT_PLUGINS = os.environ["CLIENT_PLUGINS"]
SERVER_PLUGINS = os.environ["SERVER_PLUGINS"]

# Enough for a machine that is busy with everything else; nothing waits for its end.
PATIENCE = 60


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class Proxy:
    """Carries bytes to a port, as well as it is told to."""

    def __init__(self, target):
        self.target = target
        self.is_hole = False
        self.delay = 0
        self.budget = None  # bytes from the server until the connection is reset
        self.connections = []
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.port = self.listener.getsockname()[1]
        threading.Thread(target=self.accept, daemon=True).start()

    def accept(self):
        while True:
            try:
                near, _ = self.listener.accept()
                far = socket.create_connection(("127.0.0.1", self.target))
            except OSError:
                if self.listener.fileno() < 0:
                    return
                near.close()
                continue
            self.connections.append((near, far))
            for source, sink in ((near, far), (far, near)):
                threading.Thread(target=self.carry, args=(source, sink, source is far),
                                 daemon=True).start()

    def carry(self, source, sink, is_answer):
        try:
            while data := source.recv(65536):
                time.sleep(self.delay)
                while self.is_hole:
                    time.sleep(0.05)
                if is_answer and self.budget is not None:
                    if self.budget < len(data):
                        sink.sendall(data[:self.budget])
                        self.budget = None
                        self.cut()
                        return
                    self.budget -= len(data)
                sink.sendall(data)
            sink.shutdown(socket.SHUT_WR)
        except OSError:
            pass

    def cut(self):
        """Resets every connection."""
        for pair in self.connections:
            for end in pair:
                try:
                    end.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
                    end.shutdown(socket.SHUT_RDWR)
                except OSError:
                    pass
                end.close()
        self.connections.clear()

    def close(self):
        self.listener.close()
        self.cut()


class ServerCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.state = self.folder / "state"
        self.host = "127.0.0.1"
        self.server_prefix = []
        self.tool_prefix = []
        self.port = free_port()
        self.log = self.folder / "log"
        self.furnish(time_scale=0.1)
        self.server_environment = {**os.environ,
                                   "QELDEVICES_SIMULATOR": str(self.folder / "laboratory.json")}
        self.server = None
        self.proxy = None

    def furnish(self, time_scale):
        (self.folder / "laboratory.json").write_text(json.dumps({"instruments": [
            {"model": "absorbance-96", "serial": "A-1", "seed": 7, "timeScale": time_scale}]}))

    def keeper(self, *arguments):
        return subprocess.run([SERVER, "--state", str(self.state), *arguments],
                              capture_output=True, text=True, timeout=PATIENCE)

    def start(self, *options):
        with self.log.open("a") as log:
            self.server = subprocess.Popen(
                [*self.server_prefix, SERVER, "--state", str(self.state), "--socket", str(self.folder / "run" / "qeldevices" / "socket"),
                 "--plugins", SERVER_PLUGINS, "--listen", f"{self.host}:{self.port}", *options],
                env=self.server_environment, stderr=log)
        self.addCleanup(self.stop)
        self.await_log("listening")

    def stop(self):
        if self.server:
            self.server.send_signal(signal.SIGCONT)
            self.server.terminate()
            self.server.wait(PATIENCE)
            self.server = None

    def await_log(self, pattern):
        end = time.monotonic() + PATIENCE
        while not re.search(pattern, self.log.read_text()):
            self.assertLess(time.monotonic(), end, f"no {pattern!r} in {self.log.read_text()!r}")
            time.sleep(0.02)

    def invite(self, name, *options):
        port = self.proxy.port if self.proxy else self.port
        invited = self.keeper("invite", name, "--host", f"{self.host}:{port}", *options)
        self.assertEqual(invited.returncode, 0, invited.stderr)
        file = self.folder / f"{name}.invitation"
        file.write_text(invited.stdout)
        return file

    def command(self, user, *arguments):
        home = self.folder / user
        home.mkdir(exist_ok=True)
        return ([*self.tool_prefix, QELCTL, "--plugins", CLIENT_PLUGINS, "--lang", "en", *arguments],
                {**os.environ, "XDG_CONFIG_HOME": str(home), "XDG_RUNTIME_DIR": str(self.folder / "run"),
                 "QELDEVICES_SIMULATOR": "/dev/null"})

    def tool(self, user, *arguments):
        command, environment = self.command(user, *arguments)
        return subprocess.run(command, env=environment, capture_output=True, text=True,
                              timeout=PATIENCE)

    def connect(self, user, *options):
        file = self.invite(user, *options)
        self.await_log(f"{self.host}:{self.port}")
        end = time.monotonic() + PATIENCE
        while True:
            connected = self.tool(user, "connect", str(file))
            if "A-1" in connected.stdout:
                return connected
            # The server may still be starting its drivers.
            self.assertLess(time.monotonic(), end, connected.stderr)

    def use_proxy(self):
        self.proxy = Proxy(self.port)
        self.addCleanup(self.proxy.close)
