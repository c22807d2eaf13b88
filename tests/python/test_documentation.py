import ast
import doctest
import inspect
import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

import numpy as np
import pytest

import kem

plt = pytest.importorskip("matplotlib.pyplot")
plt.switch_backend("Agg")

sys.path.insert(0, "docs")
import pages  # noqa: E402

PAGES = [page for page in (Path("README.md"), *Path("docs").rglob("*.md")) if pages.BLOCK.search(page.read_text())]
STUB = ast.parse((Path(kem.__file__).parent / "_kem.pyi").read_text())
CLASSES = {"Axis": kem.Axis, "Dataset": kem.Dataset, "Record": kem.Record}
OWN = {"_parameters", "_notes", "_state", "_repr_html_", "__version__"}


def members():
    """Everything that users find, by its name."""
    for name in kem.__all__:
        yield name, getattr(kem, name)
    for name, cls in CLASSES.items():
        yield from ((f"{name}.{member}", of) for member, of in vars(cls).items() if not member.startswith("_"))


def test_examples_tell_the_truth(tmp_path):
    names = {
        "kem": kem,
        "np": np,
        "scan": kem.open("examples/data/nitroxide.DSC"),
        "curve": kem.Record(np.arange(21) ** 2),
        "grid": kem.Record(np.arange(60).reshape(3, 20)),
        "folder": tmp_path,
    }
    runner = doctest.DocTestRunner(optionflags=doctest.ELLIPSIS)
    for name, member in [("kem", kem), *members()]:
        if name == "__version__" or isinstance(member, type) and issubclass(member, Exception):
            continue
        text = inspect.getdoc(member) or ""
        assert text and (">>>" in text or isinstance(member, type)), f"{name} has no example"
        runner.run(doctest.DocTestParser().get_doctest(text, dict(names), name, None, 0))
        plt.close("all")
    assert runner.tries > 100 and runner.failures == 0


@pytest.mark.filterwarnings("default")
@pytest.mark.parametrize("page", PAGES, ids=str)
def test_pages(page, tmp_path):
    """Every command and every line of Python, in a folder that holds the examples and receives what they write."""
    page = page.resolve()
    (tmp_path / "examples").symlink_to(Path("examples").resolve())
    assert pages.run(page, tmp_path) > 0
    from matplotlib.testing.compare import compare_images

    for picture in re.findall(r"\]\((python-.*?\.png)\)", page.read_text()):
        if os.environ.get("KEM_APPROVE"):
            shutil.copy(tmp_path / picture, page.with_name(picture))
        assert compare_images(page.with_name(picture), tmp_path / picture, tol=2) is None
    plt.close("all")


def declared(body):
    return {node.name for node in body if isinstance(node, (ast.FunctionDef, ast.ClassDef))}


def test_the_stub_declares_what_there_is():
    public = {name for name in vars(kem._kem) if not name.startswith("_")}
    assert {name for name in declared(STUB.body)} == public
    for node in STUB.body:
        if isinstance(node, ast.ClassDef):
            cls = CLASSES[node.name]
            there = {name for name in vars(cls) if not name.startswith("_") or name in OWN}
            assert {name for name in declared(node.body) if not name.startswith("__")} == there
            assert all(hasattr(cls, name) for name in declared(node.body))


def signatures(function):
    """The arguments that the module itself names when it is called with one of no use."""
    with pytest.raises(TypeError) as caught:
        function(*[object()] * 40)
    of_a_class = ["self"] if isinstance(function, type) else []
    lines = re.findall(r"^ +\d+\. .*", str(caught.value), re.M)
    return [of_a_class + re.findall(r"(\w+): ", line) for line in lines]


def test_the_stub_names_the_arguments():
    checked = 0
    for scope, body in [(kem._kem, STUB.body)] + [(CLASSES[n.name], n.body) for n in STUB.body if hasattr(n, "bases")]:
        for node in body:
            if not isinstance(node, ast.FunctionDef) or ast.unparse(node).startswith("@property"):
                continue
            function = scope if node.name == "__init__" else getattr(scope, node.name)
            if inspect.isfunction(function) or (node.name.startswith("__") and node.name != "__init__"):
                continue
            arguments = [argument.arg for argument in node.args.args]
            assert arguments in signatures(function), f"{node.name}{arguments}: {signatures(function)}"
            checked += 1
    assert checked > 60


def test_types_of_the_examples():
    files = [str(path) for path in Path("examples").glob("*.py") if "import kem\n" in path.read_text()]
    assert files
    site = Path(kem.__file__).parents[1]
    done = subprocess.run(
        [sys.executable, "-m", "mypy", "--cache-dir", site / "mypy", *files, *site.glob("kem/*.py")],
        capture_output=True,
        text=True,
    )
    assert done.returncode == 0, done.stdout + done.stderr
