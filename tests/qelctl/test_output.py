"""What reaches standard output and files: every format, every way in which writing can fail."""

import csv
import io
import json
import os
import pathlib
import re
import resource
import shutil
import signal
import stat
import subprocess
import time
import unittest

import jsonschema

from harness import DOCS, PATIENCE, ToolTest, at_run, reader


def schema(name):
    return json.loads((DOCS / f"{name}.schema.json").read_text(encoding="utf-8"))


class Formats(ToolTest):
    def setUp(self):
        super().setUp()
        self.furnish(reader("A-1", name='Reader "A", left'), reader("C-1", "combined-384"))

    def validate(self, name, document):
        definition = schema(name)
        jsonschema.Draft7Validator.check_schema(definition)
        jsonschema.validate(document, definition, jsonschema.Draft7Validator)

    def values_of_plate(self, rows):
        """The grids of the plate format as {label: {well: text}}."""
        plates, current = {}, None
        for row in rows:
            if not row:
                current = None
            elif current is None:
                current = plates.setdefault(row[0], {})
                columns = row[1:]
                self.assertEqual(columns, [str(n + 1) for n in range(len(columns))])
            else:
                current.update({row[0] + c: value for c, value in zip(columns, row[1:], strict=True)})
        return plates

    def test_the_formats_agree_to_the_last_digit(self):
        run = ["run", "A-1", "absorbance", "--set", "wavelengths=450,405", "--format"]
        document = self.run_json(*run, "json")
        self.validate("qelctl-run", document)
        plate = document["plate"]
        expected = {(read["wavelength"], "ABCDEFGH"[r] + str(c + 1)): value
                    for read in plate["reads"] for r, row in enumerate(read["values"])
                    for c, value in enumerate(row)}
        self.assertEqual(len(expected), 2 * 96)

        # The same seed measures the same; a format of its own is read by a reader of its own.
        tidy = list(csv.DictReader(io.StringIO(self.run_tool(*run, "csv")[0], newline="")))
        self.assertEqual({(int(row["wavelength_nm"]), row["well"]): float(row["value"])
                          for row in tidy}, expected)
        self.assertEqual({row["device"] for row in tidy}, {'Reader "A", left'})
        self.assertEqual({row["unit"] for row in tidy}, {"OD"})

        output = self.run_tool(*run, "plate")[0]
        grids = self.values_of_plate(csv.reader(io.StringIO(output, newline="")))
        self.assertEqual(list(grids), ["450 nm (OD)", "405 nm (OD)"])
        self.assertEqual({(int(label[:3]), well): float(value)
                          for label, grid in grids.items() for well, value in grid.items()},
                         expected)

        table = self.run_tool(*run, "table")[0]
        self.assertEqual(table, self.run_tool(*run[:-1])[0])
        cells = re.findall(r"^[A-H] (.*)$", table, re.M)
        self.assertEqual([float(cell) for cell in " ".join(cells).split()],
                         [round(value, 3) for value in expected.values()])

    def test_wells_that_are_not_measured_are_empty(self):
        run = ["run", "C-1", "luminescence", "--set", "selectedWells=B2,P24", "--format"]
        grid, = self.values_of_plate(csv.reader(self.run_tool(*run, "plate")[0].splitlines())).values()
        self.assertEqual(len(grid), 384)
        self.assertEqual({well for well, value in grid.items() if value}, {"B2", "P24"})
        document = self.run_json(*run, "json")
        self.validate("qelctl-run", document)
        values = document["plate"]["reads"][0]["values"]
        self.assertIsNone(values[0][0])
        self.assertGreater(values[15][23], 0)

    def test_many_plugins_cost_in_proportion(self):
        def processor_time(count):
            folder = self.folder / str(count)
            folder.mkdir()
            for number in range(count):
                shutil.copy(pathlib.Path(os.environ["ROGUE_FOLDER"]) / "rogue.so", folder / f"r{number}.so")
            before = resource.getrusage(resource.RUSAGE_CHILDREN)
            plugins = self.run_json("--plugins", folder, "drivers", "--json")["plugins"]
            after = resource.getrusage(resource.RUSAGE_CHILDREN)
            self.assertEqual(sum(plugin["drivers"] != ["simulator"] for plugin in plugins), count)
            return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
        self.assertLess(processor_time(480), 10 * processor_time(60))

    def test_every_document_has_the_shape_that_is_promised(self):
        self.validate("qelctl-list", self.run_json("list", "--json"))
        listed = self.run_json("list", "--json", "--interface", "serial")
        self.validate("qelctl-list", listed)
        self.assertEqual((listed["instruments"], listed["drivers"][0]["instruments"]), ([], 2))

        broken = self.folder / "plugins"
        broken.mkdir()
        (broken / "broken.so").write_bytes(b"\x7fELF, but no more")
        document = self.run_json("--plugins", broken, "drivers", "--json")
        self.validate("qelctl-drivers", document)
        self.assertEqual([plugin["drivers"] for plugin in document["plugins"]], [["simulator"]])
        failure, = document["failures"]
        self.assertEqual(failure["file"], str(broken / "broken.so"))
        self.assertTrue(failure["reason"])

        for serial in "A-1", "C-1":
            device = self.run_json("show", serial, "--json")
            self.validate("qelctl-device", device)
            for feature in device["features"]:
                name = feature["argument"]
                if name == "firmware-update":
                    continue
                with self.subTest(serial=serial, feature=name):
                    run = self.run_json("run", serial, name, "--yes", "--format", "json")
                    self.validate("qelctl-run", run)
                    self.assertEqual(run["feature"], feature["feature"])
                    self.assertTrue(run["plugin"]["file"].endswith("/simulator.so"))
                    # What the record says of the configuration makes the same run again.
                    again = self.run_json("run", serial, name, "--yes", "--format", "json",
                                          "--config", json.dumps(run["configuration"]))
                    self.assertEqual(again["configuration"], run["configuration"])

    def test_a_schema_refuses_what_is_wrong(self):
        document = self.run_json("run", "A-1", "absorbance", "--format", "json")
        for spoil in [lambda d: d.pop("device"), lambda d: d.update(version=2),
                      lambda d: d["plate"]["reads"][0].update(values=[["x"]]),
                      lambda d: d.update(startedAt="today"), lambda d: d.pop("plate")]:
            spoiled = json.loads(json.dumps(document))
            spoil(spoiled)
            with self.assertRaises(jsonschema.ValidationError):
                self.validate("qelctl-run", spoiled)

    def test_a_series_stays_readable(self):
        run = ["run", "A-1", "absorbance", "--set", "wavelengths=450", "--repeat", "3", "--format"]
        lines = self.run_tool(*run, "json")[0].splitlines()
        for line in lines:
            self.validate("qelctl-run", json.loads(line))
        self.assertEqual(len(lines), 3)
        tidy = list(csv.DictReader(self.run_tool(*run, "csv")[0].splitlines()))
        self.assertEqual([row["well"] for row in tidy].count("A1"), 3)
        grids = self.run_tool(*run, "plate")[0].split("\r\n\r\n")
        self.assertEqual(len(grids), 3)

    def test_results_that_are_no_plate_are_plain_text(self):
        for feature, pattern in [
            ("orientation", r"accelerationX +\S+\naccelerationY +\S+\n"
                            r"accelerationZ +9.81\ntopSide +Top\n"),
            ("ambient-temperature", r"\d+(\.\d+)? °C\n"),
            ("plate-detection", r"Occupied\n"),
            ("parts-aligned", r"true\n"),
            ("led-bar-effect", r""),
            ("firmware-info", r"bootloader +\S+\ndate +\d{4}-\d\d-\d\d\nversion +\S+\n"),
        ]:
            with self.subTest(feature):
                self.assertRegex(self.run_tool("run", "A-1", feature)[0], f"^{pattern}$")

    def test_configurations_come_from_everywhere_and_into_the_record(self):
        path = self.folder / "settings.json"
        path.write_text('{"wavelengths": [405], "rapidMode": true}')
        for arguments, expected in [
            (["--config", f"@{path}"], {"wavelengths": [405], "rapidMode": True}),
            (["--config", '{"wavelengths":[620]}'], {"wavelengths": [620], "rapidMode": False}),
            (["--config", f"@{path}", "--set", "wavelengths=450,492", "--set", "rapidMode=false"],
             {"wavelengths": [450, 492], "rapidMode": False}),
        ]:
            with self.subTest(arguments):
                run = self.run_json("run", "A-1", "abs", "--format", "json", *arguments)
                self.assertEqual(run["configuration"], expected)


class Files(ToolTest):
    MEASURE = ("run", "A-1", "reference-number", "--output")

    def test_a_file_is_replaced_only_by_force(self):
        target = self.folder / "out.txt"
        os.umask(0o027)
        self.run_tool(*self.MEASURE, target)
        written = target.read_text()
        self.assertEqual(stat.S_IMODE(target.stat().st_mode), 0o640)
        target.write_text("mine")
        target.chmod(0o604)
        _, errors = self.run_tool(*self.MEASURE, target, code=8)
        self.assertIn("--force", errors)
        self.assertEqual(target.read_text(), "mine")
        self.run_tool(*self.MEASURE, target, "--force")
        self.assertEqual(target.read_text(), written)
        self.assertEqual(stat.S_IMODE(target.stat().st_mode), 0o604)
        self.assertEqual(self.files(), ["out.txt"])

    def test_a_failed_run_changes_nothing(self):
        self.furnish(reader("A-1", "absorbance-96", at_run("error")))
        target = self.folder / "out.txt"
        self.run_tool(*self.MEASURE, target, code=5)
        self.assertEqual(self.files(), [])
        target.write_text("mine")
        self.run_tool(*self.MEASURE, target, "--force", code=5)
        self.assertEqual((self.files(), target.read_text()), (["out.txt"], "mine"))

    def test_a_file_that_appears_meanwhile_is_kept(self):
        self.furnish(reader("A-1", "absorbance-96", at_run("delay", delay=700)))
        target = self.folder / "out.txt"
        process = self.start("--log", "info", *self.MEASURE, target)
        while b"execution requested" not in process.stderr.readline():
            pass
        target.write_text("mine")
        output, errors = process.communicate(timeout=PATIENCE)
        self.assertEqual(process.returncode, 8, errors)
        self.assertEqual((self.files(), target.read_text()), (["out.txt"], "mine"))
        self.assertIn(b"SIM-ABS-96", output)  # what was measured is not lost

    def test_places_that_cannot_be_written(self):
        file = self.folder / "file"
        file.write_text("")
        sealed = self.folder / "sealed"
        sealed.mkdir(0o555)
        targets = [self.folder, self.folder / "missing" / "out", file / "out", "/dev/full",
                   "/proc/out"]
        if os.geteuid() != 0:  # nothing is sealed for root
            targets.append(sealed / "out")
        for target in targets:
            with self.subTest(target):
                output, errors = self.run_tool(*self.MEASURE, target, code=8)
                full = target == "/dev/full"  # which shows only when it is written to
                self.assertEqual((bool(output), errors.count("\n")), (full, 1 + full), errors)
                self.assertIn(str(target), errors)
        self.assertEqual(self.files(), ["file", "sealed"])

    def test_links_lead_to_the_file(self):
        link, target = self.folder / "link", self.folder / "target"
        link.symlink_to("target")
        self.run_tool(*self.MEASURE, link)
        self.assertTrue(link.is_symlink())
        written = target.read_text()
        self.run_tool(*self.MEASURE, link, code=8)
        target.write_text("mine")
        self.run_tool(*self.MEASURE, link, "--force")
        self.assertEqual((link.is_symlink(), target.read_text()), (True, written))

    def test_a_pipe_is_written_and_stays(self):
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        process = self.start(*self.MEASURE, pipe)
        self.assertTrue(pipe.read_text())
        self.assertEqual(process.wait(PATIENCE), 0)
        self.assertTrue(pipe.is_fifo())


class StandardOutput(ToolTest):
    COMMANDS = [["list"], ["list", "--json"], ["drivers"], ["show", "A-1"], ["watch", "A-1"],
                ["list", "--watch"], ["run", "A-1", "absorbance"], ["--help"], ["run", "--help"],
                ["--version"]]

    def check_failure(self, process, words):
        errors = process.communicate(timeout=PATIENCE)[1].decode()
        self.assertEqual(process.returncode, 8, errors)
        self.assertIn(words, errors)
        self.assertEqual(errors.count("\n"), 1, errors)

    def test_full_disk(self):
        for arguments in self.COMMANDS:
            with self.subTest(arguments), open("/dev/full", "wb") as full:
                self.check_failure(self.start(*arguments, stdout=full), "No space left")

    def test_broken_pipe(self):
        for arguments in self.COMMANDS:
            with self.subTest(arguments):
                reading, writing = os.pipe()
                os.close(reading)
                process = self.start(*arguments, stdout=writing)
                os.close(writing)
                self.check_failure(process, "Broken pipe")

    def test_a_reader_that_leaves_is_noticed_although_nothing_happens(self):
        for arguments in ["list", "--watch"], ["watch", "A-1"]:
            with self.subTest(arguments):
                process = self.start(*arguments)
                process.stdout.readline()
                process.stdout.close()
                process.stdout = None
                process.wait(PATIENCE)
                self.assertEqual(process.returncode, 8)

    def test_data_only(self):
        """Messages, progress and requests never get between the data."""
        self.furnish(reader("A-1", plate=None))
        output, errors = self.run_tool("--log", "debug", "run", "A-1", "absorbance", "--yes",
                                       "--format", "json")
        json.loads(output)
        self.assertIn("Feature execution requested", errors)
        self.assertIn("Insert a plate", errors)
        self.assertNotIn("\x1b", output + errors)
        self.assertEqual(self.run_tool("--log", "quiet", "run", "A-1", "abs", "--yes")[1],
                         "qelctl: Insert a plate into the slot, then confirm.\n")


class Watching(ToolTest):
    def test_instruments_come_go_and_change(self):
        process = self.start("list", "--watch", "--json")

        def next_event():
            line = json.loads(process.stdout.readline())
            jsonschema.validate(line, schema("qelctl-list-event"),
                                jsonschema.Draft7Validator)
            return line["event"], line["serial"], line["name"]

        self.assertEqual(next_event(), ("arrived", "A-1", "Simulated absorbance reader"))
        self.furnish(reader("A-1"), reader("A-2", name="New"))
        self.assertEqual(next_event(), ("arrived", "A-2", "New"))
        self.furnish(reader("A-1"), reader("A-2", name="Renamed"))
        self.assertEqual(next_event(), ("changed", "A-2", "Renamed"))
        self.furnish(reader("A-2", name="Renamed"))
        self.assertEqual(next_event()[:2], ("left", "A-1"))
        process.send_signal(signal.SIGINT)
        self.assertEqual(process.wait(PATIENCE), 130)

    def test_signals_of_a_device(self):
        self.furnish(reader("A-1", "absorbance-96", {"at": "time", "after": 300, "do": "remove-plate"},
                            {"at": "time", "after": 600, "do": "error", "info": "x"},
                            {"at": "time", "after": 900, "do": "unplug"}))
        output, errors = self.run_tool("watch", "A-1", code=5)
        self.assertIn("A-1", errors)
        lines = [json.loads(line) for line in output.splitlines()]
        event = schema("qelctl-watch-event")
        for line in lines:
            jsonschema.validate(line, event, jsonschema.Draft7Validator)
        times = [line["time"] for line in lines]
        self.assertEqual(times, sorted(times))
        told = [(line["signal"], line.get("open", line.get("value", {}) or line.get("additionalId")))
                for line in lines]
        for expected in [("openChanged", True), ("errorChanged", "x"), ("openChanged", False),
                         ("transientValue", {"$type": "qel::devices::SlotStatus",
                                             "value": "Empty"})]:
            self.assertIn(expected, told)


if __name__ == "__main__":
    unittest.main()
