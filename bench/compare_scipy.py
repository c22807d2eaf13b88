#!/usr/bin/python3
"""Sets the medians and the smoothing of a 1344 x 1024 image and of a trace of a million samples beside SciPy's.

    bench/compare_scipy.py build/dev/filters_bench

SciPy takes the textbook median, and its smoothed arrays keep their ends. All times are processor time in
milliseconds, the best of several rounds; that of the literal rule for medians is taken for 1024 samples and
scaled to all of them."""

import sys
import time

from compare_numpy import kem_times

try:
    import numpy as np
    from scipy import ndimage, signal
except ImportError:
    sys.exit("compare_scipy.py: scipy is not installed (Debian: python3-scipy)")

RANDOM = np.random.default_rng(1)
IMAGE = RANDOM.standard_normal((1344, 1024)).astype(np.float32)
TRACE = RANDOM.standard_normal(1000000).astype(np.float32)
SMOOTHED = (5, 7, 9, 13, 17, 21)

# name, widths, what SciPy does, factor from the literal rule's time to that for all samples
FILTERS = (
    ("Median3D", (3, 5, 9, 21), lambda w: ndimage.median_filter(IMAGE, size=w), lambda w: IMAGE.size / (1025 - w)),
    ("Median2D", (5, 51, 501), lambda w: ndimage.median_filter(TRACE, size=w), lambda w: TRACE.size / 1024),
    ("XSmooth", SMOOTHED, lambda w: signal.savgol_filter(IMAGE, w, 2, axis=0), lambda w: 1),
    ("YSmooth", SMOOTHED, lambda w: signal.savgol_filter(IMAGE, w, 2, axis=1), lambda w: 1),
)


def best_time(work):
    best, spent = float("inf"), 0
    while spent < 0.7:
        start = time.process_time()
        work()
        best = min(best, time.process_time() - start)
        spent += time.process_time() - start
    return 1e3 * best


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: compare_scipy.py FILTERS_BENCH")
    kem = kem_times(sys.argv[1])
    print(f"{'':14}{'kem':>10}{'literal':>10}{'scipy':>10}{'scipy/kem':>11}")
    for name, widths, work, scale in FILTERS:
        for w in widths:
            ours, literal = kem[f"{name}/{w}"], kem[f"{name}/literal/{w}"] * scale(w)
            theirs = best_time(lambda: work(w))
            print(f"{name + ' ' + str(w):14}{ours:10.1f}{literal:10.0f}{theirs:10.1f}{theirs / ours:11.1f}")


if __name__ == "__main__":
    main()
