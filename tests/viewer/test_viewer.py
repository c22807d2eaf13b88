import re
import struct
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


@needs_samples
def test_units_and_calculations_are_those_of_the_command(page, tmp_path):
    pair = [Path(SAMPLES) / "bes3t" / f"strong1.{end}" for end in ("dsc", "dta")]
    page.drop(*pair)
    for unit, option in (("mT", "--x-unit mT"), ("g", "--axis g")):
        page.select("Field", unit)
        expected = tmp_path / f"{unit}.csv"
        kem(f"convert {option}", pair[0], "-o", expected)
        assert page.download("csv").read_bytes() == expected.read_bytes()
    page.select("Field", "G")
    for command, options, operation, fields in (
        ("smooth", "-w 9", "Smooth", {"width": "9"}),
        ("median", "-w 7", "Median", {"width": "7"}),
        ("cut", "--x 3390 3410", "Cut", {"X from": "3390", "to": "3410"}),
    ):
        page.js("document.querySelector('#items .name').click()")
        page.calculate(operation, **fields)
        assert page.texts(".problem") == []
        expected = tmp_path / f"{operation}.b2d"
        kem(command, pair[0], *options.split(), "-o", expected)
        assert page.download("b2d").read_bytes()[-400:] == expected.read_bytes()[-400:]
    page.shoot("overlay")
    page.js("document.querySelector('#items .name').click()")
    page.calculate("Arithmetic", **{"operator": "/", "with": "number", "number": "0"})
    (sentence,) = page.texts(".problem span")
    assert sentence == "strong1.dsc: a division by 0 and the power 0 are not defined"


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
    whole = page.js("return document.querySelector('#plot canvas').toDataURL()")
    page.press("+")
    assert page.js("return document.querySelector('#plot canvas').toDataURL()") != whole
    page.press("0")
    page.wait(lambda: page.js("return document.querySelector('#plot canvas').toDataURL()") == whole)


def test_image_reads_the_samples_under_the_cursor(page, tmp_path):
    page.drop(EXAMPLES / "streak.p3d")
    kem("convert", EXAMPLES / "streak.p3d", "-o", tmp_path / "streak.csv")
    table = [line.split(",") for line in (tmp_path / "streak.csv").read_text().splitlines()[1:]]
    samples = {(float(x), float(y)): float(z) for x, y, z in table}
    page.js("document.querySelector('#plot .uplot').focus()")
    for key in (Keys.ARROW_RIGHT, Keys.ARROW_UP, Keys.ARROW_UP, Keys.ARROW_LEFT):
        page.press(key)
        x, y, z = map(float, page.texts("#reading dd"))
        near = min(samples, key=lambda p: abs(p[0] - x) + abs(p[1] - y))
        assert near == pytest.approx((x, y)) and samples[near] == z
    page.shoot("image")


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
    browser.load(served, 360, 740, dark=True)
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


@pytest.mark.parametrize("name, nx, ny, most", [("curve", 1_000_000, 1, 300), ("image", 1344, 1024, 500)])
def test_large_files_are_drawn_at_once(page, tmp_path, name, nx, ny, most):
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
    assert took < most and zoom < 100
    page.shoot(f"large-{name}")
