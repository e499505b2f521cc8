#!/usr/bin/python3
"""What each scalar function gives, and what it refuses."""
import json
import sqlite3
import unittest

from support import PORT, ExtensionTest

ONE_ARGUMENT = ("fdn_type", "fdn_kind", "fdn_ne", "fdn_record", "fdn_problem", "fb_name", "fb_level")


class Functions(ExtensionTest):
    def test_type_and_kind_follow_from_the_last_level(self):
        self.assertEqual(self.value("fdn_type(?)", PORT), "PortIndex")
        self.assertEqual(self.value("fdn_kind(?)", PORT), "port")
        self.assertEqual(self.value("fdn_type(?)", "NE=5,FR=1,S=3,PP=16||2|"), "PortIndex:NEType")
        self.assertEqual(self.value("fdn_kind(?)", "NE=5,FR=1,S=3,PP=16||2|"), "port")
        self.assertEqual(self.value("fdn_kind('ONE=3,NE=7')"), "ne")
        self.assertIsNone(self.value("fdn_type('NE=1,XX=2')"))
        self.assertIsNone(self.value("fdn_kind('')"))

    def test_the_ne_is_a_number(self):
        self.assertEqual(self.value("fdn_ne(?)", PORT), 12)
        self.assertEqual(self.value("fdn_ne('NE=-5')"), -5)
        self.assertEqual(self.value("fdn_ne('NE=1,NE=2')"), 1)
        self.assertEqual(self.value("fdn_ne('NE=x')"), 0)
        self.assertEqual(self.value("typeof(fdn_ne('NE=7'))"), "integer")
        for none in ("OS=1", "NE=-1", "NE=", "NE=4294967295", ""):
            self.assertIsNone(self.value("fdn_ne(?)", none), none)

    def test_a_piece_is_a_level_or_a_sub_value(self):
        self.assertEqual(self.value("fdn_get(?, 'PP')", PORT), "16|1025|2|uplink")
        self.assertEqual(self.value("fdn_get(?, 'PP:3')", PORT), "uplink")
        self.assertEqual(self.value("fdn_get('NE=1,PP=|||', 'PP:3')"), "")
        self.assertEqual(self.value("fdn_get('NE=1,PP=|||', 'PP:0')"), "")
        self.assertIsNone(self.value("fdn_get(?, 'SS')", PORT))
        self.assertIsNone(self.value("fdn_get('NE=1,PP=16', 'PP:2')"))
        self.assertIsNone(self.value("fdn_get(?, 'CP')", PORT), "-1 stands for none")
        self.assertEqual(self.value("fdn_get('NE=1,PP=||1|-1', 'PP:3')"), "-1", "a name is no number")

    def test_a_piece_as_number_reads_as_the_library_does(self):
        self.assertEqual(self.value("fdn_number(?, 'PP:2')", PORT), 2)
        self.assertEqual(self.value("fdn_number('NE= 7x', 'NE')"), 7)
        self.assertEqual(self.value("fdn_number(?, 'PP:3')", PORT), 0)
        for fdn in ("NE=1,PP=16||4294967295|", "NE=1,PP=16|||", "NE=1,PP=16||-1|", "NE=1"):
            self.assertIsNone(self.value("fdn_number(?, 'PP:2')", fdn), fdn)

    def test_an_unknown_piece_is_an_error_that_names_it(self):
        for function in ("fdn_get(?, ?)", "fdn_number(?, ?)", "fdn_set(?, ?, '7')"):
            for piece in ("XX", "", "ne", "PP:9", "PP:", "PP:x", "NE:1", "NE,FR", "PP:-1"):
                message = self.refused(f"SELECT {function}", PORT, piece)
                self.assertIn(f'{function.split("(")[0]}: unknown piece "{piece}"', message)

    def test_a_piece_may_differ_in_each_row(self):
        self.db.execute("CREATE TABLE wanted (piece TEXT)")
        self.db.executemany("INSERT INTO wanted VALUES (?)", [("NE",), ("PP:2",), ("FR",), ("NE",), (None,)])
        rows = self.rows("SELECT fdn_get(?, piece), fdn_number(?, piece) FROM wanted ORDER BY rowid", PORT, PORT)
        self.assertEqual(rows, [("12", 12), ("2", 2), ("1", 1), ("12", 12), (None, None)])

    def test_one_statement_has_many_pieces(self):
        rows = self.rows("SELECT fdn_get(a, 'NE'), fdn_get(a, 'FR'), fdn_get(a, 'PP:1'), fdn_get(a, 'PP:3') "
                         "FROM (SELECT ? AS a UNION ALL SELECT 'NE=5')", PORT)
        self.assertEqual(rows, [("12", "1", "1025", "uplink"), ("5", None, None, None)])

    def test_a_field_is_that_of_the_record(self):
        self.assertEqual(self.value("fdn_field(?, 'portLabel')", PORT), "uplink")
        self.assertEqual(self.value("fdn_field(?, 'fbType')", PORT), "1025")
        self.assertEqual(self.value("typeof(fdn_field(?, 'fbType'))", PORT), "text")
        self.assertEqual(self.value("fdn_field(?, 'isLogical')", PORT), "false")
        self.assertIsNone(self.value("fdn_field(?, 'subSlotId')", PORT))
        self.assertIsNone(self.value("fdn_field(?, 'mdName')", PORT), "a field of another kind")
        self.assertIsNone(self.value("fdn_field('nonsense', 'neId')"))
        self.assertEqual(self.value("fdn_field('NE=5,S=3,CP=-1,PP=||1|x,AP=1|2|9', 'port.slotId')"), "3")
        for field in ("", "neid", "ne", "record.neId"):
            self.assertIn(f'fdn_field: unknown field "{field}"', self.refused("SELECT fdn_field(?, ?)", PORT, field))

    def test_a_record_is_json(self):
        record = json.loads(self.value("fdn_record(?)", PORT))
        self.assertEqual((record["neId"], record["subSlotId"], record["portLabel"]), (12, -1, "uplink"))
        self.assertEqual(self.value("json_extract(fdn_record(?), '$.portId')", PORT), 2)
        self.assertEqual(self.value("fdn_record('NE=1')"), '{"reserved":0,"neId":1}')
        self.assertIsNone(self.value("fdn_record('XX=1')"))
        self.assertIn("fdn_record: fdn is not UTF-8",
                      self.refused("SELECT fdn_record(CAST(x'4E453D312C50503D7C7C317CC5' AS TEXT))"))

    def test_a_record_that_cuts_a_character_is_refused(self):
        fdn = "NE=5,LP=16||3|ÅÅÅÅÅCHANNELSETÅ=4,VR=1,CHANNELSET=2,AP=Å"
        self.assertIn("fdn_record: a field of the record of fdn begins or ends inside a character",
                      self.refused("SELECT fdn_record(?)", fdn))

    def test_the_first_problem_has_its_column(self):
        self.assertIsNone(self.value("fdn_problem(?)", PORT))
        self.assertEqual(self.value("fdn_problem('NE=12,SLOT=3')"), '7: unknown tag "SLOT"')
        self.assertEqual(self.value("fdn_problem('NE=x,fr=2')"), '4: NE is not a decimal number: "x"')
        self.assertEqual(self.value("fdn_problem('')"), "1: the line is empty")
        self.assertEqual(self.value("fdn_problem(CAST(x'4E453D31002C533D33' AS TEXT))"), "5: NUL byte")
        self.assertEqual(self.value("fdn_problem(x'4E453D31FF')"), "5: not UTF-8")

    def test_under_compares_levels_not_text(self):
        self.assertEqual(self.value("fdn_under(?, 'NE=12,FR=1')", PORT), 1)
        self.assertEqual(self.value("fdn_under(?, ?)", PORT, PORT), 1)
        self.assertEqual(self.value("fdn_under('NE=1,FR=10', 'NE=1,FR=1')"), 0)
        self.assertEqual(self.value("fdn_under('NE=1', 'NE=1,FR=1')"), 0)

    def test_same_compares_records(self):
        self.assertEqual(self.value("fdn_same('NE=5,PP=16||4294967295|', 'NE=5,PP=16||-1|')"), 1)
        self.assertEqual(self.value("fdn_same('NE=5', 'NE=6')"), 0)
        self.assertEqual(self.value("fdn_same('NE=5', 'ONE=5')"), 0)
        self.assertEqual(self.value("fdn_same('nonsense', 'nonsense')"), 0)

    def test_set_replaces_a_piece(self):
        self.assertEqual(self.value("fdn_set(?, 'NE', 7)", PORT), PORT.replace("NE=12", "NE=7"))
        self.assertEqual(self.value("fdn_set(?, 'PP:3', 'Åre')", PORT), PORT.replace("uplink", "Åre"))
        self.assertEqual(self.value("fdn_set(?, 'PP', '1|2|3|')", PORT), "NE=12,FR=1,S=3,CP=-1,PP=1|2|3|")
        self.assertEqual(self.value("fdn_set(?, 'SS', 1)", PORT), PORT, "it has no such piece")
        for value in ("a,b", "a|b", "a\nb", "a\rb", "a\0b"):
            message = self.refused("SELECT fdn_set(?, 'PP:3', ?)", PORT, value)
            self.assertIn("fdn_set: the value ", message)
            self.assertIn("which would end the piece", message)
        self.refused("SELECT fdn_set(?, 'PP', 'a,b')", PORT)

    def test_fb_types_have_names_and_levels(self):
        self.assertEqual(self.value("fb_name(122)"), "CSK")
        self.assertEqual(self.value("fb_name('122')"), "CSK")
        self.assertEqual(self.value("fb_level(861)"), 12313)
        for none in (0, -1, 65536 + 122, 2**31, 2**40 + 122, -2**63, 122.5, "CSK", b"122x"):
            self.assertIsNone(self.value("fb_name(?)", none), none)
            self.assertIsNone(self.value("fb_level(?)", none), none)

    def test_the_version_is_a_text(self):
        self.assertEqual(self.value("fdn_version()"), "1.0.0")

    def test_null_gives_null(self):
        for function in ONE_ARGUMENT:
            self.assertIsNone(self.value(f"{function}(NULL)"), function)
        for call in ("fdn_get(NULL, 'NE')", "fdn_get('NE=1', NULL)", "fdn_number(NULL, 'NE')", "fdn_get(NULL, 'XX')",
                     "fdn_number('NE=1', NULL)", "fdn_field(NULL, 'neId')", "fdn_field('NE=1', NULL)",
                     "fdn_under(NULL, 'NE=1')", "fdn_under('NE=1', NULL)", "fdn_same(NULL, 'NE=1')",
                     "fdn_same('NE=1', NULL)", "fdn_set(NULL, 'NE', 1)", "fdn_set('NE=1', NULL, 1)",
                     "fdn_set('NE=1', 'NE', NULL)"):
            self.assertIsNone(self.value(call), call)

    def test_the_number_of_arguments_is_checked(self):
        for call in ("fdn_ne()", "fdn_ne(1, 2)", "fdn_get('NE=1')", "fdn_set('NE=1', 'NE')", "fdn_version(1)"):
            self.assertIn("wrong number of arguments", self.refused(f"SELECT {call}"))

    def test_other_types_are_read_as_their_text(self):
        self.assertEqual(self.value("fdn_ne(CAST('NE=7' AS BLOB))"), 7)
        self.assertEqual(self.value("CAST(fdn_get(x'4E453D31FF', 'NE') AS BLOB)"), b"1\xff", "bytes pass unchanged")
        self.assertIsNone(self.value("fdn_ne(7)"))
        self.assertIsNone(self.value("fdn_ne(1.5)"))
        self.assertIsNone(self.value("fdn_ne(zeroblob(100000))"))

    def test_a_database_in_utf_16_gives_the_same(self):
        self.db.execute("PRAGMA encoding = 'UTF-16'")
        self.db.execute("CREATE TABLE port (fdn TEXT)")
        self.db.execute("INSERT INTO port VALUES ('NE=12,PP=|1025|3|Åre')")
        self.assertEqual(self.rows("SELECT fdn_ne(fdn), fdn_get(fdn, 'PP:3'), fdn_kind(fdn) FROM port"),
                         [(12, "Åre", "port")])

    def test_large_values_pass(self):
        name = "p" * 5_000_000
        fdn = f"NE=1,PP=||1|{name}"
        self.assertEqual(self.value("length(fdn_get(?, 'PP:3'))", fdn), len(name))
        self.assertEqual(self.value("length(fdn_field(?, 'portLabel'))", fdn), len(name))
        self.assertEqual(len(json.loads(self.value("fdn_record(?)", fdn))["portLabel"]), len(name))
        self.assertEqual(self.value("length(fdn_set('NE=1,PP=||1|a', 'PP:3', ?))", name), len(fdn))

    def test_an_answer_above_the_limit_is_refused(self):
        self.db.setlimit(sqlite3.SQLITE_LIMIT_LENGTH, 1000)
        fdn = "NE=1,PP=||1|" + "\x01" * 900  # each becomes six characters of JSON
        self.assertEqual(self.refused("SELECT fdn_record(?)", fdn, error=sqlite3.DataError), "string or blob too big")


if __name__ == "__main__":
    unittest.main()
