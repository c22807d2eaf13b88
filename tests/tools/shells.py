"""Completion in real shells, and the examples of the manual page: shells.py KEM EXAMPLES."""
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile

kem, examples = (os.path.abspath(path) for path in sys.argv[1:])
os.chdir(tempfile.mkdtemp())
os.mkdir("bin")
os.symlink(kem, "bin/kem")
os.environ["PATH"] = os.path.abspath("bin") + ":" + os.environ["PATH"]


def output(*words, **more):
    return subprocess.run(words, stdout=subprocess.PIPE, text=True, check=True, **more).stdout


# Every example of the manual page runs, with files of the names that stand there.
manual = output("kem", "help", "--man")
commands = [line[2:].replace("\\-", "-").replace("\\e", "\\") for line in manual.split("\n") if line.startswith("  kem ")]
for name in re.findall(r"^  (\w+)  ", output("kem", "help").split("Commands:\n")[1], re.MULTILINE):
    assert name == "help" or any(f" {name} " in line for line in commands), f"kem {name} has no example"
for k, command in enumerate(commands):
    home = os.path.abspath(f"run{k}")
    os.makedirs(home + "/measurements/run 1")
    for source, names in [("nitroxide.DSC", ["scan.DSC", "empty.DSC", "measurements/scan.DSC"]),
                          ("nitroxide.DTA", ["scan.DTA", "empty.DTA", "measurements/scan.DTA"]),
                          ("raman.prn", ["raman.prn", "sample.prn"]), ("raman_background.prn", ["reference.prn"]),
                          ("streak.p3d", ["streak.p3d"]), ("columns.nxy", ["columns.nxy"])]:
        for name in names:
            shutil.copy(f"{examples}/{source}", f"{home}/{name}")
    with open(home + "/cw.par", "w", encoding="ascii") as file:
        file.write("JSS 0\nHCF 3400\nHSW 100\nMF 9.5\n")
    with open(home + "/cw.spc", "wb") as file:
        file.write(struct.pack(">4i", 1, 2, 3, 4))
    before = set(os.listdir(home))
    line = command.split(" | ")[0]
    done = subprocess.run(["bash", "-c", line], cwd=home, capture_output=True, text=True, check=False)
    assert done.returncode == 0, (line, done)
    assert done.stdout or set(os.listdir(home)) > before or line.startswith("kem check"), (line, done)

# The same line is completed in the same way by all shells.
os.mkdir("data")
for name in ["a.DSC", "a.DTA", "notes.md", "b.jdx"]:
    open("data/" + name, "w", encoding="ascii").close()
expected = {
    "kem conv": {"convert"},
    "kem convert --to ": {"prn", "csv", "cvt", "dx", "p2d", "p3d", "b2d", "b3d"},
    "kem smooth -l ": {"x", "y"},
    "kem smooth --width 1": {"13", "17"},
    "kem info --x-unit me": {"meV"},
    "kem convert --upd": {"--update"},
    "kem stats --axis ": {"g"},
    "kem info data/": {"data/a.DSC", "data/a.DTA", "data/b.jdx"},
    "kem help sm": {"smooth"},
}
for shell in ["bash", "zsh", "fish"]:
    with open("kem." + shell, "w", encoding="utf-8") as file:
        file.write(output("kem", "help", "--completion", shell))


def bash(line):
    words = line.split(" ")
    script = f"source kem.bash; COMP_WORDS=({' '.join(repr(w) for w in words)}); COMP_CWORD={len(words) - 1}; _kem; " \
             "printf '%s\\n' \"${COMPREPLY[@]}\""
    return output("bash", "-c", script)


def fish(line):
    found = output("fish", "--no-config", "-c", f"source kem.fish; complete -C {line!r}")
    return "\n".join(word.split("\t")[0] for word in found.split("\n"))


def zsh(line):
    """What compadd is given stands on standard error of a zsh that completes in a terminal of its own."""
    script = f"""zmodload zsh/zpty
zpty shell 'zsh -f -i'
say() {{ zpty -w shell "$1"; }}
say 'PROMPT=; autoload -Uz compinit; compinit -D -u; source {os.getcwd()}/kem.zsh; cd {os.getcwd()}'
say 'zstyle ":completion:*" list-grouped false; LISTMAX=0; unsetopt auto_menu list_ambiguous; stty cols 60'
say 'compadd() {{ local -a kept; builtin compadd -O kept "$@"; print -rl -- ${{${{(M)kept:#?*}}/#/FOUND:$IPREFIX$PREFIX:}} >>{os.getcwd()}/found; builtin compadd "$@"; }}'
say 'print ready >{os.getcwd()}/ready'
until [[ -s ready ]]; do sleep .02; done
zpty -w -n shell {line!r}$'\\t'
repeat 200; do [[ -s found ]] && break; sleep .05; done
sleep .3
zpty -d shell
"""
    for name in "found", "ready":
        if os.path.exists(name):
            os.remove(name)
    subprocess.run(["zsh", "-f", "-c", script], check=True, stdout=subprocess.DEVNULL)
    prefix = line.rsplit(" ", 1)[1].rpartition("/")
    with open("found", encoding="utf-8") as file:
        words = [text.rstrip("\n").split(":", 2)[2] for text in file if text.startswith("FOUND:")]
    names = [word.split(":")[0] for word in words]
    return "\n".join(prefix[0] + prefix[1] + name for name in names if name != prefix[0])  # the folder comes first


for shell in [bash, fish, zsh]:
    for line, words in expected.items():
        found = {word.strip() for word in re.split(r"[\n]", shell(line)) if word.strip()}
        assert found == words, (shell.__name__, line, found)

# Help fits the terminal.
for width in "50", "110":
    for words in [], ["convert"], ["calc"]:
        lines = output("kem", "help", *words, env={**os.environ, "COLUMNS": width}).split("\n")
        prose = [line for line in lines if not line.startswith("  ")]
        assert max(map(len, prose)) <= int(width) and (width == "50" or max(map(len, prose)) > 80 or not words), words
