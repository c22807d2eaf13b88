// Grids as images: each pixel shows the mean of the samples within it, wherever their coordinates are.

import { direction, nearest, type Range } from "./numbers";
import type { Numbers } from "./kem";
import { pixelX, pixelY, Plot } from "./plot";

export interface Grid {
  x: Float64Array;
  y: Float64Array;
  /** x.length numbers for each y. */
  values: Numbers;
}

export interface Colouring {
  map: string;
  range: Range;
  log: boolean;
}

// Colours at equal distances.
const maps: Record<string, string> = {
  viridis: "440154 482878 3e4989 31688e 26828e 1f9e89 35b779 6ece58 b5de2b fde725",
  inferno: "000004 1b0c41 4a0c6b 781c6d a52c60 cf4446 ed6925 fb9b06 f7d13d fcffa4",
  grey: "000000 ffffff",
  "white to black": "ffffff 000000",
  "blue to red": "2166ac 67a9cf d1e5f0 f7f7f7 fddbc7 ef8a62 b2182b",
};

export const mapNames = Object.keys(maps);

const kSteps = 256;

/** The colours of a map as words of pixels. */
export function coloursOf(map: string): Uint32Array {
  const stops = maps[map].split(" ").map((text) => [0, 2, 4].map((k) => parseInt(text.slice(k, k + 2), 16)));
  const colours = new Uint32Array(kSteps);
  for (let k = 0; k < kSteps; ++k) {
    const at = (k / (kSteps - 1)) * (stops.length - 1);
    const low = Math.min(Math.floor(at), stops.length - 2);
    const [r, g, b] = stops[low].map((c, n) => Math.round(c + (stops[low + 1][n] - c) * (at - low)));
    colours[k] = 0xff000000 | (b << 16) | (g << 8) | r;
  }
  return colours;
}

/** Where the cell of each sample begins and ends: half way to its neighbours. */
export function edgesOf(coordinates: Float64Array): Float64Array {
  const count = coordinates.length;
  const edges = new Float64Array(count + 1);
  for (let k = 1; k < count; ++k) edges[k] = (coordinates[k - 1] + coordinates[k]) / 2;
  if (count === 1) return new Float64Array([coordinates[0] - 0.5, coordinates[0] + 0.5]);
  edges[0] = coordinates[0] - (edges[1] - coordinates[0]);
  edges[count] = coordinates[count - 1] + (coordinates[count - 1] - edges[count - 1]);
  return edges;
}

export function extentOf(coordinates: Float64Array): Range {
  const edges = edgesOf(coordinates);
  let { min, max } = { min: Infinity, max: -Infinity };
  for (const edge of edges) {
    min = Math.min(min, edge);
    max = Math.max(max, edge);
  }
  return { min, max };
}

// For each of `count` pixels the first sample within it and the one behind its last; none where both are equal.
// Axes that turn round are taken cell by cell.
function samplesUnder(edges: Float64Array, pixelOf: (c: number) => number, count: number): Int32Array {
  const under = new Int32Array(2 * count);
  const cells = edges.length - 1;
  const pixels = Float64Array.from(edges, pixelOf);
  for (let k = 0; k < cells; ++k) {
    const low = Math.min(pixels[k], pixels[k + 1]);
    const high = Math.max(pixels[k], pixels[k + 1]);
    const first = Math.max(Math.round(low), 0);
    const last = Math.min(Math.max(Math.round(high), first + (low >= 0 && high - low < 1 ? 1 : 0)), count);
    for (let p = first; p < last; ++p) {
      if (under[2 * p] === under[2 * p + 1]) under[2 * p] = k;
      under[2 * p] = Math.min(under[2 * p], k);
      under[2 * p + 1] = Math.max(under[2 * p + 1], k + 1);
    }
  }
  return under;
}

/** Draws the part of a grid that a plot shows. */
export function drawGrid(context: CanvasRenderingContext2D, plot: Plot, grid: Grid, colouring: Colouring): void {
  const { left, top, width, height } = plot.u.bbox;
  const w = Math.round(width);
  const h = Math.round(height);
  if (w < 1 || h < 1) return;
  const columns = samplesUnder(edgesOf(grid.x), (x) => pixelX(plot, x) - left, w);
  const rows = samplesUnder(edgesOf(grid.y), (y) => pixelY(plot, y) - top, h);
  const image = new ImageData(w, h);
  fill(new Uint32Array(image.data.buffer), grid, columns, rows, coloursOf(colouring.map), colouring);
  context.putImageData(image, Math.round(left), Math.round(top));
}

function fill(
  pixels: Uint32Array,
  grid: Grid,
  columns: Int32Array,
  rows: Int32Array,
  colours: Uint32Array,
  { range, log }: Colouring,
): void {
  const { values } = grid;
  const nx = grid.x.length;
  const w = columns.length / 2;
  const scale = log ? Math.log : (v: number) => v;
  const low = scale(range.min);
  const steps = kSteps / (scale(range.max) - low || 1);
  for (let q = 0, p = 0; q < rows.length; q += 2) {
    const [firstRow, lastRow] = [rows[q], rows[q + 1]];
    if (firstRow === lastRow) {
      p += w;
      continue;
    }
    for (let c = 0; c < columns.length; c += 2, ++p) {
      const lastColumn = columns[c + 1];
      let sum = 0;
      let count = 0;
      for (let row = firstRow; row < lastRow; ++row)
        for (let k = row * nx + columns[c], end = row * nx + lastColumn; k < end; ++k, ++count) sum += values[k];
      if (count === 0) continue;
      const mean = sum / count;
      const v = log ? (mean > 0 ? Math.log(mean) : low) : mean;
      if (v !== v) continue;
      const step = ((v - low) * steps) | 0;
      pixels[p] = colours[step < 0 || v < low ? 0 : step >= kSteps || v - low > kSteps / steps ? kSteps - 1 : step];
    }
  }
}

/** The place of the sample nearest to a place. */
export function sampleAt(grid: Grid, at: { x: number; y: number }): { i: number; j: number } {
  return { i: nearest(grid.x, at.x, direction(grid.x)), j: nearest(grid.y, at.y, direction(grid.y)) };
}
