"""The classes of the package.

What stands here is also the documentation that the extension module is built with. In the examples ``curve`` has the
values 0, 1, 4, 9, ... 400 at 0, 1, ... 20, and ``grid`` 3 x 20 values that count up from 0.
"""

import builtins
from collections.abc import Callable, Iterator, Sequence
from os import PathLike
from pathlib import Path
from typing import Any, Literal, Union, overload

import numpy as np
import numpy.typing as npt
import pandas as pd
import xarray as xr
from matplotlib.axes import Axes
from matplotlib.collections import QuadMesh
from matplotlib.image import AxesImage
from matplotlib.lines import Line2D

from ._errors import Note
from ._parameters import Parameters, Row

_Path = Union[str, bytes, PathLike[Any]]
_Along = Literal["x", "y"]
_Part = Literal["real", "imaginary", "magnitude", "phase"]
_Singles = npt.NDArray[np.float32]
_Doubles = npt.NDArray[np.float64]
_Points = Union[npt.ArrayLike, builtins.slice]

__version__: str

def open(path: _Path, item: int = 1) -> Dataset: ...
def open_each(path: _Path, take: Callable[[Dataset], bool]) -> None: ...
def open_many(paths: list[_Path], threads: int) -> list[Dataset]: ...
def load(path: _Path, item: int = 1) -> Record: ...
def items(path: _Path) -> list[tuple[int, str]]: ...
def identify(path: _Path) -> tuple[str, str]: ...
def formats() -> list[tuple[str, tuple[str, ...], bool, tuple[str, ...]]]: ...
def units() -> list[str]:
    """Lists the units that convert, as kem spells them.

    Examples
    --------
    >>> "mT" in kem.units()
    True
    """

def convert(number: float, unit: str, to: str) -> float:
    """Converts a number between units of field, time, or wavelength, wavenumber, energy and frequency of light.

    Raises
    ------
    kem.DoesNotFit
        When that has no meaning.

    Examples
    --------
    >>> kem.convert(3480, "G", to="mT")
    348.0
    """

class Axis:
    """The coordinates of one dimension: evenly spaced from start to end, or stored one by one.

    Parameters
    ----------
    name, unit : str
    values : array_like of float, shape (n,), optional
        Stored coordinates; the others are for evenly spaced ones.
    start, end : float
        First and last coordinate, both included.
    count : int

    Examples
    --------
    >>> kem.Axis("Field", "G", start=3300, end=3400, count=3).values
    array([3300., 3350., 3400.])
    """

    def __init__(
        self,
        name: str = "",
        unit: str = "",
        values: npt.ArrayLike | None = None,
        start: float = 0.0,
        end: float = 0.0,
        count: int = 0,
    ) -> None: ...
    @property
    def name(self) -> str:
        """What the coordinates are, such as "Field".

        Examples
        --------
        >>> scan.axes[0].name
        'Field'
        """
    @property
    def unit(self) -> str:
        """The unit as the file spells it; empty when it names none.

        Examples
        --------
        >>> scan.axes[0].unit
        'G'
        """
    @property
    def values(self) -> _Doubles:
        """The coordinates, shape (n,); stored ones are not copied, and none can be written to.

        Examples
        --------
        >>> scan.axes[0].values[:2]
        array([3308.7       , 3308.79775171])
        """
    @property
    def start(self) -> float:
        """The first coordinate.

        Examples
        --------
        >>> scan.axes[0].start
        3308.7
        """
    @property
    def end(self) -> float:
        """The last coordinate.

        Examples
        --------
        >>> scan.axes[0].end
        3408.7
        """
    @property
    def step(self) -> float:
        """The spacing of an evenly spaced axis; 0 for a stored one.

        Examples
        --------
        >>> kem.Axis(start=0, end=9, count=10).step
        1.0
        """
    @property
    def is_linear(self) -> bool:
        """Whether the coordinates are evenly spaced by definition.

        Examples
        --------
        >>> kem.Axis(values=[1, 2, 3]).is_linear
        False
        """
    def to(self, unit: str) -> Axis:
        """The axis in another unit of :func:`kem.units`.

        An evenly spaced axis stays one, but between wavelengths and what is inverse to them it becomes a stored one.

        Raises
        ------
        kem.DoesNotFit
            When the conversion has no meaning.

        Examples
        --------
        >>> scan.axes[0].to("mT").start
        330.87
        """
    def to_g(self, frequency: float) -> Axis:
        """The g factors of a field axis at a microwave frequency in Hz.

        Raises
        ------
        kem.DoesNotFit
            When the axis is no field.

        Examples
        --------
        >>> round(scan.axes[0].to_g(scan.microwave_frequency)[512], 3)
        2.006
        """
    def __len__(self) -> int: ...
    def __getitem__(self, k: int) -> float: ...
    def __iter__(self) -> Iterator[float]: ...
    def __array__(self, dtype: npt.DTypeLike = None) -> npt.NDArray[Any]: ...
    def __eq__(self, other: object) -> bool: ...
    def __ne__(self, other: object) -> bool: ...
    def __reduce__(self) -> tuple[Any, ...]: ...
    def _state(self) -> dict[str, Any]: ...

class Dataset:
    """One item of a measurement file, as the instrument recorded it.

    ``len``, iteration, indices and ``numpy.asarray`` are those of its values; datasets that say the same are equal,
    wherever their files lie. :func:`kem.open` makes them of files.

    Parameters
    ----------
    values : array_like of real or complex numbers
    axes : sequence of Axis
        One for each dimension, slowest first.
    title : str
        Of the measurement.
    name, unit : str
        Of the values.
    parameters : sequence of (section, key, text, number or None, unit)
    notes : sequence of (text, severity)
    format, file, companions, item, items, item_name
        As in the attributes of these names.

    Raises
    ------
    ValueError
        When axes and values have different shapes.

    Examples
    --------
    >>> kem.Dataset([[1, 2]], [kem.Axis("Time", "s", count=1), kem.Axis("Field", "G", values=[5, 7])]).values.shape
    (1, 2)
    """

    def __init__(
        self,
        values: npt.ArrayLike,
        axes: Sequence[Axis],
        title: str = "",
        name: str = "",
        unit: str = "",
        parameters: Sequence[Row] = [],
        notes: Sequence[tuple[str, str]] = [],
        format: str = "",
        file: _Path = "",
        companions: Sequence[_Path] = [],
        item: int = 1,
        items: int = 1,
        item_name: str = "",
    ) -> None: ...
    @property
    def values(self) -> npt.NDArray[Any]:
        """The values in the number type of the file, with a dimension for each axis.

        They are not copied, keep the dataset alive and cannot be written to. Complex integers, which NumPy does not
        have, become complex numbers that hold them exactly.

        Examples
        --------
        >>> scan.values.shape, scan.values.dtype
        ((1024,), dtype('float64'))
        """
    @property
    def axes(self) -> tuple[Axis, ...]:
        """The axes, slowest first: an image has Y, then X.

        Examples
        --------
        >>> [axis.name for axis in kem.open("examples/data/streak.p3d").axes]
        ['Time', 'Wavelength']
        """
    @property
    def title(self) -> str:
        """The title of the measurement.

        Examples
        --------
        >>> scan.title
        'TEMPO in toluene'
        """
    @property
    def name(self) -> str:
        """What the values are.

        Examples
        --------
        >>> scan.name
        'Intensity'
        """
    @property
    def unit(self) -> str:
        """The unit of the values; empty when the file names none.

        Examples
        --------
        >>> kem.open("examples/data/streak.p3d").unit
        'counts'
        """
    @property
    def parameters(self) -> Parameters: ...
    @property
    def notes(self) -> list[Note]: ...
    @property
    def format(self) -> str:
        """The format of the file.

        Examples
        --------
        >>> scan.format
        'Bruker BES3T'
        """
    @property
    def file(self) -> Path:
        """The file as it was opened.

        Examples
        --------
        >>> scan.file.name
        'nitroxide.DSC'
        """
    @property
    def companions(self) -> list[Path]:
        """The other files that were read.

        Examples
        --------
        >>> [path.name for path in scan.companions]
        ['nitroxide.DTA']
        """
    @property
    def item(self) -> int:
        """The number of the item in its file, from 1.

        Examples
        --------
        >>> kem.open("examples/data/columns.nxy", item=2).item
        2
        """
    @property
    def items(self) -> int:
        """How many items the file holds.

        Examples
        --------
        >>> kem.open("examples/data/columns.nxy").items
        3
        """
    @property
    def item_name(self) -> str:
        """The name of the item; empty when it has none.

        Examples
        --------
        >>> kem.open("examples/data/columns.nxy", item=2).item_name
        '10 mM quencher'
        """
    @property
    def microwave_frequency(self) -> float | None:
        """The frequency of the microwave in Hz, where an EPR file tells it.

        Examples
        --------
        >>> scan.microwave_frequency
        9430000000.0
        """
    def with_axes(self, axes: Sequence[Axis]) -> Dataset:
        """The dataset with other axes of the same lengths.

        Raises
        ------
        ValueError
            When the lengths differ.

        Examples
        --------
        >>> scan.with_axes([scan.axes[0].to("mT")]).axes[0].unit
        'mT'
        """
    def to_record(self, part: _Part = "real") -> Record:
        """The record of a curve or a grid, in single precision; of complex values one part.

        Raises
        ------
        kem.DoesNotFit
            When there are no points or more than two dimensions, or single precision cannot hold a value.

        Examples
        --------
        >>> scan.to_record(part="magnitude").y.dtype
        dtype('float32')
        """
    def to_xarray(self) -> xr.Dataset: ...
    def to_pandas(self) -> pd.Series[Any] | pd.DataFrame: ...
    def plot(
        self, *, ax: Axes | None = None, part: _Part | None = None, **style: Any
    ) -> list[Line2D] | AxesImage | QuadMesh: ...
    def __len__(self) -> int: ...
    def __getitem__(self, key: Any) -> Any: ...
    def __iter__(self) -> Iterator[Any]: ...
    def __array__(self, dtype: npt.DTypeLike = None) -> npt.NDArray[Any]: ...
    def __eq__(self, other: object) -> bool: ...
    def __ne__(self, other: object) -> bool: ...
    def __reduce__(self) -> tuple[Any, ...]: ...
    def _repr_html_(self) -> str: ...
    def _state(self) -> dict[str, Any]: ...
    @property
    def _parameters(self) -> list[Row]: ...
    @property
    def _notes(self) -> list[tuple[str, str]]: ...

class Record:
    """A curve or a grid in single precision, to calculate with exactly.

    Every member gives a new record. Numbers may stand on either side of ``+ - * /``; ``**`` is the power and ``&``
    the product sample by sample. When axes differ, the right record is taken at the coordinates of the left one, and
    a curve is 0 where it has no samples. Pickles and copies keep every bit.

    Parameters
    ----------
    values : array_like of real numbers, shape (nx,) or (ny, nx)
    x : array_like or Axis, shape (nx,), optional
        Coordinates, 0, 1, 2, ... when there are none. An axis keeps its name, its unit and its steps.
    y : array_like or Axis, shape (ny,), optional
        Coordinates of a grid, likewise.

    Raises
    ------
    ValueError, TypeError
        When shapes do not go together, or values are complex.

    Examples
    --------
    >>> (2 * kem.Record([1, 2, 4], x=[10, 20, 30]) - 1).y
    array([1., 3., 7.], dtype=float32)
    >>> kem.Record([1, 2], x=kem.Axis("Field", "G", start=0, end=5, count=2)).to_dataset().axes[0]
    <kem.Axis Field (G): 2 points, 0 to 5, linear>
    """

    def __init__(
        self, values: npt.ArrayLike, x: npt.ArrayLike | Axis | None = None, y: npt.ArrayLike | Axis | None = None
    ) -> None: ...
    @property
    def x(self) -> _Singles:
        """The coordinates along X, shape (nx,), stored or written out; stored ones are not copied.

        Examples
        --------
        >>> curve.x[:3]
        array([0., 1., 2.], dtype=float32)
        """
    @property
    def y(self) -> _Singles:
        """The values of a curve, shape (nx,), not copied; of a grid the coordinates along Y, shape (ny,).

        Examples
        --------
        >>> curve.y[:3]
        array([0., 1., 4.], dtype=float32)
        """
    @property
    def z(self) -> _Singles:
        """The values of a grid, shape (ny, nx).

        Raises
        ------
        ValueError
            For a curve.

        Examples
        --------
        >>> grid.z[1, :3]
        array([20., 21., 22.], dtype=float32)
        """
    @property
    def values(self) -> _Singles:
        """The values: ``y`` of a curve, ``z`` of a grid.

        Examples
        --------
        >>> grid.values.shape
        (3, 20)
        """
    @property
    def is_grid(self) -> bool:
        """Whether the record is a grid.

        Examples
        --------
        >>> grid.is_grid
        True
        """
    @property
    def n_x(self) -> int:
        """Points along X.

        Examples
        --------
        >>> grid.n_x
        20
        """
    @property
    def n_y(self) -> int:
        """Points along Y; of a curve its points.

        Examples
        --------
        >>> grid.n_y
        3
        """
    @property
    def x_start(self) -> float:
        """The first coordinate of an evenly spaced X axis, the smallest of a stored one.

        Examples
        --------
        >>> curve.x_start
        0.0
        """
    @property
    def x_end(self) -> float:
        """The last coordinate of an evenly spaced X axis, the largest of a stored one.

        Examples
        --------
        >>> curve.x_end
        20.0
        """
    @property
    def x_step(self) -> float:
        """The spacing of an evenly spaced X axis.

        Examples
        --------
        >>> curve.x_step
        1.0
        """
    @property
    def y_start(self) -> float:
        """The same along Y; of a curve its smallest value.

        Examples
        --------
        >>> curve.y_start
        0.0
        """
    @property
    def y_end(self) -> float:
        """The same along Y; of a curve its largest value.

        Examples
        --------
        >>> curve.y_end
        400.0
        """
    @property
    def y_step(self) -> float:
        """The spacing of an evenly spaced Y axis of a grid.

        Examples
        --------
        >>> kem.Record([[1, 2], [3, 4]]).y_step
        1.0
        """
    @property
    def z_min(self) -> float:
        """The smallest value of a grid.

        Examples
        --------
        >>> grid.z_min
        0.0
        """
    @property
    def z_max(self) -> float:
        """The largest value of a grid.

        Examples
        --------
        >>> grid.z_max
        59.0
        """
    @property
    def file_type(self) -> int:
        """The code of the kind of file that the record came from, see ``FileType`` of kem.h.

        Examples
        --------
        >>> curve.file_type
        1
        """
    @property
    def alloc_type(self) -> int:
        """Which arrays are stored: 1 X, 2 Y, 4 the grid.

        Examples
        --------
        >>> curve.alloc_type
        2
        """
    @property
    def active(self) -> int:
        """1 once data have been filled in.

        Examples
        --------
        >>> curve.active
        1
        """
    @property
    def file_name(self) -> str:
        """The file, or the operation that made the record.

        Examples
        --------
        >>> kem.load("examples/data/raman.prn").file_name
        'examples/data/raman.prn'
        """
    @property
    def label(self) -> str:
        """Name, shape and counts in one line.

        Examples
        --------
        >>> len(curve.label) > 0
        True
        """
    @property
    def labels(self) -> tuple[str, str, str]:
        """The titles of the axes X, Y and Z.

        Examples
        --------
        >>> kem.load("examples/data/streak.p3d").labels
        ('Wavelength (nm)', 'Time (ns)', 'Intensity (counts)')
        """
    @property
    def comments(self) -> str:
        """Comment lines or parameters as lines of text.

        Examples
        --------
        >>> kem.load("examples/data/streak.p3d").comments.strip()
        'emission of two components, simulated'
        """
    def power(self, exponent: Record | float) -> Record:
        """Every value to a power, as ``**`` does. A negative base takes the exponent rounded down.

        Examples
        --------
        >>> curve.power(0.5).y[4]
        4.0
        """
    def product(self, other: Record) -> Record:
        """The product sample by sample, whatever the axes, as ``&`` does.

        Raises
        ------
        kem.DoesNotFit
            When the counts differ.

        Examples
        --------
        >>> curve.product(curve).y[2]
        16.0
        """
    def exp(self) -> Record:
        """The exponential of every value.

        Examples
        --------
        >>> curve.exp().y[0]
        1.0
        """
    def log(self) -> Record:
        """The logarithm to base 10; 0 where it is not defined.

        Examples
        --------
        >>> curve.log().y[10]
        2.0
        """
    def ln(self) -> Record:
        """The natural logarithm; 0 where it is not defined.

        Examples
        --------
        >>> curve.ln().y[1]
        0.0
        """
    def sin(self) -> Record:
        """The sine of radians.

        Examples
        --------
        >>> curve.sin().y[0]
        0.0
        """
    def cos(self) -> Record:
        """The cosine of radians.

        Examples
        --------
        >>> curve.cos().y[0]
        1.0
        """
    def tan(self) -> Record:
        """The tangent of radians.

        Examples
        --------
        >>> curve.tan().y[0]
        0.0
        """
    def asin(self) -> Record:
        """The inverse sine in radians; 0 where it is not defined.

        Examples
        --------
        >>> curve.asin().y[2]
        0.0
        """
    def acos(self) -> Record:
        """The inverse cosine in radians; 0 where it is not defined.

        Examples
        --------
        >>> curve.acos().y[1]
        0.0
        """
    def atan(self) -> Record:
        """The inverse tangent in radians.

        Examples
        --------
        >>> curve.atan().y[0]
        0.0
        """
    def sinh(self) -> Record:
        """The hyperbolic sine.

        Examples
        --------
        >>> curve.sinh().y[0]
        0.0
        """
    def cosh(self) -> Record:
        """The hyperbolic cosine.

        Examples
        --------
        >>> curve.cosh().y[0]
        1.0
        """
    def tanh(self) -> Record:
        """The hyperbolic tangent.

        Examples
        --------
        >>> curve.tanh().y[20]
        1.0
        """
    def asinh(self) -> Record:
        """The inverse hyperbolic sine.

        Examples
        --------
        >>> curve.asinh().y[0]
        0.0
        """
    def acosh(self) -> Record:
        """The inverse hyperbolic cosine; 0 where it is not defined.

        Examples
        --------
        >>> curve.acosh().y[:2]
        array([0., 0.], dtype=float32)
        """
    def atanh(self) -> Record:
        """The inverse hyperbolic tangent; 0 from 1 upwards.

        Examples
        --------
        >>> curve.atanh().y[:2]
        array([0., 0.], dtype=float32)
        """
    def inv(self) -> Record:
        """1 / value; 0 for 0.

        Examples
        --------
        >>> curve.inv().y[:3]
        array([0.  , 1.  , 0.25], dtype=float32)
        """
    def set(self, constant: float) -> Record:
        """The same axes with one value everywhere.

        Examples
        --------
        >>> curve.set(7).y[:2]
        array([7., 7.], dtype=float32)
        """
    def axis_op(self, axis: _Along, operation: str, value: float = 0.0) -> Record:
        """An operation on the coordinates of an axis.

        Parameters
        ----------
        axis : {"x", "y"}
        operation : str
            ``+ - * / ^`` with ``value``, ``s`` for the sign, or the name of a function such as ``inv`` or ``log``.
        value : float

        Raises
        ------
        kem.DoesNotFit
            For an unknown operation, and for Y of a curve.

        Examples
        --------
        >>> curve.axis_op("x", "*", 10).x[:3]
        array([ 0., 10., 20.], dtype=float32)
        """
    def coordinates(self, axis: _Along) -> _Singles:
        """The coordinates of an axis, stored or written out.

        Raises
        ------
        kem.DoesNotFit
            For Y of a curve.

        Examples
        --------
        >>> grid.coordinates("y")
        array([0., 1., 2.], dtype=float32)
        """
    def at(self, x: float, y: float = 0.0) -> float:
        """The value at a point, between samples on a line; 0 outside the axes. ``y`` counts for grids.

        Examples
        --------
        >>> curve.at(2.5)
        6.5
        """
    def nearest(self, x: float, y: float = 0.0) -> float:
        """The value of the nearest sample; 0 outside the axes. ``y`` counts for grids.

        Examples
        --------
        >>> grid.nearest(3.2, 1.9)
        43.0
        """
    def same_axes(self, other: Record) -> bool:
        """Whether both records have the same axes, within 1e-5.

        Examples
        --------
        >>> curve.same_axes(curve + 1)
        True
        """
    def x_axis_equals(self, values: npt.ArrayLike) -> bool:
        """Whether the X axis has these coordinates, within 1e-5.

        Examples
        --------
        >>> curve.x_axis_equals(np.arange(21))
        True
        """
    def y_axis_equals(self, values: npt.ArrayLike) -> bool:
        """Whether the Y axis has these coordinates, within 1e-5.

        Examples
        --------
        >>> grid.y_axis_equals([0, 1, 5])
        False
        """
    def print_log(self, level: int = 3) -> None:
        """Prints a report: 1 shape, 2 also ranges, 3 also titles and parameters, 5 also all values.

        Examples
        --------
        >>> kem.load("examples/data/streak.p3d").print_log(level=1)
        examples/data/streak.p3d
        ...
        """
    def resample(self, x: _Points, y: _Points | None = None) -> Record:
        """The values at other coordinates, on the line through two neighbours.

        Parameters
        ----------
        x : array_like or slice(start, stop, step)
            Coordinates one by one, or evenly spaced ones with the last one included.
        y : array_like or slice, for grids

        Raises
        ------
        kem.DoesNotFit
            When Y is missing for a grid, or given for a curve, or a step is 0.

        Examples
        --------
        >>> curve.resample(slice(0, 1, 0.25)).y
        array([0.  , 0.25, 0.5 , 0.75, 1.  ], dtype=float32)
        """
    def slice(self, axis: _Along, start: float, stop: float, mean: bool = False) -> Record:
        """A curve along an axis of a grid: the sum, or the mean, of a band of the other axis.

        Raises
        ------
        kem.DoesNotFit
            For a curve.

        Examples
        --------
        >>> grid.slice("x", 0, 1, mean=True).y[:3]
        array([10., 11., 12.], dtype=float32)
        """
    @overload
    def cut(self, x1: float, x2: float) -> Record:
        """The part inside bounds, which are included; ``y1`` and ``y2`` are those of grids.

        Raises
        ------
        kem.DoesNotFit
            When no samples lie there.

        Examples
        --------
        >>> curve.cut(2, 4).y
        array([ 4.,  9., 16.], dtype=float32)
        """
    @overload
    def cut(self, x1: float, x2: float, y1: float, y2: float) -> Record: ...
    def delete_closest(self, x: float, y: float) -> Record:
        """A curve without the point closest to (x, y), each measured in its own unit.

        Raises
        ------
        kem.DoesNotFit
            For grids and for less than two points.

        Examples
        --------
        >>> curve.delete_closest(1, 1).y[:3]
        array([0., 4., 9.], dtype=float32)
        """
    def reduce(self, fx: int, fy: int = 1) -> Record:
        """Means of ``fx`` neighbours along X, of grids of ``fx`` by ``fy``; a remainder is dropped.

        Raises
        ------
        kem.DoesNotFit
            When there are fewer samples.

        Examples
        --------
        >>> curve.reduce(3).y[:2]
        array([ 1.6666666, 16.666666 ], dtype=float32)
        """
    def sorted(self) -> Record:
        """The axes in ascending order, the values moved along.

        Examples
        --------
        >>> kem.Record([1, 2, 3], x=[5, 9, 7]).sorted().y
        array([1., 3., 2.], dtype=float32)
        """
    def swapped(self) -> Record:
        """X and Y exchanged: grids transposed, curves inverted.

        Examples
        --------
        >>> curve.swapped().x[:3]
        array([0., 1., 4.], dtype=float32)
        """
    def median(self, width: int) -> Record:
        """A median of ``width`` samples around each value, of grids of ``width`` by ``width``.

        Examples
        --------
        >>> kem.Record([1, 1, 9, 1, 1]).median(5).y[2]
        1.0
        """
    def smooth(self, width: int, axis: _Along = "x") -> Record:
        """The filter of Savitzky and Golay, which fits parabolas; half the width is lost at either end.

        Parameters
        ----------
        width : {5, 7, 9, 13, 17, 21}
            In samples, of which there must be more.
        axis : {"x", "y"}

        Raises
        ------
        kem.DoesNotFit
            For other widths and fewer samples.

        Examples
        --------
        >>> curve.smooth(width=5).y[:3]
        array([ 4.,  9., 16.], dtype=float32)
        """
    def diff(self, axis: _Along = "x") -> Record:
        """The slope per sample by a filter over 15 points; seven are lost at either end.

        Raises
        ------
        kem.DoesNotFit
            For less than 16 samples.

        Examples
        --------
        >>> curve.diff().y[:3].round(3)
        array([14., 16., 18.], dtype=float32)
        """
    @overload
    def integral(self, x1: float, x2: float) -> float:
        """The integral between bounds by trapezoids; ``y1`` and ``y2`` are those of grids.

        Examples
        --------
        >>> curve.integral(0, 2)
        3.0
        """
    @overload
    def integral(self, x1: float, x2: float, y1: float, y2: float) -> float: ...
    @overload
    def abs_integral(self, x1: float, x2: float) -> float:
        """The same with the absolute value of each piece.

        Examples
        --------
        >>> (-curve).abs_integral(0, 2)
        3.0
        """
    @overload
    def abs_integral(self, x1: float, x2: float, y1: float, y2: float) -> float: ...
    def integral_along(self, axis: _Along, start: float, stop: float) -> Record:
        """A curve along an axis of a grid: the integral over a band of the other one, over its number of samples.

        Raises
        ------
        kem.DoesNotFit
            For a curve, and when no samples lie in the band.

        Examples
        --------
        >>> grid.integral_along("y", 0, 19).n_y
        3
        """
    def running_integral(self) -> Record:
        """The integral of a curve up to each point; it starts at the first value.

        Raises
        ------
        kem.DoesNotFit
            For a grid.

        Examples
        --------
        >>> curve.running_integral().y[:3]
        array([0. , 0.5, 3. ], dtype=float32)
        """
    def baseline(self, at1: float, at2: float, axis: _Along = "x") -> Record:
        """Less the straight line through the values at two coordinates; unchanged when one lies outside.

        Examples
        --------
        >>> curve.baseline(0, 20).y[[0, 10, 20]]
        array([   0., -100.,    0.], dtype=float32)
        """
    def slant(self, x1: float, target1: float, x2: float, target2: float) -> Record:
        """A curve times the linear factor that takes it through two points; unchanged when it is 0 there.

        Examples
        --------
        >>> curve.slant(1, 2, 2, 8).y[1:3]
        array([2., 8.], dtype=float32)
        """
    def noise_level(self) -> float:
        """The mean absolute difference of neighbours along Y of a grid; of a curve that of its abscissae.

        Examples
        --------
        >>> grid.noise_level() > 0
        True
        """
    def histogram(self, parts: int) -> tuple[_Singles, float, float]:
        """Counts the values in equal parts of their range.

        Returns
        -------
        counts : array of float32, shape (parts,)
        low, high : float
            The range.

        Examples
        --------
        >>> grid.histogram(parts=2)[0]
        array([30., 30.], dtype=float32)
        """
    def min_max(
        self, x1: float, x2: float, y1: float | None = None, y2: float | None = None
    ) -> tuple[float, float, Any, Any]:
        """Smallest and largest value between bounds, and where each is: x, or (x, y) of grids.

        Raises
        ------
        ValueError
            When ``y1`` and ``y2`` are missing for a grid, or given for a curve.

        Examples
        --------
        >>> curve.min_max(3, 5)
        (9.0, 25.0, 3.0, 5.0)
        """
    def hpdta_time(self, day: int, month: int, year: int) -> int:
        """Days from a date to that of the acquisition of an HPDTA image; 0 for other records.

        Examples
        --------
        >>> curve.hpdta_time(1, 1, 2020)
        0
        """
    def to_dataset(self) -> Dataset:
        """The dataset with the values, axes, titles and parameters of the record.

        Examples
        --------
        >>> kem.load("examples/data/streak.p3d").to_dataset().axes[0].unit
        'ns'
        """
    def save(self, path: _Path, format: str | None = None) -> None:
        """Writes a file in a format, or in that of its extension: p3d, b3d, p2d, b2d, cvt, prn, dx or jdx.

        Raises
        ------
        kem.DoesNotFit
            When the extension names no format, or the format holds no such record: b2d and b3d count to 32767 along
            an axis, text holds no NaN.
        kem.WriteFailed

        Examples
        --------
        >>> curve.save(folder / "curve.dx")
        >>> curve.save(folder / "curve.data", format="b2d")
        """
    def to_xarray(self) -> xr.Dataset: ...
    def to_pandas(self) -> pd.Series[Any] | pd.DataFrame: ...
    def plot(
        self, *, ax: Axes | None = None, part: _Part | None = None, **style: Any
    ) -> list[Line2D] | AxesImage | QuadMesh: ...
    def __add__(self, other: Record | float) -> Record: ...
    def __radd__(self, other: float) -> Record: ...
    def __sub__(self, other: Record | float) -> Record: ...
    def __rsub__(self, other: float) -> Record: ...
    def __mul__(self, other: Record | float) -> Record: ...
    def __rmul__(self, other: float) -> Record: ...
    def __truediv__(self, other: Record | float) -> Record: ...
    def __rtruediv__(self, other: float) -> Record: ...
    def __pow__(self, other: Record | float) -> Record: ...
    def __and__(self, other: Record) -> Record: ...
    def __neg__(self) -> Record: ...
    def __len__(self) -> int: ...
    def __iter__(self) -> Iterator[Any]: ...
    def __array__(self, dtype: npt.DTypeLike = None) -> _Singles: ...
    def __eq__(self, other: object) -> bool: ...
    def __ne__(self, other: object) -> bool: ...
    def __getstate__(self) -> tuple[Any, ...]: ...
    def __setstate__(self, state: tuple[Any, ...]) -> None: ...
    def _repr_html_(self) -> str: ...
