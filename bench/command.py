#!/usr/bin/python3
"""How fast the command is to use: command.py KEM EXAMPLES [PYTHON-RUNS]. Exits with 1 where it is slower than said.

- kem info of a small file, as a process: under 10 ms
- 1,000 small files to csv with two jobs: at least 1.7 times as fast as with one
- and at least 100 times as fast as a Python script with NumPy that is run for each of them; of its runs 100 are
  measured, or as many as are asked for
"""
import os
import shutil
import subprocess
import sys
import tempfile
import time

kem, examples = (os.path.abspath(path) for path in sys.argv[1:3])
runs = int(sys.argv[3]) if len(sys.argv) > 3 else 100
count = 1000

SCRIPT = """
import sys
import numpy as np
keys = dict(line.split(None, 1) for line in open(sys.argv[1] + ".DSC") if len(line.split(None, 1)) == 2)
y = np.fromfile(sys.argv[1] + ".DTA", dtype=">f8" if keys["BSEQ"].strip() == "BIG" else "<f8")
start, width = float(keys["XMIN"]), float(keys["XWID"])
x = np.linspace(start, start + width, int(keys["XPTS"]))
np.savetxt(sys.argv[2], np.column_stack([x, y]), fmt="%.15g", delimiter=",", header="Field (G),Intensity", comments="")
"""


def seconds(words, **more):
    begin = time.perf_counter()
    subprocess.run(words, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **more)
    return time.perf_counter() - begin


failed = False


def report(what, value, least):
    global failed
    failed |= value < least
    print(f"{what}: {value:.1f} times as fast, at least {least} wanted")


with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    os.mkdir("data")
    for k in range(count):
        for extension in ".DSC", ".DTA":
            shutil.copy(f"{examples}/nitroxide{extension}", f"data/n{k}{extension}")
    with open("convert.py", "w", encoding="ascii") as file:
        file.write(SCRIPT)

    info = min(seconds([kem, "info", "data/n0.DSC"]) for _ in range(50))
    print(f"kem info: {info * 1e3:.1f} ms, at most 10 wanted")
    failed |= info > 0.01

    def convert(jobs):
        shutil.rmtree("out", ignore_errors=True)
        return seconds([kem, "convert", "--quiet", "--to", "csv", "--jobs", str(jobs), "--dir", "out", "data"])

    one, two = (min(convert(jobs) for _ in range(5)) for jobs in (1, 2))
    print(f"kem convert of {count} files: {one:.2f} s with one job, {two:.2f} s with two")
    script = sum(seconds([sys.executable, "convert.py", f"data/n{k}", "n.csv"]) for k in range(runs)) / runs * count
    print(f"{count} runs of a script with NumPy: {script:.0f} s, by {runs} of them")
    report("two jobs instead of one", one / two, 1.7)
    report("the command instead of the script", script / two, 100)
sys.exit(1 if failed else 0)
