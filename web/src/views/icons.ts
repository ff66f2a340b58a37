// The pictures on buttons: lines on a grid of 16, in the colour of the text.

const svg = "http://www.w3.org/2000/svg";

const paths = {
  back: "M9.5 3.5 5 8l4.5 4.5",
  next: "M6.5 3.5 11 8l-4.5 4.5",
  undo: "M6 3 3 6l3 3M3 6h6.5a3.5 3.5 0 0 1 0 7H6",
  redo: "m10 3 3 3-3 3M13 6H6.5a3.5 3.5 0 0 0 0 7H10",
  history: "M3.2 5.2A5.5 5.5 0 1 1 2.5 8M3 2.5v3h3M8 5v3.3l2.2 1.4",
  download: "M8 2.5v7.5M4.8 7 8 10.2 11.2 7M3 13.5h10",
  theme: "M8 2.5a5.5 5.5 0 1 0 0 11zM8 2.5a5.5 5.5 0 0 1 0 11",
  help: "M6 6.2a2 2 0 1 1 2.9 1.8c-.6.3-.9.7-.9 1.4M8 11.7v.1M8 2a6 6 0 1 0 0 12A6 6 0 0 0 8 2z",
  eye: "M1.5 8S4 3.7 8 3.7 14.5 8 14.5 8 12 12.3 8 12.3 1.5 8 1.5 8zM8 6.2a1.8 1.8 0 1 0 0 3.6 1.8 1.8 0 0 0 0-3.6z",
  eyeOff: "M3 3l10 10M6 4.1A6 6 0 0 1 8 3.7C12 3.7 14.5 8 14.5 8a11 11 0 0 1-2 2.4M9.8 12A6 6 0 0 1 8 12.3C4 12.3 1.5 8 1.5 8a11 11 0 0 1 2.3-2.6",
  lock: "M4 7.5h8v6H4zM5.7 7.5V5.3a2.3 2.3 0 0 1 4.6 0v2.2",
  unlock: "M4 7.5h8v6H4zM5.7 7.5V5.3A2.3 2.3 0 0 1 10 4.3",
  warning: "M8 2.5 14.2 13H1.8zM8 6.5v3M8 11.2v.1",
  info: "M8 2a6 6 0 1 0 0 12A6 6 0 0 0 8 2zM8 7.3v3.5M8 5.1v.1",
  close: "M4 4l8 8M12 4l-8 8",
  files: "M2.5 4.5v8h11v-7H8L6.5 4z",
  plus: "M8 3.5v9M3.5 8h9",
} as const;

export type Icon = keyof typeof paths;

export function icon(name: Icon): SVGSVGElement {
  const picture = document.createElementNS(svg, "svg");
  picture.setAttribute("viewBox", "0 0 16 16");
  picture.setAttribute("class", "icon");
  picture.setAttribute("aria-hidden", "true");
  const path = document.createElementNS(svg, "path");
  path.setAttribute("d", paths[name]);
  picture.append(path);
  return picture;
}
