#!/usr/bin/python3
"""Measures the SQLite extension beside kxdu and beside SQLite's own length(), in one run.

    sqlite.py KXDU EXTENSION [--lines N] [--rows N] [--rounds N]

The compared programs take turns; the run of each with the least processor time counts.

- Three columns of a file, summed by the sqlite3 shell through fdn_file, beside `kxdu get --jobs 1` of the same three
  pieces: the time of the whole process, user and system.
- A function, once for each row of a table, beside length() of the same column. The statement only counts the answers
  that are not NULL. The time of the statement without a function is subtracted from both: walking the table and
  fetching the column takes the same time, and would hide the cost of the function.

Exits with 1 if a limit is missed. Runs with Debian's Python: others may be unable to load extensions.
"""
import argparse
import os
import pathlib
import sqlite3
import subprocess
import sys
import tempfile
import time

from figures import tell

MOST_FILE = 2.5
MOST_FUNCTION = 2.0
FUNCTIONS = ("fdn_ne(fdn)", "fdn_get(fdn, 'NE')", "fdn_get(fdn, 'PP:2')", "fdn_get(fdn, 'PP:3')",
             "fdn_get(fdn, 'SS')", "fdn_number(fdn, 'S')", "fdn_number(fdn, 'PP:2')")
OTHERS = ("fdn_type(fdn)", "fdn_kind(fdn)", "fdn_field(fdn, 'neId')", "fdn_record(fdn)", "fdn_problem(fdn)",
          "fdn_under(fdn, 'NE=1')", "fdn_same(fdn, fdn)", "fdn_set(fdn, 'NE', '7')")


def process_seconds(command):
    """The processor time of a command that must succeed."""
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise RuntimeError(f"{command[0]} ended with {process.returncode}")
    return usage.ru_utime + usage.ru_stime


def measure_file(kxdu, extension, network, rounds):
    """The processor times of kxdu and of SQLite for three columns of a file."""
    statement = f"SELECT sum(ne), sum(slot), sum(port) FROM fdn_file('{network}')"
    commands = {"kxdu get --jobs 1": [kxdu, "get", "--jobs", "1", "NE,S,PP:2", network],
                "fdn_file": ["sqlite3", "-cmd", f".load {extension}", ":memory:", statement]}
    best = dict.fromkeys(commands, float("inf"))
    for _ in range(rounds):
        for name, command in commands.items():
            best[name] = min(best[name], process_seconds(command))
    return best


def measure_functions(extension, network, rows, rounds):
    """The processor times of statements over a table of identifiers, by their expressions."""
    connection = sqlite3.connect(":memory:")
    connection.enable_load_extension(True)
    connection.load_extension(extension)
    connection.execute("CREATE TABLE alarm (fdn TEXT NOT NULL)")
    connection.execute("INSERT INTO alarm SELECT fdn FROM fdn_file(?) LIMIT ?", (str(network), rows))
    assert connection.execute("SELECT count(*) FROM alarm").fetchone() == (rows,)
    best = dict.fromkeys(("fdn", "length(fdn)") + FUNCTIONS + OTHERS, float("inf"))
    for _ in range(rounds):
        for expression in best:
            begin = time.process_time()
            connection.execute(f"SELECT count({expression}) FROM alarm").fetchall()
            best[expression] = min(best[expression], time.process_time() - begin)
    return best


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("kxdu")
    parser.add_argument("extension")
    parser.add_argument("--lines", type=int, default=2_000_000)
    parser.add_argument("--rows", type=int, default=1_000_000)
    parser.add_argument("--rounds", type=int, default=9)
    parser.add_argument("--no-limits", action="store_true", help="missed limits do not count: only show that it runs")
    options = parser.parse_args()
    limits = []
    with tempfile.TemporaryDirectory(prefix="kx-bench-") as folder:
        network = pathlib.Path(folder) / "network.fdn"
        lines = max(options.lines, options.rows)
        subprocess.run([options.kxdu, "sample", "--identifiers", str(lines), "-o", network], check=True)
        file = measure_file(options.kxdu, options.extension, network, options.rounds)
        functions = measure_functions(options.extension, network, options.rows, options.rounds)

    print(f"three columns of {lines} lines".ljust(40) + "s of CPU".rjust(12) + "ratio".rjust(8))
    for name, seconds in file.items():
        print(name.ljust(40) + f"{seconds:.3f}".rjust(12) + f"{seconds / file['kxdu get --jobs 1']:.2f}".rjust(8))
    ratio = file["fdn_file"] / file["kxdu get --jobs 1"]
    limits.append((f"fdn_file: {ratio:.2f} times kxdu get --jobs 1, at most {MOST_FILE}", ratio <= MOST_FILE))

    print(f"\na function for each of {options.rows} rows".ljust(41) + "ns a row".rjust(12) + "ratio".rjust(8))
    scan = functions.pop("fdn")
    length = functions["length(fdn)"] - scan
    for expression, seconds in functions.items():
        ratio = (seconds - scan) / length
        print(expression.ljust(40) + f"{(seconds - scan) / options.rows * 1e9:.0f}".rjust(12) + f"{ratio:.2f}".rjust(8))
        if expression in FUNCTIONS:
            limits.append((f"{expression}: {ratio:.2f} times length(fdn), at most {MOST_FUNCTION}",
                           ratio <= MOST_FUNCTION))
    print("the table and the column, taken off".ljust(40) + f"{scan / options.rows * 1e9:.0f}".rjust(12))
    return 0 if tell(limits) == 0 or options.no_limits else 1


if __name__ == "__main__":
    sys.exit(main())
