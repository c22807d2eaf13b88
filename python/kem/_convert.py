"""Datasets for other packages, which are imported when they are asked for."""

from __future__ import annotations

import importlib
from typing import TYPE_CHECKING, Any, Union

from ._kem import Dataset, Record

if TYPE_CHECKING:
    import pandas as pd
    import xarray as xr


def need(package: str) -> Any:
    """Imports a package that kem works without."""
    try:
        return importlib.import_module(package)
    except ImportError as error:
        raise ImportError(f"kem: this needs the package {package.split('.')[0]}, which cannot be imported") from error


def dataset_of(one: Dataset | Record) -> Dataset:
    return one.to_dataset() if isinstance(one, Record) else one


def to_xarray(self: Dataset | Record) -> xr.Dataset:
    """The same as a dataset of xarray.

    Dimensions and variables are named after axes and values in small letters; units and names are attributes of
    theirs, parameters, title and notes attributes of the dataset, such that ``to_netcdf`` takes them.

    Raises
    ------
    ImportError
        When xarray is missing.

    Examples
    --------
    >>> made = scan.to_xarray()
    >>> dict(made.sizes), made["field"].units, made.attrs["MWFQ"]
    ({'field': 1024}, 'G', 9430000000.0)
    """
    need("xarray")
    from . import _xarray

    dataset = dataset_of(self)
    return _xarray.of(dataset, dataset.values)


def to_pandas(self: Dataset | Record) -> Union[pd.Series, pd.DataFrame]:
    """The same for pandas: a curve as a series, a grid as a table, more dimensions as a series with several indices.

    Raises
    ------
    ImportError
        When pandas is missing.

    Examples
    --------
    >>> scan.to_pandas().idxmax().round(1)
    3358.3
    """
    pd = need("pandas")
    from ._names import identifiers

    dataset = dataset_of(self)
    names = identifiers((axis.name for axis in dataset.axes), "dim")
    indices = [pd.Index(axis.values, name=name) for axis, name in zip(dataset.axes, names)]
    if len(indices) == 2:
        return pd.DataFrame(dataset.values, *indices)
    index = indices[0] if len(indices) == 1 else pd.MultiIndex.from_product(indices) if indices else None
    return pd.Series(dataset.values.reshape(-1), index, name=dataset.name)
