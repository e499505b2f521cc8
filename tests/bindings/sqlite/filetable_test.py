#!/usr/bin/python3
"""The rows of fdn_file."""
import os
import threading
import unittest

from support import PORT, ExtensionTest

COLUMNS = "line fdn type kind ne shelf slot sub_slot pp_type fb_type port name is_logical problem".split()
NO_PORT = "NE=12,FR=1,S=0,CP=-1,SS=-1,SC=-1,PP=16||0|"


class FileTable(ExtensionTest):
    def only_row(self, content):
        """The one row of a file, by its columns."""
        rows = self.rows("SELECT * FROM fdn_file(?)", self.file(content))
        self.assertEqual(len(rows), 1)
        return dict(zip(COLUMNS, rows[0]))

    def test_the_columns_have_their_names_and_the_path_is_hidden(self):
        cursor = self.db.execute("SELECT * FROM fdn_file(?)", (self.file("NE=1\n"),))
        self.assertEqual([column[0] for column in cursor.description], COLUMNS)
        self.assertEqual(self.rows("SELECT ne, path = ? FROM fdn_file(?)", self.file("NE=1\n"), self.file("NE=1\n")),
                         [(1, 1)])

    def test_a_port_fills_all_columns(self):
        self.assertEqual(self.rows("SELECT * FROM fdn_file(?)", self.file(PORT + "\nNE=5,LP=|65547|3|vlanif\n")),
                         [(1, PORT, "PortIndex", "port", 12, 1, 3, None, 16, 1025, 2, "uplink", 0, None),
                          (2, "NE=5,LP=|65547|3|vlanif", "PortIndex", "port", 5, None, None, None, 251, 65547, 3,
                           "vlanif", 1, None)])

    def test_what_is_no_port_has_the_containers_that_it_names(self):
        row = self.only_row("NE=7,FR=1,S=3,SS=2\n")
        self.assertEqual([row[column] for column in COLUMNS[2:]],
                         ["SubSlotIndex", "sub-slot", 7, 1, 3, 2, None, None, None, None, None, None])
        row = self.only_row(NO_PORT + "\n")
        self.assertEqual([row[column] for column in COLUMNS[4:]],
                         [12, 1, 0, None, None, None, None, None, None, None])

    def test_a_port_without_an_ne_is_one(self):
        row = self.only_row("LP=|65547|3|vlanif\n")
        self.assertEqual((row["ne"], row["port"], row["is_logical"]), (None, 3, 1))
        row = self.only_row("PP=||-1|\n")
        self.assertEqual((row["port"], row["name"], row["is_logical"]), (None, None, None))

    def test_columns_do_not_depend_on_which_are_asked_for(self):
        path = self.file("\n".join([PORT, NO_PORT, "FR=2,NE=1", "NE=1,NE=2,S=3,S=4", "S=1", "NE=-1,FR=4", "NE,FR=1",
                                    "LP=|65547|3|vlanif", "PP=|||", "", "\x00", "NE=1,PP=16||2"]))
        whole = self.rows("SELECT * FROM fdn_file(?)", path)
        for place, column in enumerate(COLUMNS):
            self.assertEqual([row[0] for row in self.rows(f"SELECT {column} FROM fdn_file(?)", path)],
                             [row[place] for row in whole], column)
        self.assertEqual(self.rows("SELECT slot, ne FROM fdn_file(?)", path), [(row[6], row[4]) for row in whole])
        self.assertEqual(self.value("(SELECT count(*) FROM fdn_file(?))", path), len(whole))

    def test_a_line_that_is_no_identifier_is_a_row_with_its_problem(self):
        lines = [b"", b"NE=1\0,S=3", b"NE=1,PP=||1|\xc5", b"NE=1,XX=2", b"x" * (1 << 20) + b"x", b"x" * (3 << 20),
                 b"NE=5"]
        rows = self.rows("SELECT line, fdn, type, ne, name, problem FROM fdn_file(?)", self.file(b"\n".join(lines)))
        self.assertEqual(rows, [
            (1, "", None, None, None, "1: the line is empty"),
            (2, b"NE=1\0,S=3", None, None, None, "5: NUL byte"),
            (3, b"NE=1,PP=||1|\xc5", None, None, None, "13: not UTF-8"),
            (4, "NE=1,XX=2", None, 1, None, '6: unknown tag "XX"'),
            (5, None, None, None, None, "1: the line is longer than 1 MiB"),
            (6, None, None, None, None, "1: the line is longer than 1 MiB"),
            (7, "NE=5", "NEIndex", 5, None, None)])

    def test_the_longest_line_is_read(self):
        name = "p" * ((1 << 20) - len("NE=1,PP=||1|"))
        row = self.only_row(f"NE=1,PP=||1|{name}\n")
        self.assertEqual((len(row["name"]), row["problem"]), (len(name), None))

    def test_what_is_no_text_is_found_wherever_it_stands_in_a_block(self):
        for size in range(1, 40):
            for bad in (b"\0", b"\xff", b"\x80"):
                content = b"NE=1\n" * 3 + b"N" * size + bad + b"N" * (40 - size) + b"\nNE=2\nNE=3,PP=||1|\xc3\x85\nNE=4"
                rows = self.rows("SELECT line, ne, typeof(fdn) FROM fdn_file(?)", self.file(content))
                self.assertEqual(rows, [(1, 1, "text"), (2, 1, "text"), (3, 1, "text"), (4, None, "blob"),
                                        (5, 2, "text"), (6, 3, "text"), (7, 4, "text")])

    def test_line_ends_and_the_byte_order_mark_are_no_part_of_a_line(self):
        rows = self.rows("SELECT fdn FROM fdn_file(?)", self.file(b"\xef\xbb\xbfNE=1\r\nNE=2\nNE=3\r"))
        self.assertEqual(rows, [("NE=1",), ("NE=2",), ("NE=3\r",)])

    def test_an_empty_file_has_no_rows(self):
        self.assertEqual(self.rows("SELECT * FROM fdn_file(?)", self.file("")), [])

    def test_more_than_a_block_is_read(self):
        count = 200_000
        path = self.file("".join(f"NE={number},FR=1\n" for number in range(count)))
        self.assertEqual(self.rows("SELECT count(*), sum(ne), max(line), min(rowid) FROM fdn_file(?)", path),
                         [(count, count * (count - 1) // 2, count, 1)])

    def test_lines_come_in_their_order(self):
        path = self.file("NE=3\nNE=1\nNE=2\n")
        for order in ("line", "rowid"):
            plan = self.rows(f"EXPLAIN QUERY PLAN SELECT ne FROM fdn_file(?) ORDER BY {order}", path)
            self.assertNotIn("TEMP B-TREE", str(plan))
            self.assertEqual(self.rows(f"SELECT ne FROM fdn_file(?) ORDER BY {order}", path), [(3,), (1,), (2,)])
        self.assertEqual(self.rows("SELECT ne FROM fdn_file(?) ORDER BY line DESC", path), [(2,), (1,), (3,)])
        self.assertEqual(self.rows("SELECT ne FROM fdn_file(?) ORDER BY ne", path), [(1,), (2,), (3,)])

    def test_the_path_may_come_from_another_table(self):
        self.db.execute("CREATE TABLE input (path TEXT)")
        self.db.executemany("INSERT INTO input VALUES (?)", [(self.file("NE=1\n", "a"),), (self.file("NE=2\n", "b"),),
                                                             (None,)])
        self.assertEqual(self.rows("SELECT ne FROM input, fdn_file(input.path) ORDER BY ne"), [(1,), (2,)])
        self.assertEqual(self.rows("SELECT ne FROM fdn_file JOIN input USING (path) ORDER BY ne"), [(1,), (2,)])

    def test_two_conditions_on_the_path_both_count(self):
        path = self.file("NE=1\n")
        other = self.file("NE=2\n", "other.fdn")
        self.assertEqual(self.rows("SELECT ne FROM fdn_file(?) WHERE path = ?", path, other), [])
        self.assertEqual(self.rows("SELECT ne FROM fdn_file(?) WHERE path = ?", path, path), [(1,)])

    def test_null_is_no_file(self):
        self.assertEqual(self.rows("SELECT * FROM fdn_file(NULL)"), [])

    def test_what_cannot_be_read_is_an_error_that_names_it(self):
        missing = str(self.folder / "missing.fdn")
        self.assertEqual(self.refused("SELECT * FROM fdn_file(?)", missing), f"{missing}: No such file or directory")
        folder = str(self.folder)
        self.assertEqual(self.refused("SELECT * FROM fdn_file(?)", folder), f"{folder}: Is a directory")
        for path in ("", "a\0b"):
            self.assertEqual(self.refused("SELECT * FROM fdn_file(?)", path),
                             "fdn_file: the path is empty or holds a NUL byte")
        self.assertEqual(self.refused("SELECT * FROM fdn_file"),
                         "fdn_file: the path is missing; name a file: fdn_file('network.fdn')")
        self.assertIn("too many arguments on fdn_file()", self.refused("SELECT * FROM fdn_file('a', 'b')"))

    def test_a_dash_is_a_file_of_that_name(self):
        self.file("NE=8\n", "-")
        before = os.getcwd()
        os.chdir(self.folder)
        self.addCleanup(os.chdir, before)
        self.assertEqual(self.rows("SELECT ne, path FROM fdn_file('-')"), [(8, "-")])

    def test_a_pipe_is_read_as_it_comes(self):
        pipe = str(self.folder / "pipe")
        os.mkfifo(pipe)

        def write():
            with open(pipe, "w", encoding="utf-8") as out:
                out.write("NE=1\nNE=2\n")
        writer = threading.Thread(target=write)
        writer.start()
        self.assertEqual(self.rows("SELECT ne FROM fdn_file(?)", pipe), [(1,), (2,)])
        writer.join()

    def test_many_files_are_open_at_once_and_none_stays_open(self):
        before = len(os.listdir("/proc/self/fd"))
        paths = [self.file(f"NE={number}\n" * 3, f"{number}.fdn") for number in range(20)]
        joined = ", ".join(f"fdn_file('{path}') AS f{place}" for place, path in enumerate(paths))
        cursor = self.db.execute(f"SELECT sum(f19.ne) FROM {joined} WHERE " +
                                 " AND ".join(f"f{place}.line = 1" for place in range(20)))
        self.assertEqual(cursor.fetchall(), [(19,)])
        half_read = self.db.execute("SELECT ne FROM fdn_file(?)", (paths[0],))
        self.assertEqual(half_read.fetchone(), (0,))
        half_read.close()
        self.assertEqual(len(os.listdir("/proc/self/fd")), before)

    def test_it_is_read_only(self):
        for statement in ("INSERT INTO fdn_file (fdn) VALUES ('NE=1')", "DELETE FROM fdn_file WHERE path = 'x'",
                          "UPDATE fdn_file SET ne = 1 WHERE path = 'x'"):
            self.assertIn("may not be modified", self.refused(statement))
        self.assertIn("no such module", self.refused("CREATE VIRTUAL TABLE mine USING fdn_file"))

    def test_an_interrupt_ends_a_long_query(self):
        path = self.file("NE=1\n" * 1000)
        timer = threading.Timer(0.2, self.db.interrupt)
        timer.start()
        self.addCleanup(timer.cancel)
        self.assertIn("interrupted", self.refused(
            "SELECT count(*) FROM fdn_file(?) a, fdn_file(?) b, fdn_file(?) c WHERE a.ne + b.ne + c.ne = 0", path, path,
            path))


if __name__ == "__main__":
    unittest.main()
