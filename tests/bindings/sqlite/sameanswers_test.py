#!/usr/bin/python3
"""The extension gives what kxdu prints, for the identifiers of a network and for odd texts."""
import json
import re
import unittest

from support import ODD, ExtensionTest, kxdu, vector_texts

PIECES = ("NE", "FR", "S", "CP", "SS", "PP", "PP:0", "PP:1", "PP:2", "PP:3", "LP:2", "AP:1", "MD:1", "TUNNEL:2", "OS")


def is_line(text):
    return text and not set(text) & set("\n\r\0")


def lines_of(output):
    return output.decode().removesuffix("\n").split("\n")


def unescaped(cell):
    """The text of a cell of TSV."""
    return re.sub(r"\\(.)", lambda escape: {"t": "\t", "r": "\r"}.get(escape[1], escape[1]), cell)


def number_of(text):
    """The number that the library reads: as strtol, then 32 bits of it. None: it is empty, or -1."""
    digits = re.match(r"[ \t-\r]*([+-]?[0-9]+)", text)
    number = max(-2**63, min(int(digits[1]), 2**63 - 1)) if digits else 0
    number = (number + 2**31) % 2**32 - 2**31
    return number if text and number != -1 else None


class SameAnswers(ExtensionTest):
    @classmethod
    def setUpClass(cls):
        texts = lines_of(kxdu("sample", "--identifiers", "20000"))
        texts += [text for text in ODD + vector_texts() if is_line(text)]
        cls.texts = texts

    def setUp(self):
        super().setUp()
        self.path = self.file("".join(text + "\n" for text in self.texts))
        self.db.execute("CREATE TABLE text (line INTEGER PRIMARY KEY, fdn TEXT)")
        self.db.executemany("INSERT INTO text (fdn) VALUES (?)", [(text,) for text in self.texts])

    def test_the_lines_are_the_texts(self):
        self.assertEqual(self.rows("SELECT line, fdn FROM fdn_file(?)", self.path), self.rows("SELECT * FROM text"))

    def test_types_and_records_are_those_of_decode(self):
        decoded = {}
        for line in lines_of(kxdu("decode", "--jobs", "1", self.path, may_reject=True)):
            fdn, end = json.JSONDecoder().raw_decode(line, len('{"fdn":'))
            kind, _, record = line[end:].removeprefix(',"type":"').partition('","record":')
            decoded[fdn] = (kind, record.removesuffix("}"))
        rows = self.rows("SELECT fdn, fdn_type(fdn), fdn_record(fdn) FROM text")
        self.assertGreater(len(decoded), 10000)
        for fdn, kind, record in rows:
            self.assertEqual((kind, record), decoded.get(fdn, (None, None)), fdn)
        self.assertTrue(any(kind is None for _, kind, _ in rows), "odd texts are of no kind")

    def test_fields_are_those_of_the_record(self):
        for fdn, record in self.rows("SELECT fdn, fdn_record(fdn) FROM text WHERE line % 20 = 0 OR line > 20000"):
            if record is None:
                continue
            for name, value in json.loads(record).items():
                nested = value if isinstance(value, dict) else {None: value}
                for inner, field in nested.items():
                    full = name if inner is None else f"{name}.{inner}"
                    expected = {True: "true", False: "false"}.get(field) if isinstance(field, bool) else (
                        None if field == -1 else str(field))
                    self.assertEqual(self.value("fdn_field(?, ?)", fdn, full), expected, (fdn, full))

    def test_pieces_are_those_of_get(self):
        path = self.file("".join(fdn + "\n" for fdn, in self.rows("SELECT fdn FROM text ORDER BY line")), "get.fdn")
        lines = lines_of(kxdu("get", ",".join(PIECES), path))
        columns = ", ".join(f"fdn_get(fdn, '{piece}'), fdn_number(fdn, '{piece}')" for piece in PIECES)
        rows = self.rows(f"SELECT fdn_ne(fdn), {columns} FROM text ORDER BY line")
        self.assertEqual(len(lines), len(rows))
        for line, (ne, *values) in zip(lines, rows):
            cells = [unescaped(cell) for cell in line.split("\t")]
            for piece, printed, text, number in zip(PIECES, cells, values[::2], values[1::2]):
                self.assertEqual(number, number_of(printed), (piece, line))
                if text is None:  # not there, or a number that says "none"
                    self.assertIsNone(number_of(printed), (piece, line))
                else:
                    self.assertEqual(text, printed, (piece, line))
            self.assertEqual(ne, values[1], line)

    def test_problems_are_those_of_check(self):
        first = {}
        for report in lines_of(kxdu("check", "--levels-only", "--jobs", "1", self.path, may_reject=True)):
            line, column, problem = report.removeprefix(self.path + ":").split(":", 2)
            first.setdefault(int(line), f"{column}:{problem}")
        self.assertGreater(len(first), 20)
        self.assertEqual(dict(self.rows("SELECT line, fdn_problem(fdn) FROM text WHERE fdn_problem(fdn) IS NOT NULL")),
                         first)
        self.assertEqual(dict(self.rows("SELECT line, problem FROM fdn_file(?) WHERE problem IS NOT NULL", self.path)),
                         first)

    def test_the_columns_of_a_file_are_the_answers_of_the_functions(self):
        # Only ports fill the port columns from their own level.
        differences = self.rows("""
            SELECT f.line, f.fdn FROM fdn_file(?) f
            WHERE f.type IS NOT fdn_type(f.fdn) OR f.kind IS NOT fdn_kind(f.fdn) OR f.ne IS NOT fdn_ne(f.fdn)
               OR f.shelf IS NOT fdn_number(f.fdn, 'FR') OR f.slot IS NOT fdn_number(f.fdn, 'S')
               OR f.sub_slot IS NOT fdn_number(f.fdn, 'SS') OR f.problem IS NOT fdn_problem(f.fdn)""", self.path)
        self.assertEqual(differences, [])

    def test_the_port_columns_are_the_fields_of_a_port(self):
        differences = self.rows("""
            SELECT line, fdn FROM (
                SELECT line, fdn, pp_type, fb_type, port, name, is_logical,
                       CASE WHEN fdn_type(fdn) = 'PortIndex' THEN json(fdn_record(fdn)) END record FROM fdn_file(?))
            WHERE record IS NOT NULL AND is_logical IS NOT NULL AND
                (ifnull(pp_type, 0) IS NOT nullif(record ->> 'ppType', -1)
                 OR ifnull(fb_type, 0) IS NOT nullif(record ->> 'fbType', -1)
                 OR ifnull(port, -1) IS NOT record ->> 'portId' OR ifnull(name, '') IS NOT record ->> 'portLabel'
                 OR is_logical IS NOT record ->> 'isLogical')""", self.path)
        self.assertEqual(differences, [])
        self.assertGreater(self.value("(SELECT count(is_logical) FROM fdn_file(?))", self.path), 5000)


if __name__ == "__main__":
    unittest.main()
