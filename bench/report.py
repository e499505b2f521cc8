#!/usr/bin/env python3
"""Prints a table of what kx_bench measured, and the missed limits. Exits with 1 if there is one.

    report.py ALLOCATIONS TIMES... [--json FILE] [--svg FILE] [--no-limits]

ALLOCATIONS is the JSON that kx_bench_allocations wrote. Each of TIMES is one that kx_bench wrote: one round. The
fastest repetition of all rounds counts. Within a round, the runs on one and on two threads follow each other, so that
the machine is in the same state. The gain of two threads is the median of the rounds' ratios.
"""
import argparse
import json
import pathlib
import re
import statistics
import sys
from xml.sax.saxutils import escape

from figures import tell, write_json

# A conversion must be at least so many times as fast as its literal counterpart.
LEAST_RATIOS = {
    "ResID2PortIndex(PortIndex)": 20, "ResID2PortIndex(CtpKey_T)": 20, "ResID2TPIndex": 20, "ResID2APIndex": 15,
    "ResID2NEIndex": 40, "ResID2SubSlotIndex": 25, "ResID2MAIndex": 12, "ResID2MepIndex": 5, "ResID2SVCIndex": 12,
    "ResID2TunnelIndex": 10, "PortIndex2ResID(PortIndex)": 12, "PortIndex2ResID(CtpKey_T)": 12, "TPIndex2ResID": 12,
    "CardIndex2ResID": 10, "MepIndex2ResID": 8,
}
# No slower than their literal counterparts, which are called in the same way; NOISE is what two runs of the same code
# may differ by.
NOT_SLOWER = (
    "IsPTNAIDFBType", "IsPortObjByFbType", "InterfaceLevel2FBType", "InterfaceCTPId2TMFName", "SetTpNo",
    "IsTiRoadmOpticalBoard", "IsPTN41", "IsPTN31", "IsPTN470", "IsKLVByNEType",
)
NOISE = 1.05
MOST_NANOSECONDS = {"IsFilteNtf, nothing held back": 15}
# Two threads must convert at least so many times as much as one.
LEAST_GAIN = 1.8
CONVERSIONS = ("readers", "writers")
# Groups that must not allocate. The grammar is not among them: it returns maps and lists.
NOT_ALLOCATING = ("readers", "writers", "predicates", "look-ups", "filter")
# The group with a row for each number of threads.
ON_THREADS = "threads"
# There, a call may take so many times the processor's time that it takes on one thread.
MOST_GROWTH = 1.2
THREADS_NAME = re.compile(r"(.*) on (\d+) threads?")
# At most so many times the time of counting the commas of the same texts byte by byte.
COMMAS = "60-byte port, commas counted"
MOST_TIMES_COMMAS = {"60-byte port, read": 1.5, "60-byte port, written": 2.0}


def measured(file):
    """The benchmarks of a file by (function, variant, threads), each with its repetitions."""
    runs = {}
    for run in json.loads(pathlib.Path(file).read_text(encoding="utf-8"))["benchmarks"]:
        if run["run_type"] != "iteration":
            continue
        function, variant, threads = re.fullmatch(r"(.*)/(\w+)/real_time/threads:(\d)", run["run_name"]).groups()
        runs.setdefault((function, variant, int(threads)), []).append(run)
    return runs


def least(runs, field):
    """Nanoseconds of a call in the least disturbed repetition."""
    return min(run[field] / run["calls"] for run in runs)


def gain_of_two_threads(rounds, function):
    """How many times as much two threads convert as one: the median of the rounds."""
    one, two = ([least(runs[function, "library", threads], "real_time") for runs in rounds] for threads in (1, 2))
    return statistics.median(alone / both for alone, both in zip(one, two))


def rows_of(rounds, allocations):
    times = {key: [run for runs in rounds for run in runs[key]] for key in rounds[0]}
    rows = []
    for function, variant, threads in allocations:
        runs = times[function, variant, threads]
        group = runs[0]["label"]
        if variant != "library" or (threads != 1 and group != ON_THREADS):
            continue
        row = {"function": function, "group": group, "ns": least(runs, "cpu_time")}
        if runs[0]["bytes"]:
            row["bytes"] = runs[0]["bytes"]
            row["megabytes_a_second"] = 1000 * row["bytes"] / row["ns"]
        literal = times.get((function, "literal", 1))
        if literal:
            row["literal_ns"] = least(literal, "cpu_time")
            row["ratio"] = row["literal_ns"] / row["ns"]
        if threads == 1 and (function, "library", 2) in times:
            row["gain_of_two_threads"] = gain_of_two_threads(rounds, function)
        row["allocations"] = allocations[function, variant, threads][0]["allocations"]
        rows.append(row)
    return rows


def limits_of(rows):
    """Returns the limits as (text, whether it is kept)."""
    limits = []
    by_function = {row["function"]: row for row in rows}
    for function, ratio in LEAST_RATIOS.items():
        value = by_function[function]["ratio"]
        limits.append((f"{function}: {value:.1f} times as fast as its literal counterpart, at least {ratio}",
                       value >= ratio))
    for function in NOT_SLOWER:
        value = 1 / by_function[function]["ratio"]
        limits.append((f"{function}: {value:.2f} times the time of its literal counterpart, at most 1, and "
                       f"{NOISE - 1:.0%} of noise", value <= NOISE))
    for function, most in MOST_NANOSECONDS.items():
        value = by_function[function]["ns"]
        limits.append((f"{function}: {value:.1f} ns, at most {most}", value <= most))
    for row in rows:
        if row["group"] in CONVERSIONS:
            value = row["gain_of_two_threads"]
            limits.append((f"{row['function']}: two threads convert {value:.2f} times what one does, "
                           f"at least {LEAST_GAIN}", value >= LEAST_GAIN))
        if row["group"] == ON_THREADS:
            call, threads = THREADS_NAME.fullmatch(row["function"]).groups()
            value = row["ns"] / by_function[f"{call} on 1 thread"]["ns"]
            if threads != "1":
                limits.append((f"{row['function']}: {value:.2f} times the time of one thread, at most {MOST_GROWTH}",
                               value <= MOST_GROWTH))
        if row["group"] in NOT_ALLOCATING:
            limits.append((f"{row['function']}: {row['allocations']:g} allocations a call, none",
                           row["allocations"] == 0))
    for function, most in MOST_TIMES_COMMAS.items():
        value = by_function[function]["ns"] / by_function[COMMAS]["ns"]
        limits.append((f"{function}: {value:.2f} times what counting its commas costs, at most {most}", value <= most))
    return limits


def cells(row):
    def shown(key, form):
        return form.format(row[key]) if key in row else "–"
    return [row["function"], shown("ns", "{:.1f}"), shown("megabytes_a_second", "{:.0f}"),
            shown("literal_ns", "{:.1f}"), shown("ratio", "{:.1f}"), shown("allocations", "{:.3g}"),
            shown("gain_of_two_threads", "{:.2f}")]


HEADS = ["", "ns", "MB/s", "literal ns", "ratio", "allocations", "2 threads"]


def text_table(rows):
    lines = []
    group = None
    width = max(len(row["function"]) for row in rows) + 2
    for row in rows:
        if row["group"] != group:
            group = row["group"]
            lines += ["", group.ljust(width) + "".join(head.rjust(12) for head in HEADS[1:])]
        first, *others = cells(row)
        lines.append("  " + first.ljust(width - 2) + "".join(cell.rjust(12) for cell in others))
    return "\n".join(lines)


def chart(rows):
    """Draws the ratios as bars, with a stroke at each limit."""
    bars = [row for row in rows if row["group"] in CONVERSIONS]
    left, right, step, top = 230, 130, 18, 58
    width, height = 900, top + step * (len(bars) + 1) + 22
    longest = max(row["ratio"] for row in bars)
    scale = (width - left - right) / longest
    parts = [f"""<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" font-family="sans-serif" font-size="12">
<style>
  text {{ fill: #24292f }} .faint {{ fill: #57606a }} .ground {{ fill: #ffffff }}
  .readers {{ fill: #2f81c7 }} .writers {{ fill: #3a9a68 }} .limit {{ stroke: #cf222e; stroke-width: 2 }}
  @media (prefers-color-scheme: dark) {{
    text {{ fill: #e6edf3 }} .faint {{ fill: #9198a1 }} .ground {{ fill: #0d1117 }} .limit {{ stroke: #ff7b72 }}
  }}
</style>
<rect class="ground" width="{width}" height="{height}"/>
<text x="16" y="24" font-size="15">How many times as fast as its literal counterpart each conversion is</text>
<text x="16" y="42" class="faint">and what one call costs; the stroke is the least that a ratio may be</text>"""]
    y = top
    group = None
    for row in bars:
        if group not in (None, row["group"]):
            y += step
        group = row["group"]
        length = row["ratio"] * scale
        parts.append(f'<text x="{left - 8}" y="{y + 12}" text-anchor="end">{escape(row["function"])}</text>'
                     f'<rect class="{group}" x="{left}" y="{y + 2}" width="{length:.1f}" height="{step - 5}" rx="2"/>')
        limit = LEAST_RATIOS.get(row["function"])
        if limit:
            x = left + limit * scale
            parts.append(f'<line class="limit" x1="{x:.1f}" x2="{x:.1f}" y1="{y}" y2="{y + step - 1}"/>')
        x = left + max(length, (limit or 0) * scale) + 6
        parts.append(f'<text x="{x:.1f}" y="{y + 12}">{row["ratio"]:.1f}×'
                     f'<tspan class="faint" dx="9">{row["ns"]:.1f} ns</tspan></text>')
        y += step
    parts.append("</svg>\n")
    return "\n".join(parts)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("allocations")
    parser.add_argument("times", nargs="+")
    parser.add_argument("--json")
    parser.add_argument("--svg", help="draw the ratios")
    parser.add_argument("--no-limits", action="store_true")
    options = parser.parse_args()
    rows = rows_of([measured(file) for file in options.times], measured(options.allocations))
    limits = limits_of(rows)
    print(text_table(rows))
    if options.json:
        write_json(options.json, {"rows": rows}, limits)
    if options.svg:
        pathlib.Path(options.svg).write_text(chart(rows), encoding="utf-8")
    if options.no_limits:
        return 0
    return tell(limits)


if __name__ == "__main__":
    sys.exit(main())
