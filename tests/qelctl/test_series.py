"""What was measured is not lost, whatever comes after it."""

import csv
import fcntl
import io
import itertools
import json
import os
import pathlib
import resource
import shutil
import subprocess
import time
import unittest

import jsonschema

from harness import DOCS, PATIENCE, ToolTest, at_run, reader

ROGUE = os.environ["ROGUE_FOLDER"]
ABSORBANCE = ("absorbance", "--set", "wavelengths=450")


def validate(document, name):
    definition = json.loads((DOCS / f"{name}.schema.json").read_text(encoding="utf-8"))
    jsonschema.validate(document, definition, jsonschema.Draft7Validator)


class Kept(ToolTest):
    FORMATS = {"csv": ("csv", 97), "json": ("json", 1), "plate": ("csv", 9), "table": ("txt", 11)}

    def finished(self, file, form):
        """Numbers of the runs in the file."""
        text = file.read_text(encoding="utf-8")
        if form == "json":
            return [json.loads(line)["run"]["number"] for line in text.splitlines()]
        if form == "csv":
            rows = list(csv.DictReader(io.StringIO(text)))
            numbers = [int(row["run"]) for row in rows]
            self.assertEqual(len(rows), 96 * len(set(numbers)))
            return sorted(set(numbers))
        title = "450 nm (OD), run" if form == "plate" else "Run "
        return [number + 1 for number in range(text.count(title))]

    def test_a_series_keeps_what_it_has_finished(self):
        faults = {
            "fails": [at_run("error", nth=3, feature="absorbance-measurement")],
            "times out": [at_run("stall", nth=3, feature="absorbance-measurement")],
            "unplugged": [at_run("unplug", nth=3, feature="absorbance-measurement")],
        }
        for what, fault in faults.items():
            for form, (suffix, _) in self.FORMATS.items():
                with self.subTest(what, form=form):
                    self.furnish(reader(f"A-{form}-{what[:2]}", "absorbance-96", *fault))
                    file = self.folder / f"{what}-{form}.{suffix}"
                    process = self.start("run", f"A-{form}-{what[:2]}", *ABSORBANCE, "--repeat", 5,
                                         "--timeout", 3, "--format", form, "--output", file)
                    _, errors = process.communicate(timeout=PATIENCE)
                    self.assertNotEqual(process.returncode, 0)
                    self.assertEqual(self.finished(file, form), [1, 2])
                    self.assertIn(f"2 of 5 runs are finished and kept in {file}".encode(), errors)

    def test_a_kill_takes_nothing_and_leaves_nothing_else(self):
        self.furnish(reader("A-1"), time_scale=0.02)
        for form, (suffix, _) in self.FORMATS.items():
            with self.subTest(form):
                file = self.folder / f"kill.{suffix}"
                process = self.start("--log", "info", "run", "A-1", *ABSORBANCE, "--repeat", 50,
                                     "--format", form, "--output", file)
                for _ in range(4):  # the third run is over when the fourth is asked for
                    while b"execution requested" not in process.stderr.readline():
                        pass
                process.kill()
                process.communicate()
                self.assertEqual(self.finished(file, form)[:3], [1, 2, 3])
                self.assertEqual(self.files(), [file.name])
                file.unlink()

    def test_a_full_disk_takes_nothing(self):
        def limit():
            resource.setrlimit(resource.RLIMIT_FSIZE, (20000, 20000))
        file = self.folder / "full.csv"
        output, errors = self.run_tool("run", "A-1", *ABSORBANCE, "--repeat", 9, "--output", file,
                                       code=8, preexec_fn=limit)
        self.assertEqual(self.finished(file, "csv"), [1, 2])
        self.assertIn("File too large", errors)
        self.assertIn("2 of 9 runs", errors)
        self.assertEqual({row.split(",")[13] for row in output.splitlines()}, {"3"})

    def test_a_series_goes_on_where_it_ended(self):
        self.furnish(reader("A-1"), reader("A-2"))
        for form, (suffix, _) in list(self.FORMATS.items())[:2]:
            with self.subTest(form):
                file = self.folder / f"series.{suffix}"
                resume = ("run", "A-1", *ABSORBANCE, "--repeat", 4, "--output", file, "--resume")
                self.run_tool("run", "A-1", *ABSORBANCE, "--repeat", 3, "--output", file)
                file.write_bytes(file.read_bytes()[:-200])  # a power cut in the last one
                self.run_tool("run", "A-2", *resume[2:], code=2)
                self.run_tool(*resume)
                self.assertEqual(self.finished(file, form), [1, 2, 3, 4])
                before = file.read_bytes()
                self.run_tool(*resume)
                self.assertEqual(file.read_bytes(), before)
                for other in ["wavelengths=620"], ["wavelengths=450,620"]:
                    _, errors = self.run_tool(*resume, "--repeat", 9, "--set", *other, code=2)
                    self.assertIn('"wavelengths"', errors)
                self.assertEqual(file.read_bytes(), before)
        self.run_tool("run", "A-1", *ABSORBANCE, "--repeat", 2, "--output",
                      self.folder / "x.txt", "--resume", code=2)

    def test_settings_of_wells_are_told_from_a_table(self):
        self.furnish(reader("L-1", "luminescence-96"))
        file = self.folder / "wells.csv"
        run = ("run", "L-1", "luminescence", "--set", "selectedWells=A1:B2", "--output", file)
        self.run_tool(*run, "--repeat", 2)
        self.run_tool(*run, "--repeat", 3, "--resume")
        for other in "selectedWells=A1:B3", "integrationTime=200":
            self.run_tool(*run, "--repeat", 4, "--resume", "--set", other, code=2)
        self.assertEqual(self.finished(file, "csv"), [1, 2, 3])

    def test_two_do_not_write_to_one_file(self):
        self.furnish(reader("A-1"), time_scale=0.02)
        file = self.folder / "series.csv"
        run = ("run", "A-1", *ABSORBANCE, "--repeat", 50, "--output", file)
        first = self.start(*run)
        while not file.exists():
            time.sleep(0.01)
        for how in "--resume", "--force":
            self.assertIn("another process", self.run_tool(*run, how, code=8)[1])
        first.terminate()
        first.communicate()
        self.run_tool(*run, "--repeat", 1, "--force")

    def test_what_a_kill_has_left_is_removed(self):
        left = self.folder / ".qelresult-1a"
        used = self.folder / ".qelresult-2b"
        new = self.folder / ".qelresult-3c"
        for path in left, used, new:
            path.touch()
        for path in left, used:
            os.utime(path, (1e9, 1e9))
        with used.open() as file:
            fcntl.flock(file, fcntl.LOCK_EX)
            self.run_tool("run", "A-1", "reference", "--output", self.folder / "a.txt")
        self.assertEqual([path.exists() for path in (left, used, new)], [False, True, True])

    def test_a_note_may_hold_anything(self):
        file = self.folder / "series.csv"
        run = ("run", "A-1", *ABSORBANCE, "--note", 'two\nlines, "so"', "--output", file, "--repeat")
        self.run_tool(*run, 2)
        file.write_bytes(file.read_bytes()[:-10])
        self.run_tool(*run, 3, "--resume")
        self.assertEqual(self.finished(file, "csv"), [1, 2, 3])

    def test_what_is_no_run_of_the_series_is_left_alone(self):
        for suffix, end in ("csv", "mine,too"), ("json", '{"mine": 2}'):
            for what, add, feature in [("other feature", "", ("reference-number",)),
                                       ("other lines", f"mine\n{end}\n", ABSORBANCE),
                                       ("a line between", "\n{run}", ABSORBANCE)]:
                with self.subTest(what, suffix=suffix):
                    file = self.folder / f"{what}.{suffix}"
                    self.run_tool("run", "A-1", *ABSORBANCE, "--repeat", 2, "--output", file)
                    text = file.read_text()
                    text += add.replace("{run}", text.splitlines(keepends=True)[-1])
                    file.write_text(text)
                    self.run_tool("run", "A-1", *feature, "--repeat", 3, "--output", file,
                                  "--resume", code=2)
                    self.assertEqual(file.read_text(), text)

    def test_starts_are_the_interval_apart(self):
        self.furnish(reader("A-1", "absorbance-96", {"at": "open", "do": "delay", "delay": 700}))
        output, _ = self.run_tool("run", "A-1", *ABSORBANCE, "--repeat", 3, "--interval", "0.4",
                                  "--format", "json")
        starts = [json.loads(line)["startedAt"] for line in output.splitlines()]
        seconds = [float(start[17:23]) for start in starts]
        for first, second in zip(seconds, seconds[1:]):
            self.assertGreaterEqual((second - first) % 60, 0.2)
        self.furnish(reader("A-1", "absorbance-96", at_run("delay", delay=400)))
        _, errors = self.run_tool("run", "A-1", *ABSORBANCE, "--repeat", 3, "--interval", "0.1")
        self.assertEqual(errors.count("longer than the interval"), 1)
        self.run_tool("run", "A-1", *ABSORBANCE, "--interval", 1, code=2)


class Places(ToolTest):
    def test_the_name_decides_the_format(self):
        for name, start in [("a.csv", "device,"), ("a.json", "{"), ("a.txt", "450 nm")]:
            with self.subTest(name):
                self.run_tool("run", "A-1", *ABSORBANCE, "--output", self.folder / name)
                self.assertTrue((self.folder / name).read_text().startswith(start))
        self.run_tool("run", "A-1", *ABSORBANCE, "--output", self.folder / "b.json", "--format",
                      "csv", code=2)
        output, _ = self.run_tool("run", "A-1", *ABSORBANCE, "--output", "-")
        self.assertTrue(output.startswith("450 nm"))

    def test_placeholders(self):
        self.furnish(reader("A/1"))
        self.run_tool("run", "A/1", "reference", "--output", self.folder / "{serial}_{time}.csv")
        self.assertRegex(self.files()[0], r"^A_1_\d{8}T\d{6}Z\.csv$")
        self.run_tool("run", "A/1", "reference", "--output", self.folder / "{size}.csv", code=2)

    def test_reasons_and_links(self):
        self.assertIn("File name too long", self.run_tool(
            "run", "A-1", "reference", "--output", self.folder / ("x" * 300), code=8)[1])
        (self.folder / "file").write_text("old")
        (self.folder / "middle").symlink_to("file")
        (self.folder / "link").symlink_to("middle")
        self.run_tool("run", "A-1", "reference", "--output", self.folder / "link", "--force")
        self.assertTrue((self.folder / "middle").is_symlink())
        self.assertEqual((self.folder / "file").read_text(), "SIM-ABS-96\n")


class Delivered(ToolTest):
    """What is no result, but may be all there is of a measurement."""

    def setUp(self):
        super().setUp()
        self.furnish(reader("A-1", "absorbance-96", at_run("partial-data")))

    def check(self, document):
        validate(document, "qelctl-run-error")
        self.assertEqual(document["format"], "qeldevices-run-error")
        values = document["delivered"]["values"][0]["value"]
        self.assertEqual(len(values), 48)
        self.assertEqual(document["configuration"]["wavelengths"], [450])

    def test_it_is_kept_beside_the_results(self):
        for form, repeat in itertools.product(("csv", "json", "plate", "table"), (1, 2)):
            file = self.folder / f"{form}{repeat}"
            for again in ("", "-2"):
                _, errors = self.run_tool("run", "A-1", *ABSORBANCE, "--format", form, "--output",
                                          file, "--repeat", repeat, code=1)
                run = ".run-1" if repeat > 1 else ""
                kept = pathlib.Path(f"{file}{run}.delivered{again}.json")
                self.assertIn(f"kept in {kept}.", errors)
                self.check(json.loads(kept.read_text()))
            self.assertFalse(file.exists())

    def test_it_is_printed_where_there_is_no_file(self):
        output, _ = self.run_tool("run", "A-1", *ABSORBANCE, "--format", "json", code=1)
        self.check(json.loads(output))
        output, errors = self.run_tool("run", "A-1", *ABSORBANCE, "--output", "/dev/null", code=1)
        self.assertEqual(output, "")
        self.check(json.loads(errors.splitlines()[-1]))


class Scripts(ToolTest):
    def test_a_failure_is_a_document(self):
        self.furnish(reader("A-1", "absorbance-96", at_run("error")))
        output, _ = self.run_tool("run", "A-1", *ABSORBANCE, "--format", "json", code=5)
        error = json.loads(output)
        validate(error, "qelctl-run-error")
        self.assertEqual((error["outcome"], error["exitCode"]), ("failed", 5))
        self.assertIsNone(error["delivered"])

    def test_what_cannot_begin_is_a_document_too(self):
        for code, arguments in {
                2: ("A-1", *ABSORBANCE, "--repeat", "x", "--format", "json"),
                3: ("A-2", *ABSORBANCE, "--output", self.folder / "a.json"),
                8: ("A-1", *ABSORBANCE, "--output", self.folder / "no" / "a.json")}.items():
            output, errors = self.run_tool("run", *arguments, code=code)
            error = json.loads(output)
            validate(error, "qelctl-run-error")
            self.assertEqual((error["outcome"], error["exitCode"]), ("refused", code))
            self.assertIn(error["sentence"].splitlines()[0], errors)

    def test_progress_as_documents(self):
        _, errors = self.run_tool("run", "A-1", *ABSORBANCE, "--progress", "json")
        lines = [json.loads(line) for line in errors.splitlines()]
        for line in lines:
            validate(line, "qelctl-progress")
        self.assertEqual(lines[-1]["progress"], 1)

    def test_configurations_that_never_end(self):
        fifo = self.folder / "fifo"
        os.mkfifo(fifo)
        for option in [("--config", f"@{fifo}"), ("--config", "@/dev/zero"),
                       ("--set", f"image=@{fifo}"), ("--set", "image=@/dev/zero")]:
            with self.subTest(option):
                self.run_tool("run", "A-1", "firmware-update", *option, code=2)


class Rogues(ToolTest):
    """A driver that does what no driver may."""

    def setUp(self):
        super().setUp()
        self.arguments = ("--plugins", ROGUE, "run", "1", "reference", "--exact")

    def rogue(self, what, *more, code=10, **options):
        self.environment["ROGUE"] = what
        return self.run_tool(*self.arguments, *more, code=code, **options)

    def test_it_is_named_and_never_a_success(self):
        for where in ("load", "enumerate", "open", "execute", "close"):
            for what in ("crash", "abort", "throw", "exit", "quick_exit"):
                with self.subTest(where, what=what):
                    _, errors = self.rogue(f"{where} {what}", "--repeat", 3)
                    self.assertIn("rogue.so", errors.splitlines()[-1])
                    if where in ("open", "execute", "close"):
                        self.assertIn(f"{where}()", errors)

    def test_it_may_be_called_like_a_library(self):
        shutil.copy(pathlib.Path(ROGUE) / "rogue.so", self.folder / "librogue.so")
        self.arguments = ("--plugins", self.folder, *self.arguments[2:])
        self.assertIn("librogue.so", self.rogue("load crash")[1])

    def test_it_ends_the_event_loop(self):
        self.assertIn("event loop", self.rogue("open quit")[1])

    def test_a_crash_takes_no_finished_run(self):
        file = self.folder / "runs.csv"
        _, errors = self.rogue("execute crash", "--repeat", 5, "--output", file)
        self.assertIn(f"2 of 5 runs are finished and kept in {file}", errors)
        self.assertEqual([row["run"] for row in csv.DictReader(io.StringIO(file.read_text()))], ["1", "2"])
        self.assertEqual(self.files(), ["runs.csv"])

    def test_a_call_without_return_keeps_the_limit(self):
        processes = {}
        for case in itertools.product(("load", "enumerate", "open", "destroy"), ("hang", "shut")):
            self.environment["ROGUE"] = " ".join(case)
            processes[case] = self.start(*self.arguments, "--timeout", 1)
        for (where, what), process in processes.items():
            with self.subTest(where, what=what):
                _, errors = process.communicate(timeout=PATIENCE)
                self.assertEqual(process.returncode, 6)
                # In a driver that keeps all signals to itself, only the call is known.
                self.assertIn(b"rogue" if what == "hang" or where == "open" else b"driver", errors)

    def test_sigterm_holds_in_a_call(self):
        processes = [self.in_open(f"open {what}") for what in ("hang", "shut")]
        for process in processes:
            process.terminate()
        for process in processes:
            _, errors = process.communicate(timeout=PATIENCE)
            self.assertEqual(process.returncode, 130)
            self.assertIn(b"open()", errors)

    def test_a_call_without_return_is_limited_without_being_told(self):
        process = self.in_open("open hang")
        timers = [float(fields[1].split(",")[0])
                  for file in pathlib.Path(f"/proc/{process.pid}/fdinfo").iterdir()
                  for line in file.read_text().splitlines()
                  if (fields := line.split("it_value: (")) and len(fields) > 1]
        self.assertEqual([0 < seconds <= 600 for seconds in timers], [True])

    def in_open(self, what):
        """The tool once the driver is in its call of open()."""
        self.environment["ROGUE"] = what
        process = self.start("--log", "info", *self.arguments)
        while b"Creating device" not in process.stderr.readline():
            pass
        time.sleep(0.2)
        return process

    def test_its_prints_are_no_data(self):
        output, errors = self.rogue("open print", code=0)
        self.assertEqual(output, "R\n")
        self.assertIn("rogue was here", errors)

    def test_closed_streams_are_no_files(self):
        file = self.folder / "result.txt"
        self.environment["ROGUE"] = "open print"
        for closed in ("<&-", ">&-", "2>&-", "<&- >&- 2>&-"):
            with self.subTest(closed):
                command = 'exec "$0" "$@" ' + closed
                subprocess.run(["sh", "-c", command, os.environ["QELCTL"], *self.arguments,
                                "--output", file, "--force"], env=self.environment, check=True,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
                self.assertEqual(file.read_text(), "R\n")


if __name__ == "__main__":
    unittest.main()
