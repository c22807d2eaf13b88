"""The viewer in a headless Chromium, and the command beside it."""

import base64
import functools
import http.server
import io
import json
import os
import subprocess
import threading
import time
from pathlib import Path

import pytest
from PIL import Image
from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By

ROOT = Path(__file__).resolve().parents[2]
PAGE = Path(os.environ["KEM_PAGE"]).resolve()
SHOTS = ROOT / "build" / "viewer-shots"
SAMPLES = os.environ.get("KEM_SAMPLES")


def kem(command, file, *arguments, fails=False):
    """What the command prints, or its complaint; files bear the name in them by which they were opened."""
    line = [Path(os.environ["KEM_COMMAND"]).resolve(), *command.split(), file.name, *map(str, arguments)]
    run = subprocess.run(line, cwd=file.parent, capture_output=True, text=True)
    assert (run.returncode != 0) == fails, run.stderr
    return run.stderr if fails else run.stdout


def info(file):
    return json.loads(kem("info --json", file))


class Page:
    """The page as a user has it before them."""

    def __init__(self, browser, downloads):
        self.browser = browser
        self.downloads = downloads

    def scheme(self, name):
        colours = {"name": "prefers-color-scheme", "value": name}
        self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": [colours]})

    def load(self, url, width=1280, height=900, scheme="light"):
        self.scheme(scheme)
        size = {"width": width, "height": height, "deviceScaleFactor": 1, "mobile": False}
        self.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", size)
        self.browser.execute_cdp_cmd("Input.dispatchMouseEvent", {"type": "mouseMoved", "x": 0, "y": 0})
        self.browser.get(url)
        self.wait(lambda: "loading" not in self.find("body").get_attribute("class"))

    def find(self, css):
        return self.browser.find_element(By.CSS_SELECTOR, css)

    def texts(self, css):
        return self.js("return [...document.querySelectorAll(arguments[0])].map(e => e.textContent)", css)

    def js(self, script, *arguments):
        return self.browser.execute_script(script, *arguments)

    def wait(self, holds):
        end = time.monotonic() + 20
        while not holds():
            assert time.monotonic() < end, "the page takes too long"
            time.sleep(0.02)

    def drop(self, *files):
        """Drops files and waits until they are drawn or refused; returns the milliseconds that the page tells."""
        before = len(self.texts(".problem"))
        self.js(
            """delete document.body.dataset.drawn;
            const given = document.createElement("input");
            Object.assign(given, {type: "file", multiple: true, id: "given"});
            document.body.append(given);"""
        )
        self.find("#given").send_keys("\n".join(str(Path(file).resolve()) for file in files))
        self.js(
            """const given = document.getElementById("given"), data = new DataTransfer();
            for (const file of given.files) data.items.add(file);
            given.remove();
            document.body.dispatchEvent(new DragEvent("drop", {dataTransfer: data, bubbles: true, cancelable: true}));"""
        )
        self.wait(lambda: self.js("return document.body.dataset.drawn") or len(self.texts(".problem")) > before)
        self.wait(lambda: not self.js("return document.body.classList.contains('busy')"))
        drawn = self.js("return document.body.dataset.drawn")
        return drawn and int(drawn)

    def select(self, label, value):
        """Chooses from a list, or fills a box, that has a label in front of it or of its own."""
        self.js(
            """const choice = [...document.querySelectorAll(".choice")].find(c => c.firstChild.textContent === arguments[0]);
            const own = `[aria-label="${arguments[0]}"]`, input = (choice ?? document).querySelector(choice ? "select, input" : own);
            input.value = arguments[1];
            input.dispatchEvent(new Event("change", {bubbles: true}));""",
            label,
            value,
        )

    def calculate(self, operation, **fields):
        self.select("Operation", operation)
        for label, value in fields.items():
            self.select(label, value)
        self.find("#calculate [type=submit]").click()

    def toggle(self, label):
        self.js("[...document.querySelectorAll('.toggle')].find(t => t.textContent === arguments[0]).click()", label)

    def inner(self, css):
        """What lies between the axes of a plot, in pixels of the page."""
        rect = "const r = document.querySelector(arguments[0] + ' .u-over').getBoundingClientRect();"
        return self.js(rect + "return {x: r.x, y: r.y, width: r.width, height: r.height}", css)

    def between_axes(self, css):
        box = self.inner(css)
        left, top = round(box["x"]), round(box["y"])
        return self.picture().crop((left, top, left + round(box["width"]), top + round(box["height"])))

    def act(self, command, kind, at=(), **more):
        """An event of the mouse or of fingers at parts of the width and height between the axes, from the top left."""
        box = self.inner("#plot")
        points = [{"x": box["x"] + x * box["width"], "y": box["y"] + y * box["height"]} for x, y in at]
        fingers = [{"id": k, **point} for k, point in enumerate(points)]
        place = points[0] if command == "Mouse" else {"touchPoints": fingers}
        self.browser.execute_cdp_cmd(f"Input.dispatch{command}Event", {"type": kind, **place, **more})

    def mouse(self, kind, at, **more):
        self.act("Mouse", f"mouse{kind}", [at], **{"button": "left", "clickCount": 1, **more})

    def drag(self, start, end, modifiers=0):
        for kind, at in (("Pressed", start), ("Moved", end), ("Released", end)):
            self.mouse(kind, at, modifiers=modifiers)

    def double_click(self, at):
        for clicks in (1, 2):
            self.mouse("Pressed", at, clickCount=clicks)
            self.mouse("Released", at, clickCount=clicks)

    def pinch(self, starts, ends):
        for kind, fingers in (("touchStart", starts), ("touchMove", ends), ("touchEnd", [])):
            self.act("Touch", kind, fingers)

    def press(self, *keys):
        self.find("#plot .uplot").send_keys(*keys)

    def facts(self):
        """The rows of facts: keys, and texts."""
        return list(zip(self.texts("#facts dt"), self.texts("#facts dd")))

    def download(self, extension):
        """The file that a button for saving makes."""
        for file in self.downloads.iterdir():
            file.unlink()
        buttons = self.browser.find_elements(By.CSS_SELECTOR, "#saving button")
        next(button for button in buttons if button.text == extension).click()
        self.wait(lambda: any(file.suffix == f".{extension}" for file in self.downloads.iterdir()))
        return next(self.downloads.iterdir())

    def shoot(self, name):
        """A picture of the whole page, to be looked at."""
        SHOTS.mkdir(parents=True, exist_ok=True)
        small = self.picture().quantize(255, Image.Quantize.MAXCOVERAGE, kmeans=1, dither=Image.Dither.NONE)
        small.save(SHOTS / f"{name}.png", optimize=True)

    def picture(self):
        width, height = self.js("return [innerWidth, document.documentElement.scrollHeight]")
        clip = {"x": 0, "y": 0, "width": width, "height": height, "scale": 1}
        shot = self.browser.execute_cdp_cmd("Page.captureScreenshot", {"captureBeyondViewport": True, "clip": clip})
        return Image.open(io.BytesIO(base64.b64decode(shot["data"]))).convert("RGB")


@pytest.fixture(scope="session")
def browser(tmp_path_factory):
    options = webdriver.ChromeOptions()
    for argument in ("--headless=new", "--no-sandbox", "--disable-dev-shm-usage", "--hide-scrollbars"):
        options.add_argument(argument)
    downloads = tmp_path_factory.mktemp("downloads")
    several = {"profile.default_content_setting_values.automatic_downloads": 1}
    options.add_experimental_option("prefs", {"download.default_directory": str(downloads), **several})
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    driver = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
    yield Page(driver, downloads)
    driver.quit()


@pytest.fixture(scope="session")
def served():
    """The folder of the page behind a plain server."""
    handler = functools.partial(http.server.SimpleHTTPRequestHandler, directory=PAGE)
    with http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler) as server:
        threading.Thread(target=server.serve_forever, daemon=True).start()
        yield f"http://127.0.0.1:{server.server_port}/index.html"
        server.shutdown()


@pytest.fixture
def page(browser):
    """The page, from a file; afterwards it has complained about nothing and asked for nothing."""
    browser.load((PAGE / "index.html").as_uri())
    yield browser
    assert browser.browser.get_log("browser") == []
    assert browser.js("return performance.getEntriesByType('resource').map(r => r.name)") == []
