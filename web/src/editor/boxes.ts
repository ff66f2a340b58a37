// Where the objects of the page are. Measuring 60,000 of them takes a while, so it is done while nothing else is, and
// kept until something is changed.
import type { Artwork } from "../artwork/artwork";
import { boundsOf, boxOf, cornersOf, pageMatrix, type Box } from "../artwork/geometry";
import { graphicChildren } from "../artwork/kinds";
import type { Step } from "../artwork/undo";
import { isThrough } from "./scope";

const atATime = 8; // milliseconds
const measuredAtOnce = 4000; // objects

// WebKit has no idle callbacks.
const whenIdle = (work: () => void): number => "requestIdleCallback" in globalThis ? requestIdleCallback(work) : window.setTimeout(work, 30);
const notWhenIdle = (id: number): void => { if ("cancelIdleCallback" in globalThis) cancelIdleCallback(id); else clearTimeout(id); };

export class Boxes {
  #artwork: Artwork | null = null;
  #known = new WeakMap<Element, Box>();
  #matrices = new WeakMap<Element, DOMMatrix>();
  #idle = 0;
  #objects: SVGGraphicsElement[] | null = null;

  show(artwork: Artwork | null): void {
    this.#artwork = artwork;
    this.#known = new WeakMap();
    this.#objects = null;
    notWhenIdle(this.#idle);
    if (artwork === null) return;
    artwork.addEventListener("change", event => this.#changed((event as CustomEvent<Step>).detail));
    this.#idle = whenIdle(() => this.#measure(0));
  }

  #changed({ changes }: Step): void {
    this.#matrices = new WeakMap();
    for (const change of changes) {
      if (change.kind === "place") {
        for (const place of [change.from, change.to]) if (place !== null) this.#forget(place.parent);
      }
      const isListed = change.kind === "place" || (change.kind === "attribute" && change.name === "display");
      if (isListed) this.#objects = null;
      this.#forget(change.node);
      if (change.node instanceof Element) for (const inner of change.node.querySelectorAll("*")) this.#known.delete(inner);
    }
  }

  // What was measured may be elsewhere now, and so may all that it is in.
  #forget(node: Node): void {
    for (let at: Node | null = node; at !== null; at = at.parentNode) if (at instanceof Element) this.#known.delete(at);
  }

  of(element: SVGElement): Box {
    const artwork = this.#artwork;
    if (artwork === null) return { x: 0, y: 0, width: 0, height: 0 };
    let box = this.#known.get(element);
    if (box === undefined) {
      const matrix = this.#matrixOf(artwork.root, element);
      box = matrix.isIdentity ? plain(boxOf(element)) : boundsOf(cornersOf(boxOf(element), matrix));
      this.#known.set(element, box);
    }
    return box;
  }

  // The boxes of all objects; of those that were not measured yet only as many as take no noticeable time.
  soon(scope: Element | null): Box[] {
    let left = measuredAtOnce;
    return this.objects(scope).flatMap(object => this.#known.has(object) || --left > 0 ? [this.of(object)] : []);
  }

  // Most objects have no transform of their own: they have their group's, which is asked for once.
  #matrixOf(root: SVGSVGElement, element: Element): DOMMatrix {
    if (element.hasAttribute("transform") || element.hasAttribute("style")) return pageMatrix(root, element);
    const parent = element.parentElement;
    if (parent === null) return new DOMMatrix();
    let matrix = this.#matrices.get(parent);
    if (matrix === undefined) {
      matrix = pageMatrix(root, parent);
      this.#matrices.set(parent, matrix);
    }
    return matrix;
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
    if (at < objects.length) this.#idle = whenIdle(() => this.#measure(at));
  }
}

function plain({ x, y, width, height }: Box): Box { return { x, y, width, height }; }

function collect(parent: Element, root: SVGSVGElement, found: SVGGraphicsElement[]): SVGGraphicsElement[] {
  for (const child of graphicChildren(parent)) {
    if (child.getAttribute("display") === "none") continue;
    if (isThrough(child, root)) collect(child, root, found);
    else found.push(child);
  }
  return found;
}
