"""What the tests of the Python package share: the tool, and the same 100,000 identifiers for all faces."""
import os
import random
import subprocess

import pytest

IDENTIFIERS = 100_000
# Identifiers that somebody might write, each unlike what the tool makes up.
ODD = [
    b"x", b"NE", b"NE=", b"=5", b",", b"NE=1,", b"ne=1", b"NE=1,XY=2", b"NE=x", b"NE= 7", b"NE=-1", b"NE=4294967295",
    b"NE=99999999999", b"NE=1,NE=2", b"NE=1,FR=1,FR=2,S=3", b"NE=5,FR=-1", b"NE=5,S=0,CP=-1,PP=||4294967295|",
    b"NE=5,PP=|1025|1|a\\|b", b"NE=5,PP=16||2", b"NE=5,PP=16||2|a|b", b"NE=5,LP=|65547|3|vlanif", b"NE=5,PP=|||",
    b"NE=7,S=3,PP=16||x|", b"NE=5,MD=3|md1,MA=4|ma1,MEP=7", b"NE=5,TUNNEL=1|2|in|out|5|backup|7", b"NE=5,TUNNEL=1",
    b"NE=5,PWE3=3|17", b"NE=5,VEGROUP=2", b"ONE=3,NE=7", "NE=5,PP=||1|Münster".encode(), b"NE=5,PP=||1|\xe4\xf6",
    b"\xff\xfe", b"NE=5,PP=||1|\xed\xb3\xbf", b"NE=1\xc2", b"NE=5,PP=||1|tab\there", b"NE=5,PP=||1|\x01\x7f",
    b"NE=5,PP=||1|\xe2\x80\xae\xf0\x9f\x98\x80", b"NE=5," * 500 + b"S=1", b"NE=1,CP=-1,AS=3",
]


def _changed(identifier, draw):
    """The identifier with one byte changed, removed or doubled."""
    place = draw.randrange(len(identifier))
    middle = draw.choice([b"", identifier[place:place + 1] * 2, bytes([draw.choice(b",|=-019xN\xc3 ")])])
    return identifier[:place] + middle + identifier[place + 1:]


@pytest.fixture(scope="session")
def kxdu():
    """Runs the tool; gives what it writes to standard output."""
    def run(*arguments, lines=b""):
        environment = {name: value for name, value in os.environ.items() if not name.startswith("KX_")}
        return subprocess.run([os.environ["KXDU"], *arguments], input=lines, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, check=False, env=environment).stdout
    return run


@pytest.fixture(scope="session")
def network(kxdu):
    """Identifiers of the sample network, every tenth of them changed, and all the odd ones."""
    draw = random.Random(15)
    sample = kxdu("sample", "--identifiers", str(IDENTIFIERS - len(ODD))).splitlines()
    identifiers = [_changed(fdn, draw) if place % 10 == 0 else fdn for place, fdn in enumerate(sample)] + ODD
    assert len(identifiers) == IDENTIFIERS
    assert not any(b"\n" in fdn or b"\0" in fdn or not fdn for fdn in identifiers)
    return identifiers


def text_of(fdn):
    """The bytes as Python's str has them."""
    return fdn.decode("utf-8", "surrogateescape")
