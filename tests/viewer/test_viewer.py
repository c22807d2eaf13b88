import math
import re
import struct
from array import array
from pathlib import Path

import pytest
from conftest import ROOT, SAMPLES, info, kem
from selenium.webdriver.common.keys import Keys

EXAMPLES = ROOT / "examples" / "data"
SETS = [["nitroxide.DSC", "nitroxide.DTA"], ["raman.prn"], ["streak.p3d"], ["columns.nxy"]]
REAL = [
    ["bes3t/strong1.dsc", "bes3t/strong1.dta"],
    ["bes3t/CT_DEER_mix_28_36.DSC", "bes3t/CT_DEER_mix_28_36.DTA"],
    ["bes3t/cwepr_2DFieldDelay.DSC", "bes3t/cwepr_2DFieldDelay.DTA", "bes3t/cwepr_2DFieldDelay.YGF"],
    ["bes3t/DNPLab_HYSCORE.DSC", "bes3t/DNPLab_HYSCORE.DTA"],
    ["esp/5DSA 053009.par", "esp/5DSA 053009.spc"],
    ["hpdta/operate_mode.img"],
    ["hpdta/photon_counting.img"],
    ["jcamp/jcamp-fix.dx"],
    ["jcamp/water.jdx"],
    ["cary_dsw/R_white_nm.BSW"],
    ["xy_text/JASCO_PbSe.txt"],
]
needs_samples = pytest.mark.skipif(not SAMPLES, reason="KEM_SAMPLES is not set")
FILES = [pytest.param([EXAMPLES / f for f in files], id=files[0]) for files in SETS] + [
    pytest.param([Path(SAMPLES or ".") / f for f in files], id=files[0], marks=needs_samples) for files in REAL
]
NUMBER = r"-?(?:\d[\d.]*(?:e[+-]?\d+)?|Infinity|NaN)"


def numbers(text):
    return [float(number) for number in re.findall(NUMBER, text)]


@pytest.mark.parametrize("files", FILES)
def test_page_tells_what_the_command_tells(page, files):
    page.drop(*files)
    first = info(files[0])[0]
    assert len(page.texts("#items .name")) == first["items"]
    facts = page.facts()
    keys = dict(facts)
    assert keys["Format"] == first["format"]
    assert keys.get("Title", "") == first["title"]
    assert keys.get("Read with", "") == ", ".join(Path(f).name for f in first["companions"])
    shown = facts[-1 - len(first["axes"]) :]
    for axis, (name, text) in zip(first["axes"], shown):
        assert name == axis["name"] or not axis["name"]
        assert numbers(text)[:2] == [axis["first"], axis["last"]] and f"{axis['points']} points" in text
        assert axis["unit"] in text and ("stored" in text) == axis["stored"]
    values = first["values"]
    near = 1e-15 if values["complex"] else 6e-8 if values["type"] == "f32" else 0
    assert numbers(shown[-1][1])[:2] == pytest.approx([values["min"], values["max"]], rel=near, abs=0)
    assert shown[-1][1].endswith(values["type"]) and values["unit"] in shown[-1][1]
    assert page.texts("#parameters th:not(.section)") == [p["key"] for p in first["parameters"]]
    for text, parameter in zip(page.texts("#parameters td"), first["parameters"]):
        assert text.startswith(parameter["text"])
    assert sorted(page.texts("#notes .note")) == sorted(f"{n['severity'].title()} {n['text']}" for n in first["notes"])


@pytest.mark.parametrize("files", FILES)
def test_downloads_are_the_files_of_the_command(page, files, tmp_path):
    page.drop(*files)
    formats = page.texts("#saving button")
    dataset = info(files[0])[0]
    part = "--part real" if dataset["values"]["complex"] and len(dataset["axes"]) > 1 else ""
    assert "csv" in formats
    for form in formats:
        expected = tmp_path / f"expected.{form}"
        kem(f"convert {part}", files[0], "-o", expected)
        if not expected.exists():  # of several items, the first
            expected = sorted(tmp_path.glob(f"expected*.{form}"))[0]
        saved = page.download(form)
        assert saved.read_bytes() == expected.read_bytes(), form
        if form != "dx":
            assert [a["points"] for a in info(saved)[0]["axes"]] == [a["points"] for a in dataset["axes"]]


def table(csv):
    """The titles, and all numbers in single precision."""
    title, *lines = csv.read_text().splitlines()
    return title, array("f", [float(number) for line in lines for number in line.split(",")])


CALCULATIONS = [
    (SETS[0], "nitroxide.DSC", [
        ("Smooth", {"Field": "mT", "width": "9"}, "smooth --x-unit mT -w 9"),
        ("Median", {"Field": "g", "width": "7"}, "median --axis g -w 7"),
        ("Baseline", {"Field": "G", "X from": "3330", "to": "3390"}, "baseline --x 3330 3390"),
        ("Cut", {"X from": "3330", "to": "3390"}, "cut --x 3330 3390"),
        ("Resample", {"X from": "3330", "to": "3390", "X step": "0.25"}, "resample --x 3330 3390 0.25"),
    ]),
    (SETS[2], "streak.p3d", [
        ("Smooth", {"width": "5", "along": "Y"}, "smooth -w 5 --along y"),
        ("Baseline along Y", {"Y from": "1", "to": "15"}, "baseline --y 1 15"),
        ("Cut", {"X from": "450", "to": "550", "Y from": "2"}, "cut --x 450 550 --y 2 20"),
        ("Resample", {"X from": "450", "to": "550", "X step": "2.5", "Y from": "1", "Y step": "0.5"},
         "resample --x 450 550 2.5 --y 1 19.9 0.5"),
        ("Section along X", {"Y from": "3", "to": "5"}, "slice --mean --y 3 5"),
        ("Section along Y", {"X from": "450", "to": "460"}, "slice --mean --x 450 460"),
    ]),
    (["raman.prn", "raman_background.prn"], "raman.prn - raman_background.prn", [
        ("Arithmetic", {"operator": "-"}, "calc"),
    ]),
]  # fmt: skip


@pytest.mark.parametrize("files, argument, operations", CALCULATIONS, ids=["curve", "grid", "two files"])
def test_calculations_are_those_of_the_command(page, tmp_path, files, argument, operations):
    page.drop(*[EXAMPLES / f for f in files])
    for k, (operation, fields, command) in enumerate(operations):
        page.js("document.querySelector('#items .name').click()")
        page.calculate(operation, **fields)
        assert page.texts(".problem") == []
        kem(command, EXAMPLES / argument, "-o", tmp_path / f"{k}.csv")
        assert table(page.download("csv")) == table(tmp_path / f"{k}.csv"), command
    page.scheme("dark")
    page.shoot(f"calculated-{files[0]}")
    page.calculate("Arithmetic", **{"operator": "/", "with": "number", "number": "0"})
    assert page.texts(".problem span")[0].endswith(": a division by 0 and the power 0 are not defined")


SHIFT, CONTROL = 8, 2
WHEEL = math.exp(-0.2)
NEARER = 0.25 * (1 - WHEEL), 0.25 + 0.75 * WHEEL
GESTURES = [  # and the parts of the view that are seen then, from the left and from the top
    (lambda p: p.drag((0.2, 0.3), (0.6, 0.8)), (0.2, 0.6, 0.3, 0.8)),
    (lambda p: p.drag((0.7, 0.5), (0.2, 0.51)), (0.2, 0.7, 0, 1)),
    (lambda p: p.drag((0.5, 0.2), (0.501, 0.7)), (0, 1, 0.2, 0.7)),
    (lambda p: p.drag((0.5, 0.5), (0.6, 0.3), SHIFT), (-0.1, 0.9, 0.2, 1.2)),
    (lambda p: p.mouse("Wheel", (0.25, 0.25), deltaX=0, deltaY=-100), (*NEARER, *NEARER)),
    (lambda p: p.mouse("Wheel", (0.25, 0.25), deltaX=-100, deltaY=0, modifiers=SHIFT), (0, 1, *NEARER)),
    (lambda p: p.mouse("Wheel", (0.25, 0.25), deltaX=0, deltaY=-100, modifiers=CONTROL), (*NEARER, 0, 1)),
    (lambda p: p.pinch([(0.4, 0.5), (0.6, 0.5)], [(0.3, 0.4), (0.7, 0.4)]), (0.25, 0.75, 0.3, 0.8)),
    (lambda p: p.press(Keys.SHIFT, Keys.ARROW_RIGHT), (0.1, 1.1, 0, 1)),
    (lambda p: (p.press("+"), p.double_click((0.5, 0.5))), (0, 1, 0, 1)),
]


@pytest.mark.parametrize(
    "files, change, mirrored, scale",
    [
        (SETS[0], lambda p: p.select("Field", "g"), (True, False), float),
        (SETS[1], lambda p: p.toggle("log"), (False, False), math.log),
        (SETS[2], lambda p: p.toggle("top down"), (False, True), float),
    ],
    ids=["g factors", "log", "image"],
)
def test_gestures_show_what_lies_under_them(page, files, change, mirrored, scale):
    page.drop(*[EXAMPLES / f for f in files])
    change(page)
    page.find("#plot").location_once_scrolled_into_view
    page.select("Operation", "Cut")  # its bounds are those of the view

    def view():
        left, right, bottom, top = page.js("return [...document.querySelectorAll('#calculate input')].map(i => +i.value)")
        x, y = [left, right], [scale(top), scale(bottom)]
        return (x[::-1] if mirrored[0] else x) + (y[::-1] if mirrored[1] else y)

    left, right, top, bottom = whole = view()
    for k, (gesture, (x1, x2, y1, y2)) in enumerate(GESTURES):
        gesture(page)
        xs = [left + part * (right - left) for part in (x1, x2)]
        ys = [top + part * (bottom - top) for part in (y1, y2)]
        assert view()[:2] == pytest.approx(xs, abs=abs(right - left) / 300), k
        assert view()[2:] == pytest.approx(ys, abs=abs(bottom - top) / 200), k
        page.press("0")
        assert view() == whole


def test_cursor_and_keys(page):
    page.drop(EXAMPLES / "raman.prn")
    lines = (EXAMPLES / "raman.prn").read_text().splitlines()
    points = [numbers(line) for line in lines if re.match(r"\s*[\d.]+\s", line)]
    page.js("document.querySelector('#plot .uplot').focus()")
    page.press(Keys.ARROW_RIGHT)
    x, y, place = page.texts("#reading td")
    k = int(place[1:]) - 1
    assert [float(x), float(y)] == points[k]
    page.press(Keys.ARROW_RIGHT)
    assert page.texts("#reading .place") == [f"#{k + 2}"]


def test_image_is_that_of_the_samples(page, tmp_path):
    """The numbers under the cursor, the row and the column through it, and the colour of each sample."""
    page.drop(EXAMPLES / "streak.p3d")
    kem("convert", EXAMPLES / "streak.p3d", "-o", tmp_path / "streak.csv")
    xs, ys, zs = (table(tmp_path / "streak.csv")[1][k::3] for k in range(3))
    for key in (Keys.ARROW_RIGHT, Keys.ARROW_UP, Keys.ARROW_UP, Keys.ARROW_LEFT):
        page.press(key)
        here = array("f", map(float, page.texts("#reading dd")))
        assert tuple(here) in zip(xs, ys, zs)
    page.shoot("image")
    for n, along in enumerate((ys, xs)):
        section = [z for z, place in zip(zs, along) if place == here[1 - n]]
        shot = page.between_axes(f".section:nth-child({n + 1})")
        places = ((x, y) for y in range(shot.height) for x in range(shot.width))
        highest = next(at for at in places if max(shot.getpixel(at)) - min(shot.getpixel(at)) > 80)
        k = round(highest[0] / shot.width * (len(section) - 1))
        assert max(section) in section[max(k - 1, 0) : k + 2]
    page.press(Keys.ESCAPE)
    page.toggle("log")
    nx, ny = len(set(xs)), len(set(ys))
    for name, first, last, low, high in (("grey", 6, 429, 6, 429), ("white to black", 20, 200, 20, 200), ("grey", -5, 300, 6, 300)):
        page.select("colours", name)
        page.select("First colour", first)
        page.select("Last colour", last)
        shot = page.between_axes("#plot")
        for k, z in enumerate(zs):
            seen = shot.getpixel(((k % nx + 0.5) / nx * shot.width, (1 - (k // nx + 0.5) / ny) * shot.height))
            part = min(max(math.log(z / low) / math.log(high / low), 0), 1)
            assert seen == pytest.approx([255 * (part if name == "grey" else 1 - part)] * 3, abs=1.5), (name, k)


@pytest.mark.parametrize("cut", [40, 4000])
def test_damaged_file_shows_its_sentence(page, tmp_path, cut):
    """A descriptor that is cut off, and values that are."""
    for end in ("DSC", "DTA"):
        content = (EXAMPLES / f"nitroxide.{end}").read_bytes()
        (tmp_path / f"cut.{end}").write_bytes(content[: cut if (end == "DSC") == (cut < 1000) else None])
    page.drop(tmp_path / "cut.DSC", tmp_path / "cut.DTA")
    if page.texts(".problem"):
        sentence = kem("info", tmp_path / "cut.DSC", fails=True).strip()
        assert page.texts(".problem span")[0] in sentence
    else:
        notes = [f"{n['severity'].title()} {n['text']}" for n in info(tmp_path / "cut.DSC")[0]["notes"]]
        assert page.texts("#notes .note") == notes != []
    page.shoot(f"damaged-{cut}")


def test_pair_in_two_drops_and_over_another_curve(page):
    page.drop(EXAMPLES / "nitroxide.DSC")
    assert page.texts(".problem span") == ["nitroxide.DSC: its values, a file of the same name with .DTA, are missing"]
    page.drop(EXAMPLES / "nitroxide.DTA")
    page.drop(EXAMPLES / "raman.prn", EXAMPLES / "raman_background.prn")
    assert page.texts("#items .name") == ["nitroxide.DSC", "raman.prn", "raman_background.prn"]
    assert page.texts("#reading th[scope=row]") == ["raman.prn", "raman_background.prn"]
    assert page.texts("#left-out p") == ["nitroxide.DSC: G cannot be converted into cm-1"]
    page.find("#search").send_keys("no such parameter")
    assert page.texts("#parameters tr") == []


def test_served_page_in_the_dark_on_a_telephone_asks_for_nothing(browser, served):
    browser.load(served, 360, 740, "dark")
    browser.shoot("welcome")
    for files in SETS:
        browser.drop(*[EXAMPLES / f for f in files])
        assert browser.js("return document.documentElement.scrollWidth") <= 360
        browser.shoot(f"narrow-{files[0]}")
    assert browser.browser.get_log("browser") == []
    assert browser.js("return performance.getEntriesByType('resource').length") == 0
    refused = browser.browser.execute_async_script(
        "fetch(location.href).then(() => arguments[0](false), () => arguments[0](true))"
    )
    assert refused and "Content Security Policy" in browser.browser.get_log("browser")[0]["message"]


def bes3t(folder, name, nx, ny, values):
    """A pair of a curve or grid of big-endian doubles."""
    y = ["YTYP IDX", f"YPTS {ny}", "YMIN 0", "YWID 10", "YNAM 'Time'", "YUNI 'ns'"] if ny > 1 else ["YTYP NODATA"]
    x = ["XTYP IDX", f"XPTS {nx}", "XMIN 3300", "XWID 100", "XNAM 'Field'", "XUNI 'G'"]
    lines = ["#DESC 1.2", "DSRC EXP", "BSEQ BIG", "IKKF REAL", "IRFMT D", *x, *y, "ZTYP NODATA"]
    (folder / f"{name}.DSC").write_text("\n".join(lines) + "\n")
    (folder / f"{name}.DTA").write_bytes(struct.pack(f">{nx * ny}d", *values))
    return folder / f"{name}.DSC", folder / f"{name}.DTA"


@pytest.mark.parametrize("name, nx, ny", [("curve", 1_000_000, 1), ("image", 1344, 1024)])
def test_large_files_are_drawn_at_once(page, tmp_path, name, nx, ny):
    wave = [(k * 7919) % 1009 + (k % nx) / 100 for k in range(nx * ny)]
    pair = bes3t(tmp_path, name, nx, ny, wave)
    took = min(page.drop(*pair) for _ in range(3))
    zoom = page.browser.execute_async_script(
        """const plot = document.querySelector("#plot .uplot"), times = [], done = arguments[0];
        const frame = () => new Promise(requestAnimationFrame);
        (async () => {
          for (let k = 0; k < 9; ++k) {
            await frame();
            const started = performance.now();
            plot.dispatchEvent(new KeyboardEvent("keydown", {key: k < 8 ? "-" : "0"}));
            await frame();
            times.push(performance.now() - started);
          }
          done(times.sort((a, b) => a - b)[4]);
        })();"""
    )
    print(f"{name}: drawn {took} ms after the drop, {zoom:.0f} ms after a zoom")
    assert took < 1000 and zoom < 300  # on a busy machine; else a quarter of it
    page.shoot(f"large-{name}")
