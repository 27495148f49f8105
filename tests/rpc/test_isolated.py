"""What the tool says of drivers in processes of their own."""

import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

QELCTL = os.environ["QELCTL"]
PATIENCE = 60

CRASH = "the process ended with signal 11 (Segmentation fault)"
ABORT = "the process ended with signal 6 (Aborted)"
EXIT = "the process was ended by exit(0)"
HANG = "the process did not come back"


class IsolatedTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name).resolve()
        for plugin in "ROGUE", "SIMULATOR":
            shutil.copy(os.environ[plugin], self.folder)
        self.rogue = str(self.folder / "rogue.so")

    def tool(self, behaviour, *arguments):
        return subprocess.run(
            [QELCTL, "--plugins", os.environ["PLUGINS"], *arguments], capture_output=True, text=True,
            timeout=PATIENCE, env={**os.environ, "QELDEVICES_ISOLATED": str(self.folder),
                                   "ROGUE": behaviour})

    def failure(self, behaviour):
        """What `drivers` and `doctor` complain of, and the drivers that the latter has found."""
        listed = json.loads(self.tool(behaviour, "drivers", "--json").stdout)
        diagnosis = json.loads(self.tool(behaviour, "doctor", "--json").stdout)
        folder, = (f for f in diagnosis["folders"] if f["folder"] == str(self.folder))
        drivers = {driver for file in folder["files"] for driver in file["drivers"]}
        findings = {file["file"]: [finding["text"] for finding in file["findings"]]
                    for file in folder["files"]}
        return ({failure["file"]: [failure["reason"]] for failure in listed["failures"]},
                {file: texts for file, texts in findings.items() if texts}, drivers)

    def test_what_happened_while_it_started_is_told(self):
        load = "It does not load: {}."
        enumerate = 'It loads, but when its driver "rogue" is asked for its instruments: {}.'
        for behaviour, sentence, end in [
            ("load crash", load, CRASH),
            ("load exit", load, EXIT),
            ("load hang", load, HANG),
            ("enumerate abort", enumerate, ABORT),
            ("enumerate hang", enumerate, HANG),
        ]:
            with self.subTest(behaviour):
                told = {self.rogue: [sentence.format(end)]}
                listed, findings, drivers = self.failure(behaviour)
                self.assertEqual((listed, findings), (told, told))
                # Its own is known only if the process came to say so.
                self.assertEqual(drivers - {"rogue"}, {"simulator"})
        self.assertEqual(self.failure(""), ({}, {}, {"simulator", "rogue"}))
        german = self.tool("load crash", "--lang", "de", "drivers").stdout
        self.assertIn(f"{self.rogue}: Sie lässt sich nicht laden: der Prozess endete", german)

    def test_a_file_that_is_no_driver_is_told_from_one_that_crashes(self):
        other = self.folder / "other.so"
        other.write_text("none")
        listed, findings, _ = self.failure("")
        self.assertEqual(list(listed), [str(other)])
        self.assertEqual(findings[str(other)], ["It is not a shared library."])

    def check(self, behaviour, *arguments):
        answer = self.tool(behaviour, "check", "--isolated", "--format", "json", *arguments)
        return answer.returncode, json.loads(answer.stdout)

    def test_a_driver_is_judged_through_its_process(self):
        simulator = str(self.folder / "simulator.so")
        code, report = self.check("", simulator, "--rule", "103", "--rule", "104", "--rule", "201")
        self.assertEqual((code, report["plugin"], report["passed"]), (0, simulator, 3))
        # What it does to its own process is nothing to this one.
        code, report = self.check("", self.rogue, "--rule", "101")
        self.assertEqual(code, 0)
        for behaviour, end in [("load crash", f"{CRASH}, in loading"),
                               ("enumerate abort", f"{ABORT}, in rogue: availableDevices()")]:
            code, report = self.check(behaviour, self.rogue, "--rule", "101")
            seen, = (result["seen"] for result in report["rules"] if result["outcome"] == "failed")
            self.assertEqual((code, seen), (1, end))

    def test_a_process_that_ends_fails_the_rule_that_it_was_to_keep(self):
        for behaviour, end in [("open crash", f"{CRASH}, in rogue: open()"),
                               ("execute exit", f"{EXIT}, in rogue: execute(DF_ReferenceNumber)"),
                               ("execute hang", f"{HANG}, in rogue: execute(DF_ReferenceNumber)")]:
            with self.subTest(behaviour):
                code, report = self.check(behaviour, self.rogue, "--rule", "401", "--rule", "601",
                                          "--rule", "602")
                failed, *others = (result for result in report["rules"] if "seen" in result)
                self.assertEqual((code, failed["outcome"], failed["seen"]), (1, "failed", end))
                self.assertEqual({(result["outcome"], result["seen"]) for result in others},
                                 {("not run", f"as in rule {failed['number']}: {end}")})

    def test_a_driver_that_is_replaced_is_not_isolated_which_is_told(self):
        for folders, warnings in (([], 0), (["--plugins", os.path.dirname(os.environ["SIMULATOR"])], 1)):
            with self.subTest(folders):
                shown = self.tool("", *folders, "show", "simulator/bench-1")
                self.assertEqual(shown.returncode, 0, shown.stderr)
                self.assertEqual(shown.stderr.count("driver 'simulator' is not isolated"), warnings)

    def test_where_nothing_can_isolate_this_is_said(self):
        answer = subprocess.run([QELCTL, "check", "--isolated", self.rogue], capture_output=True,
                                text=True, timeout=PATIENCE)
        self.assertEqual((answer.returncode, answer.stdout), (2, ""))
        self.assertIn("'isolation.so'", answer.stderr)


if __name__ == "__main__":
    unittest.main()
