// What a click takes: the outermost group, but for those that only hold the page together, and not beyond the group that
// was gone into by a double click.
import { pageSize } from "../artwork/geometry";
import { graphicChildren, isDrawnLetters } from "../artwork/kinds";
import { isLayer } from "../artwork/layers";

// Part of the page's width and height from which a group of several things is taken for the page itself.
const pageLike = 0.6;

// Whether a click goes through the group to what is in it: layers, and groups around the whole page.
export function isThrough(element: Element, root: SVGSVGElement): boolean {
  if (isLayer(element)) return true;
  if (element.localName !== "g" || isDrawnLetters(element)) return false;
  const known = answers.get(element);
  if (known !== undefined) return known;
  const answer = holdsThePage(element as SVGGElement, root);
  answers.set(element, answer);
  return answer;
}

// A group stays what it was taken for, though things in it move.
const answers = new WeakMap<Element, boolean>();

function holdsThePage(group: SVGGElement, root: SVGSVGElement): boolean {
  if (group.closest("[data-annotations]") !== null) return false;
  if (graphicChildren(group).length < 2 && group.querySelector(":scope > g") === null) return false;
  const page = pageSize(root);
  const box = group.getBBox();
  const parent = group.parentElement;
  const isAlone = parent !== null && isLayer(parent) && graphicChildren(parent).length === 1;
  return isAlone || (box.width > page.width * pageLike && box.height > page.height * pageLike);
}

// Groups that a person made are always one.
export function isOne(group: Element): void { answers.set(group, false); }

// The object of a click at the element, within the group that was gone into.
export function objectAt(target: Element, root: SVGSVGElement, scope: Element | null): SVGElement | null {
  const path: Element[] = [];
  for (let at: Element | null = target; at !== null && at !== root; at = at.parentElement) path.unshift(at);
  let start = 0;
  const inside = scope === null ? -1 : path.indexOf(scope);
  if (inside >= 0) start = inside + 1;
  for (let i = start; i < path.length; ++i) {
    const element = path[i];
    if (element instanceof SVGElement && !isThrough(element, root)) return outOfText(element);
  }
  return null;
}

function outOfText(element: SVGElement): SVGElement {
  return element.closest("text") ?? element;
}

// The group around an element that a click would take, or null at the page.
export function groupAround(element: Element, root: SVGSVGElement): SVGGElement | null {
  const parent = element.parentElement;
  return parent instanceof SVGGElement && !isThrough(parent, root) && parent !== (root as Element) ? parent : null;
}
