// The panel of what is selected.
import type { Context } from "../context";
import type { Pictures } from "../pictures";
import { pictureSection, textSection } from "./content";
import { lineSection, opacitySection } from "./line";
import { paintSection } from "./paint";
import { placeSection, type Section } from "./place";

export class Panel {
  readonly #context: Context;
  readonly #element: HTMLElement;
  readonly #sections: readonly Section[];
  readonly #nothing = document.createElement("p");
  #waits = false;

  constructor(element: HTMLElement, context: Context, pictures: Pictures, edit: (element: SVGElement) => void) {
    this.#context = context;
    this.#element = element;
    element.classList.add("editor-panel");
    this.#nothing.className = "editor-note";
    this.#nothing.textContent = "Select something on the page to change it.";
    const stroke = paintSection(context, "stroke", "Line");
    const line = lineSection(context);
    const shown = [textSection(context, edit), pictureSection(context, pictures), placeSection(context),
      paintSection(context, "fill", "Fill"), stroke, opacitySection(context)];
    this.#sections = [...shown, line];
    element.append(this.#nothing, ...shown.map(section => section.element));
    stroke.element.append(line.element);
    this.refresh();
  }

  // A number that is typed but not finished counts.
  settle(): void {
    const field = document.activeElement;
    if (!(field instanceof HTMLInputElement) || field.type === "color" || !this.#element.contains(field)) return;
    field.blur();
    field.focus({ preventScroll: true });
  }

  refresh(): void {
    if (this.#waits) return;
    this.#waits = true;
    requestAnimationFrame(() => {
      this.#waits = false;
      const isEmpty = this.#context.selection.elements.length === 0;
      this.#nothing.hidden = !isEmpty || this.#context.artwork === null;
      for (const section of this.#sections) {
        if (isEmpty) section.element.hidden = true;
        else section.show(this.#context);
      }
    });
  }
}
