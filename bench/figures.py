"""Writes and checks measured figures. Their limits are a list of (text, whether it is kept)."""
import json
import pathlib


def write_json(file, report, limits):
    """Writes report and limits as JSON."""
    report = {**report, "limits": [{"limit": text, "kept": is_kept} for text, is_kept in limits]}
    pathlib.Path(file).write_text(json.dumps(report, indent=1), encoding="utf-8")


def tell(limits, all_of_them=False):
    """Prints the missed limits, or all of them, and how many are kept. Returns the exit code."""
    missed = [text for text, is_kept in limits if not is_kept]
    print()
    for text, is_kept in limits:
        if all_of_them or not is_kept:
            print(("kept:   " if is_kept else "missed: ") + text)
    print(f"{len(limits) - len(missed)} of {len(limits)} limits kept")
    return 1 if missed else 0
