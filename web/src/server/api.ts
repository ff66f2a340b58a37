// What the page asks of the server: one function for each request.

import { ServerFault, commandFault } from "./fault";
import type {
  FileList, InfoReport, LogReport, Opening, RevertReport, SaveReport,
} from "./reports";
import { requestBytes, requestText } from "./request";
import type { RequestOptions } from "./request";
import { showable } from "./showable";

export interface SaveOptions {
  // Go on although something is lost or undone.
  readonly force?: boolean;
  // Mend what is damaged in the file, too.
  readonly mend?: boolean;
  // Bytes that the file has to have, or it is left alone.
  readonly size?: number | undefined;
  readonly signal?: AbortSignal;
}

// The server itself ends work on a file that takes too long, and says so; these limits are longer,
// and for a server that hangs.
const quick = 30_000;
const work = 150_000;
// A save, or a trial of one, is not given up before the server surely has done so.
const saving = 600_000;

export class Server {
  // By file; kept in memory only.
  readonly #passwords = new Map<string, string>();
  // Of the program: numbers of files mean others in the next one.
  #start: string | undefined;
  // Hears how each request ended: null where it was answered.
  heard: (fault: ServerFault | null) => void = () => undefined;

  setPassword(file: string, password: string): void {
    this.#passwords.set(file, password);
  }

  // Names are as they can be shown.
  async files(): Promise<FileList> {
    const list = await this.#json<FileList>("/api/files", { limit: quick });
    this.#start = list.start;
    return { ...list, files: list.files.map((file) => ({ ...file, name: showable(file.name) })) };
  }

  async info(file: string): Promise<InfoReport> {
    return passed(await this.#json<InfoReport>(`/api/files/${file}`, this.#options(file)));
  }

  async log(file: string): Promise<LogReport> {
    return passed(await this.#json<LogReport>(`/api/files/${file}/log`, this.#options(file)));
  }

  // Opens a page anew, as artwork of its own.
  async open(file: string, page: number, signal?: AbortSignal): Promise<Opening & { artwork: string }> {
    const opening = await this.#json<Opening>(
      `/api/files/${file}/pages/${page}/open`, this.#options(file, { method: "POST", signal }));
    passed(opening.report);
    if (opening.artwork === null) {
      throw commandFault({ code: 0, sentence: "the page was opened without artwork" });
    }
    return { ...opening, artwork: opening.artwork };
  }

  // The SVG of an opening, as the program wrote it.
  artwork(token: string, signal?: AbortSignal): Promise<string> {
    return this.#text(`/api/artworks/${token}`, { limit: work, signal });
  }

  // A page to look at: as it is, or as it was after an update.
  picture(file: string, page: number, update?: number, signal?: AbortSignal): Promise<string> {
    const query = update === undefined ? "" : `?update=${update}`;
    return this.#text(`/api/files/${file}/pages/${page}/picture${query}`, this.#options(file, { signal }));
  }

  // The small picture of itself that a page carries.
  thumbnail(file: string, page: number, signal?: AbortSignal): Promise<Blob> {
    const path = `/api/files/${file}/pages/${page}/thumbnail`;
    return this.#heard(requestBytes(path, this.#ofThisStart(this.#options(file, { signal }))));
  }

  // What a save would do. Its `error` says why it would be refused.
  trial(file: string, page: number, svg: string, options: SaveOptions = {}): Promise<SaveReport> {
    return this.#json(`/api/files/${file}/pages/${page}/trial${query(options)}`,
      this.#options(file, { method: "POST", body: svg, limit: saving, signal: options.signal }));
  }

  save(file: string, page: number, svg: string, options: SaveOptions = {}): Promise<SaveReport> {
    return this.#json(`/api/files/${file}/pages/${page}/save${query(options)}`,
      this.#options(file, { method: "POST", body: svg, limit: saving }));
  }

  // Of a file of `size` bytes.
  async revert(file: string, size: number): Promise<RevertReport> {
    return passed(await this.#json<RevertReport>(
      `/api/files/${file}/revert?size=${size}`, this.#options(file, { method: "POST", limit: saving })));
  }

  // Says that this tab is there.
  async alive(): Promise<void> {
    await this.#text("/api/alive", { method: "POST", limit: 10_000 });
  }

  // Says that this tab closes; sent even while it does.
  bye(): void {
    navigator.sendBeacon("/api/bye");
  }

  #text(path: string, options: RequestOptions): Promise<string> {
    return this.#heard(requestText(path, this.#ofThisStart(options)));
  }

  #ofThisStart(options: RequestOptions): RequestOptions {
    const start = this.#start === undefined ? {} : { "Corvane-Start": this.#start };
    return { ...options, headers: { ...options.headers, ...start } };
  }

  async #heard<Answer>(asked: Promise<Answer>): Promise<Answer> {
    try {
      const answer = await asked;
      this.heard(null);
      return answer;
    } catch (error) {
      if (error instanceof ServerFault) {
        this.heard(error);
      }
      throw error;
    }
  }

  async #json<Answer>(path: string, options: RequestOptions): Promise<Answer> {
    return JSON.parse(await this.#text(path, options)) as Answer;
  }

  #options(file: string, more: Partial<RequestOptions> = {}): RequestOptions {
    const password = this.#passwords.get(file);
    const secret = password === undefined ? {} : { "Corvane-Password": encodeURIComponent(password) };
    const type = more.body === undefined ? {} : { "Content-Type": "image/svg+xml" };
    return { limit: work, ...more, headers: { ...type, ...secret } };
  }
}

// `report`, unless its command failed.
function passed<Answer extends { readonly error: { code: number; sentence: string } | null }>(
  report: Answer): Answer {
  if (report.error !== null) {
    throw commandFault(report.error);
  }
  return report;
}

function query(options: SaveOptions): string {
  const words = [options.force === true ? "force=yes" : "", options.mend === true ? "mend=yes" : "",
    options.size === undefined ? "" : `size=${options.size}`];
  const text = words.filter((word) => word !== "").join("&");
  return text === "" ? "" : `?${text}`;
}
