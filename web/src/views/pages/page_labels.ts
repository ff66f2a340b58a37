// What a file calls its pages, where it calls them anything: "iv", "A-3".

import type { PageFacts } from "../../server/reports";
import { showable } from "../../server/showable";

// The label of a page, unless it says no more than the page's number.
export function labelOf(page: PageFacts | undefined): string | undefined {
  return page?.label === undefined || page.label === String(page.page) ? undefined : showable(page.label);
}

// The page that a person means by `typed`: its number; else its label, as it is written or nearly.
export function meantPage(typed: string, pages: readonly PageFacts[]): number | undefined {
  const text = typed.trim();
  const number = /^[0-9]+$/.test(text) ? Number(text) : 0;
  if (number >= 1 && number <= pages.length) {
    return number;
  }
  const near = text.toLowerCase();
  const meant = pages.find(({ label }) => label === text) ??
    pages.find(({ label }) => label !== undefined && label.toLowerCase() === near);
  return text === "" ? undefined : meant?.page;
}
