// The chooser: the files that the program was started with, by name, size and date.

import type { FileList, ListedFile } from "../server/reports";
import { make, setText } from "./dom";
import { counted, date, size } from "./words";

// More rows than anybody looks through; typing finds the others.
const mostRows = 500;

export class FileChooser {
  readonly #filter = make("input", {
    type: "search", id: "file-filter", class: "wide", autocomplete: "off", placeholder: "Type a part of the name",
  });
  readonly #count = make("p", { class: "muted", role: "status" });
  readonly #list = make("ul", { class: "file-list", "aria-label": "Files" });
  #files: readonly ListedFile[] = [];
  #leftOut = 0;

  constructor(place: HTMLElement, readonly open: (file: ListedFile) => void,
    readonly hasWork: (file: ListedFile) => boolean) {
    place.append(make("div", { class: "chooser-inner" },
      make("h2", { text: "Choose a file" }),
      make("label", { class: "stacked", for: "file-filter" }, "Find", this.#filter), this.#count, this.#list));
    this.#filter.addEventListener("input", () => this.#draw());
    place.addEventListener("keydown", (event) => this.#key(event));
  }

  show(list: FileList): void {
    this.#filter.value = "";
    this.update(list);
    this.#filter.focus();
  }

  // The same choice with the files that there are by now.
  update({ files, leftOut }: FileList): void {
    this.#files = files;
    this.#leftOut = leftOut;
    this.#draw();
  }

  get #found(): readonly ListedFile[] {
    const words = this.#filter.value.toLowerCase().split(/\s+/);
    return this.#files.filter((file) => words.every((word) => file.name.toLowerCase().includes(word)));
  }

  #draw(): void {
    const found = this.#found;
    this.#list.replaceChildren(...found.slice(0, mostRows).map((file) => make("li", {},
      make("button", { type: "button", class: "file-row", onclick: () => this.open(file) },
        make("span", { class: "file-row-name", text: file.name }),
        this.hasWork(file) ? make("span", { class: "file-row-work", text: "not saved" }) : null,
        make("span", { class: "file-row-size", text: size(file.size) }),
        make("span", { class: "file-row-date", text: date(file.modified) })))));
    const hidden = found.length - mostRows;
    const cut = this.#leftOut === 0 ? ""
      : ` The folder has ${counted(this.#leftOut, "more file")}; to open one, name it when you start the program.`;
    setText(this.#count, (found.length === 0
      ? "No file has this in its name."
      : `${counted(found.length, "file")}${hidden > 0 ? `; the first ${mostRows} are shown` : ""}${cut === "" ? "" : "."}`) + cut);
  }

  // Arrows go through the list; Enter in the field opens the only file that is found.
  #key(event: KeyboardEvent): void {
    const rows = [...this.#list.querySelectorAll("button")];
    const at = rows.findIndex((row) => row === document.activeElement);
    const found = this.#found;
    if (event.key === "ArrowDown" || event.key === "ArrowUp") {
      const next = event.key === "ArrowDown" ? rows[at + 1] : rows[at - 1] ?? this.#filter;
      next?.focus();
      event.preventDefault();
    } else if (event.key === "Enter" && event.target === this.#filter && found.length === 1) {
      this.open(found[0] as ListedFile);
    }
  }
}
