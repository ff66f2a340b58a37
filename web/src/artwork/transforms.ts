// How a change of place is written on an element, such that saving changes as little as it can.
import { PathArray } from "@svgdotjs/svg.js";
import type { Artwork } from "./artwork";
import { matrixText, near, ownMatrix, pageMatrix } from "./geometry";
import { numbersOf, numberText } from "./numbers";

// What an element was when a move, a resize or a turn began.
export interface Start {
  readonly element: SVGElement;
  readonly own: DOMMatrix;
  readonly parent: DOMMatrix; // from the parent's units to the page's
  readonly place: readonly [number, number] | null; // of a text that stands at a point
  readonly path: string | null; // of a path whose line keeps its width when it is resized
}

export function startOf(artwork: Artwork, element: SVGElement): Start {
  const parent = element.parentElement;
  return {
    element,
    own: ownMatrix(element),
    parent: parent === null ? new DOMMatrix() : pageMatrix(artwork.root, parent),
    place: placeOf(element),
    path: outlineOf(element),
  };
}

// Moves the element as the page's matrix says, from where it was at the start.
export function transform(artwork: Artwork, start: Start, page: DOMMatrix): void {
  const { element, own, parent } = start;
  const inParent = parent.inverse().multiply(page).multiply(parent);
  if (![inParent.a, inParent.b, inParent.c, inParent.d, inParent.e, inParent.f].every(Number.isFinite)) return; // squeezed to nothing
  const isMove = near(inParent.a, 1) && near(inParent.d, 1) && near(inParent.b, 0) && near(inParent.c, 0);
  if (start.place !== null && isMove) {
    artwork.set(element, "x", numberText(start.place[0] + inParent.e));
    artwork.set(element, "y", numberText(start.place[1] + inParent.f));
    artwork.set(element, "transform", matrixText(own));
    return;
  }
  if (start.place !== null) {
    artwork.set(element, "x", numberText(start.place[0]));
    artwork.set(element, "y", numberText(start.place[1]));
  }
  if (start.path !== null && !isMove) {
    const local = own.inverse().multiply(inParent).multiply(own);
    const scaled = Math.abs(local.b) < 1e-7 && Math.abs(local.c) < 1e-7 ? scaledPath(start.path, local) : null;
    artwork.set(element, "d", scaled ?? start.path);
    artwork.set(element, "transform", matrixText(scaled === null ? inParent.multiply(own) : own));
    return;
  }
  if (start.path !== null) artwork.set(element, "d", start.path);
  artwork.set(element, "transform", matrixText(inParent.multiply(own)));
}

// A text that only stands somewhere is moved by its place; parts with places of their own would stay behind.
function placeOf(element: SVGElement): readonly [number, number] | null {
  if (element.localName !== "text" || element.hasAttribute("transform")) return null;
  const [x, ...moreX] = numbersOf(element.getAttribute("x"));
  const [y, ...moreY] = numbersOf(element.getAttribute("y"));
  if (x === undefined || y === undefined || moreX.length > 0 || moreY.length > 0) return null;
  if (Number.isNaN(x) || Number.isNaN(y)) return null;
  if (element.hasAttribute("clip-path") || element.hasAttribute("mask")) return null;
  if (/url\(/.test(`${element.getAttribute("fill")}${element.getAttribute("stroke")}`)) return null;
  return element.querySelector("[x],[y],textPath,[fill^='url'],[stroke^='url']") === null ? [x, y] : null;
}

function outlineOf(element: SVGElement): string | null {
  if (element.localName !== "path" || element.hasAttribute("data-kept")) return null;
  if (["clip-path", "mask", "filter", "pathLength"].some(name => element.hasAttribute(name))) return null;
  const style = getComputedStyle(element);
  if (style.stroke === "none" || /url\(/.test(style.stroke + style.fill)) return null;
  return element.getAttribute("d");
}

// The path data scaled along the axes; null where an arc would have to be made another.
function scaledPath(data: string, m: DOMMatrix): string | null {
  let out = "";
  let last = "";
  for (const [letter, ...numbers] of new PathArray(data)) {
    if (letter === "A") return null;
    const scaled = (numbers as number[]).map((value, i) => {
      const isX = letter === "H" || (letter !== "V" && i % 2 === 0);
      return numberText(isX ? value * m.a + m.e : value * m.d + m.f);
    });
    out += letter === last && letter !== "M" && letter !== "Z" ? ` ${scaled.join(" ")}` : letter + scaled.join(" ");
    last = letter;
  }
  return out;
}
