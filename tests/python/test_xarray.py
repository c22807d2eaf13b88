import pickle
import subprocess
import sys

import numpy as np
import pytest

import kem

xr = pytest.importorskip("xarray")
pd = pytest.importorskip("pandas")

ROWS = [("", "Gain", "2", 2.0, "dB"), ("", "Gain", "high", None, ""), ("", "1/T\n", "7e30", 7e30, ""),
        ("", "empty", "", None, ""), ("", "µ", "5", 5.0, ""), ("", "N", "1", 1.0, ""), ("", "N", "2", 2.0, "")]


def volume(kind="i2"):
    axes = [kem.Axis("Field (B0)", "G", count=2, end=1), kem.Axis("", "", values=[5, 2, 9]), kem.Axis("field b0", end=3, count=4)]
    return kem.Dataset(np.arange(24).reshape(2, 3, 4).astype(kind), axes, name="2nd signal", unit="V", parameters=ROWS,
                       notes=[("odd", "doubtful")])


@pytest.mark.parametrize("kind", ["u1", "u2", "i4", "f4", "f8", "c8"])
def test_all_arrives_and_is_kept_by_netcdf(kind, tmp_path):
    made = volume(kind).to_xarray()
    variable = made["_2nd_signal"]
    assert variable.dims == ("field_b0", "dim", "field_b0_2") and variable.attrs == {"long_name": "2nd signal", "units": "V"}
    assert variable.dtype == np.dtype(kind) and np.array_equal(variable, volume(kind).values)
    assert list(made["dim"]) == [5, 2, 9] and made["field_b0"].attrs["units"] == "G"
    assert made.attrs["Gain"] == ["2", "high"] and made.attrs["N"] == [1, 2] and made.attrs["notes"] == "odd"
    assert all(name.isidentifier() for name in [*made.dims, *made.variables])
    if kind == "c8":
        made = made.map(np.real, keep_attrs=True)
    made.to_netcdf(tmp_path / "kept.nc")
    with xr.open_dataset(tmp_path / "kept.nc") as kept:
        assert kept.equals(made) and kept["_2nd_signal"].attrs == variable.attrs
        assert list(kept.attrs) == list(made.attrs) and kept.attrs["µ"] == 5


def test_the_engine_opens_files(data):
    scan = xr.open_dataset(data / "nitroxide.DSC", engine="kem")
    assert scan.identical(kem.open(data / "nitroxide.DSC").to_xarray())
    second = xr.open_dataset(str(data / "columns.nxy"), item=2, drop_variables="none")  # told by the file itself
    assert second.identical(kem.open(data / "columns.nxy", 2).to_xarray())
    assert "kem" in xr.backends.list_engines()
    with pytest.raises(kem.NotFound):
        xr.open_dataset("none.DSC", engine="kem")


def test_many_values_are_read_when_asked_for(tmp_path):
    file = tmp_path / "large.b3d"
    values = np.random.default_rng(1).uniform(size=(600, 500)).astype("f4")
    kem.Record(values).save(file)
    lazy = xr.open_dataset(file, engine="kem")
    assert len(pickle.dumps(lazy)) < values.nbytes / 10
    [name] = lazy.data_vars
    assert np.array_equal(pickle.loads(pickle.dumps(lazy))[name][5:9, ::7], values[5:9, ::7])
    assert np.array_equal(lazy[name], values)
    file.unlink()
    assert np.array_equal(lazy[name], values)  # kept once read
    with pytest.raises(kem.NotFound):
        xr.open_dataset(file, engine="kem")


@pytest.mark.parametrize("workers", [[], ["--threads"]])
def test_many_files_on_a_cluster(workers):
    done = subprocess.run([sys.executable, "examples/many_files.py", *workers, "60"], capture_output=True, text=True)
    assert done.returncode == 0 and "areas of 60 files" in done.stdout, done.stderr


def test_pandas():
    curve = kem.Dataset(np.arange(3) * 1j, [kem.Axis("Time", values=[3, 1, 2])], name="I").to_pandas()
    assert isinstance(curve, pd.Series) and curve[1.0] == 1j and (curve.index.name, curve.name) == ("time", "I")
    table = kem.Record(np.arange(6).reshape(2, 3), x=[5, 6, 7]).to_pandas()
    assert isinstance(table, pd.DataFrame) and table.loc[1.0, 7.0] == 5
    assert kem.Dataset(np.array(3.0), []).to_pandas().tolist() == [3]
    many = volume().to_pandas()
    assert many.index.names == ["field_b0", "dim", "field_b0_2"] and many.index[17] == (1, 2, 1) and many.iloc[17] == 17
