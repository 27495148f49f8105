#!/usr/bin/env python3
"""Plays the instrument, whole or with a trouble of its own.

Usage: emulator.py (--tcp | --pty) [--trouble TROUBLE] [--accept CODE] [-- COMMAND...]

Without a command it says where it listens and plays until it is stopped. With one it runs the command,
with its place in the environment variable in which the driver looks, and ends with its exit code; with 0
for a code named by --accept.

Troubles: none; silent (never answers); garbage (answers with noise); half-lines (stops in the middle of
each answer); wrong-checksum; slow (every answer takes 300 ms); unplug (ends the connection in the middle
of every measurement).

Commands and answers are lines; an answer ends in "*" and the exclusive or of the bytes before it, in two
hexadecimal digits. A command may end so, too; nobody looks.

  ID?            ID @name@-1 1.0
  TEMP?          TEMP 21.5                    in °C
  CALIBRATE      CALIBRATED
  MEASURE 450 …  WELL read well value, …      from 0, row by row; one read for each wavelength in nm
                 END number-of-values
  STOP           no answer; the measurement ends where it is
  else           ERR
"""

import argparse
import os
import random
import socket
import subprocess
import sys
import threading
import time
import tty

VARIABLE = "QEL_@NAME@"
TROUBLES = ["none", "silent", "garbage", "half-lines", "wrong-checksum", "slow", "unplug"]
WELLS = 96


class Instrument:
    """One connection: gets the bytes that come in, writes answers with `write`."""

    def __init__(self, write, trouble):
        self.write = write
        self.trouble = trouble
        self.received = b""
        self.stopped = threading.Event()
        self.measuring = None

    def feed(self, data):
        self.received += data
        while b"\n" in self.received:
            line, self.received = self.received.split(b"\n", 1)
            self.obey(line.split(b"*")[0].decode(errors="replace").split())

    def obey(self, words):
        if not words:
            return
        if words[0] == "STOP":
            self.stopped.set()
        elif words[0] == "MEASURE":
            self.stopped.clear()
            self.measuring = threading.Thread(target=self.measure, args=(len(words) - 1,), daemon=True)
            self.measuring.start()
        else:
            answers = {"ID?": "ID @name@-1 1.0", "TEMP?": "TEMP 21.5", "CALIBRATE": "CALIBRATED"}
            self.answer(answers.get(words[0], "ERR"))

    def measure(self, reads):
        if self.trouble == "slow":
            time.sleep(0.3)
        for number in range(reads * WELLS):
            if self.stopped.wait(0.001):
                return
            if self.trouble == "unplug" and number == WELLS // 2:
                self.write(None)
                return
            self.answer(f"WELL {number // WELLS} {number % WELLS} {random.uniform(0.04, 3):.3f}",
                        slow=False)
        self.answer(f"END {reads * WELLS}", slow=False)

    def answer(self, words, slow=True):
        if self.trouble == "silent":
            return
        if self.trouble == "slow" and slow:
            time.sleep(0.3)
        checksum = 0
        for byte in words.encode():
            checksum ^= byte
        if self.trouble == "wrong-checksum":
            checksum ^= 1
        line = f"{words}*{checksum:02x}\n".encode()
        if self.trouble == "garbage":
            line = bytes(random.randrange(256) for _ in line)
        if self.trouble == "half-lines":
            line = line[:len(line) // 2]
        self.write(line)


def play_tcp(server, trouble):
    while True:
        connection, _ = server.accept()

        def write(data, connection=connection):
            try:
                if data is None:
                    connection.shutdown(socket.SHUT_RDWR)
                else:
                    connection.sendall(data)
            except OSError:  # the driver has gone
                pass

        def play(connection=connection, write=write):
            instrument = Instrument(write, trouble)
            try:
                while data := connection.recv(4096):
                    instrument.feed(data)
            except OSError:
                pass
            instrument.stopped.set()
            connection.close()

        threading.Thread(target=play, daemon=True).start()


def play_pty(master, trouble):
    def write(data):
        if data is None:
            os.close(master)  # as if the cable were pulled, for good
        else:
            os.write(master, data)

    instrument = Instrument(write, trouble)
    while True:
        try:
            data = os.read(master, 4096)
        except OSError:
            return
        instrument.feed(data)


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    link = parser.add_mutually_exclusive_group(required=True)
    link.add_argument("--tcp", action="store_true")
    link.add_argument("--pty", action="store_true")
    parser.add_argument("--trouble", choices=TROUBLES, default="none")
    parser.add_argument("--accept", type=int, default=0)
    parser.add_argument("command", nargs="*")
    options = parser.parse_args()

    if options.tcp:
        server = socket.create_server(("127.0.0.1", 0))
        place = f"127.0.0.1:{server.getsockname()[1]}"
        play = threading.Thread(target=play_tcp, args=(server, options.trouble), daemon=True)
    else:
        master, slave = os.openpty()
        tty.setraw(slave)  # and kept open: the port is there whether or not a driver uses it
        place = os.ttyname(slave)
        play = threading.Thread(target=play_pty, args=(master, options.trouble), daemon=True)
    play.start()
    if options.command:
        code = subprocess.run(options.command, env={**os.environ, VARIABLE: place},
                              check=False).returncode
        return 0 if code == options.accept else code
    print(f"{VARIABLE}={place}", flush=True)
    play.join()
    return 0


if __name__ == "__main__":
    sys.exit(main())
