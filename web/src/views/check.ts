// After a save: the page is opened again and compared with what was saved.

import type { Server } from "../server/api";
import type { Desk, LoadedPage } from "./desk";
import { differentPixels, drawn, isHeavy, viewBox } from "./drawing";

// Half a pixel a point: edges that are smoothed otherwise vanish, a word that is gone does not.
const scale = 0.5;
const levels = 40;
const tolerated = 24;
const mostPixels = 4_000_000;

export interface Check {
  readonly loaded: LoadedPage;
  // What is not as it was saved, as a sentence; null where all is.
  readonly fault: string | null;
}

// `saved` is the drawing that was saved; `file` and `page` say where.
export async function checkSaved(desk: Desk, server: Server, file: string, page: number, saved: string): Promise<Check> {
  const loaded = await desk.loadAgain(file, page);
  const trial = await server.trial(file, page, loaded.svg);
  if (trial.error !== null || trial.nothing !== true) {
    return { loaded, fault: "the page, opened again, is not taken as unchanged" };
  }
  const isSame = await looksSame(saved, loaded.svg);
  return { loaded, fault: isSame ? null : "the page, opened again, does not look quite as it was drawn" };
}

async function looksSame(one: string, other: string): Promise<boolean> {
  if (isHeavy(one) || isHeavy(other)) {
    return true; // The trial alone must do.
  }
  const size = viewSize(one);
  const [a, b] = [await drawn(one, size.width, size.height), await drawn(other, size.width, size.height)];
  return differentPixels(a, b, levels) <= tolerated;
}

// Pixels for a comparison.
export function viewSize(svg: string): { width: number; height: number } {
  const { width, height } = viewBox(svg);
  const shrink = Math.min(scale, Math.sqrt(mostPixels / (width * height)));
  return { width: Math.max(1, Math.round(width * shrink)), height: Math.max(1, Math.round(height * shrink)) };
}
