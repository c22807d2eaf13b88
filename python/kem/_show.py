"""What datasets and records look like at a prompt and in a notebook."""

from __future__ import annotations

import base64
import html
import io
from collections.abc import Iterator
from typing import Any, Union

import numpy as np
import numpy.typing as npt

from ._convert import dataset_of
from ._kem import Axis, Dataset, Record

MOST = 8  #: lines of one kind

Fact = tuple[str, str]


def _named(of: Union[Axis, Dataset]) -> str:
    return (of.name or "values") + (f" ({of.unit})" if of.unit else "")


def _axis(axis: Axis) -> str:
    kind = "linear" if axis.is_linear else "stored"
    return f"{_named(axis)}: {len(axis)} points, {axis.start:.8g} to {axis.end:.8g}, {kind}"


def _range(values: npt.NDArray[Any]) -> str:
    if values.size == 0:
        return "none"
    if np.iscomplexobj(values):
        return f"magnitudes {np.abs(values).min():.6g} to {np.abs(values).max():.6g}"
    return f"{values.min():.6g} to {values.max():.6g}"


def _some(what: str, texts: list[str]) -> Iterator[Fact]:
    for text in texts[:MOST]:
        yield what, text if len(text) < 100 else text[:99] + "…"
    if len(texts) > MOST:
        yield "", f"and {len(texts) - MOST} more"


def _facts(one: Union[Dataset, Record]) -> list[Fact]:
    dataset = dataset_of(one)
    item = f"{dataset.item} of {dataset.items} {dataset.item_name}".rstrip() if dataset.items > 1 else ""
    shape = " x ".join(map(str, dataset.values.shape))
    facts = [
        ("file", one.file_name if isinstance(one, Record) else str(dataset.file)),
        ("format", dataset.format),
        ("title", dataset.title),
        ("item", item),
        ("values", f"{_named(dataset)}: {shape} {dataset.values.dtype}, {_range(dataset.values)}"),
        *_some("axis", [_axis(axis) for axis in dataset.axes]),
        ("parameters", str(len(dataset.parameters) or "")),
        *_some("note", [f"{note.severity}: {note}" for note in dataset.notes]),
    ]
    return [(what, text) for what, text in facts if text and text != "."]


def show(self: Union[Dataset, Record]) -> str:
    width = max(len(what) for what, _ in _facts(self)) + 2
    return "\n".join([f"<kem.{type(self).__name__}>", *(f"{what:{width}}{text}" for what, text in _facts(self))])


def _picture(dataset: Dataset) -> str:
    try:
        from matplotlib.figure import Figure
    except ImportError:
        return ""
    figure = Figure(figsize=(4, 2.5), layout="constrained")
    dataset.plot(ax=figure.subplots())
    file = io.BytesIO()
    figure.savefig(file, format="png", dpi=80)
    return f'<img src="data:image/png;base64,{base64.b64encode(file.getvalue()).decode()}">'


def show_html(self: Union[Dataset, Record]) -> str:
    rows = "".join(f"<tr><th>{what}</th><td>{html.escape(text)}</td></tr>" for what, text in _facts(self))
    dataset = dataset_of(self)
    drawn = len(dataset.axes) in (1, 2) and dataset.values.size > 0
    return f"<table>{rows}</table>" + (_picture(dataset) if drawn else "")


def show_axis(self: Axis) -> str:
    return f"<kem.Axis {_axis(self)}>"
