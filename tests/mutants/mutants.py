#!/usr/bin/env python3
"""Makes small changes to a copy of the library's sources and runs its tests on each.

A mutant is one change: an operator, a constant, a condition, two rows of a table, or a dropped step. The script prints
the mutants that no test notices. It fails

  - if the tests notice fewer than 95 % of the mutants,
  - if a mutant survives that survivors.txt does not explain,
  - in a run of all mutants, if survivors.txt explains one that is noticed or gone, or if fewer than 300 are built.

A run of all mutants takes three quarters of an hour. build/mutants/report.txt shows how far it is.
"""
import argparse
import collections
import hashlib
import os
import pathlib
import queue
import re
import resource
import signal
import subprocess
import sys
import threading
import time

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
WORK = ROOT / "build/mutants"
LISTED = HERE / "survivors.txt"
LEAST_KILLED = 95  # percent
LEAST_BUILT = 300  # fewer would say too little

# What is changed, how many mutants each part gets, and the test programs that run first. All others run after those.
Part = collections.namedtuple("Part", "name globs count programs")
PARTS = [
    Part("frame", ("frame/*",), 48, ("frame", "termination", "loadonce", "oamlookup")),
    Part("device", ("device/*",), 22, ("device",)),
    Part("resid", ("resid/*.cpp",), 86, ("resid", "oamlookup", "separatorfinder")),
    Part("scanners", ("resid/*.h", "include/kx_domain_util/*finder.h", "include/kx_domain_util/fdnscanner.h"), 36,
         ("fdnwriter", "separatorfinder", "resid")),
    Part("common", ("common/*.cpp", "common/*.h"), 56, ("common", "loadonce", "exhaustion")),
    Part("tables", ("common/tables.h",), 30, ("common",)),
    Part("platform", ("platform/src/*.cpp",), 66, ("platform", "frame")),
    Part("platform's headers", ("platform/include/kx_platform/*.h",), 26, ("platform", "frame")),
]
# Quick ones first. Those of kxdu and standalone/ are left out: they do not test the library.
PROGRAMS = ["fdnwriter", "device", "loadonce", "oamlookup", "separatorfinder", "frame", "platform", "exhaustion",
            "firstcall", "cost", "termination", "allocation", "resid", "common", "failingmemory", "thread", "churn"]

Mutant = collections.namedtuple("Mutant", "id part path begin end text kind line before after")


# ---- Finding places -------------------------------------------------------------------------------------------------

TOKEN = re.compile(r"""//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|(?<!\w)'(?:\\.|[^'\\\n])'|^[ \t]*\#(?:\\\n|[^\n])*""",
                   re.DOTALL | re.MULTILINE)
# Never changed: what the compiler checks or lays out, memory orders (the thread sanitizer looks after them; no test on
# this processor can), and what only reserves room.
SKIPPED = re.compile(r"static_assert\([^;]*;|std::memory_order_\w+|\[\[.*?\]\]|alignas\(\d+\)|\balignas\b|operator\S+\("
                     r"|std::array<[^;=]*?>|std::bitset<\d+>|__attribute__\(\(.*?\)\)|\bthrow S+;|\)[\w ]* = 0;",
                     re.DOTALL)

SWAPPED = {
    " == ": " != ", " != ": " == ", " < ": " <= ", " <= ": " < ", " > ": " >= ", " >= ": " > ",
    " && ": " || ", " || ": " && ", " + ": " - ", " - ": " + ", " * ": " + ", " / ": " * ", " % ": " / ",
    " << ": " >> ", " >> ": " << ", " & ": " | ", " | ": " & ", " ^ ": " | ",
    " += ": " -= ", " |= ": " &= ", " &= ": " |= ", "++": "--", "--": "++",
}
OPERATOR = re.compile("|".join(re.escape(operator) for operator in sorted(SWAPPED, key=len, reverse=True)))
STATEMENT = re.compile(r"(?<=[;{}:])\s*\n((?:[ \t]*\n)*[ \t]+)([\w*(][^;{}]*;)")
NO_STATEMENT = re.compile(
    r"(?:return|using|const|static|auto|constexpr|throw|case|default|break|continue|delete|else|if|for|while|struct|"
    r"class|typedef|template|friend|extern|explicit|inline|namespace|public|private|virtual|ACE_\w+|thread_local)\b|"
    r"[\w:]+(?:<[^()]*>)?[&*]* (?:const )?[&*]*\w+\s*(?:[;({\[]|= )|[^;]*= (?:delete|default);")
TABLE_ROW = re.compile(r"\{([^{},\n]+), ([^{},\n]+)\}")


def blanked(match):
    """Blanks of the same length for a comment or a directive, Ss for a text, Cs for a character."""
    token = match.group()
    if token[0] in "\"'":
        return ("S" if token[0] == '"' else "C") * len(token)
    return re.sub(r"[^\n]", " ", token)


def places(path, source):
    """Yields (kind, begin, end, replacement) for every small change worth trying."""
    code = TOKEN.sub(blanked, source)
    code = SKIPPED.sub(lambda match: re.sub(r"[^\n]", " ", match.group()), code)
    in_table = "common/tables.h" in path
    logging = [match.span() for match in re.finditer(r"\bWrite(?:Log)?\([^;]*;", code)]

    for match in OPERATOR.finditer(code):
        yield "operator", match.start(), match.end(), SWAPPED[match.group()]
    for match in re.finditer(r"(?<=[\s(])!(?=[\w(])", code):
        yield "operator", match.start(), match.end(), ""
    for match in re.finditer(r"\btrue\b|\bfalse\b", code):
        yield "constant", match.start(), match.end(), "false" if match.group() == "true" else "true"
    for match in re.finditer(r"(?<![\w.])(0x[0-9A-Fa-f]+|\d+)(?=[uUlL]*\b)", code):
        number = int(match.group(), 0) + 1
        yield "constant", match.start(), match.end(), hex(number) if match.group()[1:2] == "x" else str(number)
    for match in re.finditer(r"C{3,4}", code):
        text = source[match.start() + 1:match.end() - 1]
        yield "constant", match.start(), match.end(), "'%s'" % ("#" if text[0] == "\\" else chr(ord(text) + 1))
    for match in re.finditer(r"S{3,}", code):
        text = source[match.start():match.end()]
        if "\\" not in text and not any(begin <= match.start() < end for begin, end in logging):
            yield "constant", match.end() - 2, match.end() - 1, "y" if text[-2] == "x" else "x"

    for match in re.finditer(r"\bif \(([^;{}&|=<>!]*)\) \{", code):
        yield "condition", match.start(1), match.end(1), "!(%s)" % source[match.start(1):match.end(1)]
    for match in re.finditer(r" \? ([^?:;,{}]+|[^?:;,{}]*\([^?:;{}]*\)) : ([^?:;,{}]+)(?=[;,])", code):
        if all(text.count("(") == text.count(")") for text in match.groups()):
            yield ("condition", match.start(), match.end(),
                   " ? %s : %s" % (source[match.start(2):match.end(2)], source[match.start(1):match.end(1)]))
    for match in re.finditer(r"\bcontinue;", code):
        yield "condition", match.start(), match.end(), "break;"

    for match in STATEMENT.finditer(code):
        statement = match.group(2)
        if not NO_STATEMENT.match(statement) and re.search(r"\(| = |\+\+|--|[+|&]= ", statement):
            yield "dropped step", match.start(2), match.end(2), ";"
    for match in re.finditer(r"(?<=\n)[ \t]+break;", code):
        yield "dropped step", match.start(), match.end(), ""

    if in_table:
        rows = list(TABLE_ROW.finditer(code))
        for row, following in zip(rows, rows[1:]):
            first, second = (source[match.start():match.end()] for match in (row, following))
            yield "swapped rows", row.start(), following.end(), second + source[row.end():following.start()] + first
        numbers = list(re.finditer(r"(?<=[ ])\d+(?=,)", code)) if not rows else []
        for number, following in zip(numbers, numbers[1:]):
            if number.group() != following.group():
                yield ("swapped rows", number.start(), following.end(),
                       following.group() + source[number.end():following.start()] + number.group())


def lines_at(source, begin, end):
    first = source.rfind("\n", 0, begin) + 1
    last = source.find("\n", end)
    return first, last if last >= 0 else len(source)


def one_line(text):
    return re.sub(r"\s+", " ", text).strip()


def all_mutants():
    """All mutants by part and kind, in the order of their digests: arbitrary, but the same in each run."""
    found = collections.defaultdict(lambda: collections.defaultdict(list))
    seen = collections.Counter()
    for part in PARTS:
        for path in sorted({path for pattern in part.globs for path in ROOT.glob(pattern) if path.is_file()}):
            name = str(path.relative_to(ROOT))
            source = path.read_text()
            for kind, begin, end, text in places(name, source):
                first, last = lines_at(source, begin, end)
                before = one_line(source[first:last])
                after = one_line(source[first:begin] + text + source[end:last])
                key = "%s\0%s\0%s" % (name, before, after)
                seen[key] += 1
                digest = hashlib.sha256(("%s\0%d" % (key, seen[key])).encode()).hexdigest()
                line = source.count("\n", 0, begin) + 1
                found[part][kind].append(Mutant(digest[:8], part, name, begin, end, text, kind, line, before, after))
    return found


def chosen_mutants():
    """Takes as many mutants of each part as it is given, one of each kind in turn."""
    chosen = []
    for part, kinds in all_mutants().items():
        waiting = [sorted(mutants) for _, mutants in sorted(kinds.items())]
        taken = []
        while len(taken) < part.count and any(waiting):
            taken += [mutants.pop() for mutants in waiting if mutants]
        chosen += taken[:part.count]
    return chosen


# ---- Trying them ----------------------------------------------------------------------------------------------------

class Tree:
    """A scratch copy of the sources with a build of its own."""

    # Fewer rounds of random input are enough here. Failed assertions of the standard library count as noticed.
    FLAGS = "-O0 -g0 -w -D_GLIBCXX_ASSERTIONS -DKX_TEST_FEWER_ROUNDS=1"

    def __init__(self, number):
        self.root = WORK / str(number)
        self.build = self.root / "build"
        self.changed = {}
        self.seconds = {}
        self.environment = dict(os.environ, KX_CHURN_SECONDS="1", CCACHE_BASEDIR=str(self.root), CCACHE_NOHASHDIR="1")

    def copy(self):
        """Brings the copy up to date."""
        listed = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=ROOT, check=True,
                                stdout=subprocess.PIPE, text=True).stdout.split("\n")
        for name in filter(None, listed):
            if (ROOT / name).is_file():
                self.write(name, (ROOT / name).read_bytes())

    def prepare(self, jobs):
        self.run(["cmake", "-S", self.root, "-B", self.build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None",
                  "-DCMAKE_CXX_FLAGS=" + self.FLAGS, "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON",
                  "-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"], 600, True)
        self.run(["ninja", "-C", self.build, "-j%d" % jobs, *map(self.target, PROGRAMS)], 3600, True)

    def pass_all(self):
        """Runs every program on the unchanged sources: it must pass. Keeps how long it takes."""
        for program in PROGRAMS:
            begin = time.monotonic()
            self.run(self.command(program), 600, True)
            self.seconds[program] = time.monotonic() - begin

    def write(self, name, content):
        """Writes a file only if it differs, so that nothing is built again without need."""
        path = self.root / name
        if path.is_file() and path.read_bytes() == content:
            return
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)
        if (ROOT / name).stat().st_mode & 0o100:
            path.chmod(0o755)

    @staticmethod
    def target(program):
        return "kx_%s_tests" % program

    def command(self, program):
        return [self.build / "bin" / self.target(program), "--gtest_fail_fast", "--gtest_brief=1"]

    def run(self, command, seconds, must=False):
        """Returns the exit status, or None if the command took too long. Kills all that the command has started."""
        def limit():
            resource.setrlimit(resource.RLIMIT_AS, (8 << 30, 8 << 30))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

        with open(self.root / "output.txt", "wb") as output:
            process = subprocess.Popen(list(map(str, command)), cwd=self.root, env=self.environment, stdout=output,
                                       stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL, start_new_session=True,
                                       preexec_fn=limit)
            status = None
            waited = 0
            while status is None and waited < seconds:  # a suspended run must not use up the time
                try:
                    status = process.wait(1)
                except subprocess.TimeoutExpired:
                    waited += 1
            try:
                os.killpg(process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            process.wait()
        if must and status != 0:
            tail = (self.root / "output.txt").read_text(errors="replace")[-4000:]
            raise RuntimeError("fails on the unchanged sources: %s: %s\n%s" % (command[0], status, tail))
        return status

    def restore(self, but):
        """Puts back the original of each changed file except `but`, which the next mutant overwrites."""
        for name in [name for name in self.changed if name != but]:
            self.write(name, self.changed.pop(name))

    def attempt(self, mutant):
        self.restore(but=mutant.path)
        original = self.changed.setdefault(mutant.path, (self.root / mutant.path).read_bytes())
        source = original.decode()
        self.write(mutant.path, (source[:mutant.begin] + mutant.text + source[mutant.end:]).encode())
        first = mutant.part.programs
        for program in [*first, *(program for program in PROGRAMS if program not in first)]:
            if self.run(["ninja", "-C", self.build, "-j1", self.target(program)], 600) != 0:
                return "not built", ""
            status = self.run(self.command(program), 20 + 10 * self.seconds[program])
            if status is None:
                return "timed out", program
            if status != 0:
                return "killed", program
        return "survived", ""


def read_listed():
    """Reads the known survivors, lines of "ID file: reason"."""
    if not LISTED.exists():
        return {}
    lines = [line.split(None, 1) for line in LISTED.read_text().splitlines() if line and not line.startswith("#")]
    return {fields[0]: fields[1] for fields in lines}


def describe(mutant):
    return "%s %s:%d  %s  -->  %s" % (mutant.id, mutant.path, mutant.line, mutant.before, mutant.after)


def try_all(mutants, jobs):
    """Returns (mutant, outcome, program) for each, in the order of `mutants`."""
    chunks = queue.SimpleQueue()
    by_path = collections.defaultdict(list)
    for mutant in mutants:
        by_path[mutant.path].append(mutant)
    for _, group in sorted(by_path.items(), key=lambda item: -len(item[1])):
        for begin in range(0, len(group), 8):
            chunks.put(group[begin:begin + 8])
    results = {}
    failures = []
    report = open(WORK / "report.txt", "w", encoding="utf-8")

    def work(tree):
        try:
            tree.pass_all()
            while not failures:
                try:
                    chunk = chunks.get_nowait()
                except queue.Empty:
                    return
                for mutant in chunk:
                    begin = time.monotonic()
                    outcome, program = tree.attempt(mutant)
                    results[mutant.id] = (mutant, outcome, program)
                    print("%-9s %5.1f s %-15s %s" % (outcome, time.monotonic() - begin, program, describe(mutant)),
                          file=report, flush=True)
        except Exception as error:  # the other trees stop, too
            failures.append(error)

    trees = [Tree(number) for number in range(jobs)]
    for tree in trees:  # first of all, so that later edits do not make the trees differ
        tree.copy()
    for tree in trees:
        tree.prepare(jobs)
    threads = [threading.Thread(target=work, args=(tree,)) for tree in trees]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    if failures:
        raise failures[0]
    return [results[mutant.id] for mutant in mutants]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("ids", metavar="ID", nargs="*", help="try only these mutants")
    parser.add_argument("--list", action="store_true", help="print the mutants and try none")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    options = parser.parse_args()

    mutants = chosen_mutants()
    if options.ids:
        mutants = [mutant for mutant in mutants if mutant.id in options.ids]
        if len(mutants) < len(set(options.ids)):
            parser.error("no such mutant: %s" % " ".join(sorted(set(options.ids) - {mutant.id for mutant in mutants})))
    if options.list:
        for mutant in mutants:
            print(describe(mutant))
        return 0

    subprocess.run([ROOT / "scripts/install-deps.sh", "test", "ccache"], check=True)
    WORK.mkdir(parents=True, exist_ok=True)
    begin = time.monotonic()
    results = try_all(mutants, options.jobs)
    listed = read_listed()
    counts = collections.Counter(outcome for _, outcome, _ in results)
    unlisted = 0
    for mutant, outcome, _ in results:
        if outcome == "survived":
            unlisted += mutant.id not in listed
            print("survived: %s\n    %s" % (describe(mutant), listed.get(mutant.id, "NOT EXPLAINED in %s" % LISTED.relative_to(ROOT))))
    built = len(results) - counts["not built"]
    killed = counts["killed"] + counts["timed out"]
    for part in PARTS:
        outcomes = collections.Counter(outcome for mutant, outcome, _ in results if mutant.part == part)
        if outcomes:
            print("%-20s %4d killed, %3d survived" % (part.name, outcomes["killed"] + outcomes["timed out"],
                                                     outcomes["survived"]))
    print("%d mutants (%d more did not build): %d killed (%d of them by time), %d survived; %.1f %%; %.0f minutes" % (
        built, counts["not built"], killed, counts["timed out"], counts["survived"], 100 * killed / max(built, 1),
        (time.monotonic() - begin) / 60))
    stale = sorted(set(listed) - {mutant.id for mutant, outcome, _ in results if outcome == "survived"})
    if stale and not options.ids:
        print("explained, but noticed or gone: %s" % " ".join(stale))
    too_few = built < LEAST_BUILT and not options.ids
    if too_few:
        print("only %d mutants were built, at least %d must be" % (built, LEAST_BUILT))
    is_listed_right = unlisted == 0 and (options.ids or not stale)
    return 0 if is_listed_right and not too_few and 100 * killed >= LEAST_KILLED * built else 1


if __name__ == "__main__":
    sys.exit(main())
