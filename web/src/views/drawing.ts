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
  const fonts = await loadedFonts(svg);
  for (const piece of pieces(svg, pieceElements)) {
    await paint(brush, piece);
    await new Promise((resolve) => setTimeout(resolve));
    signal?.throwIfAborted();
  }
  fonts.length = 0;
  return canvas;
}

// The fonts in `svg`, loaded. An image that holds fonts counts as decoded before they are there, and is
// drawn with others at first, unless the browser has just had them. It has as long as they are held.
async function loadedFonts(svg: string): Promise<FontFace[]> {
  const addresses = [...svg.matchAll(/url\((data:font[^)]*)\)/g)].map((match) => match[1]);
  const fonts = addresses.map((address) => new FontFace("small picture", `url(${address})`));
  await Promise.allSettled(fonts.map((font) => font.load()));
  return fonts;
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

// Pixels in which either of two drawings of one size shows what the other does not.
export function differentPixels(one: HTMLCanvasElement, other: HTMLCanvasElement, levels: number): number {
  const [a, b] = [pixelsOf(one), pixelsOf(other)];
  if (one.width !== other.width || one.height !== other.height) {
    return Math.max(a.length, b.length) / 4;
  }
  return lostPixels(a, b, one.width, levels) + lostPixels(b, a, one.width, levels);
}

type Pixels = Uint8ClampedArray;

// Pixels of `a` that are off by more than `levels` of 255 from all between the lightest and the darkest
// that `b` has within one pixel of their place: so edges may be smoothed otherwise, or a pixel aside.
export function lostPixels(a: Pixels, b: Pixels, width: number, levels: number): number {
  const row = 4 * width;
  const around = [-row - 4, -row, -row + 4, -4, 0, 4, row - 4, row, row + 4];
  const isOff = (at: number) => {
    const level = a[at] ?? 0;
    if (Math.abs(level - (b[at] ?? 0)) <= levels) {
      return false;
    }
    const near = around.map((step) => b[at + step] ?? b[at] ?? 0);
    return level < Math.min(...near) - levels || level > Math.max(...near) + levels;
  };
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
