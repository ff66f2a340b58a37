// The parts of the editor, put together.
import { Artwork } from "../artwork/artwork";
import { pageBox } from "../artwork/geometry";
import { Arranging } from "./arrange";
import { Boxes } from "./boxes";
import { commandsOf, type Parts } from "./commands";
import type { Context, ToolName } from "./context";
import type { Gesture } from "./gestures";
import { Guides } from "./guides";
import { Handles } from "./handles";
import { Hover } from "./hover";
import { Keys } from "./keys";
import { Overlay } from "./overlay";
import { Panel } from "./panel/panel";
import { Pictures } from "./pictures";
import { Pointer } from "./pointer";
import { Selection, type SelectionDetail } from "./selection";
import { beginText, DrawShape, drawUsual } from "./shapes";
import { TextEditing } from "./text_editing";
import { Toolbar } from "./toolbar";
import { View } from "./view";
import type { Point } from "../artwork/geometry";

type Tell = (name: string, detail?: unknown) => void;

export class Workbench implements Context, Parts {
  readonly view: View;
  readonly overlay: Overlay;
  readonly boxes = new Boxes();
  readonly selection = new Selection();
  readonly arranging: Arranging;
  readonly pictures: Pictures;
  readonly #tell: Tell;
  readonly #handles: Handles;
  readonly #typing: TextEditing;
  readonly #pointer: Pointer;
  readonly #panel: Panel;
  readonly #toolbar: Toolbar;
  readonly #live = document.createElement("p");
  #artwork: Artwork | null = null;
  #tool: ToolName = "select";
  #seen: string | null = null;

  constructor(canvas: HTMLElement, panel: HTMLElement, toolbar: HTMLElement, tell: Tell) {
    this.#tell = tell;
    this.view = new View(canvas);
    this.overlay = new Overlay(this.view.stage);
    this.arranging = new Arranging(this);
    this.pictures = new Pictures(this);
    new Hover(this);
    this.#handles = new Handles(this, () => this.#typing.isActive);
    this.#typing = new TextEditing(this);
    this.#pointer = new Pointer({ context: this, handles: this.#handles, guides: new Guides(this) }, {
      draw: at => this.#draw(at),
      placeCaret: event => this.#typing.placeCaret(event),
      editText: (element, event) => this.#typing.start(element, event),
    });
    this.#panel = new Panel(panel, this, this.pictures, element => this.#typing.start(element));
    const commands = commandsOf(this);
    this.#toolbar = new Toolbar(toolbar, this, commands);
    new Keys({
      parts: this,
      cancelGesture: () => this.#cancelGesture(),
      editText: element => this.#typing.start(element),
    }, commands.flatMap(([, group]) => group));
    this.#describe(canvas);
    this.selection.addEventListener("selection", event => this.#selected((event as CustomEvent<SelectionDetail>).detail));
  }

  get context(): Context { return this; }
  get artwork(): Artwork | null { return this.#artwork; }
  get tool(): ToolName { return this.#tool; }

  set tool(tool: ToolName) {
    this.settle();
    this.#tool = tool;
    this.view.stage.dataset["tool"] = tool;
    this.#toolbar.refresh();
    this.#tell("tool", tool);
  }

  show(svg: string | null): void {
    this.#pointer.cancel();
    this.settle();
    this.selection.enter(null);
    this.selection.set([]);
    if (this.#artwork !== null) this.arranging.leave(this.#artwork);
    this.#artwork?.remove();
    this.#artwork = null;
    try {
      if (svg !== null) this.#artwork = new Artwork(svg, this.view.tree);
    } finally {
      const artwork = this.#artwork;
      this.boxes.show(artwork);
      this.#look(artwork?.root ?? null);
      artwork?.addEventListener("change", () => this.#changed());
      this.tool = "select";
      this.#changed();
    }
  }

  // The same page, opened again, is seen as it was.
  #look(root: SVGSVGElement | null): void {
    const name = root === null ? null : ["data-file", "data-page", "viewBox"].map(key => root.getAttribute(key)).join("\n");
    this.view.show(root, name !== null && name === this.#seen);
    if (name !== null) this.#seen = name;
  }

  select(elements: readonly SVGElement[]): void {
    const artwork = this.#artwork;
    if (artwork === null) return;
    this.settle();
    const inside = elements.filter(element => artwork.root.contains(element));
    this.selection.enter(null);
    this.selection.set(inside);
    const [first] = inside;
    if (first !== undefined) this.view.reveal(pageBox(artwork.root, first));
  }

  with(work: (artwork: Artwork) => void): void {
    this.settle();
    if (this.#artwork !== null) work(this.#artwork);
  }

  settle(): void {
    this.#typing.finish();
    this.#panel.settle();
    if (!this.#pointer.isBusy) this.#artwork?.commit();
  }

  undo(): void { this.#turn("Undone", artwork => artwork.undo()?.name); }
  redo(): void { this.#turn("Done again", artwork => artwork.redo()?.name); }

  take(tool: ToolName, byKeyboard: boolean): void {
    this.tool = tool;
    if (!byKeyboard) return;
    if (tool === "rectangle" || tool === "line") drawUsual(this, tool);
    else if (tool === "text") this.#newText({ x: this.view.seen.x + this.view.seen.width / 2, y: this.view.seen.y + this.view.seen.height / 2 });
    if (tool !== "hand") this.tool = "select";
    if (tool === "rectangle" || tool === "line") this.view.stage.focus();
  }

  say(sentence: string): void {
    this.#live.textContent = sentence;
    this.#tell("message", sentence);
  }

  changing(): void { this.#tell("change"); }

  #turn(what: string, work: (artwork: Artwork) => string | undefined): void {
    this.#pointer.cancel();
    this.with(artwork => {
      const name = work(artwork);
      if (name !== undefined) this.say(`${what}: ${name}.`);
    });
  }

  #draw(at: Point): Gesture | null {
    const tool = this.#tool;
    if (tool === "rectangle" || tool === "line") return new DrawShape(this, tool, at);
    if (tool !== "text") return null;
    // The letters are typed when the button is up: a press takes the keyboard to the stage.
    return { move: () => {}, end: () => this.#newText(this.view.toPage(at)), cancel: () => {} };
  }

  #newText(at: Point): void {
    this.tool = "select";
    const made = beginText(this, at);
    if (made !== null) this.#typing.start(made, undefined, true);
  }

  #cancelGesture(): boolean {
    const wasBusy = this.#pointer.isBusy;
    this.#pointer.cancel();
    return wasBusy;
  }

  #changed(): void {
    this.selection.refresh();
    this.#toolbar.refresh();
    this.#tell("change");
  }

  #selected(detail: SelectionDetail): void {
    this.#panel.refresh();
    this.#toolbar.refresh();
    if (!this.#typing.isActive) this.#live.textContent = [detail.words, ...new Set(detail.limits.map(limit => limit.sentence))].join(". ");
    this.#tell("selection", detail);
  }

  #describe(canvas: HTMLElement): void {
    const { stage } = this.view;
    stage.tabIndex = 0;
    stage.setAttribute("role", "application");
    stage.setAttribute("aria-label", "Artwork of the page");
    const help = document.createElement("p");
    help.id = "editor-help";
    help.className = "editor-unseen";
    help.textContent = "Tab goes from object to object. Enter goes into a group or a text, Escape out again. Escape with nothing selected, then Tab, leaves the page.";
    stage.setAttribute("aria-describedby", help.id);
    this.#live.className = "editor-unseen";
    this.#live.setAttribute("aria-live", "polite");
    canvas.append(help, this.#live);
  }
}
