#!/usr/bin/python3
"""C, SQLite, PostgreSQL, Python and kxdu say the same of 100,000 identifiers, half of them odd, field for field.

    faces_test.py SOURCE_FOLDER BUILD_FOLDER KXDU

Starts a PostgreSQL cluster of its own.
"""
import ctypes
import json
import os
import pathlib
import sqlite3
import subprocess
import sys
import tempfile

IDENTIFIERS = 50_000  # and as many odd ones
ASKED = "type kind NE problem record".split()


def run(*command, **options):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, encoding="utf-8", **options).stdout


def lines_of(text):
    return text.removesuffix("\n").split("\n")


# ---- What each face answers: for each identifier its type, kind, NE, first problem and record; None for none ---------

def by_kxdu(kxdu, path, texts):
    def rows(verb, *options):  # exits with 1 for what it rejects or finds
        return subprocess.run([kxdu, verb, *options, path, "--rejects", os.devnull] if verb != "check" else
                              [kxdu, verb, *options, path], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                              encoding="utf-8", check=False).stdout

    decoded = {}
    for line in lines_of(rows("decode")):
        answer = json.loads(line)
        decoded[answer["fdn"]] = (answer["type"], answer["record"])
    got = {}
    for line in lines_of(rows("get", "--format", "json", "fdn,kind")):
        answer = json.loads(line)
        got[answer["fdn"]] = answer["kind"] or None
    problems = {}
    for line in lines_of(rows("check", "--levels-only")):
        place = line.removeprefix(f"{path}:")
        number, _, problem = place.partition(":")
        if place != line:
            problems.setdefault(int(number), problem)
    for number, fdn in enumerate(texts, 1):
        kind, record = decoded.get(fdn, (None, None))
        yield kind, got.get(fdn), None, problems.get(number), record


def by_sqlite(build, texts):
    database = sqlite3.connect(":memory:")
    database.enable_load_extension(True)
    database.load_extension(str(build / "lib/kx_sqlite.so"))
    query = "SELECT fdn_type(?1), fdn_kind(?1), fdn_ne(?1), fdn_problem(?1), fdn_record(?1)"
    for fdn in texts:
        *answers, record = database.execute(query, (fdn,)).fetchone()
        yield *answers, record and json.loads(record)


def by_postgresql(path):
    query = f"""
        CREATE EXTENSION IF NOT EXISTS kx_fdn;
        CREATE TEMPORARY TABLE texts (line bigserial, fdn text);
        \\copy texts (fdn) FROM '{path}' WITH (FORMAT csv, DELIMITER E'\\x01', QUOTE E'\\x02')
        SELECT jsonb_build_array(fdn_type(fdn), fdn_kind(fdn), fdn_ne(fdn), fdn_problem(fdn), fdn_record(fdn))
          FROM texts ORDER BY line;"""
    for line in lines_of(run("psql", "-qAt", "-v", "ON_ERROR_STOP=1", input=query)):
        yield tuple(json.loads(line))


def by_python(build, texts):
    sys.path.insert(0, str(build / "python"))
    import kx_domain_util as kx  # pylint: disable=import-outside-toplevel,import-error

    for fdn, ne in zip(texts, kx.columns(texts, ["NE"])["NE"].tolist(), strict=True):  # masked: None
        problems = kx.check(fdn)
        kind = kx.type(fdn)
        yield (kind, kx.kind(fdn), ne,
               f"{problems[0].column}: {problems[0].text}" if problems else None,
               kx.decode(fdn)["record"] if kind else None)


class Text(ctypes.Structure):
    _fields_ = [("data", ctypes.c_void_p), ("size", ctypes.c_size_t)]

    def read(self):
        return ctypes.string_at(self.data, self.size).decode()


class CLibrary:
    """libkx_c.so, by the names of kx/kx.h."""

    OK = 0
    FLAG, TEXT = 1, 2

    def __init__(self, build):
        self.library = ctypes.CDLL(str(build / "lib/libkx_c.so"))
        for name in ("kx_record_type", "kx_field_name"):
            getattr(self.library, name).restype = ctypes.c_char_p
        self.library.kx_record_new.restype = ctypes.c_void_p
        self.library.kx_field_count.restype = ctypes.c_size_t
        self.record = ctypes.c_void_p(self.library.kx_record_new())
        self.text = Text()
        self.number = ctypes.c_int64()

    def word(self, function, fdn):
        word = ctypes.c_char_p()
        return word.value.decode() if function(fdn, ctypes.c_size_t(len(fdn)), ctypes.byref(word)) == self.OK else None

    def ne(self, fdn):
        number = ctypes.c_int32()
        status = self.library.kx_number(fdn, ctypes.c_size_t(len(fdn)), b"NE", ctypes.byref(number))
        return number.value if status == self.OK and number.value != -1 else None

    def problem(self, fdn):
        column = ctypes.c_size_t()
        status = self.library.kx_problem(self.record, fdn, ctypes.c_size_t(len(fdn)), ctypes.c_size_t(0),
                                         ctypes.byref(column), ctypes.byref(self.text))
        return f"{column.value}: {self.text.read()}" if status == self.OK else None

    def value(self, place, name):
        kind = self.library.kx_field_type(self.record, ctypes.c_size_t(place))
        if kind == self.TEXT:
            assert self.library.kx_get_text(self.record, name, ctypes.byref(self.text)) == self.OK
            return self.text.read()
        assert self.library.kx_get_number(self.record, name, ctypes.byref(self.number)) == self.OK
        return bool(self.number.value) if kind == self.FLAG else self.number.value

    def fields(self, fdn):
        if self.library.kx_decode(self.record, fdn, ctypes.c_size_t(len(fdn))) != self.OK:
            return None
        fields = {}
        for place in range(self.library.kx_field_count(self.record)):
            name = self.library.kx_field_name(self.record, ctypes.c_size_t(place))
            *outer, inner = name.decode().split(".")
            (fields.setdefault(outer[0], {}) if outer else fields)[inner] = self.value(place, name)
        return fields


def by_c(build, texts):
    c = CLibrary(build)
    for text in texts:
        fdn = text.encode()
        yield c.word(c.library.kx_type, fdn), c.word(c.library.kx_kind, fdn), c.ne(fdn), c.problem(fdn), c.fields(fdn)


# ---- Comparison -----------------------------------------------------------------------------------------------------

def main(source, build, kxdu):
    for name in ("KX_INVENTORY", "KX_CONFIG_DIR"):
        os.environ.pop(name, None)
    with tempfile.TemporaryDirectory() as folder:
        os.chmod(folder, 0o755)
        path = pathlib.Path(folder) / "all.fdn"
        network = run(kxdu, "sample", "--identifiers", str(IDENTIFIERS), "--seed", "5")
        odd = run(str(source / "tests/bindings/postgresql/oddities.py"), input=network)
        path.write_text(network + odd, encoding="utf-8")
        texts = lines_of(network + odd)
        faces = {"kxdu": by_kxdu(kxdu, str(path), texts), "C": by_c(build, texts), "SQLite": by_sqlite(build, texts),
                 "PostgreSQL": by_postgresql(path), "Python": by_python(build, texts)}
        differences = 0
        answers = {name: 0 for name in ASKED}
        for fdn, *rows in zip(texts, *faces.values(), strict=True):
            for place, asked in enumerate(ASKED):
                values = [row[place] for row in rows]
                if asked == "NE":
                    values[0] = values[1]  # kxdu prints the text of a piece, not its number
                answers[asked] += values[0] is not None
                if any(value != values[0] for value in values):
                    differences += 1
                    if differences <= 10:
                        print(f"{asked} of {fdn!r}:", *zip(faces, values), sep="\n    ")
    print(f"{len(texts)} identifiers, {answers}, {differences} differences")
    return 0 if differences == 0 and len(texts) == 2 * IDENTIFIERS and min(answers.values()) > 1000 else 1


if __name__ == "__main__":
    if len(sys.argv) == 4:  # again, beside a cluster
        os.execv(sys.argv[1] + "/scripts/with-postgresql.sh",
                 ["with-postgresql.sh", sys.argv[2], "main", "--", *sys.orig_argv, "here"])
    sys.exit(main(pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3]))
