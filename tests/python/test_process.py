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


def test_application_of_pyqt():
    # Its own thread may call at any time, others while its event loop runs.
    code = """
        import threading
        from PyQt5.QtCore import QCoreApplication, QTimer
        application = QCoreApplication(["python"])
        import qeldevices as qel
        lab = qel.simulate({"timeScale": 0, "instruments": [
            {"model": "absorbance-96", "serial": "A-1"}]})
        reader = qel.open("A-1")
        print(reader.absorbance().rows)
        ticks = []
        timer = QTimer()
        timer.timeout.connect(lambda: ticks.append(1))
        timer.start(1)
        def measure():
            print(reader.absorbance().columns)
            application.quit()
        QTimer.singleShot(50, lambda: threading.Thread(target=measure).start())
        application.exec_()
        print(bool(ticks))
    """
    done = subprocess.run([sys.executable, "-c", textwrap.dedent(code)], capture_output=True,
                          text=True, timeout=60)
    assert (done.stdout, done.stderr, done.returncode) == ("8\n12\nTrue\n", "", 0)


def test_application_of_pyqt_whose_event_loop_does_not_run():
    code = """
        import threading
        from PyQt5.QtCore import QCoreApplication
        application = QCoreApplication(["python"])
        import qeldevices as qel
        def start():
            try:
                qel.start(language="de")
            except qel.Error as error:
                print(error)
        other = threading.Thread(target=start)
        other.start()
        other.join()
    """
    done = subprocess.run([sys.executable, "-c", textwrap.dedent(code)], capture_output=True,
                          text=True, timeout=60)
    assert "Ereignisschleife" in done.stdout and done.returncode == 0, done
