"""Build trimora._core by cmake, so that the flags that decide scores stand in one place: ../CMakeLists.txt."""
import os
import re
import subprocess
import sys
from pathlib import Path

import pybind11
from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

here = Path(__file__).resolve().parent
version = re.search(r"project\(trimora VERSION ([0-9.]+)", (here.parent / "CMakeLists.txt").read_text()).group(1)


class BuildByCMake(build_ext):
    def build_extension(self, ext):
        module = Path(self.get_ext_fullpath(ext.name)).resolve()
        folder = Path(self.build_temp).resolve() / "cmake"
        configure = [
            "cmake", "-S", str(here), "-B", str(folder), "-DCMAKE_BUILD_TYPE=Release",
            f"-DPython_EXECUTABLE={sys.executable}", f"-Dpybind11_DIR={pybind11.get_cmake_dir()}",
            f"-DTRIMORA_MODULE={module.name}", f"-DTRIMORA_MODULE_FOLDER={module.parent}",
        ]  # fmt: skip
        subprocess.run(configure, check=True)
        build = ["cmake", "--build", str(folder), "--target", "trimora_core", "--config", "Release"]
        subprocess.run([*build, "--parallel", str(os.cpu_count() or 1)], check=True)


setup(
    version=version,
    packages=["trimora"],
    package_data={"trimora": ["py.typed", "*.pyi"]},
    ext_modules=[Extension("trimora._core", sources=[])],
    options={"build": {"build_base": str(here.parent / "build/python/base")}},
    cmdclass={"build_ext": BuildByCMake},
)
