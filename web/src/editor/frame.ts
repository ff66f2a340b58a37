// The frame around what is selected: a box in units of its own, which a matrix lays on the page. Of one object it is
// turned as the object is; of several it lies straight.
import { boxOf, cornersOf, pageMatrix, union, type Box, type Point } from "../artwork/geometry";
import type { Context } from "./context";

export interface Frame {
  readonly box: Box;
  readonly matrix: DOMMatrix;
}

export function frameOf(context: Context): Frame | null {
  const { artwork, selection } = context;
  const [first] = selection.elements;
  if (artwork === null || first === undefined) return null;
  if (selection.elements.length === 1) return { box: boxOf(first), matrix: pageMatrix(artwork.root, first) };
  return { box: selection.elements.map(element => context.boxes.of(element)).reduce(union), matrix: new DOMMatrix() };
}

export function corners(frame: Frame): Point[] {
  return cornersOf(frame.box, frame.matrix);
}

export function pointIn(frame: Frame, u: number, v: number): Point {
  const { x, y, width, height } = frame.box;
  return frame.matrix.transformPoint({ x: x + width * u, y: y + height * v });
}

// Lengths on the page of the frame's sides, and how far it is turned, in degrees clockwise.
export function sizeOf(frame: Frame): { width: number; height: number; angle: number } {
  const { a, b, c, d } = frame.matrix;
  return {
    width: frame.box.width * Math.hypot(a, b),
    height: frame.box.height * Math.hypot(c, d),
    angle: Math.atan2(b, a) * 180 / Math.PI,
  };
}
