#!/usr/bin/python3
"""The functions in schemas: indexes, generated columns, CHECK; and what a hostile schema may not do."""
import sqlite3
import unittest

from support import EXTENSION, PORT, ExtensionTest, connect


class Schemas(ExtensionTest):
    def setUp(self):
        super().setUp()
        self.db.execute("PRAGMA trusted_schema = OFF")

    def test_an_index_on_the_ne_is_used(self):
        self.db.execute("CREATE TABLE alarm (fdn TEXT)")
        self.db.execute("CREATE INDEX alarm_ne ON alarm (fdn_ne(fdn))")
        self.db.executemany("INSERT INTO alarm VALUES (?)", [(f"NE={number % 100},FR=1",) for number in range(1000)])
        statement = "SELECT count(*) FROM alarm WHERE fdn_ne(fdn) = 7"
        self.assertIn("USING INDEX alarm_ne", str(self.rows("EXPLAIN QUERY PLAN " + statement)))
        self.assertEqual(self.rows(statement), [(10,)])
        self.assertEqual(self.rows("PRAGMA integrity_check"), [("ok",)])

    def test_every_function_may_be_indexed(self):
        self.db.execute("CREATE TABLE port (fdn TEXT, fb INTEGER)")
        for place, expression in enumerate((
                "fdn_type(fdn)", "fdn_kind(fdn)", "fdn_ne(fdn)", "fdn_get(fdn, 'PP:2')", "fdn_number(fdn, 'PP:2')",
                "fdn_field(fdn, 'neId')", "fdn_record(fdn)", "fdn_problem(fdn)", "fdn_under(fdn, 'NE=1')",
                "fdn_same(fdn, 'NE=1')", "fdn_set(fdn, 'NE', '1')", "fb_name(fb)", "fb_level(fb)",
                "fdn_version() || fdn")):
            self.db.execute(f"CREATE INDEX port_{place} ON port ({expression})")
        self.db.executemany("INSERT INTO port VALUES (?, ?)", [(PORT, 1025), ("nonsense", 122), (None, None)])
        self.assertEqual(self.rows("PRAGMA integrity_check"), [("ok",)])

    def test_columns_are_generated(self):
        self.db.execute("CREATE TABLE port (fdn TEXT, ne INTEGER AS (fdn_ne(fdn)) STORED, "
                        "number INTEGER AS (fdn_number(fdn, 'PP:2')) VIRTUAL)")
        self.db.execute("INSERT INTO port (fdn) VALUES (?)", (PORT,))
        self.assertEqual(self.rows("SELECT ne, number FROM port"), [(12, 2)])

    def test_a_check_refuses_what_has_a_problem(self):
        self.db.execute("CREATE TABLE port (fdn TEXT CHECK (fdn_problem(fdn) IS NULL AND fdn_kind(fdn) = 'port'))")
        self.db.execute("INSERT INTO port VALUES (?)", (PORT,))
        for wrong in ("NE=12,XX=3", "NE=12"):
            with self.assertRaises(sqlite3.IntegrityError):
                self.db.execute("INSERT INTO port VALUES (?)", (wrong,))

    def test_views_and_triggers_use_functions_and_constant_tables(self):
        self.db.executescript("""
            CREATE TABLE alarm (fdn TEXT, ne INTEGER);
            CREATE TRIGGER fill AFTER INSERT ON alarm BEGIN
                UPDATE alarm SET ne = fdn_ne(NEW.fdn) WHERE rowid = NEW.rowid;
            END;
            CREATE VIEW level AS SELECT a.fdn, l.level FROM alarm a
                JOIN fb_type_levels l ON l.fb_type = fdn_number(a.fdn, 'PP:1');
            INSERT INTO alarm (fdn) VALUES ('NE=12,PP=16|861|2|');""")
        self.assertEqual(self.rows("SELECT ne, level FROM alarm JOIN level USING (fdn)"), [(12, 12313)])

    def test_a_schema_cannot_read_files(self):
        path = self.file("NE=1\n")
        for trusted in ("ON", "OFF"):
            self.db.execute(f"PRAGMA trusted_schema = {trusted}")
            self.db.executescript(f"""
                DROP VIEW IF EXISTS stolen; DROP TABLE IF EXISTS bait; DROP TABLE IF EXISTS loot;
                CREATE VIEW stolen AS SELECT fdn FROM fdn_file('{path}');
                CREATE TABLE bait (id INTEGER); CREATE TABLE loot (fdn TEXT);
                CREATE TRIGGER steal AFTER INSERT ON bait BEGIN
                    INSERT INTO loot SELECT fdn FROM fdn_file('{path}');
                END;""")
            for statement in ("SELECT * FROM stolen", "INSERT INTO bait VALUES (1)",
                              "SELECT * FROM (SELECT * FROM stolen)"):
                self.assertIn('unsafe use of virtual table "fdn_file"', self.refused(statement))
            self.assertEqual(self.rows("SELECT * FROM loot"), [])
        self.assertEqual(self.rows("SELECT fdn FROM fdn_file(?)", path), [("NE=1",)])

    def test_an_error_in_a_statement_leaves_the_database_whole(self):
        self.db.execute("CREATE TABLE alarm (fdn TEXT, piece TEXT)")
        self.db.executemany("INSERT INTO alarm VALUES (?, ?)", [(PORT, "NE"), (PORT, "XX"), (PORT, "FR")])
        self.assertIn('unknown piece "XX"', self.refused("UPDATE alarm SET fdn = fdn_get(fdn, piece)"))
        self.assertEqual(self.rows("SELECT DISTINCT fdn FROM alarm"), [(PORT,)])
        self.assertIn('unknown piece "XX"', self.refused("CREATE INDEX bad ON alarm (fdn_get(fdn, 'XX'))"))

    def test_a_database_with_an_index_needs_the_extension(self):
        database = str(self.folder / "alarms.db")
        with connect(database) as db:
            db.execute("CREATE TABLE alarm (fdn TEXT)")
            db.execute("CREATE INDEX alarm_ne ON alarm (fdn_ne(fdn))")
            db.execute("INSERT INTO alarm VALUES (?)", (PORT,))
        db.close()
        plain = sqlite3.connect(database)
        self.addCleanup(plain.close)
        with self.assertRaisesRegex(sqlite3.OperationalError, "unknown function: fdn_ne"):
            plain.execute("INSERT INTO alarm VALUES ('NE=1')")
        plain.enable_load_extension(True)
        plain.load_extension(EXTENSION)
        plain.execute("INSERT INTO alarm VALUES ('NE=1')")
        self.assertEqual(plain.execute("SELECT fdn FROM alarm WHERE fdn_ne(fdn) = 12").fetchall(), [(PORT,)])


if __name__ == "__main__":
    unittest.main()
