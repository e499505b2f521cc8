#!/usr/bin/env python3
"""Runs clang-tidy on source files, several at a time as one, since reading their headers takes longest.

    tidy.py COMPILE_COMMANDS WORK_FOLDER FILE...

Files of one folder are taken together. If they do not compile together, because names in anonymous namespaces collide,
each is taken alone. Prints the findings, and on the last line the numbers of files without and with findings.
"""
import collections
import concurrent.futures
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys

MOST_AT_ONCE = 12
NOISE = re.compile(r"^\d+ warnings? generated|^Suppressed |^Use -header-filter|^\d+ warnings? treated as errors")


def compiler_options(commands):
    """Returns the compiler options of each file, without its name and its output."""
    options = {}
    for entry in json.loads(commands.read_text(encoding="utf-8")):
        words = shlex.split(entry["command"])[1:]
        kept = [word for before, word in zip([""] + words, words)
                if word not in ("-o", "-c", entry["file"]) and before != "-o"]
        options.setdefault(os.path.realpath(entry["file"]), kept)
    return options


def chunks_of(files, options):
    """Yields files of one folder with equal options, and these options."""
    folders = collections.defaultdict(list)
    for file in files:
        folders[os.path.dirname(file), tuple(options[file])].append(file)
    for (_, kept), group in folders.items():
        for begin in range(0, len(group), MOST_AT_ONCE):
            yield group[begin:begin + MOST_AT_ONCE], kept


def findings_in(source, options):
    # The analyzer skips functions of included files unless it is told not to.
    run = subprocess.run(["clang-tidy-14", "--config-file=.clang-tidy", "--quiet", "--warnings-as-errors=*", source,
                          "--", "-Xclang", "-analyzer-opt-analyze-headers", *options],
                         stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    if run.returncode == 0:
        return ""
    findings = "\n".join(line for line in run.stdout.splitlines() if not NOISE.match(line))
    return findings or f"{source}: clang-tidy failed"


def compile_together(source, options):
    return subprocess.run(["clang++-14", *options, "-w", "-fsyntax-only", source], stderr=subprocess.DEVNULL,
                          check=False).returncode == 0


def check(number, chunk, options, work):
    """Returns the findings in a chunk and the number of its files that have some."""
    if len(chunk) > 1:
        together = work / f"{number}.cpp"
        together.write_text("".join(f'#include "{file}"  // NOLINT(bugprone-suspicious-include)\n' for file in chunk),
                            encoding="utf-8")
        if compile_together(together, options):
            findings = findings_in(together, options)
            named = sum(file in findings for file in chunk)
            return findings, max(named, 1) if findings else 0
    each = [findings_in(file, options) for file in chunk]
    return "\n".join(filter(None, each)), sum(map(bool, each))


def main():
    commands, work = map(pathlib.Path, sys.argv[1:3])
    files = [os.path.realpath(file) for file in sys.argv[3:]]
    options = compiler_options(commands)
    work.mkdir(parents=True, exist_ok=True)
    bad = sum(file not in options for file in files)
    for file in files:
        if file not in options:
            print(f"{file}: no target compiles it")
    chunks = sorted(chunks_of([file for file in files if file in options], options), key=lambda chunk: -len(chunk[0]))
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for findings, count in pool.map(lambda item: check(item[0], *item[1], work), enumerate(chunks)):
            if findings:
                print(findings)
            bad += count
    print(len(files) - bad, bad)


if __name__ == "__main__":
    main()
