"""Pictures of kem plot, looked at: plot.py KEM EXAMPLES."""
import os
import re
import struct
import subprocess
import sys
import tempfile

import PIL.Image

kem, examples = (os.path.abspath(path) for path in sys.argv[1:])
os.chdir(tempfile.mkdtemp())


def run(*words, status=0, **environment):
    done = subprocess.run([kem, *words], capture_output=True, text=True, env={**os.environ, **environment})
    assert done.returncode == status, (words, done)
    return done.stdout + done.stderr


def pixels(name):
    """The rows of a picture, each a list of (red, green, blue)."""
    image = PIL.Image.open(name).convert("RGB")
    flat = list(image.getdata())
    return [flat[k : k + image.width] for k in range(0, len(flat), image.width)]


def frame(rows):
    """Left, right, top and bottom of the frame, whose lines are the longest black ones."""
    dark = [[max(p) < 60 for p in row] for row in rows]
    across = [y for y, row in enumerate(dark) if sum(row) > len(row) / 2]
    down = [x for x in range(len(rows[0])) if sum(row[x] for row in dark) > len(rows) / 2]
    return down[0], down[-1], across[0], across[-1]


def write(name, text):
    with open(name, "w", encoding="utf-8") as file:
        file.write(text)


# A peak at 8 of 0 to 10, of descending coordinates; the part of it that is drawn.
write("peak.csv", "Field (G),I\n" + "".join(f"{x / 10},{1 if x == 80 else 0}\n" for x in range(100, -1, -1)))
for words, place in ([], 0.8), (["--x", "9", "5"], 0.25):
    run("plot", "peak.csv", "-fo", "peak.png", *words)
    rows = pixels("peak.png")
    assert (len(rows[0]), len(rows)) == (1000, 700)
    left, right, top, bottom = frame(rows)
    curve = [(y, x) for y in range(top + 1, bottom) for x in range(left + 1, right) if rows[y][x] == (148, 0, 211)]
    assert abs((min(curve)[1] - left) / (right - left) - place) < 0.01, (words, min(curve), left, right)

# An image with uneven descending X: cells end halfway, from 15 to 7.5 to 0.5 and -0.5; the values of Y = 2 lie above.
write("grid.csv", "x,y,z\n10,1,0\n5,1,4\n1,1,0\n0,1,0\n10,2,4\n5,2,0\n1,2,4\n0,2,4\n")
run("plot", "grid.csv", "-o", "grid.png")
rows = pixels("grid.png")
left, right, top, bottom = frame(rows)
right = left + next(k for k, p in enumerate(rows[top + 20][left + 2 :]) if min(p) > 250)  # the bar of colours is beside it
colours = {"low": (68, 1, 84), "high": (253, 231, 37)}
at = lambda x, y: rows[round(bottom + (y - 0.5) / 2 * (top - bottom))][round(left + (x + 0.5) / 13 * (right - left))]
for x, y, colour in [(12, 1, "low"), (12, 2, "high"), (8, 1, "low"), (7, 1, "high"), (3.5, 1, "high"), (7, 2, "low"),
                     (2.5, 1, "low"), (2.5, 2, "high"), (0, 1, "low")]:
    assert max(abs(a - b) for a, b in zip(at(x, y), colours[colour])) < 12, (x, y, at(x, y), colour)

# Overlays, complex values, units and titles in the other terminals, and in scripts.
run("plot", f"{examples}/raman.prn", f"{examples}/raman_background.prn", "--stack", "-o", "two.svg")
text = open("two.svg", encoding="utf-8").read()
assert all(word in text for word in ["Raman shift (1/cm)", "Intensity (counts)", "raman_background"])
run("plot", f"{examples}/streak.p3d", "--log", "z", "--log", "x", "-o", "a.pdf")
assert open("a.pdf", "rb").read(5) == b"%PDF-"
write("c.par", "JSS 16\nHCF 100\nHSW 20\n")
with open("c.spc", "wb") as file:
    file.write(struct.pack(">4i", 1, 2, 3, 4))
script = run("plot", "c.par", "--script", "-")
assert "title 'c re'" in script and "title 'c im'" in script and "set xlabel 'Field (G)'" in script
run("plot", "c.par", "--x-unit", "mT", "--script", "c.gp", "-o", "c.png")
subprocess.run(["gnuplot", "c.gp"], check=True)
assert len({p for row in pixels("c.png") for p in row}) > 3

# In a terminal, fitted to its size.
for size in (80, 24), (120, 40):
    for name, label in ("nitroxide.DSC", "Intensity"), ("streak.p3d", "Intensity (counts)"):
        tmux = ["tmux", "-f", "/dev/null", "-S", os.path.abspath(f"{size[0]}{name}")]
        subprocess.run([*tmux, "new-session", "-d", "-x", str(size[0]), "-y", str(size[1]),
                        f"{kem} plot {examples}/{name}; {' '.join(tmux)} wait-for -S drawn; sleep 60"], check=True)
        subprocess.run([*tmux, "wait-for", "drawn"], check=True)
        seen = subprocess.run([*tmux, "capture-pane", "-pe"], capture_output=True, text=True, check=True).stdout
        subprocess.run([*tmux, "kill-server"], check=True)
        plain = re.sub(r"\x1b\[[0-9;]*m", "", seen).rstrip("\n").split("\n")
        assert size[1] - 3 <= len(plain) <= size[1] and max(map(len, plain)) > size[0] * 0.9, plain
        assert label in plain[0] and seen != "\n".join(plain), seen

# What cannot be drawn.
missing = run("plot", "c.par", status=1, PATH="/nowhere")
assert "gnuplot-nox; --script writes" in missing and missing.count("\n") == 1
assert "already; --force" in run("plot", "c.par", "-o", "c.png", status=1)
assert run("plot", "c.par", "-o", "c.gif", status=2) == "kem: plot: --output names a picture by .svg, .png or .pdf\n"
assert "one grid" in run("plot", "c.par", "grid.csv", "-o", "d.png", status=1) and os.path.getsize("d.png") > 5000
write("nan.csv", "x,y\n1,nan\n2,nan\n")
assert "cannot be drawn by gnuplot: " in run("plot", "nan.csv", "--quiet", "-o", "nan.png", status=1)
assert not os.path.exists("nan.png")
