"""Every example of the guide's page gives what stands below it: commands of a shell, and lines of Python."""
import doctest
import pathlib
import re
import subprocess

import pytest

DOCUMENT = pathlib.Path(__file__).parents[3] / "docs/python.md"
BLOCK = re.compile(r"^```(console|pycon)\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def run_commands(block, environment):
    """Runs the lines that begin with "$ ", and compares what they print."""
    for command, expected in re.findall(r"^\$ (.*(?:\\\n.*)*)\n((?:(?!\$ ).*\n)*)", block, re.MULTILINE):
        printed = subprocess.run(["bash", "-c", command], env=environment, stdout=subprocess.PIPE,
                                 stderr=subprocess.STDOUT, text=True, check=False).stdout
        assert printed == expected, command


def test_every_example_prints_what_the_page_shows(tmp_path, monkeypatch):
    import os
    environment = {**os.environ, "PATH": f"{pathlib.Path(os.environ['KXDU']).parent}:/usr/bin:/bin"}
    monkeypatch.chdir(tmp_path)
    runner = doctest.DocTestRunner(optionflags=doctest.REPORT_NDIFF)
    names = {}
    counts = {"console": 0, "pycon": 0}
    for place, (language, block) in enumerate(BLOCK.findall(DOCUMENT.read_text(encoding="utf-8"))):
        counts[language] += 1
        if language == "console":
            run_commands(block, environment)
            continue
        test = doctest.DocTestParser().get_doctest(block, names, f"block {place + 1}", str(DOCUMENT), 0)
        assert test.examples
        runner.run(test, clear_globs=False)
        names = test.globs
    assert runner.summarize().failed == 0
    assert counts["console"] >= 1 and counts["pycon"] >= 5


def test_no_fault_in_an_example_goes_unseen():
    runner = doctest.DocTestRunner(verbose=False)
    runner.run(doctest.DocTestParser().get_doctest(">>> 1 + 1\n3\n", {}, "wrong", None, 0), out=lambda text: None)
    assert runner.summarize(verbose=False).failed == 1
    with pytest.raises(AssertionError):
        run_commands("$ echo 1\n2\n", {})


def test_the_examples_of_the_docstrings_work():
    import kx_domain_util
    assert doctest.testmod(kx_domain_util) == (0, 3)
