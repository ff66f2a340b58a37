// What the page says without being asked: a line at the bottom, and notices above the page that stay
// until they are settled.

import type { ServerFault } from "../server/fault";
import { make, setText } from "./dom";
import { icon } from "./icons";
import { plain } from "./words";

export interface Action {
  readonly label: string;
  readonly run: () => void;
}

export interface Notice {
  // A later notice of the same name takes its place.
  readonly name: string;
  readonly look: "danger" | "warn" | "good";
  readonly text: string;
  readonly actions?: readonly Action[];
}

export class Messages {
  // `line` is said politely, `notices` at once.
  constructor(readonly line: HTMLElement, readonly notices: HTMLElement) {}

  say(text: string): void {
    setText(this.line, text);
  }

  fail(name: string, doing: string, fault: ServerFault): void {
    this.notify({ name, look: "danger", text: `${doing}: ${plain(fault.sentence)}` });
  }

  notify(notice: Notice): void {
    this.settle(notice.name);
    const close = () => this.settle(notice.name);
    const buttons = (notice.actions ?? []).map(({ label, run }) =>
      make("button", { type: "button", class: "button", text: label, onclick: run }));
    const look = notice.look === "good" ? "info" : "warning";
    this.notices.append(make("div", { class: `notice ${notice.look}`, "data-name": notice.name },
      icon(look), make("p", { text: notice.text }), ...buttons,
      make("button", { type: "button", class: "icon-button", "aria-label": "Close this message", onclick: close },
        icon("close"))));
  }

  // Takes notices away: they are settled, or of a page that is not here any more.
  settle(...names: readonly string[]): void {
    for (const notice of [...this.notices.children]) {
      if (names.includes(notice.getAttribute("data-name") ?? "")) {
        notice.remove();
      }
    }
  }
}
