"""An open recording."""

from __future__ import annotations

import os
from collections.abc import Iterator, Mapping
from types import TracebackType
from typing import Dict, List, NoReturn, Optional, Type, Union

from . import _voxa
from ._html import recording_html
from ._source import Source
from ._stats import Stats, stats_of
from ._stream import Stream


class Streams(Mapping[str, Stream]):
    """The streams of a recording, in index order.

    Iteration gives identifiers. A look-up takes an identifier or the two digits of a short key, in
    any letter case. Of several streams with one key, it names the one of the registry.
    """

    def __init__(self, path: str, streams: List[Stream]) -> None:
        self._path = path
        self._streams: Dict[str, Stream] = {stream.id: stream for stream in streams}

    def __getitem__(self, name: str) -> Stream:
        if not isinstance(name, str):
            raise KeyError(name)
        found = self._streams.get(name.lower())
        if found is not None:
            return found
        matches = [stream for stream in self._streams.values() if stream.key == name.upper()]
        for match in matches:
            if match.is_known or len(matches) == 1:
                return match
        if matches:
            raise KeyError(f"{self._path}: several streams have the key {name}: " +
                           " ".join(match.id for match in matches))
        raise KeyError(f"{self._path}: no stream {name}")

    def __iter__(self) -> Iterator[str]:
        return iter(self._streams)

    def __len__(self) -> int:
        return len(self._streams)

    def __repr__(self) -> str:
        return f"<voxa.Streams {' '.join(stream.key for stream in self.values())}>"


class Recording:
    """An open recording, as a context manager. Several threads may use it; their reads take turns.

    Arrays and parameters stay valid after it is closed.
    """

    def __init__(self, path: Union[str, bytes, os.PathLike[str], os.PathLike[bytes]],
                 container: Optional[str] = None) -> None:
        self._source = Source(os.fsdecode(path), container)
        self._streams = Streams(self.path, [Stream(self._source, *row)
                                            for row in self._source.index.streams()])

    @property
    def path(self) -> str:
        return self._source.path

    @property
    def container(self) -> str:
        """"Riff", "Atoms" or "Raw"."""
        return self._source.container

    @property
    def streams(self) -> Streams:
        return self._streams

    @property
    def stats(self) -> Stats:
        """The tracks of a `.voxa`, `.mp4` or `.mov` recording, read again each time. Raises
        `VoxaError` for a file without them, and for one that was moved, removed or replaced."""
        return stats_of(self._source)

    @property
    def slots(self) -> Dict[str, Optional[str]]:
        """The host's slot of each stream, by identifier; None where the host ignores it."""
        path = self._source.host_path()
        return {id: _voxa.slot(os.fsencode(f"{path}/{id}")) for id in self._streams}

    def close(self) -> None:
        """Closes the file. Everything that reads it then raises ValueError, `load`, `stats` and `slots`
        included."""
        self._source.index.close()

    def __enter__(self) -> Recording:
        return self

    def __exit__(self, kind: Optional[Type[BaseException]], error: Optional[BaseException],
                 trace: Optional[TracebackType]) -> None:
        self.close()

    def __reduce__(self) -> NoReturn:
        raise TypeError("a recording cannot be pickled or copied; pickle its path and open it again")

    def __repr__(self) -> str:
        return f"<voxa.Recording {self.path}: {self.container}, {len(self._streams)} streams>"

    def _repr_html_(self) -> str:
        return recording_html(self)
