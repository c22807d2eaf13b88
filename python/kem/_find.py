"""Looking for measurement files in folders."""

from __future__ import annotations

import os
from collections.abc import Iterator
from pathlib import Path

from ._errors import Error
from ._files import Path as FilePath
from ._files import formats, identify


def _lower(path: Path, extension: str) -> Path:
    return path.with_name(path.stem.lower() + extension.lower())


def _partners(path: Path) -> Iterator[Path]:
    """The files that come before one which is the second of a pair, or lies beside a pair."""
    for one in formats():
        if one.pair and path.suffix.lower() in map(str.lower, (one.extensions[1], *one.companions)):
            yield _lower(path, one.extensions[0])


def find(folder: FilePath, recursive: bool = False) -> Iterator[Path]:
    """Finds the measurement files of a folder, told by name and content, in the order of their names.

    Of files that belong together the one with the parameters is found.

    Parameters
    ----------
    folder : path-like
    recursive : bool
        Whether to look into folders within it.

    Raises
    ------
    FileNotFoundError, NotADirectoryError, PermissionError
        When the folder cannot be listed.

    Examples
    --------
    >>> [path.name for path in kem.find("examples/data")]
    ['columns.nxy', 'nitroxide.DSC', 'raman.prn', 'raman_background.prn', 'streak.p3d']
    """
    here = sorted(Path(os.fsdecode(folder)).iterdir())
    files = [path for path in here if path.is_file()]
    names = {_lower(path, path.suffix) for path in files}
    for path in files:
        if names.isdisjoint(_partners(path)) and _is_known(path):
            yield path
    for path in here:
        if recursive and path.is_dir() and not path.is_symlink():
            yield from find(path, recursive)


def _is_known(path: Path) -> bool:
    try:
        return bool(identify(path).format)
    except Error:
        return False
