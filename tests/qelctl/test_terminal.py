"""The tool on a terminal: progress, questions, colours, widths, Ctrl-C."""

import os
import re
import signal
import subprocess
import time
import unittest

from harness import PATIENCE, ToolTest, at_open, at_run, reader

ESCAPES = re.compile(r"\x1b\[[0-9;]*[A-Za-z]")


class Progress(ToolTest):
    def bars(self, screen):
        """The bars that were drawn one over another."""
        return re.findall(r"\r(\[#* *\] +\d+ %[^\r\x1b]*)\x1b\[K", screen)

    def test_a_bar_while_it_runs_and_nothing_of_it_afterwards(self):
        self.furnish(reader("A-1"), time_scale=0.2)
        terminal = self.on_terminal("run", "A-1", "absorbance", "--set", "wavelengths=450")
        code = terminal.finish()
        bars = self.bars(terminal.screen)
        self.assertEqual(code, 0)
        self.assertGreaterEqual(len(bars), 4)
        shares = [int(re.search(r"(\d+) %", bar)[1]) for bar in bars]
        self.assertEqual((shares[0], shares[-1], shares), (0, 100, sorted(shares)))
        self.assertRegex(bars[1], r"\d:\d\d left")
        before, after = terminal.screen.rsplit("\r\x1b[K", 1)
        self.assertTrue(after.startswith("450 nm (OD)\r\n"), after)

    def test_none_where_nobody_watches_or_nothing_fits(self):
        self.furnish(reader("A-1"), time_scale=0.05)
        arguments = ["run", "A-1", "absorbance"]
        with open(self.folder / "errors", "wb") as errors:
            self.start(*arguments, stderr=errors).communicate(timeout=PATIENCE)
        self.assertEqual((self.folder / "errors").read_bytes(), b"")
        terminal = self.on_terminal(*arguments, columns=15)
        self.assertEqual(terminal.finish(), 0)
        self.assertNotIn("%", terminal.screen)

    def test_nothing_but_text_where_no_more_is_wanted(self):
        self.furnish(reader("A-1"), time_scale=0.1)
        measure = ["run", "A-1", "absorbance", "--set", "wavelengths=450"]
        for arguments, environment, bar in [
            (["--color", "never", *measure], {}, True),
            ([*measure, "--no-progress", "--output", "/dev/null"], {}, False),
            (measure, {"TERM": "dumb"}, False),
            (measure, {"TERM": ""}, False),
        ]:
            with self.subTest(arguments, **environment):
                before = dict(self.environment)
                self.environment.update(environment)
                terminal = self.on_terminal(*arguments)
                self.environment = before
                self.assertEqual(terminal.finish(), 0)
                self.assertNotIn("\x1b", terminal.screen)
                self.assertEqual("100 %" in terminal.screen, bar)

    def test_it_follows_the_width_of_the_terminal(self):
        self.furnish(reader("A-1"), time_scale=0.5)
        terminal = self.on_terminal("run", "A-1", "absorbance", "--output", "/dev/null",
                                    columns=60)
        terminal.expect(r"\d:\d\d left\x1b\[K")
        terminal.resize(30)
        terminal.expect(r"\x1b\[K")  # may have been on its way
        self.assertEqual(terminal.finish(), 0)
        widths = [len(bar) for bar in self.bars(terminal.screen)]
        self.assertGreater(len(widths), 3)
        self.assertLess(max(widths), 30)

    def test_the_table_is_folded_and_coloured_for_the_terminal_alone(self):
        arguments = ["run", "A-1", "absorbance", "--set", "wavelengths=450"]
        plain = self.run_tool(*arguments)[0]
        self.assertNotIn("\x1b", plain)
        shown = {}
        for columns in 100, 40:
            terminal = self.on_terminal(*arguments, columns=columns)
            self.assertEqual(terminal.finish(), 0)
            shown[columns] = terminal.screen.rsplit("\r\x1b[K", 1)[1]
            self.assertIn("\x1b[38;5;", shown[columns])
        text = {columns: ESCAPES.sub("", screen).replace("\r", "")
                for columns, screen in shown.items()}
        self.assertEqual(text[100], plain)
        self.assertLessEqual(max(map(len, text[40].splitlines())), 40)
        self.assertEqual(sorted(re.findall(r"\d\.\d+", text[40])),
                         sorted(re.findall(r"\d\.\d+", plain)))

    def test_colours_are_used_as_the_user_says(self):
        measure = ["run", "A-1", "absorbance"]
        for arguments, environment, colored in [
            (["--color", "never", *measure], {}, False),
            (["--color", "always", *measure], {"NO_COLOR": "1"}, True),
            (measure, {"NO_COLOR": "1"}, False),
            (measure, {"NO_COLOR": ""}, True),
            (measure, {"TERM": "dumb"}, False),
            ([*measure, "--format", "csv"], {}, False),
        ]:
            with self.subTest(arguments=arguments, **environment):
                before = dict(self.environment)
                self.environment.update(environment)
                terminal = self.on_terminal(*arguments)
                self.environment = before
                self.assertEqual(terminal.finish(), 0)
                self.assertEqual("\x1b[38;5;" in terminal.screen, colored)
        self.assertIn("\x1b[38;5;", self.run_tool("--color", "always", *measure)[0])
        target = self.folder / "plate.txt"
        self.assertEqual(self.on_terminal(*measure, "--output", target).finish(), 0)
        self.assertNotIn("\x1b", target.read_text())


class Outsiders(ToolTest):
    """What drivers say, a terminal shows and never acts on."""

    HOSTILE = "\x1b]0;owned\x07\x1b[2J\x9b31m\u202e\u2028\nqelctl: forged"
    OWN = re.compile(r"\x1b\[(?:K|38;5;\d+;48;5;\d+m|0m)")

    def check(self, screen):
        screen = self.OWN.sub("", screen)
        self.assertFalse(set(screen) & set("\x1b\x07\x9b\u202e\u2028"), repr(screen))
        self.assertNotRegex(screen, r"(?m)^(qelctl|A-9): forged")
        self.assertIn("forged", screen)

    def test_nothing_of_it_takes_effect(self):
        hostile = {"name": "R" + self.HOSTILE, "location": "x" + self.HOSTILE}
        for arguments, *faults in [
            (["list"],), (["list", "--json"],), (["list", "--driver", self.HOSTILE],),
            (["show", "A-9"],), (["show", "A-9", "--json"],), (["show", self.HOSTILE],),
            (["run", "A-9", "reference", "--format", "json"],),
            (["run", "A-9", "reference"], at_run("error", info=self.HOSTILE)),
            (["run", "A-9", "reference", "--yes"], at_run("ask", text=self.HOSTILE)),
            (["run", "A-9", "ref", "--set", self.HOSTILE],),
            (["--log", "debug", "run", "A-9", "reference"],),
        ]:
            with self.subTest(arguments):
                self.furnish(reader("A-9" + self.HOSTILE, "absorbance-96", *faults) | hostile)
                terminal = self.on_terminal(*arguments)
                terminal.finish()
                self.check(terminal.screen)

    def test_a_question_does_not_either(self):
        self.furnish(reader("A-9", "absorbance-96", at_run("ask", text=self.HOSTILE)))
        terminal = self.on_terminal("run", "A-9", "reference")
        terminal.expect(r"\] ")
        terminal.type("n\n")
        self.assertEqual(terminal.finish(), 7)

    def test_json_means_the_same(self):
        self.furnish(reader("A-9", name=self.HOSTILE))
        self.assertEqual(self.run_json("list", "--json")["instruments"][0]["name"], self.HOSTILE)


class Narrow(ToolTest):
    def test_texts_are_folded_at_word_ends(self):
        for arguments in [["show", "A-1"], ["run", "--help"], ["--lang", "de", "--help"],
                          ["run", "A-1", "absorbance", "--set", "wavelengths=451"],
                          ["--lang", "de", "show", "none"]]:
            for columns in 40, 60:
                with self.subTest(arguments, columns=columns):
                    wide = self.on_terminal(*arguments, columns=1000)
                    wide.finish()
                    narrow = self.on_terminal(*arguments, columns=columns)
                    narrow.finish()
                    lines = [line for line in narrow.screen.splitlines()
                             if not line.startswith("  qelctl ")]  # to be copied whole
                    self.assertLessEqual(max(map(len, lines)), columns, narrow.screen)
                    self.assertEqual(narrow.screen.split(), wide.screen.split())


    def test_tables_become_sheets(self):
        self.furnish(reader("A-1"), reader("A-2"))
        terminal = self.on_terminal("list", columns=40)
        terminal.finish()
        self.assertLessEqual(max(map(len, terminal.screen.splitlines())), 40)
        self.assertRegex(terminal.screen, r"(?s)SERIAL +A-1\r\n.*\r\n\r\nNAME.*SERIAL +A-2\r\n")


class Questions(ToolTest):
    MEASURE = ["run", "A-1", "absorbance", "--set", "wavelengths=450"]

    def setUp(self):
        super().setUp()
        self.furnish(reader("A-1", plate=None))

    def ask(self, *arguments):
        terminal = self.on_terminal(*arguments, *self.MEASURE)
        terminal.expect(r"Insert a plate into the slot, then confirm\. \[.*\] ")
        return terminal

    def test_the_answer_decides(self):
        for keys, code in [("\n", 0), ("y\n", 0), ("Ja\n", 0), ("n\n", 7), ("no\n", 7),
                           ("\x04", 7)]:
            with self.subTest(keys):
                terminal = self.ask()
                terminal.type(keys)
                self.assertEqual(terminal.finish(), code, terminal.screen)
                self.assertEqual("450 nm" in terminal.screen, code == 0)
                # Whatever comes next has a line of its own.
                self.assertNotRegex(terminal.screen, r"\] *qelctl")

    def test_what_was_typed_before_answers_nothing(self):
        self.furnish(reader("A-1", "absorbance-96", at_open("delay", delay=700), plate=None))
        terminal = self.on_terminal("--log", "info", *self.MEASURE)
        terminal.expect("Creating device")
        terminal.type("\n")
        terminal.expect(r"Insert a plate .*\] ")
        time.sleep(0.3)
        self.assertNotIn("450 nm", terminal.screen)
        terminal.type("n\n")
        self.assertEqual(terminal.finish(), 7)

    def test_a_long_line_is_one_answer(self):
        terminal = self.ask()
        terminal.type("x" * 256 + "\n")
        terminal.expect(r"Insert a plate .*\] ")
        terminal.type("n\n")
        self.assertEqual(terminal.finish(), 7)

    def test_a_slip_is_asked_again(self):
        terminal = self.ask()
        terminal.type("q\n")
        terminal.expect(r"Insert a plate .*\] ")
        terminal.type("\n")
        self.assertEqual(terminal.finish(), 0)

    def test_in_the_users_language(self):
        terminal = self.on_terminal("--lang", "de", *self.MEASURE)
        terminal.expect(r"(?s)Platte.*\[Eingabetaste.*\] ")
        terminal.type("nein\n")
        self.assertEqual(terminal.finish(), 7)

    def test_a_request_during_a_measurement(self):
        self.furnish(reader("A-1", "absorbance-96", at_run("ask")), time_scale=0.1)
        terminal = self.on_terminal(*self.MEASURE)
        terminal.expect(r"\r\x1b\[K[A-Z][^\r]* \[Enter.*\] ")
        terminal.type("\n")
        self.assertEqual(terminal.finish(), 0)
        self.assertIn("100 %", terminal.screen)

    def test_nobody_is_asked_twice_or_in_vain(self):
        for option, code in [("--yes", 0), ("--no-input", 7)]:
            terminal = self.on_terminal(*self.MEASURE, option)
            self.assertEqual(terminal.finish(), code)
            self.assertIn("Insert a plate", terminal.screen)
            self.assertNotIn("[Enter", terminal.screen)

    def test_ctrl_c_at_the_question(self):
        target = self.folder / "out.csv"
        terminal = self.on_terminal(*self.MEASURE, "--output", target)
        terminal.expect(r"\] ")
        terminal.type("\x03")
        self.assertEqual(terminal.finish(), 130)
        self.assertRegex(terminal.screen, r"\r\nqelctl: Interrupted")
        self.assertEqual(self.files(), [])

    def test_time_goes_on_at_the_question(self):
        terminal = self.on_terminal(*self.MEASURE, "--timeout", "0.3")
        terminal.expect(r"\] ")
        self.assertEqual(terminal.finish(), 6)


class CtrlC(ToolTest):
    def test_the_first_one_ends_in_order(self):
        self.furnish(reader("A-1", "absorbance-96", at_run("stall")))
        terminal = self.on_terminal("run", "A-1", "absorbance")
        terminal.expect(r"50 %")
        terminal.type("\x03")
        self.assertEqual(terminal.finish(), 130)
        self.assertIn("qelctl: Interrupted", terminal.screen)

    def test_the_second_one_leaves_at_once(self):
        # While a driver looks for its instruments, nobody can listen to the first one.
        self.furnish(reader("A-1", "absorbance-96",
                            {"at": "enumerate", "nth": 2, "do": "delay", "delay": 25000}))
        terminal = self.on_terminal("list", "--watch")
        terminal.expect("A-1")
        time.sleep(1.5)
        started = time.monotonic()
        terminal.type("\x03")
        with self.assertRaises(subprocess.TimeoutExpired):
            terminal.process.wait(0.5)
        terminal.type("\x03")
        self.assertEqual(terminal.finish(), 130)
        self.assertLess(time.monotonic() - started, 15)

    def test_a_closed_terminal_ends_it(self):
        self.furnish(reader("A-1", "absorbance-96", at_run("stall")))
        terminal = self.on_terminal("run", "A-1", "absorbance", "--output", self.folder / "x")
        terminal.expect(r"50 %")
        os.close(terminal.master)
        self.assertEqual(terminal.process.wait(PATIENCE), 130)
        self.assertEqual(self.files(), [])


if __name__ == "__main__":
    unittest.main()
