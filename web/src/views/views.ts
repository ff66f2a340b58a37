// Puts the views together: which one is shown, and what keys and buttons do.

import type { Editor, SelectionDetail } from "../editor/editor";
import { Heartbeat } from "../server/alive";
import type { Server } from "../server/api";
import { asFault, isAborted } from "../server/fault";
import type { FileList, ListedFile } from "../server/reports";
import { Desk } from "./desk";
import { make, takesText } from "./dom";
import { downloadWork, namedPage, pageAddress } from "./elsewhere";
import { FileChooser } from "./files";
import { showHelp } from "./help";
import type { KeyHelp } from "./help";
import { HistoryView } from "./history";
import { LayerList } from "./layers";
import { guardTab, mayLeave } from "./leaving";
import { watchServer } from "./lost";
import { showNotes } from "./notes";
import { labelOf, meantPage } from "./pages/page_labels";
import { PageList } from "./pages/pages";
import { Saving } from "./saving";
import type { Shell } from "./shell";
import { switchTheme } from "./theme";
import { Watch } from "./watch";

class Views {
  readonly #desk: Desk;
  readonly #saving: Saving;
  readonly #history: HistoryView;
  readonly #layers: LayerList;
  readonly #chooser: FileChooser;
  readonly #heartbeat: Heartbeat;
  #list: FileList = { version: "", files: [], leftOut: 0, start: "" };
  // The file and page that the header speaks of.
  #place = "";
  #isLeaving = false;

  constructor(readonly shell: Shell, readonly editor: Editor, readonly server: Server, readonly keys: readonly KeyHelp[]) {
    this.#heartbeat = new Heartbeat(server);
    this.#desk = new Desk(server, editor);
    this.#saving = new Saving(this.#desk, shell.header, shell.messages);
    this.#history = new HistoryView(this.#desk, shell.messages);
    const list = new PageList(this.#desk, shell.pages, (page) => void this.#go(page));
    this.#heartbeat.addEventListener("found", () => list.retry());
    this.#layers = new LayerList(editor, shell.layers, badgeOf(shell.layers));
    this.#chooser = new FileChooser(shell.chooser, (file) => void this.#openFile(file, 1),
      (file) => this.#desk.hasWorkIn(file.id));
    new Watch(this.#desk, shell.messages, this.#heartbeat);
    watchServer(this.#heartbeat, this.#desk, shell.messages);
    guardTab(this.#desk);
    this.#follow();
    this.#listen();
  }

  // The file and page of the address; else the only file; else the choice.
  async start(): Promise<void> {
    this.shell.header.showFile(null);
    try {
      this.#list = await this.server.files();
    } catch (error) {
      this.#fail("The files cannot be listed", error);
      return;
    } finally {
      void this.#heartbeat.beat();
    }
    const named = namedPage(location.hash);
    const file = this.#list.files.find(({ id }) => id === named?.file) ?? (this.#list.files.length === 1 ? this.#list.files[0] : undefined);
    if (file === undefined) {
      this.#choose();
    } else {
      await this.#openFile(file, named?.page ?? 1);
    }
  }

  // What is shown follows the desk and the editor.
  #follow(): void {
    const { shell, editor } = this;
    const desk = this.#desk;
    const { header } = shell;
    desk.addEventListener("file", () => {
      header.showFile(desk.file?.name ?? null);
      header.files.hidden = this.#list.files.length < 2 || desk.file === null;
      this.#showPage();
    });
    desk.addEventListener("page", () => this.#showPage());
    desk.addEventListener("busy", () => shell.canvas.setAttribute("aria-busy", String(desk.isBusy)));
    desk.addEventListener("work", () => this.#showState());
    editor.addEventListener("change", () => {
      header.undo.disabled = !editor.canUndo;
      header.redo.disabled = !editor.canRedo;
    });
    editor.addEventListener("selection", (event) => this.#showSelection((event as CustomEvent<SelectionDetail>).detail));
    editor.addEventListener("message", (event) => shell.messages.say((event as CustomEvent<string>).detail));
  }

  #showPage(): void {
    const { shell } = this;
    const desk = this.#desk;
    const facts = desk.pages[desk.page - 1];
    if (desk.file !== null) {
      shell.header.showPage(Math.max(desk.page, 1), desk.pages.length, labelOf(facts));
      if (desk.page > 0) {
        history.replaceState(null, "", pageAddress(desk.file.id, desk.page));
      }
    }
    const place = `${desk.file?.id ?? ""}/${desk.page}`;
    if (place !== this.#place) {
      this.#place = place;
      shell.header.showState("none");
    }
    showNotes(shell.notes, badgeOf(shell.notes), desk.report, desk.info);
    this.#layers.draw();
    this.#showState();
    shell.header.undo.disabled = !this.editor.canUndo;
    shell.header.redo.disabled = !this.editor.canRedo;
    shell.header.download.disabled = desk.report === null;
  }

  // "Saved" and "Not saved" of a refused save stay until something is changed.
  #showState(): void {
    const { header } = this.shell;
    const desk = this.#desk;
    if (desk.report === null) {
      header.showState("none");
    } else if (desk.isUnsaved(desk.page)) {
      header.showState(header.state === "failed" ? "failed" : "changed");
    } else if (header.state !== "saved" && header.state !== "saving") {
      header.showState("unchanged");
    }
  }

  #showSelection(detail: SelectionDetail): void {
    this.shell.selectionLine.textContent = detail.words;
    const sentences = [...new Set(detail.limits.map((limit) => limit.sentence))];
    this.shell.limits.replaceChildren(...sentences.map((sentence) => make("p", { text: sentence })));
  }

  #listen(): void {
    const { header } = this.shell;
    const desk = this.#desk;
    header.files.addEventListener("click", () => void this.#leave(() => this.#choose()));
    header.previous.addEventListener("click", () => void this.#go(desk.page - 1));
    header.next.addEventListener("click", () => void this.#go(desk.page + 1));
    header.page.addEventListener("keydown", (event) => {
      if (event.key === "Enter") {
        void this.#go(meantPage(header.page.value, desk.pages) ?? 0);
      }
    });
    header.page.addEventListener("blur", () => this.#showPage());
    header.page.addEventListener("focus", () => header.page.select());
    header.undo.addEventListener("click", () => this.editor.undo());
    header.redo.addEventListener("click", () => this.editor.redo());
    header.history.addEventListener("click", () => void this.#history.open());
    header.download.addEventListener("click", () => downloadWork(desk));
    header.theme.addEventListener("click", () => switchTheme());
    header.help.addEventListener("click", () => void showHelp(this.keys));
    header.save.addEventListener("click", () => void this.#saving.save());
    addEventListener("keydown", (event) => this.#key(event));
    addEventListener("hashchange", () => void this.#address());
  }

  #key(event: KeyboardEvent): void {
    if (event.defaultPrevented || document.querySelector("dialog[open]") !== null) {
      return;
    }
    const isTyping = takesText(event.composedPath()[0] ?? null);
    const control = event.ctrlKey || event.metaKey;
    if (control && event.key.toLowerCase() === "s") {
      void this.#saving.save();
    } else if (event.key === "F1" || (event.key === "?" && !isTyping)) {
      void showHelp(this.keys);
    } else if (!control && !isTyping && event.key === "PageDown" && this.#desk.file !== null) {
      void this.#go(this.#desk.page + 1);
    } else if (!control && !isTyping && event.key === "PageUp" && this.#desk.file !== null) {
      void this.#go(this.#desk.page - 1);
    } else {
      return;
    }
    event.preventDefault();
  }

  async #address(): Promise<void> {
    const named = namedPage(location.hash);
    const file = this.#list.files.find(({ id }) => id === named?.file);
    if (file === undefined || named === null) {
      return;
    }
    if (document.querySelector("dialog[open]") !== null) {
      this.#showPage(); // What a dialog asks about stays.
      return;
    }
    if (file.id === this.#desk.file?.id) {
      await this.#go(named.page);
    } else {
      await this.#leave(() => void this.#openFile(file, named.page));
    }
  }

  async #go(page: number): Promise<void> {
    const desk = this.#desk;
    if (!Number.isInteger(page) || page < 1 || page > desk.pages.length || page === desk.page) {
      this.#showPage();
      return;
    }
    await this.#leave(() => void this.#attempt(`Page ${page} cannot be opened`, () => desk.openPage(page)));
  }

  // Goes on with `next` once what is on the page is safe.
  async #leave(next: () => void): Promise<void> {
    if (this.#isLeaving) {
      return;
    }
    this.#isLeaving = true;
    try {
      if (await mayLeave(this.#desk, this.#saving)) {
        next();
      } else {
        this.#showPage();
      }
    } finally {
      this.#isLeaving = false;
    }
  }

  async #openFile(file: ListedFile, page: number): Promise<void> {
    const wasChosen = !this.shell.chooser.hidden;
    this.shell.chooser.hidden = true;
    this.shell.desk.hidden = false;
    this.shell.messages.settle("differs", "unchecked", "unsaved");
    await this.#attempt(`${file.name} cannot be opened`, () => this.#desk.openFile(file, page));
    // What had the focus is gone.
    if (wasChosen && document.activeElement === document.body) {
      this.shell.canvas.querySelector<HTMLElement>("[tabindex='0']")?.focus();
    }
  }

  #choose(): void {
    this.#desk.closeFile();
    this.shell.desk.hidden = true;
    this.shell.chooser.hidden = false;
    history.replaceState(null, "", "/");
    this.#chooser.show(this.#list);
    void this.server.files().then((list) => {
      this.#list = list;
      if (!this.shell.chooser.hidden) {
        this.#chooser.update(list);
      }
    }).catch(() => undefined);
  }

  async #attempt(doing: string, run: () => Promise<void>): Promise<void> {
    this.shell.messages.settle("opening");
    try {
      await run();
    } catch (error) {
      this.#fail(doing, error);
    }
  }

  #fail(doing: string, error: unknown): void {
    if (isAborted(error)) {
      return;
    }
    const fault = asFault(error);
    if (fault.kind !== "lost") {
      this.shell.messages.fail("opening", doing, fault);
    }
  }
}

function badgeOf(place: HTMLElement): HTMLElement {
  return place.closest("details")?.querySelector<HTMLElement>(".badge") ?? make("span");
}

export function startViews(shell: Shell, editor: Editor, server: Server, keys: readonly KeyHelp[]): void {
  void new Views(shell, editor, server, keys).start();
}
