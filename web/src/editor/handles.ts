// Frames of what is selected, with handles to resize and turn it.
import { cornersOf, pageMatrix, boxOf, type Point } from "../artwork/geometry";
import type { Context } from "./context";
import { corners, frameOf, pointIn, type Frame } from "./frame";
import type { OverlayLayer } from "./overlay";

// Where a handle is on the frame: 0 left or top, 1 right or bottom. "turn" stands above the frame.
export type HandleName = `${"0" | "0.5" | "1"} ${"0" | "0.5" | "1"}` | "turn";

const sides: readonly HandleName[] = ["0 0", "0.5 0", "1 0", "1 0.5", "1 1", "0.5 1", "0 1", "0 0.5"];
const outlinesShown = 300;
const handleSize = 9;
const turnDistance = 24;
const roomInside = 28; // pixels
const outside = 5; // pixels
const roomForSides = 30; // pixels below which the handles in the middle of sides would cover the others

export class Handles {
  readonly #context: Context;
  readonly #layer: OverlayLayer;
  readonly #isTyping: () => boolean;
  #waits = false;
  #preview: DOMMatrix | null = null;
  #frame: Frame | null = null;

  // While letters are typed, handles would cover them.
  constructor(context: Context, isTyping: () => boolean) {
    this.#context = context;
    this.#isTyping = isTyping;
    this.#layer = context.overlay.layer("editor-handles");
    const redraw = (): void => this.redraw();
    context.selection.addEventListener("selection", redraw);
    context.view.addEventListener("view", redraw);
  }

  // While a gesture goes on the frame is drawn where the matrix lays it, without measuring anything.
  preview(matrix: DOMMatrix | null): void {
    if (this.#preview === null && matrix !== null) this.#frame = frameOf(this.#context);
    this.#preview = matrix;
    if (matrix === null) this.#frame = null;
    this.redraw();
  }

  redraw(): void {
    if (this.#waits) return;
    this.#waits = true;
    requestAnimationFrame(() => {
      this.#waits = false;
      this.#draw();
    });
  }

  #draw(): void {
    this.#layer.clear();
    const { selection, artwork } = this.#context;
    if (artwork === null || selection.elements.length === 0) return;
    const view = this.#context.view.matrix;
    if (this.#preview !== null) {
      if (this.#frame === null) return;
      const matrix = view.multiply(this.#preview).multiply(this.#frame.matrix);
      this.#drawFrame(cornersOf(this.#frame.box, matrix), "frame");
      return;
    }
    const isOne = selection.elements.length === 1;
    if (!isOne) {
      for (const element of selection.elements.slice(0, outlinesShown)) {
        this.#layer.polygon(cornersOf(boxOf(element), view.multiply(pageMatrix(artwork.root, element))), "outline");
      }
    }
    const frame = frameOf(this.#context);
    if (frame === null) return;
    const isEditable = selection.editable.length > 0;
    const onStage: Frame = { box: frame.box, matrix: view.multiply(frame.matrix) };
    this.#drawFrame(corners(onStage), isEditable ? "frame" : "frame fixed");
    if (isEditable && !this.#isTyping()) this.#drawHandles(widened(onStage));
  }

  // Light around it, so that it is seen on every ground.
  #drawFrame(points: readonly Point[], name: string): void {
    this.#layer.polygon(points, "halo");
    this.#layer.polygon(points, name);
  }

  #isSeen({ x, y }: Point): boolean {
    const { width, height } = this.#context.view.stage.getBoundingClientRect();
    return x > handleSize && y > handleSize && x < width - handleSize && y < height - handleSize;
  }

  #drawHandles(frame: Frame): void {
    const centre = pointIn(frame, 0.5, 0.5);
    const top = pointIn(frame, 0.5, 0);
    const width = distance(pointIn(frame, 0, 0), pointIn(frame, 1, 0));
    const height = distance(pointIn(frame, 0, 0), pointIn(frame, 0, 1));
    const up = direction(centre, top, frame);
    const away = this.#isSeen({ x: top.x + up.x * turnDistance, y: top.y + up.y * turnDistance }) ? turnDistance : -turnDistance;
    const turn = { x: top.x + up.x * away, y: top.y + up.y * away };
    this.#layer.line(top, turn, "stalk");
    this.#layer.circle(turn, handleSize + 2, "handle turn", "turn");
    for (const name of sides) {
      const [u = 0, v = 0] = name.split(" ").map(Number);
      const isMiddle = u === 0.5 || v === 0.5;
      if (isMiddle && (u === 0.5 ? width : height) < roomForSides && (width > 1 && height > 1)) continue;
      if ((width <= 1 && u !== 0.5) || (height <= 1 && v !== 0.5)) continue;
      const at = pointIn(frame, u, v);
      this.#layer.square(at, handleSize, "handle", name).style.cursor = cursorFor(centre, at, frame, u, v);
    }
  }
}

// Handles of something small lie a little outside, so that they do not cover it.
function widened(frame: Frame): Frame {
  const { a, b, c, d } = frame.matrix;
  const { x, y, width, height } = frame.box;
  const dx = width * Math.hypot(a, b) < roomInside && width > 0 ? outside / Math.hypot(a, b) : 0;
  const dy = height * Math.hypot(c, d) < roomInside && height > 0 ? outside / Math.hypot(c, d) : 0;
  return { matrix: frame.matrix, box: { x: x - dx, y: y - dy, width: width + 2 * dx, height: height + 2 * dy } };
}

function distance(a: Point, b: Point): number { return Math.hypot(a.x - b.x, a.y - b.y); }

function direction(from: Point, to: Point, frame: Frame): Point {
  const length = distance(from, to);
  if (length > 1) return { x: (to.x - from.x) / length, y: (to.y - from.y) / length };
  const { c, d } = frame.matrix;
  const along = Math.hypot(c, d) || 1;
  return { x: -c / along, y: -d / along };
}

function cursorFor(centre: Point, at: Point, frame: Frame, u: number, v: number): string {
  const { a, b, c, d } = frame.matrix;
  const x = distance(centre, at) > 2 ? at.x - centre.x : (u - 0.5) * a + (v - 0.5) * c;
  const y = distance(centre, at) > 2 ? at.y - centre.y : (u - 0.5) * b + (v - 0.5) * d;
  const eighth = Math.round(Math.atan2(y, x) / (Math.PI / 4));
  return ["ew-resize", "nwse-resize", "ns-resize", "nesw-resize"][(eighth + 8) % 4] ?? "move";
}
