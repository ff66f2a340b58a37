// Which object is at a point.
import type { Context } from "./context";
import { objectAt } from "./scope";

interface Client { readonly clientX: number; readonly clientY: number }

// A thin line is hard to hit: a few pixels beside it count, if what is behind it is much larger.
const reach = 4;
const around: readonly (readonly [number, number])[] = [[0, -reach], [reach, 0], [0, reach], [-reach, 0]];
const large = 0.25; // of the page: what is so large is a ground, and what lies near the point goes before it

export function pick(context: Context, at: Client): SVGElement | null {
  const exact = pickAt(context, at.clientX, at.clientY);
  if (exact !== null && !isGround(context, exact)) return exact;
  for (const [dx, dy] of around) {
    const beside = pickAt(context, at.clientX + dx, at.clientY + dy);
    if (beside !== null && beside !== exact && !isGround(context, beside)) return beside;
  }
  return exact;
}

// The very element at the point: a letter's run, a shape in a group.
export function leafAt(context: Context, at: Client): Element | null {
  const { artwork, view } = context;
  const hit = view.tree.elementFromPoint(at.clientX, at.clientY);
  return artwork !== null && hit !== null && hit !== artwork.root && artwork.root.contains(hit) ? hit : null;
}

function pickAt(context: Context, x: number, y: number): SVGElement | null {
  const { artwork, selection } = context;
  const leaf = leafAt(context, { clientX: x, clientY: y });
  return leaf === null || artwork === null ? null : objectAt(leaf, artwork.root, selection.scope);
}

function isGround(context: Context, element: SVGElement): boolean {
  const box = context.boxes.of(element);
  const { page } = context.view;
  return box.width * box.height > page.width * page.height * large;
}
