// Elements in one expression.

type Attributes = Readonly<Record<string, string | number | boolean | EventListener | undefined>>;
type Child = Node | string | null;

// An element with attributes and children. `text` is its text; names that begin with "on" are
// listeners; true is an attribute without a value; false and undefined leave it out.
export function make<Name extends keyof HTMLElementTagNameMap>(
  name: Name, attributes: Attributes = {}, ...children: Child[]): HTMLElementTagNameMap[Name] {
  const element = document.createElement(name);
  for (const [key, value] of Object.entries(attributes)) {
    if (typeof value === "function") {
      element.addEventListener(key.slice(2), value);
    } else if (key === "text") {
      element.textContent = String(value);
    } else if (value === true) {
      element.setAttribute(key, "");
    } else if (value !== false && value !== undefined) {
      element.setAttribute(key, String(value));
    }
  }
  element.append(...children.filter((child) => child !== null));
  return element;
}

// Sets `text` only where it is another, so that a screen reader says no sentence twice.
export function setText(element: Element, text: string): void {
  if (element.textContent !== text) {
    element.textContent = text;
  }
}

export function setPressed(button: Element, isPressed: boolean): void {
  button.setAttribute("aria-pressed", String(isPressed));
}

// Whether keys that are typed at `target` belong to what stands there.
export function takesText(target: EventTarget | null): boolean {
  return target instanceof HTMLElement &&
    (target.isContentEditable || target.matches("input:not([type=range], [type=checkbox], [type=radio]), textarea, select"));
}
