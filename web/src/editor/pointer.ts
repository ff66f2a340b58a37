// The pointer on the stage: which gesture begins where, double clicks, the wheel, two fingers.
import type { Point } from "../artwork/geometry";
import type { Context } from "./context";
import { Move, Resize, Turn, type Hand } from "./drags";
import { Marquee, Pan, type Gesture } from "./gestures";
import type { HandleName } from "./handles";
import type { OverlayLayer } from "./overlay";
import { leafAt, pick } from "./pick";
import { objectAt } from "./scope";

const threshold = 3; // pixels before a click becomes a drag
const wheelLine = 40; // pixels

export interface PointerWork {
  // A gesture that draws something new, where such a tool is in hand.
  draw(at: Point): Gesture | null;
  // Whether the click is within the text that is being edited.
  placeCaret(event: PointerEvent): boolean;
  editText(element: SVGElement, event: MouseEvent): void;
}

export class Pointer {
  readonly #context: Context;
  readonly #hand: Hand;
  readonly #marquee: OverlayLayer;
  readonly #work: PointerWork;
  readonly #fingers = new Map<number, Point>();
  #gesture: Gesture | null = null;
  #waiting: (() => Gesture) | null = null;
  #click: (() => void) | null = null;
  #from: Point = { x: 0, y: 0 };
  #hasSpace = false;

  constructor(hand: Hand, work: PointerWork) {
    const { context } = hand;
    this.#context = context;
    this.#hand = hand;
    this.#work = work;
    this.#marquee = context.overlay.layer("editor-marquee");
    const { stage } = context.view;
    stage.addEventListener("pointerdown", event => this.#down(event));
    stage.addEventListener("pointermove", event => this.#moved(event));
    stage.addEventListener("pointerup", event => this.#up(event));
    stage.addEventListener("pointercancel", event => { this.#fingers.delete(event.pointerId); this.cancel(); });
    stage.addEventListener("dblclick", event => this.#doubleClick(event));
    stage.addEventListener("wheel", event => this.#wheel(event), { passive: false });
    stage.addEventListener("keydown", event => { if (event.code === "Space" && event.target === stage) this.#space(true, event); });
    stage.addEventListener("keyup", event => { if (event.code === "Space") this.#space(false, event); });
    stage.addEventListener("blur", () => this.#space(false));
  }

  get isBusy(): boolean { return this.#gesture !== null; }

  cancel(): void {
    this.#gesture?.cancel();
    this.#gesture = null;
    this.#waiting = null;
    this.#click = null;
  }

  #down(event: PointerEvent): void {
    const { view } = this.#context;
    const at = view.pointOf(event);
    if (event.pointerType === "touch") this.#fingers.set(event.pointerId, at);
    if (this.#fingers.size === 2) {
      this.cancel();
      return;
    }
    if (event.button > 1 || this.isBusy) return;
    if (this.#work.placeCaret(event)) return;
    this.#context.settle();
    view.stage.setPointerCapture(event.pointerId);
    // The wheel as a button would begin to scroll; what else the browser does is to give the stage the keyboard.
    if (event.button === 1) event.preventDefault();
    this.#from = at;
    this.#begin(at, event);
  }

  #begin(at: Point, event: PointerEvent): void {
    const context = this.#context;
    const { selection, tool } = context;
    if (event.button === 1 || this.#hasSpace || tool === "hand") {
      this.#gesture = new Pan(context, at);
      return;
    }
    const drawing = this.#work.draw(at);
    if (drawing !== null) {
      this.#gesture = drawing;
      return;
    }
    const handle = (event.target as Element).getAttribute("data-handle") as HandleName | null;
    if (handle !== null) {
      this.#gesture = handle === "turn" ? new Turn(this.#hand, at) : new Resize(this.#hand, handle, at);
      return;
    }
    const isMore = event.shiftKey || event.ctrlKey || event.metaKey;
    const hit = pick(context, event);
    if (hit === null) {
      if (event.pointerType === "touch") {
        this.#gesture = new Pan(context, at);
        this.#click = () => selection.set([]);
        return;
      }
      const kept = isMore ? selection.elements : [];
      if (!isMore) {
        selection.enter(null);
        selection.set([]);
      }
      this.#waiting = () => new Marquee(context, this.#marquee, at, kept);
      return;
    }
    if (selection.scope !== null && !selection.scope.contains(hit)) selection.enter(null);
    const was = selection.has(hit);
    if (event.pointerType === "touch" && !was) {
      this.#click = () => selection.set([hit]);
      this.#gesture = new Pan(context, at);
      return;
    }
    if (isMore) this.#click = () => selection.toggle(hit);
    else if (was) this.#click = () => selection.set([hit]);
    else selection.set([hit]);
    this.#waiting = () => {
      if (isMore && !was) selection.toggle(hit);
      return new Move(this.#hand, at);
    };
  }

  #moved(event: PointerEvent): void {
    const at = this.#context.view.pointOf(event);
    if (this.#fingers.size === 2 && this.#fingers.has(event.pointerId)) {
      this.#pinch(event.pointerId, at);
      return;
    }
    const far = Math.hypot(at.x - this.#from.x, at.y - this.#from.y) > threshold;
    if (far) this.#click = null;
    if (this.#waiting !== null && far) {
      this.#gesture = this.#waiting();
      this.#waiting = null;
    }
    this.#gesture?.move(at, event);
  }

  #up(event: PointerEvent): void {
    this.#fingers.delete(event.pointerId);
    const gesture = this.#gesture;
    const click = this.#click;
    this.#gesture = null;
    this.#waiting = null;
    this.#click = null;
    gesture?.end();
    click?.();
  }

  #pinch(moved: number, at: Point): void {
    const { view } = this.#context;
    const before = this.#fingers.get(moved);
    const other = [...this.#fingers].find(([id]) => id !== moved)?.[1];
    if (before === undefined || other === undefined) return;
    this.#fingers.set(moved, at);
    const distance = (a: Point): number => Math.hypot(a.x - other.x, a.y - other.y);
    const middle = { x: (at.x + other.x) / 2, y: (at.y + other.y) / 2 };
    view.panBy((at.x - before.x) / 2, (at.y - before.y) / 2);
    if (distance(before) > 0) view.zoomBy(distance(at) / distance(before), middle);
  }

  // Into the group, or into the text.
  #doubleClick(event: MouseEvent): void {
    const { artwork, selection, tool } = this.#context;
    const leaf = leafAt(this.#context, event);
    if (leaf === null || artwork === null || tool !== "select") return;
    const object = objectAt(leaf, artwork.root, selection.scope);
    if (object === null) return;
    if (object.localName === "text") {
      this.#work.editText(object, event);
      return;
    }
    if (object.localName !== "g" && object.localName !== "a") return;
    selection.enter(object);
    const inner = objectAt(leaf, artwork.root, object);
    selection.set(inner === null ? [object] : [inner]);
  }

  #wheel(event: WheelEvent): void {
    event.preventDefault();
    const { view } = this.#context;
    const unit = event.deltaMode === WheelEvent.DOM_DELTA_PIXEL ? 1 : wheelLine;
    const dx = event.deltaX * unit;
    const dy = event.deltaY * unit;
    if (event.ctrlKey || event.metaKey) view.zoomBy(Math.exp(-Math.max(-100, Math.min(100, dy)) / 250), view.pointOf(event));
    else if (event.shiftKey && dx === 0) view.panBy(-dy, 0);
    else view.panBy(-dx, -dy);
  }

  #space(isDown: boolean, event?: KeyboardEvent): void {
    this.#hasSpace = isDown;
    this.#context.view.stage.classList.toggle("panning", isDown);
    event?.preventDefault();
  }
}
