// Letters typed in place. The keyboard writes into a field that is not seen; what is seen are the very letters of the
// artwork, with a caret over them.
import { cornersOf, pageMatrix, type Box } from "../artwork/geometry";
import { Letters } from "../artwork/letters";
import { isEditable } from "../artwork/kinds";
import type { Context } from "./context";
import type { OverlayLayer } from "./overlay";

const fallbackSize = 12;

export class TextEditing {
  readonly #context: Context;
  readonly #layer: OverlayLayer;
  readonly #field: HTMLInputElement;
  #letters: Letters | null = null;
  #isNew = false;

  constructor(context: Context) {
    this.#context = context;
    this.#layer = context.overlay.layer("editor-caret");
    this.#field = document.createElement("input");
    Object.assign(this.#field, { type: "text", className: "editor-letters", autocomplete: "off", spellcheck: false, hidden: true });
    this.#field.setAttribute("aria-label", "Letters of the text");
    context.view.stage.append(this.#field);
    this.#field.addEventListener("input", () => this.#typed());
    this.#field.addEventListener("keydown", event => this.#key(event));
    this.#field.addEventListener("blur", () => this.finish());
    document.addEventListener("selectionchange", () => this.#draw());
    context.view.addEventListener("view", () => this.#draw());
  }

  get isActive(): boolean { return this.#letters !== null; }
  get element(): SVGTextElement | null { return this.#letters?.element ?? null; }

  // Begins at the point of the pointer, or with all letters selected. A text that is new is gone again if nothing is typed.
  start(element: SVGElement, at?: { readonly clientX: number; readonly clientY: number }, isNew = false): void {
    const { artwork, selection } = this.#context;
    if (!(element instanceof SVGTextElement) || artwork === null) return;
    if (!isEditable(element)) return;
    this.finish();
    artwork.begin(isNew ? "New text" : "Change text");
    selection.set([element]);
    this.#letters = new Letters(artwork, element);
    this.#isNew = isNew;
    this.#field.hidden = false;
    this.#field.value = this.#letters.string;
    this.#field.focus({ preventScroll: true });
    if (at === undefined) this.#field.select();
    else this.#caretTo(at);
    this.#context.say("Type to change the text. Enter or Escape when done.");
    this.#draw();
  }

  // What was typed counts; an empty text goes.
  finish(): void {
    const letters = this.#letters;
    const { artwork, selection } = this.#context;
    if (letters === null || artwork === null) return;
    this.#letters = null;
    this.#layer.clear();
    this.#context.say("");
    const hadFocus = document.activeElement === this.#field;
    this.#field.hidden = true;
    const isEmpty = letters.string === "";
    if (isEmpty && this.#isNew) {
      artwork.cancel();
      selection.set([]);
    } else {
      if (isEmpty) artwork.delete(letters.element);
      else letters.tidy();
      artwork.commit();
      selection.refresh();
    }
    if (hadFocus) this.#context.view.stage.focus({ preventScroll: true });
  }

  // The stage's pointer: into the letters, with Shift to select up to there. False where it is elsewhere.
  placeCaret(event: PointerEvent): boolean {
    const letters = this.#letters;
    if (letters === null) return false;
    const { view, artwork } = this.#context;
    if (artwork === null) return false;
    const box = letters.element.getBBox();
    const point = this.#pointIn(letters.element, event);
    const slack = 4 / view.zoom;
    if (point.x < box.x - slack || point.x > box.x + box.width + slack || point.y < box.y - slack || point.y > box.y + box.height + slack) return false;
    event.preventDefault();
    this.#caretTo(event, event.shiftKey);
    const anchor = this.#field.selectionStart ?? 0;
    const stage = view.stage;
    const drag = (moved: PointerEvent): void => this.#select(anchor, this.#indexAt(moved));
    const stop = (): void => stage.removeEventListener("pointermove", drag);
    stage.addEventListener("pointermove", drag);
    stage.addEventListener("pointerup", stop, { once: true });
    return true;
  }

  #typed(): void {
    this.#letters?.become(this.#field.value);
    const { artwork, selection } = this.#context;
    if (artwork !== null) selection.refresh();
    this.#context.changing();
    this.#draw();
  }

  #key(event: KeyboardEvent): void {
    // Letters are for the text alone; Ctrl+S and the like are for the page.
    if (!event.ctrlKey && !event.metaKey && !/^F\d/.test(event.key)) event.stopPropagation();
    if (event.key !== "Enter" && event.key !== "Escape" && event.key !== "Tab") return;
    if (event.isComposing) return;
    event.preventDefault();
    this.finish();
  }

  #caretTo(at: { readonly clientX: number; readonly clientY: number }, extends_ = false): void {
    const index = this.#indexAt(at);
    this.#select(extends_ ? this.#field.selectionStart ?? index : index, index);
  }

  #select(anchor: number, index: number): void {
    this.#field.setSelectionRange(Math.min(anchor, index), Math.max(anchor, index), index < anchor ? "backward" : "forward");
    this.#draw();
  }

  #pointIn(element: SVGTextElement, at: { readonly clientX: number; readonly clientY: number }): DOMPoint {
    const { view, artwork } = this.#context;
    const page = view.toPage(view.pointOf(at));
    const matrix = artwork === null ? new DOMMatrix() : pageMatrix(artwork.root, element);
    return matrix.inverse().transformPoint(page);
  }

  #indexAt(at: { readonly clientX: number; readonly clientY: number }): number {
    const element = this.#letters?.element;
    if (element === undefined) return 0;
    const point = this.#pointIn(element, at);
    let best = 0;
    let least = Infinity;
    for (let i = 0; i < element.getNumberOfChars(); ++i) {
      const { x, width } = element.getExtentOfChar(i);
      for (const [index, edge] of [[i, x], [i + 1, x + width]] as const) {
        if (Math.abs(edge - point.x) < least) {
          least = Math.abs(edge - point.x);
          best = index;
        }
      }
    }
    return best;
  }

  #draw(): void {
    const letters = this.#letters;
    const { artwork, view } = this.#context;
    this.#layer.clear();
    if (letters === null || artwork === null) return;
    const { element } = letters;
    const matrix = view.matrix.multiply(pageMatrix(artwork.root, element));
    const start = this.#field.selectionStart ?? 0;
    const end = this.#field.selectionEnd ?? start;
    const count = element.getNumberOfChars();
    for (let i = start; i < Math.min(end, count); ++i) this.#layer.polygon(cornersOf(element.getExtentOfChar(i), matrix), "chosen");
    const index = this.#field.selectionDirection === "backward" ? start : end;
    const caret = caretBox(element, index, count);
    const top = matrix.transformPoint({ x: caret.x, y: caret.y });
    const bottom = matrix.transformPoint({ x: caret.x, y: caret.y + caret.height });
    this.#layer.line(top, bottom, "caret");
    Object.assign(this.#field.style, { left: `${bottom.x}px`, top: `${bottom.y}px` });
  }
}

function caretBox(element: SVGTextElement, index: number, count: number): Box {
  if (count === 0) {
    const size = parseFloat(getComputedStyle(element).fontSize) || fallbackSize;
    const x = element.x.baseVal[0]?.value ?? 0;
    const y = element.y.baseVal[0]?.value ?? 0;
    return { x, y: y - size * 0.8, width: 0, height: size };
  }
  const at = Math.min(index, count - 1);
  const { x, y, width, height } = element.getExtentOfChar(at);
  return { x: index > at ? x + width : x, y, width: 0, height };
}
