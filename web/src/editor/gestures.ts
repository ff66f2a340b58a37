// What a pointer does from the moment that it goes down until it comes up: here it pans, or selects by a rectangle.
import { boundsOf, contains, type Box, type Point } from "../artwork/geometry";
import type { Context } from "./context";
import type { OverlayLayer } from "./overlay";

// Points are pixels of the stage.
export interface Gesture {
  move(at: Point, event: PointerEvent): void;
  end(): void;
  cancel(): void;
}

export class Pan implements Gesture {
  readonly #context: Context;
  #last: Point;

  constructor(context: Context, at: Point) {
    this.#context = context;
    this.#last = at;
  }

  move(at: Point): void {
    this.#context.view.panBy(at.x - this.#last.x, at.y - this.#last.y);
    this.#last = at;
  }

  end(): void { /* The page is where the hand left it. */ }
  cancel(): void { /* The same. */ }
}

export class Marquee implements Gesture {
  readonly #context: Context;
  readonly #layer: OverlayLayer;
  readonly #from: Point;
  readonly #kept: readonly SVGElement[];
  #box: Box | null = null;

  constructor(context: Context, layer: OverlayLayer, at: Point, kept: readonly SVGElement[]) {
    this.#context = context;
    this.#layer = layer;
    this.#from = at;
    this.#kept = kept;
  }

  move(at: Point): void {
    const from = this.#from;
    this.#layer.clear();
    this.#layer.polygon([from, { x: at.x, y: from.y }, at, { x: from.x, y: at.y }], "marquee");
    const { view } = this.#context;
    this.#box = boundsOf([view.toPage(from), view.toPage(at)]);
  }

  end(): void {
    this.#layer.clear();
    const { boxes, selection } = this.#context;
    const box = this.#box;
    if (box === null) return;
    const inside = boxes.objects(selection.scope).filter(object => contains(box, boxes.of(object)));
    selection.set([...this.#kept, ...inside]);
  }

  cancel(): void { this.#layer.clear(); }
}
