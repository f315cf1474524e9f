"""A stream as keyframes on a frame grid."""

from __future__ import annotations

import json
import math
import numbers
import re
from decimal import Decimal
from functools import cached_property
from fractions import Fraction
from typing import TYPE_CHECKING, Any, Dict, NoReturn, Union

import numpy as np
import numpy.typing as npt

from . import _voxa
from ._html import parameter_html
from ._rows import values_array

if TYPE_CHECKING:
    import pandas  # type: ignore[import]  # Debian's has no annotations

Time = Union[Fraction, float, int]

_RATE_LIMIT = 2**32
_FIRST_FRAME = -2**63
_LAST_FRAME = 2**63 - 1


def rate_of(rate: Union[Fraction, int, str]) -> Fraction:
    """Frames per second as a fraction. Decimals are refused, because 29.97 is not 30000/1001."""
    is_text = isinstance(rate, str) and re.fullmatch(r"[0-9]+(/[0-9]*[1-9][0-9]*)?", rate)
    if not is_text and not isinstance(rate, numbers.Rational):
        raise TypeError(f"rate={rate!r} is no exact rate; use Fraction(30000, 1001) for 29.97, an "
                        "int or a text such as '30000/1001'")
    exact = Fraction(rate) if isinstance(rate, str) else _fraction_of(rate)
    if not (0 < exact.numerator < _RATE_LIMIT and exact.denominator < _RATE_LIMIT):
        raise ValueError(f"rate={rate!r}: numerator and denominator are from 1 to 2**32 - 1")
    return exact


def exact_time(time: Time) -> Union[Fraction, float]:
    """The time as a fraction; an infinite one stays a float. Numbers that are neither floats nor
    fractions are taken as floats. Raises ValueError for NaN and TypeError for what is no number."""
    if isinstance(time, numbers.Rational):
        return _fraction_of(time)
    if not isinstance(time, (numbers.Real, Decimal)):
        raise TypeError(f"{time!r} is no time; pass seconds as a Fraction, an int or a float")
    number = float(time)
    if math.isnan(number):
        raise ValueError("a time is not a number")
    return Fraction(number) if math.isfinite(number) else number


def _fraction_of(number: Union[Fraction, int]) -> Fraction:
    return Fraction(int(number.numerator), int(number.denominator))  # NumPy's have 64 bits


class Parameter:
    """Keyframes of one stream at an exact frame rate. A value holds until the next keyframe.

    Immutable. It stays valid after its recording is closed.
    """

    def __init__(self, loaded: _voxa.LoadedParameter, name: str, type: str,
                 rate: Fraction) -> None:
        self._loaded = loaded
        self._name = name
        self._type = type
        self._rate = rate
        self._values = values_array(type, loaded.values)
        for array in (loaded.frames, self._values):
            array.flags.writeable = False

    @property
    def name(self) -> str:
        """The identifier of the stream."""
        return self._name

    @property
    def type(self) -> str:
        return self._type

    @property
    def rate(self) -> Fraction:
        """Frames per second."""
        return self._rate

    @property
    def frames(self) -> npt.NDArray[np.int64]:
        """The frame number of each keyframe, ascending."""
        return self._loaded.frames

    @cached_property
    def times(self) -> npt.NDArray[np.object_]:
        """The exact time of each keyframe: an array of `Fraction`s, in seconds."""
        times = np.empty(len(self), object)
        times[:] = [frame / self._rate for frame in self.frames.tolist()]
        times.flags.writeable = False
        return times

    @cached_property
    def seconds(self) -> npt.NDArray[np.float64]:
        """The time of each keyframe as a float: the least one that is not before the exact time, so
        that `values_at(seconds)` is `values`."""
        seconds = _voxa.starts_of_frames(self.frames, *self._rate.as_integer_ratio())
        seconds.flags.writeable = False
        return seconds

    @property
    def values(self) -> npt.NDArray[Any]:
        """The value of each keyframe. Points, rectangles and keystrokes are structured, texts are
        objects."""
        return self._values

    def value_at(self, time: Time) -> Any:
        """The value at `time`, in seconds, compared exactly. Before the first keyframe it is the
        value of the first. Raises ValueError without keyframes or where `time` is NaN."""
        return self._held(np.array(self._frame_at(time)))[()]

    def values_at(self, times: npt.ArrayLike) -> npt.NDArray[Any]:
        """The values at an array of times, as `value_at` of each, in an array of the same shape.
        Arrays of floats are fast, those of `Fraction`s exact. Raises TypeError for arrays of
        anything but numbers, and for masked arrays."""
        if isinstance(times, np.ma.MaskedArray):
            raise TypeError("masked times have no value; pass times.compressed()")
        array = np.asarray(times)
        if array.dtype.kind not in "biufO":
            raise TypeError(f"an array of {array.dtype} holds no times; pass seconds as numbers")
        if array.dtype.kind == "O" or _has_inexact_integers(array):
            frames = [self._frame_at(time) for time in array.ravel().tolist()]
            return self._held(np.array(frames, np.int64).reshape(array.shape))
        seconds = array.astype(np.float64)
        if np.isnan(seconds).any():
            raise ValueError("a time is not a number")
        shown = _voxa.frames_shown_at(seconds, *self._rate.as_integer_ratio())
        return self._held(np.asarray(shown, np.int64))

    def _frame_at(self, time: Time) -> int:
        """The frame that is shown at `time`, or the nearest that 64 bits hold."""
        frame = exact_time(time) * self._rate
        if frame < _FIRST_FRAME:
            return _FIRST_FRAME
        return _LAST_FRAME if frame > _LAST_FRAME else math.floor(frame)

    def _held(self, frames: npt.NDArray[np.int64]) -> npt.NDArray[Any]:
        if len(self) == 0:
            raise ValueError(f"{self._name}: there are no keyframes")
        indexes = np.searchsorted(self.frames, frames, side="right") - 1
        return np.asarray(self._values[np.maximum(indexes, 0)])

    def to_json(self, *, host: bool = False) -> str:
        """The document that `voxa load --format json` prints. With `host`, the text that the host
        writes, whose values of points, rectangles and keystrokes are empty."""
        if host:
            if len(self) == 0:
                raise ValueError(f"{self._name}: there is no keyframe to write")
            return self._loaded.to_json()
        rate = f"{self._rate.numerator}/{self._rate.denominator}"
        seconds = self.frames * float(self._rate.denominator) / float(self._rate.numerator)
        keyframes = [{"frame": frame, "seconds": second, "value": _json_value(value)}
                     for frame, second, value in zip(self.frames.tolist(), seconds.tolist(),
                                                     self._values)]
        return json.dumps({"name": self._name, "type": self._type, "rate": rate,
                           "keyframes": keyframes}, ensure_ascii=False, allow_nan=False)

    def to_xml(self) -> str:
        """The XML that the host writes."""
        return self._loaded.to_xml()

    def to_pandas(self) -> pandas.DataFrame:
        """The keyframes as a data frame with the index `seconds`. Requires pandas."""
        import pandas

        columns: Dict[str, Any] = {"frame": self.frames}
        for name in self._values.dtype.names or ("value",):
            columns[name] = self._values[name] if self._values.dtype.names else self._values
        return pandas.DataFrame(columns, index=pandas.Index(self.seconds, name="seconds"))

    def __copy__(self) -> Parameter:
        return self  # immutable

    def __deepcopy__(self, memo: Dict[int, Any]) -> Parameter:
        return self

    def __reduce__(self) -> NoReturn:
        raise TypeError("a parameter cannot be pickled; pickle its frames and values")

    def __len__(self) -> int:
        return len(self._loaded.frames)

    def __repr__(self) -> str:
        return (f"<voxa.Parameter {self._name} {self._type}: {len(self)} keyframes at "
                f"{self._rate} frames per second>")

    def _repr_html_(self) -> str:
        return parameter_html(self)


def _has_inexact_integers(array: npt.NDArray[Any]) -> bool:
    """Whether the array has integers that float64 rounds."""
    limit = 2**53
    return array.dtype.kind in "iu" and bool(((array > limit) | (array < -limit)).any())


def _json_value(value: Any) -> Any:
    if isinstance(value, str):
        return value.encode("utf-8", "surrogateescape").decode("utf-8", "replace")
    if isinstance(value, np.void):
        fields = [_json_value(value[name]) for name in value.dtype.names or ()]
        names = value.dtype.names or ()
        return fields if names == ("a", "b", "c", "d") else dict(zip(names, fields))
    number = value.item()
    if isinstance(number, float) and not math.isfinite(number):
        return "NaN" if math.isnan(number) else "Infinity" if number > 0 else "-Infinity"
    return number
