"""NumPy types of the records and of the values of parameters, and arrays of them."""

from __future__ import annotations

from typing import Any, Dict, List, Tuple, Union

import numpy as np
import numpy.typing as npt

Columns = Union["npt.NDArray[np.uint8]", Tuple[Any, ...]]

_TIME = ("time", "<f8")
_KEYSTROKE = [("character", "<i4"), ("eventFlags", "<i4")]

#: The fields of a record of each type, in the order of the stream. Times are seconds.
RECORD_DTYPES: Dict[str, np.dtype[Any]] = {
    "ints": np.dtype([_TIME, ("value", "<i4")]),
    "doubles": np.dtype([_TIME, ("value", "<f8")]),
    "int64s": np.dtype([_TIME, ("value", "<i8")]),
    "strings": np.dtype([_TIME, ("value", "O")]),
    "keystrokes": np.dtype([_TIME, *_KEYSTROKE]),
    "points": np.dtype([_TIME, ("x", "<i4"), ("y", "<i4")]),
    "rects": np.dtype([_TIME, ("a", "<i4"), ("b", "<i4"), ("c", "<i4"), ("d", "<i4")]),
    "cursor-images": np.dtype([_TIME, ("imageId", "<u8"), ("dataSize", "<u4"),
                               ("imageInfo0", "<i4"), ("imageInfo1", "<i4"), ("image", "O")]),
}

#: The values of parameters that are stored as packed bytes.
_PACKED_VALUES: Dict[str, np.dtype[Any]] = {
    "keystrokes": np.dtype(_KEYSTROKE),
    "points": np.dtype([("x", "<f8"), ("y", "<f8")]),
    "rects": np.dtype([("a", "<f4"), ("b", "<f4"), ("c", "<f4"), ("d", "<f4")]),
}


def records_array(record_type: str, columns: Columns) -> npt.NDArray[Any]:
    """The structured array of what the extension read."""
    dtype = RECORD_DTYPES[record_type]
    if isinstance(columns, np.ndarray):
        return columns.view(dtype)  # the same memory
    records = np.empty(len(columns[0]), dtype)
    for name, column in zip(dtype.names or (), columns):
        records[name] = column
    return records


def values_array(parameter_type: str, values: Union[npt.NDArray[Any], List[str]]
                 ) -> npt.NDArray[Any]:
    """The values of a parameter; texts become an array of objects."""
    if not isinstance(values, np.ndarray):
        objects = np.empty(len(values), object)
        objects[:] = values
        return objects
    dtype = _PACKED_VALUES.get(parameter_type)
    return values if dtype is None else values.view(dtype)
