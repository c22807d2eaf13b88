"""Makes files as an instrument would, reduces them on a cluster, and checks the result against a plain loop.

many_files.py [--threads] [COUNT]: 2,000 files when there is no count; workers are processes or threads
"""

import argparse
import tempfile
import time
from pathlib import Path

import numpy as np
import xarray as xr
from distributed import Client, LocalCluster

import kem


def make_files(folder: Path, count: int) -> list[str]:
    field = np.linspace(3300, 3400, 256)
    noise = np.random.default_rng(1)
    files = [str(folder / f"scan{k:05}.b2d") for k in range(count)]
    for k, file in enumerate(files):
        line = np.exp(-(((field - 3350 - k % 7) / 5) ** 2))
        kem.Record(line + noise.normal(0, 0.1, field.size), x=field).save(file)
    return files


def reduced(file: str) -> float:
    """The area under one line, as a function that any worker runs on files of its own."""
    return kem.open(file).to_record().smooth(width=9).integral(3340, 3365)


def main(count: int, threads: bool) -> None:
    with tempfile.TemporaryDirectory() as folder:
        files = make_files(Path(folder), count)
        cluster = LocalCluster(n_workers=2, threads_per_worker=2, processes=not threads, dashboard_address=None)
        with cluster, Client(cluster) as client:
            started = time.perf_counter()
            scans = xr.open_mfdataset(files, engine="kem", combine="nested", concat_dim="file", parallel=True)
            mean = scans["y"].mean("file").compute()
            print(f"mean of {count} files: {time.perf_counter() - started:.1f} s")
            started = time.perf_counter()
            areas = client.gather(client.map(reduced, files, batch_size=100))
            print(f"areas of {count} files: {time.perf_counter() - started:.1f} s")
        started = time.perf_counter()
        assert np.allclose(mean, np.mean([kem.open(file).values for file in files], axis=0), rtol=1e-5)
        assert areas == [reduced(file) for file in files]
        print(f"the same in a plain loop: {time.perf_counter() - started:.1f} s")


if __name__ == "__main__":
    arguments = argparse.ArgumentParser(description=__doc__)
    arguments.add_argument("count", type=int, nargs="?", default=2000)
    arguments.add_argument("--threads", action="store_true")
    main(**vars(arguments.parse_args()))
