// What the rest of the page knows of the editor.
import { layersOf, setHidden, setLocked, type Layer } from "../artwork/layers";
import { Workbench } from "./workbench";

export { keyHelp } from "./key_help";
export type { Layer } from "../artwork/layers";
export type { Limit, SelectionDetail } from "./selection";

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
  return new PageEditor(canvas, panel, toolbar);
}

class PageEditor extends EventTarget implements Editor {
  readonly #bench: Workbench;

  constructor(canvas: HTMLElement, panel: HTMLElement, toolbar: HTMLElement) {
    super();
    const tell = (name: string, detail?: unknown): void => { this.dispatchEvent(new CustomEvent(name, { detail })); };
    this.#bench = new Workbench(canvas, panel, toolbar, tell);
  }

  get root(): SVGSVGElement | null { return this.#bench.artwork?.root ?? null; }
  get isChanged(): boolean { return this.#bench.artwork?.isChanged === true; }
  get canUndo(): boolean { return this.#bench.artwork?.canUndo === true; }
  get canRedo(): boolean { return this.#bench.artwork?.canRedo === true; }
  get selection(): readonly SVGElement[] { return this.#bench.selection.elements; }
  get layers(): readonly Layer[] { return this.root === null ? [] : layersOf(this.root); }

  show(svg: string): void { this.#bench.show(svg); }
  clear(): void { this.#bench.show(null); }
  undo(): void { this.#bench.undo(); }
  redo(): void { this.#bench.redo(); }
  select(elements: readonly SVGElement[]): void { this.#bench.select(elements); }

  text(): string {
    this.#bench.settle();
    return this.#bench.artwork?.text() ?? "";
  }

  markSaved(): void {
    this.#bench.artwork?.markSaved();
    this.dispatchEvent(new CustomEvent("change"));
  }

  setLayerHidden(layer: Layer, isHidden: boolean): void { this.#bench.with(artwork => setHidden(artwork, layer, isHidden)); }
  setLayerLocked(layer: Layer, isLocked: boolean): void { this.#bench.with(artwork => setLocked(artwork, layer, isLocked)); }
}
