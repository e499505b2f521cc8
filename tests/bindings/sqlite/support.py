"""What the tests of the SQLite extension share."""
import json
import os
import pathlib
import shutil
import sqlite3
import subprocess
import tempfile
import unittest

KXDU = os.environ["KXDU_PROGRAM"]
EXTENSION = os.environ["KX_SQLITE_EXTENSION"]
VECTORS = pathlib.Path(os.environ["KX_TEST_DATA"]) / "vectors"

PORT = "NE=12,FR=1,S=3,CP=-1,PP=16|1025|2|uplink"

# Texts that readers meet once in a million lines; none has a line end.
ODD = ["NE=12,FR=1,S=0,CP=-1,SS=-1,SC=-1,PP=16||0|", "LP=|65547|3|vlanif", "PP=||-1|", "NE=1,PP=||-1|", "NE=1,PP=|||",
       "NE=-1,FR=4", "NE=4294967295", "NE=99999999999999999999", "NE=", "NE", "=5", ",", ",,,", "NE=1,", "FR=2,NE=1",
       "NE=1,NE=2,FR=1,FR=2", "NE= 7", "NE=+7", "NE=7x", "NE=0x10", "NE=1|2", "ne=1", "nonsense", "NE=1,XX=2",
       "NE=5,FR=1,S=3,CP=-1,PP=16|1025|2|a\\|b", "NE=5,FR=1,S=3,CP=-1,PP=16|1026|2|a\\|b",
       "NE=5,PP=16|1025|1|x\\|y,AP=1|2|9", "NE=1,LP=||4294967295|a=b", "NE=1,PP=16||2", "NE=1,PP=|1025|3|Åre",
       "NE=1,PP=|1025|3|\U0001f600", 'NE=1,PP=||1|"quoted" \\ back', "NE=5,S=3,CP=-1,PP=||1|GE0/1,SUBIF=100",
       "NE=5,LP=|65547|3|vlanif,CHANNELSET=4", "NE=5,LP=|65547|3|vlanif,VR=4", "NE=3,PWE3TRAIL=7,X=1",
       "NE=5,TUNNEL=1|2|in|out|5|backup|7", "NE=5,TUNNEL=1|2", "NE=5,MD=3|md1,MA=4|ma1,MEP=-1", "OS=-1", "ONE=3,NE=7",
       "NE=1,PP=16|1025|2|a\x01b", "x" * 3000, "NE=1,PP=||1|" + "p" * 70000, "NE=1," * 500 + "FR=1"]


def connect(database=":memory:", **options):
    """A connection that has loaded the extension."""
    connection = sqlite3.connect(database, **options)
    connection.enable_load_extension(True)
    connection.load_extension(EXTENSION)
    connection.enable_load_extension(False)
    return connection


def kxdu(*arguments, may_reject=False):
    """What the tool prints, as bytes."""
    done = subprocess.run([KXDU, *map(str, arguments)], stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
    if done.returncode not in ((0, 1) if may_reject else (0,)):
        raise RuntimeError(f"kxdu {arguments}: {done.stderr.decode()}")
    return done.stdout


def vector_texts():
    """All identifiers of the test vectors."""
    texts = []
    for file in sorted(VECTORS.glob("*readers.json")) + sorted(VECTORS.glob("grammar.json")):
        cases = json.loads(file.read_text(encoding="utf-8"))["cases"]
        texts += [case["fdn"] for case in cases if case.get("fdn")]
    return texts


class ExtensionTest(unittest.TestCase):
    """A test with a connection and an empty folder of its own."""

    def setUp(self):
        self.db = connect()
        self.addCleanup(self.db.close)
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="kx-sqlite-"))
        self.addCleanup(shutil.rmtree, self.folder)

    def value(self, expression, *values):
        """What one expression gives."""
        return self.db.execute(f"SELECT {expression}", values).fetchone()[0]

    def rows(self, statement, *values):
        return self.db.execute(statement, values).fetchall()

    def refused(self, statement, *values, error=sqlite3.OperationalError):
        """The message with which a statement fails."""
        with self.assertRaises(error) as caught:
            self.db.execute(statement, values).fetchall()
        return str(caught.exception)

    def file(self, content, name="network.fdn"):
        """A file in the folder; its path."""
        path = self.folder / name
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        return str(path)
