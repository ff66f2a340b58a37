// An SVG drawn into pixels by the browser: for small pictures of pages, and to compare two drawings.

// The browser draws an image all at once, and nothing else happens meanwhile: a hundredth of a second for
// each 1,000 elements, and more for what they hold.
const mostElements = 8_000;
const mostCharacters = 8_000_000;

// Whether drawing it into pixels would be felt.
export function isHeavy(svg: string): boolean {
  let elements = 0;
  for (let at = svg.indexOf("<"); at >= 0 && elements <= mostElements; at = svg.indexOf("<", at + 1)) {
    elements += svg[at + 1] === "/" ? 0 : 1;
  }
  return elements > mostElements || svg.length > mostCharacters;
}

// Draws `svg` over a canvas of the given size, on white paper.
export async function drawn(svg: string, width: number, height: number): Promise<HTMLCanvasElement> {
  const address = URL.createObjectURL(new Blob([svg], { type: "image/svg+xml" }));
  const image = new Image();
  try {
    image.src = address;
    await image.decode();
    const canvas = document.createElement("canvas");
    canvas.width = width;
    canvas.height = height;
    const brush = canvas.getContext("2d");
    if (brush === null) {
      throw new Error("this browser does not draw");
    }
    brush.fillStyle = "#fff";
    brush.fillRect(0, 0, width, height);
    brush.drawImage(image, 0, 0, width, height);
    return canvas;
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
