"""Builds the Python module devdef with CMake: pip runs this through pyproject.toml.

The extension devdef._devdef is the CMake target devdef_python, built in Release with the library and
the tool's parts it needs, and nothing else (no tool, tests or benchmarks). Everything the build
makes, CMake's tree included, goes under build/pip/, so the source tree stays as it was.
"""

import os
import re
import shutil
import subprocess
import sys
import sysconfig
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext
from setuptools.command.build_py import build_py
from setuptools.command.egg_info import egg_info
from setuptools.errors import ExecError, PlatformError

ROOT = Path(__file__).resolve().parent
BUILD_BASE = Path("build") / "pip"
CMAKE_MINIMUM = (3, 25)


def project_version() -> str:
    """The version of the project() line of CMakeLists.txt, the one place it is kept."""
    text = (ROOT / "CMakeLists.txt").read_text(encoding="utf-8")
    found = re.search(r"^project\(devdef\s+VERSION\s+([0-9][0-9.]*)", text, re.MULTILINE)
    if not found:
        raise PlatformError("devdef: CMakeLists.txt has no 'project(devdef VERSION ...)' line")
    return found.group(1)


def require_tools() -> str:
    """The cmake to run; raises with one line that says what to install when the build cannot start."""
    cmake = shutil.which("cmake")
    if cmake is None:
        raise PlatformError("devdef: building the Python module needs CMake 3.25 or newer on PATH "
                            "(on Debian: apt-get install cmake)")
    first = subprocess.run([cmake, "--version"], capture_output=True, text=True).stdout.splitlines()[:1]
    found = re.search(r"(\d+)\.(\d+)", first[0]) if first else None
    if found and tuple(int(n) for n in found.groups()) < CMAKE_MINIMUM:
        raise PlatformError(f"devdef: building the Python module needs CMake 3.25 or newer, {cmake} is "
                            f"{found.group(0)}")
    compilers = [os.environ["CXX"].split()[0]] if os.environ.get("CXX") else ["c++", "g++", "clang++"]
    if not any(shutil.which(c) for c in compilers):
        raise PlatformError("devdef: building the Python module needs a C++17 compiler: none of "
                            f"{', '.join(compilers)} is on PATH (on Debian: apt-get install g++)")
    headers = Path(sysconfig.get_paths()["include"]) / "Python.h"
    if not headers.is_file():
        version = f"{sys.version_info[0]}.{sys.version_info[1]}"
        raise PlatformError(f"devdef: building the Python module needs the headers of Python {version} "
                            f"({headers} is missing; on Debian: apt-get install python3-dev)")
    return cmake


def pybind11_options() -> list:
    """Points CMake at the pybind11 of this Python when it has one (a venv, an isolated build); else
    CMake looks for pybind11 where the system keeps it."""
    try:
        import pybind11
    except ImportError:
        return []
    directory = Path(pybind11.get_cmake_dir())
    return [f"-Dpybind11_DIR={directory}"] if (directory / "pybind11Config.cmake").is_file() else []


def jobs(command) -> int:
    """Parallel compile jobs: build_ext's --parallel, else CMAKE_BUILD_PARALLEL_LEVEL, else the cores."""
    if command.parallel:
        return int(command.parallel)
    level = os.environ.get("CMAKE_BUILD_PARALLEL_LEVEL", "")
    return int(level) if level.isdigit() and int(level) > 0 else (os.cpu_count() or 1)


# build/pip is kept from one build to the next for CMake's tree, where a second build compiles only
# what changed; what setuptools keeps there is made anew, so that a file the package no longer has
# does not stay behind in a wheel.
class FreshPackage(build_py):
    def run(self):
        shutil.rmtree(Path(self.build_lib) / "devdef", ignore_errors=True)
        super().run()


class FreshEggInfo(egg_info):
    """The list of the package's files, which setuptools would otherwise extend from the last one."""

    def run(self):
        if Path(self.egg_base).resolve() == (ROOT / BUILD_BASE).resolve():
            shutil.rmtree(self.egg_info, ignore_errors=True)
        super().run()


class CMakeBuild(build_ext):
    """Builds devdef._devdef with CMake in the build_temp of this Python, then copies it where
    setuptools packs the extension."""

    def build_extension(self, ext):
        cmake = require_tools()
        tree = Path(self.build_temp).resolve() / "cmake"
        configure = [cmake, "-S", str(ROOT), "-B", str(tree),
                     "-DDEVDEF_BUILD_PYTHON=ON", "-DDEVDEF_BUILD_TOOLS=OFF", "-DDEVDEF_BUILD_TESTS=OFF",
                     "-DDEVDEF_BUILD_BENCHMARKS=OFF", "-DDEVDEF_INSTALL=OFF", "-DCMAKE_BUILD_TYPE=Release",
                     f"-DPython_EXECUTABLE={sys.executable}", *pybind11_options()]
        # Ninja when there is one and CMake was told no other generator; a tree made with one
        # generator keeps it.
        if not (tree / "CMakeCache.txt").exists() and "CMAKE_GENERATOR" not in os.environ and shutil.which("ninja"):
            configure += ["-G", "Ninja"]
        self.run_cmake(configure, "configure")
        self.run_cmake([cmake, "--build", str(tree), "--target", "devdef_python", "--parallel", str(jobs(self))],
                       "build")
        target = Path(self.get_ext_fullpath(ext.name))
        built = tree / "python" / "devdef" / target.name
        if not built.is_file():
            raise ExecError(f"devdef: CMake built no {built}")
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(built, target)

    @staticmethod
    def run_cmake(command, step):
        print(" ".join(command), flush=True)
        if subprocess.run(command).returncode != 0:
            raise ExecError(f"devdef: CMake could not {step} the Python module (CMake's output is above)")


setup(
    version=project_version(),
    packages=["devdef"],
    package_dir={"": "python"},
    package_data={"devdef": ["__init__.pyi", "py.typed"]},
    ext_modules=[Extension("devdef._devdef", sources=[])],
    cmdclass={"egg_info": FreshEggInfo, "build_py": FreshPackage, "build_ext": CMakeBuild},
    zip_safe=False,
    options={"build": {"build_base": str(BUILD_BASE)}, "egg_info": {"egg_base": str(BUILD_BASE)}},
)
