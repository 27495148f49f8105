"""What becomes of what a client is about when its server is killed, stopped or ended in order.

Each moment of the client meets each fate of the server, all at the same time, each row with a server
and a client of its own.
"""

import concurrent.futures
import json
import os
import pathlib
import shutil
import signal
import subprocess
import threading
import time
import traceback
import unittest

from harness import CLIENT_PLUGINS, PATIENCE, ServerCase

CLIENT = os.environ["CLIENT"]

DISCONNECTED = 0x8009
PLATE_DETECTION, ORIENTATION, PARTS_ALIGNED = 5, 9, 10
LABORATORY = {"timeScale": 0.1, "instruments": [{"model": "absorbance-96", "serial": "A-1", "faults": [
    {"at": "open", "nth": 2, "do": "delay", "delay": 1500},
    {"at": "execute", "feature": "orientation", "do": "delay", "delay": 3000},
    {"at": "execute", "feature": "parts-aligned", "do": "ask", "text": "request"}]}]}

# What no call of an application and no turn of its event loop takes, in ms: some times the half
# second that the first enumeration may take, as this machine may be busy.
BLOCKED = 4000


class Client:
    """An application, and everything that it has told."""

    def __init__(self, environment):
        self.process = subprocess.Popen([CLIENT, CLIENT_PLUGINS + "/network.so"], env=environment,
                                        text=True, stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.told = []
        self.news = threading.Condition()
        threading.Thread(target=self.listen, daemon=True).start()

    def listen(self):
        for line in self.process.stdout:
            with self.news:
                one = json.loads(line)
                if one.get("said") not in ("featuresChanged", "descriptorChanged"):
                    self.told.append(one)
                self.news.notify_all()

    def all(self, signal=None, **details):
        """What it has told of a signal, or of a call."""
        if signal:
            details["said"] = signal
        return [one for one in self.told
                if all(one.get(key) == value for key, value in details.items())]

    def wait(self, signal=None, count=1, **details):
        with self.news:
            if not self.news.wait_for(lambda: len(self.all(signal, **details)) >= count, PATIENCE):
                raise AssertionError(f"no {count} of {signal} {details} in {self.told}")
            return self.all(signal, **details)[count - 1]

    def call(self, *words):
        count = len(self.all(called=words[0])) + 1
        self.process.stdin.write(" ".join(map(str, words)) + "\n")
        self.process.stdin.flush()
        return self.wait(count=count, called=words[0])["returned"]

    def end(self):
        if not self.process.stdin.closed:
            self.process.stdin.close()
        ended = self.process.wait(PATIENCE)
        self.process.stdout.close()
        return ended


def children(process):
    return pathlib.Path(f"/proc/{process.pid}/task/{process.pid}/children").read_text().split()


def is_alive(process_id):
    try:
        return pathlib.Path(f"/proc/{process_id}/stat").read_text().rsplit(")")[1].split()[0] != "Z"
    except FileNotFoundError:
        return False


def connections(process, port):
    """The states of its TCP connections with the port; 1 is established, 10 listens."""
    own = set()
    for file in pathlib.Path(f"/proc/{process.pid}/fd").iterdir():
        try:
            own.add(os.readlink(file))
        except FileNotFoundError:
            pass
    lines = [line.split() for name in ("tcp", "tcp6")
             for line in pathlib.Path("/proc/net", name).read_text().splitlines()[1:]]
    return [int(fields[3], 16) for fields in lines if f"socket:[{fields[9]}]" in own
            and f":{port:04X}" in fields[1] + fields[2] and int(fields[3], 16) != 10]


class Row(ServerCase):
    """One server and one client of it."""

    client = None

    def eventually(self, holds, what):
        end = time.monotonic() + PATIENCE
        while not holds():
            self.assertLess(time.monotonic(), end, what)
            time.sleep(0.05)

    # Moments

    def begin(self):
        self.client = Client({**os.environ, "XDG_CONFIG_HOME": str(self.folder),
                              "QT_LOGGING_RULES": "qel.*=false",
                              "QELDEVICES_NETWORK": str(self.invitation)})
        self.addCleanup(self.client.process.kill)
        self.addCleanup(self.client.end)

    def opened(self):
        self.begin()
        self.eventually(lambda: self.client.call("create"), "it is not listed")
        self.client.call("open")
        self.client.wait("openChanged", flag=True)

    def hold(self):
        """What the client says from now on, nobody hears yet."""
        self.server.send_signal(signal.SIGSTOP)

    def first_contact(self):
        self.hold()
        self.begin()
        self.assertEqual(self.client.call("list"), 0)

    def enumeration(self):
        self.begin()
        self.eventually(lambda: self.client.call("list") == 1, "it is not listed")
        self.hold()
        self.assertEqual(self.client.call("list"), 1)

    def opening(self):
        self.opened()
        self.client.call("close")
        self.client.wait("openChanged", flag=False)
        # The second one takes a while.
        self.client.call("open")
        self.await_log("(?s)lease.*lease")

    def running(self):
        self.opened()
        # What the driver answers waits for the server.
        host = int(self.hosts[0])
        os.kill(host, signal.SIGSTOP)
        self.client.call("execute", ORIENTATION)
        self.await_log("start client='anna'")
        self.hold()
        os.kill(host, signal.SIGCONT)

    def action(self):
        self.opened()
        self.client.call("execute", PARTS_ALIGNED)
        self.client.wait("actionRequired")

    def closing(self):
        self.opened()
        self.hold()
        self.client.call("close")

    # What happens to the server

    def killed(self):
        self.server.kill()
        self.server.wait(PATIENCE)
        self.eventually(lambda: not any(map(is_alive, self.hosts)), "a host lives on")
        self.start(*self.options)

    def ended(self):
        self.server.terminate()
        self.server.send_signal(signal.SIGCONT)
        self.assertEqual(self.server.wait(PATIENCE), 0)
        # It has said so.
        self.lost()
        self.start(*self.options)

    def paused(self, seconds):
        self.hold()
        if self.moment == "action":
            self.client.call("confirm", self.client.wait("actionRequired")["action"])
        time.sleep(seconds)
        self.server.send_signal(signal.SIGCONT)

    def given_up(self):
        self.hold()
        self.lost()
        self.server.send_signal(signal.SIGCONT)

    # What is seen of it

    def lost(self):
        client = self.client
        if self.moment in ("first contact", "enumeration"):
            self.eventually(lambda: client.call("list") == 0, "it is still listed")
            return
        if self.moment == "closing":
            self.assertFalse(client.wait("openChanged", flag=False)["open"])
            return
        error = client.wait("errorChanged", error=DISCONNECTED)
        self.assertFalse(error["open"] or error["busy"], error)
        if self.moment in ("run", "action"):
            self.assertFalse(client.wait("executed")["flag"])

    def kept(self):
        client = self.client
        if self.moment in ("run", "action"):
            self.assertTrue(client.wait("executed")["flag"], client.told)
        elif self.moment in ("opening", "closing"):
            client.wait("openChanged", 3 if self.moment == "opening" else 2)
        self.assertEqual([one for one in client.all("errorChanged") if one["error"] != 0], [])

    def goes_on(self):
        """The instrument can be opened and run, whatever was."""
        client = self.client
        if not client.all(called="create", returned=True):
            self.eventually(lambda: client.call("create"), "it is not listed again")

        def is_open():
            return any(one["flag"] for one in client.all("openChanged")[-1:])

        def opens():
            # Where the server waits for the former session, it is in use at first.
            if not is_open():
                client.call("open")
                time.sleep(0.5)
            return is_open()
        self.eventually(opens, "it does not open")
        client.call("execute", PLATE_DETECTION)
        self.assertTrue(client.wait("executed", feature=PLATE_DETECTION)["flag"])

    def clean(self):
        """Each run had one ending, nobody was held up, and nothing is left."""
        client = self.client
        calls = len(client.all(called="execute"))
        self.assertEqual(len(client.all("executed")), calls, client.told)
        flags = [one["flag"] for one in client.all("openChanged")]
        self.assertEqual(flags, [i % 2 == 0 for i in range(len(flags))], client.told)
        self.assertEqual([one for one in client.told if one.get("took", 0) > BLOCKED], [])
        self.eventually(lambda: connections(client.process, self.port) == [1]
                        and connections(self.server, self.port) == [1], "more than one connection")
        self.assertEqual(len(children(self.server)), 1)
        client.call("delete")
        self.assertEqual(client.end(), 0)
        hosts = children(self.server)
        self.server.terminate()
        self.assertEqual(self.server.wait(PATIENCE), 0)
        self.assertFalse(any(map(is_alive, hosts)))
        files = [file.name for file in self.folder.rglob("*") if not file.is_dir()]
        kept = [name for name in files if name.endswith("-anna.json")]
        # Finished while the server stood still, and the client had given it up by then.
        self.assertEqual(len(kept), (self.moment, self.fate) == ("run", "given up"), kept)
        self.assertEqual(set(files) - set(kept) - self.files, set())
        self.assertNotIn("does not answer", self.log.read_text())

    def play(self, template, moment, fate):
        self.moment, self.fate = moment, fate
        strike, outcome, *self.options = FATES[fate]
        shutil.copytree(template, self.state)
        self.invitation = self.folder / "invitation"
        self.invitation.write_text((template.parent / "anna.invitation").read_text()
                                   .replace(":1\"", f":{self.port}\""))
        (self.folder / "laboratory.json").write_text(json.dumps(LABORATORY))
        self.start(*self.options)
        self.files = {file.name for file in self.folder.rglob("*") if not file.is_dir()}
        self.eventually(lambda: len(children(self.server)) == 1, "no host")
        self.hosts = children(self.server)
        MOMENTS[moment](self)
        strike(self)
        outcome(self)
        self.goes_on()
        self.clean()


MOMENTS = {"first contact": Row.first_contact, "enumeration": Row.enumeration,
           "opening": Row.opening, "run": Row.running, "action": Row.action,
           "closing": Row.closing}
# What happens, what is seen of it, and options of the server.
FATES = {
    # For longer than the client waits, not than a session does.
    "stopped for long": (lambda row: row.paused(17), Row.kept),
    "given up": (Row.given_up, Row.lost, "--grace", "1"),
    # For longer than a driver's process may take, not than a server may.
    "stopped": (lambda row: row.paused(7), Row.kept),
    "killed": (Row.killed, Row.lost),
    "ended in order": (Row.ended, Row.lost),
}


class MatrixTest(ServerCase):
    def test_matrix(self):
        self.port = 1
        self.invite("anna")
        rows = [(moment, fate) for fate in FATES for moment in MOMENTS]
        # Most of them wait.
        with concurrent.futures.ThreadPoolExecutor(len(rows)) as pool:
            for row, problem in zip(rows, pool.map(self.play, rows)):
                with self.subTest(", ".join(row)):
                    self.assertTrue(not problem, problem)

    def play(self, names):
        row = Row()
        try:
            row.setUp()
            row.play(self.state, *names)
        except Exception:
            told = row.client.told if row.client else []
            return f"{traceback.format_exc()}\nclient: {told}\n{row.log.read_text()}"
        finally:
            row.doCleanups()
        return ""


if __name__ == "__main__":
    unittest.main(verbosity=2)
