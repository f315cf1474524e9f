"""Who owns what, for how long, and from which threads."""

import copy
import gc
import os
import pickle
import struct
import sys
import threading
import time
import weakref

import numpy as np
import pytest
import voxa

from conftest import points, raw_recording
from test_reading import TYPES


def open_files():
    return {os.readlink(f"/proc/self/fd/{name}") for name in os.listdir("/proc/self/fd")
            if os.path.lexists(f"/proc/self/fd/{name}")}


def test_arrays_outlive_their_recording(sample):
    recording = voxa.open(sample)
    arrays = {key: recording.streams[key].records() for key in TYPES}
    parameters = {key: recording.streams[key].load() for key in TYPES}
    copies = {key: array.copy() for key, array in arrays.items()}
    views = {key: parameter.values[1:] for key, parameter in parameters.items()}
    values = {key: parameter.values[1:].copy() for key, parameter in parameters.items()}
    recording.close()
    del recording, parameters
    gc.collect()
    junk = [bytearray(1 << 16) for _ in range(64)]  # takes freed memory
    for key in TYPES:
        assert (arrays[key] == copies[key]).all() and (views[key] == values[key]).all()
    assert len(junk) == 64


def test_parameters_are_their_own_copies(sample):
    parameter = voxa.open(sample).streams["F0"].load()
    assert copy.copy(parameter) is copy.deepcopy([parameter])[0] is parameter


def test_open_files_are_not_pickled(sample):
    recording = voxa.open(sample)
    stream = recording.streams["F0"]
    for kept, advice in ((recording, "open it again"), (stream, "its id"),
                         (stream.load(), "its frames and values")):
        with pytest.raises(TypeError, match=advice):
            pickle.dumps(kept)
    with pytest.raises(TypeError, match="open it again"):
        copy.copy(recording)


def test_nothing_keeps_a_recording_open(sample):
    gc.disable()  # counts alone must do
    try:
        recording = voxa.open(sample)
        assert str(sample) in open_files()
        gone = weakref.ref(recording)
        stream = recording.streams["F0"]
        array = stream.records()
        del recording
        assert gone() is None
        assert len(stream.records()) == len(array)  # a stream keeps the file
        del stream
        assert str(sample) not in open_files()
    finally:
        gc.enable()


def test_arrays_alone_refer_to_their_objects(sample):
    streams = voxa.open(sample).streams
    alone = np.empty(1, object)
    alone[0] = "".join(["no", " literal"])  # which code would refer to
    expected = sys.getrefcount(alone[0])
    for objects in (streams["F9"].records()["value"], streams["F1"].records()["image"]):
        counts = [sys.getrefcount(objects[n]) for n in range(len(objects))
                  if len(objects[n]) > 1]  # shorter ones are shared by the interpreter
        assert len(counts) > 2 and set(counts) == {expected}


def test_reference_counts_stay(sample):
    stream = voxa.open(sample).streams["F9"]
    image_stream = voxa.open(sample).streams["F1"]
    for read in (stream.records, stream.load, image_stream.records, stream.guess):
        read()
    counted = [None, True, RuntimeWarning, np.dtype("u1"), voxa.Parameter]
    before = [sys.getrefcount(thing) for thing in counted]
    blocks = sys.getallocatedblocks()
    for _ in range(50):
        stream.records(), stream.load(), image_stream.records(), image_stream.guess()
    gc.collect()
    after = [sys.getrefcount(thing) for thing in counted]
    assert max(abs(a - b) for a, b in zip(after, before)) < 20
    assert abs(sys.getallocatedblocks() - blocks) < 500


def resident_bytes():
    with open("/proc/self/statm") as statm:
        return int(statm.read().split()[1]) * os.sysconf("SC_PAGE_SIZE")


@pytest.mark.skipif("VOXA_SANITIZED" in os.environ, reason="sanitizers keep freed memory")
def test_memory_of_dropped_arrays_returns(tmp_path):
    count = 200_000
    rows = np.zeros(count, [("time", "<f8"), ("x", "<i4"), ("y", "<i4")])
    path = raw_recording(tmp_path / "a.dat", rows.tobytes())
    stream = voxa.open(path).streams["F0"]
    stream.records("points")
    before = resident_bytes()
    for _ in range(40):
        stream.records("points")
    assert resident_bytes() - before < 8 * rows.nbytes


def test_threads_read_their_own_recordings_and_one_together(tmp_path):
    count = 20_000
    paths = [raw_recording(tmp_path / f"{n}.dat", points(count, start=n)) for n in range(8)]
    shared = voxa.open(paths[0])
    failures = []

    def read(n):
        try:
            for _ in range(5):
                with voxa.open(paths[n]) as own:
                    records = own.streams["F0"].records("points")
                    assert len(records) == count and records["time"][0] == n
                    assert len(own.streams["F0"].load("points", 60)) > count - 2
                assert (shared.streams["F0"].records("points")["x"] == np.arange(count)).all()
        except BaseException as error:  # reported by the main thread
            failures.append(error)

    threads = [threading.Thread(target=read, args=(n,)) for n in range(8)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert failures == []


def test_other_threads_run_while_one_reads(tmp_path):
    count = 3_000_000
    rows = np.zeros(count, [("time", "<f8"), ("x", "<i4"), ("y", "<i4")])
    stream = voxa.open(raw_recording(tmp_path / "a.dat", rows.tobytes())).streams["F0"]
    turns, reading, done = [], threading.Event(), threading.Event()

    def read():
        reading.set()
        assert len(stream.records("points")) == count
        done.set()

    # With the GIL held, this thread gets at most a few turns around the read.
    thread = threading.Thread(target=read)
    thread.start()
    reading.wait()
    while not done.is_set():
        turns.append(time.perf_counter())
        time.sleep(0)
    thread.join()
    assert len(turns) > 50
