// The objects that the server answers with: those of `--json` (docs/json.md), as types.

export interface Fault {
  readonly code: number;
  readonly sentence: string;
}

// Names of kinds, with how many there are of each.
export type Counts = Readonly<Record<string, number>>;

// Left, bottom, right, top, in points.
export type Box = readonly (number | null)[];

interface Report {
  readonly file: string;
  readonly warnings: readonly Fault[];
  readonly error: Fault | null;
}

export interface ListedFile {
  readonly id: string;
  readonly name: string;
  readonly size: number;
  readonly modified: string;
}

export interface FileList {
  readonly version: string;
  readonly files: readonly ListedFile[];
  // PDFs of the folders that are not listed, since there are too many.
  readonly leftOut: number;
  // Of the program; another in each start.
  readonly start: string;
}

export interface PageFacts {
  readonly page: number;
  readonly mediaBox: Box;
  readonly cropBox: Box;
  readonly rotate: number;
  readonly userUnit: number;
  // What the file calls the page: "iv".
  readonly label?: string;
  // The page carries a small picture of itself.
  readonly thumbnail?: true;
}

export interface InfoReport extends Report {
  readonly length?: number;
  readonly updates?: number;
  readonly signatures: { readonly count: number; readonly certified: boolean };
  readonly pages: readonly PageFacts[];
}

export interface OpenReport extends Report {
  readonly page: number;
  readonly omitted: Counts;
}

export interface Opening {
  // Names the artwork at the server; null where the page could not be opened.
  readonly artwork: string | null;
  readonly report: OpenReport;
}

export interface AddedFont {
  readonly name: string;
  readonly letters: string;
  readonly wanted: string | null;
}

export interface MissingObjects {
  readonly kind: "all" | "path" | "compound" | "text" | "image";
  readonly missing: number;
  readonly whole: number;
}

export interface SaveReport extends Report {
  readonly dryRun: boolean;
  readonly formerLength?: number;
  readonly length?: number;
  readonly nothing?: boolean;
  readonly patched?: boolean;
  readonly kept?: number;
  readonly changed?: number;
  readonly added?: number;
  readonly removed?: number;
  readonly moved?: number;
  readonly mended?: Counts;
  readonly omitted: Counts;
  readonly ignored: Counts;
  readonly layersLeftOut: readonly string[];
  readonly layersNotKept: readonly string[];
  readonly annotationsKept: readonly string[];
  readonly fontsAdded: readonly AddedFont[];
  readonly missing: readonly MissingObjects[];
}

export interface Update {
  // 0 is the file as it was first written.
  readonly number: number;
  readonly offset: number;
  readonly size: number;
  readonly objects: number;
  readonly pages: readonly number[];
  readonly date: string | null;
  // Made by this program.
  readonly ours: boolean;
}

export interface LogReport extends Report {
  readonly updates: readonly Update[];
}

export interface RevertReport extends Report {
  readonly takenOff: readonly Update[];
}
