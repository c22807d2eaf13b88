#!/usr/bin/python3
"""Sets the arithmetic of two grids beside numpy's.

    bench/compare_numpy.py build/dev/arithmetic_bench

kem's operators also find the range of the result, so numpy is timed without and with its min and max. All times
are processor time in microseconds, the best of several rounds.

Most of the time of the largest grids goes into fresh pages from the system. numpy asks for huge ones; on Linux
kem gets them too with GLIBC_TUNABLES=glibc.malloc.hugetlb=1."""

import json
import subprocess
import sys
import time

try:
    import numpy as np
except ImportError:
    sys.exit("compare_numpy.py: numpy is not installed (Debian: python3-numpy)")

ROUNDS = 7


def kem_times(program):
    """Best time of each benchmark, by name such as "add/1024" or "add/literal/1024"."""
    command = [program, "--benchmark_format=json", "--benchmark_min_time=0.1", f"--benchmark_repetitions={ROUNDS}"]
    output = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True).stdout
    best = {}
    for row in json.loads(output)["benchmarks"]:
        if row["run_type"] == "iteration":
            best[row["run_name"]] = min(row["cpu_time"], best.get(row["run_name"], float("inf")))
    return best


def best_time(work):
    best = float("inf")
    for _ in range(ROUNDS):
        count, start = 0, time.process_time()
        while time.process_time() - start < 0.1:
            work()
            count += 1
        best = min(best, (time.process_time() - start) / count)
    return 1e6 * best


def numpy_times(operation, side):
    rows, columns = np.indices((side, side))
    pattern = ((rows * 31 + columns * 17) % 101).astype(np.float32)
    a, b = pattern + np.float32(1), pattern + np.float32(-3)

    def with_range():
        result = operation(a, b)
        return result.min(), result.max()

    with np.errstate(divide="ignore"):
        return best_time(lambda: operation(a, b)), best_time(with_range)


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: compare_numpy.py ARITHMETIC_BENCH")
    kem = kem_times(sys.argv[1])
    print(f"{'':14}{'kem':>10}{'literal':>10}{'numpy':>10}{'+ range':>10}{'numpy/kem':>11}{'+ range/kem':>13}")
    for name in ("add", "subtract", "multiply", "divide"):
        for side in (256, 1024, 4096):
            ours, literal = kem[f"{name}/{side}"], kem[f"{name}/literal/{side}"]
            plain, ranged = numpy_times(getattr(np, name), side)
            print(f"{name + ' ' + str(side):14}{ours:10.0f}{literal:10.0f}{plain:10.0f}{ranged:10.0f}"
                  f"{plain / ours:11.2f}{ranged / ours:13.2f}")


if __name__ == "__main__":
    main()
