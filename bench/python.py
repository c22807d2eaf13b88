"""The Python package beside the library, NumPy and pandas: python.py BUILD, with the folder of a build that has kem and
the package.

Each time is the best of several; a factor is what the package costs more than the call of the library within.
"""

import hashlib
import subprocess
import sys
import tempfile
import time
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import numpy as np
import pandas as pd

build = Path(sys.argv[1]).resolve()
sys.path.insert(0, str(build / "python"))
import kem  # noqa: E402


def best(call, *, of=15):
    times = []
    for _ in range(of):
        started = time.perf_counter()
        made = call()
        times.append(time.perf_counter() - started)
        del made
    return min(times) * 1e3


def program(folder):
    """A program that opens a file with the library, and prints the best time in ms."""
    source = folder / "open.cpp"
    source.write_text(
        "#include <kem/dataset.h>\n#include <chrono>\n#include <cstdio>\n"
        "int main(int, char** argv) {\n  double best = 1e9;\n  for (int k = 0; k < 15; ++k) {\n"
        "    const auto from = std::chrono::steady_clock::now();\n    const kem::Dataset d = kem::Open(argv[1]);\n"
        "    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - from;\n"
        '    if (took.count() < best) best = took.count();\n  }\n  std::printf("%f", best);\n}\n'
    )
    include = Path(__file__).resolve().parents[1] / "include"
    made = folder / "open"
    flags = ["-std=c++20", "-O2", f"-I{include}", f"-L{build}", f"-Wl,-rpath,{build}"]
    subprocess.run(["c++", *flags, source, "-o", made, "-lkem"], check=True)
    return lambda file: float(subprocess.run([made, file], capture_output=True, check=True).stdout)


def image(file):
    pixels = np.random.default_rng(1).integers(0, 60000, (1024, 1344), dtype="<u2")
    status = b"[Application],Date=\"01-01-2020\"\r\n"
    header = np.zeros(32, "<u2")
    header[:7] = [0x4D49, len(status), pixels.shape[1], pixels.shape[0], 0, 0, 2]
    file.write_bytes(header.tobytes() + status + pixels.tobytes())


def curve(file, points):
    descriptor = ["#DESC\t1.2", "DSRC\tEXP", "BSEQ\tBIG", "IKKF\tREAL", "XTYP\tIDX", "YTYP\tNODATA", "ZTYP\tNODATA",
                  "IRFMT\tD", f"XPTS\t{points}", "XMIN\t0", "XWID\t1"]  # fmt: skip
    file.write_text("\n".join(descriptor) + "\n")
    file.with_suffix(".DTA").write_bytes(np.random.default_rng(2).normal(size=points).astype(">f8").tobytes())


def best_in_turns(one, other, *, of=5):
    """The least of both, as the speed of a machine changes by the second."""
    return map(min, zip(*[(one(), other()) for _ in range(of)]))


def told(what, one, four):
    print(f"  {what}: {one:.0f} ms, {four:.0f} ms, {one / four:.2f} times as fast")


def in_turns(one, four):
    return best_in_turns(lambda: best(one, of=1), lambda: best(four, of=1), of=15)


def on_a_pool(what, call, files):
    with ThreadPoolExecutor(4) as pool:
        told(what, *in_turns(lambda: [call(file) for file in files], lambda: list(pool.map(call, files))))


def opened(what, files):
    told(what, *in_turns(lambda: [kem.open(file) for file in files], lambda: kem.open_many(files, threads=4)))
    on_a_pool("  handed out by a pool", kem.open, files)


with tempfile.TemporaryDirectory() as temporary:
    folder = Path(temporary)
    library = program(folder)
    image(folder / "image.img")
    curve(folder / "curve.DSC", 10**6)
    for what, name in [("1344 x 1024 image", "image.img"), ("1 M point curve", "curve.DSC")]:
        file = folder / name
        here, within = best_in_turns(lambda: best(lambda: kem.open(file).values), lambda: library(file))
        print(f"{what}: {here:.2f} ms, the library {within:.2f} ms, factor {here / within:.2f}")
    print(f"  np.fromfile of the curve: {best(lambda: np.fromfile(folder / 'curve.DTA', '>f8').astype('f8')):.2f} ms")

    table = folder / "table.txt"
    numbers = np.random.default_rng(3).normal(size=(100_000, 2))
    np.savetxt(table, numbers, fmt="%.9g")
    print(f"table of 100 k rows: {best(lambda: kem.open(table), of=5):.0f} ms")
    print(f"  np.loadtxt: {best(lambda: np.loadtxt(table), of=3):.0f} ms")
    print(f"  pandas.read_csv: {best(lambda: pd.read_csv(table, sep=' ', header=None), of=3):.0f} ms")

    tables = [folder / f"table{k}.txt" for k in range(200)]
    for file in tables:
        np.savetxt(file, numbers[:8192], fmt="%.9g")
    scans = [folder / f"scan{k}.DSC" for k in range(200)]
    for file in scans:
        curve(file, 65_536)
    small = [folder / f"small{k}.DSC" for k in range(200)]
    for file in small:
        curve(file, 1000)
    data = [file.with_suffix(".DTA") for file in scans]
    block = bytes(250_000)
    print("200 files one by one, and on four threads:")
    opened("tables of 8 k rows", tables)
    opened("scans of 64 k points", scans)
    opened("scans of 1 k points", small)
    on_a_pool("np.fromfile of the values of 64 k points", lambda file: np.fromfile(file, ">f8").astype("f8"), data)
    on_a_pool("hashing, which takes no memory", lambda _: hashlib.sha256(block).digest(), data)

starts = "import time, numpy; t = time.perf_counter(); import kem; print((time.perf_counter() - t) * 1e3)"
run = [sys.executable, "-c", f"import sys; sys.path.insert(0, {str(build / 'python')!r}); {starts}"]
print(f"import kem beyond NumPy: {min(float(subprocess.check_output(run)) for _ in range(5)):.0f} ms")
