// An artwork as text. What was not changed is copied from the text that came; tags in which an attribute was changed are
// the same but for that attribute; what is new is written.
import { isElement, type SourceElement, type SourceNode } from "./scan";
import { attributeText, escapeText, patchTag } from "./tag";
import { svgSpace } from "./names";
import type { Touched } from "./touched";

export function write(source: string, root: SVGSVGElement, origins: WeakMap<Node, SourceNode>, touched: Touched): string {
  const writer = new Writer(source, root, origins, touched);
  const origin = origins.get(root);
  if (origin === undefined) return source;
  return source.slice(0, origin.start) + writer.node(root) + source.slice(origin.end);
}

class Writer {
  readonly #source: string;
  readonly #origins: WeakMap<Node, SourceNode>;
  readonly #touched: Touched;
  readonly #paths: ReadonlySet<Node>;
  readonly #prefix: string;

  constructor(source: string, root: Element, origins: WeakMap<Node, SourceNode>, touched: Touched) {
    this.#source = source;
    this.#origins = origins;
    this.#touched = touched;
    this.#paths = touched.paths;
    this.#prefix = root.prefix === null ? "" : `${root.prefix}:`;
  }

  node(node: Node): string {
    const origin = this.#origins.get(node);
    if (origin === undefined) return this.#made(node);
    if (!this.#paths.has(node)) return this.#slice(origin.start, origin.end);
    if (node instanceof Element && isElement(origin)) return this.#changed(node, origin);
    if (node instanceof CharacterData && this.#touched.isText(node)) return this.#made(node);
    return this.#slice(origin.start, origin.end);
  }

  #changed(element: Element, origin: SourceElement): string {
    const tag = patchedOrSame(this.#slice(origin.start, origin.tagEnd), this.#touched.values(element));
    const content = this.#children(element);
    const closing = this.#slice(origin.closing, origin.end);
    if (closing !== "" || content === "") return tag + content + closing;
    return `${tag.slice(0, -2)}>${content}</${element.tagName}>`;
  }

  #made(node: Node): string {
    if (node instanceof Text) return escapeText(node.data);
    if (!(node instanceof Element)) return "";
    const name = node.namespaceURI === svgSpace ? this.#prefix + node.localName : node.tagName;
    let tag = `<${name}`;
    for (const attribute of node.attributes) tag += attributeText(attribute.name, attribute.value);
    const content = this.#children(node);
    return content === "" ? `${tag}/>` : `${tag}>${content}</${name}>`;
  }

  #children(element: Element): string {
    let content = "";
    for (let child = element.firstChild; child !== null; child = child.nextSibling) content += this.node(child);
    return content;
  }

  #slice(start: number, end: number): string { return this.#source.slice(start, end); }
}

function patchedOrSame(tag: string, values: ReadonlyMap<string, string | null>): string {
  return values.size === 0 ? tag : patchTag(tag, values);
}
