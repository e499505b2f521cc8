#!/usr/bin/env python3
"""Measures kxdu, mawk and grep on the same files: time, peak of memory, and the gain of a second core.

    kxdu.py KXDU [--identifiers N] [--seconds N] [--json FILE]

One command runs at a time, on two processors: always the one that has run for the least time so far, so that each gets
its share of the machine's quiet moments. The fastest run of a command counts. A run with one job and a run with two
follow each other, so that the machine is in the same state; the gain of the second core is the median of their ratios.
Two programs that share nothing run at once to show the greatest possible gain. First, the outputs of commands that
should write the same are compared. Exits with 1 if a limit is missed.
"""
import argparse
import contextlib
import hashlib
import os
import pathlib
import random
import statistics
import subprocess
import sys
import tempfile
import time

from figures import tell, write_json

# The shortest program that is right for any identifier.
MAWK_GET = ('{n=p="";for(i=NF;i;i--){if($i~/^NE=/)n=substr($i,4);'
            'if($i~/^PP=/){split($i,a,"|");p=a[3]}}print n"\\t"p}')
# The fastest known program; right for identifiers that do not begin with a port.
MAWK_GET_FAST = ('{n=p="";if(match($0,/(^|,)NE=[^,]*/)){n=substr($0,RSTART,RLENGTH);sub(/.*=/,"",n)}'
                 'if(i=index($0,",PP=")){split(substr($0,i),a,"|");p=a[3]}print n"\\t"p}')
VERBS = ("get NE,PP:2", "decode", "filter")
MOST_MEMORY = 64  # MiB
LEAST_GAIN = 1.7
FIRST_NOTIFICATION = 1_000_000  # longer than any number in an identifier, so that grep finds it nowhere else


class Run:
    """A command that runs once or several times at once, with the times and the peak of memory of its runs."""

    def __init__(self, folder, name, command, at_once=1):
        self.folder, self.name, self.command, self.at_once = folder, name, command, at_once
        self.times, self.cpu_seconds, self.memory = [], float("inf"), 0.0

    @property
    def seconds(self):
        return min(self.times)

    def run(self, outputs):
        # A small process starts it: the kernel counts the memory of the starting process as the command's.
        peak = self.folder / "peak"
        command = ["/usr/bin/time", "-q", "-f", "%M", "-o", peak] + self.command
        with contextlib.ExitStack() as stack:
            outs = [stack.enter_context(open(output, "wb")) for output in outputs[:self.at_once]]
            begin = time.perf_counter()
            processes = [subprocess.Popen(command, stdout=out, stderr=subprocess.DEVNULL,
                                          env=dict(os.environ, LC_ALL="C")) for out in outs]
            usages = [self.end_of(process) for process in processes]
            self.times.append(time.perf_counter() - begin)
        self.cpu_seconds = min(self.cpu_seconds, sum(usage.ru_utime + usage.ru_stime for usage in usages))
        self.memory = max(self.memory, int(peak.read_text(encoding="utf-8")) / 1024)

    def end_of(self, process):
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode != 0:
            raise RuntimeError(f"{self.name} ended with {process.returncode}")
        return usage


def write_inputs(kxdu, folder, identifiers):
    """Writes identifiers, alarms (the number of a notification before an identifier), and which the filter holds back."""
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
    """Returns the digest of what a command writes."""
    digest = hashlib.sha256()
    with subprocess.Popen(run.command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL) as process:
        while block := process.stdout.read(1 << 20):
            digest.update(block)
    if process.returncode != 0:
        raise RuntimeError(f"{run.name} ended with {process.returncode}")
    return digest.digest()


def measure(kxdu, identifiers, seconds):
    with tempfile.TemporaryDirectory(prefix="kx-bench-") as name:
        folder = pathlib.Path(name)
        network, alarms = write_inputs(kxdu, folder, identifiers)
        commands = {"get NE,PP:2": [kxdu, "get", "NE,PP:2", network],
                    "decode": [kxdu, "decode", network],
                    "filter": [kxdu, "filter", "--config", folder, alarms]}
        # The runs of one list follow each other.
        groups = []
        for verb, command in commands.items():
            one_job = command + ["--jobs", "1"]
            groups.append([Run(folder, f"kxdu {verb}", command), Run(folder, f"kxdu {verb} --jobs 1", one_job),
                           Run(folder, f"kxdu {verb} --jobs 1, two at once", one_job, at_once=2)])
        groups += [
            [Run(folder, "mawk, the shortest", ["mawk", "-F,", MAWK_GET, network])],
            [Run(folder, "mawk, the fastest", ["mawk", MAWK_GET_FAST, network])],
            [Run(folder, "grep -v -F -w -f", ["grep", "-v", "-F", "-w", "-f", folder / "held", alarms])],
        ]
        by_name = {run.name: run for group in groups for run in group}
        for left, right in (("kxdu get NE,PP:2", "mawk, the shortest"), ("kxdu get NE,PP:2", "mawk, the fastest"),
                            ("kxdu decode", "kxdu decode --jobs 1"), ("kxdu filter", "grep -v -F -w -f")):
            if written(by_name[left]) != written(by_name[right]):
                raise RuntimeError(f"{left} and {right} write different things")
        # grep stops at the first match if it writes to /dev/null, and a disk would set the pace.
        with (tempfile.NamedTemporaryFile(dir="/dev/shm") as memory,
              tempfile.NamedTemporaryFile(dir="/dev/shm") as other):
            end = time.monotonic() + seconds
            while time.monotonic() < end:
                for run in min(groups, key=time_of_each):
                    is_kept = run.name.startswith(("kxdu filter", "grep"))
                    run.run([memory.name, other.name] if is_kept else [os.devnull, os.devnull])
        return by_name


def time_of_each(group):
    return sum(sum(run.times) for run in group) / len(group)


def gain(runs, verb, programs=False):
    """Returns how many times as much two processors do as one: with two jobs, or with two programs."""
    alone, both = runs[f"kxdu {verb} --jobs 1"], runs[f"kxdu {verb}" + (" --jobs 1, two at once" if programs else "")]
    return statistics.median(both.at_once * one / two for one, two in zip(alone.times, both.times))


def limits_of(runs):
    """Returns the limits as (text, whether it is kept)."""
    def times(slow, fast):
        return runs[slow].seconds / runs[fast].seconds
    limits = []

    def demand(text, value, least):
        limits.append((f"{text}: {value:.2f} times as fast, at least {least}", value >= least))
    demand("kxdu get, beside the shortest mawk program", times("mawk, the shortest", "kxdu get NE,PP:2"), 3)
    demand("kxdu decode, beside mawk's get", times("mawk, the shortest", "kxdu decode"), 1)
    demand("kxdu filter, beside grep", times("grep -v -F -w -f", "kxdu filter"), 1)
    for verb in VERBS:
        demand(f"kxdu {verb} on two cores, beside one", gain(runs, verb), LEAST_GAIN)
        memory = runs[f"kxdu {verb}"].memory
        limits.append((f"kxdu {verb}: {memory:.0f} MiB at most, below {MOST_MEMORY}", memory < MOST_MEMORY))
    return limits


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("kxdu")
    parser.add_argument("--identifiers", type=int, default=5_000_000)
    parser.add_argument("--seconds", type=int, default=420)
    parser.add_argument("--json")
    options = parser.parse_args()
    # The limits are for two cores, however many there are. The commands inherit this.
    os.sched_setaffinity(0, sorted(os.sched_getaffinity(0))[:2])
    runs = measure(options.kxdu, options.identifiers, options.seconds)
    limits = limits_of(runs)
    millions = options.identifiers / 1e6
    title = f"{millions:g} million identifiers"
    rows = [(run.name, f"{run.seconds:.2f}", f"{run.cpu_seconds:.2f}", f"{run.at_once * millions / run.seconds:.2f}",
             f"{run.memory:.0f}") for run in runs.values()]
    for name, *figures in [(title, "s", "s of CPU", "million/s", "MiB")] + rows:
        print(name.ljust(40) + "".join(figure.rjust(13) for figure in figures))
    gains = [(f"kxdu {verb}", f"{gain(runs, verb):.2f}", f"{gain(runs, verb, programs=True):.2f}") for verb in VERBS]
    for name, *figures in [("what two cores give", "two jobs", "two programs")] + gains:
        print(name.ljust(40) + "".join(figure.rjust(13) for figure in figures))
    if options.json:
        write_json(options.json,
                   {"identifiers": options.identifiers,
                    "gains": {verb: {"two_jobs": gain(runs, verb), "two_programs": gain(runs, verb, programs=True)}
                              for verb in VERBS},
                    "rows": [{"name": run.name, "at_once": run.at_once, "seconds": run.seconds,
                              "cpu_seconds": run.cpu_seconds, "mebibytes": run.memory} for run in runs.values()]},
                   limits)
    return tell(limits)


if __name__ == "__main__":
    sys.exit(main())
