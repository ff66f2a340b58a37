// What a pointer does from the moment that it goes down until it comes up: pan, move, resize, turn, select, draw.
import { boundsOf, contains, type Box, type Point } from "../artwork/geometry";
import { Changing, moveMatrix, scaleMatrix, turnMatrix } from "./changing";
import type { Context } from "./context";
import { corners, frameOf, pointIn, type Frame } from "./frame";
import type { Guides } from "./guides";
import type { HandleName, Handles } from "./handles";
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

export class Move implements Gesture {
  readonly #context: Context;
  readonly #handles: Handles;
  readonly #guides: Guides;
  readonly #from: Point;
  readonly #box: Box | null;
  readonly #changing: Changing;
  #moved = false;

  constructor(context: Context, handles: Handles, guides: Guides, at: Point) {
    this.#context = context;
    this.#handles = handles;
    this.#guides = guides;
    this.#from = at;
    const frame = frameOf(context);
    this.#box = frame === null ? null : boundsOf(corners(frame));
    this.#changing = new Changing(context, "Move");
  }

  move(at: Point, event: PointerEvent): void {
    if (this.#changing.isEmpty || this.#box === null) return;
    if (!this.#moved) this.#guides.start(this.#changing.elements);
    this.#moved = true;
    const { zoom } = this.#context.view;
    let dx = (at.x - this.#from.x) / zoom;
    let dy = (at.y - this.#from.y) / zoom;
    if (event.shiftKey) {
      if (Math.abs(dx) > Math.abs(dy)) dy = 0;
      else dx = 0;
    }
    if (event.altKey) {
      this.#guides.clear();
    } else {
      const snapped = this.#guides.snap({ ...this.#box, x: this.#box.x + dx, y: this.#box.y + dy });
      if (!event.shiftKey || dx !== 0) dx += snapped.dx;
      if (!event.shiftKey || dy !== 0) dy += snapped.dy;
    }
    const matrix = moveMatrix(dx, dy);
    this.#handles.preview(matrix);
    this.#changing.to(matrix);
  }

  end(): void {
    this.#finish();
    this.#changing.commit();
  }

  cancel(): void {
    this.#finish();
    this.#changing.cancel();
  }

  #finish(): void {
    this.#guides.clear();
    this.#handles.preview(null);
  }
}

export class Resize implements Gesture {
  readonly #context: Context;
  readonly #handles: Handles;
  readonly #guides: Guides;
  readonly #frame: Frame | null;
  readonly #u: number;
  readonly #v: number;
  readonly #offset: Point; // from where the hand is to the frame's side, on the page
  readonly #changing: Changing;

  constructor(context: Context, handles: Handles, guides: Guides, handle: HandleName, at: Point) {
    this.#context = context;
    this.#handles = handles;
    this.#guides = guides;
    this.#frame = frameOf(context);
    [this.#u = 0, this.#v = 0] = handle.split(" ").map(Number);
    const held = context.view.toPage(at);
    const side = this.#frame === null ? held : pointIn(this.#frame, this.#u, this.#v);
    this.#offset = { x: side.x - held.x, y: side.y - held.y };
    this.#changing = new Changing(context, "Resize");
    guides.start(this.#changing.elements);
  }

  move(at: Point, event: PointerEvent): void {
    const frame = this.#frame;
    if (frame === null || this.#changing.isEmpty) return;
    const held = this.#context.view.toPage(at);
    let point = { x: held.x + this.#offset.x, y: held.y + this.#offset.y };
    if (!event.altKey) {
      const { dx, dy } = this.#guides.snapPoint(point);
      point = { x: point.x + dx, y: point.y + dy };
    }
    const from = { u: 1 - this.#u, v: 1 - this.#v };
    const local = frame.matrix.inverse().transformPoint(point);
    const factor = (at: number, start: number, size: number, side: number, fixed: number): number =>
      side === 0.5 || size === 0 ? 1 : (at - start - size * fixed) / (size * (side - fixed));
    let sx = factor(local.x, frame.box.x, frame.box.width, this.#u, from.u);
    let sy = factor(local.y, frame.box.y, frame.box.height, this.#v, from.v);
    const isCorner = this.#u !== 0.5 && this.#v !== 0.5;
    if (isCorner && event.shiftKey !== this.#keepsShape()) {
      const larger = Math.abs(sx) > Math.abs(sy) ? sx : sy;
      sx = Math.abs(larger) * (Math.sign(sx) || 1);
      sy = Math.abs(larger) * (Math.sign(sy) || 1);
    }
    const matrix = scaleMatrix(frame, from.u, from.v, visible(sx), visible(sy));
    this.#handles.preview(matrix);
    this.#changing.to(matrix);
  }

  end(): void {
    this.#finish();
    this.#changing.commit();
  }

  cancel(): void {
    this.#finish();
    this.#changing.cancel();
  }

  // Corners of pictures, texts and groups keep the shape, unless Shift says otherwise; those of shapes the other way.
  #keepsShape(): boolean {
    return this.#changing.elements.some(element => ["image", "text", "g"].includes(element.localName));
  }

  #finish(): void {
    this.#guides.clear();
    this.#handles.preview(null);
  }
}

// Nothing is made so small that it cannot be made larger again.
function visible(factor: number): number {
  const smallest = 0.001;
  return Math.abs(factor) < smallest ? (factor < 0 ? -smallest : smallest) : factor;
}

export class Turn implements Gesture {
  readonly #context: Context;
  readonly #handles: Handles;
  readonly #centre: Point;
  readonly #start: number;
  readonly #before: number;
  readonly #changing: Changing;

  constructor(context: Context, handles: Handles, at: Point) {
    this.#context = context;
    this.#handles = handles;
    const frame = frameOf(context);
    this.#centre = frame === null ? { x: 0, y: 0 } : pointIn(frame, 0.5, 0.5);
    this.#before = frame === null ? 0 : Math.atan2(frame.matrix.b, frame.matrix.a) * 180 / Math.PI;
    this.#start = this.#angle(at);
    this.#changing = new Changing(context, "Turn");
  }

  move(at: Point, event: PointerEvent): void {
    if (this.#changing.isEmpty) return;
    let by = this.#angle(at) - this.#start;
    if (event.shiftKey) by = Math.round((this.#before + by) / 15) * 15 - this.#before;
    const matrix = turnMatrix(this.#centre, by);
    this.#handles.preview(matrix);
    this.#changing.to(matrix);
  }

  end(): void {
    this.#handles.preview(null);
    this.#changing.commit();
  }

  cancel(): void {
    this.#handles.preview(null);
    this.#changing.cancel();
  }

  #angle(at: Point): number {
    const point = this.#context.view.toPage(at);
    return Math.atan2(point.y - this.#centre.y, point.x - this.#centre.x) * 180 / Math.PI;
  }
}
