"""Writes recordings for the tests of the report. Layouts are from docs/format.md."""

import math
import pathlib
import struct

HOSTILE_TEXTS = [
    b"</script><script>document.title='run'</script>",
    b"<!--<script>",
    b"<img src=x onerror=\"document.title='run'\">",
    b"@DATA@ @TITLE@ ]]> &lt; \\u003c ${1+1}",
    b"\xe2\x80\xa8\xe2\x80\xae reversed \x00\x1b[31m",
    b"\xff\xfe not UTF-8 \xed\xa0\x80",
    b"x" * 5000,
    b"",
]
HOSTILE_NAME = "<b onclick=x>&amp; 'quoted'.voxa"


def atom(kind, payload):
    return struct.pack(">I4s", 8 + len(payload), kind) + payload


def entry(key, records, version=1):
    identifier = bytes.fromhex(f"2b7b6a{key:02x}7a1f11e283d00017f200be7f")
    return identifier + struct.pack("<iI", version, 0) + records


def recording(*entries):
    return atom(b"ZRKM", b"".join(atom(b"DATA", each) for each in entries))


def string(time, text):
    return struct.pack("<Id", len(text) + 8, time) + text


def point(time, x, y):
    return struct.pack("<dii", time, x, y)


def hostile():
    """Every value that a page could trip over."""
    texts = b"".join(string(i, text) for i, text in enumerate(HOSTILE_TEXTS))
    times = [0.0, math.nan, 2.0, 1.0, math.inf, -math.inf, 1e300, -5.0, 3.0]
    points = b"".join(point(time, x, y) for time, (x, y) in
                      zip(times, [(0, 0), (1, 1), (2**31 - 1, -2**31), (-7, 9)] * 3))
    keys = b"".join(struct.pack("<dii", i, code, flags) for i, (code, flags) in enumerate(
        [(60, 0), (-1, -1), (0x1F600, 1), (0xD800, 0), (0x110000, 2), (0, 0), (0x202E, 0)]))
    doubles = b"".join(struct.pack("<dd", i, value) for i, value in enumerate(
        [math.nan, math.inf, -math.inf, -0.0, 5e-324, 1.7976931348623157e308]))
    wide = b"".join(struct.pack("<dq", i, value) for i, value in
                    enumerate([2**63 - 1, -2**63, 0, 9007199254740993]))
    images = b"".join(struct.pack("<IdQIii", 0, i, 2**64 - 1 - i, 8 + len(data), 0, 0) + data
                      for i, data in enumerate([b"<svg onload=x>", b"\x89PNG\r\n\x1a\n" + bytes(8) +
                                                b"\xff" * 8, b"GIF89a"]))
    return recording(entry(0xF9, texts), entry(0xF0, points), entry(0xF3, keys),
                     entry(0xF2, doubles), entry(0xF8, wide), entry(0xF1, images),
                     entry(0xF5, b"", version=1), entry(0xF6, b"\x01" * 50, version=9))


HOSTILE_TYPES = {"F9": "strings", "F0": "points", "F3": "keystrokes", "F2": "doubles",
                 "F8": "int64s", "F1": "cursor-images"}


def long(count):
    """`count` records in each of five streams, as a recorder would write them."""
    times = [i / 60 for i in range(count)]
    points = b"".join(point(t, round(960 + 900 * math.sin(t / 3)), round(540 + 500 * math.sin(t / 2)))
                      for t in times)
    doubles = b"".join(struct.pack("<dd", t, math.sin(t)) for t in times)
    ints = b"".join(struct.pack("<di", t, i // 7 % 3) for i, t in enumerate(times))
    rects = b"".join(struct.pack("<diiii", t, i % 97, i % 89, 640, 480) for i, t in enumerate(times))
    texts = b"".join(string(t, b"line %d of the log" % i) for i, t in enumerate(times))
    return recording(entry(0xF0, points), entry(0xF2, doubles), entry(0xF6, ints),
                     entry(0xF5, rects), entry(0xF9, texts))


LONG_TYPES = {"F0": "points", "F2": "doubles", "F6": "ints", "F5": "rects", "F9": "strings"}


def single():
    return recording(entry(0xF0, point(2.5, 10, 20)))


def empty():
    return atom(b"ftyp", b"qt  ")


def write(folder, name, content):
    path = pathlib.Path(folder) / name
    path.write_bytes(content)
    return path
