"""Columns: what they take, what they give, and what they refuse."""
import array
import mmap
import os
import random
import tempfile
import types

import numpy as np
import pytest

import kx_domain_util as kx

FDNS = ["NE=12,FR=1,S=3,CP=-1,PP=16||7|", "NE=5,LP=|65547|3|vlanif", "OS=1", "NE=5,PP=||4294967295|Münster"]


def lists(columns):
    """Columns as lists, with None where they are masked."""
    return {piece: column.tolist() for piece, column in columns.items()}


# ---- What they give -------------------------------------------------------------------------------------------------


def test_numbers_are_int32_and_other_pieces_are_str():
    columns = kx.columns(FDNS, ["NE", "PP:2", "PP:3", "PP"])
    assert lists(columns) == {"NE": [12, 5, None, 5], "PP:2": [7, None, None, None], "PP:3": ["", None, None, "Münster"],
                              "PP": ["16||7|", None, None, "||4294967295|Münster"]}
    assert columns["NE"].dtype == columns["PP:2"].dtype == np.int32
    assert columns["PP:3"].dtype == columns["PP"].dtype == object


def test_a_dict_chooses_the_type_of_each_column():
    columns = kx.columns(FDNS, {"NE": "bytes", "PP:2": "str", "PP:3": "bytes", "PP": "int32"})
    assert lists(columns) == {"NE": [b"12", b"5", None, b"5"], "PP:2": ["7", None, None, None],
                              "PP:3": [b"", None, None, "Münster".encode()], "PP": [16, None, None, 0]}


def test_any_mapping_does_for_a_dict():
    assert lists(kx.columns(FDNS, types.MappingProxyType({"NE": "bytes"}))) == {"NE": [b"12", b"5", None, b"5"]}


def test_a_masked_number_is_minus_one_and_a_masked_text_as_it_stands():
    columns = kx.columns(FDNS, {"CP": "str", "PP:2": "int32"})
    assert columns["CP"].mask.tolist() == [True] * 4
    assert columns["CP"].data.tolist() == ["-1", "", "", ""]
    assert columns["CP"].filled().tolist() == [""] * 4
    assert columns["PP:2"].filled().tolist() == [7, -1, -1, -1]


def test_arrays_are_writable_and_own_their_memory():
    columns = kx.columns(FDNS, ["NE", "PP:3"])
    columns["NE"][0] = 99
    columns["PP:3"][2] = "new"
    assert columns["NE"].tolist() == [99, 5, None, 5]
    assert columns["PP:3"].tolist() == ["", None, "new", "Münster"]


def test_pieces_keep_their_order_and_may_be_none_at_all():
    assert list(kx.columns(FDNS, ["PP:2", "NE", "LP"])) == ["PP:2", "NE", "LP"]
    assert list(kx.columns(FDNS, ("NE", "NE"))) == ["NE"]
    assert kx.columns(FDNS, []) == {}


def test_pieces_of_one_level_do_not_disturb_each_other():
    pieces = ["PP:3", "PP:0", "PP", "NE", "PP:2"]
    for _ in range(10):
        random.shuffle(pieces)
        columns = kx.columns(["NE=1,PP=16|17|18|19"], {piece: "str" for piece in pieces})
        assert lists(columns) == {piece: [kx.get("NE=1,PP=16|17|18|19", piece)] for piece in pieces}


# ---- What they take -------------------------------------------------------------------------------------------------


def test_other_sequences_of_texts_are_taken_too():
    expected = [12, 5, None, 5]
    for data in (tuple(FDNS), iter(FDNS), np.array(FDNS), np.array(FDNS, dtype=object),
                 [fdn.encode() for fdn in FDNS], np.array([fdn.encode() for fdn in FDNS])):
        assert kx.columns(data, ["NE"])["NE"].tolist() == expected


def test_none_in_a_list_is_no_identifier():
    assert lists(kx.columns([None, "NE=1"], {"NE": "int32", "PP": "str"})) == {"NE": [None, 1], "PP": [None, None]}


def test_every_buffer_of_bytes_is_lines():
    lines = b"NE=1\nNE=2\n"
    with tempfile.TemporaryFile() as file:
        file.write(lines)
        file.flush()
        mapped = mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ)
        for data in (lines, bytearray(lines), memoryview(lines), np.frombuffer(lines, np.uint8), mapped,
                     array.array("b", lines)):
            assert kx.columns(data, ["NE"])["NE"].tolist() == [1, 2]
        del data
        mapped.close()


@pytest.mark.parametrize("lines, expected", [
    (b"", []), (b"\n", [None]), (b"NE=1", [1]), (b"NE=1\r\nNE=2\r\n", [1, 2]), (b"NE=1\n\nNE=2", [1, None, 2]),
    (b"\xef\xbb\xbfNE=1\n", [1]), (b"\xef\xbb\xbf", []), (b"NE=1\n\xef\xbb\xbfNE=2\n", [1, None]),
    (b"\r\n\r", [None, None]), (b"NE=1\0\nNE=2", [1, 2])])
def test_lines_end_as_they_do_for_the_tool(lines, expected):
    assert kx.columns(lines, ["NE"])["NE"].tolist() == expected


def test_the_end_of_a_line_is_no_part_of_its_last_piece():
    columns = kx.columns(b"NE=1,PP=||1|a\r\nNE=1,PP=||1|b\nNE=1,PP=||1|c\r", {"PP:3": "bytes"})
    assert columns["PP:3"].tolist() == [b"a", b"b", b"c\r"]


def test_very_long_lines_are_lines():
    long = b"NE=1," + b"x" * 3_000_000 + b",PP=||7|"
    columns = kx.columns(b"\n".join([long, b"NE=2", long]) + b"\n", ["NE", "PP:2"])
    assert lists(columns) == {"NE": [1, 2, 1], "PP:2": [7, None, 7]}


def test_rows_are_in_order_whichever_thread_reads_them():
    count = 300_000
    fdns = [f"NE={number},PP=||{number % 7}|name {number}" for number in range(count)]
    joined = "".join(fdns).encode()
    offsets = np.cumsum([0] + [len(fdn) for fdn in fdns])
    for data, given in ((fdns, None), ("\n".join(fdns).encode(), None), (joined, offsets)):
        columns = kx.columns(data, ["NE", "PP:2", "PP:3"], given)
        assert np.array_equal(columns["NE"], np.arange(count))
        assert np.array_equal(columns["PP:2"], np.arange(count) % 7)
        assert columns["PP:3"].tolist() == [f"name {number}" for number in range(count)]


@pytest.mark.parametrize("kind", [np.int32, np.int64])
def test_offsets_may_begin_and_end_inside_the_buffer(kind):
    offsets = np.array([2, 6, 6, 10], dtype=kind)
    assert kx.columns(b"..NE=1NE=2..", ["NE"], offsets)["NE"].tolist() == [1, None, 2]
    assert kx.columns(b"..NE=1NE=2..", ["NE"], offsets[:1])["NE"].tolist() == []
    assert kx.columns(bytearray(b"NE=1NE=2"), ["NE"], array.array("i", [0, 4, 8]))["NE"].tolist() == [1, 2]


def test_a_text_between_offsets_keeps_its_line_end():
    columns = kx.columns(b"NE=1,PP=||1|a\r\n", {"PP:3": "bytes"}, np.array([0, 15]))
    assert columns["PP:3"].tolist() == [b"a\r\n"]


# ---- What they refuse -----------------------------------------------------------------------------------------------


@pytest.mark.parametrize("error, arguments", [
    (kx.WrongType, ("NE=1", ["NE"])),
    (kx.WrongType, (["NE=1", 7], ["NE"])),
    (kx.WrongType, (array.array("i", [1, 2]), ["NE"])),
    (kx.WrongType, (b"NE=1", "NE")),
    (kx.WrongType, (b"NE=1", [7])),
    (kx.WrongType, (b"NE=1", {"NE": int})),
    (kx.WrongType, (["NE=1"], ["NE"], np.array([0, 4]))),
    (kx.WrongType, (b"NE=1", ["NE"], [0, 4])),
    (kx.WrongType, (b"NE=1", ["NE"], np.array([0, 4], dtype=np.uint32))),
    (kx.WrongType, (b"NE=1", ["NE"], np.array([0, 4], dtype=np.int16))),
    (kx.WrongType, (b"NE=1", ["NE"], np.array([0.0, 4.0]))),
    (kx.WrongType, (b"NE=1", ["NE"], np.array([[0, 4]]))),
    (kx.WrongType, (b"NE=1", ["NE"], np.array([0, 4]).astype(">i4"))),
    (kx.BadArgument, (b"NE=1", ["ne"])),
    (kx.BadArgument, (b"NE=1", ["NE:1"])),
    (kx.BadArgument, (b"NE=1", {"NE": "int64"})),
    (kx.BadArgument, (b"NE=1", ["NE"], np.array([], dtype=np.int64))),
    (kx.BadArgument, (b"NE=1", ["NE"], np.array([0, 5]))),
    (kx.BadArgument, (b"NE=1", ["NE"], np.array([-1, 4]))),
    (kx.BadArgument, (b"NE=1", ["NE"], np.array([0, 3, 2, 4]))),
    (kx.BadArgument, (b"NE=1", ["NE"], np.array([0, 2**62]))),
    (UnicodeEncodeError, (["NE=1\ud800"], ["NE"])),
    (TypeError, (7, ["NE"])),
    (TypeError, (b"NE=1", 7)),
])
def test_what_is_no_good_is_refused(error, arguments):
    with pytest.raises(error) as raised:
        kx.columns(*arguments)
    assert str(raised.value)


def test_buffers_that_are_not_one_piece_are_refused():
    with pytest.raises((BufferError, ValueError)):
        kx.columns(np.frombuffer(b"NE=1NE=2", np.uint8)[::2], ["NE"])


def test_the_buffer_is_free_again_afterwards():
    data = bytearray(b"NE=1\n")
    kx.columns(data, ["NE"])
    data += b"NE=2\n"
    with pytest.raises(kx.BadArgument):
        kx.columns(data, ["NE"], np.array([0, 99]))
    data += b"NE=3\n"
    assert kx.columns(data, ["NE"])["NE"].tolist() == [1, 2, 3]


def test_columns_work_where_the_process_may_use_one_core_only():
    cores = os.sched_getaffinity(0)
    try:
        os.sched_setaffinity(0, {min(cores)})
        assert kx.columns(FDNS * 50_000, ["NE"])["NE"].tolist() == [12, 5, None, 5] * 50_000
    finally:
        os.sched_setaffinity(0, cores)
