import base64
import re
import sys

import matplotlib
import numpy as np
import pytest

import kem

matplotlib.use("Agg")
plt = pytest.importorskip("matplotlib.pyplot")


@pytest.fixture(autouse=True)
def closed():
    yield
    plt.close("all")


def grid(x, y, values=None):
    values = np.arange(len(y) * len(x), dtype="f4").reshape(len(y), len(x)) if values is None else values
    return kem.Dataset(values, [y, x], title="T", name="Z", unit="V")


def test_curves_have_their_values_names_and_units():
    field = kem.Axis("Field", "G", values=[3, 1, 2])
    values = np.array([1 + 5j, 2, 3 - 1j])
    for part, parts in [(None, ["real", "imaginary"]), ("magnitude", ["magnitude"]), ("phase", ["phase"])]:
        lines = kem.Dataset(values, [field], name="Signal", unit="V").plot(part=part, color="red")
        ax = lines[0].axes
        assert [line.get_label() for line in lines] == parts and lines[0].get_color() == "red"
        assert (ax.get_legend() is None) == (part is not None)
        assert (ax.get_xlabel(), ax.get_ylabel().split(",")[0]) == ("Field (G)", "Signal (V)")
        assert np.array_equal(lines[0].get_xdata(), field.values)
        expected = {"real": values.real, "magnitude": np.abs(values), "phase": np.angle(values)}[parts[0]]
        assert np.array_equal(lines[0].get_ydata(), expected)
    with pytest.raises(ValueError, match="part must be"):
        kem.Dataset(values, [field]).plot(part="length")


@pytest.mark.parametrize("x_first", [False, True])
def test_grids_lie_on_their_axes(x_first):
    """A value is drawn where its coordinates are, however the axes run."""
    ascending, descending = (kem.Axis("A", "s", start=start, end=end, count=3) for start, end in [(1, 5), (5, 1)])
    turning, single = kem.Axis("B", "m", values=[7, 2, 4]), kem.Axis("C", start=3, end=3, count=1)
    for one in [ascending, descending, turning]:
        for other in [ascending, descending, turning, single]:
            x, y = (one, other) if x_first else (other, one)
            dataset = grid(x, y)
            image = dataset.plot()
            ax, bar = image.axes, image.colorbar
            figure = ax.figure
            figure.canvas.draw()
            assert (ax.get_xlabel(), bar.ax.get_ylabel(), ax.get_title()) == (titled(x), "Z (V)", "T")
            assert ax.get_ylabel() == titled(y)
            pixels = np.asarray(figure.canvas.buffer_rgba())
            for row in range(len(y)):
                for column in range(len(x)):
                    at, up = ax.transData.transform((x.values[column], y.values[row]))
                    colour = pixels[pixels.shape[0] - 1 - int(up), int(at)] / 255
                    assert np.allclose(colour, image.to_rgba(dataset.values[row, column]), atol=0.02)
            assert all(np.diff(limits) > 0 for limits in (ax.get_xlim(), ax.get_ylim()))
            plt.close(figure)


def titled(axis):
    return f"{axis.name} ({axis.unit})" if axis.unit else axis.name


def test_given_axes_and_comparisons(data):
    _, ax = plt.subplots()
    raman, background = (kem.open(data / name) for name in ["raman.prn", "raman_background.prn"])
    assert raman.to_record().plot(ax=ax)[0].axes is ax
    assert kem.compare(raman, background.to_record(), ax=ax) is ax
    assert [text.get_text() for text in ax.get_legend().get_texts()][-2:] == ["raman.prn", background.to_record().file_name]
    assert len(ax.lines) == 3 and np.array_equal(ax.lines[2].get_ydata(), background.values.astype("f4"))
    with pytest.raises(ValueError, match="only curves"):
        kem.compare(raman, kem.open(data / "streak.p3d"))
    with pytest.raises(ValueError, match="3 dimensions"):
        kem.Dataset(np.zeros((1, 1, 1)), [kem.Axis(count=1)] * 3).plot()


def test_a_screen_for_the_prompt_and_a_picture_for_the_notebook(data):
    notes = [(f"note {k} <b>" + "long " * 50, "doubtful") for k in range(50)]
    doubtful = kem.Dataset(np.arange(3) * 1j, [kem.Axis("X", count=3, end=1)], title="µ <T>", notes=notes)
    for one in [kem.open(data / "nitroxide.DSC"), kem.load(data / "streak.p3d"), doubtful]:
        text = repr(one)
        assert text.count("\n") < 20 and max(map(len, text.splitlines())) < 130
        page = one._repr_html_()
        assert base64.b64decode(re.search("base64,([^\"]*)", page)[1]).startswith(b"\x89PNG")
    assert "µ &lt;T&gt;" in page and "and 42 more" in page and "<b>" not in page
    assert "Field (G): 1024 points" in repr(kem.open(data / "nitroxide.DSC"))


def test_missing_packages_are_named(monkeypatch, data):
    scan = kem.open(data / "raman.prn")
    for package, call in {"xarray": scan.to_xarray, "pandas": scan.to_pandas, "matplotlib": scan.plot}.items():
        monkeypatch.setitem(sys.modules, package, None)
        monkeypatch.setitem(sys.modules, f"{package}.pyplot", None)
        with pytest.raises(ImportError, match=f"needs the package {package}"):
            call()
    monkeypatch.setitem(sys.modules, "matplotlib.figure", None)
    assert "<img" not in scan._repr_html_()
