"""Runs commands beside each other: their times, their peaks of memory, and the ratios of neighbouring runs."""
import contextlib
import hashlib
import os
import statistics
import subprocess
import tempfile
import time


class Run:
    """A command that runs once or several times at once, with the times and the peak of memory of its runs.

    `prepare` is called before each run and not measured. A command with `keeps_output` writes to memory instead of
    /dev/null.
    """

    def __init__(self, name, command, at_once=1, prepare=None, keeps_output=False):
        self.name, self.command, self.at_once = name, [str(word) for word in command], at_once
        self.prepare, self.keeps_output = prepare, keeps_output
        self.seconds, self.cpu_seconds, self.mebibytes = [], [], 0.0

    def run(self):
        if self.prepare:
            self.prepare()
        with contextlib.ExitStack() as stack:
            outputs = [stack.enter_context(self.output()) for _ in range(self.at_once)]
            peak = stack.enter_context(tempfile.NamedTemporaryFile(dir="/dev/shm"))
            # A small process starts it: the kernel counts the memory of the starting process as the command's.
            command = ["/usr/bin/time", "-q", "-f", "%M", "-o", peak.name] + self.command
            begin = time.perf_counter()
            processes = [subprocess.Popen(command, stdout=output, stderr=subprocess.DEVNULL,
                                          env=dict(os.environ, LC_ALL="C")) for output in outputs]
            usages = [self.end_of(process) for process in processes]
            self.seconds.append(time.perf_counter() - begin)
            self.mebibytes = max(self.mebibytes, int(peak.read()) / 1024)
        self.cpu_seconds.append(sum(usage.ru_utime + usage.ru_stime for usage in usages))

    def output(self):
        return tempfile.TemporaryFile(dir="/dev/shm") if self.keeps_output else open(os.devnull, "wb")

    def end_of(self, process):
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode != 0:
            raise RuntimeError(f"{self.name} ended with {process.returncode}")
        return usage

    def written(self):
        """Returns the digest of what the command writes."""
        digest = hashlib.sha256()
        with subprocess.Popen(self.command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL) as process:
            while block := process.stdout.read(1 << 20):
                digest.update(block)
        if process.returncode != 0:
            raise RuntimeError(f"{self.name} ended with {process.returncode}")
        return digest.digest()


def compare(runs):
    """Raises an exception unless all runs write the same bytes."""
    first, *others = runs
    expected = first.written()
    for other in others:
        if other.written() != expected:
            raise RuntimeError(f"{first.name} and {other.name} write different things")


def run_in_turns(groups, seconds):
    """Runs whole groups of neighbours, always the one that has run for the least time so far; each at least once."""
    end = time.monotonic() + seconds
    while time.monotonic() < end or not all(group[0].seconds for group in groups):
        for run in min(groups, key=time_of_each):
            run.run()


def time_of_each(group):
    return sum(sum(run.seconds) for run in group) / len(group)


def cpu_ratio(left, right):
    """Returns how many times the processor's time of `right` its neighbour `left` takes."""
    return statistics.median(one / other for one, other in zip(left.cpu_seconds, right.cpu_seconds))


def speed_ratio(left, right):
    """Returns how many times as much `left` does in the same time as its neighbour `right`."""
    return statistics.median(left.at_once * other / (right.at_once * one)
                             for one, other in zip(left.seconds, right.seconds))
