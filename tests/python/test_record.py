import copy
import os
import pickle
import subprocess

import numpy as np
import pytest
from hypothesis import given
from hypothesis import strategies as some
from hypothesis.extra import numpy as arrays

import kem

random = np.random.default_rng(5)
CURVE = kem.Record(random.uniform(0.1, 3, 60), x=np.cumsum(random.uniform(0.2, 1, 60)))
OTHER = kem.Record(random.uniform(0.1, 3, 40))
GRID = kem.Record(random.uniform(0.1, 3, (30, 25)), x=np.arange(25) * 2 + 1, y=np.cumsum(random.uniform(0.2, 1, 30)))
LIKE = kem.Record(np.zeros((4, 3)), x=[3.3, 7, 2.5], y=[4, 4.5, 9, 6])

# What Python calls, and the same in the words of the command.
CURVES = {
    "smooth -w 9": lambda: CURVE.smooth(width=9),
    "median -w 7": lambda: CURVE.median(7),
    "diff": lambda: CURVE.diff(),
    "cut -x 3 20": lambda: CURVE.cut(x1=3, x2=20),
    "reduce -x 3": lambda: CURVE.reduce(fx=3),
    "resample -x 2 30 0.3": lambda: CURVE.resample(x=slice(2, 30, 0.3)),
    "resample --like OTHER": lambda: CURVE.resample(OTHER.x),
    "axis -x *3.5": lambda: CURVE.axis_op("x", "*", 3.5),
    "axis -x log": lambda: CURVE.axis_op(operation="log", axis="x"),
    "swap": lambda: CURVE.swapped(),
    "sort": lambda: CURVE.sorted(),
    "integrate": lambda: CURVE.running_integral(),
    "baseline -x 4 25": lambda: CURVE.baseline(4, at2=25),
    "slant -p 4 2 25 7": lambda: CURVE.slant(x1=4, target1=2, x2=25, target2=7),
}
GRIDS = {
    "smooth -w 5 -l y": lambda: GRID.smooth(5, axis="y"),
    "smooth -w 7": lambda: GRID.smooth(7),
    "median -w 3": lambda: GRID.median(3),
    "diff -l y": lambda: GRID.diff(axis="y"),
    "cut -x 5 30 -y 3 9": lambda: GRID.cut(5, 30, y1=3, y2=9),
    "reduce -x 2 -y 3": lambda: GRID.reduce(2, 3),
    "resample -x 2 40 3 -y 1 9 0.5": lambda: GRID.resample(x=slice(2, 40, 3), y=slice(1, 9, 0.5)),
    "resample --like LIKE": lambda: GRID.resample(LIKE.x, LIKE.y),
    "slice -y 3 9": lambda: GRID.slice("x", 3, 9),
    "slice -x 5 30 --mean": lambda: GRID.slice("y", start=5, stop=30, mean=True),
    "integrate -y 3 9": lambda: GRID.integral_along("x", 3, 9),
    "integrate -x 5 30": lambda: GRID.integral_along("y", 5, 30),
    "axis -y -2": lambda: GRID.axis_op("y", "-", 2),
    "baseline -y 3 9": lambda: GRID.baseline(3, 9, axis="y"),
    "swap": lambda: GRID.swapped(),
}
FUNCTIONS = "Exp Log Ln Sin Cos Tan ASin ACos ATan SinH CosH TanH ASinH ACosH ATanH Inv".split()
EXPRESSIONS = {
    "CURVE + OTHER": lambda: CURVE + OTHER,
    "CURVE - OTHER": lambda: CURVE - OTHER,
    "CURVE * OTHER": lambda: CURVE * OTHER,
    "CURVE / OTHER": lambda: CURVE / OTHER,
    "OTHER ^ CURVE": lambda: OTHER**CURVE,
    "CURVE & CURVE": lambda: CURVE & CURVE,
    "CURVE + 0.3": lambda: CURVE + 0.3,
    "CURVE - 0.3": lambda: CURVE - np.float64(0.3),
    "CURVE * 0.3": lambda: np.float32(0.3) * CURVE,
    "CURVE / 0.3": lambda: CURVE / 0.3,
    "CURVE ^ 2": lambda: CURVE ** np.int64(2),
    "3 - GRID": lambda: np.float64(3) - GRID,
    "3 / GRID": lambda: 3 / GRID,
    "0 - GRID": lambda: -GRID + 0,
    "Set(GRID, 2.5)": lambda: GRID.set(2.5),
    **{f"{name}(CURVE)": lambda name=name: getattr(CURVE, name.lower())() for name in FUNCTIONS},
}
NUMBERS = {
    "integrate -x 3 20 CURVE": lambda: CURVE.integral(3, 20),
    "integrate -x 3 20 --absolute CURVE": lambda: CURVE.abs_integral(3, 20),
    "integrate -x 5 30 -y 3 9 GRID": lambda: GRID.integral(5, 30, 3, 9),
    "value -x 7.7 CURVE": lambda: CURVE.at(7.7),
    "value -x 7.7 -y 5 GRID": lambda: GRID.at(x=7.7, y=5),
    "value -n -x 7.7 -y 5 GRID": lambda: GRID.nearest(7.7, 5),
}


@pytest.fixture(scope="module")
def command(tmp_path_factory):
    """Runs the command in a folder where the records above lie under their names."""
    folder = tmp_path_factory.mktemp("records")
    for name, record in {"CURVE": CURVE, "OTHER": OTHER, "GRID": GRID, "LIKE": LIKE}.items():
        record.save(folder / f"{name}.{binary(record)}")
        (folder / f"{name}.{binary(record)}").rename(folder / name)

    def run(*words):
        environment = {**os.environ, "LD_PRELOAD": ""}  # the command has its own sanitizer
        done = subprocess.run(
            [os.environ["KEM_COMMAND"], *words], cwd=folder, env=environment, capture_output=True, text=True
        )
        assert done.returncode == 0, done.stderr
        return done.stdout

    run.folder = folder
    return run


def binary(record):
    return "b3d" if record.is_grid else "b2d"


def bits(record):
    axes = [record.x, record.y] if record.is_grid else [record.x]
    return [part.astype("f4").tobytes() for part in (record.values, *axes)]


def test_results_are_those_of_the_command(command):
    calls = [((*words.split(), "CURVE"), call) for words, call in CURVES.items()]
    calls += [((*words.split(), "GRID"), call) for words, call in GRIDS.items()]
    calls += [(("calc", words), call) for words, call in EXPRESSIONS.items()]
    for words, call in calls:
        result = call()
        command(*words, "-f", "-o", "out", "-t", binary(result))
        assert bits(kem.load(command.folder / "out")) == bits(result), words
    for words, call in NUMBERS.items():
        assert np.float32(command(*words.split())) == np.float32(call()), words


def test_what_the_command_does_not_tell():
    y, x = CURVE.y, CURVE.x
    inside = (x >= 3) & (x <= 20)
    places = [x[inside][one(y[inside])] for one in (np.argmin, np.argmax)]
    assert CURVE.min_max(3, 20) == (y[inside].min(), y[inside].max(), *places)
    low, high, at_low, at_high = GRID.min_max(0, 99, 0, 99)
    assert (low, high) == (GRID.z_min, GRID.z_max) and GRID.at(*at_low) == low and GRID.nearest(*at_high) == high
    counts, low, high = CURVE.histogram(parts=4)
    assert counts.sum() == len(CURVE) and (low, high) == (y.min(), y.max()) == (CURVE.y_start, CURVE.y_end)
    assert list(CURVE.delete_closest(x[5], y[5]).x) == [*x[:5], *x[6:]]
    assert CURVE.noise_level() == pytest.approx(np.abs(np.diff(x)).sum() / len(x), rel=1e-5)
    assert CURVE.same_axes(CURVE.exp()) and not CURVE.same_axes(OTHER)
    assert CURVE.product(CURVE) == CURVE & CURVE and CURVE.power(2.5) == CURVE**2.5
    for one, other in [(slice(2, 9, 1), [4, 4.5, 9]), ([4, 4.5, 9], slice(2, 9, 1))]:
        listed = [np.arange(2, 10) if isinstance(part, slice) else part for part in (one, other)]
        assert np.array_equal(GRID.resample(x=one, y=other).z, GRID.resample(*listed).z)


@given(arrays.arrays("f4", some.tuples(some.integers(1, 6), some.integers(1, 6)) | some.tuples(some.integers(1, 9))))
def test_arrays_come_back(values):
    record = kem.Record(values)
    assert np.asarray(record).tobytes() == values.tobytes() and record.values.shape == values.shape
    assert list(record.x) == list(range(values.shape[-1]))
    for again in pickle.loads(pickle.dumps(record)), copy.deepcopy(record), copy.copy(record):
        assert again == record and not again != record and again.label == record.label
    assert np.asarray(record.to_dataset()).tobytes() == values.tobytes()


def test_arrays_are_views_that_nobody_writes_to():
    assert np.shares_memory(CURVE.x, CURVE.x) and np.shares_memory(CURVE.y, np.asarray(CURVE))
    axis = (CURVE * 2).y
    assert np.array_equal(axis, CURVE.y * np.float32(2))
    for array in (CURVE.x, CURVE.y, GRID.z, GRID.x, OTHER.x):
        with pytest.raises(ValueError):
            array[...] = 0
    with pytest.raises(ValueError, match="only grids have z"):
        CURVE.z


def test_loaded_records_keep_all(data, tmp_path):
    for path in [data / "nitroxide.DSC", data / "streak.p3d"]:
        record = kem.load(path)
        again = pickle.loads(pickle.dumps(record))
        assert again == record and again.labels == record.labels and again.comments == record.comments != ""
        assert record != record + 1
    record.save(os.fsencode(tmp_path / "again"), format="b3d")
    assert bits(kem.load(tmp_path / "again")) == bits(record)


CALLS = {
    "at": 2, "nearest": 2, "cut": 4, "integral": 4, "slant": 4, "baseline": 2, "delete_closest": 2, "power": 1,
    "median": "n", "smooth": "n", "histogram": "n", "reduce": "nn", "set": 1, "min_max": 4,
}  # fmt: skip


@given(some.data())
def test_no_number_does_harm(data):
    record = data.draw(some.sampled_from([CURVE, GRID, OTHER]))
    name = data.draw(some.sampled_from(sorted(CALLS)))
    whole = isinstance(CALLS[name], str)
    numbers = some.integers(-(2**31), 2**31 - 1) if whole else some.floats(width=32)
    count = len(CALLS[name]) if whole else CALLS[name]
    if name == "histogram":
        numbers = some.integers(-9, 10**4)
    try:
        getattr(record, name)(*data.draw(some.lists(numbers, min_size=count, max_size=count)))
    except (kem.Error, ValueError, MemoryError) as error:
        assert str(error) or isinstance(error, MemoryError)
