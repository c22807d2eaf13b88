// A pair of axes that is zoomed and panned by mouse, fingers and keys; what lies between them is drawn by its owner.

import uPlot from "uplot";
import { shortText, type Range } from "./numbers";

export interface Box {
  x: Range;
  y: Range;
}

export interface PlotOptions {
  labels: { x: string; y: string };
  whole: Box;
  /** Axes that run from right to left, or from the top down. */
  reversed: { x: boolean; y: boolean };
  log?: boolean;
  height: number;
  title: string;
  /** What moves with wheel and drag: all of it, or X alone while Y follows. */
  draw(context: CanvasRenderingContext2D, plot: Plot): void;
  /** The cursor moved to a place in units of the axes, or left. */
  hover(at: { x: number; y: number } | null): void;
  /** The next sample in a direction, for the arrow keys. */
  step(at: { x: number; y: number }, dx: number, dy: number): { x: number; y: number };
  pick?(): void;
  /** Another part is shown. */
  viewed?(): void;
}

const css = (name: string) => getComputedStyle(document.body).getPropertyValue(name).trim();

/** Pixels of a cell of the screen per pixel of the layout. */
const ratio = () => window.devicePixelRatio || 1;

const isLog = (plot: Plot) => plot.options.log === true;

// Ranges of logarithmic axes are handled as those of logarithms.
const to = (range: Range, log: boolean): Range =>
  log ? { min: Math.log(range.min), max: Math.log(range.max) } : range;
const from = (range: Range, log: boolean): Range =>
  log ? { min: Math.exp(range.min), max: Math.exp(range.max) } : range;

function scaled(range: Range, at: number, factor: number, log: boolean): Range {
  const { min, max } = to(range, log);
  const middle = log ? Math.log(at) : at;
  return from({ min: middle + (min - middle) * factor, max: middle + (max - middle) * factor }, log);
}

function moved(range: Range, part: number, log: boolean): Range {
  const { min, max } = to(range, log);
  const by = (max - min) * part;
  return from({ min: min + by, max: max + by }, log);
}

export class Plot {
  readonly u: uPlot;
  private box: Box;
  private at: { x: number; y: number } | null = null;
  private readonly frame: HTMLElement;
  private readonly pointers = new Map<number, { x: number; y: number }>();
  private readonly resized: ResizeObserver;
  private started: { x: number; y: number; pans: boolean } | null = null;

  constructor(
    host: HTMLElement,
    readonly options: PlotOptions,
    box?: Box,
  ) {
    this.box = box ?? options.whole;
    this.u = new uPlot(this.layout(host.clientWidth), [[0], [null]], host);
    this.frame = document.createElement("div");
    this.frame.className = "zoom-frame";
    this.frame.hidden = true;
    this.u.over.append(this.frame);
    this.u.root.tabIndex = 0;
    this.u.root.setAttribute("role", "application");
    this.u.root.setAttribute("aria-label", options.title);
    this.show(this.box);
    this.listen();
    this.resized = new ResizeObserver(() => {
      if (host.clientWidth !== this.u.width && host.clientWidth > 0) this.resize(host.clientWidth, this.u.height);
    });
    this.resized.observe(host);
  }

  destroy(): void {
    this.resized.disconnect();
    this.u.destroy();
  }

  get shown(): Box {
    return this.box;
  }

  /** Takes another height, as the window does when it is turned or its bars go. */
  fit(height: number): void {
    if (height !== this.u.height) this.resize(this.u.width, height);
  }

  private resize(width: number, height: number): void {
    this.u.setSize({ width, height });
    this.placeCursor();
  }

  show(box: Box): void {
    if (!(box.x.max > box.x.min) || !(box.y.max > box.y.min)) return;
    this.box = box;
    this.u.batch(() => {
      this.u.setScale("x", box.x);
      this.u.setScale("y", box.y);
    });
    this.placeCursor();
    this.options.viewed?.();
  }

  reset(): void {
    this.show(this.options.whole);
  }

  zoom(factor: number, at = this.center(), axes = { x: true, y: true }): void {
    this.show({
      x: axes.x ? scaled(this.box.x, at.x, factor, false) : this.box.x,
      y: axes.y ? scaled(this.box.y, at.y, factor, isLog(this)) : this.box.y,
    });
  }

  /** Moves the view by parts of its width and height. */
  pan(dx: number, dy: number): void {
    const { x, y } = this.options.reversed;
    this.show({
      x: moved(this.box.x, x ? -dx : dx, false),
      y: moved(this.box.y, y ? -dy : dy, isLog(this)),
    });
  }

  /** The cursor at a place in units of the axes. */
  place(at: { x: number; y: number } | null): void {
    this.at = at;
    this.placeCursor();
    this.options.hover(at);
  }

  private layout(width: number): uPlot.Options {
    const stroke = css("--ink");
    const grid = { stroke: css("--grid"), width: 1 };
    const axis = { stroke, grid, ticks: grid, font: `12px ${css("--font")}`, labelFont: `13px ${css("--font")}` };
    const marks = (_: uPlot, splits: (number | null)[]) => splits.map((v) => (v === null ? "" : shortText(v)));
    const { labels, reversed, height } = this.options;
    const range = (_: uPlot, min: number, max: number): [number, number] => [min, max];
    return {
      width,
      height,
      legend: { show: false },
      padding: [12, 14, 0, 0],
      scales: {
        x: { time: false, auto: false, dir: reversed.x ? -1 : 1, range },
        y: { auto: false, dir: reversed.y ? -1 : 1, range, distr: isLog(this) ? 3 : 1 },
      },
      series: [{}, { show: true, points: { show: false } }],
      axes: [
        { ...axis, label: labels.x, labelSize: 22, size: 34, values: isLog(this) ? undefined : marks },
        { ...axis, label: labels.y, labelSize: 22, size: 66, values: marks },
      ],
      cursor: { drag: { x: false, y: false, setScale: false }, points: { show: false } },
      hooks: { draw: [(u) => this.paint(u)] },
    };
  }

  private paint(u: uPlot): void {
    const context = u.ctx;
    context.save();
    context.beginPath();
    context.rect(u.bbox.left, u.bbox.top, u.bbox.width, u.bbox.height);
    context.clip();
    this.options.draw(context, this);
    context.restore();
  }

  private center(): { x: number; y: number } {
    if (this.at) return this.at;
    const { clientWidth, clientHeight } = this.u.over;
    return this.placeOf({ x: clientWidth / 2, y: clientHeight / 2 });
  }

  private placeOf(point: { x: number; y: number }): { x: number; y: number } {
    return { x: this.u.posToVal(point.x, "x"), y: this.u.posToVal(point.y, "y") };
  }

  private pointOf(event: PointerEvent | WheelEvent): { x: number; y: number } {
    const rect = this.u.over.getBoundingClientRect();
    return { x: event.clientX - rect.left, y: event.clientY - rect.top };
  }

  private placeCursor(): void {
    const at = this.at;
    this.u.setCursor(
      at ? { left: this.u.valToPos(at.x, "x"), top: this.u.valToPos(at.y, "y") } : { left: -10, top: -10 },
      false,
    );
  }

  // ---------------------------------------------------------- mouse and fingers

  private listen(): void {
    const over = this.u.over;
    over.style.touchAction = "none";
    over.addEventListener("pointerdown", (event) => this.down(event));
    over.addEventListener("pointermove", (event) => this.move(event));
    over.addEventListener("pointerup", (event) => this.up(event));
    over.addEventListener("pointercancel", (event) => this.up(event));
    over.addEventListener("pointerleave", (event) => {
      if (event.pointerType === "mouse" && !this.started) this.place(null);
    });
    over.addEventListener("contextmenu", (event) => event.preventDefault());
    over.addEventListener("dblclick", () => this.reset());
    over.addEventListener(
      "wheel",
      (event) => {
        event.preventDefault();
        const turned = event.deltaY || event.deltaX; // with Shift a wheel turns sideways
        const factor = Math.exp(Math.sign(turned) * Math.min(Math.abs(turned), 100) * 0.002);
        this.zoom(factor, this.placeOf(this.pointOf(event)), { x: !event.shiftKey, y: !event.ctrlKey });
      },
      { passive: false },
    );
    this.u.root.addEventListener("keydown", (event) => this.key(event));
  }

  private down(event: PointerEvent): void {
    const point = this.pointOf(event);
    this.pointers.set(event.pointerId, point);
    this.u.over.setPointerCapture(event.pointerId);
    this.started = { ...point, pans: event.shiftKey || event.button > 0 };
    if (event.pointerType !== "mouse") this.place(this.placeOf(point));
  }

  private move(event: PointerEvent): void {
    const point = this.pointOf(event);
    const before = this.pointers.get(event.pointerId);
    if (before && this.pointers.size === 2) this.pinch(event.pointerId, point);
    else if (before && this.started?.pans) this.panBy(point.x - before.x, point.y - before.y);
    else if (before && event.pointerType === "mouse") this.frameTo(point);
    if (before) this.pointers.set(event.pointerId, point);
    if (this.pointers.size < 2) this.place(this.placeOf(point));
  }

  private up(event: PointerEvent): void {
    const point = this.pointOf(event);
    const started = this.started;
    this.pointers.delete(event.pointerId);
    this.started = null;
    const framed = !this.frame.hidden;
    this.frame.hidden = true;
    if (!started || event.type === "pointercancel" || started.pans) return;
    if (framed) this.zoomTo(started, point);
    else if (event.pointerType === "mouse") this.options.pick?.();
  }

  // A drag that hardly moves along an axis takes all of it.
  private spans(a: { x: number; y: number }, b: { x: number; y: number }): { x: boolean; y: boolean } {
    const [dx, dy] = [Math.abs(a.x - b.x), Math.abs(a.y - b.y)];
    return { x: dx > 12 || dx > dy / 3, y: dy > 24 || dy > dx };
  }

  private frameTo(point: { x: number; y: number }): void {
    const start = this.started;
    if (!start || Math.hypot(point.x - start.x, point.y - start.y) < 5) return;
    const along = this.spans(start, point);
    const { clientWidth, clientHeight } = this.u.over;
    const side = (a: number, b: number, whole: number, taken: boolean) =>
      taken ? [Math.min(a, b), Math.abs(a - b)] : [0, whole];
    const [left, width] = side(start.x, point.x, clientWidth, along.x);
    const [top, height] = side(start.y, point.y, clientHeight, along.y);
    Object.assign(this.frame.style, {
      left: `${left}px`,
      top: `${top}px`,
      width: `${width}px`,
      height: `${height}px`,
    });
    this.frame.hidden = false;
  }

  private zoomTo(a: { x: number; y: number }, b: { x: number; y: number }): void {
    const along = this.spans(a, b);
    const [one, other] = [this.placeOf(a), this.placeOf(b)];
    const span = (p: number, q: number): Range => ({ min: Math.min(p, q), max: Math.max(p, q) });
    this.show({
      x: along.x ? span(one.x, other.x) : this.box.x,
      y: along.y ? span(one.y, other.y) : this.box.y,
    });
  }

  private panBy(dx: number, dy: number): void {
    this.pan(-dx / this.u.over.clientWidth, dy / this.u.over.clientHeight);
  }

  private pinch(id: number, point: { x: number; y: number }): void {
    const before = this.pointers.get(id);
    const other = [...this.pointers].find(([pointer]) => pointer !== id)?.[1];
    if (!before || !other) return;
    const distance = (p: { x: number; y: number }) => Math.max(Math.hypot(p.x - other.x, p.y - other.y), 1);
    const middle = { x: (point.x + other.x) / 2, y: (point.y + other.y) / 2 };
    this.panBy((point.x - before.x) / 2, (point.y - before.y) / 2);
    this.zoom(distance(before) / distance(point), this.placeOf(middle));
  }

  // ---------------------------------------------------------- keys

  private key(event: KeyboardEvent): void {
    const arrows: Record<string, [number, number]> = {
      ArrowLeft: [-1, 0],
      ArrowRight: [1, 0],
      ArrowUp: [0, 1],
      ArrowDown: [0, -1],
    };
    const arrow = arrows[event.key];
    if (event.ctrlKey || event.metaKey) return;
    if (arrow && event.shiftKey) this.pan(arrow[0] / 10, arrow[1] / 10);
    else if (arrow) {
      const { x, y } = this.options.reversed;
      const many = event.altKey ? 10 : 1;
      this.place(this.options.step(this.center(), arrow[0] * many * (x ? -1 : 1), arrow[1] * many * (y ? -1 : 1)));
    } else if (event.key === "+" || event.key === "=") this.zoom(0.8);
    else if (event.key === "-") this.zoom(1.25);
    else if (event.key === "0" || event.key === "Home") this.reset();
    else if (event.key === "Enter") this.options.pick?.();
    else if (event.key === "Escape") this.place(null);
    else return;
    event.preventDefault();
  }
}

/** A place between the axes in pixels of the canvas. */
export const pixelX = (plot: Plot, x: number) => plot.u.valToPos(x, "x", true);
export const pixelY = (plot: Plot, y: number) => plot.u.valToPos(y, "y", true);
export { css, ratio };
