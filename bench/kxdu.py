#!/usr/bin/env python3
"""Measures kxdu beside programs that do the same or similar work on the same files.

    kxdu.py KXDU [--identifiers N] [--nes N] [--seconds N] [--json FILE] [--no-limits]

What is compared:
- decode (to JSON lines, CSV and TSV), encode and check with simdjson, which only reads the JSON lines of the same
  identifiers (kx_bench_jsonread, beside KXDU)
- get with two mawk programs that print the same columns
- filter with grep, given the numbers that the configuration holds back
- inventory import with the sqlite3 shell, which imports the same three tables
- jq, which takes the identifiers out of the JSON lines, is a row to read only: it has no limit

How:
- First, the outputs of commands that should write the same are compared.
- Commands that are compared are neighbours: they run right after each other, so that the machine is in the same state.
  The median of the ratios of neighbouring runs counts, of the processor's time (user and system) with one job.
- The gain of a second core is the median of the ratios of a run with one job and its neighbour with two. Two programs
  that share nothing run at once to show the greatest possible gain; if that is small, less is demanded of two jobs.
- All runs on two processors. Of all groups of neighbours, always the one runs that has run for the least time so far.
- get, filter and their neighbours read the same file four times, since they are so quick.
- Outputs go to /dev/null, but those of filter and grep to memory: grep would stop at the first match.

Exits with 1 if a limit is missed.
"""
import argparse
import contextlib
import csv
import itertools
import os
import pathlib
import random
import subprocess
import sys
import tempfile

from figures import tell, write_json
from runs import Run, compare, cpu_ratio, run_in_turns, speed_ratio

# The shortest program that is right for any identifier.
MAWK_GET = ('{n=p="";for(i=NF;i;i--){if($i~/^NE=/)n=substr($i,4);'
            'if($i~/^PP=/){split($i,a,"|");p=a[3]}}print n"\\t"p}')
# The fastest known program; right for identifiers that do not begin with a port.
MAWK_GET_FAST = ('{n=p="";if(match($0,/(^|,)NE=[^,]*/)){n=substr($0,RSTART,RLENGTH);sub(/.*=/,"",n)}'
                 'if(i=index($0,",PP=")){split(substr($0,i),a,"|");p=a[3]}print n"\\t"p}')
TIMES = 4  # get and filter are quick: they read their input so many times, or the start of the program would count
FIRST_NOTIFICATION = 1_000_000  # longer than any number in an identifier, so that grep finds it nowhere else
TABLES = ("ne_type", "ne", "domain_member")

SIMDJSON, MAWK, GREP, SQLITE, JQ = "simdjson", "mawk", "grep -v -F -w -f", "sqlite3 .import", "jq -r .fdn"
MAWK_SHORTEST, MAWK_FASTEST = f"{MAWK}, the shortest", f"{MAWK}, the fastest"
IMPORT = "kxdu inventory import"
ONE_JOB, AT_ONCE = " --jobs 1", " --jobs 1, two at once"
VERBS = ("decode", "encode", "check", "get", "filter")

# A command, and at most how many times the processor's time of simdjson it may take.
MOST_TIMES_SIMDJSON = {"decode": 1.6, "decode --format csv": 1.6, "decode --format tsv": 1.6, "encode": 2.5, "check": 2}
MOST_TIMES_JSON = 1.05  # decode to CSV beside JSON lines: not slower, and 5 % for noise
MOST_TIMES_SQLITE = 3
LEAST_TIMES_MAWK = 5
MOST_MEMORY = 64  # MiB
# Two jobs must do so many times as much as one, if two programs at once do LEAST_OF_PROGRAMS times as much.
LEAST_GAINS = {"decode": 1.85, "encode": 1.85, "check": 1.85, "filter": 1.85}
LEAST_OF_PROGRAMS = 1.9


class Files:
    """All files, in one folder, which holds the filter's configuration too."""

    def __init__(self, folder):
        self.folder = folder
        self.configuration = folder / "kx_corbaagent_bundle" / "bundle.cfg"
        self.network, self.records = folder / "network.fdn", folder / "records.jsonl"
        self.alarms = folder / "alarms.txt"
        self.held = folder / "held"  # the notifications that the filter holds back, a line each
        self.tables, self.inventory = folder / "tables", folder / "network.db"
        self.large_tables, self.schema = folder / "large-tables", folder / "schema.sql"
        self.by_kxdu, self.by_sqlite = folder / "by-kxdu.db", folder / "by-sqlite.db"


def write_sample(kxdu, files, identifiers):
    subprocess.run([kxdu, "sample", "--identifiers", str(identifiers), "-o", files.network,
                    "--inventory-csv", files.tables], check=True)
    subprocess.run([kxdu, "inventory", "init", files.inventory], check=True, stdout=subprocess.DEVNULL)
    subprocess.run([kxdu, "inventory", "import", files.inventory, files.tables], check=True, stdout=subprocess.DEVNULL)
    subprocess.run([kxdu, "decode", files.network, "-o", files.records], check=True)


def write_alarms(files):
    """Writes alarms (the number of a notification before an identifier), and which the filter holds back."""
    draw = random.Random(1)
    with open(files.network, encoding="utf-8") as lines, open(files.alarms, "w", encoding="utf-8") as out:
        out.writelines(f"{FIRST_NOTIFICATION + draw.randrange(200)} {line}" for line in lines)
    held = [str(FIRST_NOTIFICATION + 5 * number) for number in range(40)]
    files.held.write_text("\n".join(held) + "\n", encoding="utf-8")
    files.configuration.parent.mkdir()
    files.configuration.write_text(
        f'EventSwitch = 2\nBlacklist = "{",".join(held)}"\n', encoding="utf-8")


def write_large_inventory(files, nes):
    """Writes the sample's tables with `nes` NEs, which repeat the sample's rows, and the schema of an inventory."""
    files.large_tables.mkdir()
    for table in ("ne_type", "domain_member"):
        (files.large_tables / f"{table}.csv").write_bytes((files.tables / f"{table}.csv").read_bytes())
    with (open(files.tables / "ne.csv", encoding="utf-8", newline="") as sample,
          open(files.large_tables / "ne.csv", "w", encoding="utf-8", newline="") as out):
        rows = csv.reader(sample)
        writer = csv.writer(out, lineterminator="\n")
        writer.writerow(next(rows))
        writer.writerows([number, *row[1:]] for number, row in zip(range(1, nes + 1), itertools.cycle(list(rows))))
    with open(files.schema, "wb") as schema:
        subprocess.run(["sqlite3", files.inventory, ".schema"], check=True, stdout=schema)


def on_cores(command, name, keeps_output=False):
    """A command with one job, with two, and two programs at once."""
    one_job = command + ["--jobs", "1"]
    return [Run(name + ONE_JOB, one_job, keeps_output=keeps_output), Run(name, command, keeps_output=keeps_output),
            Run(name + AT_ONCE, one_job, at_once=2, keeps_output=keeps_output)]


def import_runs(kxdu, files):
    """The two imports, each into an inventory without rows."""
    def prepare_empty():
        with contextlib.suppress(FileNotFoundError):
            files.by_sqlite.unlink()

    def prepare_inventory():
        with contextlib.suppress(FileNotFoundError):
            files.by_kxdu.unlink()
        subprocess.run([kxdu, "inventory", "init", files.by_kxdu], check=True, stdout=subprocess.DEVNULL)

    imports = [f".import --csv --skip 1 {files.large_tables}/{table}.csv {table}" for table in TABLES]
    return [Run(SQLITE, ["sqlite3", files.by_sqlite, f".read {files.schema}", *imports], prepare=prepare_empty),
            Run(IMPORT, [kxdu, "inventory", "import", files.by_kxdu, files.large_tables], prepare=prepare_inventory)]


def beside_simdjson(yardstick, files, verb):
    return Run(f"{SIMDJSON}, beside {verb}", [yardstick, files.records])


def groups_of(kxdu, files):
    """Returns lists of neighbours."""
    yardstick = pathlib.Path(kxdu).with_name("kx_bench_jsonread")
    with_inventory = ["--inventory", files.inventory]
    other_formats = [Run(f"kxdu decode --format {name}{ONE_JOB}",
                         [kxdu, "decode", "--format", name, "--jobs", "1", files.network]) for name in ("csv", "tsv")]
    return [
        [*other_formats, beside_simdjson(yardstick, files, "decode"),
         *on_cores([kxdu, "decode", files.network], "kxdu decode")],
        [beside_simdjson(yardstick, files, "encode"),
         *on_cores([kxdu, "encode", *with_inventory, files.records], "kxdu encode")],
        [beside_simdjson(yardstick, files, "check"),
         *on_cores([kxdu, "check", *with_inventory, files.network], "kxdu check")],
        [Run(MAWK_SHORTEST, ["mawk", "-F,", MAWK_GET, *[files.network] * TIMES]),
         Run(MAWK_FASTEST, ["mawk", MAWK_GET_FAST, *[files.network] * TIMES]),
         *on_cores([kxdu, "get", "NE,PP:2", *[files.network] * TIMES], "kxdu get")],
        [Run(GREP, ["grep", "-h", "-v", "-F", "-w", "-f", files.held, *[files.alarms] * TIMES], keeps_output=True),
         *on_cores([kxdu, "filter", "--config", files.folder, *[files.alarms] * TIMES], "kxdu filter",
                   keeps_output=True)],
        import_runs(kxdu, files),
        [Run(JQ, ["jq", "-r", ".fdn", files.records])],
    ]


def compare_outputs(runs, files):
    identifiers = Run("the identifiers", ["cat", files.network])
    compare([runs["kxdu get"], runs["kxdu get" + ONE_JOB], runs[MAWK_SHORTEST], runs[MAWK_FASTEST]])
    compare([runs["kxdu decode"], runs["kxdu decode" + ONE_JOB]])
    compare([identifiers, runs["kxdu encode"], runs["kxdu encode" + ONE_JOB], runs[JQ]])
    compare([runs["kxdu filter"], runs["kxdu filter" + ONE_JOB], runs[GREP]])
    compare([Run("nothing", ["true"]), runs["kxdu check"]])


def compare_imports(runs, files):
    """Imports by both programs; raises an exception unless both inventories hold the same rows."""
    for name in (SQLITE, IMPORT):
        runs[name].prepare()
        runs[name].written()
    rows = "; ".join(f"SELECT * FROM {table} ORDER BY 1, 2, 3" for table in TABLES)
    compare([Run(f"rows of {inventory.name}", ["sqlite3", inventory, rows])
             for inventory in (files.by_sqlite, files.by_kxdu)])


def measure(options):
    """Returns all runs by their names."""
    with tempfile.TemporaryDirectory(prefix="kx-bench-") as name:
        files = Files(pathlib.Path(name))
        write_sample(options.kxdu, files, options.identifiers)
        write_alarms(files)
        write_large_inventory(files, options.nes)
        groups = groups_of(options.kxdu, files)
        runs = {run.name: run for group in groups for run in group}
        compare_outputs(runs, files)
        compare_imports(runs, files)
        run_in_turns(groups, options.seconds)
        return runs


def gain(runs, verb, programs=False):
    """Returns how many times as much two processors do as one: with two jobs, or with two programs."""
    return speed_ratio(runs[f"kxdu {verb}" + (AT_ONCE if programs else "")], runs[f"kxdu {verb}{ONE_JOB}"])


def gain_limit(runs, verb, least):
    value, of_programs = gain(runs, verb), gain(runs, verb, programs=True)
    why = f"since two programs at once do {of_programs:.2f} times as much"
    if of_programs < LEAST_OF_PROGRAMS:
        why += f": less than {LEAST_OF_PROGRAMS}, so less than {least} is demanded"
        least *= of_programs / LEAST_OF_PROGRAMS
    return f"kxdu {verb}: two jobs do {value:.2f} times as much as one, at least {least:.2f}, {why}", value >= least


def peaks_of(runs):
    """Returns the peak of memory of each command of kxdu, whatever the number of its jobs."""
    peaks = {}
    for run in runs.values():
        command = run.name.split(" --jobs")[0]
        if command.startswith("kxdu "):
            peaks[command] = max(peaks.get(command, 0), run.mebibytes)
    return peaks


def limits_of(runs):
    """Returns the limits as (text, whether it is kept)."""
    limits = []

    def at_most(left, right, most, why=""):
        value = cpu_ratio(runs[left], runs[right])
        text = f"{left}: {value:.2f} times the processor's time of {right}, at most {most}{why}"
        limits.append((text, value <= most))

    def at_least(left, right, least):
        value = cpu_ratio(runs[right], runs[left])
        limits.append((f"{left}: {value:.2f} times as fast as {right}, at least {least}", value >= least))

    for command, most in MOST_TIMES_SIMDJSON.items():
        at_most(f"kxdu {command}{ONE_JOB}", f"{SIMDJSON}, beside {command.split()[0]}", most)
    at_most("kxdu decode --format csv" + ONE_JOB, "kxdu decode" + ONE_JOB, MOST_TIMES_JSON,
            ": not slower, but for 5 % of noise")
    at_least("kxdu get" + ONE_JOB, MAWK_SHORTEST, LEAST_TIMES_MAWK)
    at_least("kxdu get" + ONE_JOB, MAWK_FASTEST, LEAST_TIMES_MAWK)
    at_least("kxdu filter" + ONE_JOB, GREP, 1)
    at_most(IMPORT, SQLITE, MOST_TIMES_SQLITE)
    limits += [gain_limit(runs, verb, least) for verb, least in LEAST_GAINS.items()]
    limits += [(f"{command}: {mebibytes:.1f} MiB at most, below {MOST_MEMORY}", mebibytes < MOST_MEMORY)
               for command, mebibytes in peaks_of(runs).items()]
    return limits


def print_table(head, rows):
    for name, *figures in [head, *rows]:
        print(name.ljust(40) + "".join(figure.rjust(13) for figure in figures))


def units_of(run, options):
    """Returns how many NEs or identifiers a run reads."""
    if run.name in (IMPORT, SQLITE):
        return options.nes
    times = TIMES if run.name.startswith(("kxdu get", "kxdu filter", MAWK, GREP)) else 1
    return times * run.at_once * options.identifiers


def print_rows(runs, options):
    title = f"{options.identifiers:,} identifiers, {options.nes:,} NEs"
    print_table((title, "s", "s of CPU", "million/s", "MiB", "runs"),
                [(run.name, f"{min(run.seconds):.2f}", f"{min(run.cpu_seconds):.2f}",
                  f"{units_of(run, options) / min(run.seconds) / 1e6:.2f}", f"{run.mebibytes:.1f}",
                  str(len(run.seconds))) for run in runs.values()])
    print()
    print_table(("what two cores give", "two jobs", "two programs"),
                [(f"kxdu {verb}", f"{gain(runs, verb):.2f}", f"{gain(runs, verb, programs=True):.2f}")
                 for verb in VERBS])


def report_of(runs, options):
    return {"identifiers": options.identifiers, "nes": options.nes,
            "gains": {verb: {"two_jobs": gain(runs, verb), "two_programs": gain(runs, verb, programs=True)}
                      for verb in VERBS},
            "rows": [{"name": run.name, "at_once": run.at_once, "seconds": min(run.seconds),
                      "cpu_seconds": min(run.cpu_seconds), "mebibytes": run.mebibytes, "runs": len(run.seconds)}
                     for run in runs.values()]}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("kxdu")
    parser.add_argument("--identifiers", type=int, default=2_000_000)
    parser.add_argument("--nes", type=int, default=1_000_000, help="how many NEs are imported")
    parser.add_argument("--seconds", type=int, default=300)
    parser.add_argument("--json")
    parser.add_argument("--no-limits", action="store_true", help="missed limits do not count: only show that it runs")
    options = parser.parse_args()
    # The limits are for two cores, however many there are. The commands inherit this.
    os.sched_setaffinity(0, sorted(os.sched_getaffinity(0))[:2])
    runs = measure(options)
    limits = limits_of(runs)
    print_rows(runs, options)
    if options.json:
        write_json(options.json, report_of(runs, options), limits)
    return 0 if tell(limits, all_of_them=True) == 0 or options.no_limits else 1


if __name__ == "__main__":
    sys.exit(main())
