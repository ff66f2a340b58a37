// New rectangles, lines and texts.
import type { Artwork } from "../artwork/artwork";
import { boundsOf, matrixText, pageMatrix, type Box, type Point } from "../artwork/geometry";
import { numberText } from "../artwork/numbers";
import { placeForNew } from "./arrange";
import type { Context } from "./context";
import type { Gesture } from "./gestures";

const smallest = 2; // points: less was a click
const usual = { width: 120, height: 80 };
const outline = { fill: "#ffffff", stroke: "#000000" };
const stroke = { fill: "none", stroke: "#000000" };
const textSize = 12;

function rectangleData({ x, y, width, height }: Box): string {
  const [left, top, right, bottom] = [x, y, x + width, y + height].map(numberText);
  return `M${left} ${top}H${right}V${bottom}H${left}Z`;
}

function lineData(from: Point, to: Point): string {
  return `M${numberText(from.x)} ${numberText(from.y)}L${numberText(to.x)} ${numberText(to.y)}`;
}

// Draws between where the pointer went down and where it is.
export class DrawShape implements Gesture {
  readonly #context: Context;
  readonly #kind: "rectangle" | "line";
  readonly #from: Point;
  #made: SVGElement | null = null;
  #size = 0;

  constructor(context: Context, kind: "rectangle" | "line", at: Point) {
    this.#context = context;
    this.#kind = kind;
    this.#from = context.view.toPage(at);
  }

  move(at: Point, event: PointerEvent): void {
    const { artwork, view } = this.#context;
    if (artwork === null) return;
    const to = straight(this.#from, view.toPage(at), this.#kind, event.shiftKey);
    this.#size = Math.hypot(to.x - this.#from.x, to.y - this.#from.y);
    this.#made ??= begin(this.#context, artwork, this.#kind);
    const data = this.#kind === "line" ? lineData(this.#from, to) : rectangleData(boundsOf([this.#from, to]));
    if (this.#made !== null) artwork.set(this.#made, "d", data);
  }

  end(): void {
    const { artwork } = this.#context;
    if (this.#made === null || this.#size < smallest) {
      if (this.#made !== null) artwork?.cancel();
      return;
    }
    finish(this.#context, this.#made);
  }

  cancel(): void {
    if (this.#made !== null) this.#context.artwork?.cancel();
  }
}

function straight(from: Point, to: Point, kind: "rectangle" | "line", isStraight: boolean): Point {
  if (!isStraight) return to;
  const dx = to.x - from.x;
  const dy = to.y - from.y;
  if (kind === "rectangle") {
    const side = Math.max(Math.abs(dx), Math.abs(dy));
    return { x: from.x + side * (Math.sign(dx) || 1), y: from.y + side * (Math.sign(dy) || 1) };
  }
  const angle = Math.round(Math.atan2(dy, dx) / (Math.PI / 4)) * (Math.PI / 4);
  const length = Math.hypot(dx, dy);
  return { x: from.x + Math.cos(angle) * length, y: from.y + Math.sin(angle) * length };
}

function begin(context: Context, artwork: Artwork, kind: "rectangle" | "line"): SVGElement | null {
  const parent = placeForNew(context, artwork);
  if (parent === null) return null;
  artwork.begin(kind === "line" ? "New line" : "New rectangle");
  const made = artwork.create("path", kind === "line" ? stroke : outline);
  const place = matrixText(pageMatrix(artwork.root, parent).inverse());
  if (place !== null) made.setAttribute("transform", place);
  artwork.insert(made, parent, null);
  return made;
}

function finish(context: Context, made: SVGElement): void {
  context.artwork?.commit();
  context.tool = "select";
  context.selection.set([made]);
}

// By the keyboard: as large as is usual, in the middle of what is seen.
export function drawUsual(context: Context, kind: "rectangle" | "line"): void {
  const { artwork, view } = context;
  const made = artwork === null ? null : begin(context, artwork, kind);
  if (made === null || artwork === null) return;
  const { seen } = view;
  const x = seen.x + (seen.width - usual.width) / 2;
  const y = seen.y + (seen.height - usual.height) / 2;
  artwork.set(made, "d", kind === "line" ? lineData({ x, y: y + usual.height / 2 }, { x: x + usual.width, y: y + usual.height / 2 })
    : rectangleData({ x, y, ...usual }));
  finish(context, made);
}

// An empty text at the point, in the letters of the text that is selected, else of the text that stands nearest.
export function beginText(context: Context, at: Point): SVGElement | null {
  const { artwork, selection } = context;
  if (artwork === null) return null;
  const model = selection.elements.find(element => element.localName === "text") ?? artwork.root.querySelector("text");
  const parent = placeForNew(context, artwork);
  if (parent === null) return null;
  artwork.begin("New text");
  const made = artwork.create("text", {
    x: numberText(at.x), y: numberText(at.y),
    "font-family": model?.getAttribute("font-family") ?? "sans-serif", "font-size": String(textSize), fill: "#000000",
  });
  for (const name of ["font-weight", "font-style"]) {
    const value = model?.getAttribute(name);
    if (value !== null && value !== undefined) made.setAttribute(name, value);
  }
  const place = matrixText(pageMatrix(artwork.root, parent).inverse());
  if (place !== null) made.setAttribute("transform", place);
  artwork.insert(made, parent, null);
  return made;
}
