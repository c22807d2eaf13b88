// Curves over each other.

import { direction, lowerBound, nearest, rangeOf, shown, united, type Range } from "./numbers";
import type { Numbers } from "./kem";
import { css, pixelX, pixelY, Plot, ratio, type Box } from "./plot";

export interface Curve {
  label: string;
  colour: string;
  x: ArrayLike<number>;
  y: Numbers;
  /** 1 where x rises, -1 where it falls, 0 where it does neither. */
  sign: number;
}

export function curveOf(label: string, colour: string, x: ArrayLike<number>, y: Numbers): Curve {
  return { label, colour, x, y, sign: direction(x) };
}

// The samples that may be seen, and one beside them at either end.
function visible(curve: Curve, x: Range): [number, number] {
  const count = Math.min(curve.x.length, curve.y.length);
  if (curve.sign === 0) return [0, count];
  const ends = [lowerBound(curve.x, x.min, curve.sign), lowerBound(curve.x, x.max, curve.sign)].sort((a, b) => a - b);
  return [Math.max(ends[0] - 1, 0), Math.min(ends[1] + 1, count)];
}

/** Draws a curve; of samples that share a column of pixels the extremes count. */
export function drawCurve(context: CanvasRenderingContext2D, plot: Plot, curve: Curve): void {
  const [first, last] = visible(curve, plot.shown.x);
  const log = plot.options.log === true;
  const { x, y } = plot.shown;
  const span = (r: Range, low: number, high: number, logarithmic: boolean) => {
    const f = logarithmic ? Math.log : (v: number) => v;
    const scale = (high - low) / (f(r.max) - f(r.min));
    return { low: low - f(r.min) * scale, scale };
  };
  const across = span(x, pixelX(plot, x.min), pixelX(plot, x.max), false);
  const up = span(y, pixelY(plot, y.min), pixelY(plot, y.max), log);
  const yOf = log
    ? (v: number) => (v > 0 ? up.low + Math.log(v) * up.scale : NaN)
    : (v: number) => up.low + v * up.scale;

  context.strokeStyle = context.fillStyle = curve.colour;
  context.lineWidth = 1.4 * ratio();
  context.lineJoin = "round";
  context.beginPath();
  let column = NaN;
  let low = 0;
  let high = 0;
  let end = 0;
  let draws = false; // whether a line leads to the next sample
  const finish = () => {
    if (low < high) {
      context.lineTo(column, low);
      context.lineTo(column, high);
      context.lineTo(column, end);
    }
  };
  for (let k = first; k < last; ++k) {
    const py = yOf(curve.y[k]);
    const px = across.low + curve.x[k] * across.scale;
    if (!(Math.abs(py) < 1e30) || !(Math.abs(px) < 1e30)) {
      finish();
      column = NaN;
      draws = false;
      continue;
    }
    const here = last - first > 4000 ? Math.round(px) : px;
    if (here === column) {
      if (py < low) low = py;
      if (py > high) high = py;
      end = py;
      continue;
    }
    finish();
    if (draws) context.lineTo(here, py);
    else context.moveTo(here, py);
    draws = true;
    column = here;
    low = high = end = py;
  }
  finish();
  context.stroke();
  const width = Math.abs(across.scale * (x.max - x.min));
  if ((last - first) * 9 * ratio() < width) drawDots();

  function drawDots(): void {
    for (let k = first; k < last; ++k) {
      context.beginPath();
      context.arc(across.low + curve.x[k] * across.scale, yOf(curve.y[k]), 2.6 * ratio(), 0, 2 * Math.PI);
      context.fill();
    }
  }
}

/** Where curves are; the second of their boxes has room around it. */
export function boxOf(curves: Curve[], log: boolean): Box {
  const y = united(curves.map((c) => rangeOf(c.y, log ? 0 : -Infinity)));
  return { x: shown(united(curves.map((c) => rangeOf(c.x)))), y: shown(y, 0.04, log) };
}

export interface Reading {
  curve: Curve;
  k: number;
}

/** The sample of each curve that is nearest to a place along X. */
export function readingsAt(curves: Curve[], x: number): Reading[] {
  return curves.filter((c) => c.x.length > 0).map((curve) => ({ curve, k: nearest(curve.x, x, curve.sign) }));
}

/** Curves in a plot, with a dot on each sample under the cursor. */
export function plotCurves(
  host: HTMLElement,
  curves: Curve[],
  options: {
    labels: { x: string; y: string };
    log: boolean;
    height: number;
    reversed: boolean;
    title: string;
    box?: Box;
    read(readings: Reading[]): void;
    viewed?(): void;
  },
): Plot {
  let readings: Reading[] = [];
  const plot = new Plot(
    host,
    {
      labels: options.labels,
      whole: boxOf(curves, options.log),
      reversed: { x: options.reversed, y: false },
      log: options.log,
      height: options.height,
      title: options.title,
      viewed: options.viewed,
      draw: (context, into) => {
        for (const curve of [...curves].reverse()) drawCurve(context, into, curve);
      },
      hover: (at) => {
        readings = at ? readingsAt(curves, at.x) : [];
        mark(plot, readings);
        options.read(readings);
      },
      step: (at, dx) => {
        const curve = curves[0];
        const k = nearest(curve.x, at.x, curve.sign);
        const next = Math.min(Math.max(k + dx * (curve.sign || 1), 0), curve.x.length - 1);
        return { x: curve.x[next], y: curve.y[next] };
      },
    },
    options.box,
  );
  return plot;
}

function mark(plot: Plot, readings: Reading[]): void {
  const over = plot.u.over;
  const dots = over.querySelectorAll<HTMLElement>(".dot");
  dots.forEach((dot, k) => k >= readings.length && dot.remove());
  readings.forEach(({ curve, k }, n) => {
    const dot = dots[n] ?? over.appendChild(Object.assign(document.createElement("div"), { className: "dot" }));
    const [left, top] = [plot.u.valToPos(curve.x[k], "x"), plot.u.valToPos(curve.y[k], "y")];
    const inside = left >= 0 && left <= over.clientWidth && top >= 0 && top <= over.clientHeight;
    dot.hidden = !inside;
    Object.assign(dot.style, { left: `${left}px`, top: `${top}px`, background: curve.colour });
  });
}

/** The colour of the n-th curve. */
export const colourOf = (n: number) => css(`--curve-${(n % 8) + 1}`);
