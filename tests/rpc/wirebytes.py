"""Messages of the protocol, written byte for byte by somebody who has no code of ours."""

WATCH = "/qel.rpc.wire.Instruments/Watch"
DRIVE = "/qel.rpc.wire.Instruments/Drive"


def varint(number):
    number &= 2 ** 64 - 1
    encoded = b""
    while number > 127:
        encoded += bytes([number & 127 | 128])
        number >>= 7
    return encoded + bytes([number])


def field(number, value):
    if isinstance(value, int):
        return varint(number << 3) + varint(value)
    content = value.encode() if isinstance(value, str) else value
    return varint(number << 3 | 2) + varint(len(content)) + content


HELLO = field(1, 4) + field(2, "v9")


def record(location="bench-1", name="Reader", serial="A-1"):
    return (field(1, 1) + field(2, "simulator") + field(3, location) + field(4, name)
            + field(5, serial))


def ask(what=b""):
    return field(1, HELLO) + what


def attach(hello=HELLO, more=b"", **instrument):
    return field(2, field(1, hello) + field(2, record(**instrument)) + more)


def command(number, what):
    return field(1, number) + what


OPEN = field(4, b"")


def configuration(feature, json):
    return field(3, field(1, feature) + field(2, field(1, json)))


def execute(feature):
    return field(8, feature)


def event(number, what):
    """A message of one event."""
    return field(1, field(15, number) + what)


def state(name="Reader", features=(9,)):
    return field(2, field(1, HELLO) + field(4, name) + field(5, "A-1")
                 + field(7, b"".join(field(1, feature) for feature in features)))


def done(number):
    return field(3, field(1, number) + field(2, 1))


def text(identifier, sentence):
    return field(1, field(1, identifier) + field(2, field(1, "en") + field(2, sentence)))
