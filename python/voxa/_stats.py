"""The tracks of a recording."""

from __future__ import annotations

import os
from dataclasses import dataclass
from fractions import Fraction
from typing import Optional, Tuple

from . import _voxa
from ._errors import VoxaError
from ._source import Source

Rect = Tuple[int, int, int, int]


@dataclass(frozen=True)
class Track:
    """One track, as the host sees it."""

    index: int
    type: int  #: 0 video, 2 audio, 3 other
    tag: int  #: 1 screen, 2 camera, 0 none
    rate: Optional[Fraction]  #: time units per second; None where the file states 0
    length: int  #: in time units
    rect: Rect  #: x, y, width, height of the picture, in pixels
    sample_rate: int
    channel_count: int
    bits_per_sample: int
    bytes_per_sample: int
    stream_file_names: Tuple[str, ...]

    @property
    def seconds(self) -> Optional[Fraction]:
        """The exact duration."""
        return None if self.rate is None else self.length / self.rate

    @property
    def is_screen(self) -> bool:
        return self.tag == 1


@dataclass(frozen=True)
class Stats:
    """The largest picture of a recording, and its tracks in file order."""

    rect: Rect
    tracks: Tuple[Track, ...]


def stats_of(source: Source) -> Stats:
    path = source.module_path()
    try:
        rect, rows = _voxa.stats(os.fsencode(path))
    except RuntimeError as error:
        raise VoxaError(f"{source.path}: the tracks cannot be read; they are in .voxa, .mp4 and .mov files: "
                        f"{str(error).strip()}") from None
    tracks = []
    for (index, kind, tag, numerator, denominator, length, box, sample_rate, channels, bits,
         sample_bytes, names) in rows:
        rate = Fraction(numerator, denominator) if numerator else None
        tracks.append(Track(index, kind, tag, rate, length, box, sample_rate, channels, bits,
                            sample_bytes, tuple(names)))
    return Stats(rect, tuple(tracks))
