// The layers of the page, the front one first: shown or hidden, locked or not.

import type { Editor, Layer } from "../editor/editor";
import { make, setPressed } from "./dom";
import { icon } from "./icons";
import { showable } from "../server/showable";

export class LayerList {
  readonly #list = make("ul", { class: "layer-list", "aria-label": "Layers" });
  #drawn = "";
  #isWaiting = false;

  constructor(readonly editor: Editor, place: HTMLElement, readonly badge: HTMLElement) {
    place.append(this.#list);
    editor.addEventListener("change", () => this.#soon());
  }

  // Once for all changes of a moment: looking for layers goes through the whole page.
  #soon(): void {
    if (!this.#isWaiting) {
      this.#isWaiting = true;
      requestAnimationFrame(() => {
        this.#isWaiting = false;
        this.draw();
      });
    }
  }

  draw(): void {
    const layers = this.editor.root === null ? [] : [...this.editor.layers].reverse();
    const state = JSON.stringify(layers.map((layer) => [layer.name, layer.isHidden, layer.isLocked, layer.depth]));
    if (state === this.#drawn) {
      return;
    }
    this.#drawn = state;
    const focused = this.#focus();
    this.badge.textContent = String(layers.length);
    this.badge.hidden = layers.length < 2;
    this.#list.replaceChildren(...layers.map((layer, index) => this.#row(layer, index)));
    this.#list.querySelector<HTMLElement>(focused)?.focus();
  }

  // The button that has the focus, as a selector: rows are made anew.
  #focus(): string {
    const button = document.activeElement;
    const name = button instanceof HTMLElement && this.#list.contains(button) ? button.dataset["button"] : undefined;
    return name === undefined ? "[data-none]" : `[data-button="${name}"]`;
  }

  #row(layer: Layer, index: number): HTMLElement {
    const name = showable(layer.name);
    const hide = this.#button(`hide-${index}`, layer.isHidden ? "eyeOff" : "eye", `Show layer ${name}`, !layer.isHidden,
      () => this.editor.setLayerHidden(this.#current(index), !layer.isHidden));
    const lock = this.#button(`lock-${index}`, layer.isLocked ? "lock" : "unlock", `Lock layer ${name}`, layer.isLocked,
      () => this.editor.setLayerLocked(this.#current(index), !layer.isLocked));
    if (layer.isAnnotations) {
      lock.disabled = true;
      lock.title = "Annotations are shown for orientation; a save leaves them in the file as they are";
    }
    return make("li", { class: `layer${layer.isHidden ? " hidden-layer" : ""}`, style: `--depth:${layer.depth}` },
      make("span", { class: "layer-name", text: name, title: name }), hide, lock);
  }

  // The editor may have made its list anew since the row was drawn.
  #current(index: number): Layer {
    const layers = [...this.editor.layers].reverse();
    return layers[index] as Layer;
  }

  #button(name: string, picture: "eye" | "eyeOff" | "lock" | "unlock", label: string, isPressed: boolean,
    run: () => void): HTMLButtonElement {
    const button = make("button", {
      type: "button", class: "icon-button", "aria-label": label, title: label, "data-button": name,
      onclick: () => {
        run();
        this.draw();
      },
    }, icon(picture));
    setPressed(button, isPressed);
    return button;
  }
}
