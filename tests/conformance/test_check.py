"""The command "check" as a process: what it prints, how it ends, what it leaves behind."""

import json
import os
import pathlib
import subprocess
import sys
import time
import unittest
import xml.etree.ElementTree

import jsonschema

sys.path.insert(0, os.path.join(os.environ["QELDEVICES_SOURCE"], "tests", "qelctl"))
from harness import DOCS, PATIENCE, ToolTest, reader  # noqa: E402

PLUGINS = pathlib.Path(os.environ["PLUGINS"])
SIMULATOR = os.environ["SIMULATOR"]


def rules(*numbers):
    return [word for number in numbers for word in ("--rule", str(number))]


class Check(ToolTest):
    def test_json(self):
        schema = json.loads((DOCS / "qelctl-check.schema.json").read_text(encoding="utf-8"))
        jsonschema.Draft7Validator.check_schema(schema)
        rows = [("good", [401, 701], 0, ["passed", "not run"]),
                ("402-late-features", [402], 0, ["warning"]),
                ("401-wordless-refusal", [101, 301, 401, 601], 1,
                 ["passed", "passed", "failed", "not run"])]
        for plugin, numbers, code, outcomes in rows:
            with self.subTest(plugin):
                output, _ = self.run_tool("check", "--format", "json", *rules(*numbers),
                                          PLUGINS / f"{plugin}.so", code=code)
                report = json.loads(output)
                jsonschema.validate(report, schema, jsonschema.Draft7Validator)
                self.assertEqual([rule["outcome"] for rule in report["rules"]], outcomes)

    def test_german(self):
        """People read German; programs read what they always do."""
        for plugin, words in [
                ("103-incomplete-metadata", ["Plugin-Datei\n", "  103 VERLETZT       Die Metadaten",
                                             "gesehen: ", "Grund:   Mehr sieht",
                                             "Abhilfe: Vervollständigen Sie",
                                             "0 Regeln erfüllt, 1 verletzt"]),
                ("good", ["  103 erfüllt        Die Metadaten", "1 Regeln erfüllt, 0 verletzt"])]:
            arguments = ["check", *rules(103), PLUGINS / f"{plugin}.so"]
            code = int(plugin != "good")
            german, _ = self.run_tool("--lang", "de", *arguments, code=code)
            for text in words:
                self.assertIn(text, german)
            for form in "json", "junit":
                said = {self.run_tool("--lang", language, *arguments, "--format", form,
                                      code=code)[0] for language in ("de", "en")}
                self.assertEqual(len(said), 1)

    def test_incomplete(self):
        """What could not be judged is named, and is no success."""
        for arguments, code, words in [
                ([*rules(702)], 0, "moves parts"),
                (["--unsafe", *rules(702)], 9, "needs --yes"),
                (["--unsafe", "--yes", *rules(702)], 0, ""),
                (["--unsafe", *rules(501)], 0, "")]:
            with self.subTest(arguments=arguments):
                output, _ = self.run_tool("check", *arguments, PLUGINS / "good.so", code=code)
                self.assertIn(words, output)
                self.assertEqual("INCOMPLETE" in output, code == 9)

    def test_asks_the_person(self):
        """On a terminal somebody does what the driver asks for, or does not."""
        for keys, code in [("\n", 0), ("n\n", 9)]:
            with self.subTest(keys=keys):
                terminal = self.on_terminal("check", "--unsafe", *rules(702), PLUGINS / "good.so")
                terminal.expect(r"Take the plate out of the slot. Done\? ")
                terminal.type(keys)
                self.assertEqual(terminal.finish(), code, terminal.screen)

    def test_guides_the_person(self):
        """Somebody at the terminal moves a plate and a plug, and what comes of it is judged."""
        for done, again, code in [(True, [reader()], 0), (True, [], 1), (False, [], 9)]:
            with self.subTest(done=done, again=again):
                self.furnish(reader(), time_scale=0.5)
                terminal = self.on_terminal("check", "--guided", *rules(1402, 1403, 1404, 1405),
                                            SIMULATOR)
                for question, instruments in [("Pull the plug", []), ("Put the plug in", again)]:
                    terminal.expect(rf"{question}[^?]* Done\? ")
                    if done:
                        self.furnish(*instruments, time_scale=0.5)
                    terminal.type("\n" if done else "n\n" * 4)
                    if not done:
                        break
                self.assertEqual(terminal.finish(), code, terminal.screen)

    def test_junit(self):
        output, _ = self.run_tool("check", "--format", "junit", *rules(101, 103),
                                  PLUGINS / "103-incomplete-metadata.so", code=1)
        suite = xml.etree.ElementTree.fromstring(output)
        self.assertEqual([len(case.findall("failure")) for case in suite.iter("testcase")], [0, 1])

    def test_wrong_use(self):
        good = PLUGINS / "good.so"
        for arguments, code, words in [
                (["--rule", "7", good], 2, "'7'"),
                (["--rule", "0401", good], 2, "'0401'"),
                (["--format", "xml", good], 2, "'xml'"),
                (["--run-limit", "0", good], 2, "'0'"),
                (["--guided", good], 2, "terminal"),
                (["--soak", "soon", good], 2, "'soon'"),
                (["--soak", "1s", "--seed", "x", good], 2, "'x'"),
                (["--soak", "1s", "--format", "json", good], 2, "--format does not go with --soak"),
                ([PLUGINS / "none.so"], 2, "none.so"),
                ([PLUGINS], 2, "plugins"),
                ([good, good], 2, ""),
                (["--device", "G-9", "--rule", "401", good], 3, "'G-9'"),
                (["--driver", "bad", "--rule", "401", good], 3, "'bad'")]:
            with self.subTest(arguments=arguments):
                _, errors = self.run_tool("check", *arguments, code=code)
                self.assertIn(words, errors)

    def test_one_check_at_a_time(self):
        """Who would disturb another check says so, and judges what needs no instrument."""
        self.environment.update(GOOD_SERIAL="yes", XDG_RUNTIME_DIR=str(self.folder))
        first = self.start("check", *rules(601), PLUGINS / "601-no-ending.so")
        # Both are the first instrument of the driver "good".
        second = ["check", *rules(101, 601), PLUGINS / "good.so"]
        end = time.monotonic() + PATIENCE
        while not list(self.folder.glob("*.lock")):
            self.assertLess(time.monotonic(), end, "nothing is reserved")
            time.sleep(0.05)
        output, _ = self.run_tool(*second, code=9)
        self.assertIn(f"another check is at work with the instrument, process {first.pid} ", output)
        self.assertIn("1 rules hold", output)
        self.run_tool(*second, "--device", "G-2")
        soak = ["check", "--soak", "1s", PLUGINS / "good.so"]
        _, errors = self.run_tool(*soak, code=9)
        self.assertIn("another check", errors)
        first.send_signal(2)
        first.wait(PATIENCE)
        self.run_tool(*second)
        self.run_tool(*soak)

    def test_interrupted(self):
        """Whoever holds the instrument lets go of it and ends, too."""
        process = self.start("check", *rules(601), PLUGINS / "601-no-ending.so")
        end = time.monotonic() + PATIENCE
        children = []
        while not children and time.monotonic() < end:
            children = subprocess.run(["ps", "-o", "pid=", "--ppid", str(process.pid)], text=True,
                                      stdout=subprocess.PIPE, check=False).stdout.split()
        child = pathlib.Path("/proc") / children[0]
        time.sleep(1)
        process.send_signal(2)
        process.wait(PATIENCE)
        self.assertNotEqual(process.returncode, 0)
        while child.exists() and "Z" not in (child / "stat").read_text().split()[2]:
            self.assertLess(time.monotonic(), end, "it goes on without its parent")
            time.sleep(0.05)


if __name__ == "__main__":
    unittest.main()
