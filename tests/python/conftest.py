import os
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
os.chdir(ROOT)


@pytest.fixture(scope="session")
def data():
    return Path("examples/data")
