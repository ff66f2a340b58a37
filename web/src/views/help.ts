// Help on keys.

import { Dialog } from "./dialogs";
import { make } from "./dom";

export interface KeyHelp {
  readonly keys: string;
  readonly does: string;
}

const ours: readonly KeyHelp[] = [
  { keys: "Ctrl+S", does: "Save the page: first what would be appended is shown" },
  { keys: "PageUp, PageDown", does: "The page before, the next page" },
  { keys: "F1 or ?", does: "This help" },
  { keys: "Tab, Shift+Tab", does: "From one part of the window to the next, and back" },
  { keys: "Arrows, Home, End", does: "In the list of pages: go through it; Enter opens a page" },
  { keys: "Digits", does: "In the list of pages: go to the page of that number" },
];

function table(title: string, rows: readonly KeyHelp[]): HTMLElement {
  return make("section", {}, make("h3", { text: title }),
    make("dl", { class: "keys" }, ...rows.flatMap(({ keys, does }) => [
      make("dt", {}, ...keyNames(keys)), make("dd", { text: does })])));
}

// "Ctrl+S, F1 or ?" with each key in a frame of its own.
function keyNames(keys: string): (Node | string)[] {
  return keys.split(/(,\s*|\s+or\s+|\+(?=.))/).map((part, index) =>
    index % 2 === 1 ? part : make("kbd", { text: part }));
}

export async function showHelp(editorKeys: readonly KeyHelp[]): Promise<void> {
  const dialog = new Dialog("Keys", "help-dialog");
  dialog.fill(make("div", { class: "help" }, table("Pages and files", ours),
    ...(editorKeys.length === 0 ? [] : [table("On the page", editorKeys)])));
  await dialog.choose([{ answer: true, label: "Close", look: "primary" }]);
  dialog.close();
}
