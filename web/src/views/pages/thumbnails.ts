// Small pictures of pages: made when they are wanted, a few at a time, given up where they are not
// wanted any more, and kept within a budget.

export interface Sized {
  readonly width: number;
  readonly height: number;
}

export interface ThumbnailLimits {
  // Pictures that are made at the same time.
  readonly atOnce: number;
  // Pixels that are kept.
  readonly pixels: number;
}

export class Thumbnails<Picture extends Sized> {
  // The one used last is the last.
  readonly #kept = new Map<number, Picture>();
  // Why there is no picture.
  readonly #failed = new Map<number, string>();
  readonly #running = new Map<number, AbortController>();
  #wanted: readonly number[] = [];
  #pixels = 0;

  constructor(
    readonly draw: (page: number, signal: AbortSignal) => Promise<Picture>,
    readonly ready: (page: number) => void,
    readonly limits: ThumbnailLimits,
  ) {}

  get(page: number): Picture | undefined {
    return this.#kept.get(page);
  }

  failure(page: number): string | undefined {
    return this.#failed.get(page);
  }

  get pixels(): number {
    return this.#pixels;
  }

  // Says which pages are in view, the most wanted first. Others are not begun, and given up.
  want(pages: readonly number[]): void {
    this.#wanted = pages;
    const wanted = new Set(pages);
    for (const [page, running] of this.#running) {
      if (!wanted.has(page)) {
        this.#running.delete(page);
        running.abort();
      }
    }
    for (const page of pages) {
      const picture = this.#kept.get(page);
      if (picture !== undefined) {
        this.#kept.delete(page);
        this.#kept.set(page, picture);
      }
    }
    this.#begin();
  }

  // The page looks otherwise now.
  forget(page: number): void {
    this.#failed.delete(page);
    this.#running.get(page)?.abort();
    this.#running.delete(page);
    this.#drop(page);
    this.#begin();
  }

  // Pictures that could not be made may be possible by now.
  retry(): void {
    this.#failed.clear();
    this.#begin();
  }

  clear(): void {
    this.want([]);
    this.#failed.clear();
    for (const page of [...this.#kept.keys()]) {
      this.#drop(page);
    }
  }

  #begin(): void {
    for (const page of this.#wanted) {
      if (this.#running.size >= this.limits.atOnce) {
        return;
      }
      if (!this.#kept.has(page) && !this.#failed.has(page) && !this.#running.has(page)) {
        void this.#make(page);
      }
    }
  }

  async #make(page: number): Promise<void> {
    const running = new AbortController();
    this.#running.set(page, running);
    let picture: Picture | null = null;
    let failure = "";
    try {
      picture = await this.draw(page, running.signal);
    } catch (error) {
      failure = error instanceof Error ? error.message : String(error);
    }
    if (this.#running.get(page) !== running) {
      return; // Given up meanwhile.
    }
    this.#running.delete(page);
    if (picture === null) {
      this.#failed.set(page, failure);
    } else {
      this.#kept.set(page, picture);
      this.#pixels += picture.width * picture.height;
      this.#shrink();
    }
    this.ready(page);
    this.#begin();
  }

  // Drops what was not in view for longest; what is in view stays.
  #shrink(): void {
    const wanted = new Set(this.#wanted);
    for (const page of [...this.#kept.keys()]) {
      if (this.#pixels <= this.limits.pixels) {
        return;
      }
      if (!wanted.has(page)) {
        this.#drop(page);
      }
    }
  }

  #drop(page: number): void {
    const picture = this.#kept.get(page);
    if (picture !== undefined) {
      this.#kept.delete(page);
      this.#pixels -= picture.width * picture.height;
    }
  }
}
