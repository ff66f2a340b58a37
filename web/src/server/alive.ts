// Tells the server every 30 seconds that this tab is there, and the page whether the server is.

import type { ServerFault } from "./fault";
import type { Server } from "./api";

const interval = 30_000;
// Once the server is lost it is looked for more often.
const search = 5_000;

// Events: "lost" and "found", when that changes; "beat", after each answer.
export class Heartbeat extends EventTarget {
  #isLost = false;
  #timer: ReturnType<typeof setTimeout> | undefined;

  constructor(readonly server: Server) {
    super();
    server.heard = (fault) => this.#note(fault);
    addEventListener("pagehide", () => {
      clearTimeout(this.#timer);
      server.bye();
    });
    // A tab that comes back from the browser's cache is there again.
    addEventListener("pageshow", (event) => {
      if (event.persisted) {
        void this.beat();
      }
    });
  }

  get isLost(): boolean {
    return this.#isLost;
  }

  async beat(): Promise<void> {
    clearTimeout(this.#timer);
    try {
      await this.server.alive();
      this.dispatchEvent(new Event("beat"));
    } catch {
      // `#note` has heard of it.
    }
    this.#wait();
  }

  // Any request tells whether the server is there.
  #note(fault: ServerFault | null): void {
    const isLost = fault?.kind === "lost";
    if (isLost !== this.#isLost) {
      this.#isLost = isLost;
      this.dispatchEvent(new Event(isLost ? "lost" : "found"));
      this.#wait();
    }
  }

  #wait(): void {
    clearTimeout(this.#timer);
    this.#timer = setTimeout(() => void this.beat(), this.#isLost ? search : interval);
  }
}
