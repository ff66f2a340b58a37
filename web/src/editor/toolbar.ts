// The buttons over the page. One of them is in the order of Tab; arrow keys go from one to the next.
import type { Command } from "./commands";
import type { Context } from "./context";
import { icon } from "./icons";

interface Button { readonly element: HTMLButtonElement; readonly command: Command }

export class Toolbar {
  readonly #context: Context;
  readonly #buttons: Button[] = [];
  readonly #zoom = document.createElement("output");

  constructor(element: HTMLElement, context: Context, groups: readonly (readonly [string, readonly Command[]])[]) {
    this.#context = context;
    element.classList.add("editor-toolbar");
    if (!element.hasAttribute("role")) element.setAttribute("role", "toolbar");
    if (!element.hasAttribute("aria-label")) element.setAttribute("aria-label", "Tools");
    for (const [name, commands] of groups) {
      // The page's header has these for all of its views.
      if (name === "Steps") continue;
      const group = document.createElement("div");
      group.className = "editor-tools";
      group.setAttribute("role", "group");
      group.setAttribute("aria-label", name);
      for (const command of commands) group.append(this.#button(command));
      if (name === "View") group.append(this.#zoom);
      element.append(group);
    }
    this.#zoom.className = "editor-zoom";
    this.#zoom.setAttribute("aria-label", "Zoom");
    this.#zoom.setAttribute("aria-live", "off");
    element.addEventListener("keydown", event => this.#key(event));
    this.#buttons.forEach(({ element: button }, i) => { button.tabIndex = i === 0 ? 0 : -1; });
    context.view.addEventListener("view", () => { this.#zoom.value = `${Math.round(context.view.zoom * 100)} %`; });
    this.refresh();
  }

  // A button that cannot be used now stays where the keyboard finds it.
  refresh(): void {
    for (const { element, command } of this.#buttons) {
      element.setAttribute("aria-disabled", String(!command.isPossible()));
      if (command.tool !== undefined) element.setAttribute("aria-pressed", String(command.tool === this.#context.tool));
    }
  }

  #button(command: Command): HTMLButtonElement {
    const button = document.createElement("button");
    button.type = "button";
    button.className = "editor-button";
    button.title = `${command.name} (${command.keys})`;
    button.setAttribute("aria-label", command.name);
    button.append(icon(command.icon));
    button.addEventListener("click", event => {
      const byKeyboard = event.detail === 0;
      if (command.isPossible()) command.run(byKeyboard);
    });
    this.#buttons.push({ element: button, command });
    return button;
  }

  #key(event: KeyboardEvent): void {
    const at = this.#buttons.findIndex(({ element }) => element === event.target);
    const count = this.#buttons.length;
    const next = { ArrowRight: at + 1, ArrowLeft: at - 1, Home: 0, End: count - 1 }[event.key];
    if (at < 0 || next === undefined) return;
    event.preventDefault();
    const target = this.#buttons[(next + count) % count]?.element;
    for (const { element } of this.#buttons) element.tabIndex = element === target ? 0 : -1;
    target?.focus();
  }
}
