"""What the package says of itself: types, examples, leaks."""

import ast
import ctypes
import doctest
import gc
import importlib
import json
import os
import pathlib
import pkgutil
import re
import subprocess
import sys

import pytest

import qeldevices as qel

USER = """
import qeldevices as qel
reveal_type(qel.open("A").absorbance())
async def run(reader: qel.Reader) -> None:
    reveal_type(await reader.aio.luminescence(integrationTime=100))
    async for event in reader.events():
        reveal_type(event)
for change in qel.watch():
    change.nothing
"""


def test_types(tmp_path):
    (tmp_path / "user.py").write_text(USER)
    package = pathlib.Path(qel.__file__).parent
    checked = subprocess.run(
        ["mypy", "--strict", "--cache-dir", str(tmp_path / "cache"), str(package), "user.py"],
        cwd=tmp_path, capture_output=True, text=True, env={**os.environ, "MYPYPATH": ""})
    said = [line.split(": ", 1)[1] for line in checked.stdout.splitlines()[:-1]]
    assert said == [
        'note: Revealed type is "qeldevices._results.Plate"',
        'note: Revealed type is "qeldevices._results.Plate"',
        'note: Revealed type is "qeldevices._reader.Event"',
        'error: "Change" has no attribute "nothing"  [attr-defined]',
    ], checked.stdout + checked.stderr


@pytest.mark.parametrize("name", [
    module.name for module in pkgutil.iter_modules(qel.__path__) if module.name != "_native"])
def test_examples(name):
    result = doctest.testmod(importlib.import_module(f"qeldevices.{name}"))
    assert result.failed == 0


def test_every_sentence_is_there_in_german():
    said = set()
    for source in pathlib.Path(qel.__file__).parent.glob("*.py"):
        for node in ast.walk(ast.parse(source.read_text())):
            if isinstance(node, ast.Call) and getattr(node.func, "id", "") == "say":
                said |= {part.value for part in node.args if isinstance(part, ast.Constant)}
            # None is raised past the table.
            if isinstance(node, ast.Raise) and isinstance(node.exc, ast.Call):
                own = isinstance(getattr(qel, getattr(node.exc.func, "id", ""), None), type)
                plain = [part for part in node.exc.args if isinstance(part, (ast.Constant, ast.JoinedStr))]
                assert not (own and plain), f"{source.name}, line {node.lineno}"
    german = qel._texts._GERMAN
    assert said <= german.keys() and len(said) > 10
    for english, translated in german.items():
        assert sorted(re.findall("{.*?}", english)) == sorted(re.findall("{.*?}", translated))


def memory():
    gc.collect()
    ctypes.CDLL(None).malloc_trim(0)  # what is free is not held
    return int(pathlib.Path("/proc/self/statm").read_text().split()[1]) * 4096


def test_nothing_leaks(reader):
    descriptors = len(os.listdir("/proc/self/fd"))
    sizes = []
    for _ in range(5):
        for _ in range(2500):
            plate = reader.absorbance(wavelengths=[450])
            assert plate[450].shape == (8, 12)
        sizes.append(memory())
    # A leak grows with every run; what a process takes once and keeps does not.
    growths = [after - before for before, after in zip(sizes, sizes[1:])]
    assert min(growths) < 50 * 2500, growths
    assert len(os.listdir("/proc/self/fd")) <= descriptors


def test_the_guide():
    guide = pathlib.Path(__file__).parents[2] / "docs" / "python.md"
    fences = re.compile("^```.*$", re.MULTILINE)
    example = doctest.DocTestParser().get_doctest(
        fences.sub("", guide.read_text()), {}, "python.md", str(guide), 0)
    runner = doctest.DocTestRunner(optionflags=doctest.ELLIPSIS | doctest.REPORT_NDIFF)
    try:
        assert runner.run(example, clear_globs=False).failed == 0
    finally:
        if "lab" in example.globs:
            example.globs["lab"].close()


def test_notebook_shows_the_plate(tmp_path):
    cells = [{"cell_type": "code", "id": str(number), "execution_count": None, "metadata": {},
              "outputs": [], "source": source} for number, source in enumerate([
                  "import qeldevices as qel",
                  "with qel.open('SIM-A-0001') as reader:\n"
                  "    plate = reader.absorbance(wavelengths=[450])\n"
                  "plate"])]
    (tmp_path / "tour.ipynb").write_text(json.dumps(
        {"nbformat": 4, "nbformat_minor": 5, "cells": cells, "metadata": {
            "kernelspec": {"name": "python3", "display_name": "Python 3", "language": "python"}}}))
    subprocess.run(
        [sys.executable, "-m", "nbconvert", "--to", "html", "--execute", "tour.ipynb"], check=True,
        cwd=tmp_path, capture_output=True, env={**os.environ, "HOME": str(tmp_path)})
    shown = (tmp_path / "tour.html").read_text()
    assert "450 nm (OD)" in shown and shown.count("background:rgb(") == 96
