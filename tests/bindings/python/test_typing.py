"""The type hints: a type checker accepts what works and refuses what does not, and they match the module."""
import subprocess
import sys

import pytest

GOOD = '''
import numpy as np
import kx_domain_util as kx

def ports(path: str) -> dict[str, int]:
    with open(path, "rb") as file:
        columns = kx.columns(file.read(), {"NE": "int32", "PP:3": "str"})
    pieces = {"NE": "int32"}
    columns = kx.columns(["NE=1", b"NE=2", None], pieces)
    columns = kx.columns(bytearray(b"NE=1"), ("NE", "PP:2"), offsets=np.array([0, 4]))
    total: int = int(columns["NE"].sum())
    return {piece: column.count() for piece, column in columns.items()} | {"total": total}

class Facts:
    carrier_profile = 0
    def ne_type(self, ne: int) -> int | None:
        return {1: 1887}.get(ne)

try:
    record: dict = kx.decode("NE=1")
    record["record"]["neId"] += 1
    text: str = kx.encode(record) + kx.encode(record, Facts()) + kx.encode(record, facts={"ne_type": {1: 2}.get})
except kx.NoFacts as error:
    reason: LookupError = error
kind: str | None = kx.kind("NE=1") or kx.type(b"NE=1") or kx.get("NE=1", "NE")
columns_and_texts: list[tuple[int, str]] = [(problem.column, problem.text) for problem in kx.check("x")]
drawing: str = kx.explain("NE=1")
version: str = kx.__version__
'''


@pytest.fixture(scope="module", name="folder")
def make_folder(tmp_path_factory):
    """One for all, since the type checker keeps there what it knows of numpy."""
    return tmp_path_factory.mktemp("typing")


def check(folder, text):
    program = folder / "program.py"
    program.write_text(text, encoding="utf-8")
    # What numpy says of masked arrays is not strict itself.
    return subprocess.run([sys.executable, "-m", "mypy", "--strict", "--allow-any-generics", "--allow-untyped-calls",
                           program], cwd=folder, capture_output=True, text=True, check=False)


def test_a_type_checker_accepts_a_program(folder):
    ended = check(folder, GOOD)
    assert ended.returncode == 0, ended.stdout


def test_a_type_checker_refuses_what_would_fail(folder):
    wrong = ["kx.decode(7)", "kx.type()", "len(kx.kind('NE=1'))", "kx.get('NE=1', 7)", "kx.columns([7], ['NE'])",
             "kx.columns(b'NE=1', [7])", "kx.columns(b'NE=1', {'NE': int})", "kx.decoded('NE=1')", "kx.encode('NE=1')",
             "kx.check('x')[0].line"]
    ended = check(folder, "\n".join(["import kx_domain_util as kx", *wrong]))
    for line, text in enumerate(wrong, 2):
        assert f"program.py:{line}: error" in ended.stdout, text
    assert ended.returncode == 1


def test_the_hints_match_the_module(folder):
    ended = subprocess.run([sys.executable, "-m", "mypy.stubtest", "kx_domain_util", "--ignore-missing-stub"],
                           cwd=folder, capture_output=True, text=True, check=False)
    assert ended.returncode == 0, ended.stdout + ended.stderr
