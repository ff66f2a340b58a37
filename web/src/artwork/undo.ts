// What was done, and can be undone. A step holds old and new values of what it changed, and nothing else.
import { writeAttribute } from "./names";

interface Place { readonly parent: Node; readonly before: Node | null }

export type Change =
  | { readonly kind: "attribute"; readonly node: Element; readonly name: string; readonly from: string | null; to: string | null }
  | { readonly kind: "data"; readonly node: CharacterData; readonly from: string; to: string }
  | { readonly kind: "place"; readonly node: Node; readonly from: Place | null; readonly to: Place | null };

export interface Step {
  readonly name: string;
  readonly changes: Change[];
}

export function apply(change: Change, isForward: boolean): void {
  if (change.kind === "attribute") {
    writeAttribute(change.node, change.name, isForward ? change.to : change.from);
  } else if (change.kind === "data") {
    change.node.data = isForward ? change.to : change.from;
  } else {
    const place = isForward ? change.to : change.from;
    if (place === null) change.node.parentNode?.removeChild(change.node);
    else place.parent.insertBefore(change.node, place.before);
  }
}

export class History {
  #done: Step[] = [];
  #undone: Step[] = [];
  #saved: Step | undefined;

  get canUndo(): boolean { return this.#done.length > 0; }
  get canRedo(): boolean { return this.#undone.length > 0; }
  get isChanged(): boolean { return this.#done.at(-1) !== this.#saved; }

  markSaved(): void { this.#saved = this.#done.at(-1); }

  push(step: Step): void {
    this.#done.push(step);
    this.#undone = [];
  }

  undo(): Step | undefined {
    const step = this.#done.pop();
    if (step === undefined) return undefined;
    this.#undone.push(step);
    for (const change of [...step.changes].reverse()) apply(change, false);
    return step;
  }

  redo(): Step | undefined {
    const step = this.#undone.pop();
    if (step === undefined) return undefined;
    this.#done.push(step);
    for (const change of step.changes) apply(change, true);
    return step;
  }
}
