#!/usr/bin/env python3
"""Writes each seed of a corpus into a file of its own, as libFuzzer wants them.

    seeds.py CORPUS FOLDER

A corpus has one seed on each line. Blank lines and lines that begin with "#" separate seeds.

    \\n  \\r  \\t  \\\\    line feed, carriage return, tabulator, backslash
    \\xHH              the byte with these two hexadecimal digits
    \\ at the end      the seed goes on in the next line
"""
import pathlib
import re
import sys

LINE = re.compile(r"(?:[^\\\n]|\\.|\\\n)+", re.DOTALL)
ESCAPE = re.compile(rb"\\(x[0-9a-f]{2}|.)", re.DOTALL)
MEANINGS = {b"n": b"\n", b"r": b"\r", b"t": b"\t", b"\\": b"\\", b"\n": b""}


def meaning(escape):
    character = escape.group(1)
    if len(character) == 3:
        return bytes.fromhex(character[1:].decode())
    if character not in MEANINGS:
        raise ValueError(f"unknown escape: {escape.group().decode()}")
    return MEANINGS[character]


def seeds_of(corpus):
    return [ESCAPE.sub(meaning, line.encode()) for line in LINE.findall(corpus) if not line.startswith("#")]


def main():
    corpus, folder = map(pathlib.Path, sys.argv[1:])
    folder.mkdir(parents=True, exist_ok=True)
    for number, seed in enumerate(seeds_of(corpus.read_bytes().decode()), 1):
        (folder / f"{number:03}").write_bytes(seed)


if __name__ == "__main__":
    main()
