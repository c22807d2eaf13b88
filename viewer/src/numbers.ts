// Numbers as texts, and what plots need to know of many of them.

import type { Numbers } from "./kem";

/** A coordinate for the eye: digits behind the fifteenth stem from the division that made it, or from single precision. */
export function coordinateText(x: number): string {
  if (Math.fround(x) === x || !Number.isFinite(x)) return valueText(x, true);
  return String(Number(x.toPrecision(15)));
}

/** The shortest text that reads back as the same number in single or double precision. */
export function valueText(value: number, single: boolean): string {
  if (!single || !Number.isFinite(value)) return String(value);
  for (let digits = 6; digits < 9; ++digits) {
    const text = Number(value.toPrecision(digits));
    if (Math.fround(text) === value) return String(text);
  }
  return String(Number(value.toPrecision(9)));
}

/** A number for the mark of an axis or of a colour scale. */
export function shortText(value: number): string {
  const size = Math.abs(value);
  if (size !== 0 && (size >= 1e6 || size < 1e-3)) return value.toExponential(3).replace(/\.?0+e/, "e").replace("e+", "e");
  return String(Number(value.toPrecision(6)));
}

export interface Range {
  min: number;
  max: number;
}

/** Smallest and largest of the numbers that are finite, above a bound. */
export function rangeOf(numbers: ArrayLike<number>, above = -Infinity): Range {
  let min = Infinity;
  let max = -Infinity;
  for (let k = 0; k < numbers.length; ++k) {
    const v = numbers[k];
    if (v < min && v > above && v !== -Infinity) min = v;
    if (v > max && v !== Infinity) max = v;
  }
  return { min, max };
}

export function united(ranges: Range[]): Range {
  return { min: Math.min(...ranges.map((r) => r.min)), max: Math.max(...ranges.map((r) => r.max)) };
}

/** A range that a plot can show: with a width, and some room. */
export function shown(range: Range, room = 0, log = false): Range {
  let { min, max } = range;
  if (!(min <= max)) [min, max] = log ? [1, 10] : [0, 1];
  if (log) return { min: min / 1.2, max: max * 1.2 };
  if (min === max) {
    const half = Math.abs(min) / 2 || 0.5;
    [min, max] = [min - half, max + half];
  }
  return { min: min - room * (max - min), max: max + room * (max - min) };
}

/** 1 where numbers rise, -1 where they fall, 0 where they do neither all the way. */
export function direction(numbers: ArrayLike<number>): number {
  const sign = Math.sign(numbers[numbers.length - 1] - numbers[0]) || 1;
  for (let k = 1; k < numbers.length; ++k) if (!((numbers[k] - numbers[k - 1]) * sign >= 0)) return 0;
  return sign;
}

/** The first place in monotone numbers whose number is not in front of another one. */
export function lowerBound(numbers: ArrayLike<number>, x: number, sign: number): number {
  let low = 0;
  let high = numbers.length;
  while (low < high) {
    const middle = (low + high) >> 1;
    if ((numbers[middle] - x) * sign < 0) low = middle + 1;
    else high = middle;
  }
  return low;
}

/** The place of the number nearest to another one. */
export function nearest(numbers: ArrayLike<number>, x: number, sign: number): number {
  if (sign !== 0) {
    const k = lowerBound(numbers, x, sign);
    if (k === 0) return 0;
    if (k === numbers.length) return k - 1;
    return Math.abs(numbers[k] - x) < Math.abs(numbers[k - 1] - x) ? k : k - 1;
  }
  let best = 0;
  for (let k = 1; k < numbers.length; ++k) if (Math.abs(numbers[k] - x) < Math.abs(numbers[best] - x)) best = k;
  return best;
}

/** Every so many-th of numbers: a part of complex ones, a column of a grid. */
export function every<T extends Numbers>(numbers: T, from: number, step: number, count: number): T {
  const taken = new (numbers.constructor as new (count: number) => T)(count);
  for (let k = 0; k < count; ++k) taken[k] = numbers[from + k * step];
  return taken;
}
