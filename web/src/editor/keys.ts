// The keys of the page.
import type { Box } from "../artwork/geometry";
import { graphicChildren } from "../artwork/kinds";
import { change, moveMatrix } from "./changing";
import type { Arranging } from "./arrange";
import type { Command, Parts } from "./commands";
import { groupAround } from "./scope";

const small = 1; // points an arrow key moves
const large = 10; // the same with Shift
const panStep = 60; // pixels

export interface KeyWork {
  readonly parts: Parts;
  // Ends a gesture; false where there is none.
  cancelGesture(): boolean;
  editText(element: SVGElement): void;
}

export class Keys {
  readonly #work: KeyWork;
  readonly #byKey = new Map<string, Command>();
  #leaves = false;
  #kept: readonly SVGElement[] = [];

  constructor(work: KeyWork, commands: readonly Command[]) {
    this.#work = work;
    for (const command of commands) this.#byKey.set(keyOf(command.keys), command);
    const { stage } = work.parts.context.view;
    stage.addEventListener("keydown", event => { if (event.target === stage) this.#onStage(event); });
    work.parts.context.selection.addEventListener("selection", () => {
      this.#leaves = false;
      if (!this.#kept.every(element => work.parts.context.selection.has(element))) this.#kept = [];
    });
    stage.addEventListener("focus", () => { this.#leaves = false; });
    document.addEventListener("keydown", event => this.#anywhere(event));
  }

  // Undo and redo wherever the keyboard is, but in fields, which have an undo of their own.
  #anywhere(event: KeyboardEvent): void {
    if (event.defaultPrevented || isField(event.target) || document.querySelector("dialog[open]") !== null) return;
    const name = nameOf(event);
    const command = name === "Ctrl+Y" ? this.#byKey.get("Ctrl+Shift+Z") : this.#byKey.get(name);
    if (command?.name !== "Undo" && command?.name !== "Redo") return;
    event.preventDefault();
    command.run(true);
  }

  #onStage(event: KeyboardEvent): void {
    if (this.#own(event) || this.#command(event)) event.preventDefault();
  }

  #command(event: KeyboardEvent): boolean {
    const command = this.#byKey.get(nameOf(event));
    if (command === undefined) return false;
    if (command.isPossible()) command.run(command.tool !== undefined && command.tool === this.#work.parts.context.tool);
    return true;
  }

  #own(event: KeyboardEvent): boolean {
    const { context, arranging } = this.#work.parts;
    switch (nameOf(event)) {
      case "Escape": return this.#escape();
      case "Tab": return this.#tab(1);
      case "Shift+Tab": return this.#tab(-1);
      case "Enter": case "F2": return this.#enter();
      case "Backspace": arranging.delete(); return true;
      case "Ctrl+A": context.selection.set(context.boxes.objects(context.selection.scope)); return true;
      case "A": return this.#keep();
      case "1": context.view.zoomTo(1); return true;
      case "=": context.view.zoomBy(1.25); return true;
      default: return this.#clipboard(event, arranging) || this.#arrow(event);
    }
  }

  #clipboard(event: KeyboardEvent, arranging: Arranging): boolean {
    switch (nameOf(event)) {
      case "Ctrl+C": arranging.copy(); return true;
      case "Ctrl+X": arranging.cut(); return true;
      case "Ctrl+V": arranging.paste(); return true;
      default: return false;
    }
  }

  #arrow(event: KeyboardEvent): boolean {
    const direction = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1] }[event.key];
    const [x, y] = direction ?? [];
    if (x === undefined || y === undefined) return false;
    const { context } = this.#work.parts;
    if (event.ctrlKey || event.metaKey || context.selection.editable.length === 0) {
      context.view.panBy(-x * panStep, -y * panStep);
    } else {
      const step = event.shiftKey ? large : small;
      change(context, "Move", moveMatrix(x * step, y * step));
    }
    return true;
  }

  // Out of what is going on, then out of the group, then nothing is selected, then Tab leaves the page.
  #escape(): boolean {
    const { context } = this.#work.parts;
    const { selection, artwork } = context;
    if (this.#work.cancelGesture()) return true;
    if (context.tool !== "select") {
      context.tool = "select";
      return true;
    }
    const [first] = selection.elements;
    const group = first === undefined || artwork === null ? null : groupAround(first, artwork.root);
    if (group !== null && artwork !== null) {
      selection.enter(groupAround(group, artwork.root));
      selection.set([group]);
    } else if (first !== undefined) {
      selection.enter(null);
      selection.set([]);
    } else {
      this.#leaves = true;
      context.say("Tab leaves the page.");
    }
    return true;
  }

  #tab(step: number): boolean {
    const { context } = this.#work.parts;
    if (this.#leaves) return false;
    const objects = context.boxes.objects(context.selection.scope);
    const last = context.selection.elements.at(-1);
    const at = last === undefined ? (step > 0 ? -1 : objects.length) : objects.indexOf(last as SVGGraphicsElement);
    const next = objects[at + step];
    if (next === undefined) return false;
    context.selection.set([...this.#kept, next]);
    this.#reveal(context.boxes.of(next));
    return true;
  }

  // Keys select several things: what is kept stays selected while Tab goes on.
  #keep(): boolean {
    const { context } = this.#work.parts;
    this.#kept = context.selection.elements;
    if (this.#kept.length > 0) context.say("Tab adds to what is selected.");
    return true;
  }

  #reveal(box: Box): void { this.#work.parts.context.view.reveal(box); }

  #enter(): boolean {
    const { context } = this.#work.parts;
    const [only] = context.selection.elements;
    if (only === undefined || context.selection.elements.length > 1) return false;
    if (only.localName === "text") {
      this.#work.editText(only);
      return true;
    }
    const [first] = only.localName === "g" ? graphicChildren(only) : [];
    if (first === undefined) return false;
    context.selection.enter(only);
    context.selection.set([first]);
    return true;
  }
}

function isField(target: EventTarget | null): boolean {
  return target instanceof HTMLElement && (target.isContentEditable || /^(input|textarea|select)$/i.test(target.localName)) &&
    !(target instanceof HTMLInputElement && /^(checkbox|radio|button|color|range)$/.test(target.type));
}

// "Ctrl+Shift+Z"; the command key of a Mac counts as Ctrl.
function nameOf(event: KeyboardEvent): string {
  const shifted: Readonly<Record<string, string>> = { "{": "[", "}": "]", "_": "-" };
  const bare = event.key === " " ? "Space" : shifted[event.key] ?? event.key;
  const key = bare.length === 1 ? bare.toUpperCase() : bare;
  const shift = event.shiftKey && key !== "+" && !(bare.length === 1 && !event.ctrlKey && !event.metaKey);
  return `${event.ctrlKey || event.metaKey ? "Ctrl+" : ""}${shift ? "Shift+" : ""}${key}`;
}

function keyOf(shown: string): string { return shown.replace("−", "-"); }
