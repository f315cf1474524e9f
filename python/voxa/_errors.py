"""The exceptions of the package."""

from __future__ import annotations

from typing import Any, Sequence

import numpy as np
import numpy.typing as npt


class VoxaError(Exception):
    """A recording that cannot be used as asked. The base of the other exceptions."""


class DamagedStream(VoxaError):
    """A stream whose records cannot be read to their end.

    `records` holds the records before the damage, `stream` the identifier, `byte_offset` where the
    unreadable record begins, in bytes from the start of the recording, and `reason` the cause.
    """

    def __init__(self, path: str, stream: str, byte_offset: int, reason: str,
                 records: npt.NDArray[Any]) -> None:
        super().__init__(f"{path}: stream {stream}: byte {byte_offset}: {reason}")
        self.path = path
        self.stream = stream
        self.byte_offset = byte_offset
        self.reason = reason
        self.records: npt.NDArray[np.void] = records

    def __reduce__(self) -> Any:
        return (type(self),
                (self.path, self.stream, self.byte_offset, self.reason, self.records))


class UnknownType(VoxaError):
    """A stream whose record type is not certain; `candidates` are the types that fit best."""

    def __init__(self, path: str, stream: str, candidates: Sequence[str]) -> None:
        likely = " or ".join(candidates) if candidates else "no type fits"
        super().__init__(f"{path}: the record type of stream {stream} is not certain ({likely}); "
                         "pass type=")
        self.path = path
        self.stream = stream
        self.candidates = tuple(candidates)

    def __reduce__(self) -> Any:
        return (type(self), (self.path, self.stream, self.candidates))
