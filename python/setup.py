"""Builds the package: setuptools calls CMake for the module tavo._core.

A source distribution holds the sources of the libraries in the folder "library"; in the source tree they are
one folder up.
"""

import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext
from setuptools.command.sdist import sdist

HERE = Path(__file__).resolve().parent
LIBRARY = HERE / "library" if (HERE / "library").is_dir() else HERE.parent
#: What CMake needs of the source tree. The package itself is beside this file.
SOURCES = ("CMakeLists.txt", "cmake", "tavo/client", "tavo/client.h", "tavo/config", "tavo/jtag", "tavo/server",
           "tavo/simulator", "tavo/toolkit")


def version() -> str:
    """The version of the library, without its fourth part."""
    header = (LIBRARY / "tavo" / "client" / "version_number.h").read_text(encoding="ascii")
    return ".".join(re.findall(r"ClientLibrary(?:Major|Minor|Bugfix)Version = (\d+);", header))


class BuildModule(build_ext):
    """Builds and copies the module by CMake."""

    def build_extension(self, ext: Extension) -> None:
        build = Path(self.build_temp).resolve()
        target = Path(self.get_ext_fullpath(ext.name)).resolve()
        build.mkdir(parents=True, exist_ok=True)
        options = {
            "CMAKE_BUILD_TYPE": "Release",
            "Python3_EXECUTABLE": sys.executable,
            "TAVO_BUILD_PYTHON": "ON",
            "TAVO_BUILD_C": "OFF",
            "TAVO_BUILD_CLI": "OFF",
            "TAVO_BUILD_TESTS": "OFF",
            "TAVO_BUILD_EXAMPLES": "OFF",
            "TAVO_INSTALL": "OFF",
            "TAVO_JOIN_LIBRARIES": "ON",
            "TAVO_PYTHON_SOURCES": str(HERE),
        }
        generator = ["-G", "Ninja"] if shutil.which("ninja") else []
        configure = ["cmake", "-S", str(LIBRARY), "-B", str(build), *generator]
        subprocess.run([*configure, *(f"-D{name}={value}" for name, value in options.items())], check=True)
        jobs = os.environ.get("CMAKE_BUILD_PARALLEL_LEVEL") or str(os.cpu_count() or 1)
        subprocess.run(
            ["cmake", "--build", str(build), "--target", "tavo_python", "--parallel", jobs], check=True
        )
        target.parent.mkdir(parents=True, exist_ok=True)
        built = build / "python" / "tavo" / target.name
        shutil.copy2(built, target)
        subprocess.run(["strip", "--strip-unneeded", str(target)], check=False)


class SourceDistribution(sdist):
    """Adds the sources of the libraries."""

    def make_release_tree(self, base_dir: str, files: list[str]) -> None:
        super().make_release_tree(base_dir, files)
        for name in SOURCES:
            source, target = LIBRARY / name, Path(base_dir) / "library" / name
            if source.is_dir():
                shutil.copytree(source, target, dirs_exist_ok=True)
            else:
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy2(source, target)
        for name in ("src", "CMakeLists.txt", "METADATA.in", "entry_points.txt"):
            source, target = HERE / name, Path(base_dir) / name
            if source.is_dir():
                shutil.copytree(source, target, dirs_exist_ok=True)
            else:
                shutil.copy2(source, target)


setup(
    version=version(),
    ext_modules=[Extension("tavo._core", sources=[])],
    cmdclass={"build_ext": BuildModule, "sdist": SourceDistribution},
)
