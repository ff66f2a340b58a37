// What an element is, in words, and what about it cannot be changed.
import { inAnnotations, isLocked } from "./layers";

const graphics = new Set(["g", "path", "text", "image", "rect", "circle", "ellipse", "line", "polyline", "polygon", "use", "a", "svg", "switch"]);

export function isGraphic(node: Node | null): node is SVGGraphicsElement {
  return node instanceof SVGGraphicsElement && graphics.has(node.localName);
}

export function graphicChildren(element: Element): SVGGraphicsElement[] {
  return [...element.children].filter(isGraphic);
}

const names: Readonly<Record<string, readonly [string, string]>> = {
  group: ["group", "groups"], text: ["text", "texts"], picture: ["picture", "pictures"], shape: ["shape", "shapes"],
  line: ["line", "lines"],
};

function kindOf(element: SVGElement): string {
  switch (element.localName) {
    case "text": return "text";
    case "image": return "picture";
    case "g": case "a": case "svg": case "switch": return "group";
    case "line": return "line";
    default: return element.hasAttribute("data-kept") ? "picture" : "shape";
  }
}

export function wordsFor(elements: readonly SVGElement[]): string {
  const [only] = elements;
  if (only === undefined) return "Nothing is selected";
  if (elements.length === 1) return oneInWords(only);
  const counts = new Map<string, number>();
  for (const element of elements) counts.set(kindOf(element), (counts.get(kindOf(element)) ?? 0) + 1);
  const parts = [...counts].map(([kind, count]) => `${count} ${names[kind]?.[count === 1 ? 0 : 1] ?? kind}`);
  return parts.length === 1 ? parts.join() : `${parts.slice(0, -1).join(", ")} and ${parts.at(-1)}`;
}

function oneInWords(element: SVGElement): string {
  const title = element.getAttribute("inkscape:label");
  if (element.parentElement?.hasAttribute("data-annotations") === true) return "Annotation";
  if (element.localName === "text") {
    const letters = (element.textContent ?? "").replace(/\s+/g, " ").trim();
    return `Text “${letters.length > 60 ? `${letters.slice(0, 60)}…` : letters}”`;
  }
  const [child, second] = element.localName === "g" ? graphicChildren(element) : [];
  if (child !== undefined && second === undefined && title === null) return oneInWords(child);
  if (element.localName === "g") return `Group${title === null ? "" : ` “${title}”`} of ${graphicChildren(element).length}`;
  if (element.hasAttribute("data-kept")) return "Picture that is not shown";
  const [name] = names[kindOf(element)] ?? ["object"];
  return name.charAt(0).toUpperCase() + name.slice(1);
}

// Sentences about what is not possible, or null.
export function limitOf(element: SVGElement): string | null {
  if (inAnnotations(element)) {
    return "Annotations and form fields are shown for orientation. A save leaves them in the file as they are.";
  }
  if (isLocked(element)) return "It is on a locked layer. Unlock the layer to change it.";
  if (inDrawnLetters(element)) {
    return "It is part of letters that are drawings in the file (a Type 3 font). They can be changed only as a whole: Escape selects all of them.";
  }
  if (element.hasAttribute("data-kept")) {
    return "This picture could not be shown, so a frame stands for it. The frame can be moved, resized or deleted.";
  }
  if (isDrawnLetters(element)) {
    return "These letters are drawings in the file (a Type 3 font). They can be moved and deleted, not retyped.";
  }
  if (element.localName === "text" && element.querySelector("textPath") !== null) {
    return "This text follows a path. Its letters can be changed, the path cannot.";
  }
  const paints = [element.getAttribute("fill"), element.getAttribute("stroke")].join(" ");
  if (/url\(/.test(paints)) return "It is painted with a gradient or pattern, which a colour can replace. Gradients and patterns cannot be edited here.";
  if (element.localName === "text" && isInvisible(element)) return "This text is invisible, as behind a scanned page.";
  return null;
}

function isInvisible(element: SVGElement): boolean {
  return element.getAttribute("fill") === "none" && !element.hasAttribute("stroke");
}

// Whether anything about it may be changed at all.
export function isEditable(element: SVGElement): boolean {
  return !inAnnotations(element) && !isLocked(element) && !inDrawnLetters(element);
}

// Those of many that may be changed. What holds for all in one group is asked once.
export function editableOf(elements: readonly SVGElement[]): SVGElement[] {
  const within = new Map<Element, boolean>();
  return elements.filter(element => {
    const parent = element.parentElement;
    if (parent === null || isLocked(element, parent)) return false;
    let answer = within.get(parent);
    if (answer === undefined) {
      answer = !isDrawnLetters(parent) && isEditable(parent as Element as SVGElement);
      within.set(parent, answer);
    }
    return answer;
  });
}

// Text in a Type 3 font: a group that one operator of the page painted.
export function isDrawnLetters(element: Element): boolean {
  return element.localName === "g" && element.hasAttribute("data-source") && !element.hasAttribute("data-form");
}

function inDrawnLetters(element: Element): boolean {
  for (let at = element.parentElement; at !== null; at = at.parentElement) if (isDrawnLetters(at)) return true;
  return false;
}
