// Edges and centres of other objects, and of the page, which what is moved snaps to.
import { overlaps, type Box } from "../artwork/geometry";
import type { Context } from "./context";
import type { OverlayLayer } from "./overlay";

const near = 5; // pixels
const objectsLooked = 3000;

export class Guides {
  readonly #context: Context;
  readonly #layer: OverlayLayer;
  #xs: Float64Array = new Float64Array();
  #ys: Float64Array = new Float64Array();

  constructor(context: Context) {
    this.#context = context;
    this.#layer = context.overlay.layer("editor-guides");
  }

  // Collects the edges of what is in view and is not moved itself.
  start(moved: readonly SVGElement[]): void {
    const { boxes, view, selection } = this.#context;
    const own = new Set<Box>(moved.map(element => boxes.of(element)));
    const xs: number[] = [];
    const ys: number[] = [];
    const add = (box: Box): void => {
      xs.push(box.x, box.x + box.width / 2, box.x + box.width);
      ys.push(box.y, box.y + box.height / 2, box.y + box.height);
    };
    add(view.page);
    const seen = view.seen;
    let looked = 0;
    for (const box of boxes.soon(selection.scope)) {
      if (own.has(box) || !overlaps(box, seen)) continue;
      add(box);
      if (++looked > objectsLooked) break;
    }
    this.#xs = Float64Array.from(xs).sort();
    this.#ys = Float64Array.from(ys).sort();
  }

  // How far the box is to go further so that it lies on a guide; draws the guides.
  snap(box: Box): { dx: number; dy: number } {
    const reach = near / this.#context.view.zoom;
    const x = nearest(this.#xs, [box.x, box.x + box.width / 2, box.x + box.width], reach);
    const y = nearest(this.#ys, [box.y, box.y + box.height / 2, box.y + box.height], reach);
    this.#draw(x?.to, y?.to);
    return { dx: x?.by ?? 0, dy: y?.by ?? 0 };
  }

  // A single point, of an edge that is dragged.
  snapPoint(point: { x: number; y: number }): { dx: number; dy: number } {
    return this.snap({ ...point, width: 0, height: 0 });
  }

  clear(): void { this.#layer.clear(); }

  #draw(x: number | undefined, y: number | undefined): void {
    this.#layer.clear();
    const { view } = this.#context;
    const { width, height } = view.stage.getBoundingClientRect();
    const at = view.toStage({ x: x ?? 0, y: y ?? 0 });
    if (x !== undefined) this.#layer.line({ x: at.x, y: 0 }, { x: at.x, y: height }, "guide");
    if (y !== undefined) this.#layer.line({ x: 0, y: at.y }, { x: width, y: at.y }, "guide");
  }
}

function nearest(sorted: Float64Array, values: readonly number[], reach: number): { by: number; to: number } | null {
  let best: { by: number; to: number } | null = null;
  for (const value of values) {
    const i = firstAtLeast(sorted, value);
    for (const to of [sorted[i - 1], sorted[i]]) {
      if (to === undefined || Math.abs(to - value) > reach) continue;
      if (best === null || Math.abs(to - value) < Math.abs(best.by)) best = { by: to - value, to };
    }
  }
  return best;
}

function firstAtLeast(sorted: Float64Array, value: number): number {
  let low = 0;
  let high = sorted.length;
  while (low < high) {
    const middle = (low + high) >> 1;
    if ((sorted[middle] ?? 0) < value) low = middle + 1;
    else high = middle;
  }
  return low;
}
