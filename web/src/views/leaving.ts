// Leaving a page that has unsaved work: saved first, kept in the tab, or thrown away.

import type { Desk } from "./desk";
import { ask } from "./dialogs";
import type { Saving } from "./saving";

type Answer = "save" | "keep" | "discard";

// False where the person stays.
export async function mayLeave(desk: Desk, saving: Saving): Promise<boolean> {
  desk.settle();
  if (!desk.editor.isChanged || desk.report === null) {
    return true;
  }
  const answer = await ask<Answer>(`Page ${desk.page} is not saved`,
    "Kept work stays in this tab, marked in the list of pages, until you save it or close the tab. " +
    "Undo begins anew with it.", [
      { answer: "discard", label: "Throw it away", look: "danger" },
      { answer: "save", label: "Save ..." },
      { answer: "keep", label: "Keep it in this tab", look: "primary" },
    ]);
  switch (answer) {
    case "save":
      return await saving.save();
    case "keep":
      desk.keep();
      return true;
    case "discard":
      desk.forget();
      return true;
    default:
      return false;
  }
}

// The browser asks before a tab with unsaved work is closed or loaded anew.
export function guardTab(desk: Desk): void {
  addEventListener("beforeunload", (event) => {
    desk.settle();
    if (desk.hasUnsaved) {
      event.preventDefault();
    }
  });
}
