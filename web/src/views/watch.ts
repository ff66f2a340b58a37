// Looks whether another program or tab changed the file that is open.

import type { Heartbeat } from "../server/alive";
import { asFault } from "../server/fault";
import type { ListedFile } from "../server/reports";
import type { Desk } from "./desk";
import { openBeside } from "./elsewhere";
import type { Messages } from "./messages";

export class Watch {
  #known: ListedFile | null = null;
  // Counts what this tab itself changed, so that an answer from before that is not believed.
  #changes = 0;

  constructor(readonly desk: Desk, readonly messages: Messages, readonly heartbeat: Heartbeat) {
    desk.addEventListener("file", () => this.#follow());
    desk.addEventListener("saved", () => void this.#learn());
    heartbeat.addEventListener("beat", () => void this.look());
    addEventListener("focus", () => void this.look());
  }

  async look(): Promise<void> {
    const known = this.#known;
    const changes = this.#changes;
    const found = known === null ? undefined : await this.#ask(known.id);
    if (known === null || known !== this.#known || changes !== this.#changes || this.desk.isWriting) {
      return;
    }
    if (found !== undefined && (found.size !== known.size || found.modified !== known.modified)) {
      this.#known = found;
      this.#tell(found);
    }
  }

  #follow(): void {
    if (this.#known?.id !== this.desk.file?.id) {
      this.#known = this.desk.file;
      this.messages.settle("changed");
    }
  }

  // The file as this tab left it.
  async #learn(): Promise<void> {
    this.#changes++;
    this.messages.settle("changed");
    const known = this.#known;
    this.#known = null;
    const found = known === null ? undefined : await this.#ask(known.id);
    if (found !== undefined && this.desk.file?.id === found.id) {
      this.#known = found;
    }
  }

  async #ask(id: string): Promise<ListedFile | undefined> {
    try {
      const { files } = await this.desk.server.files();
      return files.find((file) => file.id === id);
    } catch {
      return undefined; // A server that is lost is said by the heartbeat.
    }
  }

  #tell(file: ListedFile): void {
    const { desk } = this;
    const page = desk.page;
    const anew = {
      label: "Open it anew",
      run: () => {
        this.messages.settle("changed");
        desk.redraw(desk.pages.map((facts) => facts.page));
        desk.settle();
        if (desk.isUnsaved(desk.page)) {
          openBeside(file.id, desk.page); // Work was begun since this was offered.
          return;
        }
        void desk.reload().catch((error: unknown) => this.messages.fail("opening", "The page cannot be opened", asFault(error)));
      },
    };
    const beside = { label: "Open it beside this", run: () => openBeside(file.id, page) };
    this.messages.notify({
      name: "changed", look: "warn",
      text: `${file.name} was changed by another program or tab.` +
        (desk.hasUnsaved ? " Your work is kept in this tab; a save looks whether it still fits." : ""),
      actions: [desk.isUnsaved(page) ? beside : anew],
    });
  }
}
