// The outline of what a click would take, once the pointer rests on it.
import { boxOf, cornersOf, pageMatrix } from "../artwork/geometry";
import type { Context } from "./context";
import type { OverlayLayer } from "./overlay";
import { leafAt } from "./pick";
import { objectAt } from "./scope";

const restsAfter = 40; // milliseconds

export class Hover {
  readonly #context: Context;
  readonly #layer: OverlayLayer;
  #waiting: ReturnType<typeof setTimeout> | undefined;
  #shown: SVGElement | null = null;

  constructor(context: Context) {
    this.#context = context;
    this.#layer = context.overlay.layer("editor-hover");
    const { stage } = context.view;
    stage.addEventListener("pointermove", event => this.#moved(event));
    for (const name of ["pointerdown", "pointerleave", "wheel"]) stage.addEventListener(name, () => this.#show(null));
    context.view.addEventListener("view", () => this.#show(null));
    context.selection.addEventListener("selection", () => this.#show(null));
  }

  #moved(event: PointerEvent): void {
    clearTimeout(this.#waiting);
    if (event.buttons !== 0 || event.pointerType === "touch" || this.#context.tool !== "select") return;
    this.#waiting = setTimeout(() => this.#show(this.#objectAt(event)), restsAfter);
  }

  #objectAt(event: PointerEvent): SVGElement | null {
    const { artwork, selection } = this.#context;
    const leaf = leafAt(this.#context, event);
    const object = leaf === null || artwork === null ? null : objectAt(leaf, artwork.root, selection.scope);
    return object === null || selection.has(object) ? null : object;
  }

  #show(object: SVGElement | null): void {
    clearTimeout(this.#waiting);
    if (object === this.#shown) return;
    this.#shown = object;
    this.#layer.clear();
    const { artwork, view } = this.#context;
    if (object === null || artwork === null) return;
    this.#layer.polygon(cornersOf(boxOf(object), view.matrix.multiply(pageMatrix(artwork.root, object))), "hover");
  }
}
