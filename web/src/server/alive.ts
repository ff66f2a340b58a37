// Tells the server every 30 seconds that this tab is there, and the page whether the server is.

import { ServerFault } from "./fault";
import type { Server } from "./api";

const interval = 30_000;
// Once the server is lost it is looked for more often.
const search = 5_000;

// Events: "lost", when nobody answers any more, and again when that concerns somebody; "found"; "beat",
// after each answer to a beat;
// "foreign", when what answers is another start of the program, which this tab does not belong to.
export class Heartbeat extends EventTarget {
  #isLost = false;
  #isBeating = false;
  #timer: ReturnType<typeof setTimeout> | undefined;

  constructor(readonly server: Server) {
    super();
    server.heard = (fault) => this.#note(fault);
    addEventListener("pagehide", () => {
      clearTimeout(this.#timer);
      server.bye();
    });
    // Behind other tabs timers are slow, and of a tab that sleeps none runs.
    document.addEventListener("resume", () => void this.beat());
    document.addEventListener("visibilitychange", () => {
      if (!document.hidden) {
        void this.beat();
      }
    });
    // A tab that comes back from the browser's cache is there again.
    addEventListener("pageshow", (event) => {
      if (event.persisted) {
        void this.beat();
      }
    });
  }

  async beat(): Promise<void> {
    clearTimeout(this.#timer);
    this.#isBeating = true;
    try {
      await this.server.alive();
      this.dispatchEvent(new Event("beat"));
    } catch (error) {
      if (error instanceof ServerFault && error.kind === "refused") {
        this.dispatchEvent(new Event("foreign"));
      }
    }
    this.#isBeating = false;
    this.#wait();
  }

  // Any request tells whether the server is there.
  #note(fault: ServerFault | null): void {
    const wasLost = this.#isLost;
    this.#isLost = fault?.kind === "lost";
    if (this.#isLost && (!wasLost || !this.#isBeating)) {
      this.dispatchEvent(new Event("lost"));
    } else if (wasLost && !this.#isLost) {
      this.dispatchEvent(new Event("found"));
    }
    if (wasLost !== this.#isLost) {
      this.#wait();
    }
  }

  #wait(): void {
    clearTimeout(this.#timer);
    this.#timer = setTimeout(() => void this.beat(), this.#isLost ? search : interval);
  }
}
