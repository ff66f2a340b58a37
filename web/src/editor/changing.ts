// Moving, resizing and turning what is selected, by hand, by keys and by numbers: one matrix of the page for all of it.
import type { Box, Point } from "../artwork/geometry";
import { startOf, transform, type Start } from "../artwork/transforms";
import type { Context } from "./context";
import type { Frame } from "./frame";

// More than these are shown in their new places when the hand lets go.
const shownWhileMoving = 300;

export class Changing {
  readonly #context: Context;
  readonly #starts: readonly Start[];
  readonly #name: string;
  #matrix: DOMMatrix | null = null;

  constructor(context: Context, name: string) {
    this.#context = context;
    this.#name = name;
    const artwork = context.artwork;
    this.#starts = artwork === null ? [] : outermost(context.selection.editable).map(element => startOf(artwork, element));
  }

  get isEmpty(): boolean { return this.#starts.length === 0; }
  get elements(): readonly SVGElement[] { return this.#starts.map(start => start.element); }

  to(matrix: DOMMatrix): void {
    this.#context.artwork?.begin(this.#name);
    this.#matrix = matrix;
    if (this.#starts.length <= shownWhileMoving) this.#apply();
  }

  commit(): void {
    if (this.#matrix === null) return;
    if (this.#starts.length > shownWhileMoving) this.#apply();
    this.#context.artwork?.commit();
  }

  cancel(): void {
    if (this.#matrix !== null) this.#context.artwork?.cancel();
  }

  #apply(): void {
    const { artwork } = this.#context;
    if (artwork === null || this.#matrix === null) return;
    for (const start of this.#starts) transform(artwork, start, this.#matrix);
  }
}

// Without what is within something else that is selected: it goes along.
export function outermost(elements: readonly SVGElement[]): SVGElement[] {
  const all = new Set<Element>(elements);
  return elements.filter(element => {
    for (let at = element.parentElement; at !== null; at = at.parentElement) if (all.has(at)) return false;
    return true;
  });
}

export function change(context: Context, name: string, matrix: DOMMatrix): void {
  const changing = new Changing(context, name);
  if (changing.isEmpty) return;
  changing.to(matrix);
  changing.commit();
}

export function moveMatrix(dx: number, dy: number): DOMMatrix {
  return new DOMMatrix([1, 0, 0, 1, dx, dy]);
}

export function turnMatrix(centre: Point, degrees: number): DOMMatrix {
  return new DOMMatrix().translate(centre.x, centre.y).rotate(degrees).translate(-centre.x, -centre.y);
}

// Scales along the frame's sides; the point (u, v) of the frame stays where it is.
export function scaleMatrix(frame: Frame, u: number, v: number, sx: number, sy: number): DOMMatrix {
  const { x, y, width, height }: Box = frame.box;
  const inFrame = new DOMMatrix().translate(x + width * u, y + height * v).scale(sx, sy).translate(-x - width * u, -y - height * v);
  return frame.matrix.multiply(inFrame).multiply(frame.matrix.inverse());
}
