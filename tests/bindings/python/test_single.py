"""Functions that take one identifier, and the exceptions."""
import pickle
import types

import pytest

import kx_domain_util as kx

NONE_SPELLED_OUT = {"sub_slot_ne_types": []}
PORT = "NE=12,FR=1,S=3,CP=-1,PP=16||7|"
NE = {"type": "NEIndex", "record": {"reserved": 0, "neId": 7}}


def changed(fdn, **fields):
    """What is decoded from fdn, with other fields."""
    decoded = kx.decode(fdn)
    decoded["record"].update(fields)
    return decoded


# ---- Reading --------------------------------------------------------------------------------------------------------


def test_an_identifier_may_be_str_or_bytes():
    for function in (kx.decode, kx.type, kx.kind, kx.check, kx.explain):
        assert function(PORT) == function(PORT.encode())
    assert kx.get(PORT.encode(), "NE") == "12"


def test_decode_nests_records():
    decoded = kx.decode("NE=5,FR=1,S=3,CP=-1,PP=16||2|,AP=1|2|9")
    assert decoded["type"] == "CtpKey_T"
    assert decoded["record"]["port"]["slotId"] == 3
    assert decoded["record"]["subIfId"] == 9


def test_bytes_that_are_not_utf_8_are_lone_surrogates():
    decoded = kx.decode(b"NE=5,PP=||1|\xe4")
    assert decoded["record"]["portLabel"] == "\udce4"
    assert decoded["fdn"] == "NE=5,PP=||1|\udce4"
    assert kx.get("NE=5,PP=||1|\udce4", "PP:3") == "\udce4"


def test_a_surrogate_that_stands_for_no_byte_is_refused():
    for function in (kx.decode, kx.type, kx.check):
        with pytest.raises(UnicodeEncodeError):
            function("NE=5,PP=||1|\ud800")


def test_get_tells_an_empty_piece_from_a_missing_one():
    assert kx.get(PORT, "PP:3") == ""
    assert kx.get(PORT, "SS") is None
    assert kx.get("NE=1", "PP:3") is None
    assert kx.get(PORT, "CP") == "-1"
    assert kx.get("NE=1,NE=2", "NE") == "1"


def test_check_names_column_and_reason():
    assert kx.check(PORT) == []
    problem, = kx.check("NE=7,S=3,PP=16||x|")
    assert problem == (17, 'PP:2 is not a decimal number: "x"')
    assert (problem.column, str(problem)) == (17, '17: PP:2 is not a decimal number: "x"')


def test_check_says_why_a_text_is_no_identifier():
    assert kx.check("") == [(1, "the line is empty")]
    assert kx.check("NE=\0") == [(4, "NUL byte")]
    assert kx.check("NE=1,PP=||3|\udcc5") == [(13, "not UTF-8")]


# ---- Writing --------------------------------------------------------------------------------------------------------


def test_encode_needs_no_identifier_beside_the_record():
    assert kx.encode(NE) == "NE=7"
    assert kx.encode({**NE, "fdn": "NE=8"}) == "NE=7"


def test_facts_are_a_dict_or_an_object():
    expected = "NE=12,FR=1,S=3,CP=-1,SS=-1,SC=-1,PP=16||8|"
    facts = {"sub_slot_ne_types": [1887], "ne_type": {12: 1887}.get}
    assert kx.encode(changed(PORT, portId=8), facts) == expected
    assert kx.encode(changed(PORT, portId=8), types.SimpleNamespace(**facts)) == expected
    assert kx.encode(changed(PORT, portId=8), {**facts, "ne_type": lambda ne: None}) == \
        "NE=12,FR=1,S=3,CP=-1,PP=16||8|"


def test_the_carrier_profile_is_a_fact():
    port = changed("NE=12,FR=1,PP=16||7|")
    facts = {"ne_type": lambda ne: 0, "sub_slot_ne_types": [0]}
    assert kx.encode(port, {**facts, "carrier_profile": 1}) != kx.encode(port, facts)


def test_numbers_of_maintenance_levels_are_left_out_if_the_facts_say_so():
    domain = kx.decode("NE=7,MD=3|md1")
    assert kx.encode(domain, {"oam_numbers_omitted": lambda ne: ne == 7}) == "NE=7,MD=|md1"
    assert kx.encode(domain, {"oam_numbers_omitted": lambda ne: False}) == "NE=7,MD=3|md1"


def test_a_function_among_the_facts_is_asked_about_the_ne():
    asked = []
    kx.encode(kx.decode(PORT), {**NONE_SPELLED_OUT, "ne_type": asked.append})
    assert asked == [12]


def test_what_a_function_among_the_facts_raises_passes_through():
    with pytest.raises(ZeroDivisionError):
        kx.encode(kx.decode(PORT), {**NONE_SPELLED_OUT, "ne_type": lambda ne: ne // 0})


@pytest.mark.parametrize("name", ["carrier_profile", "sub_slot_ne_types", "ne_type", "oam_numbers_omitted"])
def test_what_a_property_of_the_facts_raises_passes_through(name):
    def fail(_):
        raise RuntimeError("not now")
    facts = type("Facts", (), {name: property(fail)})()
    with pytest.raises(RuntimeError, match="not now"):
        kx.encode(changed(PORT, portId=8), facts)


def test_a_function_among_the_facts_may_decode_and_encode():
    def ne_type(ne):
        assert kx.encode(kx.decode(f"NE={ne + 1}")) == "NE=13"
        return 0
    assert kx.encode(kx.decode(PORT), {**NONE_SPELLED_OUT, "ne_type": ne_type}) == PORT


def test_whole_numbers_of_other_libraries_are_numbers():
    numpy = pytest.importorskip("numpy")
    assert kx.encode({"type": "NEIndex", "record": {"reserved": 0, "neId": numpy.int16(7)}}) == "NE=7"


# ---- Exceptions -----------------------------------------------------------------------------------------------------


@pytest.mark.parametrize("error, base, call", [
    (kx.UnknownType, ValueError, lambda: kx.decode("NE=1,XY=2")),
    (kx.UnknownType, ValueError, lambda: kx.decode("")),
    (kx.UnknownType, ValueError, lambda: kx.encode({"type": "NoIndex", "record": {}})),
    (kx.UnknownField, KeyError, lambda: kx.encode(changed("NE=7", neid=7))),
    (kx.UnknownField, KeyError, lambda: kx.encode({**NE, "records": []})),
    (kx.UnknownField, KeyError, lambda: kx.encode(changed("NE=5,PP=||1|,AP=1|2|3", port={"neID": 3}))),
    (kx.UnknownField, KeyError, lambda: kx.encode(changed("NE=5,PP=||1|,AP=1|2|3", **{"port.neId": 3}))),
    (kx.NotThere, KeyError, lambda: kx.encode({"type": "NEIndex", "record": {"neId": 7}})),
    (kx.NotThere, KeyError, lambda: kx.encode({"type": "NEIndex"})),
    (kx.NotThere, KeyError, lambda: kx.encode({"record": {}})),
    (kx.NotThere, KeyError, lambda: kx.encode(changed("NE=5,PP=||1|,AP=1|2|3", port={}))),
    (kx.WrongType, TypeError, lambda: kx.decode(7)),
    (kx.WrongType, TypeError, lambda: kx.decode(None)),
    (kx.WrongType, TypeError, lambda: kx.encode(PORT)),
    (kx.WrongType, TypeError, lambda: kx.encode({"type": 7, "record": {}})),
    (kx.WrongType, TypeError, lambda: kx.encode({"type": "NEIndex", "record": []})),
    (kx.WrongType, TypeError, lambda: kx.encode(changed("NE=7", neId="7"))),
    (kx.WrongType, TypeError, lambda: kx.encode(changed("NE=7", neId=True))),
    (kx.WrongType, TypeError, lambda: kx.encode(changed("NE=7", neId=7.0))),
    (kx.WrongType, TypeError, lambda: kx.encode(changed(PORT, isLogical=0))),
    (kx.WrongType, TypeError, lambda: kx.encode(changed(PORT, portLabel=7))),
    (kx.WrongType, TypeError, lambda: kx.encode(changed("NE=5,PP=||1|,AP=1|2|3", port=7))),
    (kx.WrongType, TypeError, lambda: kx.encode(NE, {"ne_type": 1887})),
    (kx.WrongType, TypeError, lambda: kx.encode(kx.decode(PORT), {"ne_type": lambda ne: "1887", **NONE_SPELLED_OUT})),
    (kx.OutOfRange, ValueError, lambda: kx.encode(changed("NE=7", neId=2**31))),
    (kx.OutOfRange, ValueError, lambda: kx.encode(changed("NE=7", neId=-2**99))),
    (kx.OutOfRange, ValueError, lambda: kx.encode(kx.decode(PORT), {"ne_type": lambda ne: 65536, **NONE_SPELLED_OUT})),
    (kx.OutOfRange, ValueError, lambda: kx.encode(NE, {"carrier_profile": 2**31})),
    (kx.BadRecord, ValueError, lambda: kx.encode(changed(PORT, portLabel="a|b"))),
    (kx.BadRecord, ValueError, lambda: kx.encode(changed(PORT, portLabel="a\n"))),
    (kx.BadRecord, ValueError, lambda: kx.encode(changed("NE=5,PWE3=3|17", svcId=18))),
    (kx.NoFacts, LookupError, lambda: kx.encode(kx.decode(PORT))),
    (kx.NoFacts, LookupError, lambda: kx.encode(kx.decode(PORT), {"ne_type": lambda ne: 0})),
    (kx.NoFacts, LookupError, lambda: kx.encode(kx.decode(PORT), {"sub_slot_ne_types": [], "ne_type": None})),
    (kx.NoFacts, LookupError, lambda: kx.encode(kx.decode("NE=5,MD=3|md1"), {"ne_type": lambda ne: 0})),
    (kx.BadArgument, ValueError, lambda: kx.get(PORT, "pp")),
    (kx.BadArgument, ValueError, lambda: kx.get(PORT, "XY")),
    (kx.BadArgument, ValueError, lambda: kx.get(PORT, "PP:9")),
    (kx.BadArgument, ValueError, lambda: kx.get(PORT, "")),
    (kx.BadArgument, ValueError, lambda: kx.encode(NE, {"netype": None})),
])
def test_each_fault_has_its_exception(error, base, call):
    with pytest.raises(error) as raised:
        call()
    assert raised.type is error
    assert isinstance(raised.value, (kx.Error, base))
    assert issubclass(error, kx.Error) and issubclass(error, base)
    message = str(raised.value)
    assert message and not message.startswith("'")


def test_exceptions_can_be_pickled():
    with pytest.raises(kx.UnknownType) as raised:
        kx.decode("x")
    copy = pickle.loads(pickle.dumps(raised.value))
    assert (type(copy), str(copy)) == (kx.UnknownType, str(raised.value))


def test_there_is_one_exception_for_each_status():
    assert {each.__name__ for each in kx.Error.__subclasses__()} == {
        "UnknownType", "UnknownField", "NotThere", "WrongType", "OutOfRange", "BadRecord", "NoFacts", "NoMemory",
        "BadArgument", "Failed"}


def test_everything_is_documented():
    for name in kx.__all__:
        assert getattr(kx, name).__doc__, name
    for name in ("decode", "encode", "type", "kind", "get", "check", "explain", "columns"):
        assert getattr(kx, name).__doc__.startswith(f"{name}(")
