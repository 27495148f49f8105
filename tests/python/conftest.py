import pytest

import qeldevices as qel


@pytest.fixture
def lab():
    """Makes a lab of simulated instruments that take no time."""
    labs = []

    def make(*instruments, scale=0):
        described = [{"model": "absorbance-96", "serial": "A-1", **own} for own in instruments]
        labs.append(qel.simulate({"timeScale": scale, "instruments": described}))
        return labs[-1]

    yield make
    for made in reversed(labs):
        made.close()


@pytest.fixture
def reader(lab):
    lab({})
    with qel.open("A-1") as opened:
        yield opened
