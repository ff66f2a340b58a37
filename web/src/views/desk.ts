// What lies on the desk: the file that is open, the page that is shown, and work that is not saved.

import type { Editor } from "../editor/editor";
import type { Server } from "../server/api";
import { isAborted } from "../server/fault";
import type { InfoReport, ListedFile, OpenReport, PageFacts } from "../server/reports";
import { isLocked, unlocked } from "./password";

// Work on a page that is not saved, as it is kept while another page is shown.
export interface Work {
  readonly text: string;
  readonly report: OpenReport;
}

export interface LoadedPage {
  readonly svg: string;
  readonly report: OpenReport;
}

// Milliseconds after which the page before goes while the next one is opened.
const patience = 250;

// Events: "file", another file is open or its facts changed; "page", another artwork is shown;
// "busy", loading began or ended; "work", what is not saved changed; "redrawn", a page looks otherwise
// now (CustomEvent<readonly number[]>).
export class Desk extends EventTarget {
  #file: ListedFile | null = null;
  #info: InfoReport | null = null;
  #page = 0;
  #report: OpenReport | null = null;
  #loading: AbortController | null = null;
  #isWriting = false;
  // The page before: it stays in the editor until the next one is there.
  #leaving: { readonly key: string; readonly report: OpenReport } | null = null;
  readonly #works = new Map<string, Work>();

  constructor(readonly server: Server, readonly editor: Editor) {
    super();
    editor.addEventListener("change", () => this.#tell("work"));
  }

  get file(): ListedFile | null {
    return this.#file;
  }
  get page(): number {
    return this.#page;
  }
  get pages(): readonly PageFacts[] {
    return this.#info?.pages ?? [];
  }
  get info(): InfoReport | null {
    return this.#info;
  }
  // What opening the page said; null while none is shown.
  get report(): OpenReport | null {
    return this.#report;
  }
  get isBusy(): boolean {
    return this.#loading !== null;
  }
  // Whether this tab itself is changing the file.
  get isWriting(): boolean {
    return this.#isWriting;
  }

  // Whether `page` of the open file has work that is not saved.
  isUnsaved(page: number): boolean {
    return this.#works.has(this.#key(page)) || (page === this.#page && this.#report !== null && this.editor.isChanged);
  }

  get hasUnsaved(): boolean {
    return this.#works.size > 0 || this.isUnsaved(this.#page);
  }

  hasWorkIn(file: string): boolean {
    return [...this.#works.keys()].some((key) => key.startsWith(`${file}/`));
  }

  // Opens a file at a page. Its facts and the page are asked for side by side.
  async openFile(file: ListedFile, page: number): Promise<void> {
    this.closePage();
    this.#file = file;
    this.#info = null;
    this.#tell("file");
    const early = this.#works.has(`${file.id}/${page}`) ? null : this.#load(file.id, page);
    early?.catch(() => undefined);
    const info = await unlocked(this.server, file, () => this.server.info(file.id));
    if (this.#file !== file) {
      return;
    }
    this.#info = info;
    this.#tell("file");
    const there = Math.min(Math.max(page, 1), Math.max(info.pages.length, 1));
    await this.openPage(there, there === page ? early : null);
  }

  // Shows a page: the work that was kept of it, or the page opened anew.
  async openPage(page: number, early: Promise<LoadedPage> | null = null): Promise<void> {
    const file = this.#file;
    if (file === null) {
      return;
    }
    if (this.#report === null) {
      this.#keepLate();
    } else {
      this.#leaving = { key: this.#key(this.#page), report: this.#report };
    }
    this.#page = page;
    const work = this.#works.get(this.#key(page));
    if (work !== undefined) {
      this.#cancel();
      this.show(shownWork(work));
      return;
    }
    this.#report = null;
    this.#tell("work");
    const clearing = setTimeout(() => {
      this.#keepLate();
      this.#clear();
    }, patience);
    try {
      const loaded = await (early ?? this.#load(file.id, page)).catch((error: unknown) => {
        if (early !== null && isLocked(error)) {
          return this.#load(file.id, page);
        }
        throw error;
      });
      if (this.#file === file && this.#page === page && this.#report === null) {
        this.#keepLate();
        const late = this.#works.get(this.#key(page));
        this.show(late === undefined ? loaded : shownWork(late));
      }
    } catch (error) {
      if (!isAborted(error)) {
        if (this.#file === file && this.#page === page && this.#report === null) {
          this.#keepLate();
          this.#clear();
          this.#tell("page");
        }
        throw error;
      }
    } finally {
      clearTimeout(clearing);
    }
  }

  show(loaded: LoadedPage): void {
    this.#leaving = null;
    this.#report = loaded.report;
    performance.mark("corvane-artwork-here");
    this.editor.show(loaded.svg);
    performance.mark("corvane-page-shown");
    this.#tell("page");
    this.#tell("work");
  }

  // A page as the file has it now; what is shown stays.
  async loadAgain(file: string, page: number): Promise<LoadedPage> {
    const opening = await this.server.open(file, page);
    return { svg: await this.server.artwork(opening.artwork), report: opening.report };
  }

  // Runs what changes the file.
  async writing<Answer>(run: () => Promise<Answer>): Promise<Answer> {
    this.#isWriting = true;
    try {
      return await run();
    } finally {
      this.#isWriting = false;
    }
  }

  // Letters that are being typed become a change.
  settle(): void {
    if (this.#report !== null) {
      this.editor.text();
    }
  }

  // Keeps the work of the page that is shown, if there is any.
  keep(): void {
    if (this.#report !== null && this.editor.isChanged) {
      this.#works.set(this.#key(this.#page), { text: this.editor.text(), report: this.#report });
      this.editor.markSaved();
    }
    this.#tell("work");
  }

  #clear(): void {
    this.#leaving = null;
    this.editor.clear();
  }

  // What was done to the page before while the next one is opened is work, too.
  #keepLate(): void {
    if (this.#leaving !== null && this.editor.isChanged) {
      this.#works.set(this.#leaving.key, { text: this.editor.text(), report: this.#leaving.report });
      this.editor.markSaved();
      this.#tell("work");
    }
  }

  // The work of the page that is shown is saved, or not wanted any more.
  forget(): void {
    this.#works.delete(this.#key(this.#page));
    if (this.#report !== null) {
      this.editor.markSaved();
    }
    this.#tell("work");
  }

  // The page as the file has it by now, where there is no work on it.
  async reload(): Promise<void> {
    await this.refresh();
    this.settle();
    if (!this.isUnsaved(this.#page)) {
      await this.openPage(Math.min(this.#page, Math.max(this.pages.length, 1)));
    }
  }

  // The facts of the file, after it changed.
  async refresh(): Promise<void> {
    const file = this.#file;
    if (file === null) {
      return;
    }
    const info = await this.server.info(file.id);
    if (this.#file === file) {
      this.#info = info;
      this.#tell("file");
    }
  }

  redraw(pages: readonly number[]): void {
    this.dispatchEvent(new CustomEvent("redrawn", { detail: pages }));
  }

  closePage(): void {
    this.#cancel();
    if (this.#report === null) {
      this.#keepLate();
    }
    if (this.#report !== null || this.#leaving !== null) {
      this.#clear();
    }
    this.#report = null;
    this.#page = 0;
  }

  closeFile(): void {
    this.closePage();
    this.#file = null;
    this.#info = null;
    this.#tell("file");
    this.#tell("work");
  }

  async #load(file: string, page: number): Promise<LoadedPage> {
    this.#cancel();
    const loading = new AbortController();
    this.#loading = loading;
    this.#tell("busy");
    try {
      const opening = await this.server.open(file, page, loading.signal);
      const svg = await this.server.artwork(opening.artwork, loading.signal);
      return { svg, report: opening.report };
    } finally {
      if (this.#loading === loading) {
        this.#loading = null;
        this.#tell("busy");
      }
    }
  }

  #cancel(): void {
    this.#loading?.abort();
    this.#loading = null;
  }

  #key(page: number): string {
    return `${this.#file?.id ?? ""}/${page}`;
  }

  #tell(event: string): void {
    this.dispatchEvent(new Event(event));
  }
}

function shownWork(work: Work): LoadedPage {
  return { svg: work.text, report: work.report };
}
