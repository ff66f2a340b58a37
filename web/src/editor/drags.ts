// Moving, resizing and turning by hand.
import { boundsOf, type Box, type Point } from "../artwork/geometry";
import { Changing, moveMatrix, scaleMatrix, turnMatrix } from "./changing";
import type { Context } from "./context";
import { corners, frameOf, pointIn, type Frame } from "./frame";
import type { Gesture } from "./gestures";
import type { Guides } from "./guides";
import type { HandleName, Handles } from "./handles";

export interface Hand {
  readonly context: Context;
  readonly handles: Handles;
  readonly guides: Guides;
}

// Lays what is selected where a matrix says, until the hand lets go.
abstract class Drag implements Gesture {
  protected readonly hand: Hand;
  protected readonly frame: Frame | null;
  protected readonly changing: Changing;

  constructor(hand: Hand, name: string) {
    this.hand = hand;
    this.frame = frameOf(hand.context);
    this.changing = new Changing(hand.context, name);
  }

  move(at: Point, event: PointerEvent): void {
    if (this.frame === null || this.changing.isEmpty) return;
    const matrix = this.matrixAt(at, event, this.frame);
    this.hand.handles.preview(matrix);
    this.changing.to(matrix);
  }

  end(): void {
    this.#finish();
    this.changing.commit();
  }

  cancel(): void {
    this.#finish();
    this.changing.cancel();
  }

  protected abstract matrixAt(at: Point, event: PointerEvent, frame: Frame): DOMMatrix;

  #finish(): void {
    this.hand.guides.clear();
    this.hand.handles.preview(null);
  }
}

export class Move extends Drag {
  readonly #from: Point;
  readonly #box: Box | null;

  constructor(hand: Hand, at: Point) {
    super(hand, "Move");
    this.#from = at;
    this.#box = this.frame === null ? null : boundsOf(corners(this.frame));
    hand.guides.start(this.changing.elements);
  }

  protected matrixAt(at: Point, event: PointerEvent): DOMMatrix {
    const { context, guides } = this.hand;
    const { zoom } = context.view;
    let dx = (at.x - this.#from.x) / zoom;
    let dy = (at.y - this.#from.y) / zoom;
    if (event.shiftKey) {
      if (Math.abs(dx) > Math.abs(dy)) dy = 0;
      else dx = 0;
    }
    if (event.altKey || this.#box === null) {
      guides.clear();
    } else {
      const snapped = guides.snap({ ...this.#box, x: this.#box.x + dx, y: this.#box.y + dy });
      if (!event.shiftKey || dx !== 0) dx += snapped.dx;
      if (!event.shiftKey || dy !== 0) dy += snapped.dy;
    }
    return moveMatrix(dx, dy);
  }
}

export class Resize extends Drag {
  readonly #u: number;
  readonly #v: number;
  readonly #offset: Point; // from where the hand is to the frame's side, on the page

  constructor(hand: Hand, handle: HandleName, at: Point) {
    super(hand, "Resize");
    [this.#u = 0, this.#v = 0] = handle.split(" ").map(Number);
    const held = hand.context.view.toPage(at);
    const side = this.frame === null ? held : pointIn(this.frame, this.#u, this.#v);
    this.#offset = { x: side.x - held.x, y: side.y - held.y };
    hand.guides.start(this.changing.elements);
  }

  protected matrixAt(at: Point, event: PointerEvent, frame: Frame): DOMMatrix {
    const held = this.hand.context.view.toPage(at);
    let point = { x: held.x + this.#offset.x, y: held.y + this.#offset.y };
    if (event.altKey) {
      this.hand.guides.clear();
    } else {
      const { dx, dy } = this.hand.guides.snapPoint(point);
      point = { x: point.x + dx, y: point.y + dy };
    }
    const fixed = { u: 1 - this.#u, v: 1 - this.#v };
    const local = frame.matrix.inverse().transformPoint(point);
    let sx = factor(local.x - frame.box.x, frame.box.width, this.#u);
    let sy = factor(local.y - frame.box.y, frame.box.height, this.#v);
    const isCorner = this.#u !== 0.5 && this.#v !== 0.5;
    if (isCorner && event.shiftKey !== this.#keepsShape()) {
      const larger = Math.max(Math.abs(sx), Math.abs(sy));
      sx = larger * (Math.sign(sx) || 1);
      sy = larger * (Math.sign(sy) || 1);
    }
    return scaleMatrix(frame, fixed.u, fixed.v, visible(sx), visible(sy));
  }

  // Corners of pictures, texts and groups keep the shape, unless Shift says otherwise; those of shapes the other way.
  #keepsShape(): boolean {
    return this.changing.elements.some(element => ["image", "text", "g"].includes(element.localName));
  }
}

// How much larger a side becomes when the end that is held (0 the first, 1 the last) comes to lie there.
function factor(at: number, size: number, end: number): number {
  if (end === 0.5 || size === 0) return 1;
  return end === 1 ? at / size : 1 - at / size;
}

// Nothing is made so small that it cannot be made larger again.
function visible(factor: number): number {
  const smallest = 0.001;
  return Math.abs(factor) < smallest ? (factor < 0 ? -smallest : smallest) : factor;
}

export class Turn extends Drag {
  readonly #centre: Point;
  readonly #start: number;
  readonly #before: number;

  constructor(hand: Hand, at: Point) {
    super(hand, "Turn");
    const { frame } = this;
    this.#centre = frame === null ? { x: 0, y: 0 } : pointIn(frame, 0.5, 0.5);
    this.#before = frame === null ? 0 : Math.atan2(frame.matrix.b, frame.matrix.a) * 180 / Math.PI;
    this.#start = this.#angle(at);
  }

  protected matrixAt(at: Point, event: PointerEvent): DOMMatrix {
    let by = this.#angle(at) - this.#start;
    if (event.shiftKey) by = Math.round((this.#before + by) / 15) * 15 - this.#before;
    return turnMatrix(this.#centre, by);
  }

  #angle(at: Point): number {
    const point = this.hand.context.view.toPage(at);
    return Math.atan2(point.y - this.#centre.y, point.x - this.#centre.x) * 180 / Math.PI;
  }
}
