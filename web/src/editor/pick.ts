// Which object is at a point.
import { pageMatrix, type Box } from "../artwork/geometry";
import { svgSpace } from "../artwork/names";
import type { Context } from "./context";
import { objectAt } from "./scope";

interface Client { readonly clientX: number; readonly clientY: number }

// A thin line is hard to hit: so many pixels beside it count, if what is behind it is a ground.
const reach = 4;
const large = 0.25; // of the page: what is so large is a ground
const looked = 60; // lines

export function pick(context: Context, at: Client): SVGElement | null {
  const { artwork, selection } = context;
  const leaf = leafAt(context, at);
  const hit = leaf === null || artwork === null ? null : objectAt(leaf, artwork.root, selection.scope);
  if (hit !== null && !isGround(context, hit)) return hit;
  return lineNear(context, at, hit) ?? hit;
}

// The very element at the point: a letter's run, a shape in a group.
export function leafAt(context: Context, at: Client): Element | null {
  const { artwork, view } = context;
  const hit = view.tree.elementFromPoint(at.clientX, at.clientY);
  return artwork !== null && hit !== null && hit !== artwork.root && artwork.root.contains(hit) ? hit : null;
}

function isGround(context: Context, element: SVGElement): boolean {
  const box = context.boxes.of(element);
  const { page } = context.view;
  return box.width * box.height > page.width * page.height * large;
}

// The foremost path without a fill that is near the point, and in front of what was hit.
function lineNear(context: Context, at: Client, behind: Element | null): SVGElement | null {
  const { artwork, view, boxes, selection } = context;
  if (artwork === null) return null;
  const point = view.toPage(view.pointOf(at));
  const slack = reach / view.zoom;
  const holds = ({ x, y, width, height }: Box): boolean =>
    point.x >= x - slack && point.x <= x + width + slack && point.y >= y - slack && point.y <= y + height + slack;
  const lines = boxes.objects(selection.scope)
    .filter(object => object instanceof SVGGeometryElement && object.getAttribute("fill") === "none" && holds(boxes.of(object)))
    .slice(-looked).reverse();
  for (const line of lines) {
    const isInFront = behind === null || (behind.compareDocumentPosition(line) & Node.DOCUMENT_POSITION_FOLLOWING) !== 0;
    if (isInFront && isAt(context, line as SVGGeometryElement, pageMatrix(artwork.root, line).inverse().transformPoint(point), slack)) return line;
  }
  return null;
}

// Asks a copy of the line, which is as wide as a hand is exact; the line itself is not touched.
function isAt(context: Context, line: SVGGeometryElement, point: DOMPoint, slack: number): boolean {
  const style = getComputedStyle(line);
  if (style.stroke === "none" || style.visibility !== "visible") return false;
  const wide = document.createElementNS(svgSpace, "path");
  wide.setAttribute("d", line.getAttribute("d") ?? "");
  wide.setAttribute("visibility", "hidden");
  const { a, b } = pageMatrix(context.artwork?.root as SVGSVGElement, line);
  wide.setAttribute("stroke-width", String((parseFloat(style.strokeWidth) || 1) + 2 * slack / (Math.hypot(a, b) || 1)));
  context.overlay.element.append(wide);
  const found = wide.isPointInStroke(point);
  wide.remove();
  return found;
}
