"""Datasets as those of xarray, and the engine by which xarray opens files."""

from __future__ import annotations

import os
import re
from collections.abc import Iterable
from typing import TYPE_CHECKING, Any

import xarray as xr
from xarray.backends import BackendArray, BackendEntrypoint
from xarray.core import indexing

from . import _kem
from ._errors import Error
from ._files import identify, open
from ._kem import Dataset
from ._names import identifiers
from ._parameters import Parameters, Value

if TYPE_CHECKING:
    from ._files import Path


LAZY_FROM = 1 << 20  #: bytes of values from which on they are read when they are asked for


def plain(value: Value) -> Any:
    """A parameter as a number or text that files of netCDF hold."""
    if isinstance(value, int):
        return int(value) if abs(value) < 2**63 else float(value)
    return float(value) if isinstance(value, float) else str(value)


def attributes(parameters: Parameters) -> dict[str, Any]:
    """Names that netCDF takes begin with a letter and hold neither slashes nor control characters."""
    values = {}
    for key, value in parameters.items():
        name = re.sub(r"[/\x00-\x1f\x7f]", "_", key).strip()
        name = name if re.match(r"[^\W\d]|_", name) else f"_{name}"
        some = [plain(one) for one in value] if isinstance(value, list) else plain(value)
        mixed = isinstance(some, list) and len({type(one) for one in some}) > 1
        values[name] = [str(one) for one in some] if mixed else some
    return values


def _named(name: str, unit: str) -> dict[str, str]:
    return {key: text for key, text in (("long_name", name), ("units", unit)) if text}


class _Values(BackendArray):
    """Values that are read when they are asked for, wherever that is."""

    def __init__(self, dataset: Dataset) -> None:
        self.path, self.item = os.path.abspath(dataset.file), dataset.item
        self.shape, self.dtype = dataset.values.shape, dataset.values.dtype

    def __getitem__(self, key: indexing.ExplicitIndexer) -> Any:
        return indexing.explicit_indexing_adapter(key, self.shape, indexing.IndexingSupport.BASIC, self._read)

    def _read(self, key: tuple[Any, ...]) -> Any:
        return _kem.open(self.path, self.item).values[key]


def of(dataset: Dataset, values: Any) -> xr.Dataset:
    """A dataset of xarray with the given values for those that the dataset holds."""
    dims = identifiers((axis.name for axis in dataset.axes), "dim")
    [name] = identifiers([dataset.name], "values", taken=dims)
    facts = {key: getattr(dataset, key) for key in ("title", "format", "item", "item_name")}
    if dataset.notes:
        facts["notes"] = "\n".join(map(str, dataset.notes))
    return xr.Dataset(
        {name: (dims, values, _named(dataset.name, dataset.unit))},
        {dim: (dim, axis.values, _named(axis.name, axis.unit)) for dim, axis in zip(dims, dataset.axes)},
        attributes(dataset.parameters) | facts,
    )


class Backend(BackendEntrypoint):
    """The engine of ``xarray.open_dataset("scan.DSC", engine="kem", item=1)``."""

    description = "Measurement files of laboratory spectrometers and cameras"

    def open_dataset(
        self, filename_or_obj: Path, *, drop_variables: str | Iterable[str] | None = None, item: int = 1
    ) -> xr.Dataset:
        dataset = open(filename_or_obj, item)
        # A path travels to other processes faster than many values do.
        lazy = dataset.values.nbytes > LAZY_FROM
        made = of(dataset, indexing.LazilyIndexedArray(_Values(dataset)) if lazy else dataset.values)
        drop = [drop_variables] if isinstance(drop_variables, str) else list(drop_variables or ())
        return made.drop_vars(drop, errors="ignore")

    def guess_can_open(self, filename_or_obj: Any) -> bool:
        try:
            return bool(identify(filename_or_obj))
        except (Error, TypeError):
            return False
