#!/usr/bin/env python3
"""Makes the report on what kx_bench measured: a table, JSON and a bar chart; and tells which limits are missed.

    report.py TIMES ALLOCATIONS [--json FILE] [--svg FILE] [--document FILE] [--no-limits]

TIMES and ALLOCATIONS are what kx_bench and kx_bench_allocations wrote as JSON. --document FILE replaces what stands
between the marks "figures of the library" in FILE. Ends with 1 when a limit is missed.
"""
import argparse
import json
import pathlib
import re
import sys
from xml.sax.saxutils import escape

from figures import replace_between_marks, tell, write_json

# How many times as fast as its literal counterpart a conversion is, at least.
LEAST_RATIOS = {
    "ResID2PortIndex(PortIndex)": 20, "ResID2PortIndex(CtpKey_T)": 20, "ResID2TPIndex": 20, "ResID2APIndex": 15,
    "ResID2NEIndex": 40, "ResID2SubSlotIndex": 25, "ResID2MAIndex": 12, "ResID2MepIndex": 5, "ResID2SVCIndex": 12,
    "ResID2TunnelIndex": 10, "PortIndex2ResID(PortIndex)": 12, "PortIndex2ResID(CtpKey_T)": 12, "TPIndex2ResID": 12,
    "CardIndex2ResID": 10, "MepIndex2ResID": 8,
}
# How many times as much two threads convert as one.
LEAST_GAIN = 1.8
CONVERSIONS = ("readers", "writers")
# Those that must not allocate; what the grammar gives are maps and lists, which do.
NOT_ALLOCATING = ("readers", "writers", "predicates", "look-ups", "filter")
# Measured on many threads, each number of them under a name of its own.
ON_THREADS = "threads"
# How much more time of the processor a call may take then than on one; and what the names are made of.
MOST_GROWTH = 1.2
THREADS_NAME = re.compile(r"(.*) on (\d+) threads?")
# Against counting the commas of the same texts byte by byte.
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


def rows_of(times, allocations):
    rows = []
    for function, variant, threads in allocations:  # not those of the times, which are in random order
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
        both = times.get((function, "library", 2))
        if both and threads == 1:
            row["gain_of_two_threads"] = least(runs, "real_time") / least(both, "real_time")
        row["allocations"] = allocations[function, variant, threads][0]["allocations"]
        rows.append(row)
    return rows


def limits_of(rows):
    """What is demanded, as (text, whether it is kept)."""
    limits = []
    by_function = {row["function"]: row for row in rows}
    for function, ratio in LEAST_RATIOS.items():
        value = by_function[function]["ratio"]
        limits.append((f"{function}: {value:.1f} times as fast as its literal counterpart, at least {ratio}",
                       value >= ratio))
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


def markdown_table(rows):
    lines = []
    group = None
    for row in rows:
        if row["group"] != group:
            group = row["group"]
            lines += ["", f"| {group} | " + " | ".join(HEADS[1:]) + " |", "|---|" + "--:|" * (len(HEADS) - 1)]
        first, *others = cells(row)
        lines.append(f"| {first} | " + " | ".join(others) + " |")
    return "\n".join(lines) + "\n"


def chart(rows):
    """Bars of the ratios; a stroke where a ratio must reach."""
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
    parser = argparse.ArgumentParser()
    parser.add_argument("times")
    parser.add_argument("allocations")
    parser.add_argument("--json")
    parser.add_argument("--svg")
    parser.add_argument("--document")
    parser.add_argument("--no-limits", action="store_true")
    options = parser.parse_args()
    rows = rows_of(measured(options.times), measured(options.allocations))
    limits = limits_of(rows)
    print(text_table(rows))
    if options.json:
        write_json(options.json, {"rows": rows}, limits)
    if options.svg:
        pathlib.Path(options.svg).write_text(chart(rows), encoding="utf-8")
    if options.document:
        replace_between_marks(options.document, "the library", markdown_table(rows) + "\n")
    if options.no_limits:
        return 0
    return tell(limits)


if __name__ == "__main__":
    sys.exit(main())
