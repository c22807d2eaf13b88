"""Pictures of datasets and records with matplotlib."""

from __future__ import annotations

from collections.abc import Callable
from typing import TYPE_CHECKING, Any, Union

import numpy as np
import numpy.typing as npt

from ._convert import dataset_of, need
from ._kem import Axis, Dataset, Record

if TYPE_CHECKING:
    from matplotlib.axes import Axes
    from matplotlib.image import AxesImage
    from matplotlib.collections import QuadMesh
    from matplotlib.lines import Line2D

PARTS: dict[str, Callable[..., npt.NDArray[Any]]] = {"real": np.real, "imaginary": np.imag, "magnitude": np.abs, "phase": np.angle}


def _titled(of: Union[Axis, Dataset], part: str = "") -> str:
    name = f"{of.name} ({of.unit})" if of.unit and of.name else of.name or of.unit
    return f"{name}, {part}" if name and part else name or part


def _parts(dataset: Dataset, part: str | None, one: bool) -> dict[str, npt.NDArray[Any]]:
    """The real values to draw by what they are called; of complex ones real and imaginary part, unless one is named."""
    if part is not None and part not in PARTS:
        raise ValueError(f"part must be one of {', '.join(PARTS)}, not {part!r}")
    if not np.iscomplexobj(dataset.values) and part is None:
        return {"": dataset.values}
    wanted = [part] if part else ["real"] if one else ["real", "imaginary"]
    return {name: PARTS[name](dataset.values) for name in wanted}


def _edges(coordinates: npt.NDArray[Any]) -> npt.NDArray[Any]:
    """Where the cells around coordinates begin and end: half-way between them, and as far at either end."""
    if len(coordinates) == 1:
        return np.array([coordinates[0] - 0.5, coordinates[0] + 0.5])
    halves = np.diff(coordinates) / 2
    return np.concatenate([coordinates[:1] - halves[:1], coordinates[:-1] + halves, coordinates[-1:] + halves[-1:]])


def _curves(dataset: Dataset, ax: Axes, part: str | None, style: dict[str, Any]) -> list[Line2D]:
    lines: list[Line2D] = []
    for name, values in _parts(dataset, part, one=False).items():
        label = ", ".join(text for text in (style.get("label", ""), name) if text)
        lines += ax.plot(dataset.axes[0].values, values, **style | ({"label": label} if label else {}))
    ax.set(xlabel=_titled(dataset.axes[0]), ylabel=_titled(dataset, "" if len(lines) > 1 else part or ""))
    if len(lines) > 1:
        ax.legend()
    return lines


def _image(dataset: Dataset, ax: Axes, part: str | None, style: dict[str, Any]) -> Union[AxesImage, QuadMesh]:
    y, x = dataset.axes
    [(name, values)] = _parts(dataset, part, one=True).items()
    columns, rows = np.argsort(x.values, kind="stable"), np.argsort(y.values, kind="stable")
    values = values[np.ix_(rows, columns)]
    xs, ys = _edges(x.values[columns]), _edges(y.values[rows])
    image: Union[AxesImage, QuadMesh]
    if x.is_linear and y.is_linear:  # much faster
        extent = (xs[0], xs[-1], ys[0], ys[-1])
        image = ax.imshow(values, **{"extent": extent, "origin": "lower", "aspect": "auto"} | style)
    else:
        image = ax.pcolormesh(xs, ys, values, **style)
    ax.set(xlabel=_titled(x), ylabel=_titled(y))
    ax.figure.colorbar(image, ax=ax, label=_titled(dataset, name))
    return image


def plot(
    self: Union[Dataset, Record], *, ax: Axes | None = None, part: str | None = None, **style: Any
) -> Union[list[Line2D], AxesImage, QuadMesh]:
    """Draws a curve, or a grid as an image with a colour bar, with names and units.

    Parameters
    ----------
    ax : matplotlib.axes.Axes, optional
        Where to draw; a new figure when there is none.
    part : {"real", "imaginary", "magnitude", "phase"}, optional
        Of complex values. When none is named, curves show real and imaginary part, grids the real one.
    **style
        For ``plot``, ``imshow`` or ``pcolormesh`` of matplotlib.

    Returns
    -------
    list of Line2D, AxesImage or QuadMesh
        Grids with stored coordinates are meshes, so that each value lies where its coordinates are.

    Raises
    ------
    ValueError
        For an unknown part, and for more than two dimensions.
    ImportError
        When matplotlib is missing.

    Examples
    --------
    >>> [line] = scan.plot(color="black")
    >>> line.axes.get_xlabel()
    'Field (G)'
    """
    dataset = dataset_of(self)
    if len(dataset.axes) not in (1, 2):
        raise ValueError(f"a dataset of {len(dataset.axes)} dimensions cannot be drawn; curves and grids can")
    if ax is None:
        _, ax = need("matplotlib.pyplot").subplots()
    ax.set_title(dataset.title or dataset.file.name)
    return (_curves if len(dataset.axes) == 1 else _image)(dataset, ax, part, style)


def compare(*curves: Union[Dataset, Record], ax: Axes | None = None, part: str | None = None) -> Axes:
    """Draws curves over each other, with a legend of their files or titles.

    Parameters
    ----------
    *curves : Dataset or Record
    ax : matplotlib.axes.Axes, optional
        Where to draw; a new figure when there is none.
    part : {"real", "imaginary", "magnitude", "phase"}, optional
        Of complex values; real and imaginary when none is named.

    Returns
    -------
    matplotlib.axes.Axes

    Raises
    ------
    ValueError
        When one is no curve.

    Examples
    --------
    >>> raman = kem.open("examples/data/raman.prn")
    >>> len(kem.compare(raman, kem.open("examples/data/raman_background.prn")).lines)
    2
    """
    datasets = [dataset_of(one) for one in curves]
    if any(len(dataset.axes) != 1 for dataset in datasets):
        raise ValueError("only curves can be compared")
    if ax is None:
        _, ax = need("matplotlib.pyplot").subplots()
    for one, dataset in zip(curves, datasets):
        name = one.file_name if isinstance(one, Record) else dataset.file.name or dataset.title
        item = [dataset.item_name] if dataset.items > 1 else []
        _curves(dataset, ax, part, {"label": ", ".join([name, *item])})
    ax.legend()
    return ax
