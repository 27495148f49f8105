"""An instrument of one machine, used from another: the server, its invitations, the tool."""

import datetime
import json
import os
import pathlib
import platform
import re
import signal
import socket
import ssl
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

    def test_what_the_keeper_sees(self):
        self.start("--log-json")
        self.connect("anna")
        self.invite("bert", "--days", "3")
        for name, days in (("anna", 365), ("bert", 3)):
            end = datetime.datetime.utcnow() + datetime.timedelta(days)
            self.assertRegex(self.keeper("clients").stdout, f"{name} .* until {end:%Y-%m-%d}")
        run = self.tool("anna", "run", "A-1", "absorbance-measurement")
        self.assertEqual(run.returncode, 0, run.stderr)
        with socket.create_connection(("127.0.0.1", self.port)) as raw:
            raw.sendall(b"no TLS at all, but as long as the beginning of it would be")
            raw.recv(100)
        self.await_log('"release"')
        lines = [json.loads(line) for line in self.log.read_text().splitlines()]
        events = [line["event"] for line in lines if line.get("client", "anna") == "anna"]
        for event in ("listening", "connect", "lease", "start", "run", "release", "transport"):
            self.assertIn(event, events)
        start = next(line for line in lines if line["event"] == "start")
        self.assertIn("wavelength", start["configuration"])

    def test_completion(self):
        """Both shells offer what the help names and who was invited."""
        scripts = pathlib.Path(__file__).parents[2] / "server" / "completion"
        home = self.folder / "home"
        program = self.folder / "qeldevicesd"
        program.write_text(f"#!/bin/sh\nexec '{SERVER}' --state '{home}' \"$@\"\n")
        program.chmod(0o755)
        self.state = home
        self.invite("anna")
        shells = {
            "bash": f"""source '{scripts}/qeldevicesd.bash'
                compopt() {{ :; }}
                COMP_WORDS=(qeldevicesd "$@") COMP_CWORD=$#
                _qeldevicesd
                printf '%s\\n' "${{COMPREPLY[@]}}" """,
            "zsh": f"""words=(qeldevicesd "$@") CURRENT=$(( $# + 1 ))
                _files() {{ : }}
                _describe() {{
                    local candidate
                    for candidate in ${{(P)argv[-1]}}; do
                        [[ $candidate == $words[CURRENT]* ]] && print -r -- $candidate
                    done
                    return 0
                }}
                source '{scripts}/_qeldevicesd' """}
        for shell, script in shells.items():
            for words, expected in ((["inv"], {"invite"}), (["revoke", ""], {"anna"}),
                                    (["invite", "x", "--ro"], {"--role"}),
                                    (["--role", "op"], {"operate"})):
                with self.subTest(shell=shell, words=words):
                    offered = subprocess.run(
                        [shell, "-c", script, "-", *words], capture_output=True, text=True, check=True,
                        env={**os.environ, "PATH": f"{self.folder}:{os.environ['PATH']}"})
                    self.assertEqual(offered.stderr, "")
                    self.assertEqual(set(offered.stdout.split()), expected)

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

    def test_one_server_at_a_time(self):
        """Neither the folder nor the socket of a running one is taken, nor is any other file."""
        self.start()
        running = self.folder / "run" / "qeldevices" / "socket"
        document = self.folder / "document"
        document.write_text("mine")
        other = self.folder / "other"
        for state, name, why in (
                (self.state, running, f"socket '{running}' is used by another server"),
                (other, running, f"socket '{running}' is used by another server"),
                (self.state, other, f"folder '{self.state}' is used by another server"),
                (other, document, f"'{document}' is there already, and no socket"),
                (other, self.folder / ("x" * 100), "is too long")):
            with self.subTest(why):
                second = subprocess.run([SERVER, "--state", str(state), "--socket", str(name)],
                                        capture_output=True, text=True, timeout=PATIENCE)
                self.assertEqual(second.returncode, 1, second.stderr)
                self.assertIn(why, second.stderr)
        self.assertFalse(other.exists())
        self.assertEqual(document.read_text(), "mine")
        self.assertEqual(self.tool("anna", "connect", "--local").returncode, 0)
        self.connect("anna")

        # A killed one leaves its socket behind, and keeps nobody out.
        self.server.kill()
        self.server.wait(PATIENCE)
        self.assertTrue(running.is_socket())
        self.log.write_text("")
        self.start()
        self.assertEqual(self.tool("bert", "connect", "--local").returncode, 0)

    def test_wrong_words(self):
        """What is wrong is named, and nothing is stored."""
        for words, why in (
                (["invite"], "invite: the NAME of the client is missing"),
                (["revoke"], "revoke: the NAME of the client is missing"),
                (["invite", ""], "'' is no name"),
                (["invite", " "], "' ' is no name"),
                (["invite", "a\nb"], "'a\ufffdb' is no name"),
                (["invite", "a" * 65], "is no name: one has 1 to 64"),
                (["--listen", "127.0.0.1:99999"], "--listen: '99999' is no port"),
                (["--listen", "127.0.0.1:"], "--listen: '' is no port"),
                (["--listen", "127.0.0.1"], "--listen: '127.0.0.1' lacks the port"),
                (["--listen", ":7799"], "--listen: ':7799' lacks the address"),
                (["--listen", "::1:7799"], "stands in brackets"),
                (["--listen", "[::1:7799"], "stands in brackets"),
                (["--listen", "1:7799"], "'1' is neither a host name nor an IP address"),
                (["invite", "anna", "--host", ":"], "--host: ':' lacks the address"),
                (["invite", "anna", "--host", ""], "--host: '' lacks the address"),
                (["invite", "anna", "--host", "a:b"], "--host: 'b' is no port"),
                (["invite", "anna", "--host", "a b"], "'a b' is neither"),
                (["invite", "anna", "--host", "a:1\n"], "is no port"),
                (["invite", "anna", "--host", "[1.2.3.4]"], "'[1.2.3.4]' is neither"),
                (["invite", "anna", "--host", "http://x"], "'//x' is no port")):
            with self.subTest(words=words):
                told = self.keeper(*words)
                self.assertEqual((told.returncode, told.stdout), (2, ""), told.stderr)
                self.assertIn(why, told.stderr)
                self.assertNotIn("another server", told.stderr)
        self.assertFalse(self.state.exists())
        for command in ("results", "clients"):
            unreadable = subprocess.run([SERVER, "--state", __file__, command],
                                        capture_output=True, text=True, timeout=PATIENCE)
            self.assertEqual(unreadable.returncode, 1)
            self.assertIn("cannot be read: Not a directory", unreadable.stderr)
        for host, address in (("lab-pc.example", "lab-pc.example:7735"), ("[::1]", "[::1]:7735"),
                              ("10.0.0.1:80", "10.0.0.1:80")):
            invited = self.keeper("invite", host, "--host", host)
            self.assertEqual(json.loads(invited.stdout)["address"], address)

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
        self.assertEqual(stat.S_IMODE((self.state / "results").stat().st_mode), 0o700)
        for file in (self.state / "results").iterdir():
            self.assertEqual(stat.S_IMODE(file.stat().st_mode), 0o600, file)
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
        self.tells_absence("anna", "revoked")
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
        self.tells_absence("anna", "expired on 2020-01-01")
        self.await_log("refused client='anna' why='the invitation of \\\\'anna\\\\' has expired")
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

    def sign(self, folder, begin=-1, end=1, usage="clientAuth", name="guest"):
        """A certificate by the authority in `folder`, and its key."""
        made = self.folder / "made"
        made.mkdir(exist_ok=True)
        (made / "index").touch()
        (made / "config").write_text(
            f"[ca]\ndefault_ca=x\n[x]\ndatabase={made}/index\nnew_certs_dir={made}\n"
            f"rand_serial=yes\ndefault_md=sha256\nunique_subject=no\npolicy=p\n"
            f"[p]\ncommonName=supplied\n[e]\nextendedKeyUsage={usage}\n")

        def openssl(*arguments):
            subprocess.run(["openssl", *map(str, arguments)], check=True, capture_output=True)
        openssl("req", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes", "-subj",
                f"/CN={name}", "-keyout", made / "key", "-out", made / "request")
        now = datetime.datetime.utcnow()
        dates = [(now + datetime.timedelta(days)).strftime("%Y%m%d%H%M%SZ")
                 for days in (begin, end)]
        openssl("ca", "-batch", "-notext", "-config", made / "config", "-extensions", "e",
                "-in", made / "request", "-out", made / "certificate", "-startdate", dates[0],
                "-enddate", dates[1], "-cert", folder / "authority.pem",
                "-keyfile", folder / "authority.key")
        return {name: (made / name).read_text() for name in ("certificate", "key")}

    def test_certificates(self):
        """Whatever is wrong with one: a sentence for its owner, and nothing else."""
        self.start()
        self.connect("anna")
        ours = json.loads((self.folder / "anna.invitation").read_text())
        identity = json.loads((self.state / "clients.json").read_text())[0]["id"]
        good = self.sign(self.state, name=identity)
        other = self.sign(self.state)
        self.state, state = self.folder / "elsewhere", self.state
        stranger = json.loads(self.invite("eve").read_text())
        self.state = state
        for name, change, code, why in (
                ("good", good, 0, "Connected"),
                ("expired", self.sign(self.state, -9, -1, name=identity), 4, "has expired on 20"),
                ("too early", self.sign(self.state, 3, 9, name=identity), 4, "not valid before 20"),
                ("for servers", self.sign(self.state, usage="serverAuth", name=identity), 4,
                 "none for clients"),
                ("nobody's", other, 4, "nobody was invited under this certificate"),
                ("another's key", {**good, "key": other["key"]}, 4, "does not belong"),
                ("foreign", {**stranger, "authority": ours["authority"]}, 4, "by another server"),
                ("self signed", {**good, "authority": good["certificate"]}, 4, "by another server"),
                ("another server", stranger, 4, "not the server that has invited"),
                ("no PEM", {"certificate": "x", "key": "y"}, 4, "damaged"),
                ("absent", {"certificate": ""}, 1, "no invitation")):
            with self.subTest(name):
                file = self.folder / "changed.invitation"
                file.write_text(json.dumps({**ours, **change, "address": ours["address"]}))
                connected = self.tool(name, "connect", str(file))
                self.assertEqual(connected.returncode, code, connected.stderr)
                self.assertIn(why, connected.stdout + connected.stderr)
                # Our own sentence, and none by gRPC.
                self.assertNotRegex(connected.stderr, r"\.cc:\d")
                if code == 4:
                    self.assertIn(why, self.tool(name, "servers").stdout)
                    self.keeps_what_works(file, why)
        self.refused_by_the_server()

    def keeps_what_works(self, refused, why):
        refused.write_text(json.dumps({**json.loads(refused.read_text()), "server": "good"}))
        good = self.folder / "anna" / "qeldevices" / "connections" / "good.json"
        before = json.loads((self.folder / "anna.invitation").read_text())
        good.write_text(json.dumps({**before, "server": "good"}))
        kept = good.read_text()
        connected = self.tool("anna", "connect", str(refused))
        self.assertEqual((connected.returncode, good.read_text()), (4, kept), connected.stderr)
        self.assertIn(why, connected.stderr)

    def refused_by_the_server(self):
        """Who does not look at its own certificate is refused all the same, which the log says."""
        expired = self.sign(self.state, -9, -1)
        for certificate in (expired, self.sign(self.state, usage="serverAuth"), None):
            self.log.write_text("")
            context = ssl.create_default_context(cafile=str(self.state / "authority.pem"))
            if certificate:
                for name in ("certificate", "key"):
                    (self.folder / name).write_text(certificate[name])
                context.load_cert_chain(self.folder / "certificate", self.folder / "key")
            context.set_alpn_protocols(["h2"])
            with socket.create_connection(("127.0.0.1", self.port), timeout=PATIENCE) as raw:
                with self.assertRaises((ssl.SSLError, ConnectionError)):
                    with context.wrap_socket(raw, server_hostname="qeldevicesd") as secure:
                        if secure.recv(100) == b"":
                            raise ConnectionError
            self.await_log("transport what='.*(verify failed|did not return a certificate)")

    def tells_absence(self, user, why):
        """Whatever would have asked the server says that it could not, and nothing else changes."""
        for arguments, code in ((("list", "--json"), 0), (("list", "--driver", "Network"), 0),
                                (("results",), 4), (("results", "--json"), 4),
                                (("results", f"{platform.node()}/x"), 4), (("show", "A-1"), 3),
                                (("run", f"Network/{platform.node()}/x", "orientation"), 3)):
            with self.subTest(arguments=arguments, why=why):
                told = self.tool(user, *arguments)
                self.assertEqual(told.returncode, code, told.stderr)
                self.assertRegex(told.stderr,
                                 f"(?m)^qelctl: The server '{platform.node()}' is away: .*{why}")
                self.assertNotIn("A-1", told.stdout)
                if "--json" in arguments:
                    json.loads(told.stdout)
        self.assertNotIn("away", self.tool(user, "list", "--interface", "serial").stderr)

    def test_server_goes_and_comes(self):
        self.start()
        self.connect("anna")
        self.server.send_signal(signal.SIGSTOP)
        self.tells_absence("anna", "it has not answered yet")
        self.stop()
        self.tells_absence("anna", f"nothing listens at {self.host}:{self.port}")
        debugged = self.tool("anna", "--log", "debug", "servers")
        self.assertIn("Connection refused", debugged.stderr)
        self.assertNotIn("Connection refused", debugged.stdout)
        self.start()
        end = time.monotonic() + PATIENCE
        while "A-1" not in self.tool("anna", "list").stdout:
            self.assertLess(time.monotonic(), end)
        self.assertEqual(self.tool("anna", "run", "A-1", "orientation").returncode, 0)


if __name__ == "__main__":
    unittest.main(verbosity=2)
