"""Index and records, compared with the command line and with NumPy's own reading of the bytes."""

import hashlib
import math
import struct
import subprocess
from decimal import Decimal
from fractions import Fraction

import numpy as np
import pytest
import voxa

from conftest import VOXA, points, raw_recording, recording_of, run_voxa, stream_id

TYPES = {"F0": "points", "F1": "cursor-images", "F2": "doubles", "F3": "keystrokes", "F5": "rects",
         "F6": "ints", "F8": "int64s", "F9": "strings"}
HEADER_BYTES = 24


def as_printed(record):
    """A record with the fields that the command line prints."""
    fields = {name: record[name].item() if isinstance(record[name], np.generic) else record[name]
              for name in record.dtype.names}
    if "image" in fields:
        fields["sha256"] = hashlib.sha256(fields.pop("image")).hexdigest()
    if "a" in fields:
        fields["rect"] = [fields.pop(name) for name in "abcd"]
    return fields


def test_version_is_that_of_the_command_line():
    printed = subprocess.run([VOXA, "--version"], check=True, stdout=subprocess.PIPE).stdout
    assert voxa.__version__ in printed.decode().split()


def test_index_is_that_of_the_command_line(sample):
    printed = run_voxa("streams", sample, "--format", "json")
    with voxa.open(sample) as recording:
        assert recording.container == printed["container"]
        assert [{"id": s.id, "key": s.key, "known": s.is_known, "version": s.version,
                 "offset": s.offset, "size": s.size}
                for s in recording.streams.values()] == printed["streams"]
        assert list(recording.streams) == [stream["id"] for stream in printed["streams"]]
        assert recording.slots == {stream["id"]: stream["slot"] for stream
                                   in run_voxa("slots", sample, "--format", "json")["streams"]}


def test_guess_is_that_of_the_command_line(sample):
    printed = run_voxa("guess", sample, "--format", "json")["streams"]
    with voxa.open(sample) as recording:
        for stream, line in zip(recording.streams.values(), printed):
            guess = stream.guess()
            assert (guess.type, guess.verdict) == (line["type"], line["verdict"])
            assert guess.type == TYPES[stream.key]
            assert [{"type": c.type, "score": c.score, "passes": c.passes,
                     "reasons": list(c.reasons)} for c in guess.candidates] == line["candidates"]


@pytest.mark.parametrize("key", TYPES)
def test_records_are_those_of_the_command_line(sample, key):
    printed = run_voxa("records", sample, key, "--format", "json")["records"]
    with voxa.open(sample) as recording:
        records = recording.streams[key].records()
    got = [as_printed(record) for record in records]
    if key == "F1":  # an image without bytes has an empty digest in the listing
        for row, record in zip(printed, records):
            row["sha256"] = row["sha256"] or hashlib.sha256(b"").hexdigest()
            assert len(record["image"]) == max(int(record["dataSize"]) - 8, 0)
    assert got == printed and len(got) > 4


@pytest.mark.parametrize("key", [key for key, kind in TYPES.items()
                                 if kind not in ("strings", "cursor-images")])
def test_records_of_fixed_size_are_the_bytes_of_the_file(sample, key):
    with voxa.open(sample) as recording:
        stream = recording.streams[key]
        records = stream.records()
    own = np.frombuffer(sample.read_bytes(), records.dtype, len(records),
                        stream.offset + HEADER_BYTES)
    assert own.tobytes() == records.tobytes()
    # The indexed size of an atom is 8 bytes short.
    assert len(records) == (stream.size + 8 - HEADER_BYTES) // records.dtype.itemsize


def test_stats_are_those_of_the_command_line(sample):
    printed = run_voxa("stats", sample, "--format", "json")
    with voxa.open(sample) as recording:
        stats = recording.stats
    assert list(stats.rect) == printed["rect"]
    assert [{"index": t.index, "type": t.type, "tag": t.tag,
             "rate": f"{t.rate.numerator}/{t.rate.denominator}", "length": t.length,
             "rect": list(t.rect), "sampleRate": t.sample_rate, "channelCount": t.channel_count,
             "bitsPerSample": t.bits_per_sample, "bytesPerSample": t.bytes_per_sample,
             "metaDataFilenames": list(t.stream_file_names)} for t in stats.tracks
            ] == printed["tracks"]
    assert stats.tracks[0].is_screen and stats.tracks[0].seconds == 20


@pytest.mark.parametrize("start, stop, first, last", [
    (None, None, 0, 9), (0.5, None, 5, 9), (None, 0.5, 0, 4), (2, 3, None, None), (0, 0, None, None),
    (0.1, 0.1 + 2**-50, 1, 1),            # the record at the double 0.1
    (Fraction(1, 10), 0.25, 1, 2),        # 1/10 is below the double 0.1
    (Fraction(3, 10), None, 4, 9),        # 3/10 is above the double 0.3
    (Decimal("0.3"), np.float32(0.5), 3, 4),  # other numbers are taken as floats
    (np.float64(-math.inf), math.inf, 0, 9),
    (-10**400, Fraction(10**400), 0, 9)])    # beyond every float
def test_ranges_are_half_open_and_exact(tmp_path, start, stop, first, last):
    times = [n / 10 for n in range(10)]
    path = raw_recording(tmp_path / "a.dat",
                         b"".join(struct.pack("<di", time, n) for n, time in enumerate(times)))
    values = voxa.open(path).streams["F0"].records("ints", start, stop)["value"].tolist()
    assert values == ([] if first is None else list(range(first, last + 1)))


def test_streams_are_found_by_identifier_and_key(tmp_path):
    other = "ffffff" + "f0" + stream_id(0xF0)[8:]
    twins = ["00000077" + stream_id(0)[8:], "11111177" + stream_id(0)[8:]]
    path = recording_of(tmp_path / "a.voxa", (stream_id(0xF0), 1, points(2)), (other, 1, b""),
                        *((id, 1, b"") for id in twins))
    streams = voxa.open(path).streams
    assert len(streams) == 4 and "f0" in streams and other in streams and "F1" not in streams
    assert streams["f0"].id == streams[stream_id(0xF0).upper()].id == stream_id(0xF0)
    with pytest.raises(KeyError, match="several streams have the key 77"):
        streams["77"]
    for absent in ("F1", stream_id(0xF1), "", "nonsense", 0xF0):
        with pytest.raises(KeyError):
            streams[absent]


def test_container_overrides_the_extension(tmp_path):
    path = tmp_path / "take.bin"
    raw_recording(path, points(3))
    with pytest.raises(voxa.VoxaError, match="unknown extension; pass container="):
        voxa.open(path)
    stream = voxa.open(path, container="Raw").streams["F0"]
    assert len(stream.records("points")) == 3
    with pytest.raises(voxa.VoxaError, match="a host reads by the extension"):
        stream.load("points")
    with pytest.raises(ValueError, match="none of riff, atoms, raw"):
        voxa.open(path, container="zip")


def test_texts_keep_every_byte(tmp_path):
    text = "naïve \u202e 😀 \0".encode() + b"\xff\xc3"
    path = raw_recording(tmp_path / "a.dat", struct.pack("<Id", 8 + len(text), 1.5) + text)
    value = voxa.open(path).streams["F0"].records("strings")["value"][0]
    assert value.encode("utf-8", "surrogateescape") == text
