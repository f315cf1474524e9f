"""One stream of a recording."""

from __future__ import annotations

import math
import os
import sys
from fractions import Fraction
from typing import Any, NoReturn, Optional, Tuple, Union

import numpy as np
import numpy.typing as npt

from . import _voxa
from ._errors import DamagedStream, UnknownType, VoxaError
from ._guess import Guess, guess_of
from ._parameter import Parameter, Time, exact_time, rate_of
from ._rows import records_array
from ._source import Source

_RECORD_TYPES = tuple(_voxa.record_types())
_PARAMETER_TYPES = tuple(_voxa.parameter_types())


class Stream:
    """One indexed stream. It is usable until its recording is closed."""

    def __init__(self, source: Source, id: str, key: str, is_known: bool, version: int,
                 offset: int, size: int) -> None:
        self._source = source
        self.id = id  #: 36 characters
        self.key = key  #: two hexadecimal digits
        self.is_known = is_known  #: the identifier is in the format's registry
        self.version = version  #: of the entry header
        self.offset = offset  #: of the entry header, in bytes
        self.size = size  #: in bytes, as the index states it

    def guess(self) -> Guess:
        """Guesses the record type from the bytes."""
        return guess_of(self._source.index, self.id)

    def records(self, type: Optional[str] = None, start: Optional[Time] = None,
                stop: Optional[Time] = None) -> npt.NDArray[Any]:
        """The records with `start` <= time < `stop`, in seconds and file order, as a structured
        array. Without `type` it is guessed.

        Raises `UnknownType` where the guess is not certain, and `DamagedStream`, which carries the
        records before the damage.
        """
        record_type = self._type_of(type, _RECORD_TYPES)
        first, last = _bound(start), _bound(stop)
        if last < first:
            raise ValueError(f"stop={stop!r} is before start={start!r}")
        columns, damage = self._source.index.records(self.id, record_type, first, last)
        records = records_array(record_type, columns)
        if damage is not None:
            raise DamagedStream(self._source.path, self.id, *damage, records)
        return records

    def load(self, type: Optional[str] = None,
             rate: Union[Fraction, int, str] = Fraction(30000, 1001)) -> Parameter:
        """Loads the stream as keyframes at `rate` frames per second, as a host does.

        `type` is a record type, "opacity" or "rect-collections"; without it, the record type is
        guessed. Raises what `records` raises.
        """
        parameter_type = self._type_of(type, _PARAMETER_TYPES)
        exact = rate_of(rate)
        path = self._source.host_path()
        name = f"{path}/{self.id}"
        if parameter_type != "rect-collections":  # of which no records are read
            record_type = "doubles" if parameter_type == "opacity" else parameter_type
            if not self._source.index.is_whole(self.id, record_type):  # the module would fill it up
                self.records(record_type)  # raises DamagedStream with the records
        try:
            loaded = _voxa.load(os.fsencode(name), self.id, parameter_type,
                                exact.numerator, exact.denominator)
        except (RuntimeError, ValueError) as error:
            raise VoxaError(f"{path}: stream {self.id}: {error}") from None
        return Parameter(loaded, self.id, parameter_type, exact)

    def _type_of(self, type: Optional[str], allowed: Tuple[str, ...]) -> str:
        if type is not None:
            if type not in allowed:
                raise ValueError(f"type={type!r} is none of {', '.join(allowed)}")
            return type
        guess = self.guess()
        if guess.type is None:
            raise UnknownType(self._source.path, self.id, guess.likely)
        return guess.type

    def __reduce__(self) -> NoReturn:
        raise TypeError("a stream cannot be pickled or copied; pickle the path of the recording and "
                        "its id")

    def __repr__(self) -> str:
        return f"<voxa.Stream {self.key} {self.id}: {self.size} bytes>"


def _bound(time: Optional[Time]) -> float:
    """The least float that is not below `time`: no record lies between the two. NaN is no bound."""
    if time is None:
        return math.nan
    exact = exact_time(time)
    limit = Fraction(sys.float_info.max)
    nearest = float(min(max(exact, -limit), limit)) if isinstance(exact, Fraction) else exact
    return math.nextafter(nearest, math.inf) if nearest < exact else nearest
