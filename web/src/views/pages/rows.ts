// Where the rows of a long list are: heights that are known beforehand, added up once, so that what
// is in view is found at any length.

import type { PageFacts } from "../../server/reports";

export interface Range {
  readonly first: number;
  // One past the last.
  readonly end: number;
}

export class Rows {
  // Where each row begins; one more for the end of the last.
  readonly #tops: Float64Array;

  constructor(heights: readonly number[]) {
    this.#tops = new Float64Array(heights.length + 1);
    heights.forEach((height, index) => {
      this.#tops[index + 1] = (this.#tops[index] ?? 0) + height;
    });
  }

  get count(): number {
    return this.#tops.length - 1;
  }
  get height(): number {
    return this.top(this.count);
  }

  top(index: number): number {
    return this.#tops[index] ?? 0;
  }

  // The row at `y`; the first or the last where `y` is beyond them.
  at(y: number): number {
    let low = 0;
    let high = Math.max(this.count - 1, 0);
    while (low < high) {
      const middle = (low + high + 1) >> 1;
      if (this.top(middle) <= y) {
        low = middle;
      } else {
        high = middle - 1;
      }
    }
    return low;
  }

  // The rows that a window over the list shows.
  inView(top: number, height: number): Range {
    if (this.count === 0) {
      return { first: 0, end: 0 };
    }
    return { first: this.at(top), end: this.at(top + height) + 1 };
  }

  // Where a window of `height` at `top` must go so that the row is in it.
  scrolledTo(index: number, top: number, height: number): number {
    const begin = this.top(index);
    const end = this.top(index + 1);
    if (begin < top) {
      return begin;
    }
    return end > top + height ? end - height : top;
  }
}

// Width and height of a page as it is seen, in points. A page whose boxes say nothing is a square.
export function pageSize(page: PageFacts): { width: number; height: number } {
  const [left, bottom, right, top] = page.cropBox;
  const across = Math.abs((right ?? 0) - (left ?? 0));
  const up = Math.abs((top ?? 0) - (bottom ?? 0));
  if (!(across > 0) || !(up > 0)) {
    return { width: 100, height: 100 };
  }
  return page.rotate % 180 === 0 ? { width: across, height: up } : { width: up, height: across };
}

// The page's size within a frame, in whole pixels, none of them 0.
export function fitted(page: PageFacts, width: number, height: number): { width: number; height: number } {
  const whole = pageSize(page);
  const scale = Math.min(width / whole.width, height / whole.height);
  return {
    width: Math.max(1, Math.round(whole.width * scale)),
    height: Math.max(1, Math.round(whole.height * scale)),
  };
}
