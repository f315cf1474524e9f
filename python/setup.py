"""Builds the extension module from the sources of the repository, the library included, so that the
wheel needs nothing but Boost.Filesystem. The metadata is in pyproject.toml."""

import os
import pathlib
import re

from pybind11.setup_helpers import ParallelCompile, Pybind11Extension
from setuptools import setup
from setuptools.command.build_ext import build_ext

FOLDER = pathlib.Path(__file__).resolve().parent
ROOMS = ("text", "ZRKMetaData/src", "host/Kestova", "host/VOXA", "names", "params", "loader",
         "stats", "tools/series", "tools/host", "python")
OTHER_PLATFORMS = ("Windows.cpp", "WindowsPathBoost.cpp")
# Constructs a class with a protected constructor.
WITHOUT_ACCESS_CONTROL = "../names/Utf16.cpp"


class BuildExtension(build_ext):
    """Compiles the sources of a folder as one, so that their headers are read once, and one source with an
    option that the others do not have."""

    def join(self, room):
        joined = pathlib.Path(self.build_temp).resolve() / f"{room.replace('/', '_')}.cpp"
        joined.write_text("".join(f'#include "{path}"\n' for path in sources_of(room)))
        return str(joined)

    def build_extension(self, extension):
        os.makedirs(self.build_temp, exist_ok=True)  # the paths of the objects lead through it
        extension.sources = [self.join(room) for room in ROOMS]
        extension.extra_objects = self.compiler.compile(
            [WITHOUT_ACCESS_CONTROL], self.build_temp, include_dirs=extension.include_dirs,
            extra_postargs=[*extension.extra_compile_args, "-fno-access-control"])
        super().build_extension(extension)


def sources_of(room):
    """Relative to FOLDER."""
    return sorted(str(path) for path in pathlib.Path("..", room).glob("*.cpp")
                  if not path.name.endswith(OTHER_PLATFORMS) and str(path) != WITHOUT_ACCESS_CONTROL)


os.chdir(FOLDER)
version = re.search(r"project\(\w+ VERSION ([0-9.]+)",
                    pathlib.Path("../CMakeLists.txt").read_text()).group(1)

ParallelCompile().install()
setup(version=version, cmdclass={"build_ext": BuildExtension}, ext_modules=[Pybind11Extension(
    "voxa._voxa",
    [source for room in ROOMS for source in sources_of(room)],
    include_dirs=["..", "."],
    libraries=["boost_filesystem"],
    define_macros=[("VOXA_VERSION", f'"{version}"')],
    cxx_std=17,
    extra_compile_args=[
        "-O3",
        "-ffp-contract=off",  # frame numbers are defined without fused multiply-add
    ])])
