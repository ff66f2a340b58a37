// The layers of an artwork, hidden and locked.
import type { Artwork } from "./artwork";
import { spaces } from "./names";

export interface Layer {
  readonly element: SVGGElement;
  readonly name: string;
  readonly isHidden: boolean;
  readonly isLocked: boolean;
  // 0 for a layer of the page, 1 for one inside it, and so on.
  readonly depth: number;
  // The layer is shown for orientation: what is in it cannot be changed.
  readonly isAnnotations: boolean;
}

export function isLayer(element: Element): boolean {
  return element.localName === "g" &&
    (element.getAttribute("inkscape:groupmode") === "layer" || element.hasAttribute("data-layer") || isAnnotationLayer(element));
}

function isAnnotationLayer(element: Element): boolean {
  return element.hasAttribute("data-annotations");
}

export function inAnnotations(element: Element): boolean {
  return element.closest("[data-annotations]") !== null;
}

function saysLocked(element: Element): boolean {
  const insensitive = element.getAttribute("sodipodi:insensitive");
  return element.getAttribute("data-locked") === "true" || insensitive === "true" || insensitive === "1";
}

// Below the group that is named, else anywhere around it.
export function isLocked(element: Element, below: Element | null = null): boolean {
  for (let at: Element | null = element; at !== below && at !== null; at = at.parentElement) if (saysLocked(at)) return true;
  return false;
}

// Back to front. A layer of the file may be in several groups: it is one, the first of them.
export function layersOf(root: SVGSVGElement): Layer[] {
  const layers: Layer[] = [];
  const known = new Set<string>();
  const visit = (parent: Element, depth: number): void => {
    for (const child of parent.children) {
      if (!(child instanceof SVGGElement)) continue;
      const number = child.getAttribute("data-layer");
      const isNew = isLayer(child) && (number === null || !known.has(number));
      if (number !== null) known.add(number);
      if (isNew) layers.push(layerOf(child, depth, layers.length));
      visit(child, isNew ? depth + 1 : depth);
    }
  };
  visit(root, 0);
  return layers;
}

function layerOf(element: SVGGElement, depth: number, before: number): Layer {
  return {
    element, depth,
    name: element.getAttribute("inkscape:label") ?? (before === 0 ? "Page" : `Layer ${before + 1}`),
    isHidden: element.getAttribute("display") === "none",
    isLocked: saysLocked(element),
    isAnnotations: isAnnotationLayer(element),
  };
}

function groupsOf(root: SVGSVGElement, layer: Layer): SVGGElement[] {
  const number = layer.element.getAttribute("data-layer");
  if (number === null) return [layer.element];
  return [...root.querySelectorAll<SVGGElement>("g[data-layer]")].filter(group => group.getAttribute("data-layer") === number);
}

export function setHidden(artwork: Artwork, layer: Layer, isHidden: boolean): void {
  artwork.run(isHidden ? "Hide layer" : "Show layer", () => {
    for (const group of groupsOf(artwork.root, layer)) artwork.set(group, "display", isHidden ? "none" : null);
  });
}

export function setLocked(artwork: Artwork, layer: Layer, isLocked: boolean): void {
  artwork.run(isLocked ? "Lock layer" : "Unlock layer", () => {
    for (const group of groupsOf(artwork.root, layer)) {
      const name = group.hasAttribute("data-layer") ? "sodipodi:insensitive" : "data-locked";
      if (isLocked && name.startsWith("sodipodi") && artwork.root.lookupNamespaceURI("sodipodi") === null) {
        artwork.set(artwork.root, "xmlns:sodipodi", spaces["sodipodi"] ?? null);
      }
      for (const other of ["sodipodi:insensitive", "data-locked"]) if (other !== name || !isLocked) artwork.set(group, other, null);
      if (isLocked) artwork.set(group, name, "true");
    }
  });
}
