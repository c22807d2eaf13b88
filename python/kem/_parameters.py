"""The parameters of a file."""

from __future__ import annotations

from collections.abc import Iterator, Mapping
from typing import Union

from ._errors import Note
from ._kem import Dataset

Row = tuple[str, str, str, Union[float, None], str]  # section, key, text, number, unit


class _Value:
    """What a file says about a value."""

    section: str  #: empty where the format knows none
    key: str
    text: str  #: as the file spells it
    unit: str  #: where the file or the format tells


class Number(_Value, float):
    """A parameter that is a number."""


class Integer(_Value, int):
    """A parameter that is a whole number."""


class Text(_Value, str):
    """A parameter that is a text."""


Value = Union[Number, Integer, Text]


def _value(row: Row) -> Value:
    section, key, text, number, unit = row
    value: Value
    if number is None:
        value = Text(text)
    elif number.is_integer() and text.split()[0].lstrip("+-").isdecimal():
        value = Integer(number)
    else:
        value = Number(number)
    value.section, value.key, value.text, value.unit = section, key, text, unit
    return value


class Parameters(Mapping[str, Union[Value, list[Value]]]):
    """The parameters of a file by their keys, in its order.

    A number is a number and all else a text; each has ``.text``, ``.unit``, ``.section`` and ``.key``. A key with
    several values has the list of them.
    """

    def __init__(self, rows: list[Row]) -> None:
        self._rows = rows
        self._by_key: dict[str, list[Row]] = {}
        for row in rows:
            self._by_key.setdefault(row[1], []).append(row)

    def __getitem__(self, key: str) -> Value | list[Value]:
        values = [_value(row) for row in self._by_key[key]]
        return values[0] if len(values) == 1 else values

    def __iter__(self) -> Iterator[str]:
        return iter(self._by_key)

    def __len__(self) -> int:
        return len(self._by_key)

    def __repr__(self) -> str:
        return "\n".join(f"{row[1]} = {row[2]} {row[4]}".rstrip() for row in self._rows)

    @property
    def sections(self) -> dict[str, Parameters]:
        """The parameters of each section of the file."""
        rows: dict[str, list[Row]] = {}
        for row in self._rows:
            rows.setdefault(row[0], []).append(row)
        return {section: Parameters(part) for section, part in rows.items()}

    @property
    def all(self) -> list[Value]:
        """Every value in the order of the file."""
        return [_value(row) for row in self._rows]


def parameters(self: Dataset) -> Parameters:
    """The parameters of the file by their keys.

    Examples
    --------
    >>> frequency = scan.parameters["MWFQ"]
    >>> frequency / 1e9, frequency.unit, frequency.text, frequency.section
    (9.43, 'Hz', '9.43e+09', 'SPL')
    """
    return Parameters(self._parameters)


def notes(self: Dataset) -> list[Note]:
    """What one should know about the dataset; each has a ``severity``.

    Examples
    --------
    >>> [note.text for note in scan.notes]
    []
    """
    return [Note(*row) for row in self._notes]
