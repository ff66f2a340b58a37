// What the rest of the page knows of the editor.

export interface Layer {
  readonly element: SVGGElement;
  readonly name: string;
  readonly isHidden: boolean;
  readonly isLocked: boolean;
  // 0 for a layer of the page, 1 for one inside it, and so on.
  readonly depth: number;
  // The layer is shown for orientation: what is in it cannot be changed.
  readonly isAnnotations: boolean;
}

// Why something that is selected cannot be changed (all of it, or in part).
export interface Limit {
  readonly element: SVGElement;
  readonly sentence: string;
}

export interface SelectionDetail {
  readonly elements: readonly SVGElement[];
  // What is selected, in words for a screen reader: "2 paths and 1 text".
  readonly words: string;
  readonly limits: readonly Limit[];
}

// Events:
//   "change"     the artwork was changed, undone or redone, or is another one
//   "selection"  CustomEvent<SelectionDetail>
//   "tool"       CustomEvent<string>: the name of the tool in hand
//   "message"    CustomEvent<string>: a sentence for the person
export interface Editor extends EventTarget {
  show(svg: string): void;
  clear(): void;
  text(): string;
  readonly isChanged: boolean;
  markSaved(): void;
  readonly selection: readonly SVGElement[];
  select(elements: readonly SVGElement[]): void;
  readonly layers: readonly Layer[];
  setLayerHidden(layer: Layer, isHidden: boolean): void;
  setLayerLocked(layer: Layer, isLocked: boolean): void;
  undo(): void;
  redo(): void;
  readonly canUndo: boolean;
  readonly canRedo: boolean;
  readonly root: SVGSVGElement | null;
}

export function makeEditor(canvas: HTMLElement, panel: HTMLElement, toolbar: HTMLElement): Editor {
  canvas.classList.add("canvas");
  panel.classList.add("panel");
  toolbar.classList.add("toolbar");
  throw new Error("not here yet");
}
