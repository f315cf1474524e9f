"""Recordings that the tests read, and the command line that they compare with."""

import json
import os
import struct
import subprocess
import uuid

import pytest

VOXA = os.environ["VOXA"]  # the program
FAMILY = "2b7b6a{:02x}-7a1f-11e2-83d0-0017f200be7f"


def stream_id(key):
    return FAMILY.format(key)


def run_voxa(*arguments):
    """The output of the program as JSON, whatever its status."""
    done = subprocess.run([VOXA, *map(str, arguments)], stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL)
    return json.loads(done.stdout)


def raw_recording(path, records, key=0xF0, version=1):
    """Writes a .dat file: one entry header and the bytes of its records."""
    header = uuid.UUID(stream_id(key)).bytes + struct.pack("<iI", version, 0)
    path.write_bytes(header + records)
    return path


def atom(kind, payload):
    return struct.pack(">I4s", 8 + len(payload), kind) + payload


def recording_of(path, *entries):
    """Writes a .voxa file without media; each entry is (identifier, version, records)."""
    data = b"".join(atom(b"DATA", uuid.UUID(id).bytes + struct.pack("<iI", version, 0) + records)
                    for id, version, records in entries)
    path.write_bytes(atom(b"ZRKM", data))
    return path


def points(count, start=0.0):
    return b"".join(struct.pack("<dii", start + n / 60, n, -n) for n in range(count))


@pytest.fixture(scope="session")
def sample(tmp_path_factory):
    """A recording of 20 seconds with a stream of every type."""
    path = tmp_path_factory.mktemp("sample") / "take1.voxa"
    subprocess.run([VOXA, "sample", path, "--seconds", "20"], check=True,
                   stdout=subprocess.DEVNULL)
    return path
