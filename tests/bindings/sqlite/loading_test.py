#!/usr/bin/python3
"""How the extension comes into a process, and what it brings along."""
import ctypes
import ctypes.util
import gc
import pathlib
import re
import shutil
import sqlite3
import subprocess
import sys
import unittest

from support import EXTENSION, PORT, ExtensionTest, connect


def printed(*command):
    return subprocess.run(command, stdout=subprocess.PIPE, check=True, text=True).stdout


class Loading(ExtensionTest):
    def shell(self, *lines):
        """What the sqlite3 shell prints for its commands and statements; its messages too."""
        done = subprocess.run(["sqlite3", ":memory:"], input="\n".join(lines), stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, check=False, text=True)
        return done.stdout

    def test_it_needs_no_sqlite_of_its_own(self):
        needed = printed("ldd", EXTENSION)
        self.assertIn("libkx_domain_util.so", needed)
        self.assertNotIn("sqlite3", needed)
        self.assertNotIn("not found", needed)
        self.assertEqual(re.findall(r" (sqlite3\w*)$", printed("nm", "-D", "--undefined-only", EXTENSION), re.M), [])

    def test_every_symbol_that_it_needs_is_there(self):
        self.assertNotIn("undefined symbol", printed("ldd", "-r", EXTENSION))

    def test_it_loads_none_of_what_only_the_tool_needs(self):
        needed = printed("ldd", EXTENSION)
        for library in ("tbb", "spdlog", "kx_standalone"):
            self.assertNotIn(library, needed)

    def test_only_the_entry_is_visible(self):
        symbols = [line.split()[-1] for line in printed("nm", "-D", "--defined-only", EXTENSION).splitlines()]
        self.assertEqual(symbols, ["sqlite3_kxsqlite_init"])

    def test_the_shell_loads_it_by_its_name(self):
        stem = EXTENSION.removesuffix(".so")
        self.assertEqual(self.shell(f".load {stem}", f"SELECT fdn_ne('{PORT}'), fdn_version();"), "12|1.0.0\n")
        self.assertEqual(self.shell(f".load {stem} sqlite3_kxsqlite_init", "SELECT fdn_kind('NE=1');"), "ne\n")
        self.assertEqual(self.shell(f"SELECT load_extension('{EXTENSION}');", "SELECT fdn_kind('NE=1');"), "\nne\n")

    def test_the_shell_shows_errors(self):
        out = self.shell(f".load {EXTENSION}", "SELECT fdn_get('NE=1', 'XX');", "SELECT * FROM fdn_file('nowhere');")
        self.assertIn('fdn_get: unknown piece "XX"', out)
        self.assertIn("nowhere: No such file or directory", out)

    def test_it_stays_loaded_when_its_connections_are_gone(self):
        script = (f"import sys; sys.path.insert(0, {str(pathlib.Path(__file__).parent)!r})\n"
                  "from support import connect\n"
                  "for _ in range(3):\n"
                  "    db = connect(); db.execute(\"SELECT fdn_record('NE=1')\").fetchall(); db.close()\n"
                  "print(sum('kx_sqlite' in line for line in open('/proc/self/maps')) > 0)")
        self.assertEqual(printed(sys.executable, "-B", "-c", script), "True\n")

    def test_it_may_be_loaded_twice(self):
        self.db.enable_load_extension(True)
        self.db.load_extension(EXTENSION)
        self.assertEqual(self.value("fdn_ne('NE=7')"), 7)

    def test_each_connection_loads_it_for_itself(self):
        plain = sqlite3.connect(":memory:")
        self.addCleanup(plain.close)
        with self.assertRaisesRegex(sqlite3.OperationalError, "no such function"):
            plain.execute("SELECT fdn_ne('NE=1')")

    def test_a_second_sqlite_of_the_process_is_refused(self):
        copy = self.folder / "second.so"
        shutil.copy(ctypes.util.find_library("sqlite3") and next(
            line.split()[2] for line in printed("ldd", shutil.which("sqlite3")).splitlines() if "libsqlite3" in line),
            copy)
        second = ctypes.CDLL(str(copy), mode=ctypes.RTLD_LOCAL)
        database, message = ctypes.c_void_p(), ctypes.c_char_p()
        self.assertEqual(second.sqlite3_open(b":memory:", ctypes.byref(database)), 0)
        second.sqlite3_enable_load_extension(database, 1)
        code = second.sqlite3_load_extension(database, EXTENSION.encode(), None, ctypes.byref(message))
        self.assertEqual(code, 1)
        self.assertIn(b"another SQLite library of this process", message.value)
        second.sqlite3_close(database)
        self.assertEqual(self.value("fdn_ne('NE=7')"), 7, "the first one keeps it")

    def test_nothing_is_left_behind_by_many_connections(self):
        def pages():
            gc.collect()
            return int(pathlib.Path("/proc/self/statm").read_text(encoding="ascii").split()[1])
        path = self.file(f"{PORT}\n" * 100)
        for round_ in range(400):
            db = connect()
            db.execute("SELECT fdn_get(fdn, 'PP:3'), fdn_record(fdn), problem FROM fdn_file(?)", (path,)).fetchall()
            db.execute("SELECT fdn_field(?, 'neId')", (PORT,)).fetchone()
            db.close()
            if round_ == 100:
                before = pages()
        self.assertLess(pages() - before, 400, "pages of memory")


if __name__ == "__main__":
    unittest.main()
