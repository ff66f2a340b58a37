// Questions and longer messages, as <dialog> elements: modal, closed by Escape, the focus goes back
// to where it was.

import { make } from "./dom";
import { icon } from "./icons";

export interface Choice<Answer> {
  readonly answer: Answer;
  readonly label: string;
  // "primary" has the focus at first; where there is none, the last that is no danger.
  readonly look?: "primary" | "danger";
}

let lastId = 0;

// An open dialog. It stays in the document until it is closed.
export class Dialog {
  readonly element: HTMLDialogElement;
  readonly body = make("div", { class: "dialog-body" });
  readonly #heading: HTMLHeadingElement;
  readonly #buttons = make("div", { class: "dialog-buttons" });
  readonly #closed: Promise<void>;
  readonly #closer: HTMLButtonElement;

  constructor(title: string, look = "") {
    const id = `dialog-${++lastId}`;
    this.#heading = make("h2", { id, text: title });
    this.#closer = make("button", {
      type: "button", class: "icon-button", "aria-label": "Close", onclick: () => this.close(),
    }, icon("close"));
    this.element = make("dialog", { class: `dialog ${look}`, "aria-labelledby": id },
      make("div", { class: "dialog-head" }, this.#heading, this.#closer), this.body, this.#buttons);
    this.element.addEventListener("cancel", (event) => {
      if (this.#closer.disabled) {
        event.preventDefault();
      }
    });
    const opener = document.activeElement;
    this.#closed = new Promise((resolve) => {
      this.element.addEventListener("close", () => {
        this.element.remove();
        if (opener instanceof HTMLElement && opener.isConnected) {
          opener.focus();
        }
        resolve();
      });
    });
    document.body.append(this.element);
    this.element.showModal();
    // Buttons below take room from it, and so does a smaller window.
    new ResizeObserver(() => this.#letScroll()).observe(this.body);
  }

  get closed(): Promise<void> {
    return this.#closed;
  }

  set title(text: string) {
    this.#heading.textContent = text;
  }

  // Other contents; what had the focus is gone, so the first field or the main button has it.
  fill(...children: (Node | string)[]): void {
    this.#closer.disabled = false;
    this.body.replaceChildren(...children);
    this.#letScroll();
    this.body.querySelector<HTMLElement>("[autofocus]")?.focus();
  }

  // Keys scroll what is higher than the window.
  #letScroll(): void {
    this.body.tabIndex = this.body.scrollHeight > this.body.clientHeight ? 0 : -1;
  }

  // Shows buttons, and waits until one is pressed or the dialog is closed: then undefined.
  async choose<Answer>(choices: readonly Choice<Answer>[]): Promise<Answer | undefined> {
    return new Promise((resolve) => {
      const buttons = choices.map(({ answer, label, look }) => make("button", {
        type: "button", class: `button ${look ?? ""}`, text: label, onclick: () => resolve(answer),
      }));
      this.#buttons.replaceChildren(...buttons);
      const main = choices.findIndex((choice) => choice.look === "primary");
      const harmless = choices.findLastIndex((choice) => choice.look !== "danger");
      if (this.body.querySelector("[autofocus]") === null) {
        buttons[main < 0 ? harmless : main]?.focus();
      }
      void this.#closed.then(() => resolve(undefined));
    });
  }

  // Says that something is being done; no buttons but that which closes.
  wait(text: string): void {
    this.#buttons.replaceChildren();
    this.fill(make("p", { class: "waiting", role: "status" }, make("span", { class: "spinner" }), text));
  }

  // The same, for what cannot be stopped: the dialog stays until it is done.
  hold(text: string): void {
    this.wait(text);
    this.#closer.disabled = true;
  }

  close(): void {
    this.element.close();
  }
}

// A question of a sentence or two.
export async function ask<Answer>(
  title: string, text: string | Node, choices: readonly Choice<Answer>[]): Promise<Answer | undefined> {
  const dialog = new Dialog(title);
  dialog.fill(typeof text === "string" ? make("p", { text }) : text);
  const answer = await dialog.choose(choices);
  dialog.close();
  return answer;
}
