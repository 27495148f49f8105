"""What a run delivers, and in which forms."""

import json
import os
import re
import subprocess

import numpy as np
import pytest

import qeldevices as qel


def test_three_lines(lab):
    lab({})
    with qel.open("A-1") as reader:
        plate = reader.absorbance(wavelengths=[450, 620])
    frame = plate.to_pandas()
    assert list(frame.columns) == ["well", "row", "column", "wavelength", "value", "saturated"]
    assert len(frame) == 2 * 96
    line = frame[(frame.well == "B3") & (frame.wavelength == 620)].iloc[0]
    assert (line.row, line.column, line.value) == (2, 3, plate[620, "B3"])
    assert frame.attrs["unit"] == "OD"
    assert frame.attrs["configuration"] == {"wavelengths": [450, 620], "rapidMode": False}


def test_arrays_share_the_memory(reader):
    plate = reader.absorbance(wavelengths=[450, 620])
    values = plate[450]
    assert values.shape == (8, 12) and values.dtype == np.float64
    assert not values.flags.owndata and not values.flags.writeable
    assert plate.values.shape == (2, 8, 12)
    assert plate["H12"].tolist() == [plate[450][7, 11], plate[620][7, 11]]
    expected = values.copy()
    del plate
    reader.absorbance(wavelengths=[450, 620])
    assert (values == expected).all()


@pytest.mark.parametrize("key", ["I1", "A13", "A0", "", "1A", 451, (450, "Z9")])
def test_what_is_not_on_the_plate(reader, key):
    with pytest.raises(KeyError):
        reader.absorbance(wavelengths=[450, 620])[key]


def test_wells_that_were_not_measured_or_saturated(lab):
    lab({"model": "luminescence-96", "plate": {"layout": "dilution-series", "brightness": 1e9}})
    with qel.open("A-1") as reader:
        wells = np.zeros((8, 12), bool)
        wells[:2, :] = True
        plate = reader.luminescence(integrationTime=100, selectedWells=wells)
    assert (np.isnan(plate.read().values) == ~wells).all()
    assert plate.saturated()[0, 0] and not plate.saturated()[7, 11]
    assert plate["A1"] == np.nanmax(plate.read().values) and np.isnan(plate["C1"])
    assert plate.integration_time == 100 and plate.unit == "RLU/s"
    assert plate.to_pandas().wavelength.isna().all()
    picture = plate._repr_html_()
    assert picture.count("<td") == 96 and "+</td>" in picture and "></td>" in picture


def test_json_is_the_document_of_the_tool(lab):
    made = lab({})
    with qel.open("A-1") as reader:
        ours = reader.absorbance(wavelengths=[450]).to_json()
    theirs = subprocess.run(
        [os.environ["QELCTL"], "run", "A-1", "absorbance", "--set", "wavelengths=450", "--format",
         "json"],
        env={**os.environ, "QELDEVICES_SIMULATOR": made.file}, check=True,
        capture_output=True, text=True).stdout
    assert without_times(ours) == without_times(theirs)
    assert json.loads(ours)["format"] == "qeldevices-run"


def without_times(document):
    return re.sub(r'"(startedAt|elapsed)": [^\n]*', "", re.sub(r'"value": "20[^"]*"', "", document))


def test_files(reader, tmp_path):
    plate = reader.absorbance(wavelengths=[450])
    assert plate.to_csv(tmp_path / "plate.csv") is None
    assert (tmp_path / "plate.csv").read_bytes().decode() == plate.to_csv()
    assert plate.to_csv().count("\r\n") == 97
    assert plate.to_csv(layout="plate").startswith("450 nm (OD),1,2")
    with pytest.raises(ValueError):
        plate.to_csv(layout="other")


def test_the_other_features(reader):
    assert 10 < reader.ambient_temperature().value < 40
    assert reader.ambient_temperature().unit == "°C"
    assert reader.plate_detection().value == "Occupied"
    assert reader.parts_aligned().value is True
    assert reader.orientation().value["topSide"] == "Top"
    assert reader.firmware_info().value["date"].year > 2000
    assert reader.led_bar_effect(effect="Rainbow", color="#ff0000").value is None
    assert reader.run("reference-number").value == "SIM-ABS-96"
    assert json.loads(reader.run(9).to_json())["feature"] == "DF_Orientation"
