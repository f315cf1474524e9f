"""What is raised for files, streams and arguments that cannot be used."""

import os
import pathlib
import pickle
import shutil
import struct
import warnings
from decimal import Decimal

import numpy as np
import pytest
import voxa

from conftest import atom, points, raw_recording, recording_of, run_voxa, stream_id


def test_files_that_cannot_be_opened_are_os_errors(tmp_path):
    os.mkfifo(tmp_path / "pipe.voxa")
    for path, error in ((tmp_path / "absent.voxa", FileNotFoundError),
                        (tmp_path, IsADirectoryError), (tmp_path / "pipe.voxa", OSError)):
        with pytest.raises(error) as raised:
            voxa.open(path)
        assert str(path) in str(raised.value)


def test_damage_carries_what_was_read(tmp_path):
    path = raw_recording(tmp_path / "a.dat", points(5) + b"abc")
    printed = run_voxa("records", path, "F0", "--as", "points", "--format", "json")
    stream = voxa.open(path).streams["F0"]
    for read in (stream.records, stream.load):
        with pytest.raises(voxa.DamagedStream) as raised:
            read("points")
        damage = raised.value
        assert damage.records["x"].tolist() == [0, 1, 2, 3, 4]
        assert (damage.reason, damage.byte_offset) == (printed["error"], 24 + 5 * 16)
        assert damage.stream == stream.id and str(path) in str(damage)
        copy = pickle.loads(pickle.dumps(damage))
        assert str(copy) == str(damage) and (copy.records == damage.records).all()


@pytest.mark.parametrize("present", range(16))
def test_streams_cut_inside_their_last_record_are_damaged(tmp_path, present):
    path = recording_of(tmp_path / "a.voxa", (stream_id(0xF0), 1, points(5)))
    path.write_bytes(path.read_bytes()[:present - 16])
    stream = voxa.open(path).streams["F0"]
    for read in (stream.records, stream.load):
        with pytest.raises(voxa.DamagedStream) as raised:
            read("points")
        assert raised.value.records["x"].tolist() == [0, 1, 2, 3]


def test_announced_sizes_reserve_no_memory(tmp_path):
    path = raw_recording(tmp_path / "a.dat", struct.pack("<Id", 0xFFFFFFF0, 0.0) + b"text")
    with pytest.raises(voxa.DamagedStream, match="announce") as raised:
        voxa.open(path).streams["F0"].records("strings")
    assert len(raised.value.records) == 0


def test_uncertain_types_name_the_candidates(tmp_path):
    path = recording_of(tmp_path / "a.voxa", (stream_id(0xF0), 1, bytes(range(7)) * 3),
                        (stream_id(0xF1), 1, b""))
    streams = voxa.open(path).streams
    with pytest.raises(voxa.UnknownType, match="no type fits") as raised:
        streams["F0"].records()
    assert raised.value.candidates == ()
    with pytest.raises(voxa.UnknownType, match="points or .*pass type=") as raised:
        streams["F1"].load()
    assert len(raised.value.candidates) == 8
    assert pickle.loads(pickle.dumps(raised.value)).candidates == raised.value.candidates
    assert len(streams["F1"].records("points")) == 0


def test_wrong_arguments_are_explained(sample):
    stream = voxa.open(sample).streams["F0"]
    for call, error, text in (
            (lambda: stream.records("point"), ValueError, "none of ints, doubles"),
            (lambda: stream.records("opacity"), ValueError, "none of ints"),
            (lambda: stream.records(start=2, stop=1), ValueError, "stop=1 is before start=2"),
            (lambda: stream.records(start=float("nan")), ValueError, "not a number"),
            (lambda: stream.records(start="1"), TypeError, "'1' is no time"),
            (lambda: stream.load(rate=29.97), TypeError, "30000/1001"),
            (lambda: stream.load(rate="29.97"), TypeError, "rate='29.97' .*30000/1001"),
            (lambda: stream.load(rate=Decimal("29.97")), TypeError, "rate=Decimal"),
            (lambda: stream.load(rate="30/0"), TypeError, "rate='30/0'"),
            (lambda: stream.load(rate=None), TypeError, "rate=None"),
            (lambda: voxa.open(sample, container=3), TypeError, "container=3 is no text"),
            (lambda: stream.load(rate=0), ValueError, "from 1"),
            (lambda: stream.load(rate=2**32), ValueError, "from 1"),
            (lambda: stream.load(rate=-25), ValueError, "from 1")):
        with pytest.raises(error, match=text):
            call()


@pytest.mark.parametrize("container", ["zip", "raw", "None", "", 7])
def test_the_extension_refuses_what_is_no_container(sample, container):
    with pytest.raises((ValueError, TypeError)):
        voxa._voxa.RecordingIndex(os.fsencode(sample), container)


def test_closed_recordings_read_nothing(sample):
    with voxa.open(sample) as recording:
        stream = recording.streams["F0"]
    recording.close()  # a second time
    for read in (stream.guess, lambda: stream.records("points"), lambda: stream.load("points"),
                 lambda: stream.load("rect-collections"), lambda: recording.stats,
                 lambda: recording.slots):
        with pytest.raises(ValueError, match="the recording is closed"):
            read()


def test_relative_names_hold_in_another_working_folder(sample, tmp_path, monkeypatch):
    monkeypatch.chdir(sample.parent)
    recording = voxa.open(sample.name)
    monkeypatch.chdir(tmp_path)
    assert recording.path == sample.name and recording.stats.tracks
    assert "F0" in recording.slots.values()
    assert len(recording.streams["F0"].load("points", 60)) > 1000


@pytest.mark.parametrize("lose", [
    lambda path, copy: path.unlink(),
    lambda path, copy: path.rename(path.with_name("b.voxa")),
    lambda path, copy: copy.replace(path)], ids=["removed", "moved", "replaced"])
def test_files_that_the_name_no_longer_means_are_not_loaded(sample, tmp_path, lose):
    path = pathlib.Path(shutil.copy(sample, tmp_path / "a.voxa"))
    recording = voxa.open(path)
    stream = recording.streams["F0"]
    lose(path, pathlib.Path(shutil.copy(sample, tmp_path / "c.voxa")))
    assert len(stream.records("points")) > 1000  # the file that is open
    for read in (lambda: stream.load("points"), lambda: recording.stats, lambda: recording.slots):
        with pytest.raises(voxa.VoxaError, match="a.voxa: .*open the recording again"):
            read()


def test_stats_need_tracks(tmp_path):
    recording = voxa.open(raw_recording(tmp_path / "a.dat", points(1)))
    with pytest.raises(voxa.VoxaError, match="a.dat: the tracks cannot be read"):
        recording.stats


def test_file_names_that_are_no_utf8(tmp_path):
    path = os.fsencode(tmp_path) + b"/caf\xe9.dat"
    with open(path, "wb") as file:
        file.write(raw_recording(tmp_path / "a.dat", points(2)).read_bytes())
    stream = voxa.open(path).streams["F0"]
    assert len(stream.records("points")) == 2
    with pytest.raises(voxa.VoxaError, match="not valid UTF-8"):
        stream.load("points")


def test_messages_become_warnings(tmp_path, capfd):
    path = raw_recording(tmp_path / "a.dat", points(2), version=2)
    stream = voxa.open(path).streams["F0"]
    for read in (stream.records, stream.load):
        with pytest.warns(RuntimeWarning, match="Version is larger") as caught:
            assert len(read("points")) == 0
        assert str(caught[0].message).startswith(f"{path}: stream {stream.id}: ")
        assert "voxa" in caught[0].filename or __file__ == caught[0].filename
    mixed = tmp_path / "c.voxa"
    mixed.write_bytes(atom(b"ZRKM", 1000 * atom(b"free", b"12345678")))
    with pytest.warns(RuntimeWarning, match="c.voxa: Found a non DATA atom") as caught:
        voxa.open(mixed)
    assert len(caught) == 1
    image = struct.pack("<IdQI", 24, 0.5, 7, 3)
    stream = voxa.open(raw_recording(tmp_path / "b.dat", image)).streams["F0"]
    with pytest.warns(RuntimeWarning, match="assertion failed|Invalid data size"):
        stream.records("cursor-images")
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        with pytest.raises(RuntimeWarning):
            stream.records("cursor-images")
    assert capfd.readouterr() == ("", "")
