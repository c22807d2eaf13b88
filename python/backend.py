"""Builds the wheel by way of CMake, which knows what belongs to it.

``--config-settings=build-dir=build/dev`` takes what a build folder already holds of the library.
"""

import re
import subprocess
import sys
import sysconfig
import tempfile
import tomllib
from pathlib import Path

from wheel.wheelfile import WheelFile

ROOT = Path(__file__).resolve().parent.parent
TAG = f"cp{sys.version_info.major}{sys.version_info.minor}"
FULL_TAG = f"{TAG}-{TAG}-{re.sub('[-.]', '_', sysconfig.get_platform())}"


def _run(*command: object) -> None:
    subprocess.run([str(part) for part in command], cwd=ROOT, check=True)


def _build(folder: Path, package: Path) -> None:
    switches = ["-DKEM_BUILD_PYTHON=ON", f"-DPython_EXECUTABLE={sys.executable}"]
    if not (folder / "CMakeCache.txt").exists():
        switches += ["-GNinja", "-DCMAKE_BUILD_TYPE=Release", "-DKEM_BUILD_TOOLS=OFF", "-DKEM_BUILD_TESTS=OFF"]
    _run("cmake", "-S", ROOT, "-B", folder, *switches)
    _run("cmake", "--build", folder, "--target", "kem_python")
    _run("cmake", "--install", folder, "--component", "python", "--prefix", package)


def _describe(package: Path) -> str:
    """Writes the metadata of the package; returns its name and version."""
    project = tomllib.loads((ROOT / "pyproject.toml").read_text())["project"]
    version = re.search(r"^project\(kem VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text(), re.M)[1]
    info = package / f"kem-{version}.dist-info"
    info.mkdir()
    metadata = [
        "Metadata-Version: 2.1",
        f"Name: {project['name']}",
        f"Version: {version}",
        f"Summary: {project['description']}",
        f"License: {project['license']['text']}",
        f"Requires-Python: {project['requires-python']}",
        *(f"Requires-Dist: {one}" for one in project["dependencies"]),
    ]
    wheel = ["Wheel-Version: 1.0", "Generator: kem", "Root-Is-Purelib: false", f"Tag: {FULL_TAG}"]
    entries = []
    for group, points in project["entry-points"].items():
        entries += [f"[{group}]", *(f"{name} = {target}" for name, target in points.items())]
    for name, lines in {"METADATA": metadata, "WHEEL": wheel, "entry_points.txt": entries}.items():
        (info / name).write_text("\n".join(lines) + "\n")
    return f"kem-{version}"


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None):
    folder = ROOT / (config_settings or {}).get("build-dir", "build/wheel")
    with tempfile.TemporaryDirectory() as temporary:
        package = Path(temporary)
        _build(folder, package)
        name = f"{_describe(package)}-{FULL_TAG}.whl"
        with WheelFile(Path(wheel_directory) / name, "w") as wheel:
            wheel.write_files(package)
    return name


if __name__ == "__main__":  # for packages that are no wheels: beside the package in a folder, what pip would write
    _describe(Path(sys.argv[1]))
