// What of an artwork is put into the page. What could run, or fetch something, stays in the text alone: an element
// leaves a comment in its place, an attribute nothing.
import { svgSpace } from "./names";

const shownElements = new Set(("a circle clipPath defs desc ellipse filter g image line linearGradient marker mask metadata " +
  "path pattern polygon polyline radialGradient rect stop svg switch symbol text textPath title tspan use " +
  "feBlend feColorMatrix feComponentTransfer feComposite feConvolveMatrix feDiffuseLighting feDisplacementMap " +
  "feDistantLight feDropShadow feFlood feFuncA feFuncB feFuncG feFuncR feGaussianBlur feImage feMerge feMergeNode " +
  "feMorphology feOffset fePointLight feSpecularLighting feSpotLight feTile feTurbulence").split(" "));

const otherSpaces = ["http://www.w3.org/1999/xhtml", "http://www.w3.org/1998/Math/MathML"];

export function isShown(element: Element): boolean {
  const space = element.namespaceURI;
  return space === svgSpace ? shownElements.has(element.localName) : space !== null && !otherSpaces.includes(space);
}

const focusNames = new Set(["autofocus", "tabindex", "contenteditable", "src"]);
const pictureAddress = /^\s*data:image\/(?:png|jpe?g|gif|webp|svg\+xml)[;,]/i;

export function isSafe(attribute: Attr, element: Element): boolean {
  const name = attribute.localName.toLowerCase();
  if (name.startsWith("on") || focusNames.has(name)) return false;
  if (name === "href") {
    if (element.localName === "a") return false;
    return /^\s*#/.test(attribute.value) || (/image$/i.test(element.localName) && pictureAddress.test(attribute.value));
  }
  return !reachesOut(attribute.value);
}

// Every url() must be within the artwork, or be data of a picture. An escape of CSS could hide one.
export function reachesOut(value: string): boolean {
  if (!/url|import|image-set|\\/i.test(value)) return false;
  if (/@import|image-set|\\/i.test(value)) return true;
  const addresses = value.match(/url\(/gi)?.length ?? 0;
  const within = value.match(/url\(\s*["']?\s*(?:#|data:(?:image|font|application\/(?:x-)?font))/gi)?.length ?? 0;
  return addresses !== within;
}
