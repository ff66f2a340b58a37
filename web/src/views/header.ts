// The line at the top: which file and page, what can be done, and whether all is saved.

import { make, setText } from "./dom";
import { icon } from "./icons";
import type { Icon } from "./icons";
import { number } from "./words";

// How the work of the page stands.
export type SaveState = "none" | "unchanged" | "changed" | "saving" | "saved" | "failed";

const stateTexts: Readonly<Record<SaveState, string>> = {
  none: "", unchanged: "No changes", changed: "Not saved", saving: "Saving ...", saved: "Saved", failed: "Not saved",
};

function iconButton(name: Icon, label: string, keys = ""): HTMLButtonElement {
  const hint = keys === "" ? label : `${label} (${keys})`;
  return make("button", {
    type: "button", class: "icon-button", "aria-label": label, title: hint,
    "aria-keyshortcuts": keys === "" ? undefined : keys.replaceAll("Ctrl", "Control"),
  }, icon(name));
}

export class Header {
  readonly files = make("button", { type: "button", class: "button files-button", hidden: true }, icon("files"), "Files");
  readonly previous = iconButton("back", "Page before", "PageUp");
  readonly next = iconButton("next", "Next page", "PageDown");
  readonly page = make("input", {
    class: "page-number", "aria-label": "Page", autocomplete: "off", size: 4,
  });
  readonly undo = iconButton("undo", "Undo", "Ctrl+Z");
  readonly redo = iconButton("redo", "Redo", "Ctrl+Shift+Z");
  readonly history = make("button", { type: "button", class: "button" }, icon("history"), "History");
  readonly download = iconButton("download", "Download the artwork as SVG");
  readonly theme = iconButton("theme", "Dark or light");
  readonly help = iconButton("help", "Help on keys", "F1");
  readonly save = make("button", {
    type: "button", class: "button primary", text: "Save", title: "Save (Ctrl+S)", "aria-keyshortcuts": "Control+S",
  });
  readonly element: HTMLElement;
  readonly #name = make("h1", { class: "file-name", text: "Corvane" });
  readonly #count = make("span", { class: "page-count" });
  readonly #state = make("span", { class: "save-state", role: "status" });
  readonly #work: HTMLElement;

  constructor() {
    this.#work = make("div", { class: "header-work" },
      make("div", { class: "page-steps", role: "group", "aria-label": "Page" },
        this.previous, this.page, this.#count, this.next),
      make("div", { class: "header-actions" },
        this.undo, this.redo, make("span", { class: "rule" }), this.history, this.download));
    this.element = make("header", { class: "header" },
      this.files, this.#name, this.#work, this.#state, this.save, make("span", { class: "rule" }), this.theme, this.help);
  }

  // `name` null: no file is open.
  showFile(name: string | null): void {
    setText(this.#name, name ?? "Corvane");
    this.#name.title = name ?? "";
    document.title = name === null ? "Corvane" : `${name} - Corvane`;
    this.#work.hidden = name === null;
    this.save.hidden = name === null;
    this.#state.hidden = name === null;
  }

  showPage(page: number, count: number, label: string | undefined): void {
    this.page.value = String(page);
    setText(this.#count, `of ${number(count)}${label === undefined ? "" : ` (${label})`}`);
    this.previous.disabled = page <= 1;
    this.next.disabled = page >= count;
  }

  showState(state: SaveState): void {
    setText(this.#state, stateTexts[state]);
    this.#state.dataset["state"] = state;
    this.save.disabled = state === "saving" || state === "none";
  }

  get state(): SaveState {
    return (this.#state.dataset["state"] ?? "none") as SaveState;
  }
}
