// Making elements.

type Child = Node | string;

export function element<K extends keyof HTMLElementTagNameMap>(
  tag: K,
  properties: Partial<Omit<HTMLElementTagNameMap[K], "style">> & Record<`data-${string}` | "class" | "role", string> | object = {},
  ...children: Child[]
): HTMLElementTagNameMap[K] {
  const made = document.createElement(tag);
  for (const [key, value] of Object.entries(properties))
    if (key === "class" || key === "role" || key.includes("-")) made.setAttribute(key, String(value));
    else Object.assign(made, { [key]: value });
  made.append(...children);
  return made;
}

export function byId<T extends HTMLElement = HTMLElement>(id: string): T {
  const found = document.getElementById(id);
  if (!found) throw new Error(`the page has no ${id}`);
  return found as T;
}

/** A choice with its label in front; it takes no part in the form around it. */
export function choice(
  label: string,
  values: string[],
  chosen: string,
  changed: (value: string) => void,
  texts: (value: string) => string = (v) => v,
): HTMLLabelElement {
  const select = element(
    "select",
    { onchange: () => changed(select.value) },
    ...values.map((value) => element("option", { value, selected: value === chosen }, texts(value))),
  );
  return element("label", { class: "choice" }, element("span", {}, label), select);
}

export function toggle(label: string, on: boolean, changed: (on: boolean) => void): HTMLLabelElement {
  const box = element("input", { type: "checkbox", checked: on, onchange: () => changed(box.checked) });
  return element("label", { class: "toggle" }, box, label);
}

export function button(label: string, pressed: () => void, title = ""): HTMLButtonElement {
  return element("button", { type: "button", onclick: pressed, title }, label);
}

/** A problem stays until it is put away. */
export function tell(sentence: string): void {
  const problems = byId("problems");
  const line = element("p", { class: "problem" }, element("span", {}, sentence));
  line.append(element("button", { type: "button", title: "Put away", "aria-label": "Put away", onclick: () => line.remove() }, "×"));
  problems.append(line);
}
