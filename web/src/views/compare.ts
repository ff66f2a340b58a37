// Two pictures of a page over each other or side by side.

import { make, setPressed } from "./dom";
import { viewBox } from "./drawing";

export type Mode = "slider" | "sides" | "switch";

const modes: readonly (readonly [Mode, string])[] = [
  ["slider", "Slider"], ["sides", "Side by side"], ["switch", "One at a time"],
];

export class Comparison {
  readonly element: HTMLElement;
  readonly #before = make("img", { alt: "The page before", draggable: "false" });
  readonly #after = make("img", { alt: "The page after", draggable: "false" });
  readonly #stage: HTMLElement;
  readonly #slider = make("input", {
    type: "range", min: 0, max: 100, step: 0.5, value: 50, "aria-label": "How much of the page before is shown",
  });
  readonly #swap = make("button", { type: "button", class: "button" });
  readonly #note = make("p", { class: "muted compare-note", role: "status" });
  readonly #buttons: ReadonlyMap<Mode, HTMLButtonElement>;
  #addresses: string[] = [];
  #showsAfter = true;

  constructor() {
    this.#buttons = new Map(modes.map(([mode, label]) => [mode, make("button", {
      type: "button", class: "button", text: label, onclick: () => this.setMode(mode),
    })]));
    this.#stage = make("div", { class: "stage" },
      make("figure", { class: "before" }, this.#before, make("figcaption", { text: "Before" })),
      make("figure", { class: "after" }, this.#after, make("figcaption", { text: "After" })),
      make("div", { class: "divider" }));
    this.element = make("div", { class: "comparison" },
      make("div", { class: "compare-tools" },
        make("div", { class: "segmented", role: "group", "aria-label": "How to compare" }, ...this.#buttons.values()),
        this.#slider, this.#swap),
      this.#note, this.#stage);
    this.#slider.addEventListener("input", () => this.#place());
    this.#swap.addEventListener("click", () => {
      this.#showsAfter = !this.#showsAfter;
      this.#place();
    });
    this.#stage.addEventListener("pointerdown", (event) => {
      this.#stage.setPointerCapture(event.pointerId);
      this.#drag(event);
    });
    this.#stage.addEventListener("pointermove", (event) => this.#drag(event));
    this.setMode("slider");
  }

  setMode(mode: Mode): void {
    this.element.dataset["mode"] = mode;
    for (const [other, button] of this.#buttons) {
      setPressed(button, other === mode);
    }
    this.#slider.hidden = mode !== "slider";
    this.#swap.hidden = mode !== "switch";
    this.#place();
  }

  // Without a picture before, the other is shown alone.
  show(before: string | null, after: string): void {
    this.clear();
    this.element.classList.toggle("single", before === null);
    this.#before.hidden = before === null;
    if (before !== null) {
      this.#load(this.#before, before);
    }
    this.#load(this.#after, after);
    this.#note.textContent = "";
    this.#stage.hidden = false;
  }

  say(text: string): void {
    this.clear();
    this.#note.textContent = text;
    this.#stage.hidden = true;
  }

  // Lets go of the pictures.
  clear(): void {
    this.#addresses.forEach((address) => URL.revokeObjectURL(address));
    this.#addresses = [];
  }

  #load(image: HTMLImageElement, svg: string): void {
    const address = URL.createObjectURL(new Blob([svg], { type: "image/svg+xml" }));
    this.#addresses.push(address);
    const { width, height } = viewBox(svg);
    image.style.setProperty("--ratio", String(width / height));
    image.src = address;
  }

  // The pointer takes the divider along.
  #drag(event: PointerEvent): void {
    if (this.element.dataset["mode"] !== "slider" || event.buttons !== 1) {
      return;
    }
    const { left, width } = this.#before.parentElement?.getBoundingClientRect() ?? new DOMRect();
    this.#slider.value = String((event.clientX - left) / Math.max(width, 1) * 100);
    this.#place();
  }

  #place(): void {
    this.#stage.style.setProperty("--split", `${this.#slider.value}%`);
    this.#stage.classList.toggle("shows-before", !this.#showsAfter);
    this.#swap.textContent = this.#showsAfter ? "Show the page before" : "Show the page after";
  }
}
