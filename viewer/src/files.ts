// From files that were dropped to datasets: the library sees a folder in memory that holds them together.

import { kem, type Dataset } from "./kem";

export interface Opened {
  datasets: Dataset[];
  problems: string[];
}

// Files that could not be opened wait for a drop with what they miss.
const waiting = new Map<string, File>();

const stemOf = (name: string) => name.replace(/\.[^.]*$/, "").toLowerCase();

// Descriptors come before values, and both before files that only belong to others.
function rankOf(name: string): number {
  const has = (extension: string) => name.toLowerCase().endsWith(extension.toLowerCase());
  for (const format of kem.formats()) {
    if (format.companions.some(has)) return 2;
    if (format.pair && has(format.extensions[1])) return 1;
  }
  return 0;
}

// What was dropped now, and waiting files that go with it.
function together(files: File[]): Map<string, File> {
  const dropped = new Map(files.map((file) => [file.name, file]));
  const stems = new Set([...dropped.keys()].map(stemOf));
  for (const [name, file] of waiting) if (stems.has(stemOf(name)) && !dropped.has(name)) dropped.set(name, file);
  return dropped;
}

function openNamed(files: Map<string, File>): Opened {
  const opened: Opened = { datasets: [], problems: [] };
  const taken = new Set<string>();
  const failed = new Set<string>();
  for (const name of [...files.keys()].sort((a, b) => rankOf(a) - rankOf(b))) {
    if (taken.has(name) || (rankOf(name) > 0 && failed.has(stemOf(name)))) continue;
    const { items, problem } = kem.open(name);
    opened.datasets.push(...items);
    if (items.length > 0) for (const companion of items[0].facts().companions) taken.add(companion);
    if (problem === "") continue;
    opened.problems.push(problem);
    failed.add(stemOf(name));
  }
  for (const [name, file] of files)
    if (failed.has(stemOf(name))) waiting.set(name, file);
    else waiting.delete(name);
  return opened;
}

/** Opens files that were dropped or chosen at once, each pair as one. */
export async function openFiles(chosen: File[]): Promise<Opened> {
  const files = together(chosen);
  const read: [string, Uint8Array][] = [];
  const problems: string[] = [];
  for (const [name, file] of files)
    try {
      read.push([name, new Uint8Array(await file.arrayBuffer())]);
    } catch {
      problems.push(`${name}: the browser cannot read it`);
      files.delete(name);
    }
  kem.FS.mkdir("/dropped");
  kem.FS.chdir("/dropped");
  try {
    for (const [name, bytes] of read) kem.FS.writeFile(name, bytes);
    const opened = openNamed(files);
    return { datasets: opened.datasets, problems: [...problems, ...opened.problems] };
  } finally {
    for (const [name] of read) kem.FS.unlink(name);
    kem.FS.chdir("/");
    kem.FS.rmdir("/dropped");
  }
}

/** A dataset as a file of a format. */
export function fileOf(dataset: Dataset, format: string): Blob {
  const name = `/saved.${format}`;
  kem.FS.writeFile(name, new Uint8Array());
  try {
    dataset.save(name, format);
    return new Blob([kem.FS.readFile(name) as BlobPart]);
  } finally {
    kem.FS.unlink(name);
  }
}
