"""Series, the files that keep them, and documents read back."""

import gc
import json
import time

import numpy as np
import pytest

import qeldevices
import qeldevices as qel


def test_each_result_is_on_disk_before_it_is_delivered(reader, tmp_path):
    kept = tmp_path / "run.jsonl"
    start = time.monotonic()
    for number, plate in enumerate(reader.series(every=0.05, count=3, keep=kept), 1):
        lines = kept.read_text().splitlines()
        assert len(lines) == number
        assert json.loads(lines[-1]) == json.loads(plate.to_json())
    assert number == 3 and time.monotonic() - start >= 0.1


def test_failure_keeps_what_there_is(lab, tmp_path):
    lab({"faults": [{"at": "execute", "do": "error", "nth": 3}]})
    kept = tmp_path / "run.jsonl"
    with qel.open("A-1") as reader:
        with pytest.raises(qel.DeviceError):
            list(reader.series("absorbance", every=0, keep=kept, wavelengths=[450]))
        kept.write_text(kept.read_text() + "{\"format\": \"qel")  # as a power cut leaves it
        list(reader.series(every=0, count=1, keep=kept))
    with pytest.warns(UserWarning, match="line 3"):
        plates = qel.read_series(kept)
    assert [len(plate.reads) for plate in plates] == [1, 1, 4]


def test_file_belongs_to_one_series(reader, tmp_path):
    kept = tmp_path / "run.jsonl"
    first = reader.series(every=0, count=2, keep=kept)
    assert not kept.exists()  # nothing, or something whole
    next(first)
    with pytest.raises(OSError, match="run.jsonl: "):
        reader.series(every=0, keep=kept)
    assert len(list(first)) == 1
    assert len(list(reader.series(every=0, count=1, keep=kept))) == 1
    assert len(qel.read_series(kept)) == 3


def test_mistakes_come_before_the_first_run(reader, tmp_path):
    with pytest.raises(OSError):
        reader.series(every=1, keep=tmp_path / "no" / "such")
    with pytest.raises(ValueError):
        reader.series(every=-1)
    with pytest.raises(qel.NotOffered):
        reader.series("what", every=1)


def test_document_read_back(lab, tmp_path):
    lab({"model": "luminescence-96", "plate": {"layout": "dilution-series", "brightness": 1e9}})
    with qel.open("A-1") as reader:
        plate = reader.luminescence()
    plate.to_json(tmp_path / "plate.json")
    again = qel.read_json(tmp_path / "plate.json")
    assert again.to_json() == plate.to_json() and again.to_csv() == plate.to_csv()
    assert np.array_equal(again.values, plate.values) and again.instrument == plate.instrument
    assert (again.started_at, again.elapsed) == (plate.started_at, plate.elapsed)
    assert again.configuration == plate.configuration
    assert again.saturated().any() and not again.saturated().all()
    assert again.to_pandas().equals(plate.to_pandas())
    assert plate.to_csv().count(",saturated,") == plate.saturated().sum()


def test_document_without_the_maximum(reader, tmp_path):
    document = json.loads(reader.absorbance(wavelengths=[450]).to_json())
    document["plate"]["maximum"] = None
    (tmp_path / "plate.json").write_text(json.dumps(document))
    plate = qel.read_json(tmp_path / "plate.json")
    assert plate.to_pandas().saturated.isna().all() and "<td" in plate._repr_html_()
    with pytest.raises(qel.Error, match="not known"):
        plate.saturated()


@pytest.mark.parametrize("change", [
    {"format": "else"}, {"version": 99}, {"feature": "DF_What"}, {"result": {"$type": "QWhat"}}])
def test_other_documents_are_refused(reader, tmp_path, change):
    document = {**json.loads(reader.orientation().to_json()), **change}
    (tmp_path / "other.json").write_text(json.dumps(document))
    with pytest.raises(qel.Error, match="other.json: "):
        qel.read_json(tmp_path / "other.json")


def test_watch(lab):
    made = lab({})
    with qel.watch(pause=0.01) as changes:
        assert next(changes) == qel.Change("arrived", qel.instruments()[0])
        made.change({"instruments": [{"model": "absorbance-96", "serial": "A-9"}]})
        seen = {(change.kind, change.instrument.serial) for change in (next(changes), next(changes))}
    assert seen == {("left", "A-1"), ("arrived", "A-9")}
    assert "simulator" in qel.drivers()


def test_labs_nest(lab):
    lab({})
    qel.simulate({"instruments": []})  # nobody holds it, and it holds
    gc.collect()
    assert qel.instruments() == []
    inner = qel.simulate({"instruments": [{"model": "identity-only", "serial": "I-1"}]})
    assert [instrument.serial for instrument in qel.instruments()] == ["I-1"]
    inner.close()
    inner.close()
    assert qel.instruments() == []
    qeldevices._simulation._labs[-1].close()
    assert [instrument.serial for instrument in qel.instruments()] == ["A-1"]
