// Ways out of the page: the work as an SVG file, a page in a tab of its own.

import type { Desk } from "./desk";

// The address of a page within this server.
export function pageAddress(file: string, page: number): string {
  return `#${file}/${page}`;
}

// What an address names; page 1 where it names none.
export function namedPage(hash: string): { file: string; page: number } | null {
  const parts = /^#([^/]+)(?:\/([1-9][0-9]{0,8}))?$/.exec(hash);
  return parts === null ? null : { file: parts[1] ?? "", page: Number(parts[2] ?? 1) };
}

export function openBeside(file: string, page: number): void {
  open(`/${pageAddress(file, page)}`, "_blank", "noopener");
}

// The drawing of the page that is shown, with all work on it. `corvane save` saves it.
export function downloadWork(desk: Desk): void {
  const name = desk.file?.name.replace(/\.pdf$/i, "") ?? "page";
  download(`${name}-page${desk.page}.svg`, desk.editor.text());
}

function download(name: string, svg: string): void {
  const address = URL.createObjectURL(new Blob([svg], { type: "image/svg+xml" }));
  const link = document.createElement("a");
  link.href = address;
  link.download = name;
  link.click();
  // The browser reads the file a moment after the click.
  setTimeout(() => URL.revokeObjectURL(address), 60_000);
}
