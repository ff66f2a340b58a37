// A page's artwork: elements in the document, the text that they came from, and every change to them, which goes
// through here so that it can be undone and so that what was not changed keeps its characters.
import { openSource, type Opened } from "./origins";
import { svgSpace, writeAttribute } from "./names";
import { History, apply, type Change, type Step } from "./undo";
import { Sheets } from "./sheets";
import { Touched } from "./touched";
import { write } from "./writing";

export type Work = () => void;

// Event "change": CustomEvent<Step>, behind every step that was done, undone or done again.
export class Artwork extends EventTarget {
  readonly root: SVGSVGElement;
  readonly #source: string;
  readonly #opened: Opened;
  readonly #sheets: Sheets;
  readonly #history = new History();
  readonly #touched = new Touched();
  #step: Step | null = null;
  #made = 0;
  #merged = new Map<Node, Map<string, Change>>();

  // Puts the artwork into the tree.
  constructor(source: string, tree: ShadowRoot) {
    super();
    this.#source = source;
    this.#opened = openSource(source);
    this.root = this.#opened.root;
    this.#sheets = new Sheets(tree);
    for (const style of this.#opened.styles) this.#sheets.add(style);
    tree.append(this.root);
  }

  remove(): void {
    this.#sheets.remove();
    this.root.remove();
  }

  get canUndo(): boolean { return this.#history.canUndo; }
  get canRedo(): boolean { return this.#history.canRedo; }
  // A step that still goes on counts.
  get isChanged(): boolean { return this.#history.isChanged || this.#step?.changes.some(isChange) === true; }
  markSaved(): void { this.#history.markSaved(); }

  text(): string {
    return write(this.#source, this.root, this.#opened.origins, this.#touched);
  }

  // One step: all that is changed until it is committed or cancelled. One within another is part of it.
  begin(name: string): void {
    this.#step ??= { name, changes: [] };
  }

  commit(): void {
    const step = this.#step;
    this.#step = null;
    this.#merged.clear();
    if (step === null) return;
    const changes = step.changes.filter(isChange);
    if (changes.length === 0) return;
    const done = { name: step.name, changes };
    this.#history.push(done);
    this.dispatchEvent(new CustomEvent("change", { detail: done }));
  }

  cancel(): void {
    const step = this.#step;
    this.#step = null;
    this.#merged.clear();
    for (const change of step?.changes.reverse() ?? []) apply(change, false);
  }

  run(name: string, work: Work): void {
    if (this.#step !== null) {
      work();
      return;
    }
    this.begin(name);
    try {
      work();
    } catch (fault) {
      this.cancel();
      throw fault;
    }
    this.commit();
  }

  undo(): Step | undefined { return this.#turn(() => this.#history.undo()); }
  redo(): Step | undefined { return this.#turn(() => this.#history.redo()); }

  set(node: Element, name: string, value: string | null): void {
    const from = node.getAttribute(name);
    if (from === value) return;
    this.#touched.attribute(node, name);
    const known = this.#merged.get(node)?.get(name);
    if (known?.kind === "attribute") known.to = value;
    else this.#note({ kind: "attribute", node, name, from, to: value }, name);
    writeAttribute(node, name, value);
  }

  setData(node: CharacterData, data: string): void {
    if (node.data === data) return;
    this.#touched.text(node);
    const known = this.#merged.get(node)?.get("");
    if (known?.kind === "data") known.to = data;
    else this.#note({ kind: "data", node, from: node.data, to: data }, "");
    node.data = data;
  }

  insert(node: Node, parent: Element, before: Node | null): void {
    const from = node.parentNode === null ? null : { parent: node.parentNode, before: node.nextSibling };
    if (from !== null) this.#touched.children(from.parent as Element);
    this.#touched.children(parent);
    const change: Change = { kind: "place", node, from, to: { parent, before } };
    this.#note(change);
    apply(change, true);
  }

  delete(node: Node): void {
    const parent = node.parentNode;
    if (parent === null) return;
    this.#touched.children(parent as Element);
    const change: Change = { kind: "place", node, from: { parent, before: node.nextSibling }, to: null };
    this.#note(change);
    apply(change, true);
  }

  create(name: string, attributes: Readonly<Record<string, string>>): SVGElement {
    const element = document.createElementNS(svgSpace, name) as SVGElement;
    for (const [key, value] of Object.entries(attributes)) writeAttribute(element, key, value);
    return element;
  }

  // A copy that is written with the same characters, but for the ids, which no two elements may share.
  copy<T extends Element>(element: T): T {
    const copied = element.cloneNode(true) as T;
    const pairs: [Node, Node][] = [[element, copied]];
    for (let next = pairs.pop(); next !== undefined; next = pairs.pop()) {
      const [old, made] = next;
      const origin = this.#opened.origins.get(old);
      if (origin !== undefined) this.#opened.origins.set(made, origin);
      this.#touched.copy(old, made);
      if (made instanceof Element) this.mark(made, "id", null);
      for (let a = old.firstChild, b = made.firstChild; a !== null && b !== null; a = a.nextSibling, b = b.nextSibling) {
        pairs.push([a, b]);
      }
    }
    return copied;
  }

  // Sets an attribute of something that is not in the artwork yet: nothing to undo.
  mark(made: Element, name: string, value: string | null): void {
    this.#touched.attribute(made, name);
    writeAttribute(made, name, value);
  }

  // An id that no element has. It is not one of those that say an object's place in the page (p1, f3p1).
  freshId(kind: string): string {
    let id: string;
    do id = `new-${kind}${++this.#made}`; while (this.root.querySelector(`#${CSS.escape(id)}`) !== null);
    return id;
  }

  #note(change: Change, key?: string): void {
    if (this.#step === null) throw new Error("a change outside a step");
    this.#step.changes.push(change);
    if (key === undefined) return;
    const known = this.#merged.get(change.node) ?? new Map<string, Change>();
    known.set(key, change);
    this.#merged.set(change.node, known);
  }

  #turn(step: () => Step | undefined): Step | undefined {
    if (this.#step !== null) this.cancel();
    const done = step();
    if (done !== undefined) this.dispatchEvent(new CustomEvent("change", { detail: done }));
    return done;
  }
}

function isChange(change: Change): boolean {
  return change.kind === "place" || change.from !== change.to;
}
