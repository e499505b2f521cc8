#!/usr/bin/python3
"""The constant tables, as `kxdu tables` lists them."""
import csv
import io
import re
import unittest

from support import ExtensionTest, kxdu


def listed(*arguments):
    return list(csv.reader(io.StringIO(kxdu("tables", *arguments, "--format", "csv").decode())))


class ConstantTables(ExtensionTest):
    def test_all_have_the_rows_and_columns_of_the_tool(self):
        tables = listed()[1:]
        self.assertEqual(len(tables), 10)
        for name, count, _ in tables:
            columns, *rows = listed(name)
            cursor = self.db.execute(f"SELECT * FROM {name.replace('-', '_')}")
            self.assertEqual([column[0] for column in cursor.description],
                             [re.sub("([A-Z])", r"_\1", column).lower() for column in columns], name)
            shown = cursor.fetchall()
            self.assertEqual(len(shown), int(count))
            self.assertEqual([[str(cell) for cell in row] for row in shown], rows, name)

    def test_numbers_are_integers_and_names_are_texts(self):
        self.assertEqual(self.rows("SELECT DISTINCT typeof(fb_type), typeof(name) FROM fb_type_names"),
                         [("integer", "text")])

    def test_a_number_finds_its_rows_whatever_its_type(self):
        every = self.rows("SELECT fb_type, level FROM fb_type_levels")
        for fb_type, level in every:
            found = [(fb_type, other) for key, other in every if key == fb_type]
            for key in (fb_type, float(fb_type), str(fb_type)):
                self.assertEqual(self.rows("SELECT * FROM fb_type_levels WHERE fb_type = ?", key), found)
            self.assertIn((fb_type,), self.rows("SELECT fb_type FROM fb_type_levels WHERE level = ?", level))
        for nothing in (-1, 0.5, "x", b"861", None, 2**40):
            self.assertEqual(self.rows("SELECT * FROM fb_type_levels WHERE fb_type = ?", nothing), [])
        self.assertEqual(self.rows("SELECT count(*) FROM ptn_aid_fb_types a, ptn_aid_fb_types b "
                                   "WHERE a.fb_type = b.fb_type"), [(19,)], "one is listed twice")

    def test_a_text_finds_its_row(self):
        self.assertEqual(self.rows("SELECT level FROM client_rates WHERE name = 'OTU1'"), [(12313,)])
        self.assertEqual(self.rows("SELECT level FROM client_rates WHERE name = 'otu1' COLLATE NOCASE"), [(12313,)])

    def test_they_join_with_each_other(self):
        self.assertEqual(self.rows("SELECT fb_type, name, level FROM fb_type_names JOIN fb_type_levels USING (fb_type) "
                                   "WHERE fb_level(fb_type) IS NOT level OR fb_name(fb_type) IS NOT name"), [])
        self.assertGreater(self.value("(SELECT count(*) FROM fb_type_levels JOIN client_rates USING (level))"), 0)

    def test_rows_are_numbered(self):
        self.assertEqual(self.rows("SELECT min(rowid), max(rowid) FROM client_rates"), [(1, 17)])

    def test_they_are_read_only(self):
        for statement in ("INSERT INTO client_rates VALUES ('x', 1)", "DELETE FROM client_rates",
                          "UPDATE client_rates SET level = 1"):
            self.assertIn("may not be modified", self.refused(statement))


if __name__ == "__main__":
    unittest.main()
