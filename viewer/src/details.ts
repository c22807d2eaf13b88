// Facts, notes and parameters of an item.

import { byId, element } from "./page";
import { valueText } from "./numbers";
import { withShown, type Item } from "./items";
import type { AxisFacts, Facts } from "./kem";

const severities = { damaged: "Damaged", doubtful: "Doubtful", remark: "Remark" } as const;

export function showNotes(facts: Facts): void {
  const order = Object.keys(severities);
  const notes = [...facts.notes].sort((a, b) => order.indexOf(a.severity) - order.indexOf(b.severity));
  byId("notes").replaceChildren(
    ...notes.map((note) =>
      element("p", { class: `note ${note.severity}` }, element("strong", {}, severities[note.severity]), " ", note.text),
    ),
  );
}

function axisText(axis: AxisFacts): string {
  const unit = axis.unit ? ` ${axis.unit}` : "";
  return `${axis.start} to ${axis.end}${unit}, ${axis.count} points${axis.linear ? "" : ", stored"}`;
}

/** What the item is in the units that are shown. */
export function showFacts(item: Item): void {
  const { facts } = item;
  const rows: [string, string][] = [["Format", facts.format]];
  if (facts.title) rows.push(["Title", facts.title]);
  if (facts.companions.length > 0) rows.push(["Read with", facts.companions.join(", ")]);
  withShown(item, "both", (d) => {
    const shown = d.facts();
    const rank = shown.axes.length;
    shown.axes.forEach((axis, k) => rows.push([axis.name || "YX"[k + 2 - rank] || "Axis", axisText(axis)]));
    const { min, max } = d.range();
    const text = (v: number) => valueText(v, shown.type === "f32");
    const unit = shown.unit ? ` ${shown.unit}` : "";
    const range = min <= max ? `${text(min)} to ${text(max)}${unit}${shown.complex ? " in magnitude" : ""}` : "none";
    rows.push([shown.name || "Values", `${range}, ${shown.complex ? "complex " : ""}${shown.type}`]);
  });
  byId("facts").replaceChildren(...rows.flatMap(([key, text]) => [element("dt", {}, key), element("dd", {}, text)]));
}

/** The parameters in which the search text is found, each section behind its name. */
export function showParameters(facts: Facts, search: string): void {
  const words = search.toLowerCase().split(/\s+/).filter(Boolean);
  const found = facts.parameters.filter((p) => {
    const text = `${p.section} ${p.key} ${p.text}`.toLowerCase();
    return words.every((word) => text.includes(word));
  });
  const rows: HTMLElement[] = [];
  let section = "";
  for (const p of found) {
    if (p.section !== section)
      rows.push(element("tr", {}, element("th", { class: "section", colSpan: 2, scope: "rowgroup" }, p.section)));
    section = p.section;
    rows.push(element("tr", {}, element("th", { scope: "row" }, p.key), element("td", {}, p.text)));
  }
  byId("parameters").replaceChildren(...rows);
  const count = facts.parameters.length;
  byId("parameter-count").textContent = words.length > 0 ? `${found.length} of ${count}` : `${count}`;
}
