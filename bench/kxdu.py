#!/usr/bin/env python3
"""Measures kxdu beside mawk and grep on the same files: time, peak of memory, and what the second core gives.

    kxdu.py KXDU [--identifiers N] [--rounds N] [--json FILE] [--document FILE]

All commands run once in each round, one after the other, on two processors; of all rounds the fastest counts. What a
second processor can give there is told by two programs at once that know nothing of each other. Where two commands
should write the same, that is checked first. --document FILE replaces what stands between the marks "figures of kxdu"
in FILE. Ends with 1 when a limit is missed.
"""
import argparse
import hashlib
import os
import pathlib
import random
import subprocess
import sys
import tempfile
import time

from figures import replace_between_marks, tell, write_json

# The shortest program that is right for any identifier.
MAWK_GET = ('{n=p="";for(i=NF;i;i--){if($i~/^NE=/)n=substr($i,4);'
            'if($i~/^PP=/){split($i,a,"|");p=a[3]}}print n"\\t"p}')
# The fastest that we could write; right for identifiers in which no port comes first.
MAWK_GET_FAST = ('{n=p="";if(match($0,/(^|,)NE=[^,]*/)){n=substr($0,RSTART,RLENGTH);sub(/.*=/,"",n)}'
                 'if(i=index($0,",PP=")){split(substr($0,i),a,"|");p=a[3]}print n"\\t"p}')
VERBS = ("get NE PP:2", "decode", "filter")
MOST_MEMORY = 64  # MiB
LEAST_GAIN = 1.7
FIRST_NOTIFICATION = 1_000_000  # longer than any number in an identifier, so that grep finds it nowhere else


class Run:
    """A command with the fastest and the largest of its runs."""

    def __init__(self, folder, name, command):
        self.folder, self.name, self.command = folder, name, command
        self.seconds, self.cpu_seconds, self.seconds_of_two = float("inf"), float("inf"), float("inf")
        self.memory = 0.0

    def once(self, output):
        # The kernel counts the memory of the process that starts a command as that command's: so a small one does.
        peak = self.folder / "peak"
        with open(output, "wb") as out:
            begin = time.perf_counter()
            process = self.start(["/usr/bin/time", "-q", "-f", "%M", "-o", peak] + self.command, out)
            usage = self.end_of(process)
            seconds = time.perf_counter() - begin
        self.seconds = min(self.seconds, seconds)
        self.cpu_seconds = min(self.cpu_seconds, usage.ru_utime + usage.ru_stime)
        self.memory = max(self.memory, int(peak.read_text(encoding="utf-8")) / 1024)

    def twice_at_once(self, output, other_output):
        """Two runs that share nothing but the machine."""
        with open(output, "wb") as out, open(other_output, "wb") as other:
            begin = time.perf_counter()
            for process in [self.start(self.command, out), self.start(self.command, other)]:
                self.end_of(process)
            self.seconds_of_two = min(self.seconds_of_two, time.perf_counter() - begin)

    def start(self, command, out):
        return subprocess.Popen(command, stdout=out, stderr=subprocess.DEVNULL, env=dict(os.environ, LC_ALL="C"))

    def end_of(self, process):
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode != 0:
            raise RuntimeError(f"{self.name} ended with {process.returncode}")
        return usage


def write_inputs(kxdu, folder, identifiers):
    """The identifiers; alarms, which are numbers of notifications before identifiers; and who holds back which."""
    network, alarms = folder / "network.fdn", folder / "alarms.txt"
    subprocess.run([kxdu, "sample", "--identifiers", str(identifiers), "-o", network], check=True)
    draw = random.Random(1)
    with open(network, encoding="utf-8") as lines, open(alarms, "w", encoding="utf-8") as out:
        out.writelines(f"{FIRST_NOTIFICATION + draw.randrange(200)} {line}" for line in lines)
    held = [str(FIRST_NOTIFICATION + 5 * number) for number in range(40)]
    (folder / "held").write_text("\n".join(held) + "\n", encoding="utf-8")
    (folder / "kx_corbaagent_bundle").mkdir()
    (folder / "kx_corbaagent_bundle" / "bundle.cfg").write_text(
        f'EventSwitch = 2\nBlacklist = "{",".join(held)}"\n', encoding="utf-8")
    return network, alarms


def written(run):
    """The digest of what a command writes."""
    digest = hashlib.sha256()
    with subprocess.Popen(run.command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL) as process:
        while block := process.stdout.read(1 << 20):
            digest.update(block)
    return digest.digest()


def measure(kxdu, identifiers, rounds):
    with tempfile.TemporaryDirectory(prefix="kx-bench-") as name:
        folder = pathlib.Path(name)
        network, alarms = write_inputs(kxdu, folder, identifiers)
        get = [kxdu, "get", "NE", "PP:2", "-i", network]
        decode = [kxdu, "decode", network]
        keep = [kxdu, "filter", "--config", folder, alarms]
        runs = [
            Run(folder, "kxdu get NE PP:2", get), Run(folder, "kxdu get NE PP:2 --jobs 1", get + ["--jobs", "1"]),
            Run(folder, "mawk, the shortest", ["mawk", "-F,", MAWK_GET, network]),
            Run(folder, "mawk, the fastest", ["mawk", MAWK_GET_FAST, network]),
            Run(folder, "kxdu decode", decode), Run(folder, "kxdu decode --jobs 1", decode + ["--jobs", "1"]),
            Run(folder, "kxdu filter", keep), Run(folder, "kxdu filter --jobs 1", keep + ["--jobs", "1"]),
            Run(folder, "grep -v -F -w -f", ["grep", "-v", "-F", "-w", "-f", folder / "held", alarms]),
        ]
        by_name = {run.name: run for run in runs}
        for left, right in (("kxdu get NE PP:2", "mawk, the shortest"), ("kxdu get NE PP:2", "mawk, the fastest"),
                            ("kxdu decode", "kxdu decode --jobs 1"), ("kxdu filter", "grep -v -F -w -f")):
            if written(by_name[left]) != written(by_name[right]):
                raise RuntimeError(f"{left} and {right} write different things")
        # grep looks no further than the first line when nobody reads what it writes; and a disk would set the pace.
        with (tempfile.NamedTemporaryFile(dir="/dev/shm") as memory,
              tempfile.NamedTemporaryFile(dir="/dev/shm") as other):
            for _ in range(rounds):
                for run in runs:
                    is_kept = run.name.startswith(("kxdu filter", "grep"))
                    outputs = (memory.name, other.name) if is_kept else (os.devnull, os.devnull)
                    run.once(outputs[0])
                    if run.name.endswith("--jobs 1"):
                        run.twice_at_once(*outputs)
        return by_name


def most_gains(runs):
    """By verb, what the second processor gives at most."""
    alone = {verb: runs[f"kxdu {verb} --jobs 1"] for verb in VERBS}
    return {verb: 2 * run.seconds / run.seconds_of_two for verb, run in alone.items()}


def limits_of(runs):
    """What is demanded, as (text, whether it is kept)."""
    def times(slow, fast):
        return runs[slow].seconds / runs[fast].seconds
    limits = []

    def demand(text, value, least):
        limits.append((f"{text}: {value:.2f} times as fast, at least {least}", value >= least))
    demand("kxdu get, beside the shortest mawk program", times("mawk, the shortest", "kxdu get NE PP:2"), 3)
    demand("kxdu decode, beside mawk's get", times("mawk, the shortest", "kxdu decode"), 1)
    demand("kxdu filter, beside grep", times("grep -v -F -w -f", "kxdu filter"), 1)
    for verb in VERBS:
        demand(f"kxdu {verb} on two cores, beside one", times(f"kxdu {verb} --jobs 1", f"kxdu {verb}"), LEAST_GAIN)
        memory = runs[f"kxdu {verb}"].memory
        limits.append((f"kxdu {verb}: {memory:.0f} MiB at most, below {MOST_MEMORY}", memory < MOST_MEMORY))
    return limits


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("kxdu")
    parser.add_argument("--identifiers", type=int, default=5_000_000)
    parser.add_argument("--rounds", type=int, default=9)
    parser.add_argument("--json")
    parser.add_argument("--document")
    options = parser.parse_args()
    # What is demanded is about two cores, however many there are; the commands take over what this process may use.
    os.sched_setaffinity(0, sorted(os.sched_getaffinity(0))[:2])
    runs = measure(options.kxdu, options.identifiers, options.rounds)
    limits = limits_of(runs)
    millions = options.identifiers / 1e6
    print(f"{millions:g} million identifiers".ljust(30) + "      s   s of CPU  million/s    MiB")
    for run in runs.values():
        print(f"  {run.name:28}{run.seconds:7.2f}{run.cpu_seconds:11.2f}{millions / run.seconds:11.2f}"
              f"{run.memory:7.0f}")
    gains = ", ".join(f"{verb} {gain:.2f}" for verb, gain in most_gains(runs).items())
    control = f"Two with `--jobs 1` at once, which share nothing but the machine, do so many times what one does: {gains}."
    print(f"\n{control}")
    if options.json:
        rows = [{"name": run.name, "seconds": run.seconds, "cpu_seconds": run.cpu_seconds, "mebibytes": run.memory}
                for run in runs.values()]
        write_json(options.json,
                   {"identifiers": options.identifiers, "most_gains": most_gains(runs), "rows": rows}, limits)
    if options.document:
        table = [f"| {millions:g} million identifiers | s | s of CPU | million/s | MiB |", "|---|--:|--:|--:|--:|"]
        table += [f"| {run.name} | {run.seconds:.2f} | {run.cpu_seconds:.2f} | {millions / run.seconds:.2f} "
                  f"| {run.memory:.0f} |" for run in runs.values()]
        replace_between_marks(options.document, "kxdu", "\n" + "\n".join(table) + f"\n\n{control}\n\n")
    return tell(limits)


if __name__ == "__main__":
    sys.exit(main())
