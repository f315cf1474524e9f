"""The open file that a recording and its streams share."""

from __future__ import annotations

import os
from typing import Optional, Tuple

from . import _voxa
from ._errors import VoxaError

_CONTAINERS = {name.lower(): name for name in _voxa.container_kinds()}


class Source:
    """Streams refer to this and not to the recording, so that no cycle keeps a file open."""

    def __init__(self, path: str, container: Optional[str]) -> None:
        if not isinstance(container, (str, type(None))):
            raise TypeError(f"container={container!r} is no text; use {', '.join(_CONTAINERS)}")
        name = None if container is None else _CONTAINERS.get(container.lower())
        if container is not None and name is None:
            raise ValueError(f"container={container!r} is none of {', '.join(_CONTAINERS)}")
        self._identity = _identity_of(path)
        # The working folder may change, or be gone already.
        self._absolute = path if os.path.isabs(path) else os.path.join(os.getcwd(), path)
        self.path = path
        self.index = _voxa.RecordingIndex(os.fsencode(path), name)
        self.container = self.index.container()
        if self.container == "None":
            raise VoxaError(f"{path}: unknown extension; pass container=")

    def require_open(self) -> None:
        """Raises ValueError where the recording is closed."""
        self.index.container()

    def module_path(self) -> str:
        """The path for the module, which opens the file again. Raises ValueError where the recording
        is closed, and VoxaError where the path no longer names the file that is open."""
        self.require_open()
        try:
            found = os.stat(self._absolute)
        except OSError:
            found = None
        if found is None or (found.st_dev, found.st_ino) != self._identity:
            raise VoxaError(f"{self.path}: the file was moved, removed or replaced after it was "
                            "opened; open the recording again")
        return self._absolute

    def host_path(self) -> str:
        """The path as a host takes it. It goes by the extension alone, and takes UTF-8 only. Raises
        what `module_path` raises, and VoxaError for other paths."""
        path = self.module_path()
        if _voxa.container_of_file_name(os.fsencode(self.path)) != self.container:
            raise VoxaError(f"{self.path}: a host reads by the extension; rename the file to "
                            ".voxa, .mp4, .mov, .avi, .wav or .dat")
        try:
            path.encode("utf-8")
        except UnicodeEncodeError:
            raise VoxaError(f"{path!r}: the file name is not valid UTF-8; rename the file"
                            ) from None
        return path


def _identity_of(path: str) -> Tuple[int, int]:
    """The device and the number of the file. The index keeps it open, so that no other file gets
    the number. Raises the OSError of a file that cannot be read: a missing one, a folder, a pipe.
    """
    if os.path.exists(path) and not os.path.isfile(path) and not os.path.isdir(path):
        raise OSError(f"{path}: not a regular file")  # opening a pipe would block
    with open(path, "rb") as file:
        status = os.fstat(file.fileno())
        return status.st_dev, status.st_ino
