"""The installed package works where it lies, even after it was moved with the library."""
import os
import pathlib
import subprocess
import sys


def test_the_installed_package_finds_its_library(tmp_path):
    prefix = tmp_path / "moved"
    first = tmp_path / "first"
    subprocess.run(["cmake", "--install", os.environ["KX_BUILD_FOLDER"], "--prefix", first], check=True,
                   stdout=subprocess.DEVNULL)
    first.rename(prefix)
    package = prefix / "lib/python3/dist-packages/kx_domain_util"
    assert {"__init__.py", "__init__.pyi", "py.typed"} < {file.name for file in package.iterdir()}
    code = """
import kx_domain_util as kx, sys
print(kx.__file__, kx.type("NE=7"), kx.__version__)
print(*sorted(line.split()[-1] for line in open("/proc/self/maps") if "libkx_domain_util" in line and "r-xp" in line))
"""
    environment = {"PYTHONPATH": str(package.parent), "PATH": os.environ["PATH"]}
    ended = subprocess.run([sys.executable, "-B", "-c", code], env=environment, capture_output=True, text=True, check=True)
    first_line, library = ended.stdout.splitlines()
    assert first_line == f"{package / '__init__.py'} NEIndex 1.0.0"
    assert pathlib.Path(library).is_relative_to(prefix)
