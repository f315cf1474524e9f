"""The open file that a recording and its streams share."""

from __future__ import annotations

import os
from typing import Optional

from . import _voxa
from ._errors import VoxaError

_CONTAINERS = {name.lower(): name for name in _voxa.container_kinds()}


class Source:
    """Streams refer to this and not to the recording, so that no cycle keeps a file open."""

    def __init__(self, path: str, container: Optional[str]) -> None:
        name = None if container is None else _CONTAINERS.get(container.lower())
        if container is not None and name is None:
            raise ValueError(f"container={container!r} is none of {', '.join(_CONTAINERS)}")
        _require_readable(path)
        self.path = path
        self.index = _voxa.RecordingIndex(os.fsencode(path), name)
        self.container = self.index.container()
        if self.container == "None":
            raise VoxaError(f"{path}: unknown extension; pass container=")

    def host_path(self) -> str:
        """The path as the module takes it. It goes by the extension alone, and takes UTF-8 only."""
        if _voxa.container_of_file_name(os.fsencode(self.path)) != self.container:
            raise VoxaError(f"{self.path}: a host reads by the extension; rename the file to "
                            ".voxa, .mp4, .mov, .avi, .wav or .dat")
        try:
            self.path.encode("utf-8")
        except UnicodeEncodeError:
            raise VoxaError(f"{self.path!r}: the file name is not valid UTF-8; rename the file"
                            ) from None
        return self.path


def _require_readable(path: str) -> None:
    """Raises the OSError of a file that cannot be read: a missing one, a folder, a pipe."""
    if os.path.exists(path) and not os.path.isfile(path) and not os.path.isdir(path):
        raise OSError(f"{path}: not a regular file")  # opening a pipe would block
    with open(path, "rb"):
        pass
