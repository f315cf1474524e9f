"""Reads the cursor, keystrokes, rectangles and series of screen recordings as NumPy arrays.

    import voxa

    with voxa.open("take1.voxa") as recording:
        cursor = recording.streams["F0"].records()
    print(cursor["time"], cursor["x"], cursor["y"])
"""

from __future__ import annotations

import os
from typing import Optional, Union

from . import _voxa
from ._errors import DamagedStream, UnknownType, VoxaError
from ._guess import Candidate, Guess
from ._parameter import Parameter
from ._recording import Recording, Streams
from ._stats import Stats, Track
from ._stream import Stream

__all__ = ["Candidate", "DamagedStream", "Guess", "Parameter", "Recording", "Stats", "Stream",
           "Streams", "Track", "UnknownType", "VoxaError", "open"]

__version__: str = _voxa.version


def open(path: Union[str, bytes, os.PathLike[str], os.PathLike[bytes]],
         container: Optional[str] = None) -> Recording:
    """Opens and indexes a recording, without reading its media.

    `container` is "atoms", "riff" or "raw", in any letter case; without it, the extension decides.
    Raises FileNotFoundError and the other OSErrors of a file that cannot be opened, and `VoxaError`
    for an unknown extension.
    """
    return Recording(path, container)
