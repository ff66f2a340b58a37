// What elements name: clips, masks, gradients, patterns, curves of text.
import type { Artwork } from "./artwork";

const referencePattern = /url\(\s*["']?#([^"')]+)["']?\s*\)/g;

export function namesIn(element: Element): string[] {
  const names: string[] = [];
  for (const attribute of element.attributes) {
    if (attribute.localName === "href" && attribute.value.startsWith("#")) names.push(attribute.value.slice(1));
    else for (const match of attribute.value.matchAll(referencePattern)) names.push(match[1] ?? "");
  }
  return names;
}

export function all(element: Element): Element[] { return [element, ...element.querySelectorAll("*")]; }

// A copy names its own definitions where the original has them within itself, so that each lives without the other.
export function copyOf<T extends SVGElement>(artwork: Artwork, element: T): T {
  const copied = artwork.copy(element);
  const originals = all(element);
  const copies = all(copied);
  const used = new Set(originals.flatMap(namesIn));
  const renamed = new Map<string, string>();
  originals.forEach((original, i) => {
    if (original.id === "" || !used.has(original.id)) return;
    const id = artwork.freshId(original.localName);
    renamed.set(original.id, id);
    const made = copies[i];
    if (made !== undefined) artwork.mark(made, "id", id);
  });
  if (renamed.size > 0) for (const made of copies) rename(artwork, made, renamed);
  return copied;
}

export function rename(artwork: Artwork, element: Element, ids: ReadonlyMap<string, string>): void {
  for (const attribute of [...element.attributes]) {
    const value = attribute.localName === "href" && attribute.value.startsWith("#")
      ? `#${ids.get(attribute.value.slice(1)) ?? attribute.value.slice(1)}`
      : attribute.value.replace(referencePattern, (whole, id: string) => ids.has(id) ? `url(#${ids.get(id)})` : whole);
    if (value !== attribute.value) artwork.mark(element, attribute.name, value);
  }
}

const definitions = "clipPath,mask,linearGradient,radialGradient,pattern,filter,marker,symbol,defs > *";

// Deletes elements; a definition within them that others name stays, in their place.
export function deleteAll(artwork: Artwork, elements: readonly SVGElement[]): void {
  const users = usersIn(artwork.root);
  for (const element of elements) {
    for (const definition of element.querySelectorAll(definitions)) {
      if (definition.id === "" || definition.parentElement?.closest(definitions) !== null) continue;
      const isNamed = users.get(definition.id)?.some(user => artwork.root.contains(user) && !element.contains(user));
      if (isNamed === true) keep(artwork, element, definition);
    }
    artwork.delete(element);
  }
}

// Who names what, looked up once: pages have as many clips as objects.
function usersIn(root: Element): ReadonlyMap<string, readonly Element[]> {
  const users = new Map<string, Element[]>();
  for (const element of all(root)) {
    for (const name of namesIn(element)) {
      const known = users.get(name);
      if (known === undefined) users.set(name, [element]);
      else known.push(element);
    }
  }
  return users;
}

function keep(artwork: Artwork, element: SVGElement, definition: Element): void {
  const parent = element.parentElement;
  if (parent !== null) artwork.insert(definition, parent, element);
}
