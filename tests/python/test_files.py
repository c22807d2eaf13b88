import copy
import gc
import os
import pickle
import shutil
import subprocess
import sys
import threading
import time
import warnings

import numpy as np
import pytest

import kem

VALUE_TYPES = ["u1", "u2", "u4", "i1", "i2", "i4", "f4", "f8", "c8", "c16"]


def test_what_a_file_says(data):
    scan = kem.open(data / "nitroxide.DSC")
    assert (scan.format, scan.title, scan.items, len(scan)) == ("Bruker BES3T", "TEMPO in toluene", 1, 1024)
    assert scan.values.dtype == np.float64 and np.shares_memory(scan.values, scan.values)
    assert np.array_equal(scan.values, np.fromfile(data / "nitroxide.DTA", ">f8"))
    frequency = scan.parameters["MWFQ"]
    assert (float(frequency), frequency.unit, frequency.section) == (float(frequency.text), "Hz", "SPL")
    assert scan.parameters["XPTS"] == 1024 and isinstance(scan.parameters["XPTS"], int)
    assert scan.parameters["AXS1"] == "B0VL" and set(scan.parameters) >= {"MWFQ", "XPTS", "XNAM"}


@pytest.mark.parametrize("kind", VALUE_TYPES)
def test_values_keep_their_type_and_their_dataset(kind):
    values = np.arange(6).reshape(2, 3).astype(kind)
    stored = kem.Axis("Time", "ns", values=[5, 3, 9])
    made = kem.Dataset(values, [kem.Axis("Delay", count=2, end=1), stored], title="t", notes=[("n", "remark")])
    array, axis = made.values, made.axes[1].values
    again = [pickle.loads(pickle.dumps(made)), copy.copy(made), copy.deepcopy(made)]
    assert all(one == made for one in again)
    del made
    gc.collect()
    assert array.dtype == values.dtype and np.array_equal(array, values) and np.array_equal(axis, [5, 3, 9])
    assert not array.flags.writeable
    with pytest.raises(TypeError):
        hash(again[0])


def test_equal_means_every_part():
    parts = dict(values=np.zeros(2), axes=[kem.Axis("X", "s", count=2, end=1)], title="", notes=[], item=1)
    other = dict(values=np.ones(2), axes=[kem.Axis("X", "ms", count=2, end=1)], title="t", notes=[("n", "doubtful")],
                 item=2)
    for name, part in other.items():
        assert kem.Dataset(**parts) != kem.Dataset(**parts | {name: part}), name


def test_parameters_of_one_key_are_a_list():
    rows = [("A", "Gain", "2e3", 2000.0, "dB"), ("B", "Gain", "high", None, ""), ("B", "N", "-3 V", -3.0, "V")]
    parameters = kem.Dataset(np.zeros(0), [kem.Axis()], parameters=rows).parameters
    first, second = parameters["Gain"]
    assert (first / 2, first.text, first.unit, second, second.section) == (1000, "2e3", "dB", "high", "B")
    assert parameters["N"] == -3 and parameters["N"].text == "-3 V" and len(parameters) == 2
    assert list(parameters.sections["B"]) == ["Gain", "N"]
    assert pickle.loads(pickle.dumps(first)).unit == "dB"


def test_items_and_formats(data):
    file = data / "columns.nxy"
    together = kem.open_all(file)
    assert together == [kem.open(file, item=one.number) for one in kem.items(file)]
    assert [one.item_name for one in together] == [one.name for one in kem.items(file)]
    assert kem.identify(file).format in {one.name for one in kem.formats()}
    assert kem.open(file, item=2, classic=True) == kem.load(file, 2).to_dataset()


def test_many_files_open_in_order_on_any_number_of_threads(data, tmp_path):
    names = ["nitroxide.DSC", "streak.p3d", "raman.prn", "columns.nxy"] * 5
    files = [data / name for name in names]
    expected = [kem.open(file) for file in files]
    for threads in [None, 1, 4, 1000]:
        assert kem.open_many(iter(files), threads=threads) == expected
    assert kem.open_many([]) == []
    (tmp_path / "odd.txt").write_bytes(b"no numbers")
    with pytest.raises(kem.NotFound, match="first"):
        kem.open_many([*files, tmp_path / "first", tmp_path / "odd.txt"], threads=4)
    with pytest.raises(ValueError, match="threads"):
        kem.open_many(files, threads=0)


def test_find_lists_pairs_once(data, tmp_path):
    for name in ["nitroxide.DSC", "nitroxide.DTA", "raman.prn"]:
        shutil.copy(data / name, tmp_path / name)
    (tmp_path / "alone").mkdir()
    shutil.copy(data / "nitroxide.DTA", tmp_path / "alone" / "other.DTA")
    shutil.copy(data / "streak.p3d", tmp_path / "alone" / "a.p3d")
    (tmp_path / "notes.bin").write_bytes(b"\0nothing")
    assert [path.name for path in kem.find(tmp_path)] == ["nitroxide.DSC", "raman.prn"]
    assert "a.p3d" in [path.name for path in kem.find(os.fsencode(tmp_path), recursive=True)]


# ------------------------------------------------------------ what goes wrong

ERRORS = [kem.NotFound, kem.PermissionDenied, kem.ReadFailed, kem.UnknownFormat, kem.NotReadable, kem.Damaged,
          kem.NoSuchItem, kem.DoesNotFit, kem.WriteFailed, kem.OutOfMemory]


def descriptor(points):
    return (f"#DESC\t1.2\nDSRC\tEXP\nBSEQ\tBIG\nIKKF\tREAL\nXTYP\tIDX\nYTYP\tNODATA\nZTYP\tNODATA\nIRFMT\tD\n"
            f"XPTS\t{points}\nXMIN\t1\nXWID\t1\n").encode()


def test_errors_are_those_of_python(data, tmp_path):
    (tmp_path / "unknown.bin").write_bytes(bytes(range(256)))
    (tmp_path / "broken.b3d").write_bytes(b"B3D")
    (tmp_path / "alone.DSC").write_bytes(descriptor(4))
    scan = kem.load(data / "raman.prn")
    cases = [
        (lambda: kem.open(tmp_path / "none.DSC"), kem.NotFound, FileNotFoundError),
        (lambda: kem.open(tmp_path / ("long" * 90)), kem.ReadFailed, OSError),
        (lambda: kem.open(tmp_path / "unknown.bin"), kem.UnknownFormat, kem.Error),
        (lambda: kem.open(tmp_path / "broken.b3d"), kem.Error, Exception),
        (lambda: kem.open(data / "raman.prn", 7), kem.NoSuchItem, LookupError),
        (lambda: scan.smooth(6), kem.DoesNotFit, ValueError),
        (lambda: scan.save("wrong.extension"), kem.DoesNotFit, ValueError),
        (lambda: scan.save(tmp_path / "none" / "a.prn"), kem.WriteFailed, OSError),
        (lambda: kem.open(data / "streak.p3d").to_record().diff(axis="z"), ValueError, ValueError),
        (lambda: kem.open(3), TypeError, TypeError),
        (lambda: kem.open("a\0b"), (TypeError, ValueError), Exception),
        (lambda: scan.resample(x=slice(0, 1)), ValueError, ValueError),
        (lambda: scan.resample(x=slice(0, 1e30, 1e-30)), MemoryError, MemoryError),
        (lambda: kem.Axis(count=2**62).values, MemoryError, MemoryError),
        (lambda: kem.Record([]), kem.DoesNotFit, ValueError),
        (lambda: kem.Record(np.zeros((2, 2, 2))), ValueError, ValueError),
        (lambda: kem.Record(np.zeros(3), x=[1, 2]), ValueError, ValueError),
        (lambda: kem.Record(np.zeros(3, complex)), TypeError, TypeError),
    ]
    for kind in (kem.Axis, kem.Dataset, kem.Record):
        cases.append((lambda kind=kind: repr(kind.__new__(kind)), TypeError, TypeError))
    cases.append((lambda: kem.Record.__new__(kem.Record).x, TypeError, TypeError))
    for call, one, other in cases:
        with pytest.raises(one) as caught:
            call()
        assert isinstance(caught.value, other) and not str(caught.value).startswith(":")


def test_errors_carry_a_sentence_through_pickle():
    for error in ERRORS:
        again = pickle.loads(pickle.dumps(error("scan.DSC: cannot be read")))
        assert type(again) is error and isinstance(again, kem.Error) and str(again) == "scan.DSC: cannot be read"


def test_paths_of_any_kind(data, tmp_path):
    for name in ["µ-Wellen 测量.prn".encode(), b"not utf-8 \xff.prn", b"long" * 60 + b".prn"]:
        path = os.path.join(os.fsencode(tmp_path), name)
        shutil.copy(data / "raman.prn", path)
        assert kem.open(path) == kem.open(os.fsdecode(path)) == kem.open(data / "raman.prn")
        assert os.fsencode(kem.open(path).file) == path
        with pytest.raises(kem.NoSuchItem):
            kem.open(path, item=9)


def test_a_cut_file_warns_once(tmp_path):
    file = tmp_path / "cut.DSC"
    file.write_bytes(descriptor(8))
    file.with_suffix(".DTA").write_bytes(np.arange(5, dtype=">f8").tobytes())
    with warnings.catch_warnings(record=True) as caught:
        warnings.simplefilter("default")
        for _ in range(3):
            scan = kem.open(file)
    assert [type(one.message) for one in caught] == [kem.Note] and caught[0].filename == __file__
    assert len(scan) == 5 and scan.notes[-1].severity == caught[0].message.severity == "damaged"
    assert str(scan.notes[-1]) in str(caught[0].message)
    checked = kem.check(file)
    assert checked.state == "damaged" and checked.notes[0][0].text == scan.notes[-1].text
    file.with_suffix(".DTA").unlink()
    assert kem.check(file).state == "unreadable" and isinstance(kem.check(file).error, kem.Error)



def test_memory_that_runs_out(tmp_path):
    file = tmp_path / "large.DSC"
    file.write_bytes(descriptor(2**23))
    with open(file.with_suffix(".DTA"), "wb") as values:
        values.truncate(2**26)
    program = f"""
import resource, kem
curve = kem.Record(range(2 ** 20))
used = int(open("/proc/self/statm").read().split()[0]) * resource.getpagesize()
resource.setrlimit(resource.RLIMIT_AS, (used + 2 ** 24,) * 2)
for call in [lambda: kem.open({str(file)!r}), lambda: curve.resample(slice(0, 2 ** 23, 1)), lambda: curve.exp().x * 9]:
    try:
        made = [call() for _ in range(9)]
    except MemoryError:
        print("memory ran out")
"""
    done = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True)
    assert (done.returncode, done.stdout) == (0, "memory ran out\n" * 3), done.stderr


def test_opening_lets_other_threads_run(tmp_path):
    (tmp_path / "long.txt").write_bytes(b"1.5 2.5\n" * 200_000)
    ticks, done = [], threading.Event()

    def tick():
        while not done.wait(0.001):
            ticks.append(time.perf_counter())

    def ticked_within():
        started = time.perf_counter()
        kem.open(tmp_path / "long.txt")
        quarter = (time.perf_counter() - started) / 4
        return any(started + quarter < at < started + 3 * quarter for at in ticks)

    thread = threading.Thread(target=tick)
    thread.start()
    try:
        assert any(ticked_within() for _ in range(9))
    finally:
        done.set()
        thread.join()
