"""Every code block of a Markdown file does what it says, with an installation of this build.

usage: test_code_blocks.py FILE

The language behind the fence says what is done with a block; the blocks share a folder, in their
order:

  console  lines after "$ " are commands, the others what they print; "..." stands for any lines
  sh       commands that succeed
  cpp      compiled; what has a main() is run as well, with the simulated instruments
  cmake    part of a project that is configured
  json     parsed; with "instruments" it is a scenario that the simulator takes
  python   run with the Python package
  pycon    left to the tests of the Python package, which run it

A comment in the line above a block, which no reader sees, makes an exception:

  <!-- fragment: REASON -->          nothing is done with it
  <!-- without COMMAND: REASON -->   the command is left out
  <!-- ends with CODE: REASON -->    of the last command
"""

import json
import os
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(os.environ["SOURCE_DIR"])
BUILD = pathlib.Path(os.environ["BUILD_DIR"])
PREFIX = pathlib.Path(os.environ["PREFIX"])
FILE = pathlib.Path(sys.argv.pop())
FENCE = re.compile(r"(?:^<!-- (?P<mark>[^\n]*) -->\n+)?"
                   r"^```(?P<language>[^\n]*)\n(?P<text>.*?)^```$", re.M | re.S)
# The instruments that are there without a scenario, only quicker.
SCENARIO = {"timeScale": 0, "instruments": [
    {"model": "absorbance-96", "serial": "SIM-A-0001", "location": "bench-1", "seed": 1,
     "plate": {"layout": "dilution-series", "dye": "tmb"}},
    {"model": "luminescence-96", "serial": "SIM-L-0001", "location": "bench-2", "seed": 2,
     "plate": {"layout": "dilution-series"}}]}


class Place:
    """The folder in which the blocks are tried."""

    def __init__(self, folder):
        self.folder = folder
        self.scenario = folder / "scenario of the test.json"
        self.scenario.write_text(json.dumps(SCENARIO), encoding="utf-8")
        tool = folder / "build" / "release" / "bin" / "qelctl"
        tool.parent.mkdir(parents=True)
        tool.symlink_to(PREFIX / "bin" / "qelctl")
        (folder / "tests").symlink_to(SOURCE / "tests")
        self.environment = {
            **{k: v for k, v in os.environ.items() if not k.startswith(("LC_", "LANG", "QT_"))},
            "LC_ALL": "C.UTF-8", "QELDEVICES_SIMULATOR": str(self.scenario),
            "PATH": f"{PREFIX / 'bin'}:{os.environ['PATH']}", "CMAKE_GENERATOR": "Ninja",
            "CMAKE_PREFIX_PATH": str(PREFIX),
            "PKG_CONFIG_PATH": str(PREFIX / "lib" / "pkgconfig"),
            "PYTHONPATH": str(BUILD / "python")}
        self.where = folder

    def run(self, command, code=0):
        """Runs a shell command where the one before has ended; returns all that it prints. Without
        a `code` it may end as it likes."""
        mark = "-- here --"
        result = subprocess.run(
            ["bash", "-c", f"{command}\ncode=$?; printf '%s\\n' '{mark}' \"$PWD\"; exit $code"],
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
            text=True, cwd=self.where, env=self.environment, check=False)
        printed, _, where = result.stdout.rpartition(mark + "\n")
        if code is not None and result.returncode != code:
            raise AssertionError(f"{command}: exit code {result.returncode}\n{result.stdout}")
        self.where = where.strip() or self.where
        return printed

    def write(self, name, text):
        path = self.folder / name
        path.parent.mkdir(exist_ok=True)
        path.write_text(text, encoding="utf-8")
        return path


class CodeBlocks(unittest.TestCase):
    def console(self, place, text, omitted, code):
        commands = re.findall(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", text, re.M)
        self.assertTrue(commands, "no line begins with '$ '")
        self.assertEqual("".join(f"$ {c}\n{shown}" for c, shown in commands), text)
        for command, shown in commands:
            if command == omitted:
                continue
            printed = place.run(command, None if shown else code)
            if shown.strip():
                pattern = ".*".join(map(re.escape, shown.rstrip("\n").split("...")))
                self.assertRegex(printed.replace("\r\n", "\n"), f"(?s)^{pattern}\n$", command)

    def sh(self, place, text, omitted, code):
        commands = [line for line in text.splitlines() if line.strip() and line != omitted]
        for i, command in enumerate(commands):
            place.run(command, code if i + 1 == len(commands) else 0)

    def cpp(self, place, text, _omitted, code):
        source = place.write("program.cpp", text)
        flags = f"-std=c++17 -fPIC {os.environ.get('CXXFLAGS', '')}"
        packages = "qeldevices " + ("qelfrontend" if "<qelfrontend/" in text else "")
        compiler = shlex.quote(os.environ["CXX"])
        if not re.search(r"\bmain\(", text):
            place.run(f"{compiler} {flags} -fsyntax-only {source} $(pkg-config --cflags {packages})")
            return
        place.run(f"{compiler} {flags} {source} -o {place.folder}/program "
                  f"$(pkg-config --cflags --libs {packages}) -Wl,-rpath,{PREFIX}/lib")
        (place.folder / "devicedrivers").mkdir(exist_ok=True)
        shown = place.run(f"{place.folder}/program", 0 if code else 1)
        self.assertNotIn("2.2", shown)  # no driver, no values, no crash
        for plugin in (PREFIX / "bin" / "devicedrivers").iterdir():
            (place.folder / "devicedrivers" / plugin.name).symlink_to(plugin)
        self.assertIn("2.2", place.run(f"{place.folder}/program", code))

    def cmake(self, place, text, _omitted, _code):
        targets = re.findall(r"target_link_libraries\((\S+)", text)
        added = re.findall(r"add_(?:executable|library)\((\S+)", text)
        place.write("project/main.cpp", "int main() {}\n")
        place.write("project/CMakeLists.txt",
                    "cmake_minimum_required(VERSION 3.22)\nproject(example LANGUAGES CXX)\n"
                    + "".join(f"add_executable({name} main.cpp)\n"
                              for name in targets if name not in added) + text)
        place.run(f"cmake -S {place.folder}/project -B {place.folder}/project/build")

    def json(self, place, text, _omitted, _code):
        document = json.loads(text)
        if "instruments" in document:
            scenario = place.write("shown.json", text)
            printed = place.run(f"QELDEVICES_SIMULATOR={scenario} qelctl list --json")
            self.assertEqual(len(json.loads(printed)["instruments"]), len(document["instruments"]))

    def python(self, place, text, _omitted, code):
        if "PYTHON" not in os.environ:
            print("not run, as this build has no Python package that can be run:")
            print(text)
            return
        script = place.write("script.py", text)
        place.run(f"{shlex.quote(os.environ['PYTHON'])} {script}", code)

    def pycon(self, _place, text, _omitted, _code):
        self.assertTrue(text.startswith(">>> "))

    def test_every_block(self):
        text = FILE.read_text(encoding="utf-8")
        blocks = list(FENCE.finditer(text))
        self.assertEqual(len(re.findall(r"^```", text, re.M)), 2 * len(blocks))
        with tempfile.TemporaryDirectory() as folder:
            place = Place(pathlib.Path(folder))
            for block in blocks:
                line = text.count("\n", 0, block.start("language")) + 1
                with self.subTest(f"{FILE.name}, line {line}"):
                    self.check(place, block, f"{FILE.name}, line {line}")

    def check(self, place, block, where):
        kind, _, reason = (block["mark"] or "").partition(": ")
        if kind:
            self.assertTrue(reason, f"the comment above {where} gives no reason")
        if kind == "fragment":
            print(f"{where} is a fragment: {reason}")
            return
        omitted = kind.removeprefix("without ") if kind.startswith("without ") else None
        code = int(kind.removeprefix("ends with ")) if kind.startswith("ends with ") else 0
        self.assertIn(block["language"], ("console", "sh", "cpp", "cmake", "json", "python",
                                          "pycon"),
                      "say what it is behind the fence, or in a comment above that it is a fragment")
        getattr(self, block["language"])(place, block["text"], omitted, code)


if __name__ == "__main__":
    unittest.main()
