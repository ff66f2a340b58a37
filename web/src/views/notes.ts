// What opening the page said: warnings, and what the page shows and the artwork does not hold.

import type { OpenReport } from "../server/reports";
import { make } from "./dom";
import { icon } from "./icons";
import { omission } from "./omissions";
import { plain, sentence } from "./words";

// Facts of the file that concern a save.
export interface FileFacts {
  readonly signatures: { readonly count: number; readonly certified: boolean };
}

function note(look: "warn" | "info", text: string, why = ""): HTMLElement {
  return make("li", { class: `note ${look}` }, icon(look === "warn" ? "warning" : "info"),
    make("div", {}, make("p", { text }), why === "" ? null : make("p", { class: "muted", text: why })));
}

// The warnings, the kinds that are left out, and signatures, as items of a list.
export function noteItems(report: OpenReport, facts: FileFacts | null): readonly HTMLElement[] {
  const warnings = report.warnings.map((warning) => note("warn", plain(warning.sentence)));
  const omitted = Object.entries(report.omitted).map(([kind, count]) => {
    const { what, why } = omission(kind, count);
    return note("info", sentence(`${what}: kept in the file, cannot be edited here`), sentence(why));
  });
  return [...signatureNotes(facts), ...warnings, ...omitted];
}

function signatureNotes(facts: FileFacts | null): readonly HTMLElement[] {
  if (facts === null || facts.signatures.count === 0) {
    return [];
  }
  return [note("warn", facts.signatures.certified
    ? "The file is certified: its author's signature allows no changed pages."
    : "The file is signed. Its signed bytes stay, but readers will show that it was changed after signing.")];
}

export function showNotes(place: HTMLElement, badge: HTMLElement, report: OpenReport | null,
  facts: FileFacts | null): void {
  const items = report === null ? [] : noteItems(report, facts);
  badge.textContent = String(items.length);
  badge.hidden = items.length === 0;
  place.replaceChildren(items.length > 0
    ? make("ul", { class: "note-list" }, ...items)
    : make("p", { class: "muted", text: report === null ? "No page is open." : "Nothing of what this page shows was left out." }));
}
