// Calculating: a table of operations, each with its fields, on what is shown.

import type { Dataset } from "./kem";
import { byId, button, choice, element } from "./page";
import { coordinateText } from "./numbers";
import { isCurve, withShown, type Item } from "./items";
import type { Box } from "./plot";

export interface Calculation {
  item: Item;
  others: Item[];
  /** What the plot shows: where ranges begin. */
  box: Box;
  done(result: Dataset, label: string): void;
  failed(problem: unknown): void;
}

interface Field {
  label: string;
  values?: string[];
  text?: (value: string) => string;
  initial: string;
  gridsOnly?: boolean;
}

interface Operation {
  name: string;
  gridsOnly?: boolean;
  fields(c: Calculation): Field[];
  run(d: Dataset, texts: string[], c: Calculation): Dataset;
  label(texts: string[], c: Calculation): string;
}

const along: Field = { label: "along", values: ["X", "Y"], initial: "X", gridsOnly: true };
const isY = (text: string) => text === "Y";

function bounds({ box }: Calculation, axis: "x" | "y"): Field[] {
  const letter = axis.toUpperCase();
  const gridsOnly = axis === "y";
  const { min, max } = box[axis];
  const rounded = (x: number) => coordinateText(Number(x.toPrecision(7)));
  return [
    { label: `${letter} from`, initial: rounded(min), gridsOnly },
    { label: "to", initial: rounded(max), gridsOnly },
  ];
}

function step(c: Calculation, axis: "x" | "y"): Field {
  const axes = c.item.facts.axes;
  const { count } = axes[axis === "x" ? axes.length - 1 : axes.length - 2] ?? { count: 2 };
  const { min, max } = c.box[axis];
  return {
    label: `${axis.toUpperCase()} step`,
    initial: String(Number(((max - min) / Math.max(count - 1, 1)).toPrecision(3))),
    gridsOnly: axis === "y",
  };
}

const operations: Operation[] = [
  {
    name: "Smooth",
    fields: () => [{ label: "width", values: ["5", "7", "9", "13", "17", "21"], initial: "9" }, along],
    run: (d, [width, axis]) => d.smooth(Number(width), isY(axis)),
    label: ([width]) => `smooth ${width}`,
  },
  {
    name: "Median",
    fields: () => [{ label: "width", initial: "5" }],
    run: (d, [width]) => d.median(Math.round(numberIn(width))),
    label: ([width]) => `median ${width}`,
  },
  ...(["X", "Y"] as const).map((axis) => ({
    name: isY(axis) ? "Baseline along Y" : "Baseline",
    gridsOnly: isY(axis),
    fields: (c: Calculation) => bounds(c, isY(axis) ? "y" : "x"),
    run: (d: Dataset, [from, to]: string[]) => d.baseline(numberIn(from), numberIn(to), isY(axis)),
    label: ([from, to]: string[]) => `baseline ${from} to ${to}`,
  })),
  {
    name: "Cut",
    fields: (c) => [...bounds(c, "x"), ...bounds(c, "y")],
    run: (d, [x1, x2, y1, y2]) => d.cut(numberIn(x1), numberIn(x2), numberIn(y1), numberIn(y2)),
    label: ([x1, x2]) => `cut ${x1} to ${x2}`,
  },
  {
    name: "Resample",
    fields: (c) => [...bounds(c, "x"), step(c, "x"), ...bounds(c, "y"), step(c, "y")],
    run: (d, texts) => {
      const [x1, x2, dx, y1, y2, dy] = texts.map(numberIn);
      return d.resample(x1, x2, dx, y1, y2, dy);
    },
    label: ([x1, x2, dx]) => `resample ${x1} to ${x2} by ${dx}`,
  },
  ...(["X", "Y"] as const).map((axis) => ({
    name: `Section along ${axis}`,
    gridsOnly: true,
    fields: (c: Calculation) => bounds(c, isY(axis) ? "x" : "y"),
    run: (d: Dataset, [from, to]: string[]) => d.section(isY(axis), numberIn(from), numberIn(to)),
    label: ([from, to]: string[]) => `along ${axis}, mean of ${from} to ${to}`,
  })),
  {
    name: "Arithmetic",
    fields: ({ others }) => [
      { label: "operator", values: ["+", "-", "*", "/"], initial: "-", text: (s) => ({ "-": "−", "*": "×", "/": "÷" })[s] ?? s },
      {
        label: "with",
        values: ["number", ...others.map((o) => String(o.id))],
        initial: others.length > 0 ? String(others[0].id) : "number",
        text: (id) => others.find((o) => String(o.id) === id)?.label ?? "the number",
      },
      { label: "number", initial: "1" },
    ],
    run: (d, [sign, id, number], { others, item }) => {
      const other = others.find((o) => String(o.id) === id);
      if (!other) return d.withNumber(sign, numberIn(number));
      const units = isCurve(item) === isCurve(other) ? item.units : other.units;
      return withShown({ ...other, units: unitsFor(other, units) }, "real", (b) => d.with(sign, b));
    },
    label: ([sign, id, number], { others }) => `${sign} ${others.find((o) => String(o.id) === id)?.label ?? number}`,
  },
];

// A second file is taken in the units of the first.
function unitsFor(other: Item, units: string[]): string[] {
  return other.facts.axes.map((_, k) => units[k] ?? "");
}

function numberIn(text: string): number {
  const number = Number(text.trim().replace(",", "."));
  if (text.trim() === "" || !Number.isFinite(number)) throw new Error(`'${text}' is no number`);
  return number;
}

const isGrid = (c: Calculation) => c.item.facts.axes.length > 1;

function input(field: Field): HTMLElement {
  if (field.values) return choice(field.label, field.values, field.initial, () => undefined, field.text);
  const box = element("input", { type: "text", defaultValue: field.initial, size: 9, inputMode: "decimal" });
  return element("label", { class: "choice" }, element("span", {}, field.label), box);
}

let chosen = operations[0].name;

/** Bounds that nobody changed become those of what the plot shows. */
export let followView = (): void => undefined;

/** The form of the operation that is chosen. */
export function showOperations(current: () => Calculation | null): void {
  const form = byId<HTMLFormElement>("calculate");
  const now = current();
  if (!now) return form.replaceChildren();
  const offered = operations.filter((o) => isGrid(now) || !o.gridsOnly);
  const operation = offered.find((o) => o.name === chosen) ?? offered[0];
  const pick = choice("", offered.map((o) => o.name), operation.name, (name) => {
    chosen = name;
    showOperations(current);
  });
  pick.querySelector("select")?.setAttribute("aria-label", "Operation");
  const inputs = operation.fields(now).map((field) => {
    const made = input(field);
    made.hidden = field.gridsOnly === true && !isGrid(now);
    return made;
  });
  followView = () => {
    const boxes = inputs.map((made) => made.querySelector("input"));
    const c = current();
    if (c) operation.fields(c).forEach(({ initial }, k) => boxes[k] && (boxes[k].defaultValue = initial));
  };
  form.onsubmit = (event) => {
    event.preventDefault();
    const c = current();
    if (c) run(operation, inputs.map(valueOf), c);
  };
  const go = button("Calculate", () => undefined);
  go.type = "submit";
  form.replaceChildren(pick, ...inputs, go);
}

const valueOf = (label: HTMLElement) => label.querySelector<HTMLInputElement | HTMLSelectElement>("input, select")!.value;

function run(operation: Operation, texts: string[], c: Calculation): void {
  try {
    const started = performance.now();
    const result = withShown(c.item, realPart(c.item), (d) => operation.run(d, texts, c));
    byId("calculated").textContent = `${operation.name} took ${(performance.now() - started).toFixed(0)} ms`;
    c.done(result, operation.label(texts, c));
  } catch (problem) {
    c.failed(problem);
  }
}

// Records are real.
const realPart = ({ part }: Item) => (part === "both" ? "real" : part);
