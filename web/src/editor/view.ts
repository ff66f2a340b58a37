// How much of the page is seen, and how large. The page is a layer of the compositor, which is moved and enlarged as it is:
// that costs the same for 60,000 elements as for one. When zooming rests, the layer is drawn anew at its size.
import { pageSize, type Box, type Point } from "../artwork/geometry";

const smallest = 0.05;
const largest = 64;
const restsAfter = 160; // milliseconds
const margin = 24; // pixels around a page that fits

// Event "view": another part of the page is seen.
export class View extends EventTarget {
  readonly stage: HTMLElement;
  readonly tree: ShadowRoot;
  readonly #mover: HTMLElement;
  readonly #paper: HTMLElement;
  #page: Box = { x: 0, y: 0, width: 0, height: 0 };
  #zoom = 1;
  #x = 0;
  #y = 0;
  #isFitted = true;
  #rest: ReturnType<typeof setTimeout> | undefined;

  constructor(canvas: HTMLElement) {
    super();
    this.stage = box("artwork-stage");
    this.#mover = box("artwork-mover");
    this.#paper = box("artwork-paper");
    this.tree = this.#paper.attachShadow({ mode: "open" });
    const sheet = new CSSStyleSheet();
    sheet.replaceSync(shadowRules);
    this.tree.adoptedStyleSheets.push(sheet);
    this.#paper.setAttribute("aria-hidden", "true");
    this.#paper.hidden = true;
    this.#mover.append(this.#paper);
    this.stage.append(this.#mover);
    canvas.append(this.stage);
    new ResizeObserver(() => { if (this.#isFitted) this.fit(); else this.#place(); }).observe(this.stage);
  }

  get zoom(): number { return this.#zoom; }

  show(root: SVGSVGElement | null, isSame: boolean): void {
    this.#paper.hidden = root === null;
    if (root === null || isSame) return;
    this.#page = pageSize(root);
    this.#paper.style.width = `${this.#page.width}px`;
    this.#paper.style.height = `${this.#page.height}px`;
    this.fit();
  }

  fit(): void {
    const { width, height } = this.stage.getBoundingClientRect();
    const { width: w, height: h } = this.#page;
    if (w === 0 || h === 0 || width === 0) return;
    this.#setZoom(Math.min((width - 2 * margin) / w, (height - 2 * margin) / h));
    this.#x = (width - w * this.#zoom) / 2;
    this.#y = (height - h * this.#zoom) / 2;
    this.#isFitted = true;
    this.#place();
  }

  // The point of the stage stays where it is; without one, the middle.
  zoomTo(zoom: number, at?: Point): void {
    const { width, height } = this.stage.getBoundingClientRect();
    const centre = at ?? { x: width / 2, y: height / 2 };
    const before = this.#zoom;
    this.#setZoom(zoom);
    const k = this.#zoom / before;
    this.#x = centre.x - (centre.x - this.#x) * k;
    this.#y = centre.y - (centre.y - this.#y) * k;
    this.#isFitted = false;
    this.#place();
    // The browser does not draw what it is told will change, until it is told otherwise.
    this.#mover.style.willChange = "transform";
    clearTimeout(this.#rest);
    this.#rest = setTimeout(() => { this.#mover.style.willChange = ""; }, restsAfter);
  }

  zoomBy(factor: number, at?: Point): void { this.zoomTo(this.#zoom * factor, at); }

  panBy(dx: number, dy: number): void {
    this.#x += dx;
    this.#y += dy;
    this.#isFitted = false;
    this.#place();
  }

  // Pans as little as brings the box of the page into view.
  reveal(shown: Box): void {
    const { width, height } = this.stage.getBoundingClientRect();
    const a = this.toStage({ x: shown.x, y: shown.y });
    const b = this.toStage({ x: shown.x + shown.width, y: shown.y + shown.height });
    const shift = (from: number, to: number, size: number): number =>
      to < margin ? margin - to + Math.min(to - from, size / 2) : from > size - margin ? size - margin - from - Math.min(to - from, size / 2) : 0;
    const dx = shift(a.x, b.x, width);
    const dy = shift(a.y, b.y, height);
    if (dx !== 0 || dy !== 0) this.panBy(dx, dy);
  }

  toStage(point: Point): Point {
    return { x: (point.x - this.#page.x) * this.#zoom + this.#x, y: (point.y - this.#page.y) * this.#zoom + this.#y };
  }

  toPage(point: Point): Point {
    return { x: (point.x - this.#x) / this.#zoom + this.#page.x, y: (point.y - this.#y) / this.#zoom + this.#page.y };
  }

  // Of a pointer's event, in pixels of the stage.
  pointOf(event: { readonly clientX: number; readonly clientY: number }): Point {
    const { left, top } = this.stage.getBoundingClientRect();
    return { x: event.clientX - left, y: event.clientY - top };
  }

  // From the page's units to pixels of the stage.
  get matrix(): DOMMatrix {
    const origin = this.toStage({ x: 0, y: 0 });
    return new DOMMatrix([this.#zoom, 0, 0, this.#zoom, origin.x, origin.y]);
  }

  get seen(): Box {
    const { width, height } = this.stage.getBoundingClientRect();
    const a = this.toPage({ x: 0, y: 0 });
    return { x: a.x, y: a.y, width: width / this.#zoom, height: height / this.#zoom };
  }

  get page(): Box { return this.#page; }

  #setZoom(zoom: number): void { this.#zoom = Math.min(largest, Math.max(smallest, zoom)); }

  // A part of the page always stays in view.
  #place(): void {
    const { width, height } = this.stage.getBoundingClientRect();
    const keep = 60;
    this.#x = Math.min(width - keep, Math.max(keep - this.#page.width * this.#zoom, this.#x));
    this.#y = Math.min(height - keep, Math.max(keep - this.#page.height * this.#zoom, this.#y));
    this.#mover.style.transform = `translate3d(${Math.round(this.#x)}px, ${Math.round(this.#y)}px, 0) scale(${this.#zoom})`;
    this.dispatchEvent(new Event("view"));
  }
}

function box(name: string): HTMLElement {
  const element = document.createElement("div");
  element.className = name;
  return element;
}

// The root is as large as the paper whatever it says itself; invisible letters can be clicked; what is locked lets clicks
// through.
const shadowRules = `
:host { all: initial; }
:host > svg { position: absolute !important; inset: 0 !important; width: 100% !important;
  height: 100% !important; margin: 0 !important; transform: none !important; overflow: hidden !important; display: block !important; }
[data-locked="true"]:not([data-annotations]), [data-locked="true"]:not([data-annotations]) *,
[*|insensitive="true"]:not([data-annotations]), [*|insensitive="true"]:not([data-annotations]) * { pointer-events: none !important; }
text { pointer-events: visible; }
svg { -webkit-user-select: none; user-select: none; cursor: inherit; }
`;
