// An artwork's text as elements of the page, each of which knows where it came from.
import { isElement, Kind, scan, SourceFault, type SourceElement, type SourceNode } from "./scan";
import { isSafe, isShown } from "./safe";

export interface Opened {
  readonly root: SVGSVGElement;
  readonly source: SourceElement;
  readonly origins: WeakMap<Node, SourceNode>;
  readonly styles: readonly string[];
}

export function openSource(text: string): Opened {
  const parsed = new DOMParser().parseFromString(text, "image/svg+xml");
  const root = parsed.documentElement;
  if (!(root instanceof SVGSVGElement) || parsed.querySelector("parsererror") !== null) throw new SourceFault();
  root.normalize();
  const source = scan(text);
  const origins = new WeakMap<Node, SourceNode>();
  pair(root, source, origins);
  const styles = tame(root, origins);
  return { root: document.adoptNode(root), source, origins, styles };
}

const kinds: Readonly<Record<number, Kind>> = {
  [Node.ELEMENT_NODE]: Kind.element, [Node.TEXT_NODE]: Kind.text, [Node.COMMENT_NODE]: Kind.comment,
  [Node.CDATA_SECTION_NODE]: Kind.data, [Node.PROCESSING_INSTRUCTION_NODE]: Kind.instruction,
};

function pair(root: Element, source: SourceElement, origins: WeakMap<Node, SourceNode>): void {
  const left: [Element, SourceElement][] = [[root, source]];
  for (let next = left.pop(); next !== undefined; next = left.pop()) {
    const [element, from] = next;
    origins.set(element, from);
    let child = element.firstChild;
    for (const origin of from.children) {
      if (child === null || kinds[child.nodeType] !== origin.kind) throw new SourceFault();
      if (isElement(origin)) left.push([child as Element, origin]);
      else origins.set(child, origin);
      child = child.nextSibling;
    }
    if (child !== null) throw new SourceFault();
  }
}

// Takes out what is not for the page; answers with the style sheets.
function tame(root: Element, origins: WeakMap<Node, SourceNode>): string[] {
  const styles: string[] = [];
  const walker = root.ownerDocument.createTreeWalker(root, NodeFilter.SHOW_ELEMENT);
  let element: Element | null = root;
  while (element !== null) {
    const here: Element = element;
    for (const attribute of [...here.attributes]) {
      if (!isSafe(attribute, here)) here.removeAttributeNode(attribute);
    }
    if (isShown(here)) {
      element = walker.nextNode() as Element | null;
      continue;
    }
    if (here instanceof SVGStyleElement && !/print|speech/.test(here.media)) styles.push(here.textContent ?? "");
    element = next(walker, here, root);
    const stand = root.ownerDocument.createComment("");
    const origin = origins.get(here);
    if (origin !== undefined) origins.set(stand, origin);
    here.replaceWith(stand);
  }
  return styles;
}

// The next element that is not within this one.
function next(walker: TreeWalker, element: Element, root: Element): Element | null {
  for (let at: Element | null = element; at !== null && at !== root; at = at.parentElement) {
    walker.currentNode = at;
    const sibling = walker.nextSibling();
    if (sibling !== null) return sibling as Element;
  }
  return null;
}
