#!/usr/bin/env python3
"""Measures columns of kx_domain_util beside one search of a compiled regular expression for each identifier.

    python.py KXDU [--identifiers N] [--seconds N] [--no-limits] [--json FILE]

The regular expression finds the number of the NE, and the FB type and number of its port, if it has one. It is right
for identifiers in which no port comes before its NE. All candidates take turns, so that each gets its share of the
machine's quiet moments; the fastest turn of each counts. First, their results are compared. Needs the package in
PYTHONPATH. Exits with 1 if a limit is missed.
"""
import argparse
import os
import re
import subprocess
import sys
import time

import numpy

import kx_domain_util as kx
from figures import tell, write_json

PIECES = ["NE", "PP:1", "PP:2"]
SEARCH = re.compile(r"(?:^|,)NE=([^,]*)(?:.*,PP=[^|,]*\|([^|,]*)\|([^|,]*))?").search
LEAST_GAIN = 5
COLUMNS = "columns of"
TEXTS = f"{COLUMNS} bytes of lines, as texts"  # each object is made under the interpreter's lock: no limit
TO_LISTS = "re.search, to three lists of texts"
ALONE = "re.search, what it finds thrown away"


def search_to_lists(fdns):
    first, second, third = [], [], []
    for fdn in fdns:
        found = SEARCH(fdn)
        if found:
            one, two, three = found.groups()
            first.append(one)
            second.append(two)
            third.append(three)
        else:
            first.append(None)
            second.append(None)
            third.append(None)
    return first, second, third


def search_alone(fdns):
    for fdn in fdns:
        SEARCH(fdn)


def works(kxdu, identifiers):
    """What is measured, as (name, function); and the identifiers as a list."""
    lines = subprocess.run([kxdu, "sample", "--identifiers", str(identifiers)], stdout=subprocess.PIPE,
                           check=True).stdout
    fdns = lines.decode("utf-8").splitlines()
    texts = lines.replace(b"\n", b"")
    offsets = numpy.zeros(len(fdns) + 1, numpy.int32)
    numpy.cumsum([len(fdn) for fdn in lines.splitlines()], out=offsets[1:])
    return [
        (ALONE, lambda: search_alone(fdns)),
        (TO_LISTS, lambda: search_to_lists(fdns)),
        (f"{COLUMNS} a list of str", lambda: kx.columns(fdns, PIECES)),
        (f"{COLUMNS} bytes of lines", lambda: kx.columns(lines, PIECES)),
        (f"{COLUMNS} a buffer and offsets", lambda: kx.columns(texts, PIECES, offsets)),
        (TEXTS, lambda: kx.columns(lines, {piece: "str" for piece in PIECES})),
    ], fdns


def compare(measured, fdns):
    """Raises an exception unless all find the same."""
    expected = search_to_lists(fdns)
    for name, work in measured:
        if not name.startswith(COLUMNS):
            continue
        for piece, texts in zip(PIECES, expected):
            column = work()[piece]
            is_number = column.dtype == numpy.int32
            wanted = [None if text in (None, "-1", "4294967295") or (is_number and not text)
                      else int(text) if is_number else text for text in texts]
            if column.tolist() != wanted:
                raise RuntimeError(f"{name}: {piece} differs from what re finds")


def measure(measured, seconds):
    """The seconds of each work's fastest turn."""
    fastest = {name: float("inf") for name, _ in measured}
    end = time.monotonic() + seconds
    while True:
        for name, work in measured:
            begin = time.perf_counter()
            work()
            fastest[name] = min(fastest[name], time.perf_counter() - begin)
        if time.monotonic() >= end:
            return fastest


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("kxdu")
    parser.add_argument("--identifiers", type=int, default=2_000_000)
    parser.add_argument("--seconds", type=int, default=60)
    parser.add_argument("--no-limits", action="store_true")
    parser.add_argument("--json")
    options = parser.parse_args()
    measured, fdns = works(options.kxdu, options.identifiers)
    compare(measured, fdns)
    fastest = measure(measured, options.seconds)
    print(f"{options.identifiers:,} identifiers, {len(os.sched_getaffinity(0))} cores".ljust(44) +
          f"{'s':>8}{'times as fast as to lists':>28}{'as alone':>12}")
    for name, seconds in fastest.items():
        print(f"{name:44}{seconds:8.3f}{fastest[TO_LISTS] / seconds:28.1f}{fastest[ALONE] / seconds:12.1f}")
    limits = [(f"{name}: {fastest[TO_LISTS] / seconds:.1f} times as fast as {TO_LISTS}, at least {LEAST_GAIN}",
               fastest[TO_LISTS] / seconds >= LEAST_GAIN)
              for name, seconds in fastest.items() if name.startswith(COLUMNS) and name != TEXTS]
    if options.json:
        write_json(options.json, {"identifiers": options.identifiers, "seconds": fastest}, limits)
    return 0 if options.no_limits else tell(limits)


if __name__ == "__main__":
    sys.exit(main())
