// Passwords of encrypted files: asked for where a file wants one, kept in memory only.

import type { Server } from "../server/api";
import { ServerFault, asFault, code } from "../server/fault";
import type { ListedFile } from "../server/reports";
import { Dialog } from "./dialogs";
import { make } from "./dom";
import { plain } from "./words";

// Whether `error` says that a file wants a password, or another one. Encryption that no password
// opens has the same code, and another sentence.
export function isLocked(error: unknown): boolean {
  return error instanceof ServerFault && error.code === code.encrypted &&
    /needs a password|is not a password/.test(error.sentence);
}

// The answer of `request`, with a password asked for as often as it is wanted.
export async function unlocked<Answer>(
  server: Server, file: ListedFile, request: () => Promise<Answer>): Promise<Answer> {
  for (;;) {
    try {
      return await request();
    } catch (error) {
      if (!isLocked(error) || !(await askPassword(server, file, plain(asFault(error).sentence)))) {
        throw error;
      }
    }
  }
}

// False where the person gives none.
export async function askPassword(server: Server, file: ListedFile, why: string): Promise<boolean> {
  const field = make("input", {
    type: "password", id: "password", class: "wide", autocomplete: "off", autofocus: true, required: true,
  });
  const dialog = new Dialog(`Password of ${file.name}`);
  dialog.fill(
    make("p", { text: why }),
    make("label", { class: "stacked", for: "password" }, "Password", field),
    make("p", { class: "muted", text: "It is kept in the memory of this tab only." }));
  const answered = dialog.choose([
    { answer: false, label: "Cancel" }, { answer: true, label: "Open", look: "primary" },
  ]);
  const entered = new Promise<boolean>((resolve) => {
    field.addEventListener("keydown", (event) => {
      if (event.key === "Enter") {
        event.preventDefault();
        resolve(true);
      }
    });
  });
  const isGiven = await Promise.race([answered, entered]);
  dialog.close();
  if (isGiven === true) {
    server.setPassword(file.id, field.value);
  }
  return isGiven === true;
}
