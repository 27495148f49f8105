"""How a run ends otherwise: one exception for each way."""

import threading

import pytest

import qeldevices as qel


def fault(**what):
    return {"faults": [{"at": "execute", "feature": "absorbance-measurement", **what}]}


@pytest.mark.parametrize("instrument, error, sentence", [
    (fault(do="error", code="ERROR_DEVICE_TIMEOUT"), qel.DeviceError, "did not respond"),
    (fault(do="unplug"), qel.DeviceGone, ""),
    (fault(do="stall"), qel.TimedOut, "0.3"),
    (fault(do="ask", text="simulator-action-empty-slot"), qel.Aborted, ""),
    (fault(do="wrong-type"), qel.DeviceError, ""),
    ({"faults": [{"at": "open", "do": "refuse"}]}, qel.CannotOpen, ""),
    ({"apiVersion": 2}, qel.CannotOpen, ""),
    ({"calibrated": False}, qel.DeviceError, "calibrat"),
    ({"model": "identity-only"}, qel.NotOffered, "absorbance-measurement"),
])
def test_outcome(lab, instrument, error, sentence):
    lab(instrument)
    with pytest.raises(qel.Error) as caught:
        with qel.open("A-1", on_action=lambda text: False) as reader:
            reader.absorbance(timeout=0.3 if error is qel.TimedOut else 20)
    assert type(caught.value) is error
    assert sentence in caught.value.sentence
    assert "(A-1): " in str(caught.value)


def test_code_and_id(lab):
    lab(fault(do="error", code="ERROR_DEVICE_TIMEOUT", info="simulator-action-empty-slot"))
    with qel.open("A-1") as reader, pytest.raises(qel.DeviceError) as caught:
        reader.absorbance()
    assert caught.value.code == 0x8004
    assert caught.value.id.startswith("libqeldevices-")
    assert caught.value.details and caught.value.details in str(caught.value)


def test_half_a_plate_is_not_lost(lab):
    lab(fault(do="partial-data"))
    with qel.open("A-1") as reader, pytest.raises(qel.DeviceError, match="48 values") as caught:
        reader.absorbance(wavelengths=[450])
    assert len(caught.value.delivered["values"][0]) == 48


def test_no_such_instrument(lab):
    lab({})
    with pytest.raises(qel.CannotOpen, match="A-1"):
        qel.open("nobody")


@pytest.mark.parametrize("settings, words", [
    ({"wavelengths": [451]}, '"451" is not allowed'),
    ({"wavelengths": 450.5}, "wavelengths"),
    ({"bogus": 1, "rapidMode": 3}, '"bogus"'),
    ({"wavelengths": [float("nan")]}, "JSON"),
    ({"wavelengths": object()}, "object"),
])
def test_wrong_settings(reader, settings, words):
    moved = []
    with pytest.raises(qel.InvalidConfiguration, match=words):
        reader.absorbance(progress=moved.append, **settings)
    assert not moved
    assert reader.absorbance(wavelengths=(450,)).wavelengths == [450]


def test_actions_are_answered(lab):
    lab({})
    asked = []
    with qel.open("A-1") as reader:
        with pytest.raises(qel.Aborted):
            reader.calibration(on_action=lambda text: asked.append(text))
        assert len(asked) == 1 and " " in asked[0]
        with pytest.raises(qel.Aborted):
            reader.calibration()  # nobody is there


def test_progress_bar(reader, capsys):
    reader.absorbance(progress=True)
    bar = capsys.readouterr().err
    assert "  0% |" in bar and "100% |" in bar and bar.endswith("\n")


def test_progress(reader):
    told = []
    reader.absorbance(progress=told.append)
    assert told[0] == 0 and told[-1] == 1 and told == sorted(told)
    with pytest.raises(ZeroDivisionError):
        reader.absorbance(progress=lambda fraction: 1 / 0)
    reader.absorbance()


def test_threads_take_turns(lab):
    lab({}, {"serial": "A-2"})
    plates = []
    with qel.open("A-1") as one, qel.open("A-2") as two:
        threads = [threading.Thread(target=lambda reader=reader: plates.append(reader.absorbance()))
                   for reader in (one, two) * 4]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
    assert len(plates) == 8 and len({plate.instrument.serial for plate in plates}) == 2


def test_closed_reader(reader):
    reader.close()
    reader.close()
    assert not reader.is_open
    for use in (reader.absorbance, lambda: reader.features, lambda: reader.absorbance.settings):
        with pytest.raises(qel.DeviceGone):
            use()


def test_settings_describe_themselves(reader):
    settings = reader.absorbance.settings
    assert settings["wavelengths"].choices == (405, 450, 492, 620)
    assert settings["rapidMode"].default is False and not settings["rapidMode"].is_required
    assert reader.firmware_update.settings["image"].is_required
    assert "one of: 405, 450" in reader.absorbance.__doc__
    assert "wavelengths" in str(__import__("inspect").signature(reader.absorbance))
    assert "absorbance-measurement" in reader.features
