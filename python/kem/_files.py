"""Files: opening them, and what is known about them."""

from __future__ import annotations

import os
import warnings
from collections.abc import Iterable
from typing import Any, Literal, NamedTuple, Union

from . import _kem
from ._errors import Error, Note
from ._kem import Dataset, Record

Path = Union[str, bytes, os.PathLike[Any]]


class Item(NamedTuple):
    """One item of a file that may hold several."""

    number: int  #: from 1
    name: str


class Identity(NamedTuple):
    """Which format a file has, and what tells so."""

    format: str
    evidence: str


class Format(NamedTuple):
    """A format that kem reads."""

    name: str
    extensions: tuple[str, ...]  #: in the spelling of the instruments
    pair: bool  #: a file of parameters with the first extension, one of values with the second
    companions: tuple[str, ...]  #: extensions of files beside them that are read along


class Check(NamedTuple):
    """How whole a file is."""

    state: Literal["whole", "damaged", "unreadable"]
    notes: list[list[Note]]  #: what is doubtful or damaged, for each item that can be read
    error: Union[Error, None]  #: why a file, or the item behind those, cannot be read


def _faults(dataset: Dataset) -> list[Note]:
    return [note for note in dataset.notes if note.severity != "remark"]


def _warn(dataset: Dataset) -> None:
    """Warns once for a file: what is doubtful about it, in one sentence."""
    if faults := _faults(dataset):
        severity = max((note.severity for note in faults), key=["doubtful", "damaged"].index)
        text = "; ".join(note.text for note in faults)
        warnings.warn(Note(f"{os.fspath(dataset.file)}: {text}", severity), stacklevel=3)


def open(path: Path, item: int = 1, *, classic: bool = False) -> Dataset:
    """Opens one item of a measurement file.

    Parameters
    ----------
    path : path-like
        The file; of files that belong together any.
    item : int
        Counted from 1.
    classic : bool
        As programs that use the record receive it, see :func:`load`.

    Raises
    ------
    kem.Error
        ``NotFound``, ``PermissionDenied``, ``ReadFailed``, ``UnknownFormat``, ``NotReadable``, ``Damaged`` or
        ``NoSuchItem``.

    Warns
    -----
    kem.Note
        Of what casts doubt on the values or axes.

    Examples
    --------
    >>> kem.open("examples/data/nitroxide.DSC").axes[0].unit
    'G'
    """
    if classic:
        return _kem.load(path, item).to_dataset()
    dataset = _kem.open(path, item)
    _warn(dataset)
    return dataset


def open_all(path: Path) -> list[Dataset]:
    """Opens all items of a file; what they share is read once.

    Examples
    --------
    >>> [dataset.item_name for dataset in kem.open_all("examples/data/columns.nxy")]
    ['no quencher', '10 mM quencher', '25 mM quencher']
    """
    datasets: list[Dataset] = []

    def take(dataset: Dataset) -> bool:
        datasets.append(dataset)
        return True

    _kem.open_each(path, take)
    for dataset in datasets:
        _warn(dataset)
    return datasets


def open_many(paths: Iterable[Path], *, threads: int | None = None) -> list[Dataset]:
    """Opens the first item of each of many files, several at a time.

    Parameters
    ----------
    paths : iterable of path-like
        The files, in the order of the datasets.
    threads : int
        How many are opened at a time; as many as there are processors when it is not given.

    Raises
    ------
    kem.Error
        As :func:`open` does, of the first file that cannot be opened.

    Examples
    --------
    >>> [scan.format for scan in kem.open_many(["examples/data/nitroxide.DSC", "examples/data/streak.p3d"])]
    ['Bruker BES3T', 'P3D text grid']
    """
    datasets = _kem.open_many(list(paths), os.cpu_count() or 1 if threads is None else threads)
    for dataset in datasets:
        _warn(dataset)
    return datasets


def load(path: Path, item: int = 1) -> Record:
    """Loads the record that programs have always received of a file, quirks included; items are counted from 1.

    Examples
    --------
    >>> kem.load("examples/data/nitroxide.DSC").n_y
    1024
    """
    return _kem.load(path, item)


def items(path: Path) -> list[Item]:
    """Lists the items of a file.

    Examples
    --------
    >>> kem.items("examples/data/columns.nxy")[1]
    Item(number=2, name='10 mM quencher')
    """
    return [Item(*one) for one in _kem.items(path)]


def identify(path: Path) -> Identity:
    """Tells a file's format without reading its data.

    Examples
    --------
    >>> kem.identify("examples/data/nitroxide.DSC").format
    'Bruker BES3T'
    """
    return Identity(*_kem.identify(path))


def formats() -> list[Format]:
    """Lists the formats that are read, in the order in which they are tried.

    Examples
    --------
    >>> kem.formats()[0].extensions
    ('.DSC', '.DTA')
    """
    return [Format(*one) for one in _kem.formats()]


def check(path: Path) -> Check:
    """Reads all items of a file and tells how whole it is.

    Examples
    --------
    >>> kem.check("examples/data/nitroxide.DSC").state
    'whole'
    """
    notes: list[list[Note]] = []

    def take(dataset: Dataset) -> bool:
        notes.append(_faults(dataset))
        return True

    try:
        _kem.open_each(path, take)
    except Error as error:
        return Check("unreadable", notes, error)
    damaged = any(note.severity == "damaged" for item in notes for note in item)
    return Check("damaged" if damaged else "whole", notes, None)
