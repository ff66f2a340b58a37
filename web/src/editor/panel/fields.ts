// Fields of the panel.

let count = 0;

export interface NumberField {
  readonly element: HTMLElement;
  readonly input: HTMLInputElement;
  show(value: number | null): void;
}

const shownDigits = 2;

export interface NumberRange { readonly min?: number; readonly max?: number; readonly step?: number }

// Tells of a number when it is done: by Enter, by leaving the field, by its arrows.
export function numberField(label: string, unit: string, done: (value: number) => void, range: NumberRange = {}): NumberField {
  const input = document.createElement("input");
  input.type = "number";
  input.step = String(range.step ?? "any");
  if (range.min !== undefined) input.min = String(range.min);
  if (range.max !== undefined) input.max = String(range.max);
  let shown = "";
  input.addEventListener("change", () => {
    const value = Number(input.value);
    if (input.value === "" || !Number.isFinite(value)) input.value = shown;
    else if (input.value !== shown) done(Math.min(range.max ?? Infinity, Math.max(range.min ?? -Infinity, value)));
  });
  return {
    element: labelled(label, input, unit), input,
    show(value) {
      shown = value === null ? "" : String(Number(value.toFixed(shownDigits)));
      input.value = shown;
    },
  };
}

export function textField(label: string, done: (value: string) => void): { element: HTMLElement; input: HTMLInputElement } {
  const input = document.createElement("input");
  input.type = "text";
  input.spellcheck = false;
  input.autocomplete = "off";
  input.addEventListener("change", () => done(input.value));
  return { element: labelled(label, input, ""), input };
}

export function labelled(label: string, field: HTMLElement, unit: string): HTMLElement {
  const element = document.createElement("div");
  element.className = "editor-field";
  const name = document.createElement("label");
  field.id = `editor-field-${++count}`;
  name.htmlFor = field.id;
  name.textContent = label;
  element.append(name, field);
  if (unit !== "") {
    const after = document.createElement("span");
    after.className = "editor-unit";
    after.textContent = unit;
    element.append(after);
  }
  return element;
}

export function choice(label: string, options: readonly (readonly [string, string])[], done: (value: string) => void): { element: HTMLElement; select: HTMLSelectElement } {
  const select = document.createElement("select");
  for (const [value, text] of options) select.append(new Option(text, value));
  select.addEventListener("change", () => done(select.value));
  return { element: labelled(label, select, ""), select };
}

export function button(label: string, done: () => void): HTMLButtonElement {
  const element = document.createElement("button");
  element.type = "button";
  element.className = "button";
  element.textContent = label;
  element.addEventListener("click", done);
  return element;
}

export function fieldset(title: string, ...content: readonly HTMLElement[]): HTMLFieldSetElement {
  const set = document.createElement("fieldset");
  set.className = "editor-fields";
  const legend = document.createElement("legend");
  legend.textContent = title;
  set.append(legend, ...content);
  return set;
}

export function group(name: string, ...content: readonly HTMLElement[]): HTMLElement {
  const element = document.createElement("div");
  element.className = "editor-group";
  element.setAttribute("role", "group");
  element.setAttribute("aria-label", name);
  element.append(...content);
  return element;
}

export function row(...content: readonly HTMLElement[]): HTMLElement {
  const element = document.createElement("div");
  element.className = "editor-row";
  element.append(...content);
  return element;
}
