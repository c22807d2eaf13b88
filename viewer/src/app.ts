// The page: what is open, what is selected, and the plot of it.

import { fileOf, openFiles } from "./files";
import { colourOf, curveOf, plotCurves, type Curve, type Reading } from "./curve";
import { drawGrid, extentOf, mapNames, coloursOf, sampleAt, type Colouring, type Grid } from "./image";
import { showFacts, showNotes, showParameters } from "./details";
import { isCurve, itemOf, numbered, titled, withShown, type Item, type PartName } from "./items";
import { kem, load, sentenceOf, type Dataset, type Facts, type Numbers } from "./kem";
import { coordinateText, direction, every, rangeOf, shortText, valueText, type Range } from "./numbers";
import { followView, showOperations } from "./operations";
import { byId, button, choice, element, tell, toggle } from "./page";
import { Plot, type Box } from "./plot";

const items: Item[] = [];
let selected: Item | null = null;
let plots: Plot[] = [];
let log = false;
let map = "viridis";
let colourRange: Range | null = null; // null for all values

// ------------------------------------------------------------ opening

async function open(files: File[]): Promise<void> {
  if (files.length === 0) return;
  const started = performance.now();
  document.body.classList.add("busy");
  try {
    const { datasets, problems } = await openFiles(files);
    problems.forEach(tell);
    const added = datasets.map((d) => itemOf(d));
    added.forEach((item) => (item.overlaid &&= goesWith(item, added[0])));
    items.push(...added);
    if (added.length > 0) select(added[0], started);
  } catch (problem) {
    tell(sentenceOf(problem));
  } finally {
    document.body.classList.remove("busy");
  }
}

// Whether a curve is drawn over the first one of its drop: of a file with many curves only the first is.
function goesWith(item: Item, first: Item): boolean {
  const [a, b] = [item.facts.axes[0], first.facts.axes[0]];
  return item.facts.item === 1 && isCurve(first) && a.name === b.name && a.unit === b.unit;
}

function add(dataset: Dataset, from: Item, label: string): void {
  const item = itemOf(dataset, `${from.label}, ${label}`);
  items.push(item);
  select(item);
}

function remove(item: Item): void {
  items.splice(items.indexOf(item), 1);
  item.source.delete();
  select(selected === item ? (items[0] ?? null) : selected);
}

// ------------------------------------------------------------ list

function select(item: Item | null, started?: number): void {
  if (item !== selected) colourRange = null;
  selected = item;
  if (item && isCurve(item)) item.overlaid = true;
  document.body.classList.toggle("empty", items.length === 0);
  showList();
  if (item) show(item, started);
}

function listed(item: Item): HTMLLIElement {
  const name = button(item.within ? numbered(item.facts) : item.label, () => select(item), item.label);
  name.className = "name";
  if (item === selected) name.setAttribute("aria-current", "true");
  const away = button("×", () => remove(item));
  away.setAttribute("aria-label", `Close ${item.label}`);
  away.className = "away";
  const line = element("li", {}, name, away);
  if (!isCurve(item)) return line;
  const box = element("input", {
    type: "checkbox",
    checked: item.overlaid,
    title: "Draw this curve",
    "aria-label": `Draw ${item.label}`,
    onchange: () => {
      item.overlaid = box.checked;
      if (selected && isCurve(selected)) draw(selected);
    },
  });
  box.style.accentColor = colourOf(item.colour);
  line.prepend(box);
  return line;
}

function showList(): void {
  const lines = items.flatMap((item, k) => {
    const heads = item.within !== "" && item.within !== items[k - 1]?.within;
    return heads ? [element("li", { class: "file" }, item.within), listed(item)] : [listed(item)];
  });
  byId("items").replaceChildren(...lines);
  byId("items").querySelector("[aria-current]")?.scrollIntoView({ block: "nearest" });
}

// ------------------------------------------------------------ what is selected

function show(item: Item, started?: number): void {
  byId("title").textContent = item.label;
  showNotes(item.facts);
  guarded(() => showFacts(item));
  showParameters(item.facts, byId<HTMLInputElement>("search").value);
  showBar(item);
  showSaving(item);
  draw(item);
  showOperations(calculation);
  if (started === undefined) return;
  requestAnimationFrame(() => {
    const took = Math.round(performance.now() - started);
    document.body.dataset.drawn = String(took);
    byId("status").textContent = `opened and drawn in ${took} ms`;
  });
}

function calculation() {
  if (!selected || plots.length === 0) return null;
  const item = selected;
  return {
    item,
    others: items.filter((other) => other !== item && other.facts.axes.length === item.facts.axes.length),
    box: plots[0].shown,
    done: (result: Dataset, label: string) => add(result, item, label),
    failed: (problem: unknown) => tell(sentenceOf(problem)),
  };
}

function guarded(work: () => void): void {
  try {
    work();
  } catch (problem) {
    tell(sentenceOf(problem));
  }
}

function changed(item: Item): void {
  guarded(() => showFacts(item));
  draw(item);
  showOperations(calculation);
}

function unitChoice(item: Item, axis: number): HTMLElement | null {
  const units = item.source.units(axis);
  if (units.length < 2) return null;
  const fact = item.facts.axes[axis];
  const own = item.source.unit(axis);
  return choice(fact.name || "axis", units, item.units[axis] || own, (unit) => {
    const before = item.units[axis];
    item.units[axis] = unit === own ? "" : unit;
    try {
      withShown(item, "both", () => undefined);
    } catch (problem) {
      tell(sentenceOf(problem));
      item.units[axis] = before;
      showBar(item);
    }
    changed(item);
  });
}

// What can be chosen about the plot.
function showBar(item: Item): void {
  const { axes, complex } = item.facts;
  const parts: PartName[] = ["real", "imaginary", "magnitude", "phase"];
  if (isCurve(item)) parts.unshift("both");
  const bar: (HTMLElement | null)[] = axes.map((_, k) => unitChoice(item, axes.length - 1 - k));
  if (complex)
    bar.push(
      choice("part", parts, item.part, (part) => {
        item.part = part as PartName;
        colourRange = null;
        draw(item);
      }),
    );
  bar.push(
    toggle("log", log, (on) => {
      log = on;
      draw(item, isCurve(item) ? undefined : plots[0]?.shown);
    }),
  );
  if (!isCurve(item)) {
    bar.push(
      choice("colours", mapNames, map, (name) => {
        map = name;
        draw(item, plots[0]?.shown);
      }),
      toggle("top down", item.flipped, (on) => {
        item.flipped = on;
        draw(item);
      }),
    );
    if (axes.length > 2) bar.push(planeChoice(item));
  }
  const whole = button("Whole", () => plots.forEach((plot) => plot.reset()), "Show everything (double click, or 0)");
  byId("bar").replaceChildren(
    ...bar.filter((part) => part !== null),
    element(
      "span",
      { class: "zooms" },
      button("−", () => plots[0]?.zoom(1.25), "Zoom out (-)"),
      button("+", () => plots[0]?.zoom(0.8), "Zoom in (+)"),
      whole,
    ),
  );
}

function planeChoice(item: Item): HTMLElement {
  const { count, name } = item.facts.axes[0];
  const slider = element("input", {
    type: "range",
    min: "0",
    max: String(count - 1),
    value: String(item.plane),
    oninput: () => {
      item.plane = Number(slider.value);
      draw(item, plots[0]?.shown);
    },
  });
  return element("label", { class: "choice" }, element("span", {}, name || "plane"), slider);
}

function showSaving(item: Item): void {
  const saving = byId("saving");
  const save = (format: string) =>
    guarded(() => {
      const blob = withShown(item, item.part, (d) => fileOf(d, format));
      const stem = item.label.replace(/\.[^., ]*(?=$|,)/, "").replace(/[^\p{L}\p{N}._-]+/gu, "_");
      const link = element("a", { href: URL.createObjectURL(blob), download: `${stem}.${format}` });
      link.click();
      setTimeout(() => URL.revokeObjectURL(link.href), 60_000);
    });
  const formats = withShown(item, item.part, (d) => d.formats());
  saving.replaceChildren(...formats.map((format) => button(format, () => save(format), `Save as ${format}`)));
}

// ------------------------------------------------------------ drawing

function draw(item: Item, box?: Box): void {
  plots.forEach((plot) => plot.destroy());
  plots = [];
  byId("plot").replaceChildren();
  byId("sections").replaceChildren();
  byId("reading").replaceChildren();
  byId("left-out").replaceChildren();
  byId("scale").hidden = isCurve(item);
  document.body.classList.toggle("grid", !isCurve(item));
  guarded(() => (isCurve(item) ? drawCurves(item, box) : drawImage(item, box)));
}

const plotHeight = () => Math.max(Math.min(window.innerHeight * 0.56, 560), 260);

interface Loaded {
  facts: Facts;
  curves: Curve[];
}

// A curve, or the two of complex values, in units of its own.
function loaded(item: Item, units: string[]): Loaded {
  return withShown({ ...item, units }, item.part, (d) => {
    const facts = d.facts();
    const x = d.coordinates(0);
    const values = d.values();
    const colour = colourOf(item.colour);
    if (!facts.complex) return { facts, curves: [curveOf(item.label, colour, x, values.slice())] };
    const half = (k: number) => every(values, k, 2, x.length);
    const second = `color-mix(in srgb, ${colour} 45%, transparent)`;
    return {
      facts,
      curves: [
        curveOf(`${item.label} real`, colour, x, half(0)),
        curveOf(`${item.label} imaginary`, second, x, half(1)),
      ],
    };
  });
}

// Other curves are drawn where the axis of the selected one can be theirs.
function overlays(item: Item, facts: Facts): Curve[] {
  const leftOut: string[] = [];
  const curves = items.filter((other) => other !== item && other.overlaid && isCurve(other)).flatMap((other) => {
    const { unit } = facts.axes[0];
    const own = other.facts.axes[0].unit;
    try {
      return loaded(other, [own === unit ? "" : item.units[0] || unit]).curves;
    } catch (problem) {
      leftOut.push(`${other.label}: ${sentenceOf(problem)}`);
      return [];
    }
  });
  showLeftOut(leftOut);
  return curves;
}

function showLeftOut(sentences: string[]): void {
  const count = sentences.length === 1 ? "A curve is" : `${sentences.length} curves are`;
  const lines = sentences.map((text) => element("p", {}, text));
  const note = element("details", { class: "note remark" }, element("summary", {}, `${count} not drawn over this one`), ...lines);
  byId("left-out").replaceChildren(...(lines.length > 0 ? [note] : []));
}

function drawCurves(item: Item, box?: Box): void {
  const { facts, curves } = loaded(item, item.units);
  const all = [...curves, ...overlays(item, facts)];
  const axis = facts.axes[0];
  const labels = { x: titled(axis.name, axis.unit, "X"), y: titled(facts.name, facts.unit, "Y") };
  const plot = plotCurves(byId("plot"), all, {
    labels,
    log,
    box,
    height: plotHeight(),
    reversed: axis.start > axis.end,
    title: `Plot of ${item.label}`,
    read: (readings) => showReadings(readings, labels.x),
    viewed: () => followView(),
  });
  plots = [plot];
  if (all.length > 1) showReadings(all.map((curve) => ({ curve, k: -1 })), labels.x);
}

const textOf = (value: number, numbers: Numbers) => valueText(value, numbers instanceof Float32Array);

function showReadings(readings: Reading[], x: string): void {
  const rows = readings.map(({ curve, k }) =>
    element(
      "tr",
      {},
      element("th", { scope: "row" }, element("i", { class: "swatch" }), curve.label),
      element("td", {}, k < 0 ? "" : coordinateText(curve.x[k])),
      element("td", {}, k < 0 ? "" : textOf(curve.y[k], curve.y)),
      element("td", { class: "place" }, k < 0 ? "" : `#${k + 1}`),
    ),
  );
  rows.forEach((row, n) => (row.querySelector<HTMLElement>(".swatch")!.style.background = readings[n].curve.colour));
  const head = element("tr", {}, element("th", {}), element("th", {}, x), element("th", {}, "value"), element("th", {}));
  byId("reading").replaceChildren(...(rows.length > 0 ? [element("table", {}, head, ...rows)] : []));
}

// ------------------------------------------------------------ images

function gridOf(d: Dataset): Grid {
  return { x: d.coordinates(1), y: d.coordinates(0), values: d.values().slice() };
}

function drawImage(item: Item, box?: Box): void {
  const part = item.part === "both" ? "real" : item.part;
  const [facts, grid] = withShown(item, part, (d) => [d.facts(), gridOf(d)] as const);
  const [yAxis, xAxis] = facts.axes;
  const labels = { x: titled(xAxis.name, xAxis.unit, "X"), y: titled(yAxis.name, yAxis.unit, "Y") };
  const whole = rangeOf(grid.values, log ? 0 : -Infinity);
  const all = whole.min <= whole.max ? whole : { min: 0.1, max: 1 };
  const bound = (end: "min" | "max") => (colourRange && !(log && colourRange[end] <= 0) ? colourRange : all)[end];
  const colouring: Colouring = { map, range: { min: bound("min"), max: bound("max") }, log };
  const sections = sectionsOf(grid, labels, titled(facts.name, facts.unit, "Z"), item);
  let pinned = false;
  const plot = new Plot(
    byId("plot"),
    {
      labels,
      whole: { x: extentOf(grid.x), y: extentOf(grid.y) },
      reversed: { x: xAxis.start > xAxis.end, y: yAxis.start > yAxis.end !== item.flipped },
      height: plotHeight(),
      title: `Image of ${item.label}`,
      draw: (context, into) => drawGrid(context, into, grid, colouring),
      hover: (at) => {
        if (pinned || !at) return;
        const place = sampleAt(grid, at);
        sections(place);
        showSample(grid, place, labels, item);
      },
      step: (at, dx, dy) => {
        const { i, j } = sampleAt(grid, at);
        const towards = (k: number, by: number, axis: Float64Array) =>
          axis[Math.min(Math.max(k + by * (direction(axis) || 1), 0), axis.length - 1)];
        return { x: towards(i, dx, grid.x), y: towards(j, dy, grid.y) };
      },
      pick: () => (pinned = !pinned),
      viewed: () => followView(),
    },
    box,
  );
  plots.unshift(plot);
  showScale(item, colouring);
  const highest = Math.max(grid.values.indexOf(whole.max), 0);
  const place = { i: highest % grid.x.length, j: Math.floor(highest / grid.x.length) };
  sections(place);
  showSample(grid, place, labels, item);
}

function showSample(grid: Grid, { i, j }: { i: number; j: number }, labels: { x: string; y: string }, item: Item): void {
  const value = grid.values[j * grid.x.length + i];
  const cell = (name: string, text: string) => element("div", {}, element("dt", {}, name), element("dd", {}, text));
  const reading = element("dl", {}, cell(labels.x, coordinateText(grid.x[i])), cell(labels.y, coordinateText(grid.y[j])),
    cell(titled(item.facts.name, item.facts.unit, "value"), textOf(value, grid.values)));
  byId("reading").replaceChildren(reading);
}

// The row and the column under the cursor, as curves below the image.
function sectionsOf(grid: Grid, labels: { x: string; y: string }, z: string, item: Item) {
  const nx = grid.x.length;
  const hosts = ["x", "y"].map(() => byId("sections").appendChild(element("div", { class: "section" })));
  let made: Plot[] = [];
  let shownPlace = "";
  return ({ i, j }: { i: number; j: number }) => {
    if (shownPlace === `${i} ${j}`) return;
    shownPlace = `${i} ${j}`;
    made.forEach((plot) => plot.destroy());
    const row = curveOf(`${labels.y}: ${shortText(grid.y[j])}`, colourOf(0), grid.x, grid.values.slice(j * nx, (j + 1) * nx));
    const column = curveOf(`${labels.x}: ${shortText(grid.x[i])}`, colourOf(1), grid.y, every(grid.values, i, nx, grid.y.length));
    made = [row, column].map((curve, n) => {
      const axis = n === 0 ? labels.x : labels.y;
      const plot = plotCurves(hosts[n], [curve], {
        labels: { x: axis, y: z },
        log,
        height: 190,
        reversed: curve.sign < 0,
        title: `Section of ${item.label} at ${curve.label}`,
        read: () => undefined,
      });
      plot.u.root.append(element("p", { class: "caption" }, curve.label));
      return plot;
    });
    plots = [...plots.slice(0, 1), ...made];
  };
}

// The colours with the numbers that they stand for, which can be changed.
function showScale(item: Item, { range }: Colouring): void {
  const strip = element("canvas", { width: 256, height: 1 });
  const context = strip.getContext("2d")!;
  const image = new ImageData(256, 1);
  new Uint32Array(image.data.buffer).set(coloursOf(map));
  context.putImageData(image, 0, 0);
  const bound = (end: "min" | "max", label: string) => {
    const box = element("input", {
      type: "text",
      size: 9,
      value: shortText(range[end]),
      inputMode: "decimal",
      "aria-label": label,
      onchange: () => {
        const number = Number(box.value.replace(",", "."));
        if (box.value.trim() === "" || !Number.isFinite(number)) return tell(`'${box.value}' is no number`);
        colourRange = { ...range, [end]: number };
        draw(item, plots[0]?.shown);
      },
    });
    return box;
  };
  const all = button("All", () => {
    colourRange = null;
    draw(item, plots[0]?.shown);
  }, "Colours from the smallest to the largest value");
  byId("scale").replaceChildren(bound("min", "First colour"), strip, bound("max", "Last colour"), all);
}

// ------------------------------------------------------------ page

function listenForFiles(): void {
  const chooser = byId<HTMLInputElement>("chooser");
  chooser.onchange = () => {
    void open([...(chooser.files ?? [])]);
    chooser.value = "";
  };
  document.querySelectorAll<HTMLElement>(".open").forEach((b) => (b.onclick = () => chooser.click()));
  let depth = 0;
  const hovering = (on: boolean) => document.body.classList.toggle("hovering", on);
  addEventListener("dragenter", () => hovering(++depth > 0));
  addEventListener("dragleave", () => hovering(--depth > 0));
  addEventListener("dragover", (event) => event.preventDefault());
  addEventListener("drop", (event) => {
    event.preventDefault();
    hovering((depth = 0) > 0);
    void open([...(event.dataTransfer?.files ?? [])]);
  });
}

function showFormats(): void {
  const rows = kem.formats().map((f) => element("li", {}, element("b", {}, f.name), " ", [...f.extensions, ...f.companions].join(" ") || "by content"));
  byId("formats").replaceChildren(...rows);
}

async function start(): Promise<void> {
  try {
    await load();
  } catch (problem) {
    return tell(`this browser cannot run the viewer: ${sentenceOf(problem)}`);
  }
  byId("version").textContent = kem.version();
  showFormats();
  listenForFiles();
  const search = byId<HTMLInputElement>("search");
  search.oninput = () => selected && showParameters(selected.facts, search.value);
  matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => select(selected));
  addEventListener("resize", () => plots[0]?.fit(plotHeight()));
  document.body.classList.remove("loading");
}

void start();
