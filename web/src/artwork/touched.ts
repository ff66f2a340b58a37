// What was ever changed since the artwork came, with the values that it came with. It grows with the changes.

export class Touched {
  readonly #attributes = new Map<Element, Map<string, string | null>>();
  readonly #texts = new Map<CharacterData, string>();
  readonly #children = new Set<Element>();

  // To be called before the change.
  attribute(element: Element, name: string): void {
    const names = this.#attributes.get(element) ?? new Map<string, string | null>();
    if (!names.has(name)) names.set(name, element.getAttribute(name));
    this.#attributes.set(element, names);
  }

  text(node: CharacterData): void {
    if (!this.#texts.has(node)) this.#texts.set(node, node.data);
  }

  children(element: Element): void { this.#children.add(element); }

  copy(from: Node, to: Node): void {
    if (from instanceof Element && to instanceof Element) {
      const names = this.#attributes.get(from);
      if (names !== undefined) this.#attributes.set(to, new Map(names));
      if (this.#children.has(from)) this.#children.add(to);
    } else if (from instanceof CharacterData && to instanceof CharacterData) {
      const data = this.#texts.get(from);
      if (data !== undefined) this.#texts.set(to, data);
    }
  }

  // The attributes that differ from those that came, with their values now.
  values(element: Element): ReadonlyMap<string, string | null> {
    const values = new Map<string, string | null>();
    for (const [name, came] of this.#attributes.get(element) ?? []) {
      const now = element.getAttribute(name);
      if (now !== came) values.set(name, now);
    }
    return values;
  }

  isText(node: CharacterData): boolean {
    const came = this.#texts.get(node);
    return came !== undefined && came !== node.data;
  }

  // All elements in which something may be written anew.
  get paths(): ReadonlySet<Node> {
    const found = new Set<Node>();
    for (const nodes of [this.#attributes.keys(), this.#texts.keys(), this.#children]) {
      for (const node of nodes) {
        for (let at: Node | null = node; at !== null && !found.has(at); at = at.parentNode) found.add(at);
      }
    }
    return found;
  }
}
