"""No reference is leaked, threads may do all at once, and a second interpreter is refused."""
import gc
import subprocess
import sys
import threading
import time

import numpy as np
import pytest

import kx_domain_util as kx

PORT = "NE=12,FR=1,S=3,CP=-1,PP=16|1025|7|Münster"
FDNS = [PORT, PORT.encode(), None, "NE=5", "NE=5,PP=||1|\udce4"]
FACTS = {"ne_type": lambda ne: 1887, "oam_numbers_omitted": lambda ne: False, "sub_slot_ne_types": [1887]}


def ignoring(error, function, *arguments):
    """Unlike pytest.raises, this keeps nothing of the error."""
    try:
        function(*arguments)
    except error:
        return
    raise AssertionError(f"{function} did not raise {error}")


def use_everything():
    """Calls each function with what it takes, and with what it refuses after it has taken some."""
    kx.encode(kx.decode(PORT), FACTS)
    kx.decode("NE=5,FR=1,S=3,CP=-1,PP=16||2|,AP=1|2|9")
    for function in (kx.type, kx.kind, kx.explain, kx.check):
        function(PORT)
    kx.check("NE=x,fr=2")
    kx.get(PORT, "PP:3")
    kx.get(PORT, "SS")
    kx.columns(FDNS, {"NE": "int32", "PP:3": "str", "PP": "bytes"})
    kx.columns(b"NE=1\nNE=2,PP=||1|a\n", ["NE", "PP:3"])
    kx.columns(bytearray(b"NE=1NE=2"), ["NE"], np.array([0, 4, 8]))
    ignoring(kx.UnknownType, kx.decode, "x")
    ignoring(kx.WrongType, kx.decode, 7)
    ignoring(UnicodeEncodeError, kx.decode, "\ud800")
    ignoring(kx.NoFacts, kx.encode, kx.decode(PORT))
    ignoring(kx.NotThere, kx.encode, {"type": "NEIndex", "record": {"neId": 1}})
    ignoring(kx.WrongType, kx.encode, {"type": "NEIndex", "record": {"neId": 1, "reserved": "0"}})
    ignoring(ZeroDivisionError, kx.encode, kx.decode(PORT), {**FACTS, "ne_type": lambda ne: ne // 0})
    ignoring(kx.BadArgument, kx.columns, bytearray(b"NE=1"), ["NE", "PP:3"], np.array([0, 9]))
    ignoring(kx.BadArgument, kx.columns, FDNS, ["NE", "ne"])
    ignoring(kx.WrongType, kx.columns, FDNS + [7], ["NE"])


def allocated_blocks(rounds):
    """How many blocks of memory Python holds more after so many rounds."""
    gc.collect()
    before = sys.getallocatedblocks()
    for _ in range(rounds):
        use_everything()
    gc.collect()
    return sys.getallocatedblocks() - before


# ---- References -----------------------------------------------------------------------------------------------------


def test_arguments_are_let_go():
    decoded = kx.decode(PORT)
    offsets, data, pieces = np.array([0, 4]), bytearray(b"NE=1"), ["NE", "PP:3"]
    texts = [fdn for fdn in FDNS if fdn is not None]
    kept = [*texts, decoded, decoded["record"], FDNS, FACTS, FACTS["ne_type"], offsets, data, pieces]
    use_everything()
    before, nones = [sys.getrefcount(each) for each in kept], sys.getrefcount(None)
    for _ in range(500):
        kx.decode(PORT)
        kx.encode(decoded, FACTS)
        kx.columns(FDNS, pieces)
        kx.columns(data, pieces, offsets)
        use_everything()
    assert [sys.getrefcount(each) for each in kept] == before
    assert abs(sys.getrefcount(None) - nones) < 250  # the interpreter uses it for itself, too


def test_results_belong_to_the_caller_alone():
    columns = kx.columns([f"NE={number},PP=||1|name {number}" for number in range(1000, 1100)], ["NE", "PP:3"])
    text = columns["PP:3"].data[7]
    assert sys.getrefcount(text) == 3  # those of the array, of this variable and of the call
    assert sys.getrefcount(columns) == 2
    decoded = kx.decode(PORT)
    record = decoded["record"]
    assert sys.getrefcount(record) == 3  # those of the dict, of this variable and of the call


def test_no_object_is_leaked():
    allocated_blocks(50)  # caches fill
    # A leak shows each time; what caches and other threads keep does not.
    assert min(allocated_blocks(200) for _ in range(3)) < 100


def test_no_memory_is_leaked():
    fdns = [f"NE={number},PP=||{number}|a name of its own {number}" for number in range(50_000)]

    def work():
        for _ in range(5):
            kx.columns(fdns, {"NE": "int32", "PP:3": "str", "PP": "bytes"})
            kx.columns("\n".join(fdns).encode(), ["NE", "PP:3"])
            for fdn in fdns[:2000]:
                kx.encode(kx.decode(fdn), FACTS)

    for _ in range(4):
        work()
    before = resident()
    for _ in range(8):
        work()
    assert resident() - before < 16 * 1024


def resident():
    """The KiB of memory that this process has now."""
    gc.collect()
    with open("/proc/self/status", encoding="utf-8") as status:
        return next(int(line.split()[1]) for line in status if line.startswith("VmRSS"))


def test_failing_memory_is_an_exception_of_its_own():
    """In a process that may not have much more memory than it has."""
    code = """
import resource, kx_domain_util as kx, numpy.ma
lines = b"NE=1\\n" * 20_000_000
used = next(int(line.split()[1]) for line in open("/proc/self/status") if line.startswith("VmSize")) * 1024
resource.setrlimit(resource.RLIMIT_AS, (used + (150 << 20), resource.RLIM_INFINITY))
try:
    kx.columns(lines, {"NE": "bytes"})
except kx.NoMemory as error:
    assert isinstance(error, MemoryError) and isinstance(error, kx.Error)
    print("refused:", error)
print(kx.columns(lines[:10], ["NE"])["NE"].tolist())
"""
    ended = subprocess.run([sys.executable, "-c", code], capture_output=True, text=True, check=True)
    assert ended.stdout == "refused: no memory\n[1, 1]\n"


# ---- Threads --------------------------------------------------------------------------------------------------------


def run_at_once(*functions):
    """Runs each function in a thread of its own; raises what one of them raises."""
    failures = []
    barrier = threading.Barrier(len(functions))

    def run(function):
        try:
            barrier.wait()
            function()
        except BaseException as failure:  # pylint: disable=broad-except
            failures.append(failure)
    threads = [threading.Thread(target=run, args=[function]) for function in functions]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    if failures:
        raise failures[0]


def test_all_functions_work_in_many_threads_at_once():
    run_at_once(*[lambda: [use_everything() for _ in range(30)]] * 8)


def test_columns_of_many_threads_do_not_mix():
    def check(thread):
        def run():
            fdns = [f"NE={thread},PP=||{row}|{thread}/{row}" for row in range(20_000)]
            for _ in range(5):
                columns = kx.columns(fdns, ["NE", "PP:2", "PP:3"])
                assert (columns["NE"] == thread).all()
                assert np.array_equal(columns["PP:2"], np.arange(20_000))
                assert columns["PP:3"][777] == f"{thread}/777"
        return run
    run_at_once(*[check(thread) for thread in range(6)])


def test_a_list_may_change_while_columns_read_it():
    fdns = [f"NE={number}" for number in range(100_000)]
    done = threading.Event()

    def change():
        while not done.is_set():
            del fdns[1000:2000]
            fdns.extend([f"NE={number + 1}" for number in range(1000)])

    def read():
        try:
            for _ in range(100):
                column = kx.columns(fdns, ["NE"])["NE"]
                assert not column.mask.any()
                assert (column[:1000] == np.arange(1000)).all()
        finally:
            done.set()
    run_at_once(change, read)


def test_a_buffer_may_change_while_columns_read_it():
    lines = np.frombuffer(bytearray(b"NE=1,PP=||2|a\n" * 100_000), np.uint8)
    offsets = np.arange(0, len(lines) + 1, 14, dtype=np.int64)
    done = threading.Event()

    def change():
        while not done.is_set():
            lines[:] = ord("\n")
            lines[:] = ord("7")
            offsets[5::7] = 2**40
            offsets[:] = np.arange(0, len(lines) + 1, 14)

    def read():
        refused = 0
        try:
            for _ in range(60):
                kx.columns(lines, ["NE", "PP:3"])
                try:
                    assert len(kx.columns(lines, ["NE", "PP:3"], offsets)["NE"]) == 100_000
                except kx.BadArgument:
                    refused += 1
        finally:
            done.set()
    run_at_once(change, read)


def test_other_threads_run_while_columns_are_read():
    """A thread that counts goes on; it would stand still if the interpreter's lock were held."""
    lines = b"NE=1,FR=1,S=3,CP=-1,PP=16||7|some name\n" * 3_000_000
    ticks = []
    done = threading.Event()

    def tick():
        while not done.is_set():
            ticks.append(time.perf_counter())
            time.sleep(0.001)

    thread = threading.Thread(target=tick)
    thread.start()
    begin = time.perf_counter()
    for _ in range(3):
        kx.columns(lines, ["NE", "PP:2", "PP:0"])
    end = time.perf_counter()
    done.set()
    thread.join()
    inside = [begin] + [moment for moment in ticks if begin <= moment <= end] + [end]
    longest = max(later - earlier for earlier, later in zip(inside, inside[1:]))
    assert longest < (end - begin) / 4, f"of {end - begin:.2f} s, no other thread ran for {longest:.2f} s"


# ---- Interpreters ---------------------------------------------------------------------------------------------------

IN_A_SUBINTERPRETER = """
try:
    import kx_domain_util
except ImportError as error:
    print("refused:", error, flush=True)
"""


@pytest.mark.parametrize("before", ["", "import kx_domain_util as kx"])
def test_a_subinterpreter_is_refused_and_the_main_one_works_on(before):
    code = f"""
import _xxsubinterpreters as interpreters
{before}
for _ in range(2):
    other = interpreters.create()
    interpreters.run_string(other, {IN_A_SUBINTERPRETER!r})
    interpreters.destroy(other)
import kx_domain_util as kx
print(kx.columns(["NE=7"], ["NE"])["NE"].tolist(), kx.type("NE=7"))
"""
    ended = subprocess.run([sys.executable, "-c", code], capture_output=True, text=True, check=True)
    refused = "refused: kx_domain_util works in the main interpreter only, not in a subinterpreter\n"
    assert ended.stdout == refused * 2 + "[7] NEIndex\n"


def test_the_module_can_be_imported_again():
    code = """
import sys, kx_domain_util
for name in [name for name in sys.modules if name.startswith("kx_domain_util")]:
    del sys.modules[name]
import kx_domain_util as kx
try:
    kx.decode("x")
except kx.UnknownType as error:
    print(error)
"""
    ended = subprocess.run([sys.executable, "-c", code], capture_output=True, text=True, check=True)
    assert ended.stdout == 'no kind of identifier ends in the level "x"\n'
