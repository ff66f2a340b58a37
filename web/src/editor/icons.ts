// Pictures of buttons: strokes on a square of 20 by 20.
import { svgSpace } from "../artwork/names";

const strokes = {
  select: "M5 3l11 6.5-5 1.3-2 5z",
  hand: "M7 10V4.5a1.2 1.2 0 0 1 2.4 0V9m0-5.5a1.2 1.2 0 0 1 2.4 0V9m0-4.5a1.2 1.2 0 0 1 2.4 0V10m0-2.5a1.2 1.2 0 0 1 2.3 0v4.5c0 3-2 5-5 5-2.5 0-4-1.2-5-3L4 11.5c-.6-1.2.8-2.2 1.8-1.2L7 11.5",
  rectangle: "M3.5 5h13v10h-13z",
  line: "M4 16 16 4",
  text: "M5 6V4h10v2M10 4v12M8 16h4",
  picture: "M3.5 4.5h13v11h-13zM4 14l4-4 3 3 2-2 3 3M13 8h.01",
  undo: "M7 4 3.5 7.5 7 11M4 7.5h7.5a4.25 4.25 0 0 1 0 8.5H8",
  redo: "M13 4l3.5 3.5L13 11M16 7.5H8.5a4.25 4.25 0 0 0 0 8.5H12",
  duplicate: "M7.5 7.5h9v9h-9zM12.5 7.5v-4h-9v9h4",
  delete: "M4 6h12M8 6V4h4v2M5.5 6l.7 10.5h7.6L14.5 6M8.5 9v5M11.5 9v5",
  group: "M3 6V3h3M14 3h3v3M17 14v3h-3M6 17H3v-3M6 6h5v5H6zM9 13.5h5v-5",
  ungroup: "M3 3h6v6H3zM11 11h6v6h-6zM12 5h3M5 12v3",
  front: "M6.5 6.5h7v7h-7zM3 9V3h6M17 11v6h-6",
  forward: "M10 16V5M5.5 9.5 10 5l4.5 4.5",
  backward: "M10 4v11M5.5 10.5 10 15l4.5-4.5",
  back: "M3 3h6v6H3zM11 11h6v6h-6zM12.5 3.5h4v4M3.5 12.5v4h4",
  in: "M8.5 3.5a5 5 0 1 0 0 10 5 5 0 0 0 0-10zM12.3 12.3 17 17M8.5 6v5M6 8.5h5",
  out: "M8.5 3.5a5 5 0 1 0 0 10 5 5 0 0 0 0-10zM12.3 12.3 17 17M6 8.5h5",
  fit: "M3 7V3h4M13 3h4v4M17 13v4h-4M7 17H3v-4M7 7h6v6H7z",
} as const;

export type IconName = keyof typeof strokes;

export function icon(name: IconName): SVGSVGElement {
  const svg = document.createElementNS(svgSpace, "svg");
  svg.setAttribute("viewBox", "0 0 20 20");
  svg.setAttribute("aria-hidden", "true");
  svg.classList.add("editor-icon");
  const path = document.createElementNS(svgSpace, "path");
  path.setAttribute("d", strokes[name]);
  svg.append(path);
  return svg;
}
