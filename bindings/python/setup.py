"""Builds molo_fingerdetect._core from the binding and the library's own
sources (src/ two folders up), so the installed module needs no shared
library at run time. Build it from this folder inside the source tree:

    pip install --no-build-isolation ./bindings/python
"""

import os
from pathlib import Path

from pybind11.setup_helpers import ParallelCompile, Pybind11Extension
from setuptools import setup

here = Path(__file__).resolve().parent
root = here.parent.parent


def relative(paths):
    # setuptools wants source paths relative to this folder.
    return sorted(os.path.relpath(p, here) for p in paths)


def library_sources():
    # The library's own list (src/sources.cmake), one source a line.
    listed = root / "src" / "sources.cmake"
    prefix = "${CMAKE_CURRENT_LIST_DIR}/"
    lines = (line.strip() for line in listed.read_text().splitlines())
    return [root / "src" / line[len(prefix):] for line in lines if line.startswith(prefix)]


sources = relative(list((here / "src").glob("*.cpp")) + library_sources())

core = Pybind11Extension(
    "molo_fingerdetect._core",
    sources,
    include_dirs=[str(root / "include"), str(root / "src")],
    cxx_std=17,
    # As the library's own build: results fixed to the bit (no fused
    # multiply-add), its row loops on the library's helper threads, nothing
    # exported but the module.
    extra_compile_args=["-ffp-contract=off", "-fno-math-errno", "-pthread"],
    extra_link_args=["-pthread"],
)

ParallelCompile("MOLO_BUILD_JOBS").install()
setup(ext_modules=[core])
