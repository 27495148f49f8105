"""An instrument of one machine, used from another: the server, its invitations, the tool."""

import json
import os
import platform
import re
import stat
import subprocess
import time
import unittest

from harness import CLIENT_PLUGINS, PATIENCE, SERVER, SERVER_PLUGINS, ServerCase


class ServerTest(ServerCase):
    def test_three_commands(self):
        """invite, connect, run; and nobody listens on the network before the first of them."""
        self.start()
        self.assertNotIn(str(self.port), self.log.read_text())
        connected = self.connect("anna")
        self.assertIn("Network/", connected.stdout)
        run = self.tool("anna", "run", "A-1", "absorbance-measurement", "--format", "json")
        self.assertEqual(run.returncode, 0, run.stderr)
        self.check_plugin(json.loads(run.stdout))
        self.await_log("run client='anna'.*DF_AbsorbanceMeasurement.*outcome='result'")
        # It has arrived, so that nothing is kept.
        self.assertEqual(self.keeper("results").stdout, "")

        self.assertIn("1 instruments", self.tool("anna", "servers").stdout)
        name = connected.stdout.split("'")[1]
        gone = self.tool("anna", "disconnect", name)
        self.assertEqual(gone.returncode, 0, gone.stderr)
        self.assertNotIn("A-1", self.tool("anna", "list").stdout)

    def check_plugin(self, document):
        """The driver is named that has measured, wherever it is."""
        plugin = document["plugin"]
        self.assertRegex(plugin["file"], f"^{platform.node()}:/.*/simulator.so$")
        self.assertNotEqual(plugin["version"], "")

    def test_who_has_no_connection_pays_for_none(self):
        def loaded(*variables):
            command, environment = self.command("anna", "list")
            listed = subprocess.run(command, env={**environment, **dict(variables)}, check=False,
                                    capture_output=True, text=True, timeout=PATIENCE)
            self.assertEqual(listed.returncode, 0, listed.stderr)
            return set(re.findall(r"calling init: \S*/(network|isolation-driver|network-driver|"
                                  r"libgrpc\+\+)\.so", listed.stderr))
        trace = ("LD_DEBUG", "files")
        connection = self.folder / "connection"
        connection.write_text(json.dumps({"format": "qeldevices-connection", "server": "nobody",
                                          "address": f"unix:{self.folder}/nobody"}))
        self.assertEqual(loaded(trace), {"network"})
        self.assertEqual(loaded(trace, ("QELDEVICES_NETWORK", str(connection))),
                         {"network", "network-driver", "libgrpc++"})
        self.assertEqual(loaded(trace, ("QELDEVICES_ISOLATED", SERVER_PLUGINS)),
                         {"network", "isolation-driver", "libgrpc++"})

    def test_invited_at_the_same_time(self):
        """Before there is an identity even."""
        names = [f"guest-{i}" for i in range(6)]
        running = [subprocess.Popen([SERVER, "--state", str(self.state), "invite", name],
                                    stdout=subprocess.PIPE, text=True) for name in names]
        authorities = {json.loads(one.communicate(timeout=PATIENCE)[0])["authority"]
                       for one in running}
        self.assertEqual(len(authorities), 1)
        listed = self.keeper("clients").stdout
        for name in names:
            self.assertIn(name, listed)

    def test_secrets_are_private(self):
        self.start()
        self.connect("anna")
        files = [self.state / name for name in
                 ("authority.key", "authority.pem", "server.key", "server.pem", "clients.json")]
        files += (self.folder / "anna").rglob("*.json")
        files.append(self.folder / "run" / "qeldevices" / "socket")
        self.assertEqual(len(files), 7)
        for file in files:
            self.assertEqual(stat.S_IMODE(file.stat().st_mode) & 0o077, 0, file)

    def test_local_user(self):
        """Needs no invitation, and is let in by the permissions of the socket only."""
        missing = self.tool("anna", "connect", "--local")
        self.assertEqual(missing.returncode, 1)
        self.assertIn("no server runs on this machine", missing.stderr.replace("No ", "no "))
        self.start()
        self.assertEqual(stat.S_IMODE((self.folder / "run/qeldevices/socket").stat().st_mode),
                         0o600)
        end = time.monotonic() + PATIENCE
        while "Network/local/simulator/bench-1" not in (
                connected := self.tool("anna", "connect", "--local")).stdout:
            self.assertLess(time.monotonic(), end, connected.stderr)
        run = self.tool("anna", "run", "A-1", "absorbance-measurement", "--format", "json")
        self.assertEqual(run.returncode, 0, run.stderr)
        self.check_plugin(json.loads(run.stdout))
        self.assertIn("client='local'", self.log.read_text())
        # Nobody listens on the network for that.
        self.assertNotIn(str(self.port), self.log.read_text())

    def test_same_document_every_way(self):
        """Directly, in a process of its own, and from another machine."""
        self.start()
        self.connect("anna")
        laboratory = ("QELDEVICES_SIMULATOR", str(self.folder / "laboratory.json"))
        ways = {"direct": (SERVER_PLUGINS, [laboratory]),
                "isolated": (CLIENT_PLUGINS, [laboratory, ("QELDEVICES_ISOLATED", SERVER_PLUGINS)]),
                "network": (CLIENT_PLUGINS, [])}
        documents = {}
        for name, (plugins, variables) in ways.items():
            command, environment = self.command("anna" if name == "network" else "nobody", "run",
                                                "A-1", "absorbance-measurement", "--format", "json")
            command[command.index("--plugins") + 1] = plugins
            run = subprocess.run(command, env={**environment, **dict(variables)}, check=False,
                                 capture_output=True, text=True, timeout=PATIENCE)
            self.assertEqual(run.returncode, 0, run.stderr)
            document = json.loads(run.stdout)
            self.assertTrue(document["plugin"].pop("file").endswith("/simulator.so"))
            self.assertEqual(document.pop("device")["location"].split("/")[-1], "bench-1")
            documents[name] = re.sub(r'"(startedAt|elapsed)": ("[^"]*"|[0-9.]+)', "",
                                     re.sub(r'\d{4}-\d\d-\d\dT[0-9:.]+Z?', "TIME",
                                            json.dumps(document, sort_keys=True)))
        self.assertGreater(len(documents["direct"]), 2000)
        self.assertEqual(documents["isolated"], documents["direct"])
        self.assertEqual(documents["network"], documents["direct"])

    def test_rules_hold(self):
        """What is demanded of a driver is true of an instrument on another machine."""
        self.furnish(time_scale=0.02)
        self.start()
        self.connect("anna", "--role", "service")
        command, environment = self.command("anna", "check", "--unsafe", "--yes",
                                            CLIENT_PLUGINS + "/network.so")
        command = [word for word in command if word not in ("--plugins", CLIENT_PLUGINS)]
        checked = subprocess.run(command, env=environment, check=False, capture_output=True,
                                 text=True, timeout=3 * PATIENCE)
        self.assertEqual(checked.returncode, 0, checked.stdout[-3000:])
        rules = re.search(r"(\d+) rules hold, 0 failed", checked.stdout)
        self.assertGreater(int(rules.group(1)), 80)

    def test_one_operator_at_a_time(self):
        self.furnish(time_scale=4)
        self.start()
        self.connect("anna")
        self.connect("bert")
        command, environment = self.command("anna", "run", "A-1", "absorbance-measurement")
        with subprocess.Popen(command, env=environment, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL) as first:
            try:
                self.await_log("start client='anna'")
                second = self.tool("bert", "run", "A-1", "orientation")
                self.assertEqual(second.returncode, 4, second.stderr)
                self.assertRegex(second.stderr, "in use by 'anna' since 20..-..-.. ..:..:.. UTC")
            finally:
                first.kill()
        # Whoever is gone does not keep it, but what they were measuring is kept.
        self.await_log("release client='anna'")
        kept = self.keeper("results").stdout.splitlines()
        self.assertEqual(len(kept), 1)
        self.fetch_what_is_kept()
        self.assertEqual(self.tool("bert", "run", "A-1", "orientation").returncode, 0)

    def fetch_what_is_kept(self):
        listed = json.loads(self.tool("anna", "results", "--json").stdout)["results"]
        self.assertEqual([(one["serial"], one["feature"]) for one in listed],
                         [("A-1", "DF_AbsorbanceMeasurement")])
        name = listed[0]["result"]
        self.assertIn(name, self.tool("anna", "results").stdout)
        file = self.folder / "fetched.json"
        fetched = self.tool("anna", "results", name, "--output", str(file))
        self.assertEqual(fetched.returncode, 0, fetched.stderr)
        document = json.loads(file.read_text())
        self.assertEqual((document["format"], document["device"]["serial"]),
                         ("qeldevices-run", "A-1"))
        self.check_plugin(document)
        self.assertEqual(len(document["plate"]["reads"][0]["values"]), 8)
        # What is kept for one is nobody else's.
        self.assertEqual(json.loads(self.tool("bert", "results", "--json").stdout)["results"], [])
        for other in (name, name.split("/")[0] + "/../clients", "elsewhere/x", "x"):
            self.assertEqual(self.tool("bert", "results", other).returncode, 3, other)

    def test_roles(self):
        self.start()
        self.connect("olga", "--role", "observe")
        refused = self.tool("olga", "run", "A-1", "orientation")
        self.assertEqual(refused.returncode, 4)
        self.assertIn("observe", refused.stderr)
        # But they see what others do, and keep nobody from it.
        self.connect("anna")
        command, environment = self.command("olga", "watch", "A-1")
        with subprocess.Popen(command, env=environment, text=True, stdout=subprocess.PIPE) as watch:
            try:
                run = self.tool("anna", "run", "A-1", "absorbance-measurement", "--format", "json")
                self.assertEqual(run.returncode, 0, run.stderr)
                seen = []
                while not seen or seen[-1]["signal"] != "executed":
                    seen.append(json.loads(watch.stdout.readline()))
                self.assertEqual(seen[-1]["result"], json.loads(run.stdout)["result"])
                self.assertIn("transientValue", [one["signal"] for one in seen])
            finally:
                watch.kill()
        self.assertNotRegex(self.log.read_text(), "lease client='olga'")
        self.await_log("connect client='olga'")

    def test_revoked(self):
        self.start()
        self.connect("anna")
        self.assertEqual(self.keeper("revoke", "anna").returncode, 0)
        self.assertIn("revoked", self.keeper("clients").stdout)
        self.await_log("refused client='anna'|$")
        end = time.monotonic() + PATIENCE
        while "revoked" not in (told := self.tool("anna", "servers").stdout):
            self.assertLess(time.monotonic(), end, told)
        self.assertNotEqual(self.tool("anna", "run", "A-1", "orientation").returncode, 0)
        self.assertNotEqual(self.keeper("revoke", "anna").returncode, 0)

    def test_expired(self):
        self.start()
        self.connect("anna")
        file = self.state / "clients.json"
        clients = json.loads(file.read_text())
        clients[0]["expires"] = "2020-01-01T00:00:00Z"
        new = self.state / "clients.new"
        new.write_text(json.dumps(clients))
        new.replace(file)
        end = time.monotonic() + PATIENCE
        while "expired on 2020-01-01" not in (told := self.tool("anna", "servers").stdout):
            self.assertLess(time.monotonic(), end, told)
        self.await_log("refused client='anna' why='the invitation of 'anna' has expired")
        self.assertIn("expired", self.keeper("clients").stdout)

    def test_strangers(self):
        """A certificate of another authority, a server of another one, and no invitation at all."""
        self.start()
        self.connect("anna")
        ours = self.state
        self.state = self.folder / "elsewhere"
        stranger = json.loads(self.invite("eve").read_text())
        self.state = ours
        ours = json.loads((self.folder / "anna.invitation").read_text())
        for name, change in (("foreign", {"certificate": stranger["certificate"],
                                          "key": stranger["key"]}),
                             ("impostor", {"authority": stranger["authority"]})):
            with self.subTest(name):
                file = self.folder / f"{name}.invitation"
                file.write_text(json.dumps({**ours, **change, "server": name}))
                connected = self.tool(name, "connect", str(file))
                self.assertEqual(connected.returncode, 4, connected.stdout)
                self.assertNotIn("A-1", self.tool(name, "list").stdout)
        for broken in ("{}", "no JSON", json.dumps({**ours, "server": "../x"})):
            file = self.folder / "broken.invitation"
            file.write_text(broken)
            self.assertIn("no invitation", self.tool("mallory", "connect", str(file)).stderr)

    def test_server_goes_and_comes(self):
        self.start()
        self.connect("anna")
        self.stop()
        away = self.tool("anna", "list")
        self.assertEqual(away.returncode, 0)
        self.assertNotIn("A-1", away.stdout)
        self.start()
        end = time.monotonic() + PATIENCE
        while "A-1" not in self.tool("anna", "list").stdout:
            self.assertLess(time.monotonic(), end)
        self.assertEqual(self.tool("anna", "run", "A-1", "orientation").returncode, 0)


if __name__ == "__main__":
    unittest.main(verbosity=2)
