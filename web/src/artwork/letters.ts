// The letters of a line of text, as a person types them: one string, whatever runs and pieces they stand in. Retyping
// some leaves the runs, shifts and spacings of all others.
import type { Artwork } from "./artwork";

interface Letter { readonly node: Text; readonly offset: number }

export class Letters {
  readonly element: SVGTextElement;
  readonly #artwork: Artwork;
  #letters: Letter[] = [];
  #string = "";
  readonly #keptBlanks: boolean;

  constructor(artwork: Artwork, element: SVGTextElement) {
    this.#artwork = artwork;
    this.element = element;
    this.#keptBlanks = element.hasAttribute("xml:space");
    this.#read();
  }

  // As the line shows them: of several blanks that XML drops, one.
  get string(): string { return this.#string; }

  // What was typed: the line is to read like this. Only what differs is replaced.
  become(wanted: string): void {
    const had = this.#string;
    let start = 0;
    while (start < had.length && start < wanted.length && had[start] === wanted[start]) ++start;
    let end = 0;
    while (end < had.length - start && end < wanted.length - start && had[had.length - 1 - end] === wanted[wanted.length - 1 - end]) ++end;
    this.#replace(start, had.length - end, wanted.slice(start, wanted.length - end));
    this.#read();
    if (this.#string !== wanted) this.#keepBlanks(wanted);
  }

  // Takes away runs that have no letters any more, and what kept blanks while a word was missing between two.
  tidy(): void {
    if (!this.#keptBlanks && !/^ | $| {2}/.test(this.#string)) this.#artwork.set(this.element, "xml:space", null);
    for (const run of [...this.element.querySelectorAll("tspan")].reverse()) {
      if (run.textContent === "" && run.isConnected) this.#artwork.delete(run);
    }
  }

  #replace(from: number, to: number, inserted: string): void {
    const cuts = new Map<Text, Set<number>>();
    for (const { node, offset } of this.#letters.slice(from, to)) {
      cuts.set(node, (cuts.get(node) ?? new Set<number>()).add(offset));
    }
    // Typed letters go where the first that they replace was, else behind the one before them; behind a blank, which may
    // have others after it that are not shown, in front of the next one.
    const before = this.#letters[from - 1];
    const isBehind = from === to && before !== undefined && (this.#string[from - 1] !== " " || this.#letters[from]?.node !== before.node);
    const target = isBehind ? { node: before.node, offset: before.offset + 1 } : this.#letters[from];
    if (target === undefined) {
      if (inserted !== "") this.#artwork.insert(document.createTextNode(inserted), this.#emptyRun(), null);
      return;
    }
    for (const node of new Set([target.node, ...cuts.keys()])) {
      let data = "";
      for (let i = 0; i <= node.data.length; ++i) {
        if (node === target.node && i === target.offset) data += inserted;
        if (cuts.get(node)?.has(i) !== true) data += node.data.charAt(i);
      }
      this.#artwork.setData(node, data);
    }
  }

  #emptyRun(): Element {
    return this.element.querySelector("tspan") ?? this.element;
  }

  #keepBlanks(wanted: string): void {
    // What XML drops would be seen once blanks are kept, so the nodes are first what they showed.
    const shown = new Map<Text, string>(textNodes(this.element).map(node => [node, ""]));
    for (const { node, offset } of this.#letters) shown.set(node, (shown.get(node) ?? "") + blank(node.data[offset] ?? ""));
    for (const [node, data] of shown) this.#artwork.setData(node, data);
    this.#artwork.set(this.element, "xml:space", "preserve");
    this.#read();
    if (this.#string !== wanted) this.become(wanted);
  }

  #read(): void {
    this.#letters = [];
    this.#string = "";
    let pendingBlank = true; // a blank at the beginning is dropped
    for (const node of textNodes(this.element)) {
      const keeps = keepsBlanks(node);
      for (let offset = 0; offset < node.data.length; ++offset) {
        const letter = blank(node.data[offset] ?? "");
        if (letter === " " && !keeps && pendingBlank) continue;
        pendingBlank = letter === " " && !keeps;
        this.#letters.push({ node, offset });
        this.#string += letter;
      }
    }
    const last = this.#letters.at(-1);
    if (last !== undefined && pendingBlank && !keepsBlanks(last.node) && this.#string.endsWith(" ")) {
      this.#letters.pop();
      this.#string = this.#string.slice(0, -1);
    }
  }
}

function blank(letter: string): string {
  return letter === "\n" || letter === "\t" || letter === "\r" ? " " : letter;
}

function textNodes(element: Element): Text[] {
  const walker = document.createTreeWalker(element, NodeFilter.SHOW_TEXT | NodeFilter.SHOW_CDATA_SECTION);
  const nodes: Text[] = [];
  for (let node = walker.nextNode(); node !== null; node = walker.nextNode()) {
    const parent = node.parentElement?.localName;
    if (parent !== "title" && parent !== "desc") nodes.push(node as Text);
  }
  return nodes;
}

function keepsBlanks(node: Node): boolean {
  for (let at = node.parentElement; at !== null; at = at.parentElement) {
    const said = at.getAttribute("xml:space");
    if (said !== null) return said === "preserve";
  }
  return false;
}
