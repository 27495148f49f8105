"""Runs, events and series in tasks of asyncio."""

import asyncio

import pytest

import qeldevices as qel


def test_runs_side_by_side(lab):
    lab({}, {"serial": "A-2"})

    async def main():
        readers = [await qel.open_async(serial) for serial in ("A-1", "A-2")]
        plates = await asyncio.gather(*(reader.aio.absorbance(wavelengths=[450])
                                        for reader in readers * 3))
        info = await readers[0].aio.run("firmware-info")
        for reader in readers:
            await reader.aio.close()
        return plates, info, readers[0].is_open

    plates, info, is_open = asyncio.run(main())
    assert [plate.instrument.serial for plate in plates] == ["A-1", "A-2"] * 3
    assert info.value["version"] and not is_open


def test_cancelling_the_task_cancels_the_run(lab):
    lab({"faults": [{"at": "execute", "do": "stall", "nth": 1}]})

    async def main():
        reader = await qel.open_async("A-1")
        begun = asyncio.Event()
        task = asyncio.create_task(reader.aio.absorbance(progress=lambda fraction: begun.set()))
        await begun.wait()
        task.cancel()
        with pytest.raises(asyncio.CancelledError):
            await task
        plate = await reader.aio.absorbance()
        reader.close()
        return plate

    assert asyncio.run(main()).rows == 8


def test_actions_may_be_coroutines(lab):
    lab({})

    async def decline(text):
        await asyncio.sleep(0)
        return False

    async def main():
        reader = await qel.open_async("A-1", on_action=decline)
        try:
            with pytest.raises(qel.Aborted):
                await reader.aio.calibration()
        finally:
            reader.close()

    asyncio.run(main())
    with qel.open("A-1", on_action=decline) as reader, pytest.raises(TypeError):
        reader.calibration()


def test_events(lab):
    lab({})

    async def main():
        reader = await qel.open_async("A-1")
        events = reader.events()
        await reader.aio.absorbance(wavelengths=[450])
        reader.close()
        return [event async for event in events]

    events = asyncio.run(main())
    assert [event.value for event in events if event.kind == "busy"] == [True, False]
    assert events[-1] == qel.Event("open", False)
    ended = next(event for event in events if event.kind == "ended")
    assert ended.feature == "DF_AbsorbanceMeasurement" and ended.value["rows"] == 8
    progress = [event.value["progress"] for event in events if event.kind == "value"]
    assert progress[0] == 0 and progress[-1] == 1


def test_series(lab, tmp_path):
    lab({})

    async def main():
        reader = await qel.open_async("A-1")
        plates = [plate async for plate in reader.aio.series(every=0, count=3, keep=tmp_path / "k")]
        reader.close()
        return plates

    plates = asyncio.run(main())
    assert len(plates) == len(qel.read_series(tmp_path / "k")) == 3
