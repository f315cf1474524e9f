"""Loaded parameters, compared with the command line and with exact arithmetic."""

import json
import math
import random
import struct
import subprocess
import xml.etree.ElementTree
from fractions import Fraction

import numpy as np
import pytest
import voxa

from conftest import VOXA, points, raw_recording, run_voxa
from test_reading import TYPES

NTSC = Fraction(30000, 1001)


@pytest.mark.parametrize("key, type", [*TYPES.items(), ("F2", "opacity"), ("F5", "rect-collections")])
@pytest.mark.parametrize("rate", [NTSC, Fraction(25)])
def test_keyframes_and_texts_are_those_of_the_command_line(sample, key, type, rate):
    parameter = voxa.open(sample).streams[key].load(type, rate)
    options = ["load", sample, key, "--as", type, "--rate", f"{rate.numerator}/{rate.denominator}"]
    printed = run_voxa(*options, "--format", "json")
    assert json.loads(parameter.to_json()) == printed
    xml_text = subprocess.run([VOXA, *options, "--format", "host-xml"], check=True,
                              stdout=subprocess.PIPE).stdout.decode()
    assert parameter.to_xml() == xml_text
    xml.etree.ElementTree.fromstring(f"<all>{xml_text}</all>")
    assert parameter.frames.tolist() == [row["frame"] for row in printed["keyframes"]]
    if len(parameter) == 0:
        with pytest.raises(ValueError, match="no keyframe"):
            parameter.to_json(host=True)
        return
    host_json = subprocess.run([VOXA, *options, "--format", "host-json"], check=True,
                               stdout=subprocess.PIPE).stdout.decode()
    assert parameter.to_json(host=True) == host_json.rstrip("\n")
    assert list(parameter.times) == [Fraction(frame) / rate for frame in parameter.frames.tolist()]
    assert (parameter.values_at(parameter.seconds) == parameter.values).all()


def reference(parameter, time):
    """The value that holds at an exact time, found without the package's arithmetic."""
    held = parameter.values[0]
    for frame, value in zip(parameter.frames.tolist(), parameter.values):
        if Fraction(frame) / parameter.rate <= time:
            held = value
    return held


@pytest.mark.parametrize("rate", [NTSC, 30, Fraction(1, 2**32 - 1), "60000/1001"])
def test_values_hold_from_their_exact_times(tmp_path, rate):
    records = b"".join(struct.pack("<di", time / 7, time) for time in range(40))
    parameter = voxa.open(raw_recording(tmp_path / "a.dat", records)).streams["F0"].load("ints", rate)
    dice = random.Random(3)
    times = [dice.uniform(-1, 7) for _ in range(60)]
    for second in parameter.seconds.tolist():
        times += [second, math.nextafter(second, -1), math.nextafter(second, 9)]
    expected = [reference(parameter, Fraction(time)) for time in times]
    assert parameter.values_at(times).tolist() == expected
    assert [parameter.value_at(time) for time in times] == expected
    for exact, value in zip(parameter.times, parameter.values):
        assert parameter.value_at(exact) == value
    assert (parameter.values_at(parameter.times) == parameter.values).all()
    mixed = [*parameter.times, *times]
    dice.shuffle(mixed)
    assert parameter.values_at(mixed).tolist() == [reference(parameter, time) for time in mixed]
    for second, exact in zip(parameter.seconds.tolist(), parameter.times):
        assert Fraction(second) >= exact > Fraction(math.nextafter(second, -math.inf))


def test_times_beyond_every_keyframe(tmp_path):
    parameter = voxa.open(raw_recording(tmp_path / "a.dat", points(90))).streams["F0"].load("points", 30)
    first, last = parameter.values[0], parameter.values[-1]
    for time in (-1, -1e300, -math.inf, Fraction(-10**40)):
        assert parameter.value_at(time) == first
    for time in (99, 1e300, math.inf, 10**40, np.float32(99)):
        assert parameter.value_at(time) == last
    held = parameter.values_at(np.array([[-math.inf, 0.5], [5e-324, math.inf]]))
    assert held.shape == (2, 2) and held["x"].tolist() == [[0, 30], [0, 89]]
    assert parameter.values_at([]).shape == (0,)
    exact = parameter.values_at(np.array([[Fraction(-10**40), Fraction(1, 2)], [0, math.inf]], object))
    assert exact.shape == (2, 2) and exact["x"].tolist() == [[0, 30], [0, 89]]
    for ask in (parameter.value_at, lambda time: parameter.values_at([0, time]),
                lambda time: parameter.values_at([Fraction(0), time])):
        with pytest.raises(ValueError, match="not a number"):
            ask(math.nan)


@pytest.mark.parametrize("dtype", [np.int64, np.uint64])
def test_integers_that_floats_round_are_compared_exactly(tmp_path, dtype):
    records = struct.pack("<di", 0, 1) + struct.pack("<di", 2.0**53 + 2, 2)
    parameter = voxa.open(raw_recording(tmp_path / "a.dat", records)).streams["F0"].load("ints", 1)
    times = np.array([2**53 + 1, 2**53 + 2, 2**63 - 1], dtype)  # the first has no float
    assert parameter.values_at(times).tolist() == [1, 2, 2]


@pytest.mark.parametrize("times", [
    np.array([1], "m8[s]"), np.array([1], "M8[s]"), ["1"], [b"1"], [1j], np.zeros(1, "f8,f8"),
    [Fraction(1), "1"], np.ma.masked_array([1.0, 2.0], [False, True])],
    ids=["durations", "dates", "texts", "bytes", "complex", "structured", "mixed", "masked"])
def test_times_are_numbers(tmp_path, times):
    parameter = voxa.open(raw_recording(tmp_path / "a.dat", points(9))).streams["F0"].load("points")
    with pytest.raises(TypeError, match="time"):
        parameter.values_at(times)
    with pytest.raises(TypeError):
        parameter.value_at(times[0] if len(times) == 1 else times)


def test_numbers_that_json_cannot_state_are_texts(tmp_path):
    values = [math.nan, math.inf, -math.inf, 0.1, -0.0]
    path = raw_recording(tmp_path / "a.dat", b"".join(
        struct.pack("<dd", n, value) for n, value in enumerate(values)))
    parameter = voxa.open(path).streams["F0"].load("doubles", 1)
    printed = run_voxa("load", path, "F0", "--as", "doubles", "--rate", "1", "--format", "json")
    assert json.loads(parameter.to_json()) == printed
    assert parameter._repr_html_().count("<path") == 2


def test_parameters_without_keyframes(tmp_path):
    parameter = voxa.open(raw_recording(tmp_path / "a.dat", b"")).streams["F0"].load("points")
    assert len(parameter) == len(parameter.times) == len(parameter.values) == 0
    assert parameter.values.dtype.names == ("x", "y")
    for ask in (lambda: parameter.value_at(0), lambda: parameter.values_at([0])):
        with pytest.raises(ValueError, match="no keyframes"):
            ask()


@pytest.mark.parametrize("key", TYPES)
def test_data_frames_have_the_values(sample, key):
    pandas = pytest.importorskip("pandas")
    parameter = voxa.open(sample).streams[key].load()
    frame = parameter.to_pandas()
    assert frame.index.name == "seconds" and (frame.index == parameter.seconds).all()
    names = parameter.values.dtype.names or ("value",)
    assert list(frame.columns) == ["frame", *names]
    column = parameter.values[names[0]] if parameter.values.dtype.names else parameter.values
    assert (frame[names[0]] == column).all()
    assert isinstance(frame, pandas.DataFrame)
