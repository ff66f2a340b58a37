// Objects on their way to another page: what they are by themselves, with the definitions that they name and without
// what ties them to the page that they come from.
import type { Artwork } from "./artwork";
import { spaces, svgSpace } from "./names";
import { all, namesIn, rename } from "./references";

export interface Carried {
  // In the order of the originals; null where one cannot leave its page.
  readonly objects: readonly (SVGElement | null)[];
  readonly definitions: readonly SVGElement[];
}

// Where in the page's content something comes from, and which object of the file it is.
const ties = /^data-(source|clip-source|form|layer|layer-name|layer-state|image|epsf|annotations|object|digest)$/;

// `copies` were made of objects of the page `root`. Pictures that are not shown have their pixels in the page alone.
export function carry(root: Element, copies: readonly SVGElement[]): Carried {
  const objects = copies.map(copy => copy.matches("[data-kept]") || copy.querySelector("[data-kept]") !== null ? null : untied(copy));
  const known = new Map<string, Element>();
  for (const element of all(root)) if (element.id !== "" && !known.has(element.id)) known.set(element.id, element);
  const found = new Map<string, SVGElement>();
  const inside = new Set(objects.flatMap(object => object === null ? [] : all(object)).map(element => element.id));
  const wanted = objects.flatMap(object => object === null ? [] : all(object).flatMap(namesIn));
  for (let name = wanted.pop(); name !== undefined; name = wanted.pop()) {
    const definition = known.get(name);
    if (inside.has(name) || found.has(name) || !(definition instanceof SVGElement)) continue;
    const taken = untied(definition);
    found.set(name, taken);
    for (const further of all(taken).flatMap(namesIn)) wanted.push(further);
  }
  return { objects, definitions: [...found.values()] };
}

// New objects for the artwork, with ids of their own; their definitions are put into `parent`.
export function settled(artwork: Artwork, { objects, definitions }: Carried, parent: Element): (SVGElement | null)[] {
  const made = objects.map(object => object === null ? null : object.cloneNode(true) as SVGElement);
  const defined = definitions.map(definition => definition.cloneNode(true) as SVGElement);
  const elements = [...made, ...defined].flatMap(element => element === null ? [] : all(element));
  const used = new Set(elements.flatMap(namesIn));
  const ids = new Map<string, string>();
  for (const element of elements) {
    if (element.id === "") continue;
    const id = used.has(element.id) && !ids.has(element.id) ? artwork.freshId(element.localName) : null;
    if (id !== null) ids.set(element.id, id);
    artwork.mark(element, "id", id);
  }
  for (const element of elements) rename(artwork, element, ids);
  if (defined.length > 0) {
    const place = artwork.create("defs", {});
    place.append(...defined);
    artwork.insert(place, parent, null);
  }
  return made;
}

// A copy without comments, which stand for what was not put into the page, elements of other languages, and marks.
function untied(element: Element): SVGElement {
  const copy = element.cloneNode(true) as SVGElement;
  const walker = document.createTreeWalker(copy, NodeFilter.SHOW_ELEMENT | NodeFilter.SHOW_COMMENT | NodeFilter.SHOW_PROCESSING_INSTRUCTION);
  const strangers: ChildNode[] = [];
  for (let node: Node | null = copy; node !== null; node = walker.nextNode()) {
    if (node instanceof Element && node.namespaceURI === svgSpace) untie(node);
    else strangers.push(node as ChildNode);
  }
  for (const stranger of strangers) stranger.remove();
  return copy;
}

// Prefixes are those of the page that it comes from; another may not know them.
function untie(element: Element): void {
  for (const attribute of [...element.attributes]) {
    const { localName, namespaceURI, value } = attribute;
    if (namespaceURI === spaces["xml"] || (namespaceURI === null && !ties.test(localName))) continue;
    element.removeAttributeNode(attribute);
    if (namespaceURI === spaces["xlink"] && localName === "href") element.setAttribute("href", value);
  }
}
