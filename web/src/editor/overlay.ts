// What lies over the page and is none of it: frames, handles, guides, the caret. In pixels of the stage, so that it
// stays sharp and as large as a hand needs at any zoom.
import { SVG, type Svg } from "@svgdotjs/svg.js";
import type { Point } from "../artwork/geometry";

export class Overlay {
  readonly element: SVGSVGElement;
  readonly #drawing: Svg;

  constructor(stage: HTMLElement) {
    this.#drawing = SVG().addTo(stage).addClass("editor-overlay");
    this.element = this.#drawing.node;
    this.element.setAttribute("aria-hidden", "true");
    this.element.removeAttribute("xmlns:svgjs");
  }

  // A layer of its own for one of the editor's parts.
  layer(name: string): OverlayLayer {
    return new OverlayLayer(this.#drawing, name);
  }
}

export class OverlayLayer {
  readonly #group;

  constructor(drawing: Svg, name: string) {
    this.#group = drawing.group().addClass(name);
  }

  clear(): void { this.#group.clear(); }

  polygon(points: readonly Point[], name: string): void {
    this.#group.polygon(points.map(point => [point.x, point.y]) as [number, number][]).addClass(name);
  }

  line(from: Point, to: Point, name: string): void {
    this.#group.line(from.x, from.y, to.x, to.y).addClass(name);
  }

  square(centre: Point, size: number, name: string, data: string): SVGElement {
    return this.#group.rect(size, size).move(centre.x - size / 2, centre.y - size / 2)
      .addClass(name).attr("data-handle", data).node;
  }

  circle(centre: Point, size: number, name: string, data: string): SVGElement {
    return this.#group.circle(size).center(centre.x, centre.y).addClass(name).attr("data-handle", data).node;
  }
}
