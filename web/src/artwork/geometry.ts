// Where elements are. "Page" means the root's user units: points, with y downwards.
import { numberText } from "./numbers";

export interface Point { readonly x: number; readonly y: number }
export interface Box { readonly x: number; readonly y: number; readonly width: number; readonly height: number }

// The transform attribute as one matrix.
export function ownMatrix(element: Element): DOMMatrix {
  let matrix = new DOMMatrix();
  if (!(element instanceof SVGGraphicsElement)) return matrix;
  for (const item of element.transform.baseVal) matrix = matrix.multiply(item.matrix);
  return matrix;
}

export function matrixText(m: DOMMatrix): string | null {
  const isMove = near(m.a, 1) && near(m.d, 1) && near(m.b, 0) && near(m.c, 0);
  if (isMove && numberText(m.e) === "0" && numberText(m.f) === "0") return null;
  if (isMove) return `translate(${numberText(m.e)} ${numberText(m.f)})`;
  return `matrix(${[m.a, m.b, m.c, m.d].map(factorText).join(" ")} ${numberText(m.e)} ${numberText(m.f)})`;
}

// A factor is multiplied by lengths of up to 16,000 points, so it has more digits.
function factorText(value: number): string {
  return String(Number(value.toFixed(8))).replace(/e.*$/, "").replace(/^(-?)0\./, "$1.");
}

export function near(a: number, b: number): boolean {
  return Math.abs(a - b) < 1e-9;
}

// From the element's user units to the page's.
export function pageMatrix(root: SVGSVGElement, element: Element): DOMMatrix {
  const screen = element instanceof SVGGraphicsElement ? element.getScreenCTM() : null;
  const page = root.getScreenCTM();
  if (element === root || screen === null || page === null) return new DOMMatrix();
  return DOMMatrix.fromMatrix(page).invertSelf().multiply(screen);
}

// What an element covers in its own user units; clips cut it.
export function boxOf(element: SVGElement): Box {
  if (!(element instanceof SVGGraphicsElement)) return { x: 0, y: 0, width: 0, height: 0 };
  const box = element.getBBox();
  const clip = clipOf(element);
  return clip === null ? box : common(box, clip);
}

function clipOf(element: Element): Box | null {
  const id = /^url\(["']?#([^"')]+)["']?\)$/.exec(element.getAttribute("clip-path") ?? "")?.[1];
  const clip = id === undefined ? null : (element.getRootNode() as ShadowRoot).getElementById(id);
  if (!(clip instanceof SVGClipPathElement) || clip.hasAttribute("transform")) return null;
  if (clip.getAttribute("clipPathUnits") === "objectBoundingBox") return null;
  const boxes = [...clip.children].filter(child => child instanceof SVGGraphicsElement)
    .map(child => boundsOf(cornersOf(child.getBBox(), ownMatrix(child))));
  return boxes.length === 0 ? null : boxes.reduce(union);
}

export function cornersOf(box: Box, matrix: DOMMatrix): Point[] {
  const right = box.x + box.width;
  const bottom = box.y + box.height;
  return [[box.x, box.y], [right, box.y], [right, bottom], [box.x, bottom]]
    .map(([x, y]) => matrix.transformPoint({ x: x ?? 0, y: y ?? 0 }));
}

export function boundsOf(points: readonly Point[]): Box {
  const xs = points.map(point => point.x);
  const ys = points.map(point => point.y);
  const x = Math.min(...xs);
  const y = Math.min(...ys);
  return { x, y, width: Math.max(...xs) - x, height: Math.max(...ys) - y };
}

export function pageBox(root: SVGSVGElement, element: SVGElement): Box {
  return boundsOf(cornersOf(boxOf(element), pageMatrix(root, element)));
}

export function union(a: Box, b: Box): Box {
  const x = Math.min(a.x, b.x);
  const y = Math.min(a.y, b.y);
  return {
    x, y,
    width: Math.max(a.x + a.width, b.x + b.width) - x,
    height: Math.max(a.y + a.height, b.y + b.height) - y,
  };
}

function common(a: Box, b: Box): Box {
  const x = Math.max(a.x, b.x);
  const y = Math.max(a.y, b.y);
  return {
    x, y,
    width: Math.max(0, Math.min(a.x + a.width, b.x + b.width) - x),
    height: Math.max(0, Math.min(a.y + a.height, b.y + b.height) - y),
  };
}

export function overlaps(a: Box, b: Box): boolean {
  return a.x <= b.x + b.width && b.x <= a.x + a.width && a.y <= b.y + b.height && b.y <= a.y + a.height;
}

export function contains(outer: Box, inner: Box): boolean {
  return outer.x <= inner.x && outer.y <= inner.y && outer.x + outer.width >= inner.x + inner.width &&
    outer.y + outer.height >= inner.y + inner.height;
}

export function pageSize(root: SVGSVGElement): Box {
  const { x, y, width, height } = root.viewBox.baseVal ?? { x: 0, y: 0, width: 0, height: 0 };
  if (width > 0 && height > 0) return { x, y, width, height };
  return { x: 0, y: 0, width: root.width.baseVal.value || 100, height: root.height.baseVal.value || 100 };
}
