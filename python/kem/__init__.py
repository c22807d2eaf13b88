"""Measurement files of laboratory spectrometers and cameras, and exact calculations with them.

>>> scan = kem.open("examples/data/nitroxide.DSC")
>>> scan.values.dtype, scan.axes[0].name, scan.axes[0].unit
(dtype('float64'), 'Field', 'G')
"""

from . import _keep, _kem
from ._errors import (
    Damaged,
    DoesNotFit,
    Error,
    NoSuchItem,
    NotFound,
    NotReadable,
    Note,
    PermissionDenied,
    ReadFailed,
    UnknownFormat,
    WriteFailed,
)
from ._files import Check, Format, Identity, Item, check, formats, identify, items, load, open, open_all
from ._find import find
from ._kem import Axis, Dataset, Record, __version__
from ._parameters import Integer, Number, Parameters, Text

__all__ = [name for name in dir() if not name.startswith("_")] + ["__version__"]

# What is said better in Python joins the classes of the extension module.
_members = {
    Axis: {
        "__reduce__": _keep.reduce,
        "__array__": lambda self, dtype=None: _as(self, dtype),
        "__iter__": lambda self: iter(self.values),
    },
    Dataset: {
        "__reduce__": _keep.reduce,
        "__array__": lambda self, dtype=None: _as(self, dtype),
        "__len__": lambda self: len(self.values),
        "__iter__": lambda self: iter(self.values),
        "__getitem__": lambda self, key: self.values[key],
        "parameters": property(lambda self: Parameters(self._parameters)),
        "notes": property(lambda self: [Note(*row) for row in self._notes]),
    },
    Record: {
        "__array__": lambda self, dtype=None: _as(self, dtype),
        "__len__": lambda self: len(self.values),
        "__iter__": lambda self: iter(self.values),
    },
}


def _as(self, dtype):
    return self.values if dtype is None else self.values.astype(dtype)


for _class, _own in _members.items():
    for _name, _member in _own.items():
        setattr(_class, _name, _member)
