// Where each node of an XML text stands in it. Only the text of artwork that a parser of the browser has accepted comes
// here, so this reader need not look for faults: what it cannot follow is one sentence.

export const enum Kind { element, text, comment, data, instruction }

export interface SourceNode {
  readonly kind: Kind;
  readonly start: number;
  end: number;
}

// The start tag is start..tagEnd, the end tag closing..end. An empty element (<g/>) has no end tag: closing is end.
export interface SourceElement extends SourceNode {
  readonly tagEnd: number;
  closing: number;
  readonly children: readonly SourceNode[];
}

export class SourceFault extends Error {
  constructor() { super("This artwork is not written as SVG should be."); }
}

export function isElement(node: SourceNode): node is SourceElement {
  return node.kind === Kind.element;
}

// The root element, with all that is in it.
export function scan(text: string): SourceElement {
  const open: (SourceElement & { children: SourceNode[] })[] = [];
  let at = text.indexOf("<");
  const put = (node: SourceNode): void => { open[open.length - 1]?.children.push(node); };
  while (at >= 0 && at < text.length) {
    const next = text.charCodeAt(at + 1);
    if (text.charCodeAt(at) !== 0x3c) {
      const end = positionOf(text, "<", at);
      put({ kind: Kind.text, start: at, end });
      at = end;
    } else if (next === 0x2f) {
      const end = positionOf(text, ">", at) + 1;
      const element = open.pop();
      if (element === undefined) throw new SourceFault();
      element.closing = at;
      element.end = end;
      if (open.length === 0) return element;
      at = end;
    } else if (next === 0x21 || next === 0x3f) {
      const node = special(text, at);
      if (open.length > 0) put(node);
      at = node.end;
      if (open.length === 0) at = positionOf(text, "<", at);
    } else {
      const tagEnd = endOfTag(text, at);
      const element = { kind: Kind.element, start: at, end: tagEnd, tagEnd, closing: tagEnd, children: [] };
      put(element);
      if (text.charCodeAt(tagEnd - 2) !== 0x2f) open.push(element);
      else if (open.length === 0) return element;
      at = tagEnd;
    }
  }
  throw new SourceFault();
}

function positionOf(text: string, what: string, from: number): number {
  const at = text.indexOf(what, from);
  if (at < 0) throw new SourceFault();
  return at;
}

// A comment, CDATA, a processing instruction, or a declaration in front of the root.
function special(text: string, start: number): SourceNode {
  const ending = (what: string): number => positionOf(text, what, start) + what.length;
  if (text.startsWith("<!--", start)) return { kind: Kind.comment, start, end: ending("-->") };
  if (text.startsWith("<![CDATA[", start)) return { kind: Kind.data, start, end: ending("]]>") };
  if (text.startsWith("<?", start)) return { kind: Kind.instruction, start, end: ending("?>") };
  let depth = 0;
  for (let at = start; at < text.length; ++at) {
    const letter = text[at];
    if (letter === "[") ++depth;
    else if (letter === "]") --depth;
    else if (letter === "\"" || letter === "'") at = positionOf(text, letter, at + 1);
    else if (letter === ">" && depth === 0) return { kind: Kind.instruction, start, end: at + 1 };
  }
  throw new SourceFault();
}

// Behind the ">" of the tag, which may also stand in a value.
function endOfTag(text: string, start: number): number {
  let from = start;
  for (;;) {
    const end = positionOf(text, ">", from);
    let quote = nextQuote(text, from, end);
    if (quote < 0) return end + 1;
    while (quote >= 0 && quote < end) {
      from = positionOf(text, text.charAt(quote), quote + 1) + 1;
      if (from > end) break;
      quote = nextQuote(text, from, end);
    }
    if (from <= end) return end + 1;
  }
}

function nextQuote(text: string, from: number, end: number): number {
  for (let at = from; at < end; ++at) {
    const letter = text.charCodeAt(at);
    if (letter === 0x22 || letter === 0x27) return at;
  }
  return -1;
}
