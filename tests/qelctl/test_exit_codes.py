"""How each end is told to a script: the exit code, and one line on standard error."""

import os
import signal
import subprocess
import time
import unittest

from harness import PATIENCE, ToolTest, at_open, at_run, reader


class ExitCodes(ToolTest):
    def check(self, code, arguments, *words):
        output, errors = self.run_tool(*arguments, code=code)
        self.assertEqual(output, "")
        for word in words:
            self.assertIn(word, errors)
        self.assertTrue(errors.startswith("qelctl: "), errors)
        return errors

    def test_wrong_usage_names_the_mistake(self):
        absorbance = ("run", "A-1", "absorbance")
        for arguments, *words in [
            ([], "qelctl list"),
            (["lst"], "'lst'", "list, show, run"),
            (["--colour", "list"], "--colour"),
            (["--color", "pink", "list"], "'pink'"),
            (["--log", "loud", "list"], "'loud'"),
            (["--lang"], "--lang"),
            (["list", "--lang", "de"], "--lang", "before the command"),
            (["list", "surplus"], "'surplus'", "qelctl list --help"),
            (["list", "--interface", "usb"], "'usb'", "usb-hid"),
            (["show"], "DEVICE is missing"),
            (["run", "A-1"], "FEATURE is missing"),
            (["run", "A-1", "absorbance", "--timeout"], "--timeout"),
            (["run", "A-1", "absorbance", "--yes=1"], "--yes takes no value"),
            ([*absorbance, "--timeout", "0"], "--timeout", "'0'"),
            ([*absorbance, "--timeout", "nan"], "'nan'"),
            ([*absorbance, "--interval", "-1"], "'-1'"),
            ([*absorbance, "--repeat", "0"], "--repeat", "'0'"),
            ([*absorbance, "--repeat", "1e3"], "'1e3'"),
            ([*absorbance, "--format", "xml"], "'xml'", "csv"),
            ([*absorbance, "--yes", "--no-input"], "--no-input"),
            ([*absorbance, "--output", ""], "--output"),
            ([*absorbance, "--config", "[1]"], "--config"),
            ([*absorbance, "--config", "{"], "This is no JSON"),
            ([*absorbance, "--config", "@missing.json"], "missing.json"),
            ([*absorbance, "--config", '{"wavelength":450}'], '"wavelength"', "rapidMode"),
            ([*absorbance, "--set", "wavelengths=451"], '"451"', "405, 450"),
            ([*absorbance, "--set", "rapidMode=perhaps", "--set", "x=1"], "rapidMode", '"x"'),
            ([*absorbance, "--set", "rapidMode"], "KEY=VALUE"),
            (["run", "A-1", "led", "--set", "color=#ff80"], '"#ff80"', "#ff8000"),
            (["run", "A-1", "led", "--set", "mode=8"], '"8"', "reversed"),
            *((["new-driver", name], "cannot be the name")
              for name in ("test", "install", "Acme", "../acme")),
            (["run", "A-1", "orientation", "--set", "a=1"], "takes none"),
            (["run", "A-1", "orientation", "--format", "plate"], "orientation", "json"),
        ]:
            with self.subTest(arguments):
                errors = self.check(2, arguments, *words)
                self.assertEqual(errors.count("\n"), 1, errors)

    def test_a_name_with_a_line_end_is_none(self):
        self.check(2, ["new-driver", "acme\n", self.folder / "acme"], "cannot be the name")

    def test_unknown_and_ambiguous_names_list_the_candidates(self):
        self.furnish(reader("A-10"), reader("A-2", name="Left"), reader("L-3", "luminescence-96"))
        for arguments, *words in [
            (["show", "B"], '"B"', "A-10", "A-2", "L-3"),
            (["show", ""], "A-10"),
            (["show", "simulator"], "simulator/bench-A-10", "simulator/bench-L-3"),
            (["run", "A-2", "f"], "firmware-info, firmware-update"),
            (["run", "A-2", "none"], "orientation"),
            (["run", "A-2", "luminescence"], "Left (A-2)", "absorbance-measurement"),
            (["list", "--driver", "other"], "'other'", "simulator"),
        ]:
            with self.subTest(arguments):
                self.check(3, arguments, *words)
        self.furnish(reader("A-10"), reader("A-2"))
        terminal = self.on_terminal("show", "A-")
        terminal.expect("A-10(.|\n)*A-2")
        self.assertEqual(terminal.process.wait(PATIENCE), 3)

    def test_names_may_be_abbreviated(self):
        self.furnish(reader("A-10"), reader("A-1"), reader("L-3", "luminescence-96", name="Loft"))
        for device, serial in [("A-1", "A-1"), ("a-10", "A-10"), ("Loft", "L-3"),
                               ("simulator/bench-A-1", "A-1")]:
            for feature in ["reference-number", "DF_ReferenceNumber", "referenceNumber", "ref"]:
                with self.subTest(device=device, feature=feature):
                    run = self.run_json("run", device, feature, "--format", "json")
                    self.assertEqual(run["device"]["serial"], serial)
                    self.assertEqual(run["feature"], "DF_ReferenceNumber")
                    if device != "A-1":
                        break

    def test_only_people_abbreviate_names_of_instruments(self):
        self.furnish(reader("A-10"), reader("L-3", "luminescence-96", name="Loft"))
        for device in ["A-1", "Lof", "simulator/bench-L"]:
            with self.subTest(device):
                self.check(3, ["run", device, "reference"], device)
                terminal = self.on_terminal("run", device, "reference", "--exact")
                self.assertEqual(terminal.process.wait(PATIENCE), 3)
                terminal = self.on_terminal("run", device, "firmware-update", "--set", "image=x")
                self.assertEqual(terminal.process.wait(PATIENCE), 3)
                terminal = self.on_terminal("run", device, "reference")
                terminal.expect("Taking .*(A-10|L-3)")
                self.assertEqual(terminal.process.wait(PATIENCE), 0)

    def test_what_a_device_does_decides_the_code(self):
        measure = ["run", "A-1", "absorbance", "--timeout", "20"]
        for code, arguments, faults, more, *words in [
            (1, measure, [at_run("partial-data")], {}, "48 values"),
            (1, measure, [at_run("wrong-type")], {}, "QVariantHash"),
            *((1, ["run", "A-1", feature, "--format", format], [at_run("wrong-type")], {}, due)
              for format in ("table", "json")
              for feature, due in [("ambient", "double"), ("orientation", "QVariantHash"),
                                   ("plate-detection", "SlotStatus"), ("reference", "int")]),
            (1, ["run", "A-1", "firmware-info"], [at_run("partial-data")], {}, "result."),
            (1, ["run", "A-1", "calibration"], [at_run("partial-data")], {"plate": None},
             "result.calibratedAt"),
            (1, ["run", "A-1", "orientation"], [at_run("partial-data")], {}, "result."),
            (1, ["run", "A-1", "led-bar-effect"], [at_run("wrong-type")], {}, "nothing belongs"),
            (4, measure, [at_open("refuse")], {}, "Reader 1 (A-1)"),
            (4, ["show", "A-1"], [at_open("error", code="ERROR_DEVICE_BOOT_FAIL")], {}, "bootloader"),
            (4, ["watch", "A-1"], [at_open("refuse")], {}, "Reader 1 (A-1)"),
            (4, measure, [], {"apiVersion": 2}, "Reader 1 (A-1)"),
            (4, measure, [at_open("unplug")], {}, "Reader 1 (A-1)"),
            (5, measure, [at_run("refuse")], {}, "Reader 1 (A-1)"),
            (5, measure, [at_run("error", code="ERROR_DEVICE_CHECKSUM_MISMATCH")], {}, "Checksum"),
            (5, measure, [at_run("unplug")], {}, "Reader 1 (A-1)"),
            (5, measure, [], {"calibrated": False}, "calibrat"),
            (6, [*measure[:3], "--timeout", "0.2"], [at_run("stall")], {}, "0.2 s"),
            (6, [*measure[:3], "--timeout", "0.2"], [at_run("drop-ending")], {}, "0.2 s"),
            (6, [*measure[:3], "--timeout", "0.2"], [at_open("stall")], {}, "0.2 s"),
            (7, measure, [], {"plate": None}, "Insert a plate", "--yes"),
            (7, ["show", "A-1"], [at_open("ask")], {}, "--yes"),
            (7, [*measure, "--no-input"], [], {"plate": None}, "Insert a plate"),
            (0, [*measure, "--output", "/dev/null"], [at_run("double-ending")], {}),
            (0, [*measure, "--output", "/dev/null", "--yes"], [at_open("ask")], {}),
            (0, [*measure, "--output", "/dev/null", "--yes"], [], {"plate": None}),
        ]:
            with self.subTest(arguments=arguments, faults=faults, **more):
                self.furnish(reader("A-1", "absorbance-96", *faults, name="Reader 1", **more))
                output, errors = self.run_tool(*arguments, code=code)
                if arguments[0] == "show":
                    self.assertIn("A-1", output)  # what is known all the same
                for word in words:
                    self.assertIn(word, errors)
                if code == 0 and "--yes" not in arguments:
                    self.assertEqual(errors, "")

    def test_a_series_ends_with_the_run_that_fails(self):
        self.furnish(reader("A-1", "absorbance-96", at_run("error", nth=3)))
        output, _ = self.run_tool("run", "A-1", "reference", "--repeat", "5", code=5)
        self.assertEqual(output.count("SIM-ABS-96"), 2)

    def test_every_language_says_the_same(self):
        for language, words in [("de", "fehlt"), ("de_AT", "fehlt"), ("en", "missing"),
                                ("fr", "missing")]:
            with self.subTest(language):
                _, errors = self.run_tool("--lang", language, "show", code=2)
                self.assertIn(words, errors)
        self.environment["LC_ALL"] = "de_DE.UTF-8"
        self.assertIn("fehlt", self.run_tool("show", code=2)[1])
        for command in ["", "drivers", "list", "show", "run", "watch", "doctor", "check",
                        "new-driver"]:
            english, german = (
                self.run_tool("--lang", language, *command.split(), "--help")[0]
                for language in ("en", "de"))
            self.assertNotEqual(english, german)
            self.assertTrue(german.startswith(f"Aufruf: qelctl {command}".rstrip()), german)
            placeholders = r"\b(COMMAND|DEVICE|DIR|DIRECTORY|FEATURE|FILE|KEY|PATH|VALUE)\b"
            self.assertNotRegex(german, placeholders)
            for text in english, german:
                self.assertNotIn("qelctl-", text)
                self.assertLessEqual(max(map(len, text.splitlines())), 80, text)

    def test_texts_are_utf8_whatever_the_locale(self):
        self.environment["LC_ALL"] = "C"
        self.assertIn("Öffnet", self.run_tool("--lang", "de", "show", "--help")[0])
        self.furnish(reader("A-1", name="Prüfgerät"))
        self.assertIn("Prüfgerät", self.run_tool("list")[0])
        target = self.folder / "Größe.txt"
        self.run_tool("run", "A-1", "reference", "--output", target)
        self.assertTrue(target.read_text().strip())


class Interruptions(ToolTest):
    MEASURE = ["run", "A-1", "absorbance", "--output", "plate.csv"]

    def interrupted(self, arguments, faults, line, number=signal.SIGINT, **more):
        self.furnish(reader("A-1", "absorbance-96", *faults, **more), time_scale=1)
        process = self.start("--log", "debug", *arguments, cwd=self.folder)
        self.interrupt_when(process, line, number)
        output, errors = process.communicate(timeout=20)
        self.assertEqual(process.returncode, 130, errors)
        self.assertEqual(output, b"")
        self.assertEqual(self.files(), ["x"] if "x" in arguments else [])
        (self.folder / "x").unlink(missing_ok=True)
        return errors.decode()

    def test_at_each_stage(self):
        created, executed = b"Creating device", b"execution requested"
        for arguments, faults, line, *more in [
            (self.MEASURE, [{"at": "enumerate", "do": "delay", "delay": 10000}], b"Finished load"),
            (self.MEASURE, [at_open("stall")], created),
            (self.MEASURE, [at_open("delay", delay=20000)], created),
            (self.MEASURE, [], executed),
            (self.MEASURE, [at_run("stall")], executed),
            (["run", "A-1", "reference", "--output", "x", "--repeat", "2", "--interval", "60"],
             [], executed),
            (["show", "A-1"], [at_open("stall")], created),
            (["watch", "A-1"], [at_open("stall")], created),
            (self.MEASURE, [at_run("stall")], executed, signal.SIGTERM),
            (self.MEASURE, [at_run("stall")], executed, signal.SIGHUP),
        ]:
            with self.subTest(arguments=arguments, faults=faults, line=line):
                self.interrupted(arguments, faults, line, *more)

    def test_the_device_is_closed_before_the_end(self):
        self.furnish(reader("A-1", "absorbance-96"), time_scale=1)
        watch = self.start("watch", "A-1")
        while b'"open":true' not in watch.stdout.readline():
            pass
        watch.send_signal(signal.SIGINT)
        rest, _ = watch.communicate(timeout=20)
        self.assertIn(b'"open":false', rest)
        self.assertEqual(watch.returncode, 130)

    def test_an_ignored_interrupt_stays_ignored(self):
        process = self.start("run", "A-1", "reference", "--repeat", "3", "--interval", "0.3",
                             preexec_fn=lambda: signal.signal(signal.SIGINT, signal.SIG_IGN))
        process.stdout.readline()
        process.send_signal(signal.SIGINT)
        output, _ = process.communicate(timeout=20)
        self.assertEqual((process.returncode, output.count(b"SIM-ABS-96")), (0, 2))


if __name__ == "__main__":
    unittest.main()
