// What is selected, and which group was gone into.
import { editableOf, limitOf, wordsFor } from "../artwork/kinds";

export interface Limit {
  readonly element: SVGElement;
  readonly sentence: string;
}

export interface SelectionDetail {
  readonly elements: readonly SVGElement[];
  // What is selected, in words for a screen reader: "2 paths and 1 text".
  readonly words: string;
  readonly limits: readonly Limit[];
}

const limitsLooked = 500; // objects

// Event "selection": CustomEvent<SelectionDetail>.
export class Selection extends EventTarget {
  #elements: readonly SVGElement[] = [];
  #editable: readonly SVGElement[] | null = null;
  #scope: Element | null = null;

  get elements(): readonly SVGElement[] { return this.#elements; }
  get editable(): readonly SVGElement[] { return this.#editable ??= editableOf(this.#elements); }
  get scope(): Element | null { return this.#scope; }

  set(elements: readonly SVGElement[]): void {
    this.#elements = [...new Set(elements)];
    this.#tell();
  }

  toggle(element: SVGElement): void {
    this.set(this.has(element) ? this.#elements.filter(other => other !== element) : [...this.#elements, element]);
  }

  has(element: SVGElement): boolean { return this.#elements.includes(element); }

  enter(scope: Element | null): void { this.#scope = scope; }

  // Drops what is no longer in the artwork.
  refresh(): void {
    if (this.#scope?.isConnected === false) this.#scope = null;
    this.#elements = this.#elements.filter(element => element.isConnected);
    this.#tell();
  }

  get detail(): SelectionDetail {
    const limits: Limit[] = [];
    for (const element of this.#elements.slice(0, limitsLooked)) {
      const sentence = limitOf(element);
      if (sentence !== null) limits.push({ element, sentence });
    }
    return { elements: this.#elements, words: wordsFor(this.#elements), limits };
  }

  #tell(): void {
    this.#editable = null;
    this.dispatchEvent(new CustomEvent("selection", { detail: this.detail }));
  }
}
