#!/usr/bin/python3
"""Compares what it takes to list the instruments with two listing tools of the system.

Usage: startup_benchmark.py [RUNS [QELCTL]]

Runs `qelctl list`, `canbusutil -L` (Debian: libqt5serialbus5-bin) and `solid-hardware5 list`
(libkf5solid-bin) in random order, so that whatever else the machine does hits all alike, and prints the
time and the processor time of each and their ratios. Ends with 1 when qelctl is the slower one.

QELCTL is the tool to measure, /usr/bin/qelctl if its package is installed. Only there it stands where
the others stand: elsewhere the dynamic linker looks for every library beside the tool first, which
takes about 0.4 ms. Without a package the build of the preset "release" is installed in a temporary
folder.
"""

import os
import pathlib
import random
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
PACKAGED = "/usr/bin/qelctl"
# The drift of a machine that is never idle, not a licence to be slower.
TOLERANCE = 1.05


def find(program, package):
    path = shutil.which(program, path=os.environ["PATH"] + ":/usr/lib/qt5/bin")
    if not path:
        sys.exit(f"{program} is not there; install the Debian package {package}")
    return path


def run(command):
    """Elapsed and processor time in ms."""
    started = time.perf_counter()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    elapsed = time.perf_counter() - started
    process.returncode = os.waitstatus_to_exitcode(status)
    return elapsed * 1000, (usage.ru_utime + usage.ru_stime) * 1000


def install(folder):
    for component in "library", "tools":
        subprocess.run(["cmake", "--install", str(ROOT / "build/release"), "--prefix", folder,
                        "--component", component], stdout=subprocess.DEVNULL, check=True)
    return f"{folder}/bin/qelctl"


def compare(qelctl, runs):
    commands = {
        "qelctl list": [qelctl, "list"],
        "canbusutil -L": [find("canbusutil", "libqt5serialbus5-bin"), "-L"],
        "solid-hardware5 list": [find("solid-hardware5", "libkf5solid-bin"), "list"],
    }
    if subprocess.run(commands["qelctl list"], stdout=subprocess.DEVNULL, check=False).returncode:
        sys.exit(f"{qelctl} list fails")
    times = {name: [] for name in commands}
    order = list(commands)
    for number in range(runs + 3):
        # Whoever comes after the largest of them finds the caches full of other things.
        random.shuffle(order)
        for name in order:
            measured = run(commands[name])
            if number >= 3:  # those before have filled the caches
                times[name].append(measured)

    print(f"{'':22}{'median':>10}{'fastest':>10}{'processor':>11}{'ratio':>8}")
    own = statistics.median(elapsed for elapsed, _ in times["qelctl list"])
    ratios = []
    for name, measured in times.items():
        elapsed = [e for e, _ in measured]
        median = statistics.median(elapsed)
        processor = statistics.mean(p for _, p in measured)
        ratios.append(own / median)
        print(f"{name:22}{median:7.2f} ms{min(elapsed):7.2f} ms{processor:8.2f} ms"
              f"{own / median:8.2f}")
    return 0 if max(ratios) <= TOLERANCE else 1


def main(arguments):
    runs = int(arguments[0]) if arguments else 100
    if len(arguments) > 1 or os.path.exists(PACKAGED):
        return compare(arguments[1] if len(arguments) > 1 else PACKAGED, runs)
    with tempfile.TemporaryDirectory() as folder:
        return compare(install(folder), runs)


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
