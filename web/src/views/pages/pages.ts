// The list of pages at the left: only the rows in view exist, so that 10,000 pages scroll as ten do.

import { asFault, isAborted } from "../../server/fault";
import type { PageFacts } from "../../server/reports";
import type { Desk } from "../desk";
import { make, setText } from "../dom";
import { drawn, isHeavy } from "../drawing";
import { ownPicture } from "./own_picture";
import { labelOf } from "./page_labels";
import { Rows, fitted } from "./rows";
import { Thumbnails } from "./thumbnails";
import { sentence } from "../words";

// Pixels of the screen. A row holds the picture, the number below it, and room around both.
const pictureWidth = 112;
const pictureHeight = 168;
const rowExtra = 36;

// About 400 small pictures on a usual screen, 32 MB.
const keptPixels = 8_000_000;
// A row that is only scrolled past is not drawn.
const settle = 80;

export class PageList {
  readonly #list: HTMLElement;
  readonly #rowsBox = make("div", { class: "page-rows", role: "none" });
  readonly #shown = new Map<number, HTMLElement>();
  readonly #thumbnails: Thumbnails<HTMLCanvasElement>;
  #rows = new Rows([]);
  #pages: readonly PageFacts[] = [];
  #active = 1;
  #typed = "";
  #typedAt = 0;
  #timer: ReturnType<typeof setTimeout> | undefined;

  constructor(readonly desk: Desk, place: HTMLElement, readonly open: (page: number) => void) {
    this.#list = make("div", {
      class: "page-list", role: "listbox", tabindex: 0, "aria-label": "Pages",
      onscroll: () => this.#draw(),
      onkeydown: (event) => this.#key(event as KeyboardEvent),
    }, this.#rowsBox);
    place.append(this.#list);
    new ResizeObserver(() => this.#draw()).observe(this.#list);
    this.#thumbnails = new Thumbnails(
      (page, signal) => this.#picture(page, signal),
      (page) => this.#showPicture(page),
      { atOnce: 2, pixels: keptPixels });
    desk.addEventListener("file", () => this.#setPages());
    desk.addEventListener("page", () => this.#follow());
    desk.addEventListener("busy", () => this.#wantPictures());
    desk.addEventListener("work", () => this.#mark());
    desk.addEventListener("redrawn", (event) => {
      for (const page of (event as CustomEvent<readonly number[]>).detail) {
        this.#thumbnails.forget(page);
      }
      this.#wantPictures();
    });
  }

  // The server is there again.
  retry(): void {
    this.#thumbnails.retry();
  }

  #setPages(): void {
    if (this.#pages === this.desk.pages) {
      return;
    }
    if (this.desk.info === null) {
      this.#thumbnails.clear();
      this.#active = 1;
      this.#list.scrollTop = 0;
    }
    this.#pages = this.desk.pages;
    this.#rows = new Rows(this.#pages.map((page) => fitted(page, pictureWidth, pictureHeight).height + rowExtra));
    this.#rowsBox.style.height = `${this.#rows.height}px`;
    this.#rowsBox.replaceChildren();
    this.#shown.clear();
    this.#draw();
  }

  // The page that is shown is the active one, and in view.
  #follow(): void {
    if (this.desk.page > 0) {
      this.#activate(this.desk.page);
    }
    this.#mark();
  }

  #activate(page: number): void {
    this.#active = Math.min(Math.max(page, 1), Math.max(this.#pages.length, 1));
    this.#list.scrollTop = this.#rows.scrolledTo(this.#active - 1, this.#list.scrollTop, this.#list.clientHeight);
    this.#draw();
  }

  // Makes the rows in view, and takes the others away. The active one is always there, since the
  // list refers to it.
  #draw(): void {
    const { first, end } = this.#rows.inView(this.#list.scrollTop, this.#list.clientHeight);
    const needed = new Set<number>();
    for (let index = first; index < end; index++) {
      needed.add(index + 1);
    }
    if (this.#pages.length > 0) {
      needed.add(this.#active);
    }
    for (const [page, row] of this.#shown) {
      if (!needed.has(page)) {
        row.remove();
        this.#shown.delete(page);
      }
    }
    for (const page of needed) {
      if (!this.#shown.has(page)) {
        const row = this.#makeRow(page);
        this.#shown.set(page, row);
        this.#rowsBox.append(row);
      }
    }
    this.#mark();
    clearTimeout(this.#timer);
    this.#timer = setTimeout(() => this.#wantPictures(), settle);
  }

  #makeRow(page: number): HTMLElement {
    const facts = this.#pages[page - 1] as PageFacts;
    const { width, height } = fitted(facts, pictureWidth, pictureHeight);
    const frame = make("div", { class: "page-picture", style: `width:${width}px;height:${height}px` });
    const row = make("div", {
      class: "page-row", role: "option", id: `page-row-${page}`,
      "aria-setsize": this.#pages.length, "aria-posinset": page,
      style: `top:${this.#rows.top(page - 1)}px;height:${height + rowExtra}px`,
      onclick: () => {
        this.#activate(page);
        this.open(page);
      },
    }, frame, make("div", { class: "page-name" }));
    this.#fillPicture(page, frame);
    return row;
  }

  // What is open, active and not saved. Names only change where they differ.
  #mark(): void {
    this.#list.setAttribute("aria-activedescendant", this.#shown.has(this.#active) ? `page-row-${this.#active}` : "");
    for (const [page, row] of this.#shown) {
      const isUnsaved = this.desk.isUnsaved(page);
      const label = labelOf(this.#pages[page - 1]);
      const name = row.querySelector(".page-name") as HTMLElement;
      setText(name, label === undefined ? String(page) : `${page} (${label})`);
      row.classList.toggle("active", page === this.#active);
      row.classList.toggle("unsaved", isUnsaved);
      row.setAttribute("aria-selected", String(page === this.desk.page));
      row.setAttribute("aria-label",
        `Page ${page}${label === undefined ? "" : `, ${label}`}${isUnsaved ? ", not saved" : ""}`);
    }
  }

  #key(event: KeyboardEvent): void {
    if (event.ctrlKey || event.altKey || event.metaKey) {
      return;
    }
    const screenful = Math.max(1, Math.floor(this.#list.clientHeight / (pictureHeight + rowExtra)));
    const steps: Readonly<Record<string, number>> = {
      ArrowDown: 1, ArrowUp: -1, PageDown: screenful, PageUp: -screenful, Home: -Infinity, End: Infinity,
    };
    const step = steps[event.key];
    if (step !== undefined) {
      this.#activate(this.#active + step);
    } else if (event.key === "Enter" || event.key === " ") {
      this.open(this.#active);
    } else if (/^[0-9]$/.test(event.key)) {
      this.#typeDigit(event);
    } else {
      return;
    }
    event.preventDefault();
    event.stopPropagation();
  }

  // Digits that follow one another within a second are the number of a page.
  #typeDigit(event: KeyboardEvent): void {
    this.#typed = event.timeStamp - this.#typedAt < 1000 ? this.#typed + event.key : event.key;
    this.#typedAt = event.timeStamp;
    this.#activate(Number(this.#typed));
  }

  // Pictures wait for the page that is being opened, and for scrolling to rest.
  #wantPictures(): void {
    if (this.desk.isBusy || this.desk.file === null) {
      return;
    }
    const { first, end } = this.#rows.inView(this.#list.scrollTop, this.#list.clientHeight);
    const pages: number[] = [];
    for (let index = first; index < Math.min(end, this.#pages.length); index++) {
      pages.push(index + 1);
    }
    this.#thumbnails.want(pages);
  }

  // The page's own picture of itself where it has one that can be shown; else the page, drawn.
  async #picture(page: number, signal: AbortSignal): Promise<HTMLCanvasElement> {
    const { server } = this.desk;
    const file = this.desk.file?.id ?? "";
    const facts = this.#pages[page - 1] as PageFacts;
    const fit = fitted(facts, pictureWidth, pictureHeight);
    const scale = Math.min(devicePixelRatio, 2);
    const [width, height] = [Math.round(fit.width * scale), Math.round(fit.height * scale)];
    if (facts.thumbnail === true) {
      try {
        return await ownPicture(await server.thumbnail(file, page, signal), facts, width, height);
      } catch (error) {
        if (isAborted(error) || asFault(error).kind === "lost") {
          throw error;
        }
      }
    }
    const svg = await server.picture(file, page, undefined, signal);
    if (isHeavy(svg)) {
      throw new Error("Too many objects for a small picture");
    }
    return await drawn(svg, width, height, signal);
  }

  #showPicture(page: number): void {
    const frame = this.#shown.get(page)?.querySelector<HTMLElement>(".page-picture");
    if (frame) {
      this.#fillPicture(page, frame);
    }
  }

  #fillPicture(page: number, frame: HTMLElement): void {
    const failure = this.#thumbnails.failure(page);
    const picture = this.#thumbnails.get(page);
    frame.classList.toggle("failed", failure !== undefined);
    if (picture !== undefined) {
      frame.replaceChildren(picture);
    } else if (failure !== undefined) {
      frame.textContent = sentence(failure);
    }
  }
}
