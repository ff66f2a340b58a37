// Where the objects of the page are. Measuring 60,000 of them takes a while, so it is done while nothing else is, and
// kept until something is changed.
import type { Artwork } from "../artwork/artwork";
import { boundsOf, boxOf, cornersOf, pageMatrix, type Box } from "../artwork/geometry";
import { graphicChildren } from "../artwork/kinds";
import { isThrough } from "./scope";

const atATime = 8; // milliseconds

export class Boxes {
  #artwork: Artwork | null = null;
  #known = new WeakMap<Element, Box>();
  #idle = 0;
  #objects: SVGGraphicsElement[] | null = null;

  show(artwork: Artwork | null): void {
    this.#artwork = artwork;
    this.#known = new WeakMap();
    this.changed();
    artwork?.addEventListener("change", () => this.changed());
  }

  // What was measured may be elsewhere now: itself, what is in it, and what it is in.
  moved(elements: Iterable<Element>): void {
    for (const element of elements) {
      for (const inner of element.querySelectorAll("*")) this.#known.delete(inner);
      for (let at: Element | null = element; at !== null; at = at.parentElement) this.#known.delete(at);
    }
  }

  changed(): void {
    this.#objects = null;
    cancelIdleCallback(this.#idle);
    if (this.#artwork !== null) this.#idle = requestIdleCallback(() => this.#measure(0));
  }

  of(element: SVGElement): Box {
    const artwork = this.#artwork;
    if (artwork === null) return { x: 0, y: 0, width: 0, height: 0 };
    let box = this.#known.get(element);
    if (box === undefined) {
      box = boundsOf(cornersOf(boxOf(element), pageMatrix(artwork.root, element)));
      this.#known.set(element, box);
    }
    return box;
  }

  // What a click selects when nothing was gone into, or that is in what was gone into.
  objects(scope: Element | null): readonly SVGGraphicsElement[] {
    const root = this.#artwork?.root;
    if (root === undefined) return [];
    if (scope !== null) return collect(scope, root, []);
    this.#objects ??= collect(root, root, []);
    return this.#objects;
  }

  #measure(from: number): void {
    const objects = this.objects(null);
    const until = performance.now() + atATime;
    let at = from;
    while (at < objects.length && performance.now() < until) {
      const object = objects[at++];
      if (object !== undefined) this.of(object);
    }
    if (at < objects.length) this.#idle = requestIdleCallback(() => this.#measure(at));
  }
}

function collect(parent: Element, root: SVGSVGElement, found: SVGGraphicsElement[]): SVGGraphicsElement[] {
  for (const child of graphicChildren(parent)) {
    if (child.getAttribute("display") === "none") continue;
    if (isThrough(child, root)) collect(child, root, found);
    else found.push(child);
  }
  return found;
}
