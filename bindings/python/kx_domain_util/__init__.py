"""Identifiers (FDNs) of managed things in a telecom network, and what they say.

    >>> import kx_domain_util as kx
    >>> kx.decode("NE=12,FR=1,S=3,CP=-1,PP=16||7|")["record"]["portId"]
    7
    >>> kx.columns(["NE=12,FR=1", "NE=13,FR=2"], ["NE"])["NE"].tolist()
    [12, 13]

An identifier is a str, or bytes. In a str, bytes that are not UTF-8 are lone surrogates (the error handler
"surrogateescape"). All functions may be called by any number of threads. Reading uses no inventory and no
configuration.
"""
from typing import NamedTuple


class Error(Exception):
    """The base of all exceptions of this module."""

    def __str__(self):
        return Exception.__str__(self)  # KeyError would show its message in quotes


class UnknownType(Error, ValueError):
    """The last level, or the named type, is of no known kind."""


class UnknownField(Error, KeyError):
    """The record has no such field."""


class NotThere(Error, KeyError):
    """A field of the record is missing."""


class WrongType(Error, TypeError):
    """A value has the wrong type of Python."""


class OutOfRange(Error, ValueError):
    """A number does not fit."""


class BadRecord(Error, ValueError):
    """No identifier can be written from the record."""


class NoFacts(Error, LookupError):
    """The identifier depends on a fact that is not known; see encode()."""


class NoMemory(Error, MemoryError):
    """There is no memory."""


class BadArgument(Error, ValueError):
    """An argument means nothing here, such as a piece that identifiers do not have."""


class Failed(Error, RuntimeError):
    """Something else failed; this is a fault of the module."""


class Problem(NamedTuple):
    """Something wrong in an identifier: the column, in bytes from 1, and the reason in words."""

    column: int
    text: str

    def __str__(self):
        return f"{self.column}: {self.text}"


# pylint: disable=wrong-import-position
from ._native import __version__, check, columns, decode, encode, explain, get, kind, type  # noqa: E402

__all__ = [
    "BadArgument", "BadRecord", "Error", "Failed", "NoFacts", "NoMemory", "NotThere", "OutOfRange", "Problem",
    "UnknownField", "UnknownType", "WrongType", "check", "columns", "decode", "encode", "explain", "get", "kind",
    "type",
]
