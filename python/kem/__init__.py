"""Measurement files of laboratory spectrometers and cameras, and exact calculations with them.

>>> scan = kem.open("examples/data/nitroxide.DSC")
>>> scan.values.dtype, scan.axes[0].name, scan.axes[0].unit
(dtype('float64'), 'Field', 'G')
"""

from typing import Any as _Any

from . import _convert, _keep, _parameters, _plot, _show
from ._errors import (
    Damaged,
    DoesNotFit,
    Error,
    NoSuchItem,
    NotFound,
    NotReadable,
    OutOfMemory,
    Note,
    PermissionDenied,
    ReadFailed,
    UnknownFormat,
    WriteFailed,
)
from ._files import Check, Format, Identity, Item, check, formats, identify, items, load, open, open_all, open_many
from ._find import find
from ._kem import Axis, Dataset, Record, __version__, convert, units
from ._parameters import Integer, Number, Parameters, Text
from ._plot import compare

__all__ = [
    "Axis",
    "Check",
    "Damaged",
    "Dataset",
    "DoesNotFit",
    "Error",
    "Format",
    "Identity",
    "Integer",
    "Item",
    "NoSuchItem",
    "NotFound",
    "NotReadable",
    "OutOfMemory",
    "Note",
    "Number",
    "Parameters",
    "PermissionDenied",
    "ReadFailed",
    "Record",
    "Text",
    "UnknownFormat",
    "WriteFailed",
    "__version__",
    "check",
    "compare",
    "convert",
    "find",
    "formats",
    "identify",
    "items",
    "load",
    "open",
    "open_all",
    "open_many",
    "units",
]


def _as_array(self: _Any, dtype: _Any = None) -> _Any:
    return self.values if dtype is None else self.values.astype(dtype)


# What is said better in Python joins the classes of the extension module.
_array: dict[str, _Any] = {
    "__array__": _as_array,
    "__len__": lambda self: len(self.values),
    "__iter__": lambda self: iter(self.values),
}
_picture: dict[str, _Any] = {
    "to_xarray": _convert.to_xarray,
    "to_pandas": _convert.to_pandas,
    "plot": _plot.plot,
    "__repr__": _show.show,
    "_repr_html_": _show.show_html,
}
_members: dict[type, dict[str, _Any]] = {
    Axis: _array | {"__reduce__": _keep.reduce, "__repr__": _show.show_axis},
    Dataset: {
        **_array,
        **_picture,
        "__reduce__": _keep.reduce,
        "__getitem__": lambda self, key: self.values[key],
        "parameters": property(_parameters.parameters),
        "notes": property(_parameters.notes),
    },
    Record: _array | _picture,
}
for _class, _own in _members.items():
    for _name, _member in _own.items():
        setattr(_class, _name, _member)
