"""Where measured figures go. What is demanded of them is a list of (text, whether it is kept)."""
import json
import pathlib


def write_json(file, report, limits):
    """Writes report as JSON, with the limits behind it."""
    report = {**report, "limits": [{"limit": text, "kept": is_kept} for text, is_kept in limits]}
    pathlib.Path(file).write_text(json.dumps(report, indent=1), encoding="utf-8")


def replace_between_marks(document, subject, figures):
    """Puts figures, which are Markdown, between the marks "figures of SUBJECT" in a document."""
    path = pathlib.Path(document)
    begin, end = f"<!-- figures of {subject}: begin -->\n", f"<!-- figures of {subject}: end -->"
    before, rest = path.read_text(encoding="utf-8").split(begin)
    after = rest.split(end)[1]
    path.write_text(before + begin + figures + end + after, encoding="utf-8")


def tell(limits):
    """Prints which limits are missed, and how many are kept. Returns the exit code."""
    missed = [text for text, is_kept in limits if not is_kept]
    print()
    for text in missed:
        print("missed: " + text)
    print(f"{len(limits) - len(missed)} of {len(limits)} limits kept")
    return 1 if missed else 0
