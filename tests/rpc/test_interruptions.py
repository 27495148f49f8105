"""What becomes of a measurement when the network or the server fails in the middle of it."""

import json
import signal
import subprocess
import time
import unittest

from harness import PATIENCE, ServerCase


class InterruptionTest(ServerCase):
    def begin(self, user):
        """A measurement that the server has begun."""
        command, environment = self.command(user, "run", "A-1", "absorbance-measurement",
                                            "--format", "json")
        run = subprocess.Popen(command, env=environment, text=True, stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE)
        self.addCleanup(run.wait)
        self.addCleanup(run.kill)
        self.await_log(f"start client='{user}'")
        return run

    def plate(self, document):
        plate = json.loads(document)["plate"]
        del plate["startedAt"]
        return plate

    def test_network_fails(self):
        """The client comes back by itself, and the measurement is the same as ever."""
        self.furnish(time_scale=1)
        self.use_proxy()
        undisturbed = None
        for name in ("undisturbed", "cut", "cut in a message", "delayed", "black hole"):
            with self.subTest(name):
                # Its noise is the same after each start.
                self.start()
                user = name.replace(" ", "-")
                self.connect(user)
                run = self.begin(user)
                if name == "cut":
                    for _ in range(3):
                        self.proxy.cut()
                        time.sleep(0.3)
                elif name == "cut in a message":
                    self.proxy.budget = 1000
                elif name == "delayed":
                    self.proxy.delay = 0.2
                elif name == "black hole":
                    # Longer than it takes to be noticed.
                    self.proxy.is_hole = True
                    time.sleep(18)
                    self.proxy.is_hole = False
                output, errors = run.communicate(timeout=PATIENCE)
                self.assertEqual(run.returncode, 0, errors)
                undisturbed = undisturbed or self.plate(output)
                self.assertEqual(self.plate(output), undisturbed)
                log = self.log.read_text()
                self.assertEqual(log.count(f"start client='{user}'"), 1)
                self.assertEqual(log.count(f"run client='{user}'"), 1)
                # It has arrived.
                self.assertEqual(self.keeper("results").stdout, "")
                self.stop()
                self.proxy.delay = 0
                self.log.write_text("")

    def test_client_stays_away(self):
        self.furnish(time_scale=10)
        self.start("--grace", "1")
        self.use_proxy()
        self.connect("anna")
        self.connect("bert")
        run = self.begin("anna")
        port, self.proxy.target = self.proxy.target, 1
        self.proxy.cut()
        self.await_log("run client='anna'.*outcome='none'")
        self.await_log("release client='anna'")
        run.communicate(timeout=PATIENCE)
        self.assertEqual(run.returncode, 5)
        self.proxy.target = port
        self.assertEqual(self.tool("bert", "run", "A-1", "orientation").returncode, 0)

    def test_what_is_finished_is_kept(self):
        """Also when the server does not live to see it fetched."""
        self.furnish(time_scale=1)
        self.start()
        self.connect("anna")
        run = self.begin("anna")
        run.send_signal(signal.SIGSTOP)
        self.await_log("run client='anna'.*outcome='result'")
        self.server.kill()
        self.server.wait(PATIENCE)
        # As if it had been killed before it gave the file its name, and while it wrote another.
        whole, = (self.state / "results").iterdir()
        cut = whole.with_name("cut.json.part")
        cut.write_bytes(whole.read_bytes()[:-20])
        whole.rename(whole.with_name(whole.name + ".part"))
        self.start()
        self.await_log(f"problem file='{cut.with_suffix('')}'.*lost")
        run.send_signal(signal.SIGCONT)
        run.communicate(timeout=PATIENCE)
        kept = json.loads(self.tool("anna", "results", "--json").stdout)["results"]
        # The result may have been under way already; then it is in both places.
        self.assertEqual([one["serial"] for one in kept], ["A-1"])
        self.assertEqual(list((self.state / "results").iterdir()), [whole])

    def test_server_ends(self):
        """Stopped in good order, it says so; killed, it is known to have gone when it is back."""
        for name, end in (("stopped", signal.SIGTERM), ("killed", signal.SIGKILL)):
            with self.subTest(name):
                self.furnish(time_scale=100)
                self.start()
                self.connect(name)
                run = self.begin(name)
                self.server.send_signal(end)
                self.server.wait(PATIENCE)
                if end == signal.SIGKILL:
                    self.start()
                output, errors = run.communicate(timeout=PATIENCE)
                self.assertEqual(run.returncode, 5, errors)
                self.assertNotIn("result", json.loads(output))
                self.stop()


if __name__ == "__main__":
    unittest.main(verbosity=2)
