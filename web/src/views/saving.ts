// Saving a page: first what it would append, then the save, then a look whether it is so.

import type { Server } from "../server/api";
import { asFault, code, isAborted } from "../server/fault";
import type { Fault, ListedFile, SaveReport } from "../server/reports";
import { checkSaved } from "./check";
import type { Desk } from "./desk";
import { Dialog } from "./dialogs";
import type { Choice } from "./dialogs";
import { make } from "./dom";
import { downloadWork, openBeside } from "./elsewhere";
import type { Header } from "./header";
import type { Messages } from "./messages";
import { askPassword } from "./password";
import { refusal } from "./refusals";
import { appended, describeSave, lossSentences, shortSummary } from "./save_words";
import { plain, sentence, size } from "./words";

type Step = "save" | "force" | "mend" | "password" | "beside" | "download";

interface Place {
  readonly server: Server;
  readonly file: ListedFile;
  readonly page: number;
}

interface Ways {
  readonly force: boolean;
  readonly mend: boolean;
  readonly size?: number | undefined;
}

export class Saving {
  #isRunning = false;
  #saves = 0;
  // What is being saved, whatever is shown meanwhile.
  #saved: Place | null = null;
  // Bytes of the file that the trial was made with: what was offered holds for no other.
  #offered: number | undefined;
  // Until the page that was saved is opened again.
  #reopening: Promise<void> = Promise.resolve();

  constructor(readonly desk: Desk, readonly header: Header, readonly messages: Messages) {}

  // True where the page has nothing left to save.
  async save(): Promise<boolean> {
    const { server, file, page, report } = this.desk;
    if (this.#isRunning || report === null || file === null) {
      return false;
    }
    this.#isRunning = true;
    // What is shown until then is the artwork before the save, which would be appended once more.
    await this.#reopening;
    if (this.desk.file !== file || this.desk.page !== page || this.desk.report === null) {
      this.#isRunning = false;
      return false;
    }
    this.#saved = { server, file, page };
    const dialog = new Dialog(this.#title, "save-dialog");
    try {
      return await this.#run(dialog, this.desk.editor.text());
    } catch (error) {
      // A server that is lost is said by the heartbeat.
      if (!isAborted(error) && asFault(error).kind !== "lost") {
        this.messages.fail("unsaved", "The page was not saved", asFault(error));
      }
      return false;
    } finally {
      dialog.close();
      this.#isRunning = false;
    }
  }

  async #run(dialog: Dialog, svg: string): Promise<boolean> {
    let ways: Ways = { force: false, mend: false };
    let report = await this.#trial(dialog, svg, ways);
    for (;;) {
      const step = report.error === null
        ? await this.#offer(dialog, report)
        : await this.#explain(dialog, report.error, svg, ways);
      switch (step) {
        case "nothing":
          if (this.desk.editor.text() !== svg) {
            return false; // Work came while the dialog was open.
          }
          this.desk.forget();
          return true;
        case "save":
        case "force":
          ways = { ...ways, force: ways.force || step === "force" };
          report = await this.#write(dialog, svg, { ...ways, size: this.#offered });
          if (report.error === null) {
            dialog.close();
            this.#finish(svg, report);
            return true;
          }
          continue; // The file changed since the trial: that is explained.
        case "mend":
          ways = { ...ways, mend: true };
          break;
        case "password":
          if (!(await this.#password())) {
            return false;
          }
          break;
        default:
          return false;
      }
      report = await this.#trial(dialog, svg, ways);
    }
  }

  async #trial(dialog: Dialog, svg: string, ways: Ways): Promise<SaveReport> {
    const { server, file, page } = this.#place;
    const unwanted = new AbortController();
    void dialog.closed.then(() => unwanted.abort());
    dialog.wait("Working out what a save would append ...");
    const report = await server.trial(file.id, page, svg, { ...ways, signal: unwanted.signal });
    this.#offered = report.formerLength ?? undefined;
    return report;
  }

  async #offer(dialog: Dialog, report: SaveReport): Promise<Step | "nothing" | undefined> {
    if (report.nothing === true) {
      dialog.title = "Nothing to save";
      dialog.fill(make("p", { text: "The page is as the file has it." }));
      await dialog.choose([{ answer: true, label: "Close", look: "primary" }]);
      return "nothing";
    }
    dialog.title = this.#title;
    dialog.fill(describeSave(report, this.#place.file.name));
    return await dialog.choose<Step | undefined>([
      { answer: undefined, label: "Cancel" }, { answer: "save", label: "Save", look: "primary" },
    ]);
  }

  // Why it was refused, what a save all the same would do, and the ways out.
  async #explain(dialog: Dialog, fault: Fault, svg: string, ways: Ways): Promise<Step | undefined> {
    const why = refusal(fault);
    const forced = why.canForce ? await this.#trial(dialog, svg, { ...ways, force: true }) : null;
    const canForce = forced !== null && forced.error === null;
    dialog.title = why.title;
    dialog.fill(make("p", { text: why.text }), ...(canForce ? [forcedText(forced, why.isConflict)] : []),
      ...(forced?.error ? [make("p", { text: plain(forced.error.sentence) })] : []));
    const choices: Choice<Step | undefined>[] = [
      { answer: "download", label: "Download as SVG" }, { answer: undefined, label: "Cancel" },
    ];
    if (why.isConflict) {
      choices.push({ answer: "beside", label: "Open the page beside this", look: "primary" });
    }
    if (why.canMend) {
      choices.push({ answer: "mend", label: "Mend and save", look: "primary" });
    }
    if (why.wantsPassword) {
      choices.push({ answer: "password", label: "Give the password", look: "primary" });
    }
    if (canForce) {
      choices.push({ answer: "force", label: "Save all the same", look: "danger" });
    }
    this.header.showState("failed");
    this.messages.say("");
    return this.#elsewhere(await dialog.choose(choices));
  }

  // Ways out that leave the file alone.
  #elsewhere(step: Step | undefined): Step | undefined {
    const { file, page } = this.#place;
    if (step === "beside") {
      openBeside(file.id, page);
    } else if (step === "download") {
      downloadWork(this.desk);
    }
    return step;
  }

  async #write(dialog: Dialog, svg: string, ways: Ways): Promise<SaveReport> {
    const { server, file, page } = this.#place;
    dialog.hold("Saving ...");
    this.messages.say(`Saving page ${page} ...`);
    this.header.showState("saving");
    try {
      return await this.desk.writing(() => server.save(file.id, page, svg, ways));
    } catch (error) {
      this.header.showState("failed");
      this.messages.say("");
      const fault = asFault(error);
      if (!fault.isUncertain) {
        throw error;
      }
      this.messages.notify({
        name: "uncertain", look: "danger",
        text: `${plain(fault.sentence)} It is not known whether page ${page} was saved: look at History` +
          `${fault.code === code.crashed ? "" : " once the program is there again"}. Your work is kept in this tab.`,
        actions: [{ label: "Download as SVG", run: () => downloadWork(this.desk) }],
      });
      throw new DOMException("said already", "AbortError");
    }
  }

  async #password(): Promise<boolean> {
    const { server, file } = this.#place;
    return await askPassword(server, file, "Give the owner's password to save into this file.");
  }

  #finish(svg: string, report: SaveReport): void {
    const { file, page } = this.#place;
    if (this.desk.file?.id === file.id && this.desk.page === page && this.desk.editor.text() === svg) {
      this.desk.forget();
      this.header.showState("saved");
    }
    this.messages.settle("uncertain", "unsaved", "differs", "unchecked");
    this.messages.say(`Saved page ${page}: ${shortSummary(report)}.`);
    this.desk.redraw([page]);
    this.desk.dispatchEvent(new Event("saved"));
    this.#reopening = this.#check(file.id, page, svg, report);
  }

  // The page as the file has it takes the place of what was drawn, unless work went on meanwhile.
  async #check(file: string, page: number, svg: string, report: SaveReport): Promise<void> {
    const { desk } = this;
    const number = ++this.#saves;
    const isHere = () => desk.file?.id === file && desk.page === page && desk.report !== null && !desk.editor.isChanged;
    try {
      await desk.refresh();
      const { loaded, fault } = await checkSaved(desk, desk.server, file, page, svg);
      if (number !== this.#saves) {
        return; // A later save is looked at.
      }
      if (isHere()) {
        desk.show(loaded);
        this.header.showState("saved");
      }
      if (fault === null) {
        this.messages.say(`Saved page ${page} and compared it: ${shortSummary(report)}.`);
      } else {
        this.messages.notify({
          name: "differs", look: "warn",
          text: `Page ${page} was saved, but ${fault}. Look at it; History can take the save off.`,
        });
      }
    } catch (error) {
      this.messages.notify({
        name: "unchecked", look: "warn",
        text: `Page ${page} was saved (${size(appended(report))} appended), but could not be opened again to be ` +
          `compared: ${plain(asFault(error).sentence)}`,
      });
    }
  }

  get #title(): string {
    const { file, page } = this.#place;
    return `Save page ${page} of ${file.name}`;
  }

  get #place(): Place {
    if (this.#saved === null) {
      throw new Error("nothing is being saved");
    }
    return this.#saved;
  }
}

function forcedText(report: SaveReport, isConflict: boolean): HTMLElement {
  const undone = isConflict ? ["What was changed on this page meanwhile is undone."] : [];
  const losses = [...undone, ...lossSentences(report)];
  return make("div", { class: "forced" },
    make("h3", { text: "If it is saved all the same" }),
    make("p", { text: sentence(shortSummary(report)) }),
    losses.length === 0 ? null : make("ul", { class: "sentences" }, ...losses.map((text) => make("li", { text }))));
}
