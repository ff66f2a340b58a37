// What a save appends, loses and mends, in words.

import type { Counts, MissingObjects, SaveReport } from "../server/reports";
import { make } from "./dom";
import { counted, listed, number, plain, sentence, size } from "./words";

const kindWords: Readonly<Record<MissingObjects["kind"], string>> = {
  all: "objects", path: "paths", compound: "compound paths", text: "texts", image: "images",
};

const mendWords: Readonly<Record<string, string>> = {
  header: "the header", crossReference: "the table of contents of the file", trailer: "the trailer",
  pages: "the list of pages", pageNode: "nodes of the page tree", streamLength: "lengths of streams",
  objectEnd: "ends of objects", syntax: "objects that are written wrongly", lostObject: "objects that cannot be read",
  pageValue: "boxes and rotations of pages",
};

// How many bytes it appends.
export function appended(report: SaveReport): number {
  return (report.length ?? 0) - (report.formerLength ?? 0);
}

// "1 object changed, 3 added; 812 bytes": for the status line.
export function shortSummary(report: SaveReport): string {
  const changes: readonly (readonly [number | undefined, string])[] = [
    [report.changed, "changed"], [report.added, "added"], [report.removed, "removed"], [report.moved, "moved"],
  ];
  const parts = changes.filter(([count]) => (count ?? 0) > 0).map(([count, word]) => `${number(count ?? 0)} ${word}`);
  return `${parts.length === 0 ? "no object changed" : listed(parts)}; ${size(appended(report))} appended`;
}

// The numbers as a row, the sentences below it.
export function describeSave(report: SaveReport, file: string): HTMLElement {
  const items = [...lossSentences(report), ...otherSentences(report)];
  return make("div", { class: "save-summary" },
    make("p", { text: `This appends ${size(appended(report))} to ${file}. Every byte that is there stays.` }),
    countRow(report),
    items.length === 0 ? null : make("ul", { class: "sentences" }, ...items.map((text) => make("li", { text }))));
}

function countRow(report: SaveReport): HTMLElement {
  const counts: readonly (readonly [string, number | undefined])[] = [
    ["kept", report.kept], ["changed", report.changed], ["added", report.added], ["removed", report.removed],
    ["moved", report.moved],
  ];
  return make("dl", { class: "counts" }, ...counts.map(([word, count]) =>
    make("div", { class: (count ?? 0) > 0 ? "some" : "" },
      make("dt", { text: word }), make("dd", { text: number(count ?? 0) }))));
}

// What is not on the page any more after it. The program's warnings say the rest of it.
export function lossSentences(report: SaveReport): readonly string[] {
  const missing = report.missing.map(({ kind, missing: gone, whole }) =>
    sentence(`${number(gone)} of ${number(whole)} ${kindWords[kind]} of the page are not in the drawing any more`));
  const annotations = report.annotationsKept.length === 0 ? [] : [
    sentence(`stay as the file has them: ${listed(report.annotationsKept)}`)];
  return [...missing, ...annotations, ...report.warnings.map((warning) => plain(warning.sentence))];
}

function otherSentences(report: SaveReport): readonly string[] {
  const fonts = report.fontsAdded.map(({ name, letters, wanted }) => sentence(wanted === null
    ? `the font ${name} is added to the file${letters === "" ? "" : `, for ${quotedLetters(letters)}`}`
    : `${letters === "" ? `text in ${wanted}` : quotedLetters(letters)} is set in ${name}, since ${wanted} cannot`));
  const layers = report.layersLeftOut.length === 0 ? [] : [
    sentence(`not drawn, since hidden: ${counted(report.layersLeftOut.length, "layer")}: ${listed(report.layersLeftOut)}`)];
  const plainLayers = report.layersNotKept.length === 0 ? [] : [
    sentence(`objects stay, and the layer does not: ${listed(report.layersNotKept)}`)];
  return [...fonts, ...layers, ...plainLayers, ...mendSentences(report.mended ?? {})];
}

function quotedLetters(letters: string): string {
  const most = 40;
  const all = [...letters];
  return `"${all.slice(0, most).join("")}${all.length > most ? "..." : ""}"`;
}

function mendSentences(mended: Counts): readonly string[] {
  const kinds = Object.entries(mended).map(([kind, count]) => `${mendWords[kind] ?? kind} (${number(count)})`);
  return kinds.length === 0 ? [] : [sentence(`it mends ${listed(kinds)}`)];
}
