"""Calls to simulated devices by the servers of others, over the loopback device.

Each is one client that calls again and again: it sets a property and waits until it is told that this
is done. Neither server has encryption, nor keeps anything on a disk.
"""

import contextlib
import ctypes
import ctypes.util
import os
import shutil
import socket
import subprocess
import time


class Failed(Exception):
    pass


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def figures(count, call):
    """The median and the 90th percentile in µs."""
    times = []
    for _ in range(count + count // 10 + 1):
        start = time.perf_counter()
        call()
        times.append((time.perf_counter() - start) * 1e6)
    times = sorted(times[-count:])
    return times[count // 2], times[count * 9 // 10]


@contextlib.contextmanager
def running(port, *command, environment=None):
    program = shutil.which(command[0], path=os.environ["PATH"] + ":/usr/sbin")
    if not program:
        raise Failed("not installed")
    process = subprocess.Popen([program, *command[1:]], stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL, env={**os.environ, **(environment or {})})
    try:
        for _ in range(100):
            time.sleep(0.05)
            if process.poll() is not None:
                raise Failed(f"ends with {process.returncode}")
            with contextlib.suppress(ConnectionRefusedError), \
                    socket.create_connection(("127.0.0.1", port)):
                break
        yield
    finally:
        process.terminate()
        process.wait()


def indiserver(folder, count):
    """The server passes a call on to the process of a driver, like ours."""
    port = free_port()
    device = "Filter Simulator"
    connect = (f'<newSwitchVector device="{device}" name="CONNECTION">'
               '<oneSwitch name="CONNECT">On</oneSwitch></newSwitchVector>').encode()
    with running(port, "indiserver", "-p", str(port), "indi_simulator_wheel",
                 environment={"HOME": str(folder)}), \
            socket.create_connection(("127.0.0.1", port), timeout=10) as connection:
        connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)

        def wait_for(end):
            told = b""
            while end not in told:
                told += connection.recv(65536)
                if not told:
                    raise Failed("hangs up")

        def call():
            connection.sendall(connect)
            wait_for(b"</setSwitchVector>")

        connection.sendall(b'<getProperties version="1.7"/>')
        wait_for(b'name="CONFIG_PROCESS"')
        call()
        time.sleep(1)  # it goes on to introduce itself
        connection.recv(1 << 20)
        return figures(count, call)


def check(status):
    if status:
        raise Failed(f"SANE status {status}")


def saned(folder, count):
    """The server itself, one process for each client, loads the driver."""
    port = 6566  # the only one that its clients ask
    for name, files in {"near": {"dll": "net", "net": "127.0.0.1"},
                        "far": {"dll": "test", "saned": "127.0.0.1"}}.items():
        (folder / name).mkdir()
        for file, content in files.items():
            (folder / name / f"{file}.conf").write_text(content + "\n")
    library = ctypes.util.find_library("sane")
    if not library:
        raise Failed("not installed")
    with running(port, "saned", "-l", "-b", "127.0.0.1", "-e",
                 environment={"SANE_CONFIG_DIR": str(folder / "far")}):
        os.environ["SANE_CONFIG_DIR"] = str(folder / "near")
        sane = ctypes.CDLL(library)
        device = ctypes.c_void_p()
        check(sane.sane_init(None, None))
        check(sane.sane_open(b"net:127.0.0.1:test:0", ctypes.byref(device)))
        resolution = ctypes.c_int(100 << 16)
        name_of = sane.sane_get_option_descriptor
        name_of.restype = ctypes.POINTER(ctypes.c_char_p)
        option = next(i for i in range(1, 20) if name_of(device, i)[0] == b"resolution")
        set_value = 1
        try:
            return figures(count, lambda: check(sane.sane_control_option(
                device, option, set_value, ctypes.byref(resolution), None)))
        finally:
            sane.sane_close(device)
            sane.sane_exit()


ALL = {"saned": saned, "indiserver": indiserver}
