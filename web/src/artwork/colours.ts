// Colours as the artwork says them: what is seen, and beside it the exact one that a page can say and a screen cannot.
import type { Artwork } from "./artwork";
import { numbersOf, numberText } from "./numbers";

export type Side = "fill" | "stroke";

export type Paint =
  | { readonly kind: "none" }
  | { readonly kind: "screen"; readonly hex: string }
  | { readonly kind: "ink"; readonly amounts: readonly number[] }
  | { readonly kind: "spot"; readonly name: string; readonly amounts: readonly number[]; readonly tint: number }
  | { readonly kind: "server"; readonly what: "gradient" | "pattern"; readonly address: string };

const one = 65536;

const fixed = (value: number): number => Math.round(value * one);
const limited = (value: number): number => Math.min(one, Math.max(0, value));

// PDF Reference, 6.2.4: each ink and black together take away the light of one primary. In 1/65536, as pages are read.
export function inkHex(amounts: readonly number[]): string {
  const ink = [0, 1, 2, 3].map(i => limited(fixed(amounts[i] ?? 0)));
  return "#" + [0, 1, 2].map(i => byteText(one - (ink[i] ?? 0) - (ink[3] ?? 0))).join("");
}

export function spotHex(amounts: readonly number[], tint: number): string {
  const left = one - fixed(tint);
  return inkHex(amounts.map(amount => Math.floor((fixed(amount) * left + one / 2) / one) / one));
}

function byteText(level: number): string {
  return Math.floor((limited(level) * 255 + one / 2) / one).toString(16).padStart(2, "0");
}

// The element that says the paint: this one, or one around it.
function sayer(element: Element, side: Side): Element | null {
  for (let at: Element | null = element; at !== null; at = at.parentElement) {
    if (at.hasAttribute(side) || (at as SVGElement).style?.getPropertyValue(side)) return at;
  }
  return null;
}

export function paintOf(element: SVGElement, side: Side): Paint {
  const seen = getComputedStyle(element)[side];
  if (seen === "none" || seen === "") return { kind: "none" };
  const address = /url\(\s*["']?#([^"')]+)/.exec(seen)?.[1];
  if (address !== undefined) return serverOf(element, address);
  const hex = hexOf(seen);
  const twin = sayer(element, side);
  const amounts = numbersOf(twin?.getAttribute(`data-${side}-cmyk`) ?? null);
  if (twin === null || amounts.length !== 4) return { kind: "screen", hex };
  const spot = twin.getAttribute(`data-${side}-spot`);
  if (spot !== null) {
    const tint = Number(twin.getAttribute(`data-${side}-tint`) ?? 0);
    return spotHex(amounts, tint) === hex ? { kind: "spot", name: spot, amounts, tint } : { kind: "screen", hex };
  }
  const isRgb = twin.getAttribute(`data-${side}-origin`) === "rgb";
  return !isRgb && inkHex(amounts) === hex ? { kind: "ink", amounts } : { kind: "screen", hex };
}

function serverOf(element: Element, address: string): Paint {
  const server = (element.getRootNode() as ShadowRoot).getElementById(address);
  return { kind: "server", what: server?.localName === "pattern" ? "pattern" : "gradient", address };
}

export function hexOf(computed: string): string {
  const numbers = /^rgba?\(([^)]*)\)/.exec(computed)?.[1];
  if (numbers === undefined) return "#000000";
  return "#" + numbersOf(numbers).slice(0, 3).map(n => Math.round(n).toString(16).padStart(2, "0")).join("");
}

export function setPaint(artwork: Artwork, element: SVGElement, side: Side, paint: Paint): void {
  if (paint.kind === "server") return;
  const data = (name: string, value: string | null): void => artwork.set(element, `data-${side}-${name}`, value);
  dropStyle(artwork, element, side);
  artwork.set(element, side, visible(paint));
  for (const name of ["gray", "rgb", "origin", "inks"]) data(name, null);
  const inks = paint.kind === "ink" || paint.kind === "spot" ? paint.amounts : null;
  data("cmyk", inks === null ? null : inks.map(numberText).join(" "));
  data("spot", paint.kind === "spot" ? paint.name : null);
  data("tint", paint.kind === "spot" && paint.tint !== 0 ? numberText(paint.tint) : null);
}

function visible(paint: Exclude<Paint, { kind: "server" }>): string {
  switch (paint.kind) {
    case "none": return "none";
    case "screen": return paint.hex;
    case "ink": return inkHex(paint.amounts);
    case "spot": return spotHex(paint.amounts, paint.tint);
  }
}

// A property of the style attribute would win over the attribute that is set.
export function dropStyle(artwork: Artwork, element: SVGElement, name: string): void {
  const style = element.getAttribute("style");
  if (style === null || element.style.getPropertyValue(name) === "") return;
  const rest = style.split(";").filter(part => part.split(":")[0]?.trim() !== name).join(";");
  artwork.set(element, "style", rest.trim() === "" ? null : rest);
}

// The parts of an element that have paint of their own: shapes in groups, runs in texts.
export function painted(element: SVGElement, side: Side): SVGElement[] {
  if (element.localName === "g" || element.localName === "a" || element.localName === "switch") {
    return [...element.children].filter(child => child instanceof SVGElement).flatMap(child => painted(child, side));
  }
  if (element.localName === "text") {
    return [element, ...element.querySelectorAll<SVGElement>(`[${side}],[style*="${side}"]`)];
  }
  return ["path", "rect", "circle", "ellipse", "line", "polyline", "polygon"].includes(element.localName) ? [element] : [];
}
