// Duplicates, deletes, orders and groups what is selected; copies and pastes it, within the page and to others.
import type { Artwork } from "../artwork/artwork";
import { carry, settled, type Carried } from "../artwork/carried";
import { matrixText, ownMatrix, pageBox, pageMatrix } from "../artwork/geometry";
import { isGraphic } from "../artwork/kinds";
import { isLayer, isLocked, layersOf } from "../artwork/layers";
import { copyOf, deleteAll } from "../artwork/references";
import { startOf, transform } from "../artwork/transforms";
import { moveMatrix, outermost } from "./changing";
import type { Context } from "./context";
import { isOne } from "./scope";

const shift = 10; // points, of a copy from its original

export type Order = "front" | "forward" | "backward" | "back";

interface Held { readonly copy: SVGElement; readonly place: DOMMatrix }

export class Arranging {
  readonly #context: Context;
  #held: readonly Held[] = [];
  // What is held, once its page is shown no more.
  #carried: Carried | null = null;
  #pasted = 0;

  constructor(context: Context) { this.#context = context; }

  // The page goes: what was copied of it can be pasted into others as something new, where it lay.
  leave(page: Artwork): void {
    if (this.#held.length === 0 || this.#carried !== null) return;
    this.#carried = carry(page.root, this.#held.map(held => held.copy));
    this.#pasted = -1;
  }

  get canPaste(): boolean { return this.#held.length > 0; }

  duplicate(): void {
    this.#work("Duplicate", (artwork, elements) => {
      const copies = elements.map(element => {
        const made = copyOf(artwork, element);
        if (element.parentElement !== null) artwork.insert(made, element.parentElement, element.nextSibling);
        return made;
      });
      // Measured together: the browser lays the page out once.
      for (const start of copies.map(made => startOf(artwork, made))) transform(artwork, start, moveMatrix(shift, shift));
      return copies;
    });
  }

  delete(): void {
    this.#work("Delete", (artwork, elements) => {
      deleteAll(artwork, elements);
      return [];
    });
  }

  copy(): void {
    const { artwork, selection } = this.#context;
    if (artwork === null) return;
    const elements = inOrder(artwork, outermost(selection.elements));
    if (elements.length === 0) return;
    this.#held = elements.map(element => ({
      copy: copyOf(artwork, element),
      place: element.parentElement === null ? new DOMMatrix() : pageMatrix(artwork.root, element.parentElement),
    }));
    this.#carried = null;
    this.#pasted = 0;
    this.#context.say(`${elements.length === 1 ? "One object" : `${elements.length} objects`} copied.`);
  }

  cut(): void {
    if (this.#context.selection.editable.length === 0) return;
    this.copy();
    this.delete();
    this.#pasted = -1; // the first goes back to where it was
  }

  paste(): void {
    const { artwork, selection } = this.#context;
    if (artwork === null || !this.canPaste) return;
    ++this.#pasted;
    const parent = placeForNew(this.#context, artwork);
    if (parent === null) return;
    this.#put(artwork, parent);
    // Another page may be a smaller one.
    const [first] = selection.elements;
    if (this.#carried !== null && first !== undefined) this.#context.view.reveal(pageBox(artwork.root, first));
  }

  #put(artwork: Artwork, parent: Element): void {
    artwork.run("Paste", () => {
      const made = this.#carried === null ? this.#held.map(held => copyOf(artwork, held.copy)) : settled(artwork, this.#carried, parent);
      const to = pageMatrix(artwork.root, parent).inverse().multiply(moveMatrix(shift * this.#pasted, shift * this.#pasted));
      const pasted: SVGElement[] = [];
      this.#held.forEach(({ place }, i) => {
        const object = made[i] ?? null;
        if (object === null) return;
        artwork.insert(object, parent, null);
        artwork.set(object, "transform", matrixText(to.multiply(place).multiply(ownMatrix(object))));
        pasted.push(object);
      });
      this.#context.selection.set(pasted);
      if (pasted.length < this.#held.length) this.#context.say("Pictures that are not shown cannot leave their page.");
    });
  }

  order(order: Order): void {
    const names = { front: "Bring to front", forward: "Bring forward", backward: "Send backward", back: "Send to back" };
    this.#work(names[order], (artwork, elements) => {
      const towardsFront = order === "front" || order === "forward";
      const all = new Set<Element>(elements);
      const atEnd = new Set<Element>();
      // Several that move on by one keep their order among themselves; so do those that go to an end.
      const turned = order === "forward" || order === "back" ? [...elements].reverse() : elements;
      for (const element of turned) {
        const parent = element.parentElement;
        if (parent === null) continue;
        const target = order === "front" ? null
          : order === "back" ? firstBeside(element, parent)
            : neighbour(element, towardsFront, all, atEnd);
        if (target === undefined) continue;
        const before = target !== null && order === "forward" ? target.nextSibling : target;
        if (before !== element.nextSibling || order === "front") artwork.insert(element, parent, before);
      }
      return elements;
    });
  }

  group(): void {
    const parents = new Set(outermost(this.#context.selection.editable).map(element => element.parentElement));
    if (parents.size > 1) {
      this.#context.say("These are in different groups or layers. Only what is in one can be grouped.");
      return;
    }
    this.#work("Group", (artwork, elements) => {
      const last = elements.at(-1);
      const parent = last?.parentElement;
      if (last === undefined || parent === null || parent === undefined) return [];
      const group = artwork.create("g", {});
      isOne(group);
      artwork.insert(group, parent, last.nextSibling);
      for (const element of elements) artwork.insert(element, group, null);
      return [group];
    });
  }

  ungroup(): void {
    const groups = this.#context.selection.editable.filter(element => element.localName === "g" && !isLayer(element));
    const whole = groups.find(group => ["opacity", "mask", "filter", "style"].some(name => group.hasAttribute(name)));
    if (groups.length === 0) {
      this.#context.say("No group is selected.");
    } else if (whole !== undefined) {
      this.#context.say("This group is laid over the page as one thing (opacity, blending or a mask). Taken apart it would look different.");
    } else {
      this.#work("Ungroup", (artwork, elements) => elements.flatMap(element =>
        groups.includes(element) ? dissolve(artwork, element) : [element]));
    }
  }

  #work(name: string, work: (artwork: Artwork, elements: readonly SVGElement[]) => readonly SVGElement[]): void {
    const { artwork, selection } = this.#context;
    if (artwork === null) return;
    const elements = inOrder(artwork, outermost(selection.editable));
    if (elements.length === 0) return;
    this.#context.settle();
    artwork.run(name, () => {
      const left = work(artwork, elements);
      selection.set(left);
    });
  }
}

// One walk of the page: the browser compares the places of two siblings by going from one to the other.
function inOrder(artwork: Artwork, elements: readonly SVGElement[]): SVGElement[] {
  if (elements.length < 2) return [...elements];
  const wanted = new Set<Element>(elements);
  return [...artwork.root.querySelectorAll<SVGElement>("*")].filter(element => wanted.has(element));
}

function firstBeside(element: Element, parent: Element): Element | undefined {
  let at = parent.firstElementChild;
  while (at !== null && (at === element || !isGraphic(at))) at = at.nextElementSibling;
  return at ?? undefined;
}

// The next object that is not among those that move, or undefined at the end. Those at the end are noted, so that each
// of many looks no further than the one beside it.
function neighbour(element: Element, towardsFront: boolean, moving: ReadonlySet<Element>, atEnd: Set<Element>): Element | undefined {
  const step = (at: Element): Element | null => towardsFront ? at.nextElementSibling : at.previousElementSibling;
  let at = step(element);
  while (at !== null && !atEnd.has(at) && (!isGraphic(at) || moving.has(at))) at = step(at);
  if (at !== null && !atEnd.has(at)) return at;
  atEnd.add(element);
  return undefined;
}

// Puts what is in a group in its place. What the group cut off stays cut off, object by object.
function dissolve(artwork: Artwork, group: SVGElement): SVGElement[] {
  const parent = group.parentElement;
  if (parent === null) return [group];
  const own = ownMatrix(group);
  const clip = group.getAttribute("clip-path");
  const said = [...group.attributes].filter(attribute => isInherited(attribute.name));
  const parts: SVGElement[] = [];
  for (const node of [...group.childNodes]) {
    if (!(node instanceof SVGElement)) continue;
    artwork.insert(node, parent, group);
    if (!isGraphic(node)) continue;
    for (const { name, value } of said) if (!node.hasAttribute(name)) artwork.set(node, name, value);
    if (clip === null) {
      artwork.set(node, "transform", matrixText(own.multiply(ownMatrix(node))));
      parts.push(node);
    } else {
      const around = artwork.create("g", { "clip-path": clip });
      isOne(around);
      artwork.insert(around, parent, group);
      artwork.insert(node, around, null);
      artwork.set(around, "transform", matrixText(own));
      parts.push(around);
    }
  }
  artwork.delete(group);
  return parts;
}

function isInherited(name: string): boolean {
  return /^(fill|stroke|font|letter-spacing|word-spacing|xml:space|color)/.test(name) || /^data-(fill|stroke)/.test(name);
}

// Where something new goes: into the group that was gone into, else in front of all else in the foremost layer that may
// be changed.
export function placeForNew(context: Context, artwork: Artwork): Element | null {
  const { scope } = context.selection;
  if (scope !== null && !isLocked(scope)) return scope;
  const layers = layersOf(artwork.root).filter(layer =>
    layer.depth === 0 && !layer.isAnnotations && layer.element.parentElement === (artwork.root as Element));
  const layer = layers.findLast(layer => !layer.isHidden && !layer.isLocked);
  if (layer !== undefined) return layer.element;
  if (layers.length === 0) return artwork.root;
  context.say("Every layer is hidden or locked. Show or unlock one first.");
  return null;
}
