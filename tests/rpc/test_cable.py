"""Two machines: a server and its client, each with a network of its own, and a cable."""

import json
import os
import re
import subprocess
import sys
import time
import unittest

from harness import PATIENCE, ServerCase

SKIPPED = 77


def networks(*arguments, within=()):
    return subprocess.run([*within, "ip", *arguments], check=False, capture_output=True, text=True)


def inside(name):
    """What a command begins with that runs in the network; "ip netns exec" would mount things, too."""
    return ["nsenter", f"--net=/run/netns/{name}"]


def why_not():
    """Why this user may not make networks; nothing else is a reason not to test."""
    probe = f"qel-probe-{os.getpid()}"
    made = networks("netns", "add", probe)
    networks("netns", "delete", probe)
    return made.stderr if re.search("not permitted|denied", made.stderr) else ""


class CableTest(ServerCase):
    def setUp(self):
        super().setUp()
        self.lab, desk = (f"qel-{name}-{os.getpid()}" for name in ("lab", "desk"))
        for name in (self.lab, desk):
            self.do("netns", "add", name)
            self.addCleanup(networks, "netns", "delete", name)
        self.do("link", "add", "cable", "netns", self.lab, "type", "veth",
                "peer", "name", "cable", "netns", desk)
        for number, name in enumerate((self.lab, desk), 1):
            self.do("address", "add", f"10.77.35.{number}/24", "dev", "cable", within=inside(name))
            self.do("link", "set", "cable", "up", within=inside(name))
        self.host = "10.77.35.1"
        self.server_prefix = inside(self.lab)
        self.tool_prefix = inside(desk)

    def do(self, *arguments, within=()):
        done = networks(*arguments, within=within)
        self.assertEqual(done.returncode, 0, done.stderr)

    def test_cable(self):
        """Out for a while in the middle of a measurement, and for longer than it takes to notice."""
        self.furnish(time_scale=3)
        self.start()
        self.connect("anna")
        for seconds in (2, 20):
            with self.subTest(seconds=seconds):
                self.log.write_text("")
                command, environment = self.command(
                    "anna", "run", "A-1", "absorbance-measurement", "--format", "json")
                run = subprocess.Popen(command, env=environment, text=True,
                                       stdout=subprocess.PIPE, stderr=subprocess.PIPE)
                self.addCleanup(run.kill)
                self.await_log("start client='anna'")
                self.do("link", "set", "cable", "down", within=inside(self.lab))
                time.sleep(seconds)
                self.assertIsNone(run.poll(), "it has not waited")
                self.do("link", "set", "cable", "up", within=inside(self.lab))
                output, errors = run.communicate(timeout=PATIENCE)
                self.assertEqual(run.returncode, 0, errors)
                self.assertEqual(len(json.loads(output)["plate"]["reads"][0]["values"]), 8)
                self.assertEqual(self.log.read_text().count("run client='anna'"), 1)
                self.assertEqual(self.keeper("results").stdout, "")


if __name__ == "__main__":
    if reason := why_not():
        print("Not tested, for lack of privileges:", reason)
        sys.exit(SKIPPED)
    unittest.main(verbosity=2)
