// An SVG of the program cut into smaller ones that look like it when they are drawn over each other in
// their order. The browser draws an image all at once, and nothing else happens meanwhile.

// What elements behind it may refer to.
const definitions = new Set(["style", "clipPath", "linearGradient", "radialGradient", "pattern", "mask", "filter"]);
// Groups that are laid over what is behind them as one thing are not cut.
const whole = /\s(?:opacity|mask|filter|style)\s*=/;
// Attribute values of the program have no ">".
const anyTag = /<(\/?)([A-Za-z][\w:.-]*)([^>]*)>/g;

interface Open {
  readonly name: string;
  readonly tag: string;
  readonly canBeCut: boolean;
}

// Pieces of about `most` elements; larger ones where a group cannot be cut. What blends with what is
// behind it stays one piece.
export function* pieces(svg: string, most: number): Generator<string> {
  if (svg.includes("mix-blend-mode")) {
    yield svg;
    return;
  }
  const open: Open[] = [];
  // Definitions of the pieces before; those of this piece; where the one that is open begins.
  let known = "";
  let found = "";
  let definition = -1;
  let head = "";
  let from = 0;
  let reopened = "";
  let count = 0;
  const piece = (end: number) => {
    const text = svg.slice(from, end);
    const styles = text.includes("<text") ? known : known.replace(/<style>[^]*?<\/style>/g, "");
    return head + styles + reopened + text;
  };
  for (const match of svg.matchAll(anyTag)) {
    const [tag, slash, name = "", rest = ""] = match;
    const isClosing = slash === "/";
    const isEmpty = rest.endsWith("/");
    const end = match.index + tag.length;
    if (!isClosing) {
      count += 1;
      if (definitions.has(name) && definition < 0) {
        definition = end - tag.length;
      }
      open.push({ name, tag, canBeCut: (name === "g" && !whole.test(rest)) || open.length === 0 });
      if (open.length === 1) {
        head = svg.slice(0, end);
        from = end;
      }
    }
    if (isClosing || isEmpty) {
      open.pop();
      if (definition >= 0 && !open.some((element) => definitions.has(element.name))) {
        found += svg.slice(definition, end);
        definition = -1;
      }
      if (count >= most && open.length > 0 && open.every((element) => element.canBeCut)) {
        yield piece(end) + open.map((element) => `</${element.name}>`).reverse().join("");
        from = end;
        reopened = open.slice(1).map((element) => element.tag).join("");
        known += found;
        found = "";
        count = 0;
      }
    }
  }
  if (count > 0) {
    yield piece(svg.length);
  }
}

// How many elements `svg` has, up to `most`.
export function countElements(svg: string, most: number): number {
  let count = 0;
  for (let at = svg.indexOf("<"); at >= 0 && count < most; at = svg.indexOf("<", at + 1)) {
    count += svg[at + 1] === "/" ? 0 : 1;
  }
  return count;
}
