// The frame of the page: header, pages on the left, canvas in the middle, panels on the right, a
// status line below.

import type { Editor } from "../editor/editor";
import { Server } from "../server/api";
import { make } from "./dom";
import { Header } from "./header";
import type { KeyHelp } from "./help";
import { Messages } from "./messages";
import { restoreTheme } from "./theme";
import { startViews } from "./views";

export interface Shell {
  readonly header: Header;
  readonly pages: HTMLElement;
  readonly canvas: HTMLElement;
  readonly toolbar: HTMLElement;
  readonly panel: HTMLElement;
  readonly limits: HTMLElement;
  readonly layers: HTMLElement;
  readonly notes: HTMLElement;
  // Where files are chosen; it takes the place of all below the header.
  readonly chooser: HTMLElement;
  readonly desk: HTMLElement;
  readonly messages: Messages;
  readonly selectionLine: HTMLElement;
  // `keys` are the editor's, for the help.
  start(editor: Editor, keys?: readonly KeyHelp[]): void;
}

function section(name: string, title: string, body: HTMLElement): HTMLElement {
  return make("details", { class: `section ${name}`, open: true },
    make("summary", {}, make("h2", { text: title }), make("span", { class: "badge", hidden: true })), body);
}

export function makeShell(body: HTMLElement): Shell {
  restoreTheme();
  const header = new Header();
  const pages = make("nav", { class: "pages", "aria-label": "Pages" });
  const toolbar = make("div", { class: "toolbar", role: "toolbar", "aria-label": "Tools" });
  const canvas = make("div", { class: "canvas" });
  const notices = make("div", { class: "notices", role: "alert" });
  const panel = make("div", { class: "panel" });
  const limits = make("div", { class: "limits", role: "status" });
  const layers = make("div", { class: "layers" });
  const notes = make("div", { class: "notes" });
  const line = make("p", { class: "line", role: "status", "aria-live": "polite" });
  const selectionLine = make("p", { class: "line selected" });
  const desk = make("div", { class: "desk" },
    pages,
    make("main", { class: "middle", "aria-label": "Page" }, toolbar, notices, canvas),
    make("aside", { class: "right", "aria-label": "Properties, layers and notes" },
      make("div", { class: "properties" }, limits, panel),
      make("div", { class: "sections" },
        section("layers-section", "Layers", layers), section("notes-section", "About this page", notes))));
  const chooser = make("main", { class: "chooser", "aria-label": "Files", hidden: true });
  body.replaceChildren(header.element, desk, chooser,
    make("footer", { class: "status" }, line, selectionLine));
  const shell: Shell = {
    header, pages, canvas, toolbar, panel, limits, layers, notes, chooser, desk, selectionLine,
    messages: new Messages(line, notices),
    start: (editor, keys = []) => startViews(shell, editor, new Server(), keys),
  };
  return shell;
}
