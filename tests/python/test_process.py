"""What the package does to the process it is in, each time in a process of its own."""

import os
import signal
import subprocess
import sys
import textwrap

import pytest

STALLED = """
import qeldevices as qel, threading, sys, os
lab = qel.simulate({"instruments": [{"model": "absorbance-96", "serial": "A-1", "faults":
    [{"at": "execute", "do": "stall"}]}]})
reader = qel.open("A-1")
"""


def python(code, **options):
    return subprocess.Popen([sys.executable, "-c", STALLED + textwrap.dedent(code)],
                            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, **options)


def test_interrupt_ends_a_wait_at_once():
    process = python("""
        told = lambda fraction: print("running", flush=True)
        try:
            reader.absorbance(progress=told)
        except KeyboardInterrupt:
            print("interrupted", flush=True)
        try:
            reader.absorbance(timeout=0.1)   # waits for the ladder
        except qel.Error as error:
            print(type(error).__name__)
    """)
    assert process.stdout.readline() == "running\n"
    process.send_signal(signal.SIGINT)
    out, err = process.communicate(timeout=60)
    assert (out, err, process.returncode) == ("interrupted\nTimedOut\n", "", 0)


@pytest.mark.parametrize("code", ["sys.exit(3)", "raise SystemExit(3)", "del reader; sys.exit(3)"])
def test_exit_in_the_middle_of_a_run(code):
    process = python(f"""
        running = threading.Event()
        def run():
            try:
                reader.absorbance(progress=lambda fraction: running.set())
            except qel.Aborted:
                pass
        threading.Thread(target=run, daemon=True).start()
        running.wait()
        {code}
    """)
    out, err = process.communicate(timeout=60)
    assert (out, err, process.returncode) == ("", "", 3)


def test_fork_is_refused():
    process = python("""
        pid = os.fork()
        if pid == 0:
            try:
                qel.instruments()
            except qel.Error as error:
                print(error, flush=True)
                sys.exit(5)
        print(os.waitstatus_to_exitcode(os.waitpid(pid, 0)[1]))
        print(len(qel.instruments()))
    """)
    out, err = process.communicate(timeout=60)
    assert "spawn" in out and out.endswith("\n5\n1\n") and err == "" and process.returncode == 0


def test_language_and_plugin_folders(tmp_path):
    code = f"""
        import qeldevices as qel
        try:
            qel.start(plugin_folders=["/no/such"])
        except qel.Error as error:
            print(error)
        qel.start(plugin_folders=[{str(tmp_path)!r}], language="de")
        reader = qel.open("SIM-A-0001")
        try:
            reader.run("luminescence")
        except qel.NotOffered as error:
            print(error.sentence)
        reader.close()
        try:
            reader.features
        except qel.DeviceGone as error:
            print(error.sentence)
    """
    done = subprocess.run([sys.executable, "-c", textwrap.dedent(code)], capture_output=True,
                          text=True, timeout=60)
    assert "no plugin folder '/no/such'" in done.stdout
    assert "bietet" in done.stdout and "Das Gerät wurde geschlossen." in done.stdout, done


def test_application_of_qt_that_is_there_already():
    # As PyQt5 makes one, and without PyQt5.
    code = """
        import ctypes, threading
        qt = ctypes.CDLL("libQt5Core.so.5")
        argc, argv = ctypes.c_int(1), (ctypes.c_char_p * 2)(b"python", None)
        application = ctypes.create_string_buffer(64)
        qt._ZN16QCoreApplicationC1ERiPPci(application, ctypes.byref(argc), argv, 0x050f00)
        import qeldevices as qel
        lab = qel.simulate({"timeScale": 0, "instruments": [
            {"model": "absorbance-96", "serial": "A-1"}]})
        reader = qel.open("A-1")
        print(reader.absorbance().rows)
        other = threading.Thread(target=lambda: print(reader.absorbance().columns))
        other.start()
        while other.is_alive():
            qt._ZN16QCoreApplication13processEventsE6QFlagsIN10QEventLoop17ProcessEventsFlagEE(0)
    """
    done = subprocess.run([sys.executable, "-c", textwrap.dedent(code)], capture_output=True,
                          text=True, timeout=60)
    assert (done.stdout, done.stderr, done.returncode) == ("8\n12\n", "", 0)
