// The updates of the file, newest first: what each changed, as two pictures, and taking the newest off.

import { asFault, isAborted } from "../server/fault";
import type { Update } from "../server/reports";
import { Comparison } from "./compare";
import type { Desk } from "./desk";
import { Dialog, ask } from "./dialogs";
import { make, setPressed } from "./dom";
import type { Messages } from "./messages";
import { unlocked } from "./password";
import { counted, date, pages, plain, size } from "./words";

const mostPagesToChoose = 200;

export class HistoryView {
  readonly #comparison = new Comparison();
  readonly #list = make("ul", { class: "update-list", "aria-label": "Updates" });
  readonly #choice = make("select", { id: "update-page", "aria-label": "Page of this update" });
  readonly #bar = make("div", { class: "update-bar" });
  #dialog: Dialog | null = null;
  #updates: readonly Update[] = [];
  #loading = new AbortController();

  constructor(readonly desk: Desk, readonly messages: Messages) {
    this.#choice.addEventListener("change", () => void this.#draw());
  }

  async open(): Promise<void> {
    const file = this.desk.file;
    if (file === null) {
      return;
    }
    const dialog = new Dialog(`History of ${file.name}`, "history-dialog");
    this.#dialog = dialog;
    dialog.wait("Reading the updates ...");
    void dialog.closed.then(() => {
      this.#loading.abort();
      this.#comparison.clear();
    });
    try {
      await this.#read();
      dialog.fill(make("div", { class: "history" }, make("div", { class: "updates" }, this.#list),
        make("div", { class: "update-view" }, this.#bar, this.#comparison.element)));
      this.#list.querySelector("button")?.focus();
    } catch (error) {
      dialog.fill(make("p", { text: plain(asFault(error).sentence) }));
    }
  }

  async #read(): Promise<void> {
    const { server, file } = this.desk;
    if (file === null) {
      return;
    }
    const log = await unlocked(server, file, () => server.log(file.id));
    this.#updates = [...log.updates].reverse();
    this.#list.replaceChildren(...this.#updates.map((update) => make("li", {}, this.#row(update))));
    const newest = this.#updates[0];
    if (newest !== undefined) {
      this.#choose(newest);
    }
  }

  #row(update: Update): HTMLButtonElement {
    const title = update.number === 0 ? "The file as first written" : `Update ${update.number}`;
    const maker = update.number === 0 || update.ours ? "" : " · another program";
    return make("button", {
      type: "button", class: "update-row", "data-number": update.number, onclick: () => this.#choose(update),
    },
    make("span", { class: "update-title", text: title }),
    make("span", { class: "muted", text: update.number === 0 && update.date === null ? "" : date(update.date) }),
    make("span", { class: "muted", text: `${pages(update.pages)} · ${size(update.size)}${maker}` }));
  }

  #choose(update: Update): void {
    for (const row of this.#list.querySelectorAll<HTMLElement>("button")) {
      setPressed(row, row.dataset["number"] === String(update.number));
    }
    const list = update.pages.length > 0 ? update.pages : [this.desk.page];
    this.#choice.replaceChildren(...list.slice(0, mostPagesToChoose).map((page) =>
      make("option", { value: page, text: `Page ${page}`, selected: page === this.desk.page })));
    this.#choice.dataset["update"] = String(update.number);
    const takeOff = this.#takeOffButton(update);
    this.#bar.replaceChildren(this.#choice, make("span", { class: "muted", text: this.#says(update) }), ...takeOff);
    void this.#draw();
  }

  #says(update: Update): string {
    if (update.number === 0) {
      return "Nothing was before this.";
    }
    return `${counted(update.objects, "object")} of the file written anew`;
  }

  #takeOffButton(update: Update): HTMLElement[] {
    if (update !== this.#updates[0] || update.number === 0) {
      return [];
    }
    if (!update.ours) {
      return [make("span", { class: "muted", text: "Made by another program: it is not taken off here." })];
    }
    return [make("button", {
      type: "button", class: "button danger", text: "Take off ...", onclick: () => void this.#takeOff(update),
    })];
  }

  async #draw(): Promise<void> {
    this.#loading.abort();
    const loading = new AbortController();
    this.#loading = loading;
    const { server, file } = this.desk;
    const update = Number(this.#choice.dataset["update"]);
    const page = Number(this.#choice.value);
    if (file === null) {
      return;
    }
    this.#comparison.say("Drawing the page ...");
    try {
      const [before, after] = await Promise.all([
        update === 0 ? null : server.picture(file.id, page, update - 1, loading.signal),
        server.picture(file.id, page, update, loading.signal),
      ]);
      if (!loading.signal.aborted) {
        this.#comparison.show(before, after);
      }
    } catch (error) {
      if (!isAborted(error)) {
        this.#comparison.say(plain(asFault(error).sentence));
      }
    }
  }

  async #takeOff(update: Update): Promise<void> {
    const { desk } = this;
    const works = update.pages.filter((page) => desk.isUnsaved(page));
    const text = `This takes off what was saved on ${date(update.date)} (${pages(update.pages)}, ${size(update.size)}). ` +
      "The file is then, byte for byte, what it was before." +
      (works.length === 0 ? "" : ` Your unsaved work on ${pages(works)} stays in this tab, and may have to be saved ` +
        "with force afterwards.");
    const answer = await ask(`Take off update ${update.number}?`, text, [
      { answer: false, label: "Cancel", look: "primary" }, { answer: true, label: "Take off", look: "danger" },
    ]);
    if (answer !== true) {
      return;
    }
    try {
      if (!(await this.#isNewest(update))) {
        return;
      }
      const report = await desk.writing(() => desk.server.revert(desk.file?.id ?? "", update.offset + update.size));
      this.#dialog?.close();
      await this.#finish(report.takenOff);
    } catch (error) {
      this.#comparison.say(plain(asFault(error).sentence));
    }
  }

  // Another tab or program may have appended more meanwhile: that would be taken off in its place.
  async #isNewest(update: Update): Promise<boolean> {
    await this.#read();
    const newest = this.#updates[0];
    if (newest?.number === update.number && newest.offset === update.offset && newest.size === update.size &&
        newest.date === update.date) {
      return true;
    }
    this.#loading.abort(); // pictures would take the place of the sentence
    this.#comparison.say("The file was changed meanwhile, so nothing was taken off. These are its updates now.");
    return false;
  }

  // The page is opened anew, unless there is work on it.
  async #finish(takenOff: readonly Update[]): Promise<void> {
    const { desk } = this;
    const changed = takenOff.flatMap((update) => update.pages);
    this.messages.settle("differs");
    this.messages.say(`Taken off: ${pages(changed)}. The file is as it was before.`);
    desk.dispatchEvent(new Event("saved"));
    desk.redraw(changed);
    await (desk.isUnsaved(desk.page) ? desk.refresh() : desk.reload());
  }
}
