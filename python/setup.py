"""Builds the extension module from the sources of the repository, the library included, so that the
wheel needs nothing but Boost.Filesystem. The metadata is in pyproject.toml."""

import os
import pathlib
import re

from pybind11.setup_helpers import ParallelCompile, Pybind11Extension
from setuptools import setup

FOLDER = pathlib.Path(__file__).resolve().parent
ROOMS = ("text", "ZRKMetaData/src", "host/Kestova", "host/VOXA", "names", "params", "loader",
         "stats", "tools/series", "tools/host", "python")
OTHER_PLATFORMS = ("Windows.cpp", "WindowsPathBoost.cpp")

os.chdir(FOLDER)  # paths of sources are relative to it
sources = sorted(str(path) for room in ROOMS for path in pathlib.Path("..", room).glob("*.cpp")
                 if not path.name.endswith(OTHER_PLATFORMS))
version = re.search(r"project\(\w+ VERSION ([0-9.]+)", pathlib.Path("../CMakeLists.txt").read_text())

ParallelCompile().install()
setup(version=version.group(1), ext_modules=[Pybind11Extension(
    "voxa._voxa",
    sources,
    include_dirs=[".."],
    libraries=["boost_filesystem"],
    cxx_std=17,
    extra_compile_args=[
        "-O3",
        "-ffp-contract=off",  # frame numbers are defined without fused multiply-add
        "-fno-access-control",  # names/Utf16.cpp constructs a class with a protected constructor
    ])])
