"""Peers that know nothing of ours, or lie: what they send is refused, and the rest goes on."""

import concurrent.futures
import json
import pathlib
import random
import re
import resource
import socket
import ssl
import subprocess
import threading
import time
import unittest

import grpc

import wirebytes as wire
from harness import PATIENCE, ServerCase

MEGABYTE = 1024 * 1024
NO_LIMIT = [("grpc.max_send_message_length", -1), ("grpc.max_receive_message_length", -1)]


def calls(channel, method, streams, reads=True):
    """Sends each list of messages over a call of its own, and tells how each has ended."""
    call = channel.stream_stream(method)
    open_calls = [call(iter(messages), timeout=PATIENCE) for messages in streams]
    ends = []
    for one in open_calls:
        try:
            while reads:
                next(one)
        except (grpc.RpcError, StopIteration):
            pass
        ends.append((one.code(), one.details()))
    return ends


def mutants(message, count=40):
    """Cut short, with bits turned over, and nothing but noise."""
    chance = random.Random(7)
    for _ in range(count):
        yield message[:chance.randrange(len(message))]
        turned = bytearray(message)
        for _ in range(chance.randrange(1, 4)):
            turned[chance.randrange(len(turned))] ^= 1 << chance.randrange(8)
        yield bytes(turned)
        yield chance.randbytes(chance.randrange(1, 200))


class HostileClientTest(ServerCase):
    def setUp(self):
        super().setUp()
        # More connections than this must not stop it from listening.
        limits = resource.getrlimit(resource.RLIMIT_NOFILE)
        resource.setrlimit(resource.RLIMIT_NOFILE, (256, limits[1]))
        self.start("--grace", "1")
        resource.setrlimit(resource.RLIMIT_NOFILE, limits)
        self.connect("anna")
        self.invite("mallory")
        self.socket = self.folder / "run" / "qeldevices" / "socket"
        invitation = json.loads((self.folder / "mallory.invitation").read_text())
        credentials = grpc.ssl_channel_credentials(*(
            invitation[key].encode() for key in ("authority", "key", "certificate")))
        override = [("grpc.ssl_target_name_override", "qeldevicesd")]
        self.channels = {
            "local": grpc.insecure_channel(f"unix:{self.socket}", NO_LIMIT),
            "mallory": grpc.secure_channel(f"127.0.0.1:{self.port}", credentials,
                                           NO_LIMIT + override)}
        for channel in self.channels.values():
            self.addCleanup(channel.close)

    def tearDown(self):
        """Whatever it was: the server is there, as large as before, and serves others."""
        self.assertIsNone(self.server.poll(), self.log.read_text()[-2000:])
        status = pathlib.Path(f"/proc/{self.server.pid}/status").read_text()
        memory = int(re.search(r"VmHWM:\s*(\d+) kB", status).group(1)) // 1024
        self.assertLess(memory, 400, "megabytes at most")
        end = time.monotonic() + PATIENCE
        while (run := self.tool("anna", "run", "A-1", "absorbance-measurement")).returncode != 0:
            self.assertLess(time.monotonic(), end, run.stderr)

    def refused(self, who, why):
        self.await_log(f"client='{who}'.* why='[^']*{why}")
        self.assertNotIn("\x1b", self.log.read_text())

    def test_what_makes_no_sense(self):
        heavy = [wire.command(i + 1, wire.configuration(i + 1, '"' + "x" * 4 * MEGABYTE + '"'))
                 for i in range(20)]
        cases = [
            ("mutated attachments", wire.DRIVE,
             [[one, wire.command(1, wire.OPEN), wire.command(2, wire.execute(2))]
              for one in mutants(wire.attach())], "ended before it said"),
            ("mutated questions", wire.WATCH, [[one] for one in mutants(wire.ask())],
             "ended before it said"),
            ("mutated commands", wire.DRIVE,
             [[wire.attach(), one]
              for one in mutants(wire.command(1, wire.configuration(2, "{}")))], ""),
            ("nothing at all", wire.DRIVE, [[]], "ended before it said"),
            ("half closed", wire.DRIVE, [[wire.attach(more=wire.field(3, "secret"))]], ""),
            ("commands first", wire.DRIVE, [[wire.command(1, wire.OPEN), wire.attach()]],
             "speaks version 0"),
            ("another version", wire.WATCH,
             [[wire.field(1, wire.field(1, 99) + wire.field(2, "\x1b[2Jv99\n"))]],
             "speaks version 99 .*v99"),
            ("attached twice", wire.DRIVE, [[wire.attach(), wire.command(1, wire.attach())]],
             "makes no sense here"),
            ("nowhere", wire.DRIVE, [[wire.attach(location="\x1b]0;x\x07")]], "no instrument at"),
            ("a long name", wire.DRIVE, [[wire.attach(location="x" * MEGABYTE)]],
             "as long as this"),
            ("observing a long name", wire.DRIVE,
             [[wire.attach(more=wire.field(5, 1), location="x" * MEGABYTE)]] * 9,
             "as long as this"),
            ("no JSON", wire.DRIVE, [[wire.attach(), wire.command(1, wire.configuration(2, "{"))]],
             ""),
            ("much configured", wire.DRIVE, [[wire.attach(), *heavy]],
             "too large together|bytes in"),
            ("above 16 MiB", wire.DRIVE, [[wire.field(2, b"x" * 17 * MEGABYTE)]],
             "ended before it said"),
        ]
        for who, channel in self.channels.items():
            time.sleep(1)
            for name, method, streams, why in cases:
                with self.subTest(name, who=who):
                    self.log.write_text("")
                    for code, _ in calls(channel, method, streams):
                        self.assertNotIn(code, (None, grpc.StatusCode.DEADLINE_EXCEEDED))
                    if why:
                        self.refused(who, why)

    def test_too_much(self):
        mallory, local = self.channels["mallory"], self.channels["local"]
        for messages, why in ((20000 * [wire.field(13, 1)], "more than 5000 calls in a second"),
                              (9 * [wire.field(99, b"x" * 15 * MEGABYTE)],
                               "more than 67108864 bytes in a second")):
            time.sleep(1)
            code, details = calls(mallory, wire.DRIVE, [[wire.attach()] + messages])[0]
            # Whether that was too much depends on how busy this machine is.
            if code != grpc.StatusCode.OK:
                self.assertEqual((code, details), (grpc.StatusCode.RESOURCE_EXHAUSTED, why))
                self.refused("mallory", why)
        # Who does not read what was asked for.
        deaf = local.stream_stream(wire.WATCH)(iter(
            [wire.ask()] + 4000 * [wire.field(3, "x" * (MEGABYTE // 16))]))
        self.refused("local", "reads too slowly")
        deaf.cancel()
        end = threading.Event()

        def nothing():
            end.wait(PATIENCE)
            yield from ()
        many = [mallory.stream_stream(wire.WATCH)(nothing()) for _ in range(300)]
        self.refused("mallory", "256 sessions already")
        end.set()
        for one in many:
            one.cancel()

    def test_no_protocol_at_all(self):
        noise = random.Random(7)
        crowd = []
        for i in range(300):
            for family, address in ((socket.AF_INET, ("127.0.0.1", self.port)),
                                    (socket.AF_UNIX, str(self.socket))):
                one = socket.socket(family)
                one.connect(address)
                self.addCleanup(one.close)
                crowd.append(one)
                if i % 3 == 0:
                    one.sendall(noise.randbytes(1000))
                elif i % 3 == 1:
                    one.sendall(b"PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n" + noise.randbytes(1000))
        # The log is not flooded by what each of them has done wrong, which the next one tells.
        self.await_log("transport")
        time.sleep(1.5)
        # In by TLS, but without a certificate.
        context = ssl.create_default_context()
        context.check_hostname = False
        context.verify_mode = ssl.CERT_NONE
        context.set_alpn_protocols(["h2"])
        with socket.create_connection(("127.0.0.1", self.port), timeout=PATIENCE) as raw:
            with self.assertRaises((ssl.SSLError, ConnectionError)):
                with context.wrap_socket(raw) as secure:
                    self.assertEqual(secure.recv(100), b"")
                    raise ConnectionError
        self.await_log("transport.*[(]and [0-9]+ more before")
        # All of them are still there.
        self.assertEqual(self.tool("anna", "run", "A-1", "orientation").returncode, 0)


class Impostor(grpc.GenericRpcHandler):
    """A server that says what it was told to say."""

    def __init__(self, address, watch, drive):
        self.answers = {wire.WATCH: watch, wire.DRIVE: drive}
        self.server = grpc.server(concurrent.futures.ThreadPoolExecutor(16), options=NO_LIMIT)
        self.server.add_generic_rpc_handlers((self,))
        self.server.add_insecure_port(address)
        self.server.start()

    def service(self, details):
        return grpc.stream_stream_rpc_method_handler(self.answers[details.method])


def once(*messages):
    """Says this, and then nothing any more."""
    def answer(requests, _):
        next(requests)
        yield from messages
        for _ in requests:
            pass
    return answer


def for_ever(first, again):
    def answer(requests, context):
        next(requests)
        yield first
        number = 2
        while context.is_active():
            yield again(number)
            number += 1
    return answer


def obedient(executed):
    """Does what it is told until it is to measure."""
    def answer(requests, _):
        number = 1
        yield wire.event(number, wire.state("\x1b[31mReader"))
        for request in requests:
            # Its number is the first field.
            if request[:1] != b"\x08":
                continue
            if b"\x22\x00" in request:
                number += 1
                yield wire.event(number, wire.field(4, 1))
            if b"\x40\x09" in request:
                for event in executed:
                    number += 1
                    yield wire.event(number, event)
            number += 1
            yield wire.event(number, wire.done(request[1]))
    return answer


INTRODUCTION = wire.field(1, wire.HELLO) + wire.field(3, "simulator")
ONE_READER = wire.field(5, wire.record(name="\x1b[31mReader\x07\n\u202e"))
WATCH = once(INTRODUCTION, ONE_READER)


class HostileServerTest(ServerCase):
    """The tool ends as it is documented to end, with a sentence that no terminal acts on."""

    def check(self, name, watch, drive, arguments, codes, sentence):
        with self.subTest(name):
            address = f"unix:{self.folder}/{name.replace(' ', '-')}"
            impostor = Impostor(address, watch, drive)
            file = self.folder / "connection"
            file.write_text(json.dumps({"format": "qeldevices-connection", "server": "lab",
                                        "address": address}))
            command, environment = self.command("anna", *arguments)
            begun = time.monotonic()
            try:
                ended = subprocess.run(command, capture_output=True, timeout=PATIENCE, check=False,
                                       env={**environment, "QELDEVICES_NETWORK": str(file)})
            finally:
                impostor.server.stop(0)
            said = (ended.stdout + ended.stderr).decode()
            self.assertIn(ended.returncode, codes, said[-2000:])
            self.assertRegex(said, sentence)
            self.assertNotRegex(said, "[\x00-\x09\x0b-\x1f\x7f\x9b\u202e]")
            self.assertLess(time.monotonic() - begun, PATIENCE / 2)

    def test_list(self):
        noise = random.Random(7).randbytes(300)
        version = wire.field(1, wire.field(1, 99) + wire.field(2, "\x1b[2Jv99"))
        huge = wire.field(5, wire.record(name="\x1b" + "x" * 10 * MEGABYTE))
        many = wire.field(5, wire.record()) * 100000
        for name, watch, command, codes, sentence in (
                ("noise", once(noise), "servers", {0}, "cannot be understood"),
                ("noise later", once(INTRODUCTION, noise), "servers", {0},
                 "0 instruments|cannot be understood"),
                ("silence", once(), "servers", {0}, "has not answered yet"),
                ("silence later", once(INTRODUCTION), "servers", {0}, "0 instruments"),
                ("hung up", lambda requests, _: iter(()), "servers", {0}, "ended the connection"),
                ("version", once(version), "servers", {0}, "speaks version 99.*v99"),
                ("escapes", WATCH, "list", {0}, "Network/lab/simulator/bench-1"),
                ("too large", once(INTRODUCTION, b"x" * 17 * MEGABYTE), "servers", {0}, "larger"),
                ("huge", once(INTRODUCTION, huge), "list", {0}, "xxx"),
                ("many", once(INTRODUCTION, many), "list", {0}, "bench-1"),
                ("endless", for_ever(INTRODUCTION,
                                     lambda i: wire.field(5, wire.record(location=str(i)))),
                 "list", {0}, "Network/lab")):
            self.check(name, watch, once(), [command], codes, sentence)

    def test_run(self):
        noise = random.Random(7).randbytes(300)
        features = wire.field(9, b"".join(wire.field(1, i) for i in range(100000)))
        malformed = wire.field(13, wire.field(1, 9) + wire.field(2, 1)
                               + wire.field(3, wire.field(1, "{")))
        problem = wire.field(13, wire.field(1, 9) + wire.field(2, 1)
                             + wire.field(3, wire.field(2, "\x1b[2J")))
        # What is said here already is not said by others.
        error = (wire.text("hostile", "\x1b[2JIt burns.")
                 + wire.text("qelfrontend-run-timeout", "It went well.")
                 + wire.field(8, wire.field(1, 32772) + wire.field(2, "hostile")))
        opened = wire.event(2, wire.field(4, 1))
        for name, drive, codes, sentence in (
                ("drive noise", once(noise), {4, 5}, "lost"),
                ("drive silence", once(), {4, 5}, "did not answer"),
                ("drive hung up", lambda requests, _: iter(()), {4, 5}, "lost"),
                ("drive open only", once(wire.event(1, wire.state()), opened), {5}, "not answer"),
                ("drive features", once(wire.event(1, wire.state()), wire.event(2, features)),
                 {3, 4, 5}, "."),
                ("drive malformed", obedient([malformed]), {5}, "cannot be transmitted"),
                ("drive problem", obedient([problem]), {5}, "cannot be transmitted"),
                ("drive error", obedient([error]), {6}, "did not end within.*It burns"),
                ("drive endless", for_ever(
                    wire.event(1, wire.state()),
                    lambda i: wire.event(i, wire.field(4, 1) if i == 2 else wire.field(
                        12, wire.field(1, 9) + wire.field(2, wire.field(1, '{"progress":0.1}'))))),
                 {5, 6}, "did not answer|time")):
            self.check(name, WATCH, drive,
                       ["run", "A-1", "orientation", "--timeout", "15"], codes, sentence)


if __name__ == "__main__":
    unittest.main(verbosity=2)
