// An SVG drawn into pixels by the browser: for small pictures of pages, and to compare two drawings.

import { countElements, pieces } from "./pieces";

// A piece takes a few hundredths of a second, in which nothing else happens.
const pieceElements = 1500;
const mostElements = 200_000;
const mostCharacters = 40_000_000;

// Whether drawing it into pixels would be felt all the same.
export function isHeavy(svg: string): boolean {
  return svg.length > mostCharacters || countElements(svg, mostElements) >= mostElements ||
    (svg.includes("mix-blend-mode") && countElements(svg, 4 * pieceElements) >= 4 * pieceElements);
}

// Draws `svg` over a canvas of the given size, on white paper, piece by piece.
export async function drawn(svg: string, width: number, height: number, signal?: AbortSignal): Promise<HTMLCanvasElement> {
  const canvas = document.createElement("canvas");
  canvas.width = width;
  canvas.height = height;
  const brush = canvas.getContext("2d");
  if (brush === null) {
    throw new Error("this browser does not draw");
  }
  brush.fillStyle = "#fff";
  brush.fillRect(0, 0, width, height);
  for (const piece of pieces(svg, pieceElements)) {
    await paint(brush, piece);
    await new Promise((resolve) => setTimeout(resolve));
    signal?.throwIfAborted();
  }
  return canvas;
}

async function paint(brush: CanvasRenderingContext2D, svg: string): Promise<void> {
  const address = URL.createObjectURL(new Blob([svg], { type: "image/svg+xml" }));
  const image = new Image();
  try {
    image.src = address;
    await image.decode();
    brush.drawImage(image, 0, 0, brush.canvas.width, brush.canvas.height);
  } finally {
    URL.revokeObjectURL(address);
  }
}

// Width and height of a drawing, from the viewBox of its root.
export function viewBox(svg: string): { width: number; height: number } {
  const box = /<svg[^>]*\sviewBox="([^"]*)"/.exec(svg)?.[1]?.trim().split(/[\s,]+/).map(Number) ?? [];
  const [width, height] = [box[2] ?? 0, box[3] ?? 0];
  return width > 0 && height > 0 ? { width, height } : { width: 600, height: 800 };
}

// Pixels in which two drawings of one size differ by more than `levels` of 255 in a channel.
export function differentPixels(one: HTMLCanvasElement, other: HTMLCanvasElement, levels: number): number {
  const a = pixelsOf(one);
  const b = pixelsOf(other);
  if (a.length !== b.length) {
    return Math.max(a.length, b.length) / 4;
  }
  const isOff = (at: number) => Math.abs((a[at] ?? 0) - (b[at] ?? 0)) > levels;
  let count = 0;
  for (let at = 0; at < a.length; at += 4) {
    if (isOff(at) || isOff(at + 1) || isOff(at + 2)) {
      count += 1;
    }
  }
  return count;
}

function pixelsOf(canvas: HTMLCanvasElement): Uint8ClampedArray {
  const brush = canvas.getContext("2d");
  return brush?.getImageData(0, 0, canvas.width, canvas.height).data ?? new Uint8ClampedArray();
}
