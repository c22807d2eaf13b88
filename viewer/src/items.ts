// What was opened or made: datasets, and how each is to be shown.

import { kem, type Dataset, type Facts } from "./kem";

export type PartName = "both" | "real" | "imaginary" | "magnitude" | "phase";

export interface Item {
  id: number;
  label: string;
  /** Of those that a file holds beside others, the file; their lines in the list are shorter. */
  within: string;
  facts: Facts;
  /** As it was read; what is shown is made of it. */
  source: Dataset;
  colour: number;
  overlaid: boolean;
  part: PartName;
  /** The unit of each axis, slowest first; empty for that of the file. */
  units: string[];
  plane: number;
  flipped: boolean;
}

const parts = { real: "Real", imaginary: "Imaginary", magnitude: "Magnitude", phase: "Phase" } as const;

let made = 0;

/** Which item of its file it is. */
export const numbered = (facts: Facts) => `#${facts.item} ${facts.itemName}`.trimEnd();

export function itemOf(source: Dataset, label?: string): Item {
  const facts = source.facts();
  const flat = facts.axes.length === 1;
  return {
    id: ++made,
    label: label ?? (facts.items > 1 ? `${facts.file} ${numbered(facts)}` : facts.file),
    within: label === undefined && facts.items > 1 ? facts.file : "",
    facts,
    source,
    colour: made - 1,
    overlaid: flat,
    part: flat ? "both" : "real",
    units: facts.axes.map(() => ""),
    plane: 0,
    flipped: false,
  };
}

/** Datasets on the way to a result; those that are not the result are given back. */
function chain(source: Dataset, steps: ((d: Dataset) => Dataset)[]): Dataset {
  let current = source;
  for (const step of steps) {
    try {
      const next = step(current);
      if (current !== source) current.delete();
      current = next;
    } catch (problem) {
      if (current !== source) current.delete();
      throw problem;
    }
  }
  return current;
}

/** Runs a function on the dataset of an item in the units that are shown, of volumes one plane. */
export function withShown<T>(item: Item, part: PartName, use: (d: Dataset) => T): T {
  const steps: ((d: Dataset) => Dataset)[] = [];
  item.units.forEach((unit, axis) => {
    if (unit !== "") steps.push((d) => d.inUnit(axis, unit));
  });
  for (let rank = item.facts.axes.length; rank > 2; --rank) {
    const k = rank === item.facts.axes.length ? item.plane : 0;
    steps.push((d) => d.plane(k));
  }
  if (item.facts.complex && part !== "both") steps.push((d) => d.only(kem.Part[parts[part]]));
  const shown = chain(item.source, steps);
  try {
    return use(shown);
  } finally {
    if (shown !== item.source) shown.delete();
  }
}

export const isCurve = (item: Item) => item.facts.axes.length === 1;

/** "Field (G)". */
export function titled(name: string, unit: string, untitled = ""): string {
  if (name && unit) return `${name} (${unit})`;
  return name || unit || untitled;
}
