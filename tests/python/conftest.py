import os
from pathlib import Path

import hypothesis
import pytest

ROOT = Path(__file__).resolve().parents[2]
os.chdir(ROOT)
hypothesis.settings.register_profile("kem", database=None, deadline=None)
hypothesis.settings.load_profile("kem")


@pytest.fixture(scope="session")
def data():
    return Path("examples/data")
