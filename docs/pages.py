"""Runs what the pages show, and compares what it prints: pages.py FOLDER PAGE..., each where its name is there.

Lines of a ```console block that begin with "$ " are commands, those behind them their output; ```python blocks are
doctests; ```cpp and ```c blocks are bodies of main, which print what stands behind "// prints". "..." stands for
anything. KEM_COMMAND is the command to be run, with the library beside it; a page's blocks share their folder and
Python's names.
"""

import doctest
import os
import re
import subprocess
import sys
from pathlib import Path

BLOCK = re.compile(r"^```(console|python|cpp|c)\n(.*?)^```", re.M | re.S)
PRINTS = re.compile(r"// prints (.*)")
INCLUDE = Path(__file__).resolve().parent.parent / "include"
PROGRAMS = {  # compiler, headers
    "cpp": ("g++ -std=c++20", ["iostream", "memory", "kem.h", "kem/dataset.h", "kem/record.h"]),
    "c": ("gcc -std=c99", ["stdio.h", "kem/c.h"]),
}
COMMAND = re.compile(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", re.M)


def output(command, folder):
    place = Path(os.environ["KEM_COMMAND"]).parent
    # What is preloaded is for this process, not for the programs of a page.
    environment = {**os.environ, "PATH": f"{place}:{os.environ['PATH']}", "LC_ALL": "C.UTF-8", "LD_PRELOAD": ""}
    done = subprocess.run(["bash", "-c", command], cwd=folder, env=environment, stdout=-1, stderr=-2, text=True)
    return done.stdout


def printed(kind, body, folder):
    """What a program with this body prints."""
    compiler, headers = PROGRAMS[kind]
    source = folder / f"sample.{kind}"
    source.write_text("".join(f"#include <{header}>\n" for header in headers) + f"int main(void) {{\n{body}}}\n")
    place = Path(os.environ["KEM_COMMAND"]).parent
    build = f"{compiler} -Wall -Werror -I{INCLUDE} {source.name} -L{place} -lkem -Wl,-rpath,{place} -o sample"
    return output(f"{build} && ./sample; rm -f sample {source.name}", folder)


def run(page, folder):
    """Runs a page and returns how many commands and lines of Python it has; a difference is an AssertionError."""
    names, tries = {}, 0
    runner = doctest.DocTestRunner(optionflags=doctest.ELLIPSIS | doctest.NORMALIZE_WHITESPACE)
    before = os.getcwd()
    os.chdir(folder)
    try:
        for kind, text in BLOCK.findall(page.read_text()):
            if kind == "console":
                for command, expected in COMMAND.findall(text):
                    tries += 1
                    got = output(command, folder)
                    same = doctest.OutputChecker().check_output(expected, got, doctest.ELLIPSIS)
                    assert same, f"{page.name}: {command}\nprints\n{got}not\n{expected}"
            elif kind in PROGRAMS:
                tries += 1
                got = printed(kind, text, folder)
                assert got.splitlines() == PRINTS.findall(text), f"{page.name}:\n{text}prints\n{got}"
            elif ">>>" in text:
                test = doctest.DocTestParser().get_doctest(text, names, page.name, None, 0)
                runner.run(test, clear_globs=False)
                names = test.globs
    finally:
        os.chdir(before)
    assert runner.failures == 0, f"{page.name}: {runner.failures} lines of Python differ"
    return tries + runner.tries


if __name__ == "__main__":
    folder = Path(sys.argv[1])
    for page in map(Path, sys.argv[2:]):
        if count := run(page.resolve(), folder / page.parent):
            print(f"{page}: {count} commands and lines")
