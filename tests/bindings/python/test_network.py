"""The same 100,000 identifiers give the same answers from Python as from the tool."""
import json
import re

import numpy as np
import pytest

import kx_domain_util as kx
from conftest import text_of

PIECES = ["NE", "FR", "S", "SS", "CP", "PP", "PP:1", "PP:2", "PP:3", "LP:2", "SUBIF", "TUNNEL:2"]


def unescaped(cell):
    """The bytes of a cell of TSV."""
    return re.sub(rb"\\(.)", lambda escape: {b"t": b"\t", b"r": b"\r"}.get(escape[1], escape[1]), cell)


@pytest.fixture(scope="module")
def got(kxdu, network):
    """What the tool gets, for each piece a list of bytes."""
    columns = {}
    for piece in PIECES:
        lines = kxdu("get", piece + ",NE", lines=b"\n".join(network)).split(b"\n")[:-1]
        columns[piece] = [unescaped(line.split(b"\t")[0]) for line in lines]
        assert len(columns[piece]) == len(network)
    return columns


def number_of(piece):
    """The number that the library reads, by the rules of the guide; None for none."""
    if not piece:
        return None
    digits = piece.lstrip(b" \t\n\v\f\r")
    sign, digits = (-1, digits[1:]) if digits[:1] == b"-" else (1, digits[1:] if digits[:1] == b"+" else digits)
    count = 0
    while digits[count:count + 1].isdigit():
        count += 1
    whole = min(max(sign * int(digits[:count] or 0), -2**63), 2**63 - 1)
    number = (whole + 2**31) % 2**32 - 2**31
    return None if number == -1 else number


def test_decode_gives_what_the_tool_writes_as_json(kxdu, network):
    lines = kxdu("decode", lines=b"\n".join(network)).splitlines()
    assert len(lines) > 80_000
    decoded = 0
    written = iter(lines)
    for fdn in network:
        try:
            fdn.decode("utf-8")
            record = kx.decode(fdn)
        except (kx.UnknownType, UnicodeDecodeError):
            continue
        assert record == json.loads(next(written))
        assert record["type"] == kx.type(text_of(fdn))
        decoded += 1
    assert decoded == len(lines)


def test_types_and_kinds_are_none_for_what_the_tool_rejects(network):
    for fdn in network:
        if kx.type(fdn) is None:
            assert kx.kind(fdn) is None
            with pytest.raises(kx.UnknownType):
                kx.decode(fdn)
        else:
            assert kx.decode(fdn)["type"] == kx.type(fdn)
            assert kx.kind(fdn)


def test_get_gives_what_the_tool_gets(network, got):
    for piece in PIECES:
        for fdn, expected in zip(network, got[piece]):
            assert (kx.get(text_of(fdn), piece) or "") == text_of(expected)


@pytest.mark.parametrize("form", ["str", "bytes", "lines", "int32 offsets", "int64 offsets"])
def test_columns_hold_what_the_tool_gets(network, got, form):
    offsets = None
    if form == "str":
        data = [text_of(fdn) for fdn in network]
    elif form == "bytes":
        data = network
    elif form == "lines":
        data = b"\n".join(network)
    else:
        data = bytearray(b"".join(network))
        offsets = np.cumsum([0] + [len(fdn) for fdn in network], dtype=form.split()[0])
    numbers = kx.columns(data, {piece: "int32" for piece in PIECES}, offsets)
    texts = kx.columns(data, {piece: "str" for piece in PIECES}, offsets)
    raw = kx.columns(data, {piece: "bytes" for piece in PIECES}, offsets)
    for piece in PIECES:
        expected = [number_of(text) for text in got[piece]]
        assert numbers[piece].dtype == np.int32
        assert numbers[piece].tolist() == expected
        assert raw[piece].data.tolist() == got[piece]
        assert texts[piece].data.tolist() == [text_of(text) for text in got[piece]]
        assert np.array_equal(raw[piece].mask, texts[piece].mask)
        absent = np.array([kx.get(fdn, piece) is None for fdn in network])
        if piece in ("PP", "PP:3", "TUNNEL:2"):
            assert np.array_equal(texts[piece].mask, absent)
        else:
            none = np.array([text != b"" and number is None for text, number in zip(got[piece], expected)])
            assert np.array_equal(texts[piece].mask, absent | none)


def test_check_finds_what_the_tool_finds(kxdu, network):
    lines = kxdu("check", "--levels-only", lines=b"\n".join(network)).decode("utf-8", "surrogateescape").splitlines()
    assert len(lines) > 5_000
    expected = [f"<stdin>:{line}:{problem}" for line, fdn in enumerate(network, 1) for problem in kx.check(fdn)]
    assert expected == lines


def test_explain_draws_what_the_tool_draws(kxdu, network):
    compared = 0
    for fdn in network[::5000] + network[-40:]:
        drawn = kxdu("explain", "--color", "never", "--", fdn).decode()
        assert kx.explain(fdn) == drawn.replace("; give --inventory FILE", "")  # advice for users of the tool
        compared += 1
    assert compared > 30


def test_encode_gives_back_what_was_decoded_with_an_inventory(kxdu, network, tmp_path):
    """The facts come from the files of the tool's sample network."""
    folder, inventory = tmp_path / "network", tmp_path / "network.db"
    identifiers = kxdu("sample", "--ne", "40", "--inventory-csv", str(folder)).splitlines()
    kxdu("inventory", "init", str(inventory))
    kxdu("inventory", "import", str(inventory), str(folder))
    rows = [line.split(",") for line in (folder / "ne.csv").read_text(encoding="utf-8").splitlines()]
    header = rows[0]
    types = {int(row[0]): int(row[header.index("ne_type")]) for row in rows[1:]}
    omitted = {int(row[0]) for row in rows[1:] if row[header.index("oam_number_omitted")] == "1"}
    facts = {"ne_type": types.get, "oam_numbers_omitted": omitted.__contains__, "sub_slot_ne_types": []}
    for fdn in identifiers:
        assert kx.encode(kx.decode(fdn), facts) == fdn.decode()
    # A name with an escaped bar cannot be written.
    some = [fdn for fdn in network if kx.type(fdn) and not kx.check(fdn) and b"\\" not in fdn][::20]
    records = b"\n".join(json.dumps(kx.decode(fdn)).encode() for fdn in some)
    written = kxdu("encode", "--inventory", str(inventory), "--ignore-fdn", lines=records).splitlines()
    assert len(written) > 1000
    assert [kx.encode(kx.decode(fdn), facts).encode() for fdn in some] == written
