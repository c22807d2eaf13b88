// The library: what binding.cpp offers, in types, and its sentences as errors.

export interface AxisFacts {
  name: string;
  unit: string;
  count: number;
  linear: boolean;
  start: number;
  end: number;
}

export interface Parameter {
  section: string;
  key: string;
  text: string;
}

export interface Note {
  severity: "remark" | "doubtful" | "damaged";
  text: string;
}

export interface Facts {
  title: string;
  name: string;
  unit: string;
  format: string;
  itemName: string;
  file: string;
  companions: string[];
  item: number;
  items: number;
  type: string;
  complex: boolean;
  axes: AxisFacts[];
  parameters: Parameter[];
  notes: Note[];
}

export type Numbers =
  | Uint8Array
  | Uint16Array
  | Uint32Array
  | Int8Array
  | Int16Array
  | Int32Array
  | Float32Array
  | Float64Array;

/** One of the parts of complex values. */
export type Part = object;

export interface Dataset {
  facts(): Facts;
  /** The numbers in the memory of the library; they move when it grows, so they are used or copied at once. */
  values(): Numbers;
  /** Smallest and largest of the values, of complex ones of their magnitudes. */
  range(): { min: number; max: number };
  coordinates(axis: number): Float64Array;
  units(axis: number): string[];
  unit(axis: number): string;
  inUnit(axis: number, unit: string): Dataset;
  only(part: Part): Dataset;
  plane(k: number): Dataset;
  smooth(width: number, alongY: boolean): Dataset;
  median(width: number): Dataset;
  baseline(at1: number, at2: number, alongY: boolean): Dataset;
  cut(x1: number, x2: number, y1: number, y2: number): Dataset;
  resample(x1: number, x2: number, xStep: number, y1: number, y2: number, yStep: number): Dataset;
  section(alongY: boolean, from: number, to: number): Dataset;
  with(sign: string, other: Dataset): Dataset;
  withNumber(sign: string, other: number): Dataset;
  formats(): string[];
  save(name: string, format: string): void;
  delete(): void;
}

export interface Format {
  name: string;
  extensions: string[];
  pair: boolean;
  companions: string[];
}

interface FileSystem {
  mkdir(path: string): void;
  rmdir(path: string): void;
  chdir(path: string): void;
  unlink(path: string): void;
  writeFile(path: string, bytes: Uint8Array): void;
  readFile(path: string): Uint8Array;
}

export interface Kem {
  FS: FileSystem;
  Part: Record<"Real" | "Imaginary" | "Magnitude" | "Phase", Part>;
  open(file: string): { items: Dataset[]; problem: string };
  formats(): Format[];
  version(): string;
}

declare global {
  const kemModule: (options: { wasmBinary: Uint8Array }) => Promise<Kem>;
  /** The module in base64. */
  const kemBinary: string;
}

/** The library, once it is loaded. */
export let kem: Kem;

export async function load(): Promise<void> {
  kem = await kemModule({ wasmBinary: Uint8Array.from(atob(kemBinary), (c) => c.charCodeAt(0)) });
}

/** The sentence of whatever was thrown. */
export function sentenceOf(thrown: unknown): string {
  return thrown instanceof Error ? thrown.message : String(thrown);
}
